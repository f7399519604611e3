"""Ctrl-C in another program."""

import signal
import subprocess
from typing import Any, Dict

#: For subprocess.Popen: what a program needs to be sent Ctrl-C.
OPTIONS: Dict[str, Any] = {}


def press_ctrl_c(program: "subprocess.Popen[str]") -> None:
    program.send_signal(signal.SIGINT)
