"""vaultpad-layout check: each rule finds what breaks it, in the right line, and nothing else."""

import re
import unittest
from dataclasses import dataclass

from layouttool import STAGE, ToolTest, run, staged

FINDING = re.compile(r"^(?P<file>.+):(?P<line>[0-9]+): (?P<rule>[a-z-]+): (?P<what>.+); (?P<mend>.+)$")
ALL = sorted(path for path in (STAGE / "xml").rglob("*.xml") if path.parent.name != "audio")


@dataclass(frozen=True)
class Break:
    """A change of a layout that breaks a rule: patterns and what replaces each of their matches.

    The findings are expected in the lines of the changed file that the pattern `at` matches.
    """
    rule: str
    name: str
    changes: tuple
    at: str
    layout: str = "pinpad"


def key(name, page=""):
    """The id of a key's two images, as a pattern with the state for its group."""
    return rf'id="{page}key\.{name}\.(normal|focus)"'


BREAKS = (
    Break("xml", "an element is not closed", (('<string id="title"', '<<string id="title"'),), '<<string'),
    Break("schema", "an unknown attribute", (('<object id="input"', '<object id="input" colour="red"'),), "colour="),
    Break("schema", "an unknown element", (("<fonts>", "<fonts><typeface/>"),), "<typeface"),
    Break("schema", "an unknown word", (('(id="key.5.normal".*\n.*)"center"', r'\1"middle"'),), '"middle"'),
    Break("duplicate-id", "two strings", (('(<string id="key.5" .*)', r'\1\n\1<!-- twice -->'),), "twice"),
    Break("duplicate-id", "two objects", ((r'(<object id="input".*)', r'\1\n\1<!-- twice -->'),), "twice"),
    Break("ref", "a string that is not there", (('(id="key.5.normal".*\n.*)ref="key.5"', r'\1ref="key.55"'),), "key.55"),
    Break("ref", "an image that is not there", (('(id="input".*)ref="[^"]*"', r'\1ref="no"'),), 'ref="no"'),
    Break("font", "a font that is not there", (('(id="key.5.normal".*\n.*)font="[^"]*"', r'\1font="no"'),), 'font="no"'),
    Break("font", "a text without a font", (('(id="key.5.normal".*\n.*) font="[^"]*"', r'\1'),),
          'ref="key.5" text'),
    Break("place", "no y", (('(id="input".*) y="[0-9]*"', r"\1"),), 'id="input"'),
    Break("place", "an empty x", (('(id="input".*) x="[0-9]*"', r'\1 x=""'),), 'id="input"'),
    Break("origin", "a top", (('id="input"', 'id="input" top="3"'),), 'id="input"'),
    Break("origin", "a left", (('id="mask"', 'id="mask" left="3"'),), 'id="mask"'),
    Break("id", "a name that begins with a digit", (("label.title", "label.9title"),), 'id="label.9title"'),
    Break("id", "no keysym", ((key(5), r'id="key.five.\1"'),), 'id="key.five'),
    Break("twin", "no focused image", ((r' *<object id="key.5.focus".*\n.*\n *</object>\n', ""),), "key.5.normal"),
    Break("twin", "another place", (('(id="key.5.focus".*) y="[0-9]*"', r'\1 y="190"'),), "key.5.focus"),
    Break("number", "a unit", (('(font id="title.*)size="([0-9]*)"', r'\1size="\2px"'),), 'px"'),
    Break("number", "no size", (('(font id="title.*)size="([0-9]*)"', r'\1size="0"'),), 'size="0"'),
    Break("number", "a place with a sign", (('(id="input".*) x="([0-9]*)"', r'\1 x="+\2"'),), r'x="\+'),
    Break("number", "an empty width", (('(id="place.label.title" )width="[0-9]*"', r"\1"),), 'image id="place.label'),
    Break("number", "too large a number", (('(id="input".*) x="[0-9]*"', r'\1 x="4294967296"'),), "4294967296"),
    Break("number", "a place outside of any screen", (('(id="input".*) x="[0-9]*"', r'\1 x="100001"'),), "100001"),
    Break("draw", "an object larger than the screen", (('(id="place.label.title" )width="[0-9]*"', r'\1width="1921"'),),
          "^<layout>"),
    Break("colour", "a leading number sign", (('(font id="title.*)color="', r'\1color="#'),), 'color="#'),
    Break("colour", "five digits", (('(font id="title.*)color="[^"]*"', r'\1color="FFFFF"'),), '"FFFFF"'),
    Break("image", "a file that is not there", (('url="standard-dot[^"]*"', 'url="none.png"'),), 'none.png'),
    Break("image", "a folder that is not there", (('basedir="[^"]*"', 'basedir="/nowhere"'),), "basedir"),
    Break("page", "a page that nothing is on", ((key(5), r'id="key.5.to-nowhere.\1"'),), "nowhere"),
    Break("page", "no page to open on", ((key(5), r'id="other.key.5.\1"'),), "other.key.5.normal"),
    Break("overlap", "a key over another", ((rf'({key(5)}.*) x="[0-9]*"', r'\1 x="250"'),), "key.6.normal"),
    Break("area", "a key over the edge", ((rf'({key(3)}.*) x="([0-9]*)"', r'\1 x="320"'),), r"key\.3\."),
    Break("mask", "dots beside the field", (('(id="mask".*) x="[0-9]*"', r'\1 x="0"'),), 'id="mask"'),
    Break("reach", "a page that no key shows",
          ((key(5), r'id="main.key.5.\1"'), (key(6), r'id="other.key.6.\1"')), "other.key.6.normal"),
    Break("reach", "a key that no arrow leads to",
          (("</images>", '<image id="tiny" width="3" height="3"/></images>'),
           ("</objects>", '<object id="key.7.to-main.normal" type="image" ref="tiny" x="150" y="177"/>\n'
                          '<object id="key.7.to-main.focus" type="image" ref="tiny" x="150" y="177"/></objects>'),
           (key(5), r'id="main.key.5.\1"')), "key.7.to-main.normal"),
    Break("fit", "a word that is too long", (('(<string id="key.5" )value="5"', r'\1value="55555555"'),), 'ref="key.5"'),
    Break("fit", "a text beside its image",
          (('(id="key.5.normal".*\n.*)text-align="center"', r'\1left="300"'),), 'left="300"'),
    Break("contrast", "dim characters", (('(font id="character-on-key".*)color="[^"]*"', r'\1color="606060"'),),
          'font="character-on-key"', "pinpad-h"),
    Break("contrast", "a focus that is not seen",
          (('(id="key.5.focus".*)ref="contrast-focus(.*\n.*)on-focus', r'\1ref="contrast-key\2on-key'),),
          "key.5.focus", "pinpad-eh"),
)

VOICES = ('<voice>\n<voices>\n<item id="label.title"/>\n<item id="key.5"/>\n<item id="key.6.focus"/>\n'
          '</voices>\n</voice>\n')
VOICE_BREAKS = (
    Break("missing-id", "no id", (('<item id="key.5"/>', "<item/>"),), "<item/>"),
    Break("duplicate-id", "an id twice", (("key.6.focus", "key.5"), ), "^<item.*key.5"),
    Break("unknown-key", "no key", (("key.6.focus", "key.q"),), "key.q"),
    Break("unknown-key", "another item", (("key.6.focus", "input"),), "input"),
    Break("unknown-key", "no label", (("label.title", "label.help"),), "label.help"),
    Break("schema", "nested voices", (('<item id="key.6.focus"/>', '<item id="key.6"><item/></item>'),), "key.6"),
)


def broken(text, breakage):
    for pattern, replacement in breakage.changes:
        text, count = re.subn(pattern, replacement, text)
        if count == 0:
            raise AssertionError(f"{breakage.name}: nothing matches {pattern}")
    return text


def matching_lines(text, pattern):
    return [number for number, line in enumerate(text.split("\n"), 1) if re.search(pattern, line)]


class Check(ToolTest):
    def check(self, file, *options):
        """(line, rule) of each finding."""
        result = run("check", file, *options)
        matches = [FINDING.match(line) for line in result.stdout.splitlines()]
        self.assertNotIn(None, matches, result.stdout)
        self.assertEqual("", result.stderr)
        self.assertEqual(1 if matches else 0, result.returncode)
        self.assertEqual({str(file)} if matches else set(), {match["file"] for match in matches})
        return [(int(match["line"]), match["rule"]) for match in matches]

    def test_finds_nothing_in_the_layouts(self):
        self.assertEqual(32, len(ALL))
        result = run("check", *ALL)
        self.assertEqual((0, "", ""), (result.returncode, result.stdout, result.stderr))

    def test_finds_exactly_the_rule_that_was_broken(self):
        for breakage in BREAKS:
            with self.subTest(f"{breakage.rule}: {breakage.name}"):
                text = broken(staged(breakage.layout).read_text(encoding="utf-8"), breakage)
                file = self.folder / (breakage.layout + ".xml")
                file.write_text(text, encoding="utf-8")
                lines = matching_lines(text, breakage.at)
                self.assertNotEqual([], lines)
                self.assertEqual([(line, breakage.rule) for line in lines], self.check(file))

    def test_contrast_is_promised_by_the_high_contrast_layouts_only(self):
        breakage = next(breakage for breakage in BREAKS if breakage.rule == "contrast")
        file = self.folder / "pinpad.xml"
        file.write_text(broken(staged("pinpad").read_text(encoding="utf-8"), breakage), encoding="utf-8")
        self.assertEqual([], self.check(file))

    def test_checks_labels_in_each_language_that_is_asked_for(self):
        file = self.folder / "pinpad.xml"
        file.write_text(staged("pinpad").read_text(encoding="utf-8").replace('width="415"', 'width="200"'),
                        encoding="utf-8")
        found = {}
        for languages in ("en", "de", "en,de", "all"):
            result = run("check", "--languages", languages, file)
            found[languages] = set(re.findall(r"\((\w+)\) is drawn with size", result.stdout))
        self.assertEqual(set(), found["en"])
        self.assertEqual({"de"}, found["de"])
        self.assertEqual({"de"}, found["en,de"])
        self.assertLess({"de"}, found["all"])

    def test_a_label_may_shrink_down_to_the_smallest_font(self):
        breakage = next(breakage for breakage in BREAKS if breakage.name == "a word that is too long")
        file = self.folder / "pinpad.xml"
        file.write_text(broken(staged("pinpad").read_text(encoding="utf-8"), breakage), encoding="utf-8")
        size = int(re.search(r"drawn with size ([0-9]+)", run("check", file).stdout)[1])
        self.assertEqual([], self.check(file, "--min-font", str(size)))
        self.assertEqual(["fit", "fit"], [rule for _, rule in self.check(file, "--min-font", str(size + 1))])

    def test_takes_the_area_that_it_is_told(self):
        file = self.folder / "own.xml"
        file.write_bytes(staged("pinpad").read_bytes())
        self.assertEqual([], self.check(file, "--area", "443x486"))
        self.assertEqual([], self.check(file, "--as", "pinpad-e.xml"))
        self.assertEqual(["area"], [rule for _, rule in self.check(file, "--area", "443x485")])

    def test_finds_images_in_the_folder_that_it_is_told(self):
        breakage = next(breakage for breakage in BREAKS if breakage.name == "a folder that is not there")
        file = self.folder / "pinpad.xml"
        file.write_text(broken(staged("pinpad").read_text(encoding="utf-8"), breakage), encoding="utf-8")
        self.assertEqual([], self.check(file, "--images", STAGE / "images"))

    def test_finds_nothing_in_the_staged_voice_files(self):
        for pad in ("keyboard", "pinpad"):
            with self.subTest(pad):
                self.assertEqual([], self.check(staged(f"{pad}-audio")))

    def test_finds_nothing_in_a_voice_file_for_the_layouts_keys_and_labels(self):
        file = self.folder / "pinpad-audio.xml"
        file.write_text(VOICES, encoding="utf-8")
        self.assertEqual([], self.check(file, "--layout", staged("pinpad")))

    def test_finds_exactly_the_rule_that_was_broken_in_a_voice_file(self):
        for breakage in VOICE_BREAKS:
            with self.subTest(f"{breakage.rule}: {breakage.name}"):
                text = broken(VOICES, breakage)
                file = self.folder / "pinpad-audio.xml"
                file.write_text(text, encoding="utf-8")
                lines = matching_lines(text, breakage.at)[-1:]
                self.assertEqual([(line, breakage.rule) for line in lines],
                                 self.check(file, "--layout", staged("pinpad")))

    def test_a_finding_stays_on_its_line_whatever_the_attribute_holds(self):
        file = self.folder / "pinpad.xml"
        file.write_text(staged("pinpad").read_text(encoding="utf-8").replace('ref="title"', 'ref="a&#10;b"'),
                        encoding="utf-8")
        self.assertEqual(["ref"], [rule for _, rule in self.check(file)])

    def test_refuses_wrong_use(self):
        pinpad = staged("pinpad")
        unnamed = self.folder / "own.xml"
        unnamed.write_bytes(pinpad.read_bytes())
        voices = self.folder / "pinpad-audio.xml"
        voices.write_text(VOICES, encoding="utf-8")
        for options, text in (
                ((), "subcommand"),
                (("check",), "FILE"),
                (("check", "nothing.xml"), "nothing.xml"),
                (("check", pinpad, "--area", "443"), "WIDTHxHEIGHT"),
                (("check", pinpad, "--min-font", "0"), "--min-font"),
                (("check", pinpad, "--languages", "xx"), "no catalogue for 'xx'"),
                (("check", unnamed), "does not tell the kind of pad"),
                (("check", voices), "--layout"),
                (("mend", pinpad), "subcommand"),
        ):
            with self.subTest(options[:1] + options[2:]):
                self.assert_wrong_use(run(*options), text)

    def test_says_its_version_and_how_it_is_used(self):
        self.assertRegex(run("--version").stdout, r"^vaultpad-layout [0-9.]+\n\Z")
        for command in ("check", "render", "gallery", "watch"):
            result = run(command, "--help")
            self.assertEqual(0, result.returncode)
            self.assertIn("FILE", result.stdout)


if __name__ == "__main__":
    unittest.main()
