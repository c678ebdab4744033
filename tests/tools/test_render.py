"""vaultpad-layout render: the picture is what the secure display shows."""

import os
import subprocess
import unittest

from layouttool import DEMO, TIMEOUT, ToolTest, opened, run, staged

NAMES = {
    "pinpad": (),
    "keyboard": ("--type", "keyboard"),
    "pinpad-eh": ("--focus-zoom", "--high-contrast"),
    "reverse-keyboard": ("--type", "keyboard", "--reverse"),
    "vertical-pinpad": ("--orientation", "portrait"),
    "vertical-keyboard-e": ("--type", "keyboard", "--orientation", "portrait-reversed", "--focus-zoom"),
}


class Render(ToolTest):
    def frames(self, *options):
        """The pictures of the emulated secure display, the loading bar's before the pad's included."""
        folder = self.folder / "frames"
        result = subprocess.run([DEMO, "--display", "png", "--frames", folder, "--log", "none", *options],
                                stdin=subprocess.DEVNULL, capture_output=True, text=True, timeout=TIMEOUT, check=False)
        self.assertIn(result.returncode, (0, 1), result.stderr)
        return [opened(path) for path in sorted(folder.glob("frame-*.png"))]

    def test_equals_the_first_picture_of_the_secure_display(self):
        for name, options in NAMES.items():
            with self.subTest(name):
                self.folder = self.folder / name
                self.folder.mkdir()
                orientation = options[options.index("--orientation") + 1] if "--orientation" in options else "landscape"
                # A press of Up at the upper edge changes nothing: what is shown last is what was shown first.
                shown = self.frames(*options, "--keys", "Up")[-1]
                drawn = opened(self.render(staged(name), "--orientation", orientation))
                self.assert_same_picture(shown, drawn)

    def test_equals_the_secure_display_after_moving_and_typing(self):
        shown = self.frames("--keys", "Right,Return,Return,Down,Down")[-1]
        drawn = opened(self.render(staged("pinpad"), "--focus", "8", "--typed", "2"))
        self.assert_same_picture(shown, drawn)

    def test_equals_the_secure_display_on_another_page(self):
        to_page = "Down*4,Left*14,Return"
        shown = self.frames("--type", "keyboard", "--keys", to_page)[-1]
        drawn = opened(self.render(staged("keyboard"), "--page", "symbols", "--focus", "Mode_switch"))
        self.assert_same_picture(shown, drawn)

    def test_both_ways_of_turning_the_panel_show_the_viewer_the_same(self):
        upright = self.render(staged("vertical-keyboard"), "--orientation", "portrait").read_bytes()
        reversed_ = self.render(staged("vertical-keyboard"), "--orientation", "portrait-reversed").read_bytes()
        self.assertEqual(upright, reversed_)

    def test_draws_the_labels_of_the_language(self):
        pictures = {language: self.render(staged("pinpad"), "--language", language).read_bytes()
                    for language in ("en", "de", "de_DE.UTF-8", "ko")}
        self.assertEqual(3, len(set(pictures.values())))
        self.assertEqual(pictures["de"], pictures["de_DE.UTF-8"])

    def test_takes_the_images_from_another_folder(self):
        own = self.render(staged("pinpad")).read_bytes()
        layout = self.folder / "pinpad.xml"
        text = staged("pinpad").read_text(encoding="utf-8")
        images = text.split('basedir="')[1].split('"')[0]
        layout.write_text(text.replace(images, "/nowhere/images"), encoding="utf-8")
        self.assertEqual(own, self.render(layout, "--images", images).read_bytes())

    def test_names_images_that_are_missing(self):
        layout = self.folder / "pinpad.xml"
        layout.write_text(staged("pinpad").read_text(encoding="utf-8").replace('url="standard-focus', 'url="no-focus'),
                          encoding="utf-8")
        result = run("render", layout, "-o", self.folder / "picture.png")
        self.assertIn("There is no image file", result.stderr)
        self.assertIn("--images", result.stderr)

    def test_shows_the_picture_on_the_terminal(self):
        result = run("render", staged("pinpad"), "--terminal", env={**os.environ, "TERM": "xterm-256color"})
        self.assertEqual(0, result.returncode, result.stderr)
        self.assertGreater(result.stdout.count("\n"), 10)
        self.assertIn("\x1b[", result.stdout)

    def test_tells_a_layout_that_cannot_be_drawn(self):
        layout = self.folder / "pinpad.xml"
        layout.write_text(staged("pinpad").read_text(encoding="utf-8").replace('ref="key.5"', 'ref="no"'),
                          encoding="utf-8")
        result = run("render", layout, "-o", self.folder / "picture.png")
        self.assertEqual(1, result.returncode)
        self.assertIn("Nested element's reference object does not exist.", result.stderr)

    def test_refuses_wrong_use(self):
        picture = self.folder / "picture.png"
        pinpad = staged("pinpad")
        for options, text in (
                ((pinpad,), "--output"),
                ((pinpad, "-o", picture, "--terminal"), "--terminal"),
                (("nothing.xml", "-o", picture), "nothing.xml"),
                ((pinpad, "-o", picture, "--typed", "41"), "--typed"),
                ((pinpad, "-o", picture, "--page", "other"), "no page 'other'"),
                ((pinpad, "-o", picture, "--focus", "a"), "no key 'a'"),
                ((pinpad, "-o", picture, "--language", "xx"), "no catalogue for 'xx'"),
                ((pinpad, "-o", picture, "--orientation", "portrait"), "use landscape"),
                ((pinpad, "-o", picture, "--as", "remote.xml"), "does not tell the kind"),
        ):
            with self.subTest(options[1:]):
                self.assert_wrong_use(run("render", *options), text)
        self.assertFalse(picture.exists())


if __name__ == "__main__":
    unittest.main()
