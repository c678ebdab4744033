"""What the styles promise to the eye."""

import tomllib
import unittest

from layoutfiles import SOURCES

STYLES = tomllib.loads((SOURCES / "res/generator/styles.toml").read_text(encoding="utf-8"))
AREAS = tomllib.loads((SOURCES / "res/generator/areas.toml").read_text(encoding="utf-8"))
LOOKS = {name: style["plate"] for name, style in STYLES.items() if "plate" in style}
FACES = ("key", "action", "primary")

# Contrast ratios of the Web Content Accessibility Guidelines: text at level AA and AAA, and what marks the focus.
TEXT_CONTRAST = {"standard": 4.5, "contrast": 7.0}
FOCUS_CONTRAST = 3.0


def luminance(colour):
    def linear(channel):
        share = channel / 255
        return share / 12.92 if share <= 0.04045 else ((share + 0.055) / 1.055) ** 2.4
    red, green, blue = (linear(channel) for channel in bytes.fromhex(colour))
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(first, second):
    darker, lighter = sorted((luminance(first), luminance(second)))
    return (lighter + 0.05) / (darker + 0.05)


class Contrast(unittest.TestCase):
    def test_is_computed_as_the_guidelines_say(self):
        self.assertAlmostEqual(21.0, contrast("000000", "FFFFFF"))
        self.assertAlmostEqual(1.0, contrast("2058C8", "2058C8"))
        self.assertAlmostEqual(4.54, contrast("767676", "FFFFFF"), places=2)

    def test_of_what_is_drawn_on_a_plate_is_as_promised(self):
        for style, plates in LOOKS.items():
            for name, plate in plates.items():
                with self.subTest(f"{style} {name}"):
                    self.assertGreaterEqual(contrast(plate["ink"], plate["fill"]), TEXT_CONTRAST[style])

    def test_of_the_focused_key_to_its_neighbours_is_as_promised(self):
        for style, plates in LOOKS.items():
            for face in FACES:
                with self.subTest(f"{style} {face}"):
                    self.assertGreaterEqual(contrast(plates["focus"]["fill"], plates[face]["fill"]), FOCUS_CONTRAST)

    def test_of_the_field_and_the_keys_to_the_panel_shows_their_edges_in_high_contrast(self):
        plates = LOOKS["contrast"]
        for name in ("field", *FACES):
            with self.subTest(name):
                self.assertGreaterEqual(contrast(plates[name]["border"], plates["panel"]["fill"]), FOCUS_CONTRAST)
                self.assertGreater(plates[name]["line"], 0)


class Styles(unittest.TestCase):
    def test_are_the_standard_and_the_contrast_one(self):
        self.assertEqual(set(TEXT_CONTRAST), set(LOOKS))

    def test_tell_the_focus_by_more_than_colour(self):
        for style, plates in LOOKS.items():
            for face in FACES:
                with self.subTest(f"{style} {face}"):
                    self.assertLess(plates["focus"]["inset"], plates[face]["inset"], "the focused key is not larger")
                    self.assertGreater(plates["focus"]["line"] + plates[face]["inset"],
                                       plates[face]["line"] + plates["focus"]["inset"], "its rim is not wider")

    def test_tell_the_completing_key_by_more_than_colour_in_high_contrast(self):
        plates = LOOKS["contrast"]
        for face in ("key", "action"):
            self.assertGreater(plates["primary"]["line"], plates[face]["line"])

    def test_colours_survive_the_six_bits_of_the_secure_display(self):
        for plates in LOOKS.values():
            for name, plate in plates.items():
                for colour in (plate["fill"], plate["border"], plate["ink"]):
                    with self.subTest(f"{name} {colour}"):
                        self.assertEqual([0, 0, 0], [channel % 4 for channel in bytes.fromhex(colour)])

    def test_no_text_starts_smaller_than_the_smallest(self):
        for pad, areas in AREAS.items():
            for area, measures in areas.items():
                for role, smallest in STYLES["smallest-text"].items():
                    with self.subTest(f"{pad}.{area} {role}"):
                        self.assertGreaterEqual(measures["text"][role], smallest)


if __name__ == "__main__":
    unittest.main()
