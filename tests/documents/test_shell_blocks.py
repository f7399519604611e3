"""What the documents tell a reader to type, run by a reader with an empty home folder.

LINES has each line of each shell block, and the test that types it or why none does. FENCES tells of each other block
which test runs, builds or reads it. CTest gives the folder of the build (TALLOWMERE_BUILD) and folders for the section,
settings, data.
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
from typing import Callable, Iterator, List, NamedTuple, Tuple

ROOT = Path(__file__).resolve().parents[2]
PATIENCE = 60  # seconds, before something that should happen counts as not happening

# Of each document how many blocks of each language there are, and the test that runs, builds or reads them.
HERE = "tests/documents/test_shell_blocks.py"
HOST = "tests/documents/CMakeLists.txt"
INSTALL = "tests/install/install_test.cmake"
SETTINGS = "tests/documents/settings_document_test.cpp"
NODE = "tests/bindings/node/document.test.js"
PYTHON = "tests/bindings/python/test_document.py"
FENCES = {
    "README.md": {"c": (1, INSTALL)},
    "docs/functions.md": {"c": (1, INSTALL)},
    "docs/getting-started.md": {"c": (1, INSTALL), "cmake": (1, INSTALL), "cpp": (1, INSTALL), "text": (2, INSTALL)},
    "docs/host.md": {"cmake": (1, HOST), "cpp": (1, HOST), "text": (2, HOST)},
    "docs/node.md": {"js": (6, NODE)},
    "docs/python.md": {"python": (7, PYTHON)},
    "docs/recording.md": {"csv": (1, HERE), "sql": (1, HERE)},
    "docs/settings.md": {"csv": (2, SETTINGS), "reg": (1, SETTINGS), "text": (7, SETTINGS), "xml": (2, SETTINGS)},
    "docs/view.md": {"c": (1, INSTALL), "cpp": (1, INSTALL)},
}


class Lines(NamedTuple):
    """Lines of a document, in its order, without remarks."""

    by: str  # the test that types them, by its name here or by its file; empty: none does
    why_not: str
    lines: Tuple[str, ...]


def typed_by(test: str, *lines: str) -> Lines:
    return Lines(test, "", lines)


def not_typed(why: str, *lines: str) -> Lines:
    return Lines("", why, lines)


_AS_ROOT = "tests/packages/linux installs the packages"
_BUILDS = "builds the project"
_FETCHES = "fetches from a registry"
_SYNOPSIS = "a synopsis"
_WINDOWS = "there is no Windows here"
EACH = "Reader.setUpClass"  # once for each class of tests
LINES = {
    "README.md": (
        not_typed(_BUILDS, "scripts/demo"),
        not_typed("builds and tests the project", "scripts/test"),
        typed_by(
            "Readme.test_commands",
            "tallowmere feed recording.nmea",
            "tallowmere watch BSP AWA AWS TWD",
            "tallowmere get Lat Lon --boat 3",
            "tallowmere status",
            "tallowmere record -o race.sqlite",
        ),
        not_typed(_BUILDS, "cmake --preset linux && cmake --build --preset linux"),
    ),
    "docs/building.md": (
        not_typed(
            _SYNOPSIS,
            "scripts/setup [build|test|bench|fuzz|package]",
            "scripts/test [PRESET ...]",
            "scripts/lint",
            "scripts/tidy [FILE ...]",
            "scripts/bench [BENCHMARK FLAGS]",
            "scripts/fuzz [SECONDS [TARGET ...]]",
            "scripts/demo [SECONDS]",
            "scripts/coverage [--missed]",
            "scripts/torture [--windows] [PART ...]",
            "scripts/wine PROGRAM.exe [ARGUMENT ...]",
            "scripts/package [--test] [SYSTEM ...]",
        ),
    ),
    "docs/calibration.md": (
        typed_by(
            "Calibration.test_commands_are_taken",
            "tallowmere calibration list",
            "tallowmere calibration show ITEM",
            "tallowmere calibration eval ITEM X [R]",
            "tallowmere calibration plot ITEM",
            "tallowmere calibration plot ITEM -o F",
            "tallowmere check [ITEM|FILE]",
        ),
    ),
    "docs/commands.md": (
        typed_by("Completion.test_is_taken_by_bash", "source <(tallowmere completion bash)"),
        typed_by("CompletionByZsh.test_is_taken", "source <(tallowmere completion zsh)"),
    ),
    "docs/getting-started.md": (
        not_typed(
            "in its place stands the build that is tested here", "cmake --preset demo && cmake --build --preset demo"
        ),
        typed_by(
            EACH,
            "cmake --install build/demo --prefix ~/tallowmere",
            "export PATH=~/tallowmere/bin:$PATH LD_LIBRARY_PATH=~/tallowmere/lib:$LD_LIBRARY_PATH",
        ),
        typed_by(
            "GettingStarted.test_values_are_seen",
            "tallowmere simulate | tallowmere feed -",
            "tallowmere watch BSP AWA AWS TWD",
        ),
        typed_by(
            "GettingStarted.test_clients_are_built_with_cmake",
            "cmake -S . -B build -G Ninja -DCMAKE_PREFIX_PATH=~/tallowmere",
            "cmake --build build",
            "build/c_client",
            "build/cpp_client",
        ),
        not_typed(
            _WINDOWS + "; " + INSTALL + " builds the same project for it",
            "cmake -S . -B build -G Ninja",
            "cmake --build build",
            r"build\c_client.exe",
            r"build\cpp_client.exe",
        ),
        not_typed(
            _WINDOWS,
            'cmake -S . -B build -G "Visual Studio 17 2022" -A x64',
            "cmake --build build --config Release",
            r"build\Release\c_client.exe",
            r"build\Release\cpp_client.exe",
        ),
        typed_by(
            "GettingStarted.test_clients_are_built_without_cmake",
            "cc client.c $(pkg-config --cflags --libs tallowmere) -o c_client",
            "c++ -std=c++17 client.cpp $(pkg-config --cflags --libs tallowmere) -o cpp_client",
        ),
        not_typed(INSTALL + " has another folder", r"set SDK=%LOCALAPPDATA%\Programs\Tallowmere"),
        typed_by(
            INSTALL,
            r'gcc client.c -I"%SDK%\include" -L"%SDK%\lib" -ltallowmere -o c_client.exe',
            r'g++ -std=c++17 client.cpp -I"%SDK%\include" -L"%SDK%\lib" -ltallowmere -o cpp_client.exe',
        ),
    ),
    "docs/node.md": (
        not_typed(
            _AS_ROOT,
            "sudo apt install ./libtallowmere1_*.deb ./libtallowmere-view1_*.deb ./tallowmere-node_*.deb",
            "npm install /usr/share/tallowmere/tallowmere-*.tgz",
        ),
        not_typed(_WINDOWS, r"npm install %LOCALAPPDATA%\Programs\Tallowmere\node\tallowmere-VERSION.tgz"),
        not_typed("goes with the next line", "npm pack ~/source/bindings/node"),
        not_typed(_FETCHES, "npm install ./tallowmere-*.tgz"),
    ),
    "docs/packaging.md": (
        not_typed(
            _SYNOPSIS,
            "scripts/package [--test] [linux|windows ...]",
            "tallowmere-VERSION-windows-x64-setup.exe [/S] [/ALLUSERS] [/D=FOLDER]",
        ),
        not_typed(
            _AS_ROOT,
            "sudo apt install ./libtallowmere1_*.deb ./libtallowmere-view1_*.deb ./libtallowmere-dev_*.deb"
            " ./tallowmere-tools_*.deb",
            "sudo apt install ./python3-tallowmere_*.deb ./tallowmere-node_*.deb",
        ),
    ),
    "docs/python.md": (
        not_typed(
            _AS_ROOT,
            "sudo apt install ./libtallowmere1_*.deb ./libtallowmere-view1_*.deb ./python3-tallowmere_*.deb",
            "pip install /usr/share/tallowmere/tallowmere-*.whl",
        ),
        not_typed(
            _WINDOWS, r"pip install %LOCALAPPDATA%\Programs\Tallowmere\python\tallowmere-VERSION-py3-none-any.whl"
        ),
        typed_by(
            "PythonPackage.test_is_built_from_the_source_tree",
            "python3 -m venv --system-site-packages boat",
            "boat/bin/pip install --no-build-isolation ./bindings/python",
        ),
        not_typed(_FETCHES, "pip install ./bindings/python"),
    ),
    "docs/recording.md": (
        typed_by(
            "Recording.test_records_plays_and_draws",
            "tallowmere record -o race.sqlite",
            "tallowmere record BSP AWA AWS -o race.csv",
            "tallowmere play race.sqlite --speed 4 --from +600",
            "tallowmere plot race.sqlite BSP TWD HDG -o race.svg",
        ),
    ),
    "docs/robustness.md": (
        not_typed(_BUILDS, "cmake --build build/fuzz --target slow_inputs && build/fuzz/fuzz/slow_inputs"),
    ),
    "examples/README.md": (
        typed_by(
            "Examples.test_are_built_and_run",
            "tallowmere simulate --seconds 180 | tallowmere feed -",
            "cmake -S examples -B build -G Ninja -DCMAKE_PREFIX_PATH=~/tallowmere",
            "cmake --build build",
            "build/wind_display --plain --count 1",
        ),
    ),
}


def lines_of(test: str) -> List[str]:
    return [line for all_ in LINES.values() for each in all_ if each.by == test for line in each.lines]


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


def fences(document: str) -> Iterator[Tuple[str, str]]:
    """What each opening fence says and the lines behind it. In a list, where no test would find it, the first begins
    with a space."""
    for indent, info, block in re.findall(r"^( *)```(.*)\n((?:.*\n)*?)\1```$", read(document), re.MULTILINE):
        yield indent + info, block


def is_typed(info: str) -> bool:
    return info.split(" ")[0] in ("sh", "bat", "zsh") or info == "text synopsis"


def blocks(document: str, info: str) -> List[str]:
    return [block for each, block in fences(document) if each == info]


def commands(block: str) -> List[str]:
    """The lines, without remarks."""
    return [re.split(r" #|  ", line)[0].rstrip() for line in block.splitlines() if line]


def prose(document: str) -> str:
    return re.sub(r"^```.*?^```$", "", read(document), flags=re.MULTILINE | re.DOTALL)


def spans(document: str) -> List[str]:
    """What stands between backquotes in the prose, on one line each."""
    return [" ".join(span.split()) for span in re.findall(r"`([^`]+)`", prose(document))]


def wait_until(happened: Callable[[], bool]) -> None:
    end = time.monotonic() + PATIENCE
    while not happened():
        if time.monotonic() > end:
            raise AssertionError("nothing happened")
        time.sleep(0.05)


class Going:
    """A line that goes on until Ctrl-C, in a terminal of its own."""

    def __init__(self, reader: "Reader", line: str) -> None:
        reader.typed.append(line)
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
        install, cls.exports = lines_of(EACH)
        subprocess.run(["bash", "-ec", install], cwd=cls.folder, check=True, stdout=subprocess.DEVNULL)

    def setUp(self) -> None:
        self.typed: List[str] = []

    def tearDown(self) -> None:
        """What LINES says of this test is true."""
        for line in self.lines():
            self.assertTrue(any(line in typed for typed in self.typed), f"not typed: {line}")

    def lines(self) -> List[str]:
        return lines_of(f"{type(self).__name__}.{self._testMethodName}")

    def run_line(self, line: str, before: str = "") -> str:
        """What it prints. `before` goes before it, in place of the exports of the first page where it is given."""
        self.typed.append(line)
        done = subprocess.run(
            ["bash", "-ec", f"{before or self.exports}\n{line}"],
            cwd=self.folder,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            encoding="utf-8",
            timeout=PATIENCE,
        )
        self.assertEqual((done.stderr, done.returncode), ("", 0), line)
        return done.stdout

    def build(self, lines: List[str], folder: str) -> None:
        """Without the PATH of the first page, by which CMake finds the library whatever the lines say."""
        for line in lines:
            self.run_line(line, before=f"cd {folder}")
        cache = (self.folder / folder / "build/CMakeCache.txt").read_text(encoding="utf-8")
        (found,) = re.findall(r"^tallowmere_DIR:PATH=(.*)$", cache, re.MULTILINE)
        self.assertTrue(found.startswith(f"{self.folder}/tallowmere/"), found)

    def has_live_values(self) -> bool:
        done = subprocess.run(
            ["bash", "-c", f"{self.exports}\ntallowmere status --json"], stdout=subprocess.PIPE, encoding="utf-8"
        )
        return done.returncode == 0 and json.loads(done.stdout)["own_boat"]["live"] > 0

    def sail(self, line: str = lines_of("GettingStarted.test_values_are_seen")[0]) -> Going:
        """The simulated race start of the first page, or another."""
        simulation = Going(self, line)
        wait_until(self.has_live_values)
        return simulation


class Documents(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls) -> None:
        for document, all_ in LINES.items():
            for each in all_:
                for line in each.lines if each.why_not else ():
                    print(f"{document}: not typed: {line} ({each.why_not})", flush=True)

    def test_each_line_is_known(self) -> None:
        self.assertEqual(set(LINES) - set(documents()), set())
        for document in documents():
            with self.subTest(document):
                shown = [line for info, block in fences(document) if is_typed(info) for line in commands(block)]
                self.assertEqual(shown, [line for each in LINES.get(document, ()) for line in each.lines])

    def test_the_tests_of_lines_are_there(self) -> None:
        """That those here type them they see themselves: Reader.tearDown."""
        for document, all_ in LINES.items():
            for by, _, lines in all_:
                if "/" in by:
                    infos = {info for info, block in fences(document) if set(commands(block)) & set(lines)}
                    for known in {Path(document).stem, *infos}:
                        self.assertIn(known, (ROOT / by).read_text(encoding="utf-8"))
                elif by:
                    case, test = by.split(".")
                    self.assertTrue(callable(getattr(globals()[case], test)), by)

    def test_every_other_block_is_known(self) -> None:
        found = {}
        for document in documents():
            languages = [info.split(" ")[0] for info, _ in fences(document) if not is_typed(info)]
            if languages:
                found[document] = {language: languages.count(language) for language in languages}
        known = {name: {language: count for language, (count, _) in all_.items()} for name, all_ in FENCES.items()}
        self.assertEqual(found, known)

    def test_the_tests_of_blocks_know_their_documents(self) -> None:
        for document, all_ in FENCES.items():
            for language, (_, test) in all_.items():
                known = f'blocks("{document}", "{language}")' if test == HERE else Path(document).stem
                self.assertIn(known, (ROOT / test).read_text(encoding="utf-8"))

    def test_whole_commands_stand_in_fences(self) -> None:
        for document in documents():
            command = r"(?:sudo|apt|npm|pip|python3|cmake|scripts/\w+|tallowmere)"
            self.assertNotRegex(prose(document), rf"\n( {{4,}}|\t){command} ", document)
            self.assertNotRegex(prose(document), rf"`{command} [^`]*\.(?:deb|whl|tgz)`", document)

    def test_the_prototypes_of_the_functions_are_the_headers(self) -> None:
        def plain(text: str) -> str:
            return " ".join(text.split())

        header = read("include/tallowmere/tallowmere.h")
        declared = [
            plain(each) for each in re.findall(r"^TALLOWMERE_API\s+([^;]*?)\s+TALLOWMERE_NOEXCEPT;", header, re.MULTILINE)
        ]
        self.assertEqual(len(declared), 11)
        shown = re.findall(r"^ {4}(\w+ \w+\([^)]*\))(?: {2,}.*)?$", prose("docs/functions.md"), re.MULTILINE)
        self.assertEqual(sorted(map(plain, shown)), sorted(declared))

    def test_no_table_has_a_gap(self) -> None:
        for document in documents():
            # A row behind an empty line is a head: dashes follow.
            self.assertNotRegex(read(document), r"\n\n\|.*\n(?!\|[-:| ]+\n)", document)

    def test_the_scripts_that_the_prose_names_are_there(self) -> None:
        for document in documents():
            for script in re.findall(r"`(scripts/[\w-]+)", prose(document)):
                self.assertTrue(os.access(ROOT / script, os.X_OK), f"{document}: {script}")


class GettingStarted(Reader):
    def test_values_are_seen(self) -> None:
        simulate, watch = self.lines()
        simulation = self.sail(simulate)
        look = Going(self, watch)
        look.read_until("BSP")
        look.ctrl_c()
        simulation.ctrl_c()

    def write_clients(self, folder: Path) -> None:
        for language in ("c", "cpp"):
            (folder / f"client.{language}").write_text(blocks("docs/getting-started.md", language)[0], "utf-8")

    def expect_printed(self, language: str, client: str, folder: str = ".") -> None:
        (said,) = blocks("docs/getting-started.md", f"text {language}")
        self.assertEqual(self.run_line(client, before=f"{self.exports}\ncd {folder}"), said)

    def test_clients_are_built_without_cmake(self) -> None:
        self.write_clients(self.folder)
        for language, build in zip(("c", "cpp"), self.lines()):
            self.run_line(build, before="export PKG_CONFIG_PATH=~/tallowmere/lib/pkgconfig")
            self.expect_printed(language, f"./{language}_client")

    def test_clients_are_built_with_cmake(self) -> None:
        project = self.folder / "project"
        project.mkdir()
        self.write_clients(project)
        (project / "CMakeLists.txt").write_text(blocks("docs/getting-started.md", "cmake")[0], "utf-8")
        *build, c_client, cpp_client = self.lines()
        self.build(build, "project")
        self.expect_printed("c", c_client, "project")
        self.expect_printed("cpp", cpp_client, "project")


class Examples(Reader):
    def test_are_built_and_run(self) -> None:
        simulate, *build, wind_display = self.lines()
        shutil.copytree(ROOT / "examples", self.folder / "source/examples")
        self.build(build, "source")
        simulation = self.sail(simulate)
        self.assertIn("AWA", self.run_line(wind_display, before=f"{self.exports}\ncd source"))
        simulation.ctrl_c()


class PythonPackage(Reader):
    """By a Python that has what the document names, and nothing from a registry."""

    python: Path

    @classmethod
    def setUpClass(cls) -> None:
        parts = ["ensurepip", *BUILD_REQUIREMENTS]
        probe = f"import importlib.util as u, sys; sys.exit(None in list(map(u.find_spec, {parts})))"
        pythons = [Path(folder, "python3") for folder in [*os.get_exec_path(), "/usr/bin"]]
        usable = [each for each in pythons if each.exists() and subprocess.run([each, "-c", probe]).returncode == 0]
        if not usable:
            raise unittest.SkipTest(f"no python3 has {', '.join(parts)}")
        cls.python = usable[0]
        super().setUpClass()

    def test_is_built_from_the_source_tree(self) -> None:
        shutil.copytree(
            ROOT / "bindings/python",
            self.folder / "bindings/python",
            ignore=shutil.ignore_patterns("build", "*.egg-info", "__pycache__"),
        )
        own = f"export PATH={self.python.parent}:$PATH PIP_NO_INDEX=1 PIP_DISABLE_PIP_VERSION_CHECK=1"
        for line in self.lines():
            self.run_line(line, before=own)
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
        for line in self.lines():
            given = line
            for word, argument in (("[ITEM|FILE]", "Bsp"), ("ITEM", "Bsp"), ("X [R]", "5 10"), ("-o F", "-o bsp.svg")):
                given = given.replace(word, argument)
            self.run_line(f"{given} 2>said")
            self.typed.append(line)  # with arguments in place of their names
        self.assertIn("<svg", (self.folder / "bsp.svg").read_text(encoding="utf-8"))


class Readme(Reader):
    def test_commands(self) -> None:
        feed, watch, get, status, record = self.lines()
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


class Prose(Reader):
    """Commands that stand in a sentence."""

    def test_the_build_is_installed(self) -> None:
        line = "cmake --install build/linux --prefix DIR"
        self.assertIn(line, spans("README.md"))
        (self.folder / "build/linux").symlink_to(os.environ["TALLOWMERE_BUILD"])
        self.run_line(line)
        self.assertTrue((self.folder / "DIR/include/tallowmere/tallowmere.h").exists())

    def test_a_value_is_written(self) -> None:
        line = "tallowmere set BSP 6.4"
        self.assertIn(line, spans("docs/getting-started.md"))
        self.assertIn("is gone when this command ends", self.run_line(f"{line} 2>&1"))

    def test_commands_and_options_are_the_programs(self) -> None:
        for span in sorted({span for document in documents() for span in spans(document)}):
            command = re.match(r"tallowmere (?:calibration )?[a-z]+", span)
            if command:
                known = self.run_line(f"{command[0]} --help")
                for option in re.findall(r"--[a-z-]+", span):
                    self.assertIn(f" {option}", known, span)


class Completion(Reader):
    def test_is_taken_by_bash(self) -> None:
        (line,) = self.lines()
        self.assertRegex(self.run_line(f"{line}\ncomplete -p tallowmere"), r"^complete .*tallowmere$")


@unittest.skipIf(shutil.which("zsh") is None, "zsh is not installed")
class CompletionByZsh(Reader):
    def test_is_taken(self) -> None:
        (line,) = self.lines()
        script = f"autoload -U compinit\ncompinit -u -D\n{line}\nprint $_comps[tallowmere]\n"
        self.assertEqual(self.run_line(f"zsh -f <<'END'\n{script}END"), "_tallowmere\n")


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

    def lines_of_file(self, file: str) -> List[str]:
        path = self.folder / file
        return path.read_text(encoding="utf-8").splitlines() if path.exists() else []

    def test_records_plays_and_draws(self) -> None:
        record, record_text, play, plot = self.lines()
        simulation = self.sail()
        for line, has_begun in (
            (record, lambda: self.rows() > 100),
            (record_text, lambda: len(self.lines_of_file("race.csv")) > 10),
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
        header, *rows = self.lines_of_file("race.csv")
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
    unittest.main()
