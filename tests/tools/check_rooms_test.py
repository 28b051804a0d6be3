#!/usr/bin/env python3
"""The check of the rooms must fail on what it forbids, and on nothing else."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parents[2] / "tools" / "check_rooms"


class CheckRooms(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name).resolve()
        self.write("src/lists/queue.cpp", '#include "store/disk.h"\n#include <vector>\n')

    def write(self, path, text):
        target = self.root / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text, encoding="utf-8")

    def check(self):
        return subprocess.run(
            [sys.executable, CHECK, self.root], capture_output=True, text=True, check=False
        )

    def assert_passes(self):
        result = self.check()
        self.assertEqual((result.returncode, result.stderr), (0, ""))

    def assert_fault(self, place):
        result = self.check()
        self.assertEqual(result.returncode, 1)
        self.assertEqual(len(result.stderr.splitlines()), 1, result.stderr)
        self.assertTrue(result.stderr.startswith(place), result.stderr)

    def test_edge_of_the_table_passes(self):
        self.assert_passes()

    def test_edge_that_runs_backwards_fails_with_its_line(self):
        self.write("src/store/bad.h", '#pragma once\n#include "lists/queue.h"\n')
        self.assert_fault("src/store/bad.h:2: may not include lists/")

    def test_room_that_is_not_in_the_table_fails(self):
        self.write("src/attic/old.cpp", '#include "base/loop.h"\n')
        self.assert_fault("src/attic/old.cpp:1: may not include base/")

    def test_only_main_and_platform_include_platform(self):
        self.write("src/main.cpp", '#include "platform/qt/binding.h"\n#include <QApplication>\n')
        self.write("src/platform/qt/binding.cpp", '#include "platform/qt/binding.h"\n')
        self.assert_passes()
        self.write("src/shell/deck.cpp", '#include "platform/qt/binding.h"\n')
        self.assert_fault("src/shell/deck.cpp:1: may not include platform/")

    def test_library_header_outside_platform_fails(self):
        self.write("src/window/frame.h", "#include <QWidget>\n")
        self.assert_fault("src/window/frame.h:1: <QWidget> is no header of the language")

    def test_clock_outside_platform_fails(self):
        for call in ("std::chrono::steady_clock::now()", "usleep(5)", "time(nullptr)", "QTimer t"):
            with self.subTest(call):
                self.write("src/base/late.cpp", f"auto x = 1;\nauto y = {call};\n")
                self.assert_fault("src/base/late.cpp:2: ")

    def test_clock_in_platform_and_in_real_tests_passes(self):
        self.write("src/platform/qt/loop.cpp", "auto t = std::chrono::steady_clock::now();\n")
        self.write("tests/real/loop_test.cpp", '#include "platform/qt/loop.h"\nQTimer timer;\n')
        self.assert_passes()

    def test_clock_in_a_headless_test_fails(self):
        self.write("tests/rules/base/slow_test.cpp", "usleep(100);\n")
        self.assert_fault("tests/rules/base/slow_test.cpp:1: ")

    def test_clock_in_a_comment_or_a_text_passes(self):
        self.write("src/base/text.cpp", '// No QTimer here.\nauto s = "usleep";\n')
        self.assert_passes()

    def test_name_that_only_contains_a_forbidden_one_passes(self):
        self.write("src/base/names.cpp", "PromptTime(0); asleep(); LengthTime(nullptr);\n")
        self.assert_passes()

    def test_file_that_names_the_checkout_fails(self):
        self.write("docs/guide.md", f"Look at\n{self.root}/src\n")
        self.assert_fault("docs/guide.md:2: names the folder it is checked out in")


if __name__ == "__main__":
    unittest.main()
