#!/usr/bin/env python3
"""Logs channels as CSV, in Python: one row of one moment every second.

    csv_logger.py BSP TWA TWS --ages > race.csv

The first column is the time (UTC), the last one "replay" where a recording was being played and empty where the values
were live. A value that is not there, or that is older than its channel's time-out, is an
empty field: nothing is carried on from row to row. Ctrl-C ends the log after a whole row.
"""

import argparse
import csv
import datetime
import errno
import os
import signal
import sys
from typing import List, Union

import tallowmere

READER_HAS_GONE = errno.EINVAL if sys.platform == "win32" else errno.EPIPE


def parse_arguments() -> argparse.Namespace:
    parser = argparse.ArgumentParser(description="Logs channels as CSV to standard output.")
    parser.add_argument("channels", nargs="+", metavar="CHANNEL", help="short or long name, such as BSP")
    parser.add_argument("--boat", type=int, default=0, help="0, the own boat, to 99")
    parser.add_argument("--interval", type=float, default=1.0, metavar="SECONDS")
    parser.add_argument("--count", type=int, metavar="ROWS", help="end after so many rows")
    parser.add_argument("--ages", action="store_true", help="add each value's age in seconds")
    return parser.parse_args()


def field(value: Union[datetime.datetime, float, None]) -> str:
    if value is None:
        return ""
    if isinstance(value, datetime.datetime):
        return value.isoformat(timespec="milliseconds").replace("+00:00", "Z")
    return repr(value)


def log(arguments: argparse.Namespace) -> None:
    rows = tallowmere.samples(
        arguments.channels, arguments.interval, arguments.count, arguments.boat, ages=arguments.ages
    )
    columns: List[str] = ["time", *arguments.channels]
    if arguments.ages:
        columns += [f"{name} age" for name in arguments.channels]
    columns.append("replay")
    writer = csv.DictWriter(sys.stdout, columns, lineterminator="\n")
    writer.writeheader()
    for row in rows:
        fields = {column: field(value) for column, value in row.items()}
        writer.writerow({**fields, "replay": "replay" if tallowmere.is_replay() else ""})
        sys.stdout.flush()


def main() -> int:
    arguments = parse_arguments()
    signal.signal(signal.SIGINT, signal.default_int_handler)  # also when started in the background
    try:
        log(arguments)
    except KeyboardInterrupt:
        pass
    except (LookupError, ValueError, tallowmere.LibraryNotFound) as error:
        print(f"csv_logger: {error}", file=sys.stderr)
        return 1
    except OSError as error:
        if error.errno != READER_HAS_GONE:
            raise
        # Nothing more can be written, not even at the end.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
    return 0


if __name__ == "__main__":
    sys.exit(main())
