"""Writing: the process becomes a client of the section with its first write."""

import decimal
import math
import numbers
import operator
import sys
from typing import Optional, SupportsIndex

from . import _library, _native


def has_joined() -> bool:
    """True once something has been written in this process."""
    return _library.is_loaded("tallowmere")


def checked_text(name: str) -> str:
    if not isinstance(name, str):
        raise TypeError(f"a name is a text, not {name!r}")
    return name


def checked_whole(number: SupportsIndex, rule: str) -> int:
    if isinstance(number, bool) or not hasattr(number, "__index__"):
        raise TypeError(f"{rule}, not {number!r}")
    return operator.index(number)


def checked_index(index: SupportsIndex, count: int, what: str = "index") -> int:
    number = checked_whole(index, f"{what} is a whole number")
    if not 0 <= number < count:
        raise IndexError(f"{what} is 0 to {count - 1}, not {number}")
    return number


def checked_float(number: float, rule: str) -> float:
    """Of any real number. A text or a bool would become a float too, but is a mistake."""
    if isinstance(number, bool) or not isinstance(number, (numbers.Real, decimal.Decimal)):
        raise TypeError(f"{rule}, not {number!r}")
    try:
        converted = float(number)
        fits = not math.isinf(converted) or converted == number  # a Decimal that is too large becomes infinite
    except (OverflowError, ValueError):  # too large; a signalling NaN
        fits = False
    if not fits:
        raise ValueError(f"{rule}, and no float can hold this one")
    return converted


def write(channel: int, value: Optional[float], boat: int) -> bool:
    if channel == 0:
        raise ValueError("channel 0 is the clock, which the library stamps itself")
    number = _native.NO_VALUE if value is None else checked_float(value, "a value is a number or None")
    return bool(_native.client_library().SetZanVar(channel, number, boat))


def name_user_channel(index: int, name: str) -> None:
    """Names user channel 0 to 31 for all programs; an empty name brings the catalogue's back.

    At most 15 bytes: of UTF-8 on Linux, of the ANSI code page on Windows. Raises ValueError for more, for a name
    that the code page cannot write, and for a NUL.
    """
    number = checked_index(index, _native.USER_CHANNELS, "a user channel")
    encoded = checked_text(name).encode("mbcs" if sys.platform == "win32" else "utf-8")
    if len(encoded) > _native.NAME_BYTES or b"\0" in encoded:
        raise ValueError(f"a name has at most {_native.NAME_BYTES} bytes and no NUL: {name!r}")
    _native.client_library().SetZanUserVarName(number, encoded)


def set_mob(latitude: float, longitude: float) -> bool:
    """Raises the man-overboard alarm at a position in degrees, north and east positive. False: no host was told."""
    position = checked_float(latitude, "a latitude is a number"), checked_float(longitude, "a longitude is a number")
    return bool(_native.client_library().SetMOB(*position) != 0)
