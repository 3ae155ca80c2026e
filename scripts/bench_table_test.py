#!/usr/bin/python3
"""Tests of bench_table.py."""

import json
import pathlib
import subprocess
import sys
import unittest

SCRIPT = pathlib.Path(__file__).with_name("bench_table.py")


def run(benchmarks, *arguments):
    return subprocess.run(
        [sys.executable, SCRIPT, *arguments], input=json.dumps({"benchmarks": benchmarks}),
        capture_output=True, text=True,
    )


def benchmark(name, cpu_time, real_time=0.0, **more):
    return {"name": name, "cpu_time": cpu_time, "real_time": real_time, "time_unit": "ns",
            "iterations": 3, **more}


def rows(*benchmarks):
    return json.loads(run(list(benchmarks), "--json").stdout)


class BenchTable(unittest.TestCase):
    def test_compares_ours_with_every_peer(self):
        found = rows(benchmark("a/ours", 10), benchmark("a/one", 20), benchmark("a/two", 5))
        self.assertEqual(
            [(r["name"], r["value"], r["unit"], r["peer"], r["peer_value"], r["ratio"])
             for r in found],
            [("a", 10, "ns", "one", 20, 0.5), ("a", 10, "ns", "two", 5, 2.0)])

    def test_compares_with_the_limit_where_there_is_one(self):
        found = rows(benchmark("a/ours/iterations:1/manual_time", 1, 9, value=30.0, limit=20.0))
        self.assertEqual((found[0]["value"], found[0]["peer"], found[0]["ratio"]),
                         (30.0, "limit", 1.5))
        self.assertEqual(len(found), 1)

    def test_takes_the_time_that_was_measured_by_hand(self):
        self.assertEqual(rows(benchmark("a/ours/manual_time", 1, 9))[0]["value"], 9)

    def test_has_no_ratio_without_a_peer(self):
        found = rows(benchmark("a/ours", 10))[0]
        self.assertIsNone(found["peer"])
        self.assertIsNone(found["ratio"])

    def test_compares_counters_and_rates_the_other_way_round(self):
        found = rows(benchmark("a/ours", 10, bytes_per_second=100.0, peak=3.0),
                     benchmark("a/one", 10, bytes_per_second=50.0, peak=6.0))
        ratios = {r["name"]: r["ratio"] for r in found}
        self.assertEqual(ratios, {"a": 1.0, "a.bytes_per_second": 0.5, "a.peak": 0.5})

    def test_ends_with_an_error_when_a_benchmark_failed(self):
        failed = run([benchmark("a/ours", 1, error_occurred=True, error_message="no line")])
        self.assertNotEqual(failed.returncode, 0)
        self.assertIn("a/ours: no line", failed.stderr)

    def test_ends_with_an_error_without_a_measurement_of_ours(self):
        self.assertNotEqual(run([benchmark("a/one", 1)]).returncode, 0)

    def test_prints_a_table(self):
        text = run([benchmark("a/ours", 1234567.0, bytes_per_second=2e6, fields=3.0),
                    benchmark("a/one", 2469134.0, bytes_per_second=1e9)]).stdout
        self.assertEqual([line.split() for line in text.splitlines()], [
            ["name", "ours", "peer", "or", "limit", "ratio"],
            ["a", "1.235", "ms", "2.469", "ms", "one", "0.500"],
            ["a.bytes_per_second", "2", "M/s", "1", "G/s", "one", "500.000"],
            ["a.fields", "3"],
        ])


if __name__ == "__main__":
    unittest.main()
