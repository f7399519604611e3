"""What the tests of the package share. CTest gives them folders of their own, the built libraries, and the modules
of the system (folders posix and windows)."""

import os
import struct
import subprocess
import sys
import unittest
from pathlib import Path
from typing import List, Optional

import layout
import section

ROOT = Path(__file__).resolve().parents[3]
LIBRARIES = os.environ["TALLOWMERE_LIBRARY_PATH"]
EXAMPLES = Path(os.environ["TALLOWMERE_EXAMPLES"])
# Programs for run and run_alone.
TELL_WHAT_IS_MISSING = "import tallowmere as t\ntry: t.get('BSP')\nexcept t.LibraryNotFound as e: print(e)"
WRITE_AND_READ = "import tallowmere as t; assert t.set('BSP', 1) and t.get('BSP') == 1"
LOGGER = [sys.executable, str(ROOT / "examples/csv_logger.py")]


def make_older(channel: int, seconds: float) -> None:
    """Moves the stamp of an own boat's value back, as if it had been written then."""
    with section.opened() as memory:
        memory.seek(layout.STAMPS + 8 * channel)
        (stamp,) = struct.unpack("<q", memory.read(8))
        put_stamp(channel, stamp - round(seconds * 1e7))


def put_stamp(channel: int, stamp: int) -> None:
    with section.opened() as memory:
        memory.seek(layout.STAMPS + 8 * channel)
        memory.write(struct.pack("<q", stamp))


def put_boat_name(boat: int, name: str) -> None:
    with section.opened() as memory:
        memory.seek(layout.BOATS + 80 * boat + 6)
        memory.write((name + "\0").encode("utf-16-le"))


def run(code: str, **environment: Optional[str]) -> "subprocess.CompletedProcess[str]":
    """A Python program of its own. A variable of None is taken away."""
    return run_program([sys.executable, "-c", code], **environment)


def run_alone(code: str, **environment: Optional[str]) -> "subprocess.CompletedProcess[str]":
    """A Python program that meets no section but its own."""
    with section.none_yet() as variables:
        return run(code, **variables, **environment)


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
        self._process.kill()
        self._process.wait()


class Case(unittest.TestCase):
    maxDiff = None
