"""What must hold for the resources as the library finds them."""

import gettext
import re
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

from layoutfiles import LAYOUT_FILES, SOURCES, STAGE, LayoutFile, png_size

LANGUAGES = ("de", "ko")
TEMPLATE = SOURCES / "res/locale/vaultpad.pot"
MESSAGE = re.compile(r'^msgid "(.+)"$', re.MULTILINE)


class Images(unittest.TestCase):
    def test_have_the_size_in_their_names_and_none_is_left_over(self):
        used = set()
        for file in LAYOUT_FILES:
            for image in LayoutFile(file).images.values():
                if image.get("type") == "file":
                    used.add(image.get("url"))
        self.assertEqual(used, {path.name for path in (STAGE / "images").iterdir()})
        for name in used:
            width, height = re.search(r"-([0-9]+)x([0-9]+)\.png\Z", name).groups()
            self.assertEqual((int(width), int(height)), png_size(STAGE / "images" / name), name)


class Layouts(unittest.TestCase):
    def test_differ_from_the_committed_ones_by_nothing_but_the_directory_of_the_images(self):
        for file in LAYOUT_FILES:
            with self.subTest(file):
                committed = (SOURCES / "res/xml" / file).read_text(encoding="utf-8")
                self.assertEqual(1, committed.count('basedir="/usr/apps/vaultpad/res/images"'))
                staged = (STAGE / "xml" / file).read_text(encoding="utf-8")
                self.assertEqual(committed.replace("/usr/apps/vaultpad/res", str(STAGE)), staged)

    def test_keep_markup_characters_of_the_directory_escaped(self):
        with tempfile.TemporaryDirectory() as folder:
            copy = Path(folder) / "copy.xml"
            subprocess.run(["cmake", "-D", f"INPUT={SOURCES}/res/xml/normal/pinpad.xml", "-D", f"OUTPUT={copy}",
                            "-D", "IMAGES=/a&b/<c>", "-P", f"{SOURCES}/res/stage-xml.cmake"], check=True)
            self.assertIn('basedir="/a&amp;b/&lt;c>"', copy.read_text(encoding="utf-8"))


class Translations(unittest.TestCase):
    def test_every_text_of_the_template_is_translated(self):
        self.assertIsNotNone(shutil.which("msgcmp"), "msgcmp is missing; install gettext")
        for language in LANGUAGES:
            with self.subTest(language):
                result = subprocess.run(["msgcmp", SOURCES / f"res/locale/{language}.po", TEMPLATE],
                                        capture_output=True, text=True, check=False)
                self.assertEqual(0, result.returncode, result.stderr)

    def test_catalogues_answer_with_the_translation(self):
        messages = MESSAGE.findall(TEMPLATE.read_text(encoding="utf-8"))
        self.assertIn("Enter PIN", messages)
        for language in LANGUAGES:
            catalogue = gettext.translation("vaultpad", STAGE / "locale", [language])
            for message in messages:
                with self.subTest(f"{language} {message}"):
                    self.assertNotIn(catalogue.gettext(message), ("", message))

    def test_every_translated_text_of_the_layouts_is_in_the_template(self):
        messages = set(MESSAGE.findall(TEMPLATE.read_text(encoding="utf-8")))
        drawn = {text.get("value") for file in LAYOUT_FILES for text in LayoutFile(file).strings.values()
                 if text.get("i18n") == "true"}
        self.assertEqual(messages, drawn)


if __name__ == "__main__":
    unittest.main()
