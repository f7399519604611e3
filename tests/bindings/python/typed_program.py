"""What a typed program may and may not say. Checking it by mypy is the test; it is not run.

Each "type: ignore" stands where a mistake must be found: one that is not needed is an error too.
"""

import datetime
from typing import Optional

import tallowmere


def use() -> None:
    speed: Optional[float] = tallowmere.get(tallowmere.ChannelId.BSP)
    for row in tallowmere.samples(["BSP", "AWA"], count=1, ages=True):
        time: datetime.datetime = row["time"]
        value = row["BSP"]
        if value is not None and value > 6:
            print(time.year, value + 1)
        if row["BSP age"] is not None:
            print(row["BSP age"] + 1)
        row["AWA"] + 1  # type: ignore[operator]
        row["time"] + 1  # type: ignore[operator]
    speed + 1  # type: ignore[operator]
    tallowmere.set("BSP", "6.4")  # type: ignore[arg-type]
