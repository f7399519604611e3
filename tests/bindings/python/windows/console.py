"""Ctrl-C in another program."""

import ctypes
import subprocess
import sys
from typing import Any, Dict

#: For subprocess.Popen: what a program needs to be sent Ctrl-C. A console of its own, for all who share one get it.
OPTIONS: Dict[str, Any] = {"creationflags": subprocess.CREATE_NO_WINDOW}


def press_ctrl_c(program: "subprocess.Popen[str]") -> None:
    """By a program that takes part in the other's console."""
    subprocess.run([sys.executable, __file__, str(program.pid)], check=True, timeout=60, **OPTIONS)


def _press(pid: int) -> bool:
    kernel32 = ctypes.WinDLL("kernel32")
    kernel32.FreeConsole()
    ignore_it_here = kernel32.SetConsoleCtrlHandler(None, True)
    return bool(kernel32.AttachConsole(pid) and ignore_it_here and kernel32.GenerateConsoleCtrlEvent(0, 0))


if __name__ == "__main__":
    sys.exit(0 if _press(int(sys.argv[1])) else 1)
