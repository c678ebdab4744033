"""scripts/run-tests fails when a test is skipped that is not expected to be."""
import contextlib
import io
import tempfile
import unittest
from importlib.machinery import SourceFileLoader
from importlib.util import module_from_spec, spec_from_loader
from pathlib import Path
from unittest import mock

ROOT = Path(__file__).resolve().parents[2]
LOADER = SourceFileLoader("run_tests", str(ROOT / "scripts/run-tests"))
SCRIPT = module_from_spec(spec_from_loader("run_tests", LOADER))
LOADER.exec_module(SCRIPT)

ROOT_ONLY = "Secrets.AreNotInTheTrustedApplicationsMemoryAfterItsAnswer/AsBuilt"
SKIPPED = "SKIP_RETURN_CODE 77"
SKIPPED_BY_WORD = "SKIP_REGULAR_EXPRESSION skipped"
DISABLED = "DISABLED TRUE"


class RunTests(unittest.TestCase):
    def outcome(self, *tests, user=0, arguments=()):
        """Exit status and messages for tests of these names, shell commands and properties."""
        with tempfile.TemporaryDirectory() as folder:
            text = "".join(f'add_test({name} sh -c "{command}")\nset_tests_properties({name} PROPERTIES {properties})\n'
                           for name, command, properties in tests)
            (Path(folder) / "CTestTestfile.cmake").write_text(text, encoding="utf-8")
            messages = io.StringIO()
            with contextlib.redirect_stderr(messages), mock.patch("os.geteuid", return_value=user):
                status = SCRIPT.main(["--quiet", "--test-dir", folder, *arguments])
            return status, messages.getvalue()

    def test_passes_when_every_test_ran(self):
        self.assertEqual((0, ""), self.outcome(("a", "printf '<&\\\\001'", SKIPPED), ("b", "true", SKIPPED_BY_WORD)))

    def test_fails_and_names_the_tests_that_were_skipped(self):
        for command, properties in (("exit 77", SKIPPED), ("echo skipped", SKIPPED_BY_WORD), ("true", DISABLED)):
            with self.subTest(properties):
                status, messages = self.outcome(("Ran.a", "true", SKIPPED), ("Missed.b", command, properties))
                self.assertEqual(1, status)
                self.assertIn("Missed.b did not run", messages)
                self.assertEqual(1, len(messages.splitlines()), messages)

    def test_lets_what_only_root_can_do_be_skipped_for_others(self):
        secrets = ROOT_ONLY, "exit 77", SKIPPED
        self.assertEqual((0, ""), self.outcome(secrets, user=1000))
        self.assertEqual(1, self.outcome(secrets, user=0)[0])
        self.assertEqual(1, self.outcome(secrets, ("Missed.b", "exit 77", SKIPPED), user=1000)[0])

    def test_keeps_the_status_of_tests_that_fail(self):
        self.assertEqual((8, ""), self.outcome(("a", "false", SKIPPED)))
        self.assertEqual(8, self.outcome(("a", "false", SKIPPED), ("b", "exit 77", SKIPPED))[0])

    def test_looks_at_the_chosen_tests_only(self):
        tests = ("a", "true", SKIPPED), ("b", "exit 77", SKIPPED)
        self.assertEqual((0, ""), self.outcome(*tests, arguments=("-R", "a")))
        self.assertEqual((0, ""), self.outcome(*tests, arguments=("-N",)))


if __name__ == "__main__":
    unittest.main()
