"""What the documents tell a reader to type, run by a reader with an empty home folder.

FENCES tells of each block of each document which test runs, builds or reads it; each line of a shell is run here, or
stands in NOT_RUN. CTest gives the folder of the build (TALLOWMERE_BUILD) and folders for the section, settings, data.
"""

import json
import os
import re
import shutil
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

# Of each document how many blocks of each language there are, and the test that runs, builds or reads them.
HERE = "tests/documents/test_shell_blocks.py"
HOST = "tests/documents/CMakeLists.txt"
INSTALL = "tests/install/install_test.cmake"
SETTINGS = "tests/documents/settings_document_test.cpp"
NODE = "tests/bindings/node/document.test.js"
PYTHON = "tests/bindings/python/test_document.py"
SYNOPSIS = "not run: a synopsis"
FENCES = {
    "README.md": {"c": (1, INSTALL), "sh": (3, HERE)},
    "docs/building.md": {"text": (1, SYNOPSIS)},
    "docs/calibration.md": {"text": (1, HERE)},
    "docs/commands.md": {"sh": (1, HERE), "zsh": (1, HERE)},
    "docs/functions.md": {"c": (1, INSTALL)},
    "docs/getting-started.md": {
        "bat": (3, INSTALL),
        "c": (1, INSTALL),
        "cmake": (1, INSTALL),
        "cpp": (1, INSTALL),
        "sh": (5, HERE),
        "text": (2, INSTALL),
    },
    "docs/host.md": {"cmake": (1, HOST), "cpp": (1, HOST), "text": (2, HOST)},
    "docs/node.md": {"bat": (1, HERE), "js": (6, NODE), "sh": (2, HERE)},
    "docs/packaging.md": {"sh": (1, HERE), "text": (2, SYNOPSIS)},
    "docs/python.md": {"bat": (1, HERE), "python": (7, PYTHON), "sh": (4, HERE)},
    "docs/recording.md": {"csv": (1, HERE), "sh": (1, HERE), "sql": (1, HERE)},
    "docs/robustness.md": {"sh": (1, HERE)},
    "docs/settings.md": {"csv": (2, SETTINGS), "reg": (1, SETTINGS), "text": (7, SETTINGS), "xml": (2, SETTINGS)},
    "docs/view.md": {"c": (1, INSTALL), "cpp": (1, INSTALL)},
    "examples/README.md": {"sh": (2, HERE)},
}

# Lines of `sh` and `bat` that no test types as they stand.
_BUILDS = "builds the project"
_AS_ROOT = "tests/packages/linux installs the packages"
_FETCHES = "fetches from a registry"
_WINDOWS = "there is no Windows here"
NOT_RUN = {
    "scripts/demo": _BUILDS,
    "scripts/test": "builds and tests the project",
    "cmake --preset linux && cmake --build --preset linux": _BUILDS,
    "cmake --preset demo && cmake --build --preset demo": "in its place stands the build that is tested here",
    "cmake --build build/fuzz --target slow_inputs && build/fuzz/fuzz/slow_inputs": _BUILDS,
    "sudo apt install ./libtallowmere1_*.deb ./libtallowmere-view1_*.deb ./libtallowmere-dev_*.deb"
    " ./tallowmere-tools_*.deb": _AS_ROOT,
    "sudo apt install ./python3-tallowmere_*.deb ./tallowmere-node_*.deb": _AS_ROOT,
    "sudo apt install ./libtallowmere1_*.deb ./libtallowmere-view1_*.deb ./python3-tallowmere_*.deb": _AS_ROOT,
    "sudo apt install ./libtallowmere1_*.deb ./libtallowmere-view1_*.deb ./tallowmere-node_*.deb": _AS_ROOT,
    "pip install /usr/share/tallowmere/tallowmere-*.whl": _AS_ROOT,
    "npm install /usr/share/tallowmere/tallowmere-*.tgz": _AS_ROOT,
    "pip install ./bindings/python": _FETCHES,
    "npm pack ~/source/bindings/node": "goes with the next line",
    "npm install ./tallowmere-*.tgz": _FETCHES,
    r"pip install %LOCALAPPDATA%\Programs\Tallowmere\python\tallowmere-VERSION-py3-none-any.whl": _WINDOWS,
    r"npm install %LOCALAPPDATA%\Programs\Tallowmere\node\tallowmere-VERSION.tgz": _WINDOWS,
    "cmake -S . -B build -G Ninja": "its like is run by " + INSTALL,
    r"build\c_client.exe": _WINDOWS,
    r"build\cpp_client.exe": _WINDOWS,
    'cmake -S . -B build -G "Visual Studio 17 2022" -A x64': _WINDOWS,
    "cmake --build build --config Release": _WINDOWS,
    r"build\Release\c_client.exe": _WINDOWS,
    r"build\Release\cpp_client.exe": _WINDOWS,
}


def documents() -> List[str]:
    found = [ROOT / "README.md"]
    for folder in ("docs", "examples", "bindings/node", "bindings/python"):
        found += sorted((ROOT / folder).glob("*.md"))
    return [str(document.relative_to(ROOT)) for document in found]


def read(document: str) -> str:
    return (ROOT / document).read_text(encoding="utf-8")


BUILD_REQUIREMENTS = re.findall(
    r'"([a-z]+)', re.findall(r"^requires = (.*)$", read("bindings/python/pyproject.toml"), re.MULTILINE)[0]
)


def blocks(document: str, info: str) -> List[str]:
    return re.findall(rf"^```{info}\n(.*?)^```$", read(document), re.MULTILINE | re.DOTALL)


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

    def run_lines(self, lines: List[str], before: str) -> None:
        for line in lines:
            self.run_line(f"{before}\n{line}")

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


class Documents(unittest.TestCase):
    maxDiff = None

    def test_every_block_is_known(self) -> None:
        found = {}
        for document in documents():
            # Those in a list too, which no test would find: their language begins with a space.
            fences = re.findall(r"^( *)```(.*)\n(?:.*\n)*?\1```$", read(document), re.MULTILINE)
            languages = [indent + (info.split() or [""])[0] for indent, info in fences]
            if languages:
                found[document] = {language: languages.count(language) for language in languages}
        known = {name: {language: count for language, (count, _) in all_.items()} for name, all_ in FENCES.items()}
        self.assertEqual(found, known)

    def test_the_tests_of_blocks_know_their_documents(self) -> None:
        for document, fences in FENCES.items():
            for _, test in fences.values():
                if test != SYNOPSIS:
                    self.assertIn(Path(document).stem, (ROOT / test).read_text(encoding="utf-8"))

    def test_what_is_not_run_is_there(self) -> None:
        lines = {
            line
            for document in documents()
            for language in ("sh", "bat")
            for block in blocks(document, language)
            for line in commands(block)
        }
        self.assertEqual(set(NOT_RUN) - lines, set())

    def test_whole_commands_stand_in_fences(self) -> None:
        for document in documents():
            text = re.sub(r"^```.*?^```$", "", read(document), flags=re.MULTILINE | re.DOTALL)
            command = r"(?:sudo|apt|npm|pip|python3|cmake|scripts/\w+|tallowmere)"
            self.assertNotRegex(text, rf"\n( {{4,}}|\t){command} ", document)
            self.assertNotRegex(text, rf"`{command} [^`]*\.(?:deb|whl|tgz)`", document)

    def test_no_table_has_a_gap(self) -> None:
        for document in documents():
            # A row behind an empty line is a head: dashes follow.
            self.assertNotRegex(read(document), r"\n\n\|.*\n(?!\|[-:| ]+\n)", document)


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
        build = commands(blocks("docs/getting-started.md", "sh")[4])
        self.run_lines(build, "export PKG_CONFIG_PATH=~/tallowmere/lib/pkgconfig")
        for language in ("c", "cpp"):
            self.assertEqual(
                self.run_line(f"./{language}_client"), blocks("docs/getting-started.md", f"text {language}")[0]
            )

    def test_clients_are_built_with_cmake(self) -> None:
        project = self.folder / "project"
        project.mkdir()
        for file, language in (("client.c", "c"), ("client.cpp", "cpp"), ("CMakeLists.txt", "cmake")):
            (project / file).write_text(blocks("docs/getting-started.md", language)[0], "utf-8")
        *build, c_client, cpp_client = commands(blocks("docs/getting-started.md", "sh")[3])
        self.run_lines(build, "cd project")
        for language, line in (("c", c_client), ("cpp", cpp_client)):
            self.assertEqual(
                self.run_line(f"cd project\n{line}"), blocks("docs/getting-started.md", f"text {language}")[0]
            )


class Examples(Reader):
    def test_are_built_and_run(self) -> None:
        simulate, build = blocks("examples/README.md", "sh")
        shutil.copytree(ROOT / "examples", self.folder / "source/examples")
        *build, wind_display = commands(build)
        self.run_lines(build, "cd source")
        simulation = Going(self, commands(simulate)[0])
        wait_until(self.has_live_values)
        self.assertIn("AWA", self.run_line(f"cd source\n{wind_display}"))
        simulation.ctrl_c()


class Python(Reader):
    def test_package_is_built_from_the_source_tree(self) -> None:
        """By a Python that has what the document names, and nothing from a registry."""
        parts = ["ensurepip", *BUILD_REQUIREMENTS]
        probe = f"import importlib.util as u, sys; sys.exit(None in list(map(u.find_spec, {parts})))"
        pythons = [Path(folder, "python3") for folder in [*os.get_exec_path(), "/usr/bin"]]
        usable = [each for each in pythons if each.exists() and subprocess.run([each, "-c", probe]).returncode == 0]
        if not usable:
            self.skipTest(f"no python3 has {', '.join(parts)}")
        shutil.copytree(
            ROOT / "bindings/python",
            self.folder / "bindings/python",
            ignore=shutil.ignore_patterns("build", "*.egg-info", "__pycache__"),
        )
        self.run_lines(
            commands(blocks("docs/python.md", "sh")[2]),
            f"export PATH={usable[0].parent}:$PATH PIP_NO_INDEX=1 PIP_DISABLE_PIP_VERSION_CHECK=1",
        )
        self.assertEqual(self.run_line("boat/bin/python -c 'import tallowmere; print(tallowmere.get(1))'"), "None\n")


class PythonRequirements(unittest.TestCase):
    def test_are_named(self) -> None:
        self.assertIn("wheel", BUILD_REQUIREMENTS)  # setuptools needs it, up to the version of Debian 12 and later
        for requirement in ("venv", *BUILD_REQUIREMENTS):
            self.assertIn(f"`python3-{requirement}`", read("docs/python.md"))


class Calibration(Reader):
    def test_commands_are_taken(self) -> None:
        folder = Path(os.environ["XDG_DATA_HOME"], "Tallowmere/calibration")
        folder.mkdir(parents=True, exist_ok=True)
        table = folder / "ZAN_CAL_Bsp.txt"
        table.write_text("0 10\n0 0 1\n20 0 3\n", encoding="utf-8")
        self.addCleanup(table.unlink)
        (synopsis,) = blocks("docs/calibration.md", "text synopsis")
        lines = [line.split("  ")[0] for line in synopsis.splitlines()]
        for word, given in (("[ITEM|FILE]", "Bsp"), ("ITEM", "Bsp"), ("X [R]", "5 10"), ("-o F", "-o bsp.svg")):
            lines = [line.replace(word, given) for line in lines]
        for line in lines:
            self.run_line(f"{line} 2>said")
        self.assertIn("<svg", (self.folder / "bsp.svg").read_text(encoding="utf-8"))


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

    def test_is_taken_by_zsh(self) -> None:
        if shutil.which("zsh") is None:
            self.skipTest("zsh is not installed")
        (block,) = blocks("docs/commands.md", "zsh")
        (self.folder / "completion.zsh").write_text(
            f"autoload -U compinit\ncompinit -u -D\n{block}print $_comps[tallowmere]\n", encoding="utf-8"
        )
        self.assertEqual(self.run_line("zsh -f completion.zsh"), "_tallowmere\n")


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
