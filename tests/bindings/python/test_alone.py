"""Programs that meet no section but their own: no section, sections that go. And the package."""

import os

from support import LIBRARIES, ROOT, Case, run, run_alone


class WithoutASection(Case):
    def test_the_catalogue_answers_and_reading_makes_none(self) -> None:
        done = run_alone(
            """
import section, tallowmere as t
assert t.section() is t.Section.NONE
assert t.get('BSP') is None and t.read('BSP').freshness is t.Freshness.NONE
assert t.channel('BSP').unit == 'kt' and t.boats() == [] and t.mob() is None
assert t.system_variable(0) is None and t.system_integer(6) is None and t.system_flag(0) is None
assert [row['BSP'] for row in t.samples(['BSP'], 0, 2)] == [None, None]
assert not t.read_group(['BSP']).is_of_one_moment and not t.is_replay()
assert not section.exists()
"""
        )
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def test_the_first_write_makes_one_and_is_read_at_once(self) -> None:
        done = run_alone(
            """
import tallowmere as t
assert t.get('BSP') is None
assert t.set('BSP', 6.4) and t.get('BSP') == 6.4
assert t.section() is t.Section.ATTACHED
"""
        )
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def test_a_closed_view_is_the_catalogue(self) -> None:
        done = run_alone(
            """
import tallowmere as t
t.set('BSP', 6.4)
with t.View() as view:
    assert view.get('BSP') == 6.4
view.close()
assert view.get('BSP') is None and view.channel('BSP').name == 'BSP' and t.get('BSP') == 6.4
"""
        )
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def test_a_section_that_goes_is_noticed(self) -> None:
        code = """
import tallowmere as t
from support import Writer
with Writer("tallowmere.set('BSP', 6.4)"):
    assert t.section() is t.Section.ATTACHED and t.get('BSP') == 6.4
assert t.section() is t.Section.GONE and t.get('BSP') is None
writer = Writer("tallowmere.set('BSP', 7.4)")
assert t.section() is t.Section.ATTACHED and t.get('BSP') == 7.4
writer.kill()
assert t.section() is t.Section.GONE and t.get('BSP') is None
assert t.set('BSP', 8.4) and t.get('BSP') == 8.4
"""
        done = run_alone(code)
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))


class HostileSection(Case):
    def test_no_bytes_make_anything_fail(self) -> None:
        done = run_alone(
            """
import layout, random, section, tallowmere as t
random.seed(1)
t.set('BSP', 6.4)
for junk in (random.randbytes, random.randbytes, random.randbytes, lambda n: b'\\xff' * n, bytes):
    with section.opened() as memory:
        memory.write(junk(layout.SIZE))
    for channel in t.channels():
        [channel.name, channel.long_name, channel.unit, channel.timeout, channel.precision, channel.plausible_range]
        assert t.find_channel(channel.name) is not None or channel.name == ''
        for boat in (0, 1, 2, 50, 99):
            assert isinstance(channel.get(boat), (float, type(None)))
            channel.read(boat)
            channel.set(random.random(), boat) if channel.number else None
    for number in range(100):
        boat = t.boat(number)
        [boat.name, boat.mmsi, boat.colour, boat.is_in_use, t.find_boat(boat.name), boat.read_group(range(414))]
    [t.system_variable(i) for i in range(80)], [t.system_integer(i) for i in range(13)]
    [t.system_flag(i) for i in range(60)], t.mob(), t.boats(), list(t.samples([1], 0, 2, ages=True))
"""
        )
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))


class Libraries(Case):
    def test_are_looked_for_in_whole_folders_of_a_windows_path_only(self) -> None:
        done = run(
            "from tallowmere._library import _folders_of_windows_path as folders\n"
            + r"path = r';.;bin;..\bin;C:;C:bin;\bin;/bin;C:\Tools;;D:/sail;\\server\share\bin;'"
            + "\nprint(*folders(path), sep='\\n')"
        )
        self.assertEqual((done.stderr, done.stdout), ("", "C:\\Tools\nD:/sail\n\\\\server\\share\\bin\n"))

    def test_are_found_in_a_folder_that_is_named_from_the_current_one(self) -> None:
        view_folder = LIBRARIES.split(os.pathsep)[1]
        done = run(
            f"import os; os.chdir({view_folder!r})\nimport tallowmere as t; t.get('BSP')", TALLOWMERE_LIBRARY_PATH="."
        )
        self.assertEqual((done.stderr, done.returncode), ("", 0))


class Package(Case):
    def test_has_the_version_of_the_libraries(self) -> None:
        project = (ROOT / "bindings/python/pyproject.toml").read_text(encoding="utf-8")
        self.assertIn(f'\nversion = "{os.environ["TALLOWMERE_VERSION"]}"\n', project)
