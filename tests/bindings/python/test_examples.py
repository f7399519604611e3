"""The example in Python, and that those in C, C++ and Python end cleanly on Ctrl-C."""

import csv
import subprocess
from typing import List

import console
import tallowmere
from support import EXAMPLES, LOGGER, Case, make_older, put_boat_name, run_program


class CsvLogger(Case):
    def log(self, *arguments: str) -> List[List[str]]:
        done = run_program([*LOGGER, *arguments])
        self.assertEqual((done.stderr, done.returncode), ("", 0))
        return list(csv.reader(done.stdout.splitlines()))

    def test_writes_rows_of_values(self) -> None:
        tallowmere.set("BSP", 6.4)
        tallowmere.set("TWA", None)
        header, *rows = self.log("BSP", "TWA", "--count", "2", "--interval", "0.01")
        self.assertEqual(header, ["time", "BSP", "TWA", "replay"])
        self.assertEqual([row[1:] for row in rows], [["6.4", "", ""]] * 2)
        for row in rows:
            self.assertRegex(row[0], r"^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}Z$")

    def test_leaves_out_what_is_stale(self) -> None:
        tallowmere.set("BSP", 6.4)
        make_older(tallowmere.ChannelId.BSP, 12)
        header, row = self.log("BSP", "--count", "1", "--ages")
        self.assertEqual(header, ["time", "BSP", "BSP age", "replay"])
        self.assertEqual(row[1], "")
        self.assertGreaterEqual(float(row[2]), 12)

    def test_marks_what_is_played(self) -> None:
        tallowmere.set("BSP", 6.4)
        put_boat_name(0, "[REPLAY] Falcon")
        self.addCleanup(put_boat_name, 0, "Falcon")
        self.assertEqual(self.log("BSP", "--count", "1")[1][1:], ["6.4", "replay"])

    def test_reads_other_boats(self) -> None:
        tallowmere.set("BSP", 5.5, 7)
        self.assertEqual(self.log("BSP", "--boat", "7", "--count", "1")[1][1], "5.5")

    def test_says_what_is_wrong(self) -> None:
        for arguments in (["bsp"], ["BSP", "--boat", "100"], ["BSP", "--interval", "-1"], ["BSP", "BSP"]):
            done = run_program([*LOGGER, *arguments, "--count", "1"])
            self.assertEqual((done.stdout, done.returncode), ("", 1))
            self.assertTrue(done.stderr.startswith("csv_logger: "))
            self.assertNotIn("Traceback", done.stderr)

    def test_ends_with_its_reader(self) -> None:
        logger = subprocess.Popen(
            [*LOGGER, "BSP", "--interval", "0.01"], stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8"
        )
        logger.stdout.readline()
        logger.stdout.close()
        self.assertEqual((logger.stderr.read(), logger.wait(60)), ("", 0))
        logger.stderr.close()


class StartCountdown(Case):
    def test_tells_the_gun_when_the_time_has_run_out(self) -> None:
        tallowmere.set("TmToGun", 1 / 86400)
        example = subprocess.Popen(
            [str(EXAMPLES / "start_countdown"), "--interval", "0.05"], stdout=subprocess.PIPE, encoding="utf-8"
        )
        self.assertTrue(example.stdout.readline().startswith("gun 0:01 "))
        tallowmere.set("TmToGun", 0)
        lines = []
        while not lines or not lines[-1].startswith("gun 0:00 "):
            lines.append(example.stdout.readline())
        after = [example.stdout.readline() for _ in range(3)]
        example.terminate()
        example.communicate(timeout=60)
        self.assertEqual(["GUN" in line for line in lines], [False] * (len(lines) - 1) + [True])
        self.assertEqual(["GUN" in line for line in after], [False] * 3)


class CtrlC(Case):
    def test_ends_every_example_cleanly(self) -> None:
        for command in (
            [*LOGGER, "BSP", "--interval", "0.2"],
            [str(EXAMPLES / "wind_display"), "--interval", "0.2"],
            [str(EXAMPLES / "start_countdown"), "--interval", "0.2"],
        ):
            with self.subTest(command=command):
                example = subprocess.Popen(
                    command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, encoding="utf-8", **console.OPTIONS
                )
                example.stdout.readline()
                console.press_ctrl_c(example)
                out, err = example.communicate(timeout=60)
                self.assertEqual((err, example.returncode), ("", 0))
                self.assertTrue(out == "" or out.endswith("\n"))
