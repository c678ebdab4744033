"""What must hold for the resources as the library finds them."""

import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from layoutfiles import LAYOUT_FILES, SOURCES, STAGE, VOICE_FILES, LayoutFile, tga_header


class Images(unittest.TestCase):
    def test_have_the_size_in_their_names_and_none_is_left_over(self):
        used = set()
        for file in LAYOUT_FILES:
            for image in LayoutFile(file).images.values():
                if image.get("type") == "file":
                    used.add(image.get("url"))
        self.assertEqual(used, {path.name for path in (STAGE / "images").iterdir()})
        for name in used:
            width, height = re.search(r"-([0-9]+)x([0-9]+)\.tga\Z", name).groups()
            self.assertEqual((int(width), int(height)), tga_header(STAGE / "images" / name)[:2], name)

    def test_have_no_alpha_channel_where_they_bring_the_panel_along(self):
        for path in (STAGE / "images").iterdir():
            plate = re.fullmatch(r"[a-z]+-(key|action|primary|focus)-on-panel-[0-9]+x[0-9]+\.tga", path.name)
            self.assertEqual(24 if plate else 32, tga_header(path)[2], path)


class Layouts(unittest.TestCase):
    def test_differ_from_the_committed_ones_by_nothing_but_the_directory_of_the_images(self):
        for file in LAYOUT_FILES:
            with self.subTest(file):
                committed = (SOURCES / "res/xml" / file).read_text(encoding="utf-8")
                self.assertEqual(1, committed.count('basedir="/usr/apps/vaultpad/res/images"'))
                staged = (STAGE / "xml" / file).read_text(encoding="utf-8")
                self.assertEqual(committed.replace("/usr/apps/vaultpad/res", str(STAGE)), staged)

    def test_voice_files_are_staged_as_they_are_committed(self):
        for file in VOICE_FILES.values():
            self.assertEqual((SOURCES / "res/xml" / file).read_bytes(), (STAGE / "xml" / file).read_bytes(), file)

    def test_keep_markup_characters_of_the_directory_escaped(self):
        with tempfile.TemporaryDirectory() as folder:
            copy = Path(folder) / "copy.xml"
            subprocess.run(["cmake", "-D", f"INPUT={SOURCES}/res/xml/normal/pinpad.xml", "-D", f"OUTPUT={copy}",
                            "-D", "IMAGES=/a&b/<c>", "-P", f"{SOURCES}/res/stage-xml.cmake"], check=True)
            self.assertIn('basedir="/a&amp;b/&lt;c>"', copy.read_text(encoding="utf-8"))


if __name__ == "__main__":
    unittest.main()
