"""Every text that the library logs or throws is in the integration guide, and the reverse."""
import re
import unittest

from markdown import ROOT, table

GUIDE = "docs/integration-guide.md"
STRING = r'"(?:[^"\\]|\\.)*"'
STRINGS = rf"{STRING}(?:\s*{STRING})*"
LEVELS = {"VPAD_LOG_INFO": "info", "VPAD_LOG_ERROR": "error", "CA_LOG_INFO": "info", "CA_LOG_ERROR": "error"}
# Texts that reach the log behind "%s".
THROWERS = r"(?:exception::Exception|std::runtime_error|std::out_of_range|abandonInit|resolved\([^;]*?,|kDanglingRef =|\bdrop)"


def joined(literals):
    return "".join(literal[1:-1] for literal in re.findall(STRING, literals))


def sources():
    files = [file for pattern in ("*.cpp", "*.c", "*.h") for file in (ROOT / "source").rglob(pattern)]
    return {file.name: file.read_text() for file in files if file.name != "log.h"}


def logged(text):
    return {(LEVELS[macro], joined(literals))
            for macro, literals in re.findall(rf"\b(\w+_LOG_(?:INFO|ERROR))\(\s*({STRINGS})", text)}


def thrown(text):
    return {joined(literals) for literals in re.findall(rf"{THROWERS}\(?\s*({STRINGS})", text)}


def documented(heading):
    rows = table(GUIDE, heading, 4)
    return [(row[1], re.fullmatch(r"`(.*)`", row[0]).group(1)) for row in rows]


class LogLines(unittest.TestCase):
    def test_the_guide_explains_each_log_line_of_the_library_and_no_other(self):
        in_source = set().union(*(logged(text) for text in sources().values()))
        in_guide = documented("Errors") + documented("Information")
        self.assertGreater(len(in_source), 50)
        self.assertEqual(set(), in_source - set(in_guide), "not in the guide")
        self.assertEqual(set(), set(in_guide) - in_source, "not in the library")
        self.assertEqual(len(in_guide), len(set(in_guide)), "a line twice in the guide")

    def test_the_guide_explains_each_text_that_is_thrown_and_no_other(self):
        in_source = set().union(*(thrown(text) for text in sources().values()))
        in_guide = {text for _, text in documented("What stands for `%s`")}
        self.assertEqual(set(), in_source ^ in_guide)

    def test_every_call_of_a_log_macro_is_understood(self):
        for name, text in sources().items():
            calls = len(re.findall(r"\b\w+_LOG_(?:INFO|ERROR)\(\s*[^)\s]", text))
            literals = len(re.findall(rf"\b\w+_LOG_(?:INFO|ERROR)\(\s*{STRINGS}", text))
            self.assertEqual(calls, literals, f"{name}: a format that is no literal")

    def test_every_row_says_a_cause_and_a_mend(self):
        for heading in ("Errors", "Information", "What stands for `%s`"):
            for row in table(GUIDE, heading, 4):
                self.assertTrue(all(row), row)


if __name__ == "__main__":
    unittest.main()
