"""What differs by system: where the libraries are, and how names are written."""

import os
import shutil
import tempfile
from pathlib import Path

import tallowmere
from support import LIBRARIES, ROOT, TELL_WHAT_IS_MISSING, WRITE_AND_READ, Case, run, run_alone


class Libraries(Case):
    def test_missing_ones_are_told_with_what_was_tried(self) -> None:
        done = run(TELL_WHAT_IS_MISSING, TALLOWMERE_LIBRARY_PATH="/nowhere:/neither")
        self.assertEqual(
            done.stdout,
            "the library tallowmere_view could not be loaded. Tried:\n"
            + "".join(
                f"  {folder}/libtallowmere_view.so{end}: not there\n"
                for folder in ("/nowhere", "/neither")
                for end in (".1", "")
            )
            + "Install the Tallowmere libraries, or set TALLOWMERE_LIBRARY_PATH to the folder that holds "
            "libtallowmere_view.so.1.\n",
        )

    def test_one_that_is_no_library_is_told(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            Path(folder, "libtallowmere_view.so.1").write_text("no library")
            done = run(TELL_WHAT_IS_MISSING, TALLOWMERE_LIBRARY_PATH=folder)
        self.assertIn("libtallowmere_view.so.1: file too short", done.stdout)

    def test_are_found_beside_the_package_and_by_the_system(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            package = Path(folder, "tallowmere")
            shutil.copytree(ROOT / "bindings/python/tallowmere", package)
            for part in LIBRARIES.split(os.pathsep):
                for library in Path(part).glob("libtallowmere*.so.1"):
                    shutil.copy(library, package)
            done = run_alone(WRITE_AND_READ, PYTHONPATH=folder, TALLOWMERE_LIBRARY_PATH=None, LD_LIBRARY_PATH=None)
            self.assertEqual((done.stderr, done.returncode), ("", 0))
        done = run_alone(WRITE_AND_READ, TALLOWMERE_LIBRARY_PATH=None, LD_LIBRARY_PATH=LIBRARIES)
        self.assertEqual((done.stderr, done.returncode), ("", 0))


class UserChannels(Case):
    def test_names_are_measured_in_utf_8(self) -> None:
        tallowmere.name_user_channel(4, "ö" * 7)
        self.assertEqual(tallowmere.channel(tallowmere.ChannelId.USER_4).name, "ö" * 7)
        with self.assertRaises(ValueError):
            tallowmere.name_user_channel(4, "ö" * 8)
