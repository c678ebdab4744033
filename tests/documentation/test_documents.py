"""What every document keeps to, so that its blocks can be executed."""
import subprocess
import unittest

from exceptions import reasons
from execution import ACTIONS, TA_LANGUAGES
from markdown import ROOT, blocks, blocks_of, documents, examples_of, unfenced_code

# A further command that no test executes needs a line in not-executed.txt, and this number changed.
NOT_EXECUTED = 7


class Documents(unittest.TestCase):
    def test_every_block_says_what_is_in_it(self):
        for document in documents():
            for block in blocks(document):
                self.assertIn(block.language, [*ACTIONS, *TA_LANGUAGES], block.place)

    def test_no_code_stands_outside_of_blocks(self):
        self.assertEqual([], [f"{document}:{line}" for document in documents()
                              if document.endswith(".md") for line in unfenced_code((ROOT / document).read_text())])
        self.assertEqual([2, 8], unfenced_code("\n    a\n```c\n\n    b\n```\n\n    c\n"))

    def test_blocks_of_the_ta_stand_where_they_are_replayed(self):
        for document in documents():
            if document != "docs/ta-protocol.md":
                self.assertEqual([], [block.place for block in blocks(document) if block.language in TA_LANGUAGES])

    def test_every_command_that_is_not_executed_is_there_and_has_a_reason(self):
        there = {(document, block.text.splitlines()[0]) for document in documents() for block in blocks(document)
                 if block.text}
        for entry, reason in reasons().items():
            self.assertIn(entry, there)
            self.assertGreater(len(reason.split()), 3, entry)

    def test_the_commands_that_are_not_executed_are_as_many_as_were_agreed_on(self):
        self.assertEqual(NOT_EXECUTED, len(reasons()))

    def test_examples_of_manual_pages_are_commands(self):
        page = ".SH EXAMPLES\n.nf\na \\-b\nc\n.fi\n"
        self.assertEqual([(3, "a -b\n"), (4, "c\n")], [(block.line, block.text) for block in examples_of("a.1", page)])
        self.assertEqual(1, len([document for document in documents() if "vaultpad-layout.1" in document and
                                 blocks(document)]))

    def test_drawings_can_be_drawn(self):
        drawings = list((ROOT / "docs/pictures").glob("*.svg"))
        self.assertTrue(drawings)
        for drawing in drawings:
            png = subprocess.run(["rsvg-convert", drawing], check=True, capture_output=True).stdout
            self.assertTrue(png.startswith(b"\x89PNG"), drawing)

    def test_a_block_without_an_end_is_found(self):
        with self.assertRaisesRegex(ValueError, "a.md:2: the block has no end"):
            blocks_of("a.md", "\n```sh\nls\n")


if __name__ == "__main__":
    unittest.main()
