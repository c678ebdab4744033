"""Runs vaultpad-layout for the tests."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

from PIL import Image, ImageChops

TOOL = Path(os.environ["VAULTPAD_LAYOUT"])
DEMO = Path(os.environ["VAULTPAD_DEMO"])
STAGE = Path(os.environ["VAULTPAD_RES_STAGE"])
SOURCES = Path(__file__).resolve().parents[2]
TIMEOUT = 120


def run(*arguments, **options):
    return subprocess.run([TOOL, *arguments], capture_output=True, text=True, timeout=TIMEOUT, check=False, **options)


def opened(path):
    with Image.open(path) as image:
        image.load()
    return image


def staged(name):
    """The staged layout of a name without folder and ".xml"."""
    files = list((STAGE / "xml").rglob(name + ".xml"))
    assert len(files) == 1, f"{name}: {files}; build the target vaultpad_resources"
    return files[0]


class ToolTest(unittest.TestCase):
    """With a folder of its own for each test."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="vaultpad-layout-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def render(self, layout, *options):
        """The bytes of the picture's file."""
        picture = self.folder / "picture.png"
        result = run("render", layout, "-o", picture, *options)
        self.assertEqual((0, "", ""), (result.returncode, result.stdout, result.stderr))
        return picture

    def assert_same_picture(self, expected, drawn):
        self.assertEqual(("RGB", expected.size), (expected.mode, drawn.size))
        self.assertEqual("RGB", drawn.mode)
        self.assertIsNone(ImageChops.difference(expected, drawn).getbbox(), "there the pictures differ")

    def assert_wrong_use(self, result, text):
        self.assertEqual(2, result.returncode, result.stderr)
        self.assertIn(text, result.stderr + result.stdout)
