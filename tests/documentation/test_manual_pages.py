"""Every program has a manual page, which has the options that the program has, and is sound."""
import os
import re
import subprocess
import unittest

from markdown import ROOT

PAGES = ROOT / "docs/man"
# Programs that take a command have the help of each beside their own.
COMMANDS = {"vaultpad-layout": ["check", "render", "gallery", "watch"]}


def programs():
    """From name to path, as the build made them."""
    return dict(entry.split("=", 1) for entry in os.environ["VAULTPAD_PROGRAMS"].split(","))


def page_of(name):
    pages = list(PAGES.glob(f"{name}.[18]"))
    if len(pages) != 1:
        raise AssertionError(f"{name} has {len(pages)} manual pages in docs/man")
    return re.sub(r"\\f.", "", pages[0].read_text().replace("\\-", "-"))


def help_of(path, *command):
    """What a program says about its use; one without the option says it for the wrong argument."""
    result = subprocess.run([path, *command, "--help"], capture_output=True, text=True, stdin=subprocess.DEVNULL)
    return result.stdout if result.returncode == 0 else result.stderr


def whole_help(name, path):
    return "\n".join([help_of(path), *(help_of(path, command) for command in COMMANDS.get(name, []))])


def long_options(text):
    return set(re.findall(r"(?<![\w-])--[a-z][a-z-]+", text))


class ManualPages(unittest.TestCase):
    def test_each_program_has_a_page_and_each_page_a_program(self):
        self.assertEqual(sorted(programs()), sorted(page.stem for page in PAGES.iterdir()))

    def test_a_page_has_the_options_that_its_program_has(self):
        for name, path in programs().items():
            with self.subTest(name):
                shown = whole_help(name, path)
                self.assertTrue(shown)
                self.assertEqual(set(), long_options(shown) ^ long_options(page_of(name)))

    def test_a_page_has_the_words_of_its_program_s_usage(self):
        for name, path in programs().items():
            usage = re.search(rf"usage: {name} (.*)", help_of(path))
            if usage:
                with self.subTest(name):
                    words = re.findall(r"[\w-]{2,}", usage.group(1))
                    self.assertEqual([], [word for word in words if word not in page_of(name)])

    def test_mandoc_has_nothing_to_warn_about(self):
        for page in PAGES.iterdir():
            result = subprocess.run(["mandoc", "-T", "lint", "-W", "warning", page], capture_output=True, text=True)
            self.assertEqual("", result.stdout + result.stderr)

    def test_groff_has_nothing_to_warn_about(self):
        for page in PAGES.iterdir():
            result = subprocess.run(["groff", "-man", "-T", "utf8", "-ww", "-z", page], capture_output=True, text=True)
            self.assertEqual("", result.stdout + result.stderr)


if __name__ == "__main__":
    unittest.main()
