"""Writing: the process becomes a client of the section with its first write."""

import sys
from typing import Optional

from . import _library, _native


def has_joined() -> bool:
    """True once something has been written in this process."""
    return _library.is_loaded("tallowmere")


def write(channel: int, value: Optional[float], boat: int) -> bool:
    if channel == 0:
        raise ValueError("channel 0 is the clock, which the library stamps itself")
    number = _native.NO_VALUE if value is None else float(value)
    return bool(_native.client_library().SetZanVar(channel, number, boat))


def name_user_channel(index: int, name: str) -> None:
    """Names user channel 0 to 31 for all programs; an empty name brings the catalogue's back.

    At most 15 bytes: of UTF-8 on Linux, of the ANSI code page on Windows. Raises ValueError for more, for a name
    that the code page cannot write, and for a NUL.
    """
    if not 0 <= index < _native.USER_CHANNELS:
        raise IndexError(f"user channels are 0 to {_native.USER_CHANNELS - 1}, not {index}")
    if not isinstance(name, str):
        raise TypeError(f"a name is a text, not {name!r}")
    encoded = name.encode("mbcs" if sys.platform == "win32" else "utf-8")
    if len(encoded) > _native.NAME_BYTES or b"\0" in encoded:
        raise ValueError(f"a name has at most {_native.NAME_BYTES} bytes and no NUL: {name!r}")
    _native.client_library().SetZanUserVarName(index, encoded)


def set_mob(latitude: float, longitude: float) -> bool:
    """Raises the man-overboard alarm at a position in degrees, north and east positive. False: no host was told."""
    return bool(_native.client_library().SetMOB(latitude, longitude) != 0)
