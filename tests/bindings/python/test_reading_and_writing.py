"""What is written is read, by this program and by others."""

import datetime
import decimal
import fractions
import math
import sys
import threading
import unittest.mock

import tallowmere
from support import Case, Writer, make_older, put_boat_name, put_stamp, run
from tallowmere import ChannelId, Freshness


def days(seconds: float) -> float:
    return seconds / 86400


class Values(Case):
    def setUp(self) -> None:
        for channel in (ChannelId.BSP, ChannelId.AWA, ChannelId.TWIST):
            tallowmere.set(channel, None)

    def test_a_written_value_is_read_with_its_age(self) -> None:
        self.assertIs(tallowmere.set("BSP", 6.4), True)
        reading = tallowmere.read("BSP")
        self.assertEqual(reading.value, 6.4)
        self.assertEqual(reading.current, 6.4)
        self.assertIs(reading.freshness, Freshness.FRESH)
        self.assertEqual((reading.channel, reading.source), (1, 1))
        self.assertIsNotNone(reading.age)
        self.assertGreaterEqual(reading.age, 0)
        self.assertEqual(reading.stamp.tzinfo, datetime.timezone.utc)
        self.assertEqual(tallowmere.get("BSP"), 6.4)

    def test_no_value_is_none(self) -> None:
        self.assertEqual(
            tallowmere.read("BSP"), tallowmere.Reading(None, None, Freshness.NONE, 1, 1, None)
        )
        self.assertIsNone(tallowmere.get("BSP"))
        self.assertIsNone(tallowmere.read("BSP").current)

    def test_none_and_the_number_of_no_value_clear(self) -> None:
        for cleared in (None, 32767.0):
            tallowmere.set("BSP", 6.4)
            self.assertIs(tallowmere.set("BSP", cleared), True)
            self.assertIsNone(tallowmere.get("BSP"))

    def test_doubles_come_back_bit_for_bit(self) -> None:
        for value in (0.0, -0.0, 0.1, math.pi, 5e-324, 1.7976931348623157e308, -math.inf):
            tallowmere.set("BSP", value)
            read = tallowmere.get("BSP")
            self.assertEqual((read, math.copysign(1, read)), (value, math.copysign(1, value)))
        tallowmere.set("BSP", math.nan)
        self.assertTrue(math.isnan(tallowmere.get("BSP")))

    def test_what_is_no_number_is_not_written(self) -> None:
        tallowmere.set("BSP", 6.4)
        for value in ("7.4", True, b"7", [7.4], 7j):
            with self.assertRaisesRegex(TypeError, "^a value is a number or None, not "):
                tallowmere.set("BSP", value)
        self.assertEqual(tallowmere.get("BSP"), 6.4)
        for value in (10**400, -(10**400), 10**5000, decimal.Decimal("1e400"), decimal.Decimal("sNaN")):
            with self.assertRaisesRegex(ValueError, "^a value is a number or None, and no float can hold this one$"):
                tallowmere.set("BSP", value)
        self.assertEqual(tallowmere.get("BSP"), 6.4)

    def test_any_real_number_is_written(self) -> None:
        for value in (7.5, fractions.Fraction(15, 2), decimal.Decimal("7.5")):
            tallowmere.set("BSP", None)
            tallowmere.set("BSP", value)
            self.assertEqual(tallowmere.get("BSP"), 7.5)
        for value in (10**300, decimal.Decimal("-Infinity")):
            tallowmere.set("BSP", value)
            self.assertEqual(tallowmere.get("BSP"), float(value))

    def test_a_value_older_than_its_time_out_is_stale(self) -> None:
        tallowmere.set("BSP", 6.4)
        make_older(ChannelId.BSP, 12)
        reading = tallowmere.read("BSP")
        self.assertEqual(reading.value, 6.4)
        self.assertTrue(reading.is_stale)
        self.assertIsNone(reading.current)
        self.assertGreaterEqual(reading.age, 12)
        self.assertEqual(tallowmere.get("BSP"), 6.4)

    def test_a_channel_without_a_time_out_never_goes_stale(self) -> None:
        tallowmere.set("Twist", 4)
        make_older(ChannelId.TWIST, 1e6)
        reading = tallowmere.read("Twist")
        self.assertIs(reading.freshness, Freshness.TIMELESS)
        self.assertEqual(reading.current, 4)

    def test_no_stamp_breaks_a_reading(self) -> None:
        tallowmere.set("BSP", 6.4)
        for stamp in (-(2**63), -1, 0, 1, 2**62, 2**63 - 2, 2**63 - 1):
            put_stamp(ChannelId.BSP, stamp)
            reading = tallowmere.read("BSP")
            self.assertIn(reading.value, (None, 6.4))

    def test_angles_are_brought_into_range_and_implausible_values_clear(self) -> None:
        tallowmere.set("AWA", 190)
        self.assertEqual(tallowmere.get("AWA"), -170)
        tallowmere.set("AWS", 20)
        self.assertIs(tallowmere.set("AWS", 200), True)
        self.assertIsNone(tallowmere.get("AWS"))

    def test_other_boats_keep_some_channels_only(self) -> None:
        self.assertIs(tallowmere.set("BSP", 5.5, boat=7), True)
        self.assertEqual(tallowmere.get("BSP", boat=7), 5.5)
        self.assertIs(tallowmere.set("User 0", 1, boat=7), False)
        self.assertIsNone(tallowmere.get("User 0", boat=7))

    def test_the_own_boats_fix_is_dropped_although_the_answer_is_true(self) -> None:
        self.assertIs(tallowmere.set("Lat", 54.5), True)
        self.assertIsNone(tallowmere.get("Lat"))

    def test_time_spans_are_days(self) -> None:
        tallowmere.set("TmToGun", days(90))
        self.assertEqual(tallowmere.get("TmToGun"), days(90))

    def test_a_group_is_of_one_moment(self) -> None:
        tallowmere.set("BSP", 6.4)
        group = tallowmere.read_group(["BSP", ChannelId.AWA])
        self.assertIs(group.is_of_one_moment, True)
        self.assertEqual([reading.value for reading in group.readings], [6.4, None])
        self.assertEqual(tallowmere.read_group([]).readings, ())

    def test_the_clock_is_not_written(self) -> None:
        with self.assertRaises(ValueError):
            tallowmere.set(0, 1.0)

    def test_threads_share_a_view(self) -> None:
        tallowmere.set("BSP", 6.4)
        wrong = []

        def look() -> None:
            for _ in range(300):
                if tallowmere.get("BSP") != 6.4 or tallowmere.channel("AWS").unit != "kt":
                    wrong.append(1)

        threads = [threading.Thread(target=look) for _ in range(4)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(wrong, [])


class Names(Case):
    def test_the_constants_are_the_channels(self) -> None:
        self.assertEqual([int(constant) for constant in ChannelId], list(range(414)))
        for constant in ChannelId:
            name = tallowmere.channel(constant).name
            letters = "".join(letter for letter in name.upper() if letter.isalnum() or letter == "_")
            if constant and letters == name.upper():
                self.assertEqual(constant.name, name.upper())

    def test_a_channel_is_found_by_number_constant_short_and_long_name(self) -> None:
        baro = tallowmere.channel("Baro")
        self.assertEqual(baro.number, 16)
        self.assertEqual(baro.long_name, "Barometer")
        self.assertEqual(baro.unit, "mbar")
        self.assertEqual(baro.timeout, 120)
        self.assertEqual(baro.precision, 1)
        self.assertIsNone(baro.plausible_range)
        self.assertIs(baro.is_kept_for_other_boats, True)
        for other in (16, ChannelId.BARO, "Barometer", baro):
            self.assertEqual(tallowmere.channel(other), baro)
        self.assertEqual(repr(baro), "<Channel 16 Baro>")
        self.assertEqual(tallowmere.channel("AWS").plausible_range, (0, 150))
        self.assertIsNone(tallowmere.channel("Twist").timeout)
        self.assertIsNone(tallowmere.channel("Alt 0").precision)
        self.assertEqual(len({*tallowmere.channels()}), 414)

    def test_what_stands_for_nothing_is_refused(self) -> None:
        for nothing in (-1, 414, 65536 + 1, 2**70, "bsp", "", "BSP\0", "\ud800"):
            with self.assertRaises(tallowmere.UnknownChannel):
                tallowmere.read(nothing)
        for nothing in (-1, 100, 65536, "nobody", ""):
            with self.assertRaises(tallowmere.UnknownBoat):
                tallowmere.read("BSP", nothing)
        for number in (1.5, True, None, b"BSP"):
            with self.assertRaisesRegex(TypeError, "^a number, a name or an object, not "):
                tallowmere.get(number)
            with self.assertRaisesRegex(TypeError, "^a number, a name or an object, not "):
                tallowmere.get("BSP", number)
        for find in (tallowmere.find_channel, tallowmere.find_boat):
            with self.assertRaisesRegex(TypeError, "^a name is a text, not 5$"):
                find(5)
        self.assertIsNone(tallowmere.find_channel("bsp"))
        self.assertIsNone(tallowmere.find_boat("nobody"))

    def test_a_name_in_another_case_is_told_the_right_one(self) -> None:
        for wrong, right in (("bsp", "; did you mean 'BSP'?"), ("barometer", "; did you mean 'Barometer'?"), ("x", "")):
            with self.assertRaises(tallowmere.UnknownChannel) as raised:
                tallowmere.get(wrong)
            self.assertEqual(str(raised.exception), f"no channel is named {wrong!r}{right}")

    def test_one_text_is_no_list_of_channels(self) -> None:
        for function in (tallowmere.read_group, tallowmere.boat(0).read_group, tallowmere.samples):
            for wrong in ("BSP", b"BSP", 5, None, tallowmere.channel("BSP")):
                with self.assertRaisesRegex(TypeError, "^channels is a list of channels, not "):
                    function(wrong)

    def test_user_channels_are_named_for_all(self) -> None:
        tallowmere.name_user_channel(3, "Möwe")
        self.assertEqual(tallowmere.channel("Möwe").number, ChannelId.USER_3)
        tallowmere.name_user_channel(3, "")
        self.assertEqual(tallowmere.channel(ChannelId.USER_3).name, "User 3")
        with self.assertRaises(IndexError):
            tallowmere.name_user_channel(32, "x")
        for refused in ("x" * 16, "a\0b", "\ud800"):
            with self.assertRaises(ValueError):
                tallowmere.name_user_channel(3, refused)
        with self.assertRaisesRegex(TypeError, "^a name is a text, not 5$"):
            tallowmere.name_user_channel(3, 5)
        for number in (3.5, "3", True, None):
            with self.assertRaisesRegex(TypeError, "^a user channel is a whole number, not "):
                tallowmere.name_user_channel(number, "x")

    def test_objects_do_what_the_functions_do(self) -> None:
        bsp = tallowmere.channel("BSP")
        self.assertIs(bsp.set(7.25), True)
        self.assertEqual(bsp.get(), 7.25)
        self.assertEqual(bsp.read().value, 7.25)
        other = tallowmere.boat(9)
        self.assertIs(other.set(bsp, 4.5), True)
        self.assertEqual(other.get("BSP"), 4.5)
        self.assertEqual(bsp.get(other), 4.5)
        self.assertEqual(other.read("BSP").value, 4.5)
        self.assertEqual(other.read_group([bsp]).readings[0].value, 4.5)
        put_boat_name(9, "Möwe")
        self.assertEqual(tallowmere.boat("Möwe"), other)
        self.assertEqual(tallowmere.get("BSP", "Möwe"), 4.5)
        self.assertEqual(other.name, "Möwe")
        self.assertIsNone(other.mmsi)
        self.assertEqual(other.colour, (144, 238, 144))
        self.assertTrue(other.is_in_use)
        self.assertEqual(repr(other), "<Boat 9 Möwe>")
        self.assertIn(other, tallowmere.boats())
        self.assertFalse(tallowmere.boat(99).is_in_use)


class Replay(Case):
    def test_is_told_by_the_own_boats_name(self) -> None:
        self.assertEqual(tallowmere.set("BSP", 1), True)
        self.assertIs(tallowmere.is_replay(), False)
        self.addCleanup(put_boat_name, 0, "")
        with tallowmere.View() as view:
            put_boat_name(0, "[REPLAY] Falcon")
            self.assertIs(tallowmere.is_replay(), True)
            self.assertIs(view.is_replay, True)
            put_boat_name(0, "Falcon")
            self.assertIs(view.is_replay, False)
        self.assertIs(view.is_replay, False, "closed")


class SystemValues(Case):
    def test_are_those_of_the_section(self) -> None:
        self.assertEqual(tallowmere.set("BSP", 1), True)
        self.assertEqual(tallowmere.system_variable(0), 15.85)
        self.assertIsNone(tallowmere.system_variable(12))
        self.assertEqual(tallowmere.system_integer(6), 5)
        self.assertIs(tallowmere.system_flag(0), True)
        self.assertIs(tallowmere.system_flag(2), False)
        for function, count in (
            (tallowmere.system_variable, 80),
            (tallowmere.system_integer, 13),
            (tallowmere.system_flag, 60),
        ):
            function(count - 1)
            for index in (-1, count, 65536):
                with self.assertRaises(IndexError):
                    function(index)
            for index in (1.5, "1", True, None):
                with self.assertRaisesRegex(TypeError, "^index is a whole number, not "):
                    function(index)

    def test_an_alarm_without_a_host_reaches_nobody(self) -> None:
        self.assertIs(tallowmere.set_mob(54.5, 10.25), False)
        self.assertIsNone(tallowmere.mob())
        for position in (("a", 1), (1, None), (True, 1)):
            with self.assertRaisesRegex(TypeError, "^a (latitude|longitude) is a number, not "):
                tallowmere.set_mob(*position)


class Samples(Case):
    def test_are_rows_of_one_moment_each(self) -> None:
        tallowmere.set("BSP", 6.4)
        tallowmere.set("AWA", None)
        rows = list(tallowmere.samples(["BSP", ChannelId.AWA], interval=0.01, count=3))
        self.assertEqual(len(rows), 3)
        for row in rows:
            self.assertEqual(list(row), ["time", "BSP", "AWA"])
            self.assertEqual((row["BSP"], row["AWA"]), (6.4, None))
        self.assertLess(rows[0]["time"], rows[2]["time"])

    def test_stale_values_are_left_out_unless_wanted(self) -> None:
        tallowmere.set("BSP", 6.4)
        make_older(ChannelId.BSP, 12)
        (row,) = tallowmere.samples(["BSP"], count=1, ages=True)
        self.assertIsNone(row["BSP"])
        self.assertGreaterEqual(row["BSP age"], 12)
        (row,) = tallowmere.samples(["BSP"], count=1, stale=True)
        self.assertEqual(row["BSP"], 6.4)

    def test_come_at_their_interval_where_a_clock_goes_by_steps(self) -> None:
        class Clock:
            now = 0.0

            def sleep(self, seconds: float) -> None:
                self.now += seconds

            def perf_counter(self) -> float:
                return self.now

            def monotonic(self) -> float:  # of Windows
                return math.floor(self.now * 64) / 64

        clock = Clock()
        module = sys.modules["tallowmere._samples"]  # by its name stands the function
        with unittest.mock.patch.object(module, "time", clock):
            self.assertEqual(len(list(tallowmere.samples(["BSP"], interval=0.001, count=1000))), 1000)
        self.assertAlmostEqual(clock.now, 0.999)

    def test_mistakes_are_told_at_the_call(self) -> None:
        for arguments, error, text in (
            ({"channels": ["bsp"]}, tallowmere.UnknownChannel, "no channel is named "),
            ({"boat": 100}, tallowmere.UnknownBoat, "boats are 0 to 99, not 100"),
            ({"channels": ["BSP", "BSP"]}, ValueError, "two columns would have the same name: "),
            ({"interval": -1}, ValueError, "the interval is 0 to 86400 seconds, not -1"),
            ({"interval": math.nan}, ValueError, "the interval is 0 to 86400 seconds, not nan"),
            ({"interval": 86401}, ValueError, "the interval is 0 to 86400 seconds, not 86401"),
            ({"interval": 10**400}, ValueError, "the interval is a number, and no float can hold this one"),
            ({"interval": "1"}, TypeError, "the interval is a number, not '1'"),
            ({"interval": None}, TypeError, "the interval is a number, not None"),
            ({"interval": True}, TypeError, "the interval is a number, not True"),
            ({"count": -1}, ValueError, "the count is 0 or more, not -1"),
            ({"count": "3"}, TypeError, "the count is a whole number or None, not '3'"),
            ({"count": 1.5}, TypeError, r"the count is a whole number or None, not 1\.5"),
            ({"count": True}, TypeError, "the count is a whole number or None, not True"),
        ):
            with self.subTest(arguments), self.assertRaisesRegex(error, f"^{text}"):
                tallowmere.samples(**{"channels": ["BSP"], **arguments})
        self.assertEqual(list(tallowmere.samples(["BSP"], count=0)), [])

    def test_any_iterable_names_the_channels(self) -> None:
        tallowmere.set("BSP", 6.4)
        (row,) = tallowmere.samples((name for name in ("BSP", "AWS")), interval=decimal.Decimal("0.1"), count=1)
        self.assertEqual(list(row), ["time", "BSP", "AWS"])


class AmongPrograms(Case):
    """Each in a program of its own, for this one holds the section."""

    def test_what_another_program_writes_is_read(self) -> None:
        with Writer("tallowmere.set('HDG', 123.0)"):
            self.assertEqual(tallowmere.get("HDG"), 123.0)
        tallowmere.set("HDG", 7.0)
        self.assertEqual(run("import tallowmere; assert tallowmere.get('HDG') == 7").returncode, 0)
