#!/usr/bin/env python3
"""What the bench prints is read by other programs, and what breaks a limit must be seen."""

import contextlib
import io
import os
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "benchmarks"))

from documents import composed_name, wave_header
from figures import Group, alternate, fields, median, run_seconds, short, wake_ups


def end_of(group):
    """The exit status and the complaints with which a group ends."""
    complaints = io.StringIO()
    with contextlib.redirect_stderr(complaints):
        try:
            group.end()
        except SystemExit as end:
            return end.code, complaints.getvalue()
    return None, complaints.getvalue()


class Figures(unittest.TestCase):
    def test_figure_is_one_line_of_the_agreed_form(self):
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            Group("scan").figure("first", 0.0811, 0.0744, "s", "soxi")
        self.assertEqual(
            printed.getvalue(),
            "scan.first ours=0.0811 other=0.0744 unit=s with=soxi ratio=1.09\n",
        )

    def test_worst_round_stands_behind_the_ratio(self):
        printed = io.StringIO()
        with contextlib.redirect_stdout(printed):
            Group("play").figure("cpu", 0.8, 1.0, "s", "mpv", worst=0.914)
        self.assertEqual(
            printed.getvalue(), "play.cpu ours=0.800 other=1.00 unit=s with=mpv ratio=0.80 worst=0.91\n"
        )

    def test_ratio_above_its_limit_fails_the_group_and_one_at_it_does_not(self):
        group = Group("scan")
        with contextlib.redirect_stdout(io.StringIO()):
            group.figure("again", 1.0, 1.0, "s", "soxi", limit=1.0)
            self.assertEqual(end_of(group), (0, ""))
            group.figure("first", 3.2, 2.0, "s", "soxi", limit=1.5)
        self.assertEqual(end_of(group), (1, "scan.first: the ratio 1.60 is above 1.50\n"))

    def test_measures_run_in_turn(self):
        order = []
        ours, other = alternate(lambda: order.append("a"), lambda: order.append("b"), runs=3)
        self.assertEqual("".join(order), "ababab")
        self.assertEqual((len(ours), len(other)), (3, 3))

    def test_median_is_not_moved_by_one_slow_run(self):
        self.assertEqual(median([1.0, 90.0, 2.0, 1.5, 1.2]), 1.5)

    def test_values_keep_three_digits_that_count(self):
        texts = [short(value) for value in (0, 0.00123456, 0.081234, 1.0899, 12.3456, 40321.4)]
        self.assertEqual(texts, ["0", "0.00123", "0.0812", "1.09", "12.35", "40321"])

    def test_process_that_waits_is_woken_and_one_that_computes_uses_time(self):
        before = wake_ups(os.getpid())
        subprocess.run(["cat"], input=b"x" * 1_000_000, stdout=subprocess.PIPE, check=True)
        self.assertGreater(wake_ups(os.getpid()), before)
        used = run_seconds(os.getpid())
        self.assertEqual(sum(number % 7 for number in range(1_000_000)), 2_999_997)
        self.assertGreater(run_seconds(os.getpid()), used)

    def test_fields_read_by_name(self):
        self.assertEqual(fields("first=0.5 again=0.25\n"), {"first": 0.5, "again": 0.25})

    def test_wave_header_is_44_bytes_and_tells_the_size(self):
        header = wave_header(400, 16)
        self.assertEqual(len(header), 44)
        self.assertEqual(int.from_bytes(header[40:44], "little"), 800)

    def test_composed_name_has_fifteen_blanks_before_its_underscore(self):
        class Dice:
            randint = staticmethod(lambda low, high: low)
            randrange = staticmethod(lambda low, high: low)
            random = staticmethod(lambda: 0.0)
            choice = staticmethod(lambda options: options[-1])

        name = composed_name(3, Dice)
        self.assertEqual(name, "0001 0 Haddad 1003 1 1 2004 0 0 0 1 0 0  1 P_.wav")
        self.assertEqual(name.split("_")[0].count(" "), 15)


if __name__ == "__main__":
    unittest.main()
