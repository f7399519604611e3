"""Finding and loading the two shared libraries.

They are looked for when they are first needed, so importing the package never fails.
"""

import ctypes
import os
import struct
import sys
import threading
from pathlib import PureWindowsPath
from typing import Callable, Dict, Iterator, List, Tuple

#: Names folders to look in, and then nothing else is tried. Separated as in PATH.
PATH_VARIABLE = "TALLOWMERE_LIBRARY_PATH"

_WINDOWS = sys.platform == "win32"
_loaded: Dict[str, ctypes.CDLL] = {}
_lock = threading.Lock()


class LibraryNotFound(OSError):
    """A shared library is not there or cannot be used. The text says what was tried and what to do."""


def _file_names(name: str) -> List[str]:
    return [f"{name}.dll"] if _WINDOWS else [f"lib{name}.so.1", f"lib{name}.so"]


def _in_folder(folder: str, name: str) -> Iterator[str]:
    """Whole paths: a bare file name is looked for by the system, and not in the current folder."""
    for file in _file_names(name):
        yield os.path.abspath(os.path.join(folder, file))


def _folders_of_windows_path(path: str) -> List[str]:
    """Those with a drive or server and a root: an empty or relative one is looked for in the current folder or drive,
    which anybody may have filled."""
    return [folder for folder in path.split(";") if PureWindowsPath(folder).is_absolute()]


def _candidates(name: str) -> Iterator[Tuple[str, bool]]:
    """What to load, in order, and whether it is a path that must exist first."""
    explicit = os.environ.get(PATH_VARIABLE)
    if explicit:
        for folder in explicit.split(os.pathsep):
            if folder:
                for path in _in_folder(folder, name):
                    yield path, True
        return
    for path in _in_folder(os.path.dirname(os.path.abspath(__file__)), name):
        yield path, True
    if _WINDOWS:
        for folder in _folders_of_windows_path(os.environ.get("PATH", "")):
            for path in _in_folder(folder, name):
                yield path, True
    else:
        for file in _file_names(name):
            yield file, False  # the loader's search: LD_LIBRARY_PATH, ldconfig, /usr/lib


def _advice(name: str) -> str:
    advice = (
        f"Install the Tallowmere libraries, or set {PATH_VARIABLE} to the folder that holds {_file_names(name)[0]}."
    )
    if struct.calcsize("P") != 8:
        advice += " This Python has 32 bits; the libraries have 64."
    return advice


def _open(name: str) -> ctypes.CDLL:
    tried = []
    for candidate, is_path in _candidates(name):
        if is_path and not os.path.isfile(candidate):
            tried.append(f"{candidate}: not there")
            continue
        try:
            return ctypes.CDLL(candidate)
        except OSError as error:
            reason = str(error)
            tried.append(reason if reason.startswith(candidate) else f"{candidate}: {reason}")
    raise LibraryNotFound(
        f"the library {name} could not be loaded. Tried:\n"
        + "".join(f"  {line}\n" for line in tried)
        + _advice(name)
    )


def load(name: str, prepare: Callable[[ctypes.CDLL], None]) -> ctypes.CDLL:
    """The library, loaded and prepared once for the process. It is never unloaded."""
    with _lock:
        library = _loaded.get(name)
        if library is None:
            library = _open(name)
            try:
                prepare(library)
            except AttributeError as error:  # a function is missing
                raise LibraryNotFound(
                    f"the library {name} that was found is too old: {error}. " + _advice(name)
                ) from None
            _loaded[name] = library
        return library


def is_loaded(name: str) -> bool:
    return name in _loaded
