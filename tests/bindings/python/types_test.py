"""The package's type hints, by mypy: a CTest entry of its own, so that CTest tells when it is skipped."""

import importlib.util
import os
import sys

from support import ROOT, Case, run_program


class Types(Case):
    def test_hold(self) -> None:
        if importlib.util.find_spec("mypy") is None:
            self.skipTest("mypy is not installed (python3-mypy)")
        package = ROOT / "bindings/python"
        done = run_program(
            [
                *(sys.executable, "-m", "mypy", "--config-file", str(package / "pyproject.toml")),
                *("--cache-dir", os.devnull, str(package / "tallowmere")),
            ]
        )
        self.assertEqual(done.returncode, 0, done.stdout)
