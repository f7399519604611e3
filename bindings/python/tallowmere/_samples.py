"""Values at regular times, as rows of a table."""

import datetime
import itertools
import math
import time
from typing import Dict, Iterator, List, Literal, Optional, Sequence, Union, overload

from . import _client
from ._view import BoatLike, ChannelLike, Reading, View

LONGEST_INTERVAL = 86400


class Sample(Dict[str, Union[datetime.datetime, float, None]]):
    """The moment under "time", then a value (or None) for each channel under its name."""

    @overload
    def __getitem__(self, column: Literal["time"]) -> datetime.datetime: ...  # type: ignore
    @overload
    def __getitem__(self, column: str) -> Optional[float]: ...
    def __getitem__(self, column: str) -> Union[datetime.datetime, float, None]:
        return super().__getitem__(column)


def samples(
    view: View,
    channels: Sequence[ChannelLike],
    interval: float,
    count: Optional[int],
    boat: BoatLike,
    stale: bool,
    ages: bool,
) -> Iterator[Sample]:
    channels = view._channel_list(channels)
    numbers = view._channel_numbers(channels)
    interval = _client.checked_float(interval, "the interval is a number")
    if not 0 <= interval <= LONGEST_INTERVAL:
        raise ValueError(f"the interval is 0 to {LONGEST_INTERVAL} seconds, not {interval}")
    if count is not None:
        count = _client.checked_whole(count, "the count is a whole number or None")
        if count < 0:
            raise ValueError(f"the count is 0 or more, not {count}")
    names = [_column(view, channel) for channel in channels]
    columns = ["time", *names, *(f"{name} age" for name in names if ages)]
    if len(set(columns)) != len(columns):
        raise ValueError(f"two columns would have the same name: {', '.join(columns)}")
    number = view.boat(boat).number
    # A generator of its own, so that mistakes are told at the call and not at the first row.
    return _rows(view, numbers, names, interval, count, number, stale, ages)


def _column(view: View, channel: ChannelLike) -> str:
    """As the caller calls it, else by its short name."""
    if isinstance(channel, str):
        return channel
    found = view.channel(channel)
    return found.name or found.long_name


def _rows(
    view: View,
    numbers: List[int],
    names: List[str],
    interval: float,
    count: Optional[int],
    boat: int,
    stale: bool,
    ages: bool,
) -> Iterator[Sample]:
    start = time.perf_counter()  # monotonic() goes by steps of 16 ms on Windows before Python 3.13
    tick = 0
    for done in itertools.count():
        if count is not None and done >= count:
            return
        time.sleep(max(0.0, start + tick * interval - time.perf_counter()))
        group = view.read_group(numbers, boat)
        row = Sample(time=group.moment)
        row.update((name, _value(reading, stale)) for name, reading in zip(names, group.readings))
        if ages:
            row.update((f"{name} age", reading.age) for name, reading in zip(names, group.readings))
        yield row
        # Ticks that passed while the caller was busy are left out, not caught up.
        passed = math.floor((time.perf_counter() - start) / interval) if interval > 0 else 0
        tick = max(tick, passed) + 1


def _value(reading: Reading, stale: bool) -> Optional[float]:
    return reading.value if stale else reading.current
