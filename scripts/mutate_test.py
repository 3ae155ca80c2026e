#!/usr/bin/python3
"""Tests of mutate, on a sample whose tests are strong, weak and missing."""

import pathlib
import subprocess
import tempfile
import unittest

MUTATE = pathlib.Path(__file__).with_name("mutate")

CMAKE = """
cmake_minimum_required(VERSION 3.20)
project(sample LANGUAGES CXX)
enable_testing()
find_package(GTest REQUIRED)
include(GoogleTest)
add_executable(sample_test sample/sample.cpp tests/sample_test.cpp)
target_include_directories(sample_test PRIVATE ${PROJECT_SOURCE_DIR})
target_link_libraries(sample_test GTest::gtest_main)
set_target_properties(sample_test PROPERTIES CXX_STANDARD 11)
gtest_discover_tests(sample_test DISCOVERY_MODE PRE_TEST)
"""
HEADER = """
const int Limit = 3;
enum Size { Items = 4 };
enum class Way { Down = 5 };
int clamped(int value);
bool isEven(int value);
int countDown(int from);
int valueOf(const int* pointer);
void log(int value);
Way way();
extern int logged;
"""
SOURCE = """\
#include "sample/sample.h"
int logged = 0;
int clamped(int value) {
    if (value > Limit) return Limit;
    return value;
}
bool isEven(int value) {
    return value % 2 == 0;
}
int countDown(int from) {
    int steps = 0;
    while (from > 0) {
        --from;
        ++steps;
    }
    return steps;
}
int valueOf(const int* pointer) {
    if (pointer) return *pointer;
    return -1;
}
void log(int value) {
    int items[Items] = {};
    items[0] = value;
    logged = items[0];
}
Way way() {
    return Way::Down;
}
"""
TEST = """
#include "sample/sample.h"
#include <gtest/gtest.h>
TEST(Strong, Clamps) { EXPECT_EQ(clamped(2), 2); EXPECT_EQ(clamped(3), 3); EXPECT_EQ(clamped(4), 3); }
TEST(Weak, Even) { EXPECT_TRUE(isEven(4)); }
TEST(Strong, Value) { const int seven = 7; EXPECT_EQ(valueOf(&seven), 7); EXPECT_EQ(valueOf(nullptr), -1); }
TEST(Strong, CountsDown) { EXPECT_EQ(countDown(3), 3); }
TEST(Strong, Way) { EXPECT_EQ(int(way()), 5); }
"""
EQUAL = """
[[equivalent]]
file = "sample/sample.cpp"
line = "if (value > Limit) return Limit;"
original = "value > Limit"
mutated = "value >= Limit"
reason = "At the limit both are the limit."
"""


class Mutate(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.root = pathlib.Path(cls.folder.name).resolve()
        for name, text in {"CMakeLists.txt": CMAKE, "sample/sample.h": HEADER,
                           "sample/sample.cpp": SOURCE, "tests/sample_test.cpp": TEST}.items():
            cls.write(name, text)
        subprocess.run(["git", "init", "-q"], cwd=cls.root, check=True)
        cls.write(".gitignore", "build\n")

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def setUp(self):
        (self.root / "scripts/mutate-equivalent.toml").unlink(missing_ok=True)

    @classmethod
    def write(cls, name, text):
        path = cls.root / name
        path.parent.mkdir(exist_ok=True)
        path.write_text(text)

    def run_it(self, *options):
        done = subprocess.run(
            [MUTATE, "--root", self.root, "--folder", "sample", "--programs", "sample_test", *options],
            capture_output=True, text=True)
        self.assertEqual(done.stderr, "")
        return done.returncode, done.stdout

    def test_finds_what_no_test_notices(self):
        code, output = self.run_it()
        self.assertEqual(code, 1)
        shown = "sample/sample.cpp:"
        for survivor in (
                "4:9: comparison: value > Limit -> value >= Limit",
                "8:20: constant: 2 -> 2 - 1",
                "25:5: removed assignment (not reached): logged = items[0]"):
            self.assertIn(shown + survivor.replace(" -> ", "  ->  "), output)

    def test_takes_an_equivalent_mutant_out_of_the_score(self):
        self.write("scripts/mutate-equivalent.toml", EQUAL)
        _, output = self.run_it()
        self.assertNotIn("value > Limit  ->  value >= Limit", output)
        self.assertRegex(output, r"sample +37 +27 +3 +6 +1 +0 +75.0 %")

    def test_refuses_an_equivalent_mutant_that_is_killed_or_gone(self):
        self.write("scripts/mutate-equivalent.toml", EQUAL.replace(">=", "<=") + EQUAL.replace(
            "if (value", "if  (value"))
        code, output = self.run_it("--min-score", "10")
        self.assertEqual(code, 1)
        self.assertIn("not equivalent: Strong.Clamps fails with sample/sample.cpp:4", output)
        self.assertIn("no such mutant any more: sample/sample.cpp: if  (value", output)

    def test_counts_survivors_by_score(self):
        self.assertEqual(self.run_it("--min-score", "60")[0], 0)
        self.assertEqual(self.run_it("--min-score", "80")[0], 1)

    def test_stops_at_the_end_of_its_budget_and_goes_on(self):
        _, output = self.run_it("--fresh", "--budget", "0.00001")
        self.assertRegex(output, r"sample +37 +0 +0 +0 +0 +37\n")
        _, output = self.run_it()
        self.assertRegex(output, r"sample +37 +27 +4 +6 +0 +0 +73.0 %")

    def test_leaves_out_what_a_test_notices(self):
        _, output = self.run_it()
        for killed in ("value <= Limit", "value % 2 != 0", "--from", "Limit = 3 + 1"):
            self.assertNotIn(killed, output)


if __name__ == "__main__":
    unittest.main()
