"""docs/python.md: its code runs and prints what it says. What needs pandas is in tables_test.py."""

import re

from support import ROOT, Case, run_alone

_BLOCK = re.compile(r"^```python( pandas)?\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def code(with_pandas: bool) -> str:
    """The document's blocks of code, those with pandas or those without."""
    text = (ROOT / "docs/python.md").read_text(encoding="utf-8")
    return "\n".join(code for pandas, code in _BLOCK.findall(text) if bool(pandas) == with_pandas)


def check(case: Case, blocks: str) -> None:
    # What each print says in its comment; rounds of a loop are parted by semicolons.
    said = [line for comment in re.findall(r"print\(.*?# (.*)", blocks) for line in comment.split("; ")]
    done = run_alone(blocks)
    case.assertEqual(done.stderr, "")
    case.assertEqual(done.stdout.splitlines(), said)
    case.assertGreater(len(said), 0)


class Document(Case):
    def test_does_what_it_says(self) -> None:
        check(self, code(with_pandas=False))
