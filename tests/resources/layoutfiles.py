"""Reads the staged layouts for the tests, with the names and limits that the library and the TA go by."""

import os
import re
import struct
from dataclasses import dataclass
from pathlib import Path
from xml.etree import ElementTree

SOURCES = Path(__file__).resolve().parents[2]
STAGE = Path(os.environ["VAULTPAD_RES_STAGE"])
PROTOCOL = (SOURCES / "include/vaultpad/ta-protocol.h").read_text(encoding="utf-8")

LAYOUT_FILES = [
    f"{folder}/{stem}{pad}{suffix}.xml"
    for folder, stem in (("normal", ""), ("reverse", "reverse-"), ("vertical_normal", "vertical-"),
                         ("vertical_reverse", "vertical-reverse-"))
    for pad in ("keyboard", "pinpad")
    for suffix in ("", "-e", "-h", "-eh")
]

VOICE_FILES = {pad: f"audio/{pad}-audio.xml" for pad in ("keyboard", "pinpad")}

OBJECT_ID = re.compile(
    r"(?:(?P<page>(?!(?:background|input|mask|label|key)\.)[a-z][a-z0-9]*)\.)?"
    r"(?P<item>background|input|mask|label\.(?P<label>[A-Za-z][A-Za-z0-9_-]*)"
    r"|key\.(?P<keysym>[A-Za-z0-9_]+)(?:\.to-(?P<target>[a-z][a-z0-9]*))?\.(?P<state>normal|focus))")


def protocol_limit(name):
    """A number of the TA protocol's header."""
    return int(re.search(rf"\bVAULTPAD_TA_{name} = ([0-9]+)", PROTOCOL)[1])


def area_size(file):
    """Width and height of the area that a layout file is for."""
    zoomed = file.endswith(("-e.xml", "-eh.xml"))
    if "pinpad" in file:
        return (525, 578) if zoomed else (443, 486)
    if file.startswith("vertical_"):
        return (1080, 480)
    return (1538, 580) if zoomed else (1284, 490)


def tga_header(path):
    """Width, height and bits per pixel of a run-length encoded Targa file."""
    with open(path, "rb") as file:
        kind, width, height, bits = struct.unpack("<2xB9xHHBx", file.read(18))
    if kind != 10:
        raise ValueError(f"{path}: not a run-length encoded Targa file")
    return width, height, bits


@dataclass(frozen=True)
class Box:
    x: int
    y: int
    width: int
    height: int

    def overlaps(self, other):
        return (self.x < other.x + other.width and other.x < self.x + self.width
                and self.y < other.y + other.height and other.y < self.y + self.height)

    def contains(self, other):
        return (self.x <= other.x and other.x + other.width <= self.x + self.width
                and self.y <= other.y and other.y + other.height <= self.y + self.height)


def voices(pad):
    """The items of a pad's staged voice file, as the library collects them from its sections."""
    return ElementTree.parse(STAGE / "xml" / VOICE_FILES[pad]).getroot().findall("voices/*")


class LayoutFile:
    """A staged layout: its items by id, and its top-level objects with their places."""

    def __init__(self, file):
        self.file = file
        self.root = ElementTree.parse(STAGE / "xml" / file).getroot()
        self.fonts, self.images, self.strings = (self._items(name) for name in ("fonts", "images", "strings"))
        self.objects = list(self.root.find("objects"))
        self.directory = Path(self.root.find("images").get("basedir"))

    def _items(self, section):
        return {item.get("id"): item for item in self.root.find(section)}

    def image_size(self, image_id):
        image = self.images[image_id]
        if image.get("type") == "file":
            return tga_header(self.directory / image.get("url"))[:2]
        return int(image.get("width")), int(image.get("height"))

    def hides_what_it_covers(self, item):
        image = self.images[item.get("ref")]
        return image.get("type") == "file" and tga_header(self.directory / image.get("url"))[2] == 24

    def box(self, item):
        return Box(int(item.get("x")), int(item.get("y")), *self.image_size(item.get("ref")))

    def named(self, object_id):
        return next(item for item in self.objects if item.get("id") == object_id)

    def keys(self, state="normal"):
        """(match of the id, object) for each key in a state."""
        matches = ((OBJECT_ID.fullmatch(item.get("id")), item) for item in self.objects)
        return [(match, item) for match, item in matches if match["state"] == state]

    def keys_of_page(self, page):
        return [(match, item) for match, item in self.keys() if match["page"] in (None, page)]

    def pages(self):
        return sorted({match["page"] for match, _ in self.keys() if match["page"]})
