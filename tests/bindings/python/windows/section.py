"""The live section as a mapping. All programs of a user share one, so each file of tests is a process of its own."""

import contextlib
import ctypes
import mmap
from typing import Dict, Iterator

import layout

_MAP_READ = 4  # FILE_MAP_READ
_kernel32 = ctypes.WinDLL("kernel32")
_kernel32.OpenFileMappingW.restype = ctypes.c_void_p
_kernel32.OpenFileMappingW.argtypes = [ctypes.c_uint32, ctypes.c_int, ctypes.c_wchar_p]
_kernel32.CloseHandle.argtypes = [ctypes.c_void_p]


def opened() -> mmap.mmap:
    """Its bytes, to be read and written. It must be there."""
    if not exists():  # mmap would make one
        raise FileNotFoundError(layout.NAME)
    return mmap.mmap(-1, layout.SIZE, tagname=layout.NAME)


def exists() -> bool:
    handle = _kernel32.OpenFileMappingW(_MAP_READ, False, layout.NAME)
    if handle:
        _kernel32.CloseHandle(handle)
    return bool(handle)


@contextlib.contextmanager
def none_yet() -> Iterator[Dict[str, str]]:
    """The variables of programs that meet no section but their own."""
    if exists():
        raise AssertionError("another program holds the section")
    yield {}
