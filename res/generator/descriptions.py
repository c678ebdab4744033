"""Reads the TOML descriptions and tells what is wrong with them, and where."""

import tomllib
from dataclasses import dataclass
from pathlib import Path


class DescriptionError(Exception):
    """Something in a description that its author has to mend; the text says where and how."""


@dataclass(frozen=True)
class Rectangle:
    x: int
    y: int
    width: int
    height: int

    def mirrored(self, area_width):
        """The rectangle's place when an area of this width is turned round, left for right."""
        return Rectangle(area_width - self.x - self.width, self.y, self.width, self.height)


class Table:
    """A table of a description that knows its own name, so that a missing key can be reported with its place."""

    def __init__(self, name, values):
        self.name = name
        self.values = values

    def __contains__(self, key):
        return key in self.values

    def __getitem__(self, key):
        if key not in self.values:
            raise DescriptionError(f"{self.name}: \"{key}\" is missing; add it")
        value = self.values[key]
        return Table(self.name_of(key), value) if isinstance(value, dict) else value

    def name_of(self, key):
        """The file and the full name of a key of this table, as messages tell it."""
        return f"{self.name}: {key}" if self.name.endswith(".toml") else f"{self.name}.{key}"

    def get(self, key, default=None):
        return self[key] if key in self.values else default

    def items(self):
        return [(key, self[key]) for key in self.values]

    def rectangle(self, key):
        value = self[key]
        if not isinstance(value, list) or len(value) != 4 or not all(isinstance(number, int) for number in value):
            raise DescriptionError(f"{self.name_of(key)}: give four whole numbers, [x, y, width, height]")
        return Rectangle(*value)


class Descriptions:
    """All descriptions of a folder."""

    def __init__(self, folder):
        self.pads = self._read(folder / "pads.toml")
        self.areas = self._read(folder / "areas.toml")
        self.styles = self._read(folder / "styles.toml")
        self.layouts = self._read(folder / "layouts.toml")

    def character(self, keysym):
        """The character that a keysym types."""
        return keysym if len(keysym) == 1 else self.pads["characters"][keysym]

    @staticmethod
    def _read(path: Path):
        try:
            return Table(path.name, tomllib.loads(path.read_text(encoding="utf-8")))
        except FileNotFoundError:
            raise DescriptionError(f"{path}: not found; it belongs beside generate.py") from None
        except (tomllib.TOMLDecodeError, UnicodeDecodeError) as error:
            raise DescriptionError(f"{path.name}: not valid TOML: {error}") from None
