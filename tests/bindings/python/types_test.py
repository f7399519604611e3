"""The package's type hints, by mypy: a CTest entry of its own, so that CTest tells when it is skipped."""

import importlib.util
import os
import sys
import unittest
from pathlib import Path

from support import ROOT, Case, run_program


@unittest.skipIf(importlib.util.find_spec("mypy") is None, "mypy is not installed (python3-mypy)")
class Types(Case):
    def check(self, path: Path) -> None:
        settings = str(ROOT / "bindings/python/pyproject.toml")
        command = [sys.executable, "-m", "mypy", "--config-file", settings, "--cache-dir", os.devnull, str(path)]
        done = run_program(command, MYPYPATH=str(ROOT / "bindings/python"))
        self.assertEqual(done.returncode, 0, done.stdout)

    def test_hold(self) -> None:
        self.check(ROOT / "bindings/python/tallowmere")

    def test_serve_a_typed_program(self) -> None:
        self.check(Path(__file__).with_name("typed_program.py"))
