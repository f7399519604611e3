"""Tables by pandas, which is optional: a CTest entry of its own, so that CTest tells when it is skipped."""

import importlib.util
import unittest

import tallowmere
import test_document
from support import Case


@unittest.skipIf(importlib.util.find_spec("pandas") is None, "pandas is not installed (python3-pandas)")
class Tables(Case):
    def test_are_made_of_samples(self) -> None:
        import pandas

        tallowmere.set("BSP", 6.4)
        tallowmere.set("AWA", None)
        table = pandas.DataFrame(tallowmere.samples(["BSP", "AWA"], interval=0.01, count=3))
        self.assertEqual(list(table.columns), ["time", "BSP", "AWA"])
        self.assertEqual(table["BSP"].tolist(), [6.4] * 3)
        self.assertTrue(table["AWA"].isna().all())
        self.assertEqual(str(table["time"].dt.tz), "UTC")
        self.assertEqual(list(table.set_index("time").astype(float).dtypes), [float, float])

    def test_are_what_the_document_says(self) -> None:
        test_document.check(
            self, "import tallowmere\ntallowmere.set('BSP', 6.4)\n" + test_document.code(with_pandas=True)
        )
