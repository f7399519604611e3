"""docs/python.md: its code runs and prints what it says."""

import re

from support import ROOT, Case
from test_alone import run_alone

_BLOCK = re.compile(r"^```python( pandas)?\n(.*?)^```$", re.MULTILINE | re.DOTALL)


class Document(Case):
    def check(self, blocks: str) -> None:
        # What each print says in its comment; rounds of a loop are parted by semicolons.
        said = [line for comment in re.findall(r"print\(.*?# (.*)", blocks) for line in comment.split("; ")]
        done = run_alone(blocks)
        self.assertEqual(done.stderr, "")
        self.assertEqual(done.stdout.splitlines(), said)
        self.assertGreater(len(said), 0)

    def test_does_what_it_says(self) -> None:
        text = (ROOT / "docs/python.md").read_text(encoding="utf-8")
        self.check("\n".join(code for pandas, code in _BLOCK.findall(text) if not pandas))

    def test_makes_the_table_that_it_says(self) -> None:
        try:
            import pandas  # noqa: F401
        except ImportError:
            self.skipTest("pandas is not installed (python3-pandas)")
        text = (ROOT / "docs/python.md").read_text(encoding="utf-8")
        (code,) = (code for pandas, code in _BLOCK.findall(text) if pandas)
        self.check("import tallowmere\ntallowmere.set('BSP', 6.4)\n" + code)
