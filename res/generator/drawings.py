"""The bitmaps: one SVG text for each face, dot and icon in the size and colour that a layout needs."""

import itertools
import math
import re
from dataclasses import dataclass
from pathlib import Path
from string import Template

from descriptions import DescriptionError

TEMPLATES = Path(__file__).resolve().parent.parent / "images"
VIEW_BOX = re.compile(r'viewBox="0 0 ([0-9]+) ([0-9]+)"')


@dataclass(frozen=True)
class Drawing:
    """A bitmap: name is its file's name without an ending, template the SVG it is made from."""

    name: str
    template: str
    width: int
    height: int
    values: tuple

    def svg(self):
        text = _template(self.template)
        return Template(text).substitute(dict(self.values), width=self.width, height=self.height)


def _template(name):
    path = TEMPLATES / f"{name}.svg.in"
    try:
        return path.read_text(encoding="utf-8")
    except FileNotFoundError:
        raise DescriptionError(f"{path}: not found; draw it, or name another icon in pads.toml") from None


class Artist:
    """Makes the drawings of one style."""

    def __init__(self, style_name, style):
        self._name = style_name
        self._plates = style["plate"]

    def ink(self, plate):
        return self._plates[plate]["ink"]

    def shows_only_fill(self, plate, size, place):
        """Whether neither the border nor a rounded corner of a plate of that size reaches into a place on it."""
        look = self._plates[plate]
        for x, y in itertools.product((place.x, place.x + place.width), (place.y, place.y + place.height)):
            across, down = (max(look["radius"] - min(at, extent - at), 0) for at, extent in zip((x, y), size))
            if math.hypot(across, down) > look["radius"] - look["line"]:
                return False
        return True

    def plate(self, plate, width, height, behind=None):
        """A plate; behind is the plate whose fill shows round it, so that nothing needs to shine through."""
        look = self._plates[plate]
        inset, line, lip, radius = (look[key] for key in ("inset", "line", "lip", "radius"))
        values = {
            "backdrop": f"#{self._plates[behind]['fill']}" if behind else "none",
            "fill": look["fill"],
            "border": look["border"],
            "inset": inset,
            "outer_width": width - 2 * inset,
            "outer_height": height - 2 * inset,
            "radius": radius,
            "inner": inset + line,
            "inner_width": width - 2 * (inset + line),
            "inner_height": height - 2 * (inset + line) - lip,
            "inner_radius": radius - line,
        }
        return self._drawing(f"{plate}-on-{behind}" if behind else plate, "plate", width, height, values)

    def dot(self, side):
        return self._drawing("dot", "dot", side, side, {"ink": self.ink("field")})

    def icon(self, icon, mirrored, plate, height):
        match = VIEW_BOX.search(_template(icon))
        if not match:
            raise DescriptionError(f"{icon}.svg.in: give it a viewBox that starts at 0 0")
        box_width, box_height = int(match[1]), int(match[2])
        values = {
            "ink": self.ink(plate),
            "transform": f"translate({box_width} 0) scale(-1 1)" if mirrored else "translate(0 0)",
        }
        name = f"{icon}{'-mirrored' if mirrored else ''}-on-{plate}"
        return self._drawing(name, icon, round(height * box_width / box_height), height, values)

    def _drawing(self, name, template, width, height, values):
        return Drawing(f"{self._name}-{name}-{width}x{height}", template, width, height, tuple(values.items()))
