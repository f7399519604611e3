"""What differs by system: where the libraries are, and how names are written."""

import os
import shutil
import tempfile
from pathlib import Path

import tallowmere
from support import LIBRARIES, ROOT, TELL_WHAT_IS_MISSING, WRITE_AND_READ, Case, run, run_alone

SYSTEM_PATH = os.environ["PATH"]


def copy_libraries(folder: Path) -> None:
    for part in LIBRARIES.split(os.pathsep):
        for library in Path(part).glob("tallowmere*.dll"):
            shutil.copy(library, folder)


class Libraries(Case):
    def assert_runs(self, code: str, **environment: object) -> None:
        done = run_alone(code, **environment)
        self.assertEqual((done.stdout, done.stderr, done.returncode), ("", "", 0))

    def test_missing_ones_are_told_with_what_was_tried(self) -> None:
        done = run(TELL_WHAT_IS_MISSING, TALLOWMERE_LIBRARY_PATH=r"C:\nowhere;C:\neither")
        self.assertEqual(
            done.stdout,
            "the library tallowmere_view could not be loaded. Tried:\n"
            "  C:\\nowhere\\tallowmere_view.dll: not there\n"
            "  C:\\neither\\tallowmere_view.dll: not there\n"
            "Install the Tallowmere libraries, or set TALLOWMERE_LIBRARY_PATH to the folder that holds "
            "tallowmere_view.dll.\n",
        )

    def test_one_that_is_no_library_is_told(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, "tallowmere_view.dll").write_text("no library")
            done = run(TELL_WHAT_IS_MISSING, TALLOWMERE_LIBRARY_PATH=folder)
        self.assertRegex(done.stdout, r"\\tallowmere_view\.dll: .+\nInstall")

    def test_are_found_beside_the_package(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            package = Path(folder, "tallowmere")
            shutil.copytree(ROOT / "bindings/python/tallowmere", package)
            copy_libraries(package)
            self.assert_runs(WRITE_AND_READ, PYTHONPATH=folder, TALLOWMERE_LIBRARY_PATH=None, PATH=SYSTEM_PATH)

    def test_are_found_on_path(self) -> None:
        path = rf"C:\nowhere;.;{LIBRARIES};{SYSTEM_PATH}"
        self.assert_runs(WRITE_AND_READ, TALLOWMERE_LIBRARY_PATH=None, PATH=path)

    def test_are_not_looked_for_in_the_current_folder(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            copy_libraries(Path(folder))
            code = f"import os; os.chdir({folder!r})\n{TELL_WHAT_IS_MISSING}\nos.chdir('..')"
            done = run(code, TALLOWMERE_LIBRARY_PATH=None, PATH=f".;;{SYSTEM_PATH}")
        self.assertIn("the library tallowmere_view could not be loaded", done.stdout)

    def test_a_folder_may_have_a_name_that_no_code_page_has(self) -> None:
        with tempfile.TemporaryDirectory(suffix=" \u00f6 \u0436 \u8239") as folder:
            copy_libraries(Path(folder))
            self.assert_runs(WRITE_AND_READ, TALLOWMERE_LIBRARY_PATH=folder)


class UserChannels(Case):
    def test_names_are_measured_and_limited_by_the_ansi_code_page(self) -> None:
        longest = "\u00f6" + "x" * (15 - len("\u00f6".encode("mbcs")))
        tallowmere.name_user_channel(4, longest)
        self.assertEqual(tallowmere.channel(tallowmere.ChannelId.USER_4).name, longest)
        for refused in ("\u00f6" * 16, longest + "x", "\ud800"):
            with self.assertRaises(ValueError):
                tallowmere.name_user_channel(4, refused)
