"""Reading: a view of the section, its channels and boats."""

import ctypes
import datetime
import operator
import threading
from collections.abc import Iterable
from enum import IntEnum
from typing import Any, Callable, List, NamedTuple, Optional, Sequence, SupportsIndex, Tuple, TypeVar, Union

from . import _client, _native

_EPOCH = datetime.datetime(1601, 1, 1, tzinfo=datetime.timezone.utc)
_T = TypeVar("_T")


class UnknownChannel(LookupError):
    """No channel has this number or name."""


class UnknownBoat(LookupError):
    """No boat has this number or name."""


class Section(IntEnum):
    """Whether there is a section to look at."""

    NONE = 0  #: none yet, or none that fits
    ATTACHED = 1  #: there is one and some program holds it
    GONE = 2  #: there was one; the last program that held it has ended


class Freshness(IntEnum):
    """What is known of a value."""

    NONE = 0  #: there is no value
    FRESH = 1  #: its age is within the channel's time-out
    STALE = 2  #: older than the time-out, or of unknown age
    TIMELESS = 3  #: the channel has no time-out, so it never goes stale


class Reading(NamedTuple):
    """One value as it was read."""

    #: in the channel's base unit; None when there is none. A stale value is a value, and so is a NaN.
    value: Optional[float]
    #: seconds since it was written; None when there is no value or its age cannot be told
    age: Optional[float]
    freshness: Freshness
    #: the channel that was asked for
    channel: int
    #: the channel that was read: another for alternating channels; None when one stands for none
    source: Optional[int]
    #: when it was written, UTC; None when that is no moment
    stamp: Optional[datetime.datetime]

    @property
    def is_stale(self) -> bool:
        return self.freshness is Freshness.STALE

    @property
    def current(self) -> Optional[float]:
        """The value unless it is stale."""
        return None if self.is_stale else self.value


class Group(NamedTuple):
    """Values of one boat that were read together."""

    #: of the clock, when they were read; ages count from it
    moment: datetime.datetime
    #: in the order that they were asked for
    readings: Tuple[Reading, ...]
    #: True: all of them stood in the section together at one moment
    is_of_one_moment: bool


class Mob(NamedTuple):
    """The man-overboard mark; degrees, north and east positive."""

    latitude: float
    longitude: float
    name: str


def _moment(ticks: int) -> Optional[datetime.datetime]:
    """Of 100 ns units since 1601; None for what is no date. Any number may stand in the section."""
    if ticks <= 0 or ticks == _native.NO_TIME:
        return None
    try:
        return _EPOCH + datetime.timedelta(microseconds=ticks // 10)
    except OverflowError:
        return None


def _reading(raw: _native.Value) -> Reading:
    there = raw.state != Freshness.NONE
    return Reading(
        raw.value if there else None,
        raw.age_seconds if raw.age_seconds >= 0 else None,
        Freshness(raw.state),
        raw.channel,
        raw.source if raw.source != _native.NO_CHANNEL else None,
        _moment(raw.stamp) if there else None,
    )


def _bytes(name: str) -> bytes:
    """For a search: a text with a NUL finds nothing, as no name has one."""
    return b"" if "\0" in _client.checked_text(name) else name.encode("utf-8", "replace")


class Channel:
    """A channel. Its names and its unit are the catalogue's or what the section has set instead."""

    def __init__(self, view: "View", number: int) -> None:
        self._view = view
        self._number = number

    def _info(self) -> _native.Channel:
        return self._view._channel_info(self._number)

    @property
    def number(self) -> int:
        return self._number

    @property
    def name(self) -> str:
        """The short name; empty for channel 0."""
        return str(self._info().short_name.decode())

    @property
    def long_name(self) -> str:
        return str(self._info().long_name.decode())

    @property
    def unit(self) -> str:
        """The base unit: "kt", "nm", "m"; empty when it has none.

        For times it is how they are shown ("UTC", "h:mm:ss"): their values are days.
        """
        return str(self._info().unit.decode())

    @property
    def timeout(self) -> Optional[int]:
        """The age in seconds from which a value is stale; None: never."""
        return self._info().timeout_seconds or None

    @property
    def precision(self) -> Optional[int]:
        """Decimals to show; None: not shown as a number."""
        precision: int = self._info().precision
        return None if precision == _native.NO_PRECISION else precision

    @property
    def plausible_range(self) -> Optional[Tuple[int, int]]:
        """A value outside clears the channel; None: any value is plausible."""
        info = self._info()
        return (info.min_value, info.max_value) if info.min_value != info.max_value else None

    @property
    def is_kept_for_other_boats(self) -> bool:
        """False: kept for boats 0 and 1 only."""
        return bool(self._info().other_boats)

    def get(self, boat: "BoatLike" = 0) -> Optional[float]:
        return self._view.get(self._number, boat)

    def read(self, boat: "BoatLike" = 0) -> Reading:
        return self._view.read(self._number, boat)

    def set(self, value: Optional[float], boat: "BoatLike" = 0) -> bool:
        return self._view.set(self._number, value, boat)

    def __index__(self) -> int:
        return self._number

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Channel) and other._number == self._number

    def __hash__(self) -> int:
        return hash(self._number)

    def __repr__(self) -> str:
        return f"<Channel {self._number} {self.name or self.long_name}>"


class Boat:
    """A boat. 0 is the own boat."""

    def __init__(self, view: "View", number: int) -> None:
        self._view = view
        self._number = number

    @property
    def number(self) -> int:
        return self._number

    @property
    def name(self) -> str:
        """Empty when it has none."""
        return str(self._view._boat_info(self._number).name.decode())

    @property
    def mmsi(self) -> Optional[int]:
        return self._view._boat_info(self._number).mmsi or None

    @property
    def colour(self) -> Tuple[int, int, int]:
        """Red, green and blue, 0 to 255."""
        colour = self._view._boat_info(self._number).colour
        return colour & 255, colour >> 8 & 255, colour >> 16 & 255

    @property
    def is_in_use(self) -> bool:
        return bool(self._view._boat_info(self._number).in_use)

    def get(self, channel: "ChannelLike") -> Optional[float]:
        return self._view.get(channel, self._number)

    def read(self, channel: "ChannelLike") -> Reading:
        return self._view.read(channel, self._number)

    def read_group(self, channels: Sequence["ChannelLike"]) -> Group:
        return self._view.read_group(channels, self._number)

    def set(self, channel: "ChannelLike", value: Optional[float]) -> bool:
        return self._view.set(channel, value, self._number)

    def __index__(self) -> int:
        return self._number

    def __eq__(self, other: object) -> bool:
        return isinstance(other, Boat) and other._number == self._number

    def __hash__(self) -> int:
        return hash(self._number)

    def __repr__(self) -> str:
        return f"<Boat {self._number} {self.name}>".replace(" >", ">")


#: A number (a ChannelId, for example), a short or long name, or a Channel.
ChannelLike = Union[SupportsIndex, str]
#: A number, a name, or a Boat.
BoatLike = Union[SupportsIndex, str]


class View:
    """A read-only look at the section. Reading makes no section and keeps none alive.

    Any thread may use it. After close(), and while there is no section, the catalogue answers and there are no
    values. Numbers and names that stand for nothing raise UnknownChannel or UnknownBoat.
    """

    def __init__(self) -> None:
        self._lock = threading.RLock()
        self._library = _native.view_library()
        self._saw_client = False
        self._handle: Optional[int] = self._library.tlm_view_open()
        if self._handle is None:
            raise MemoryError("no memory for a view")

    def close(self) -> None:
        with self._lock:
            handle, self._handle = self._handle, None
            self._library.tlm_view_close(handle)

    def __enter__(self) -> "View":
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __del__(self) -> None:
        if getattr(self, "_handle", None) is not None:
            self.close()

    def _refresh(self) -> None:
        """Cheap: asks the system at most every 250 ms, but at once for the section that this process has joined."""
        if _client.has_joined() and not self._saw_client:
            self._saw_client = True
            self._library.tlm_view_refresh_now(self._handle)
        else:
            self._library.tlm_view_refresh(self._handle)

    def _filled(self, structure: Callable[[], _T], function: str, *arguments: Any) -> Tuple[_T, bool]:
        """A structure that a function of the interface has filled, and its answer."""
        out = structure()
        with self._lock:
            self._refresh()
            found = getattr(self._library, function)(self._handle, *arguments, ctypes.byref(out))  # type: ignore[arg-type]
        return out, found != 0

    def _channel_info(self, number: int) -> _native.Channel:
        return self._filled(_native.Channel, "tlm_view_get_channel", number)[0]

    def _boat_info(self, number: int) -> _native.Boat:
        return self._filled(_native.Boat, "tlm_view_get_boat", number)[0]

    def _channel_number(self, channel: ChannelLike) -> int:
        if isinstance(channel, str):
            found = self.find_channel(channel)
            if found is None:
                raise UnknownChannel(f"no channel is named {channel!r}{self._similar(channel)}")
            return found.number
        number = _number(channel)
        if not 0 <= number < _native.CHANNELS:
            raise UnknownChannel(f"channels are 0 to {_native.CHANNELS - 1}, not {number}")
        return number

    def _channel_list(self, channels: Sequence[ChannelLike]) -> List[ChannelLike]:
        """Of any iterable, once; but the letters of a text are no channels."""
        if isinstance(channels, (str, bytes)) or not isinstance(channels, Iterable):
            raise TypeError(f"channels is a list of channels, not {channels!r}")
        return list(channels)

    def _channel_numbers(self, channels: Sequence[ChannelLike]) -> List[int]:
        return [self._channel_number(channel) for channel in self._channel_list(channels)]

    def _similar(self, unknown: str) -> str:
        """For the text of an error: the name that differs in the case of its letters only."""
        for channel in self.channels():
            for name in filter(None, (channel.name, channel.long_name)):
                if name.casefold() == unknown.casefold():
                    return f"; did you mean {name!r}?"
        return ""

    def _boat_number(self, boat: BoatLike) -> int:
        if isinstance(boat, str):
            found = self.find_boat(boat)
            if found is None:
                raise UnknownBoat(f"no boat is named {boat!r}")
            return found.number
        number = _number(boat)
        if not 0 <= number < _native.BOATS:
            raise UnknownBoat(f"boats are 0 to {_native.BOATS - 1}, not {number}")
        return number

    def section(self) -> Section:
        """Asks the system whether there is a section."""
        with self._lock:
            return Section(self._library.tlm_view_refresh_now(self._handle))

    @property
    def is_replay(self) -> bool:
        """True while a recording is being played into the section: its values are not live. False without one."""
        with self._lock:
            self._refresh()
            return bool(self._library.tlm_view_is_replay(self._handle) != 0)

    def channel(self, channel: ChannelLike) -> Channel:
        return Channel(self, self._channel_number(channel))

    def find_channel(self, name: str) -> Optional[Channel]:
        """By short name, else by long name; letters count as written. None when there is none."""
        with self._lock:
            self._refresh()
            found = self._library.tlm_view_find_channel(self._handle, _bytes(name))
        return Channel(self, found) if found != _native.NO_CHANNEL else None

    def channels(self) -> List[Channel]:
        """All 414, in the order of their numbers."""
        return [Channel(self, number) for number in range(_native.CHANNELS)]

    def boat(self, boat: BoatLike) -> Boat:
        return Boat(self, self._boat_number(boat))

    def find_boat(self, name: str) -> Optional[Boat]:
        """None when no boat has this name; letters count as written."""
        with self._lock:
            self._refresh()
            found = self._library.tlm_view_find_boat(self._handle, _bytes(name))
        return Boat(self, found) if found >= 0 else None

    def boats(self) -> List[Boat]:
        """Boats 0 up to the highest that has received a value."""
        with self._lock:
            self._refresh()
            count = self._library.tlm_view_boat_count(self._handle)
        return [Boat(self, number) for number in range(count)]

    def get(self, channel: ChannelLike, boat: BoatLike = 0) -> Optional[float]:
        """The value, stale or not; None when there is none. Use read() where its age matters."""
        return self.read(channel, boat).value

    def read(self, channel: ChannelLike, boat: BoatLike = 0) -> Reading:
        """The value with its age."""
        return _reading(
            self._filled(_native.Value, "tlm_view_read", self._channel_number(channel), self._boat_number(boat))[0]
        )

    def read_group(self, channels: Sequence[ChannelLike], boat: BoatLike = 0) -> Group:
        """Many channels of one boat that belong to one moment."""
        numbers = self._channel_numbers(channels)
        count = len(numbers)
        values = (_native.Value * count)()
        group, quiet = self._filled_group((ctypes.c_uint16 * count)(*numbers), count, values, self._boat_number(boat))
        moment = _moment(group.moment) or _EPOCH
        return Group(moment, tuple(_reading(value) for value in values), quiet)

    def _filled_group(self, numbers: Any, count: int, values: Any, boat: int) -> Tuple[_native.Group, bool]:
        group = _native.Group()
        with self._lock:
            self._refresh()
            quiet = self._library.tlm_view_read_group(
                self._handle, boat, numbers, count, values, ctypes.byref(group)
            )
        return group, quiet != 0

    def set(self, channel: ChannelLike, value: Optional[float], boat: BoatLike = 0) -> bool:
        """Writes a value in the channel's base unit, any real number that a float can hold; None clears it.

        False when it was refused: the channel is blocked or write-locked, the boat does not keep it, or there is
        no section. True is no proof: the own boat's satellite-fix channels (Lat, Lon, COG, SOG, ...) drop a value
        in silence unless a host accepts them, and a value outside the plausible range clears the channel. Read
        back where it matters. The clock, channel 0, raises ValueError.

        The first write of a process joins the section, or makes it, and holds it until the process ends.
        """
        return _client.write(self._channel_number(channel), value, self._boat_number(boat))

    def system_variable(self, index: int) -> Optional[float]:
        """0 to 79, in its own unit; None when it has no value."""
        out, found = self._filled(ctypes.c_double, "tlm_view_get_variable", _client.checked_index(index, 80))
        return out.value if found else None

    def system_integer(self, index: int) -> Optional[int]:
        """0 to 12; None without a section."""
        out, found = self._filled(ctypes.c_int32, "tlm_view_get_integer", _client.checked_index(index, 13))
        return out.value if found else None

    def system_flag(self, index: int) -> Optional[bool]:
        """0 to 59; None without a section."""
        out, found = self._filled(ctypes.c_uint8, "tlm_view_get_flag", _client.checked_index(index, 60))
        return out.value != 0 if found else None

    def mob(self) -> Optional[Mob]:
        """The man-overboard mark; None when nobody has raised an alarm."""
        out, found = self._filled(_native.Mob, "tlm_view_get_mob")
        return Mob(out.latitude, out.longitude, out.name.decode("ascii", "replace")) if found else None


def _number(number: SupportsIndex) -> int:
    # A bool is an int too, but nobody means channel or boat 1 by it.
    if isinstance(number, bool) or not hasattr(number, "__index__"):
        raise TypeError(f"a number, a name or an object, not {number!r}")
    return operator.index(number)
