"""The live section as a file, and places of their own for programs."""

import contextlib
import os
import tempfile
from pathlib import Path
from typing import BinaryIO, Dict, Iterator

import layout


def _folder() -> Path:
    return Path(os.environ["XDG_RUNTIME_DIR"])


def opened() -> BinaryIO:
    """Its bytes, to be read and written. It must be there."""
    return open(_folder() / layout.NAME, "r+b")


def exists() -> bool:
    """Whether anything lies where sections do."""
    return any(_folder().iterdir())


@contextlib.contextmanager
def none_yet() -> Iterator[Dict[str, str]]:
    """The variables of programs that meet no section but their own."""
    with tempfile.TemporaryDirectory() as folder:
        yield {"XDG_RUNTIME_DIR": folder}
