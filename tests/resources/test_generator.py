"""What the generator does with descriptions that are changed, or wrong."""

import os
import shutil
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]


class Generator(unittest.TestCase):
    """Each test works on its own copy of the resources."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.resources = Path(folder.name) / "res"
        shutil.copytree(SOURCES / "res", self.resources)

    def generate(self, *arguments):
        return subprocess.run([sys.executable, "-B", self.resources / "generator/generate.py", *arguments],
                              capture_output=True, text=True, encoding="utf-8", check=False,
                              env=os.environ | {"PYTHONIOENCODING": "utf-8"})

    def change(self, file, old, new):
        path = self.resources / file
        text = path.read_text(encoding="utf-8")
        self.assertIn(old, text)
        path.write_text(text.replace(old, new, 1), encoding="utf-8")

    def assert_refused(self, *parts):
        result = self.generate()
        self.assertEqual(1, result.returncode)
        self.assertEqual(1, len(result.stderr.splitlines()), result.stderr)
        for part in parts:
            self.assertIn(part, result.stderr)

    def test_accepts_the_committed_files(self):
        result = self.generate("--check")
        self.assertEqual((0, ""), (result.returncode, result.stderr))

    def test_check_names_every_file_that_differs_or_is_missing_and_mends_nothing(self):
        changed = self.resources / "xml/normal/pinpad.xml"
        changed.write_text(changed.read_text(encoding="utf-8").replace('x="14"', 'x="15"'), encoding="utf-8")
        (self.resources / "locale/vaultpad.pot").unlink()
        for _ in range(2):
            result = self.generate("--check")
            self.assertEqual(1, result.returncode)
            lines = result.stderr.splitlines()
            self.assertEqual(2, len(lines), result.stderr)
            self.assertIn("xml/normal/pinpad.xml: differs", lines[0])
            self.assertIn("locale/vaultpad.pot: missing", lines[1])

    def test_writes_the_same_bytes_again(self):
        shutil.rmtree(self.resources / "xml")
        self.assertEqual(0, self.generate().returncode)
        for path in (SOURCES / "res/xml").glob("*/*.xml"):
            copy = self.resources / path.relative_to(SOURCES / "res")
            self.assertEqual(path.read_bytes(), copy.read_bytes(), path)

    def test_a_key_added_to_a_row_reaches_every_layout_and_the_voices_of_the_pad(self):
        self.change("generator/pads.toml", '"1 2 3"', '"1 2 numbersign"')
        self.assertEqual(0, self.generate().returncode)
        for path in self.resources.glob("xml/*/*pinpad*.xml"):
            added = 'id="key.numbersign" text="#"' if path.parent.name == "audio" else 'id="key.numbersign.focus"'
            self.assertIn(added, path.read_text(encoding="utf-8"), path)

    def test_characters_that_mean_something_to_xml_are_escaped(self):
        text = (self.resources / "xml/normal/keyboard.xml").read_text(encoding="utf-8")
        for escaped in ('value="&lt;"', 'value="&gt;"', 'value="&amp;"', "value='\"'"):
            self.assertIn(escaped, text)

    def test_refuses_rows_of_different_width(self):
        self.change("generator/pads.toml", '"4 5 6"', '"4 5"')
        self.assert_refused("pads.toml: pinpad.rows", "row 2 has 2 columns", "make them equal")

    def test_refuses_an_area_that_the_keys_do_not_share_evenly(self):
        self.change("generator/areas.toml", "size = [443, 486]", "size = [442, 486]")
        self.assert_refused("areas.toml: pinpad.plain", "3 columns do not share 414 pixels", "change size")

    def test_refuses_a_cell_that_is_no_key(self):
        self.change("generator/pads.toml", '"4 5 6"', '"4 5: 6"')
        self.assert_refused("pads.toml: pinpad.rows", '"5:" is no key')

    def test_refuses_a_key_that_leads_to_no_page(self):
        self.change("generator/pads.toml", "Shift_L.to-upper:2", "Shift_L.to-capitals:2")
        self.assert_refused("pads.toml: keyboard.pages.main.shift", "leads to no page")

    def test_refuses_a_shared_key_that_would_move_from_page_to_page(self):
        self.change("generator/pads.toml", "z x c v b n m", "z x c v b n m:2")
        self.change("generator/pads.toml", 'shift = "Shift_L.to-upper:2"', 'shift = "Shift_L.to-upper"')
        self.assert_refused("pads.toml: keyboard.rows", "has another place")

    def test_refuses_a_keysym_whose_character_is_unknown(self):
        self.change("generator/pads.toml", "exclam:2 question", "bang:2 question")
        self.assert_refused('pads.toml: characters: "bang" is missing; add it')

    def test_refuses_a_special_key_that_shows_nothing(self):
        self.change("generator/pads.toml", 'sign = "!?#"', "")
        self.assert_refused("pads.toml: keys.Mode_switch.to-symbols", "give the key a word, a sign or an icon")

    def test_refuses_an_icon_that_nobody_can_hear(self):
        self.change("generator/pads.toml", 'BackSpace = {word = "Backspace"', 'Delete = {word = "Backspace"')
        self.assert_refused('pads.toml: speech.words: "BackSpace" is missing; add it')

    def test_refuses_a_page_whose_keys_nobody_can_hear(self):
        self.change("generator/pads.toml", 'spoken = "Symbols"\n', "")
        self.assert_refused('pads.toml: keyboard.pages.symbols: "spoken" is missing; add it')

    def test_refuses_an_icon_that_nobody_drew(self):
        self.change("generator/pads.toml", 'icon = "space"', 'icon = "rocket"')
        self.assert_refused("rocket.svg.in: not found")

    def test_refuses_a_missing_measure(self):
        self.change("generator/areas.toml", "dot-indent = 14\n", "")
        self.assert_refused('areas.toml: pinpad.plain: "dot-indent" is missing; add it')

    def test_refuses_a_description_that_is_no_toml(self):
        self.change("generator/styles.toml", "[standard.font]", "[standard.font")
        self.assert_refused("styles.toml: not valid TOML")

    def test_refuses_a_folder_that_cannot_be_written_and_names_it(self):
        blocked = self.resources / "blocked"
        blocked.write_text("a file, not a folder")
        result = self.generate("--images", blocked)
        self.assertEqual(1, result.returncode)
        self.assertEqual(1, len(result.stderr.splitlines()), result.stderr)
        self.assertIn(str(blocked), result.stderr)


if __name__ == "__main__":
    unittest.main()
