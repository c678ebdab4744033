"""What must hold for the voice files: they speak for every key and label of their pad."""

import functools
import unittest

from layoutfiles import LAYOUT_FILES, VOICE_FILES, LayoutFile, voices


def spoken_ids(layout):
    """The ids of a layout's keys, without the state, and of its labels."""
    labels = {item.get("id") for item in layout.objects if ".label." in f".{item.get('id')}"}
    return labels | {match[0].removesuffix(".normal") for match, _ in layout.keys()}


def for_each_pad(test):
    """Runs a test for each pad with the items of its voice file, and names the one that fails."""
    @functools.wraps(test)
    def run(self):
        for pad in VOICE_FILES:
            with self.subTest(pad):
                test(self, pad, voices(pad))
    return run


class Voices(unittest.TestCase):
    @for_each_pad
    def test_speak_exactly_once_for_every_key_and_label_of_every_layout(self, pad, items):
        layouts = [LayoutFile(file) for file in LAYOUT_FILES if pad in file]
        self.assertEqual(16, len(layouts))
        for layout in layouts:
            self.assertEqual(sorted(spoken_ids(layout)), sorted(voice.get("id") for voice in items), layout.file)

    @for_each_pad
    def test_title_speaks_first_and_the_words_that_are_drawn(self, pad, items):
        title = LayoutFile(f"normal/{pad}.xml").strings["title"]
        self.assertEqual(("label.title", title.get("value"), "true"),
                         tuple(items[0].get(name) for name in ("id", "text", "i18n")))

    @for_each_pad
    def test_labelled_keys_speak_their_label_and_all_others_a_translated_text(self, pad, items):
        layout = LayoutFile(f"normal/{pad}.xml")
        spoken = {voice.get("id"): voice for voice in items}
        for match, item in layout.keys():
            voice = spoken[match[0].removesuffix(".normal")]
            label = layout.strings.get(item[0].get("ref"))
            if label is None or match["target"]:
                self.assertEqual("true", voice.get("i18n"), match[0])
            elif voice.get("i18n") is None or label.get("i18n") == "true":
                self.assertEqual((label.get("value"), label.get("i18n")), (voice.get("text"), voice.get("i18n")))

    @for_each_pad
    def test_text_that_is_not_translated_is_a_single_character(self, _, items):
        for voice in items:
            self.assertIn(voice.get("i18n"), ("true", None))
            self.assertEqual(voice.get("i18n") is None, len(voice.get("text")) == 1, voice.get("id"))

    @for_each_pad
    def test_capital_letters_and_no_others_are_put_into_a_pattern(self, _, items):
        for voice in items:
            keysym = voice.get("id").rpartition("key.")[2]
            capital = len(keysym) == 1 and keysym.isupper()
            self.assertEqual(keysym if capital else None, voice.get("letter"), voice.get("id"))
            self.assertEqual(1 if capital else 0, voice.get("text").count("%s"), voice.get("id"))

    def test_punctuation_that_speech_synthesisers_pass_over_is_spoken_in_words(self):
        spoken = {voice.get("id").rpartition("key.")[2]: voice for voice in voices("keyboard")}
        for keysym in ("comma", "period", "colon", "semicolon", "exclam", "question", "quotedbl", "apostrophe", "minus",
                       "underscore", "slash", "backslash", "at"):
            self.assertEqual("true", spoken[keysym].get("i18n"), keysym)

    @for_each_pad
    def test_no_two_keys_of_a_page_speak_alike(self, pad, items):
        layout = LayoutFile(f"normal/{pad}.xml")
        spoken = {voice.get("id"): (voice.get("text"), voice.get("letter")) for voice in items}
        for page in layout.pages() or [None]:
            texts = [spoken[match[0].removesuffix(".normal")] for match, _ in layout.keys_of_page(page)]
            self.assertEqual(len(texts), len(set(texts)), page)


if __name__ == "__main__":
    unittest.main()
