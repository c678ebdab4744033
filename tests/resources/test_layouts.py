"""What must hold for every layout file, whatever it looks like."""

import ctypes
import functools
import itertools
import math
import string
import subprocess
import tomllib
import unittest

from layoutfiles import LAYOUT_FILES, OBJECT_ID, SOURCES, STAGE, Box, LayoutFile, area_size, protocol_limit

LAYOUTS = [LayoutFile(file) for file in LAYOUT_FILES]
KEYBOARDS = [layout for layout in LAYOUTS if "keyboard" in layout.file]
PINPADS = [layout for layout in LAYOUTS if "pinpad" in layout.file]

STYLES = tomllib.loads((SOURCES / "res/generator/styles.toml").read_text(encoding="utf-8"))
PANELS = {name: style["plate"]["panel"] for name, style in STYLES.items() if "plate" in style}

XKB_KEYSYM_NO_FLAGS = 0
CONTROL_KEYS = {"Return", "Cancel", "BackSpace", "Clear"}
# Text is made smaller until this much of its parent's width stays free.
TEXT_ALLOWANCE = 23


class Xkb:
    """The X keysym list, as libxkbcommon has it."""

    def __init__(self):
        self._library = ctypes.CDLL("libxkbcommon.so.0")

    def keysym(self, name):
        return self._library.xkb_keysym_from_name(name.encode("ascii"), XKB_KEYSYM_NO_FLAGS)

    def character(self, name):
        code = self._library.xkb_keysym_to_utf32(self.keysym(name))
        return chr(code) if code >= ord(" ") and code != 0x7f else ""


XKB = Xkb()


def for_each(layouts):
    """Runs a test for each of the layouts, and names the one that fails."""
    def decorate(test):
        @functools.wraps(test)
        def run(self):
            for layout in layouts:
                with self.subTest(layout.file):
                    test(self, layout)
        return run
    return decorate


@functools.cache
def installed_font(family):
    """Family and style of the font that is drawn when this family is asked for."""
    return subprocess.run(["fc-match", "--format=%{family}|%{style}", family],
                          capture_output=True, text=True, check=True).stdout


class EveryLayout(unittest.TestCase):
    def test_no_layout_file_is_missing_and_none_is_left_over(self):
        folders = ("normal", "reverse", "vertical_normal", "vertical_reverse")
        staged = [str(path.relative_to(STAGE / "xml")) for folder in folders
                  for path in (STAGE / "xml" / folder).glob("*")]
        self.assertEqual(sorted(LAYOUT_FILES), sorted(staged))

    @for_each(LAYOUTS)
    def test_ids_are_unique_in_each_section_and_objects_keep_the_grammar(self, layout):
        for section in layout.root:
            ids = [item.get("id") for item in section]
            self.assertEqual(len(ids), len(set(ids)), section.tag)
        for item in layout.objects:
            self.assertRegex(item.get("id"), OBJECT_ID)
            self.assertTrue(OBJECT_ID.fullmatch(item.get("id")), item.get("id"))

    @for_each(LAYOUTS)
    def test_has_exactly_one_panel_field_and_dot_on_every_page(self, layout):
        ids = [item.get("id") for item in layout.objects]
        for name in ("background", "input", "mask", "label.title"):
            self.assertEqual(1, sum(1 for object_id in ids if object_id.split(".", 1)[-1] == name
                                    or object_id == name), name)
            self.assertIn(name, ids)

    @for_each(LAYOUTS)
    def test_every_reference_leads_to_an_item_of_its_kind(self, layout):
        for item in (item for top in layout.objects for item in top.iter()):
            if item.get("type") == "image":
                self.assertIn(item.get("ref"), layout.images)
            else:
                self.assertIn(item.get("ref"), layout.strings)
                self.assertIn(item.get("font"), layout.fonts)

    @for_each(LAYOUTS)
    def test_no_item_is_without_use(self, layout):
        items = [item for top in layout.objects for item in top.iter()]
        self.assertEqual(set(layout.images) | set(layout.strings), {item.get("ref") for item in items})
        self.assertEqual(set(layout.fonts), {item.get("font") for item in items if item.get("font")})

    @for_each(LAYOUTS)
    def test_fonts_have_an_installed_family_a_size_and_a_colour(self, layout):
        for font in layout.fonts.values():
            self.assertRegex(font.get("color"), r"\A[0-9A-F]{6}\Z")
            self.assertGreater(int(font.get("size")), 0)
            name, *properties = font.get("family").split(":")
            properties = dict(item.split("=") for item in properties)
            self.assertEqual("auto", properties.pop("lang"))
            style = properties.pop("style", "Regular")
            self.assertEqual(f"{name}|{style}", installed_font(f"{name}:style={style}"))
            self.assertEqual({}, properties)

    @for_each(LAYOUTS)
    def test_top_level_objects_are_images_with_a_place_and_drawn_at_the_origin(self, layout):
        for item in layout.objects:
            self.assertEqual("image", item.get("type"))
            self.assertRegex(item.get("x") + " " + item.get("y"), r"\A[0-9]+ [0-9]+\Z")
            for attribute in ("top", "left", "text-align", "line-height", "margin"):
                self.assertIsNone(item.get(attribute))

    @for_each(LAYOUTS)
    def test_nothing_leaves_the_area_and_the_panel_fills_it(self, layout):
        area = Box(0, 0, *area_size(layout.file))
        self.assertEqual(area, layout.box(layout.named("background")))
        for item in layout.objects:
            self.assertTrue(area.contains(layout.box(item)), item.get("id"))

    @for_each(LAYOUTS)
    def test_plates_that_hide_the_panel_lie_where_it_is_of_one_colour(self, layout):
        panel = layout.named("background")
        width, height = layout.image_size(panel.get("ref"))
        look = PANELS[panel.get("ref").split("-")[0]]
        for item in layout.objects:
            if layout.hides_what_it_covers(item):
                box = layout.box(item)
                for x, y in itertools.product((box.x, box.x + box.width), (box.y, box.y + box.height)):
                    # From the centre of the panel's nearest rounded corner, or from the edges of its border.
                    across, down = (max(look["radius"] - min(place, size - place), 0)
                                    for place, size in ((x, width), (y, height)))
                    self.assertLessEqual(math.hypot(across, down), look["radius"] - look["line"], item.get("id"))

    @for_each(LAYOUTS)
    def test_keys_field_and_labels_of_a_page_do_not_overlap(self, layout):
        labels = [item for item in layout.objects if ".label." in f".{item.get('id')}"]
        for page in layout.pages() or [None]:
            items = [item for _, item in layout.keys_of_page(page)] + labels + [layout.named("input")]
            boxes = [(item.get("id"), layout.box(item)) for item in items]
            for (first, first_box), (second, second_box) in itertools.combinations(boxes, 2):
                self.assertFalse(first_box.overlaps(second_box), f"{first} and {second}")

    @for_each(LAYOUTS)
    def test_both_images_of_a_key_have_the_same_place_and_size_and_differ(self, layout):
        normal, focus = layout.keys("normal"), layout.keys("focus")
        self.assertEqual(len(normal), len(focus))
        self.assertEqual(len(layout.objects), len(normal) + len(focus) + 4)
        for match, item in normal:
            twin = layout.named(item.get("id").removesuffix("normal") + "focus")
            self.assertEqual(layout.box(item), layout.box(twin), match[0])
            self.assertNotEqual(item.get("ref"), twin.get("ref"))

    @for_each(LAYOUTS)
    def test_what_is_nested_in_a_key_fits_on_it(self, layout):
        for match, item in layout.keys("normal") + layout.keys("focus"):
            nested = list(item)
            self.assertEqual(1, len(nested), match[0])
            width, height = layout.image_size(item.get("ref"))
            if nested[0].get("type") == "image":
                icon_width, icon_height = layout.image_size(nested[0].get("ref"))
                self.assertLess(icon_width, width - TEXT_ALLOWANCE)
                self.assertLess(icon_height, height)
            else:
                self.assertLess(int(layout.fonts[nested[0].get("font")].get("size")) * 1.4, height)

    @for_each(LAYOUTS)
    def test_images_of_a_pad_keep_the_limits_of_the_transfer(self, layout):
        self.assertLessEqual(len(layout.objects), protocol_limit("IMAGE_COUNT_MAX"))
        for item in layout.objects:
            box = layout.box(item)
            size = box.width * box.height * protocol_limit("BYTES_PER_PIXEL")
            self.assertLessEqual(size + protocol_limit("IMAGE_RECORD_OVERHEAD"),
                                 protocol_limit("IMAGE_BATCH_BUDGET"))
            self.assertLess(len(f"/root/{item.get('id')}.ppm"), protocol_limit("IMAGE_NAME_SIZE"))

    @for_each(LAYOUTS)
    def test_keysyms_are_x_keysyms_and_their_labels_the_characters_they_type(self, layout):
        for match, item in layout.keys("normal") + layout.keys("focus"):
            keysym = match["keysym"]
            self.assertNotEqual(0, XKB.keysym(keysym), keysym)
            if match["target"] or keysym in CONTROL_KEYS or keysym == "space":
                continue
            self.assertEqual(XKB.character(keysym), layout.strings[item[0].get("ref")].get("value"), match[0])

    @for_each(LAYOUTS)
    def test_only_words_are_translated(self, layout):
        for name, text in layout.strings.items():
            word = name == "title" or name.removeprefix("key.") in CONTROL_KEYS
            self.assertEqual("true" if word else None, text.get("i18n"), name)

    @for_each(LAYOUTS)
    def test_dots_start_inside_the_field_at_the_end_where_text_starts(self, layout):
        field, dot = layout.box(layout.named("input")), layout.box(layout.named("mask"))
        self.assertTrue(field.contains(dot))
        left, right = dot.x - field.x, field.x + field.width - dot.x - dot.width
        self.assertGreater(min(left, right), 0)
        self.assertEqual("reverse" in layout.file, right < left)

    @for_each(LAYOUTS)
    def test_a_pin_of_eight_digits_and_the_longest_password_fit_into_the_field(self, layout):
        field, dot = layout.box(layout.named("input")), layout.box(layout.named("mask"))
        room = dot.x + dot.width - field.x if "reverse" in layout.file else field.x + field.width - dot.x
        self.assertGreaterEqual(room // dot.width, 8 if layout in PINPADS else protocol_limit("TEXT_MAX"))


class PinPads(unittest.TestCase):
    @for_each(PINPADS)
    def test_has_the_ten_digits_and_the_four_control_keys_and_nothing_else(self, layout):
        keysyms = [match["keysym"] for match, _ in layout.keys()]
        self.assertEqual(sorted([*string.digits, *CONTROL_KEYS]), sorted(keysyms))

    @for_each(PINPADS)
    def test_digits_stand_in_the_same_order_in_every_layout(self, layout):
        places = {match["keysym"]: layout.box(item) for match, item in layout.keys()}
        order = sorted(string.digits, key=lambda digit: (places[digit].y, places[digit].x))
        self.assertEqual("1234567890", "".join(order))


class Keyboards(unittest.TestCase):
    @for_each(KEYBOARDS)
    def test_every_printable_ascii_character_can_be_typed(self, layout):
        printable = {chr(code) for code in range(0x20, 0x7f)}
        typed = {XKB.character(match["keysym"]) for match, _ in layout.keys() if not match["target"]}
        # Others come back mangled from the decryption; None and control characters are no text.
        self.assertEqual(printable, {character for character in typed if character and character.isprintable()})

    @for_each(KEYBOARDS)
    def test_every_page_can_be_reached_from_the_first_and_leads_back(self, layout):
        pages = set(layout.pages())
        ways = {page: {match["target"] for match, _ in layout.keys_of_page(page) if match["target"]}
                for page in pages}
        self.assertIn("main", pages)
        self.assertEqual(pages, self.reachable("main", ways))
        for page in pages:
            self.assertIn("main", self.reachable(page, ways))

    @staticmethod
    def reachable(start, ways):
        reached, waiting = {start}, [start]
        while waiting:
            new = ways[waiting.pop()] - reached
            reached |= new
            waiting += new
        return reached

    @for_each(KEYBOARDS)
    def test_every_page_has_digits_and_control_keys_and_fills_the_same_rows(self, layout):
        filled = set()
        for page in layout.pages():
            keys = layout.keys_of_page(page)
            self.assertLessEqual({*string.digits, *CONTROL_KEYS, "space"}, {match["keysym"] for match, _ in keys})
            boxes = [layout.box(item) for _, item in keys]
            filled.add(frozenset((y, min(box.x for box in boxes if box.y == y),
                                  max(box.x + box.width for box in boxes if box.y == y))
                                 for y in {box.y for box in boxes}))
        self.assertEqual(1, len(filled))

    @for_each(KEYBOARDS)
    def test_letters_and_digits_keep_their_order_in_every_layout(self, layout):
        places = {match["keysym"]: layout.box(item) for match, item in layout.keys()}
        for row in ("1234567890", "qwertyuiop", "asdfghjkl", "zxcvbnm", "QWERTYUIOP", "ASDFGHJKL", "ZXCVBNM"):
            self.assertEqual(row, "".join(sorted(row, key=lambda key: places[key].x)))
            self.assertEqual(1, len({places[key].y for key in row}))


class ReverseLayouts(unittest.TestCase):
    def test_control_keys_field_and_title_change_sides(self):
        for layout in LAYOUTS:
            if "reverse" in layout.file:
                continue
            folder = {"normal": "reverse", "vertical_normal": "vertical_reverse"}[layout.file.split("/")[0]]
            name = layout.file.split("/")[1].replace("pinpad", "reverse-pinpad").replace("keyboard", "reverse-keyboard")
            reverse = LayoutFile(f"{folder}/{name}")
            width = area_size(layout.file)[0]
            moved = [item.get("id") for match, item in layout.keys() if match["keysym"] in CONTROL_KEYS
                     or match["target"]]
            for object_id in [*moved, "input", "mask", "label.title"]:
                with self.subTest(f"{layout.file} {object_id}"):
                    box = layout.box(layout.named(object_id))
                    mirrored = Box(width - box.x - box.width, box.y, box.width, box.height)
                    self.assertEqual(mirrored, reverse.box(reverse.named(object_id)))


if __name__ == "__main__":
    unittest.main()
