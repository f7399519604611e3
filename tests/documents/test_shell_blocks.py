"""What the documents tell a reader to type, run by a reader with an empty home folder.

Each `sh` block is run here, or stands in NOT_RUN. CTest gives the folder of the build (TALLOWMERE_BUILD) and folders for
the section, settings and data.
"""

import json
import os
import re
import signal
import sqlite3
import subprocess
import tempfile
import time
import unittest
from pathlib import Path
from typing import Callable, List

ROOT = Path(__file__).resolve().parents[2]
PATIENCE = 60  # seconds, before something that should happen counts as not happening

# How often each document has a block that is run below, and what is not.
RUN = {"README.md": 1, "docs/commands.md": 1, "docs/getting-started.md": 4, "docs/recording.md": 1}
NOT_RUN = {
    "scripts/demo": "builds the project",
    "scripts/test": "builds and tests the project",
    "cmake --preset demo && cmake --build --preset demo": "in its place stands the build that is tested here",
}


def blocks(document: str, info: str) -> List[str]:
    text = (ROOT / document).read_text(encoding="utf-8")
    return re.findall(rf"^```{info}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)


def commands(block: str) -> List[str]:
    """The lines, without remarks."""
    return [line.split(" #")[0].rstrip() for line in block.splitlines() if line]


def wait_until(happened: Callable[[], bool]) -> None:
    end = time.monotonic() + PATIENCE
    while not happened():
        if time.monotonic() > end:
            raise AssertionError("nothing happened")
        time.sleep(0.05)


class Going:
    """A line that goes on until Ctrl-C, in a terminal of its own."""

    def __init__(self, reader: "Reader", line: str) -> None:
        self._process = subprocess.Popen(
            ["bash", "-c", f"{reader.exports}\n{line}"],
            cwd=reader.folder,
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            encoding="utf-8",
            start_new_session=True,
        )
        reader.addCleanup(self._kill)

    def _kill(self) -> None:
        if self._process.poll() is None:
            os.killpg(self._process.pid, signal.SIGKILL)
        self._process.communicate()

    def read_until(self, text: str) -> None:
        assert self._process.stdout is not None
        line = " "
        while line and text not in line:
            line = self._process.stdout.readline()
        if not line:
            raise AssertionError(f"the output ends without {text!r}")

    def ctrl_c(self) -> str:
        """The rest of what it prints; it must end well."""
        os.killpg(self._process.pid, signal.SIGINT)
        rest = self._process.communicate(timeout=PATIENCE)[0]
        if self._process.returncode != 0:
            raise AssertionError(f"ended with {self._process.returncode}: {rest}")
        return rest


class Reader(unittest.TestCase):
    maxDiff = None
    folder: Path
    exports: str

    @classmethod
    def setUpClass(cls) -> None:
        """Installs as the first page says, from a source tree that is built."""
        home = tempfile.TemporaryDirectory()
        cls.addClassCleanup(home.cleanup)
        cls.folder = Path(home.name)
        os.environ["HOME"] = home.name
        (cls.folder / "build").mkdir()
        (cls.folder / "build/demo").symlink_to(os.environ["TALLOWMERE_BUILD"])
        install, cls.exports = blocks("docs/getting-started.md", "sh")[:2]
        build, install = commands(install)
        assert build in NOT_RUN
        subprocess.run(["bash", "-ec", install], cwd=cls.folder, check=True, stdout=subprocess.DEVNULL)

    def run_line(self, line: str) -> str:
        done = subprocess.run(
            ["bash", "-ec", f"{self.exports}\n{line}"],
            cwd=self.folder,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            encoding="utf-8",
            timeout=PATIENCE,
        )
        self.assertEqual((done.stderr, done.returncode), ("", 0), line)
        return done.stdout

    def has_live_values(self) -> bool:
        done = subprocess.run(
            ["bash", "-c", f"{self.exports}\ntallowmere status --json"], stdout=subprocess.PIPE, encoding="utf-8"
        )
        return done.returncode == 0 and json.loads(done.stdout)["own_boat"]["live"] > 0

    def sail(self) -> Going:
        """The simulated race start of the first page."""
        simulation = Going(self, commands(blocks("docs/getting-started.md", "sh")[2])[0])
        wait_until(self.has_live_values)
        return simulation


class Documents(Reader):
    def test_every_block_is_run_or_said_not_to_be(self) -> None:
        run = {}
        for document in sorted([ROOT / "README.md", *ROOT.glob("docs/*.md"), *ROOT.glob("examples/*.md")]):
            name = str(document.relative_to(ROOT))
            count = sum(not set(commands(block)) <= set(NOT_RUN) for block in blocks(name, "sh"))
            if count:
                run[name] = count
        self.assertEqual(run, RUN)


class GettingStarted(Reader):
    def test_values_are_seen(self) -> None:
        _, watch = commands(blocks("docs/getting-started.md", "sh")[2])
        simulation = self.sail()
        look = Going(self, watch)
        look.read_until("BSP")
        look.ctrl_c()
        simulation.ctrl_c()

    def test_clients_are_built_without_cmake(self) -> None:
        for language in ("c", "cpp"):
            (self.folder / f"client.{language}").write_text(blocks("docs/getting-started.md", language)[0], "utf-8")
        for line in commands(blocks("docs/getting-started.md", "sh")[3]):
            self.run_line(f"export PKG_CONFIG_PATH=~/tallowmere/lib/pkgconfig\n{line}")
        for language in ("c", "cpp"):
            self.assertEqual(
                self.run_line(f"./{language}_client"), blocks("docs/getting-started.md", f"text {language}")[0]
            )


class Readme(Reader):
    def test_commands(self) -> None:
        feed, watch, get, status, record = commands(blocks("README.md", "sh")[1])
        self.run_line("tallowmere simulate --seconds 300 --speed 0 > recording.nmea")
        host = Going(self, feed)
        wait_until(self.has_live_values)
        look = Going(self, watch)
        look.read_until("BSP")
        look.ctrl_c()
        self.assertIn("Lat", self.run_line(get))
        self.assertIn("Own boat", self.run_line(status))
        recorder = Going(self, record)
        wait_until((self.folder / "race.sqlite").exists)
        recorder.ctrl_c()
        host.ctrl_c()


class Completion(Reader):
    def test_is_taken_by_the_shell(self) -> None:
        (block,) = blocks("docs/commands.md", "sh")
        (line,) = [line for line in commands(block) if "bash" in line]
        self.assertRegex(self.run_line(f"{line}\ncomplete -p tallowmere"), r"^complete .*tallowmere$")


class Recording(Reader):
    def rows(self) -> int:
        if not (self.folder / "race.sqlite").exists():
            return 0
        database = sqlite3.connect(self.folder / "race.sqlite")
        try:
            return int(database.execute("SELECT count(*) FROM value").fetchone()[0])
        except sqlite3.OperationalError:  # not laid out yet
            return 0
        finally:
            database.close()

    def lines(self, file: str) -> List[str]:
        path = self.folder / file
        return path.read_text(encoding="utf-8").splitlines() if path.exists() else []

    def test_records_plays_and_draws(self) -> None:
        record, record_text, play, plot = commands(blocks("docs/recording.md", "sh")[0])
        simulation = self.sail()
        for line, has_begun in (
            (record, lambda: self.rows() > 100),
            (record_text, lambda: len(self.lines("race.csv")) > 10),
        ):
            recorder = Going(self, line)
            wait_until(has_begun)
            recorder.ctrl_c()
        simulation.ctrl_c()
        # The document's race is longer than this one: ten minutes into it there is nothing left.
        self.assertIn("+600", play)
        self.assertIn("no values lie between --from and --to", self.run_line(f"! {play} 2>&1"))
        self.run_line(f"{play.replace('+600', '+1')} 2> said")
        self.run_line(f"{plot} 2> said")
        self.assertIn("<svg", (self.folder / "race.svg").read_text(encoding="utf-8"))
        self.ask_the_database()
        self.compare_the_text()

    def ask_the_database(self) -> None:
        database = sqlite3.connect(self.folder / "race.sqlite")
        self.addCleanup(database.close)
        readings, average = commands(blocks("docs/recording.md", "sql")[0])
        self.assertGreater(len(database.execute(readings).fetchall()), 0)
        self.assertEqual(len(database.execute(average).fetchall()), 1)
        (index,) = re.findall(r"`(CREATE INDEX [^`]+)`", (ROOT / "docs/recording.md").read_text(encoding="utf-8"))
        database.execute(index)

    def compare_the_text(self) -> None:
        (shown,) = blocks("docs/recording.md", "csv")
        header, *rows = self.lines("race.csv")
        self.assertEqual(header, shown.splitlines()[0])
        for row, kind in ((rows[0], "start"), (rows[1], "double"), (rows[-1], "end")):
            (like,) = [line for line in shown.splitlines() if f",{kind}," in line][:1]
            self.assertEqual(row.count(","), like.count(","))
            self.assertEqual(row.split(",")[6], kind)
            self.assertRegex(row, r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{7}Z,")
        (self.folder / "shown.csv").write_text(shown, encoding="utf-8")
        said = self.run_line("tallowmere play shown.csv --speed 0 2>&1")
        self.assertNotIn("left out", said)


if __name__ == "__main__":
    for line, reason in NOT_RUN.items():
        print(f"not run: {line} ({reason})", flush=True)
    unittest.main()
