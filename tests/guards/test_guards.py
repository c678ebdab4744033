"""What documents promise: links lead somewhere, words are spelt right, functions are described."""
import re
import subprocess
import unittest

from documents import ROOT, broken_links, tracked

# What the pads, their translations and the generated or third-party texts say is not ours to spell. "cant" stands in a
# message that the platform's clients look for; atLeast and KeyPair are names in code.
SPELLING = ["codespell", "--ignore-words-list", "atleast,cant,keypair"]


def undocumented(header):
    """The exported functions and objects of a header that no comment stands before."""
    lines = header.splitlines()
    names = []
    for number, line in enumerate(lines):
        match = re.search(r"VAULTPAD_API .*?\b(\w+)(\(|;)", line)
        if match and not line.startswith("#") and not lines[number - 1].rstrip().endswith("*/"):
            names.append(match.group(1))
    return names


class Documents(unittest.TestCase):
    def test_every_relative_link_and_anchor_leads_somewhere(self):
        documents = tracked("*.md")
        self.assertGreater(len(documents), 3)
        self.assertEqual([], [problem for document in documents for problem in broken_links(document, document.read_text())])

    def test_a_broken_link_and_a_missing_heading_are_found(self):
        text = "# One `two`\n[a](#one-two) [b](#three) [c](gone.md) [d](http://example.org)\n    [e](code.md)\n"
        self.assertEqual(["README.md: #three: no heading has this name", "README.md: gone.md: there is no gone.md"],
                         broken_links(ROOT / "README.md", text))

    def test_words_are_spelt_right(self):
        files = [file for file in tracked("*") if file.suffix not in (".po", ".pot", ".png", ".abi", ".xml", ".txt")
                 and file.name != "LICENSE" and "locale" not in file.parts]
        result = subprocess.run([*SPELLING, *map(str, files)], capture_output=True, text=True)
        self.assertEqual("", result.stdout)
        self.assertEqual(0, result.returncode, result.stderr)

    def test_a_misspelt_word_is_found(self):
        result = subprocess.run([*SPELLING, "-"], input="the adr" + "ess\n", capture_output=True, text=True)
        self.assertIn("address", result.stdout)

    def test_every_exported_name_has_a_comment(self):
        header = (ROOT / "include/vaultpad/vaultpad.h").read_text()
        self.assertGreater(header.count("VAULTPAD_API "), 15)
        self.assertEqual([], undocumented(header))
        self.assertEqual(["f"], undocumented("/* What g does. */\nVAULTPAD_API int g(void);\nVAULTPAD_API int f(void);"))


if __name__ == "__main__":
    unittest.main()
