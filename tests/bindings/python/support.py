"""What the tests of the package share. CTest gives them folders of their own and the built libraries."""

import os
import signal
import struct
import subprocess
import sys
import unittest
from pathlib import Path
from typing import List, Optional

ROOT = Path(__file__).resolve().parents[3]
SECTION = Path(os.environ["XDG_RUNTIME_DIR"]) / "ZanCore_363_253336"

_STAMPS = 59096  # of the own boat, int64 each
_BOATS = 51092  # 80 bytes each; the name at 6


def make_older(channel: int, seconds: float) -> None:
    """Moves the stamp of an own boat's value back, as if it had been written then."""
    with open(SECTION, "r+b") as file:
        file.seek(_STAMPS + 8 * channel)
        (stamp,) = struct.unpack("<q", file.read(8))
        put_stamp(channel, stamp - round(seconds * 1e7))


def put_stamp(channel: int, stamp: int) -> None:
    with open(SECTION, "r+b") as file:
        file.seek(_STAMPS + 8 * channel)
        file.write(struct.pack("<q", stamp))


def put_boat_name(boat: int, name: str) -> None:
    with open(SECTION, "r+b") as file:
        file.seek(_BOATS + 80 * boat + 6)
        file.write((name + "\0").encode("utf-16-le"))


def run(code: str, **environment: Optional[str]) -> "subprocess.CompletedProcess[str]":
    """A Python program of its own. A variable of None is taken away."""
    return run_program([sys.executable, "-c", code], **environment)


def run_program(command: List[str], **environment: Optional[str]) -> "subprocess.CompletedProcess[str]":
    variables = {**os.environ, **environment}
    return subprocess.run(
        command,
        env={name: value for name, value in variables.items() if value is not None},
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        encoding="utf-8",
        timeout=60,
    )


class Writer:
    """A program that writes and then holds the section until it is ended."""

    def __init__(self, code: str) -> None:
        self._process = subprocess.Popen(
            [sys.executable, "-c", f"import sys, tallowmere\n{code}\nprint('ready', flush=True)\nsys.stdin.read()"],
            stdin=subprocess.PIPE,
            stdout=subprocess.PIPE,
            encoding="utf-8",
        )
        assert self._process.stdout is not None
        if self._process.stdout.readline() != "ready\n":
            raise AssertionError("the writer did not start")

    def __enter__(self) -> "Writer":
        return self

    def __exit__(self, *_: object) -> None:
        self._process.communicate("")

    def kill(self) -> None:
        self._process.send_signal(signal.SIGKILL)
        self._process.wait()


class Case(unittest.TestCase):
    maxDiff = None
