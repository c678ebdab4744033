"""The report on result files: its gates and its table."""
import contextlib
import io
import json
import os
import sys
import tempfile
import unittest
from unittest import mock

import report
import results

FAST = {"name": "pack/fast/iterations:1/manual_time", "real_time": 41.5, "time_unit": "us", "label": "memcpy",
        "iterations": 1, "ratio": 0.9, "ratio_at_least": 0.75, "count_of_pixel": 100.0}


class Report(unittest.TestCase):
    def setUp(self):
        self.folder = self.enterContext(tempfile.TemporaryDirectory())
        self.document = os.path.join(self.folder, "document.md")
        with open(self.document, "w", encoding="utf-8") as file:
            file.write(f"before\n{report.START}\nold\n{report.END}\nafter\n")

    def enterContext(self, manager):  # unittest has it from Python 3.11
        value = manager.__enter__()
        self.addCleanup(manager.__exit__, None, None, None)
        return value

    def write(self, name, *entries):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            json.dump({"benchmarks": entries}, file)
        return path

    def run_report(self, *paths):
        """(exit code, standard error, document)"""
        errors = io.StringIO()
        with mock.patch.object(sys, "argv", ["report", "--document", self.document, *paths]), \
                contextlib.redirect_stderr(errors):
            code = report.main()
        with open(self.document, encoding="utf-8") as file:
            return code, errors.getvalue(), file.read()

    def test_gate_that_holds_passes(self):
        code, errors, _ = self.run_report(self.write("packing.json", FAST))
        self.assertEqual((code, errors), (0, ""))

    def test_ratio_below_its_gate_fails_and_is_named(self):
        code, errors, _ = self.run_report(self.write("packing.json", {**FAST, "ratio": 0.7}))
        self.assertEqual(code, 1)
        self.assertEqual(errors, "report: missed: pack/fast: ratio is 0.7, and must be >= 0.75\n")

    def test_figure_above_its_upper_gate_fails(self):
        code, errors, _ = self.run_report(self.write("path.json", {"name": "create", "ms": 9.0, "ms_at_most": 8.0}))
        self.assertEqual((code, errors), (1, "report: missed: create: ms is 9, and must be <= 8\n"))

    def test_figure_that_is_not_a_number_fails(self):
        code, _, _ = self.run_report(self.write("packing.json", {**FAST, "ratio": float("nan")}))
        self.assertEqual(code, 1)

    def test_gate_of_a_figure_that_was_not_measured_is_refused(self):
        code, errors, _ = self.run_report(self.write("path.json", {"name": "create", "ms_at_most": 8.0}))
        self.assertEqual(code, 2)
        self.assertIn("create: ms_at_most is a gate of ms, which was not measured", errors)

    def test_table_replaces_what_was_between_the_marks_and_nothing_else(self):
        _, _, document = self.run_report(self.write("packing.json", FAST))
        self.assertTrue(document.startswith(f"before\n{report.START}\n"))
        self.assertTrue(document.endswith(f"{report.END}\nafter\n"))
        self.assertNotIn("old", document)
        self.assertIn("| pack/fast | 41.5 µs | 0.9 (≥ 0.75) | memcpy |", document)

    def test_result_files_of_one_program_share_its_table(self):
        counts = self.write("packing.valgrind.json", {"name": "pack/fast", "instructions_per_pixel": 2.5})
        _, _, document = self.run_report(self.write("packing.json", FAST), counts)
        self.assertIn("| measured | time | ratio | instructions per pixel | beside |", document)
        self.assertIn("| pack/fast | 41.5 µs | 0.9 (≥ 0.75) | 2.5 | memcpy |", document)

    def test_document_without_marks_is_refused_and_left_alone(self):
        with open(self.document, "w", encoding="utf-8") as file:
            file.write("no marks\n")
        code, errors, document = self.run_report(self.write("packing.json", FAST))
        self.assertEqual((code, document), (2, "no marks\n"))
        self.assertIn(f"{self.document}: lacks the lines", errors)

    def test_failed_benchmark_is_refused(self):
        failed = {**FAST, "error_occurred": True, "error_message": "no display"}
        code, errors, _ = self.run_report(self.write("path.json", failed))
        self.assertEqual(code, 2)
        self.assertIn("failed: no display", errors)

    def test_file_that_is_no_result_file_is_named(self):
        path = os.path.join(self.folder, "bad.json")
        with open(path, "w", encoding="utf-8") as file:
            file.write("[]")
        code, errors, _ = self.run_report(path)
        self.assertEqual(code, 2)
        self.assertIn(f"{path}: not a result file of Google Benchmark", errors)


class PlainName(unittest.TestCase):
    def test_way_of_running_is_left_out_of_a_name(self):
        self.assertEqual(results.plain_name("a/443x486/iterations:1/manual_time"), "a/443x486")
        self.assertEqual(results.plain_name("a/real_times"), "a/real_times")


if __name__ == "__main__":
    unittest.main()
