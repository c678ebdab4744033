"""What must hold for the television's languages: the table, the catalogues, the locales."""

import gettext
import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

from layoutfiles import LAYOUT_FILES, SOURCES, STAGE, VOICE_FILES, LayoutFile, voices

CATALOGUES = SOURCES / "res/locale"
TEMPLATE = CATALOGUES / "vaultpad.pot"
LOCALES = Path(os.environ["VAULTPAD_LOCALE_PATH"])
# The language that the descriptions are written in.
SOURCE_LANGUAGE = "en"
HEADER_FIELD = re.compile(r'^"([A-Z][A-Za-z-]+): (.*)\\n"$', re.MULTILINE)
MESSAGE = re.compile(r'^msgid "(.+)"$', re.MULTILINE)
LINE = re.compile(r"(?P<language>[a-z]+(?:_[A-Z]+)?) +(?P<locale>[a-z]+_[A-Z]+\.UTF-8) +(?P<name>[A-Z].*)")
LOCALE_CATEGORIES = ("LC_CTYPE", "LC_MESSAGES", "LC_COLLATE", "LC_TIME", "LC_NUMERIC", "LC_IDENTIFICATION")


def table():
    """language: locale of each line of the table."""
    lines = (CATALOGUES / "languages.txt").read_text(encoding="utf-8").splitlines()
    matches = [LINE.fullmatch(line) for line in lines if not line.startswith("#")]
    return {match["language"]: match["locale"] for match in matches}


def translated_languages():
    return sorted(set(table()) - {SOURCE_LANGUAGE})


def messages():
    return MESSAGE.findall(TEMPLATE.read_text(encoding="utf-8"))


def _complaints(*command):
    """What a tool says about a catalogue, if only as a warning."""
    result = subprocess.run(command, capture_output=True, text=True, encoding="utf-8", check=False,
                            env=os.environ | {"LC_ALL": "C.UTF-8"})
    lines = result.stderr.splitlines()
    return lines or ([f"{command[0]} ended with {result.returncode}"] if result.returncode else [])


def problems(folder, language):
    """Everything that is wrong with a language's catalogue, a line each."""
    source = folder / f"{language}.po"
    if not source.exists():
        return [f"{source}: missing; translate {TEMPLATE.name} into it, or take {language} out of languages.txt"]
    return (_complaints("msgfmt", "--check", "--output-file=/dev/null", source)
            + _complaints("msgcmp", source, TEMPLATE) + _header_problems(source, language))


def _header_problems(source, language):
    header = dict(HEADER_FIELD.findall(source.read_text(encoding="utf-8")))
    wanted = {"Language": language, "Last-Translator": "Vault Pad developers", "MIME-Version": "1.0",
              "Content-Type": "text/plain; charset=UTF-8", "Content-Transfer-Encoding": "8bit",
              "Project-Id-Version": "vaultpad 1.0"}
    found = [f"{source}: {key}: is \"{header.get(key)}\", make it \"{value}\"" for key, value in wanted.items()
             if header.get(key) != value]
    return found + [f"{source}: {key}: is missing; add it" for key in ("PO-Revision-Date", "Language-Team")
                    if not header.get(key)]


class Languages(unittest.TestCase):
    def test_every_line_of_the_table_can_be_read_and_none_is_there_twice(self):
        lines = [line for line in (CATALOGUES / "languages.txt").read_text(encoding="utf-8").splitlines()
                 if not line.startswith("#")]
        for line in lines:
            self.assertRegex(line, LINE)
        self.assertEqual(len(lines), len(table()))
        self.assertEqual(len(lines), len(set(table().values())))

    def test_there_are_those_that_televisions_are_sold_with(self):
        self.assertLessEqual({"ar", "cs", "de", "el", "es", "fi", "fr", "he", "hi", "hu", "it", "ja", "ko", "nl", "pl",
                              "pt", "ru", "sv", "th", "tr", "uk", "vi", "zh_CN", "zh_TW"}, set(table()))

    def test_no_catalogue_is_without_a_line_in_the_table(self):
        self.assertEqual(translated_languages(), sorted(path.stem for path in CATALOGUES.glob("*.po")))

    def test_every_language_has_a_whole_locale(self):
        for locale in table().values():
            for category in LOCALE_CATEGORIES:
                with self.subTest(f"{locale} {category}"):
                    self.assertTrue((LOCALES / locale / category).exists())


class Catalogues(unittest.TestCase):
    def test_are_complete_and_without_warnings(self):
        for language in translated_languages():
            with self.subTest(language):
                self.assertEqual([], problems(CATALOGUES, language))

    def test_staged_ones_answer_with_the_translation(self):
        self.assertIn("Enter PIN", messages())
        self.assertEqual(translated_languages(), sorted(path.name for path in (STAGE / "locale").iterdir()))
        for language in translated_languages():
            catalogue = gettext.translation("vaultpad", STAGE / "locale", [language])
            for message in messages():
                with self.subTest(f"{language} {message}"):
                    self.assertNotIn(catalogue.gettext(message), ("", message))

    def test_the_template_has_every_translated_text_of_layouts_and_voices_and_no_other(self):
        drawn = {text.get("value") for file in LAYOUT_FILES for text in LayoutFile(file).strings.values()
                 if text.get("i18n") == "true"}
        spoken = {voice.get("text") for pad in VOICE_FILES for voice in voices(pad) if voice.get("i18n") == "true"}
        self.assertEqual(set(messages()), drawn | spoken)

    def test_no_two_keys_of_a_language_say_the_same(self):
        for language in translated_languages():
            catalogue = gettext.translation("vaultpad", STAGE / "locale", [language])
            with self.subTest(language):
                self.assertEqual(len(messages()), len({catalogue.gettext(message) for message in messages()}))


class WrongCatalogues(unittest.TestCase):
    """What problems() says about a catalogue that somebody spoilt."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.text = (CATALOGUES / "de.po").read_text(encoding="utf-8")

    def problems_with(self, text):
        self.assertNotEqual(self.text, text)
        (self.folder / "de.po").write_text(text, encoding="utf-8")
        return "\n".join(problems(self.folder, "de"))

    def test_a_missing_file_is_named(self):
        self.assertIn("fr.po: missing", problems(self.folder, "fr")[0])

    def test_a_missing_entry_is_a_problem(self):
        text = re.sub(r'#\. [^\n]*\nmsgid "Done"\nmsgstr "Fertig"\n', "", self.text)
        self.assertIn("used but not defined", self.problems_with(text))

    def test_an_empty_entry_is_a_problem(self):
        self.assertIn("untranslated", self.problems_with(self.text.replace('"Fertig"', '""')))

    def test_a_fuzzy_entry_is_a_problem(self):
        self.assertIn("needs to be reviewed",
                      self.problems_with(self.text.replace('msgid "Done"', '#, fuzzy\nmsgid "Done"')))

    def test_an_entry_that_nothing_asks_for_is_a_problem(self):
        self.assertIn("not used", self.problems_with(self.text + '\nmsgid "Old"\nmsgstr "Alt"\n'))

    def test_a_pattern_that_lost_its_letter_is_a_problem(self):
        self.assertIn("format specifications", self.problems_with(self.text.replace('"Großes %s"', '"Großes"')))

    def test_a_header_without_a_field_is_a_problem(self):
        fields = HEADER_FIELD.findall(self.text)
        self.assertEqual(8, len(fields))
        for field, _ in fields:
            with self.subTest(field):
                self.assertIn(f"de.po: {field}: is ",
                              self.problems_with(re.sub(rf'^"{field}: .*\n', "", self.text, flags=re.MULTILINE)))

    def test_a_catalogue_of_another_language_is_a_problem(self):
        self.assertIn('make it "de"', self.problems_with(self.text.replace("Language: de", "Language: fr")))


if __name__ == "__main__":
    unittest.main()
