"""Puts pads, areas and styles together into layouts: what each layout file says, before it is written as XML."""

from dataclasses import dataclass, field
from itertools import product

from descriptions import DescriptionError, Rectangle
from drawings import Artist
from rows import place_keys

PADS = ("pinpad", "keyboard")


@dataclass(frozen=True)
class Variant:
    """Which of a pad's layout files: the four choices that are made when the pad is shown."""

    pad: str
    reverse: bool
    portrait: bool
    zoom: bool
    contrast: bool

    @property
    def path(self):
        """The file, below the folder of the layouts."""
        folder = ("vertical_" if self.portrait else "") + ("reverse" if self.reverse else "normal")
        stem = ("vertical-" if self.portrait else "") + ("reverse-" if self.reverse else "") + self.pad
        suffix = {(False, False): "", (True, False): "-e", (False, True): "-h", (True, True): "-eh"}
        return f"{folder}/{stem}{suffix[self.zoom, self.contrast]}.xml"

    @property
    def area(self):
        return ("portrait" if self.portrait else "landscape") + ("-zoom" if self.zoom else "")

    @property
    def style(self):
        return "contrast" if self.contrast else "standard"


def all_variants():
    return [Variant(*choice) for choice in product(PADS, *[(False, True)] * 4)]


@dataclass(frozen=True)
class Text:
    """Text drawn on an object: string is the id of the string, role chooses font and size, plate the colour."""

    string: str
    value: str
    translated: bool
    role: str
    plate: str
    align: str = "center"


@dataclass(frozen=True)
class TopLevelObject:
    """One object of a layout: an image (a drawing, or None for one that shows nothing itself) and what is on it."""

    id: str
    place: Rectangle
    drawing: object
    content: object


@dataclass
class Layout:
    variant: Variant
    objects: list = field(default_factory=list)
    fonts: dict = field(default_factory=dict)


class LayoutMaker:
    """Makes the layout of one variant."""

    def __init__(self, descriptions, variant):
        self._descriptions = descriptions
        self._keys = descriptions.pads["keys"]
        self._pad = descriptions.pads[variant.pad]
        self._area = descriptions.areas[variant.pad][descriptions.layouts["areas"][variant.pad][variant.area]]
        self._style = descriptions.styles[variant.style]
        self._artist = Artist(variant.style, self._style)
        self._variant = variant
        self._layout = Layout(variant)

    def layout(self):
        self._add_panel()
        for placed in place_keys(self._pad, self._area, self._variant.reverse, self._types_character):
            self._add_key(placed)
        return self._layout

    def _types_character(self, name):
        return self._keys[name].get("types", False) if name in self._keys else True

    def _turned(self, rectangle):
        return rectangle.mirrored(self._area["size"][0]) if self._variant.reverse else rectangle

    def _add_panel(self):
        self._add_plate("background", "panel", Rectangle(0, 0, *self._area["size"]))
        field_place = self._turned(self._area.rectangle("field"))
        self._add_plate("input", "field", field_place)
        self._add("mask", self._dot_place(field_place), self._artist.dot(self._area["dot"]), None)
        align = self._pad["title-align"]
        if align == "start":
            align = "right" if self._variant.reverse else "left"
        title = Text("title", self._pad["title"], True, "title", "panel", align)
        self._add("label.title", self._turned(self._area.rectangle("title")), None, title)

    def _dot_place(self, field_place):
        side = self._area["dot"]
        indent = self._area["dot-indent"]
        left = field_place.x + (field_place.width - indent - side if self._variant.reverse else indent)
        return Rectangle(left, field_place.y + (field_place.height - side) // 2, side, side)

    def _add_key(self, placed):
        key = placed.key
        look = self._keys.get(key.name)
        face = look.get("face", "key") if look else "key"
        # There are hundreds of these images, and one without transparency costs half as much.
        behind = "panel" if self._artist.shows_only_fill("panel", self._area["size"], placed.place) else None
        for state, plate in (("normal", face), ("focus", "focus")):
            drawing = self._artist.plate(plate, placed.place.width, placed.place.height, behind)
            self._add(f"{key.id}.{state}", placed.place, drawing, self._content(key.name, look, plate))

    def _content(self, name, look, plate):
        if not look:
            return Text(f"key.{name}", self._descriptions.character(name), False, "character", plate)
        if "icon" in look:
            mirrored = look.get("mirrored", False) and self._variant.reverse
            return self._artist.icon(look["icon"], mirrored, plate, self._area["icon"])
        if "word" in look:
            return Text(f"key.{name}", look["word"], True, "word", plate)
        if "sign" in look:
            return Text(f"key.{name}", look["sign"], False, "word", plate)
        raise DescriptionError(f"{look.name}: give the key a word, a sign or an icon")

    def _add_plate(self, object_id, plate, place):
        self._add(object_id, place, self._artist.plate(plate, place.width, place.height), None)

    def _add(self, object_id, place, drawing, content):
        self._layout.objects.append(TopLevelObject(object_id, place, drawing, content))
        if isinstance(content, Text):
            font = (self._style["font"][content.role], self._area["text"][content.role],
                    self._artist.ink(content.plate))
            self._layout.fonts[f"{content.role}-on-{content.plate}"] = font


def make_layouts(descriptions):
    return [LayoutMaker(descriptions, variant).layout() for variant in all_variants()]


def drawings_of(layouts):
    """Every drawing that the layouts show, each once, by name."""
    drawings = {}
    for layout in layouts:
        for item in layout.objects:
            for drawing in (item.drawing, item.content):
                if drawing is not None and not isinstance(drawing, Text):
                    drawings[drawing.name] = drawing
    return dict(sorted(drawings.items()))
