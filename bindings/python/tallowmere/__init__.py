"""Live sailing channels of the own boat and up to 99 others.

    import tallowmere
    tallowmere.get("BSP")                 # 6.4, or None
    tallowmere.read("BSP").age            # seconds
    tallowmere.channel("BSP").unit        # "kt"
    tallowmere.set("User 0", 1.5)

Values are floats in the channel's base unit, None where there is no value. Reading makes no section and takes no
part in its life; the first write joins or makes it until the process ends. Any thread may call. Nothing is locked
among processes: of two writers the last one wins. Nothing here writes to standard output.

Without the libraries every function raises LibraryNotFound, which says where they were looked for.
"""

import threading
from typing import Iterator, List, Optional, Sequence

from ._client import name_user_channel, set_mob
from ._library import LibraryNotFound
from ._samples import Sample
from ._samples import samples as _samples
from ._view import (
    Boat,
    BoatLike,
    Channel,
    ChannelLike,
    Freshness,
    Group,
    Mob,
    Reading,
    Section,
    UnknownBoat,
    UnknownChannel,
    View,
)
from .channel_ids import ChannelId

__all__ = [
    "Boat",
    "BoatLike",
    "Channel",
    "ChannelId",
    "ChannelLike",
    "Freshness",
    "Group",
    "LibraryNotFound",
    "Mob",
    "Reading",
    "Sample",
    "Section",
    "UnknownBoat",
    "UnknownChannel",
    "View",
    "boat",
    "boats",
    "channel",
    "channels",
    "find_boat",
    "find_channel",
    "get",
    "is_replay",
    "mob",
    "name_user_channel",
    "read",
    "read_group",
    "samples",
    "section",
    "set",
    "set_mob",
    "system_flag",
    "system_integer",
    "system_variable",
]

_view: Optional[View] = None
_view_lock = threading.Lock()


def _default() -> View:
    """The view of the functions here, opened when it is first needed."""
    global _view
    with _view_lock:
        if _view is None:
            _view = View()
        return _view


def section() -> Section:
    """Whether there is a section; asks the system."""
    return _default().section()


def is_replay() -> bool:
    """True while a recording is being played into the section: its values are not live."""
    return _default().is_replay


def channel(channel: ChannelLike) -> Channel:
    """The channel with this number or name. Raises UnknownChannel."""
    return _default().channel(channel)


def find_channel(name: str) -> Optional[Channel]:
    """The channel with this short or long name; None when there is none."""
    return _default().find_channel(name)


def channels() -> List[Channel]:
    """All 414, in the order of their numbers."""
    return _default().channels()


def boat(boat: BoatLike) -> Boat:
    """The boat with this number or name. Raises UnknownBoat."""
    return _default().boat(boat)


def find_boat(name: str) -> Optional[Boat]:
    """The boat with this name; None when there is none."""
    return _default().find_boat(name)


def boats() -> List[Boat]:
    """Boats 0 up to the highest that has received a value."""
    return _default().boats()


def get(channel: ChannelLike, boat: BoatLike = 0) -> Optional[float]:
    """The value, stale or not; None when there is none."""
    return _default().get(channel, boat)


def read(channel: ChannelLike, boat: BoatLike = 0) -> Reading:
    """The value with its age and freshness."""
    return _default().read(channel, boat)


def read_group(channels: Sequence[ChannelLike], boat: BoatLike = 0) -> Group:
    """Many channels of one boat that belong to one moment."""
    return _default().read_group(channels, boat)


def set(channel: ChannelLike, value: Optional[float], boat: BoatLike = 0) -> bool:
    """Writes a value in the base unit; None clears it. False when refused; see View.set."""
    return _default().set(channel, value, boat)


def samples(
    channels: Sequence[ChannelLike],
    interval: float = 1.0,
    count: Optional[int] = None,
    boat: BoatLike = 0,
    *,
    stale: bool = False,
    ages: bool = False,
) -> Iterator[Sample]:
    """Rows of one moment each, every `interval` seconds (0 to 86400), `count` of them or without end.

    A row is a dict: "time" (UTC), then each channel under the name it was asked for by. Values that are not there,
    and stale ones unless `stale`, are None. `ages` adds "NAME age" in seconds for each. pandas.DataFrame takes it.
    """
    return _samples(_default(), channels, interval, count, boat, stale, ages)


def system_variable(index: int) -> Optional[float]:
    """System variable 0 to 79 in its own unit; None when it has no value."""
    return _default().system_variable(index)


def system_integer(index: int) -> Optional[int]:
    """System integer 0 to 12; None without a section."""
    return _default().system_integer(index)


def system_flag(index: int) -> Optional[bool]:
    """System flag 0 to 59; None without a section."""
    return _default().system_flag(index)


def mob() -> Optional[Mob]:
    """The man-overboard mark; None when nobody has raised an alarm."""
    return _default().mob()
