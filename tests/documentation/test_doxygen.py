"""Doxygen makes the reference of the public headers without a warning, and finds a comment before every function."""
import subprocess
import tempfile
import unittest
from pathlib import Path

from markdown import ROOT


def run_doxygen(*settings):
    configuration = (ROOT / "docs/Doxyfile").read_text()
    with tempfile.TemporaryDirectory() as folder:
        lines = [configuration, f"OUTPUT_DIRECTORY = {folder}", *settings]
        result = subprocess.run(["doxygen", "-"], input="\n".join(lines), cwd=ROOT, text=True, stdout=subprocess.PIPE,
                                stderr=subprocess.STDOUT)
        page = next(iter(Path(folder).glob("html/vaultpad_8h.html")), None)
        return result, page.read_text() if page else ""


class Reference(unittest.TestCase):
    def test_is_made_without_a_warning(self):
        result, page = run_doxygen()
        self.assertEqual("", result.stdout)
        self.assertEqual(0, result.returncode)
        self.assertIn("Opens the session, or finds the open one.", page)

    def test_has_words_for_every_function(self):
        result, _ = run_doxygen("WARN_IF_UNDOCUMENTED = YES")
        self.assertEqual([], [line for line in result.stdout.splitlines() if "(function)" in line])
        self.assertIn("is not documented", result.stdout, "the search finds nothing at all")


if __name__ == "__main__":
    unittest.main()
