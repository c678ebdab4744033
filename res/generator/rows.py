"""Turns a pad's rows into placed keys, page by page."""

import re
from dataclasses import dataclass

from descriptions import DescriptionError, Rectangle

CELL = re.compile(r"(?P<name>[A-Za-z0-9_]+(?:\.to-(?P<target>[a-z][a-z0-9]*))?)(?::(?P<columns>[1-9][0-9]*))?")
RUN = re.compile(r"\{(?P<run>[a-z][a-z0-9-]*)\}")


@dataclass(frozen=True)
class Key:
    """A key of a row: its keysym with ".to-PAGE", if any, its width, and the page it belongs to (empty: every page)."""

    name: str
    columns: int
    page: str

    @property
    def id(self):
        """The id of the key's objects, without the state."""
        return f"{self.page}.key.{self.name}" if self.page else f"key.{self.name}"

    @property
    def target(self):
        """The page that the key changes to, or nothing."""
        return self.name.partition(".to-")[2]


@dataclass(frozen=True)
class PlacedKey:
    key: Key
    place: Rectangle


class KeyGrid:
    """The columns and rows that an area has for a pad's keys."""

    def __init__(self, area, columns, rows):
        width, height = area["size"]
        self.gap = area["gap"]
        self.left = area["padding"]
        self.top = area["keys-top"]
        self.columns = columns
        self.column_width = self._share(area, "columns", width - 2 * self.left, columns)
        self.row_height = self._share(area, "rows", height - self.left - self.top, rows)

    def _share(self, area, what, extent, count):
        size, rest = divmod(extent - (count - 1) * self.gap, count)
        if rest != 0 or size <= 0:
            raise DescriptionError(f"{area.name}: {count} {what} do not share {extent} pixels evenly, {rest} are left "
                                   f"over; change size, padding, gap or keys-top")
        return size

    def place(self, row, column, columns):
        return Rectangle(self.left + column * (self.column_width + self.gap),
                         self.top + row * (self.row_height + self.gap),
                         columns * self.column_width + (columns - 1) * self.gap,
                         self.row_height)


def _key(pad, text, page, where):
    match = CELL.fullmatch(text)
    if not match:
        raise DescriptionError(f"{where}: \"{text}\" is no key; write KEYSYM, KEYSYM.to-PAGE or either with :COLUMNS")
    if match["target"] and match["target"] not in _pages(pad):
        raise DescriptionError(f"{where}: \"{text}\" leads to no page of {pad.name}; add the page or name another")
    return Key(match["name"], int(match["columns"] or 1), page)


def _pages(pad):
    return list(pad["pages"].values) if "pages" in pad else [""]


def _row_on_page(pad, row, page):
    keys = []
    for cell in row.split():
        run = RUN.fullmatch(cell)
        if not run:
            keys.append(_key(pad, cell, "", f"{pad.name}.rows"))
            continue
        if not page:
            raise DescriptionError(f"{pad.name}.rows: \"{cell}\" needs pages; give the pad pages or write its keys")
        table = pad["pages"][page]
        keys += [_key(pad, text, page, f"{table.name}.{run['run']}") for text in table[run["run"]].split()]
    return keys


def keys_of(pad):
    """All keys of a pad: pages in their order, each shared key once."""
    return list(dict.fromkeys(key for page in _pages(pad) for row in pad["rows"]
                              for key in _row_on_page(pad, row, page)))


def turned_round(keys, types_character):
    """The keys from right to left, but with the keys that type a character in their old order among neighbours."""
    turned = []
    run = []
    for key in reversed(keys):
        if types_character(key.name):
            run.insert(0, key)
        else:
            turned += run + [key]
            run = []
    return turned + run


def place_keys(pad, area, reverse, types_character):
    """All keys of a pad in an area: pages in their order, each shared key once."""
    rows = pad["rows"]
    grid = None
    placed = {}
    for page in _pages(pad):
        for number, row in enumerate(rows):
            keys = _row_on_page(pad, row, page)
            columns = sum(key.columns for key in keys)
            grid = grid or KeyGrid(area, columns, len(rows))
            if columns != grid.columns:
                raise DescriptionError(f"{pad.name}.rows: row {number + 1} has {columns} columns on page \"{page}\", "
                                       f"the first row {grid.columns}; make them equal")
            column = 0
            for key in turned_round(keys, types_character) if reverse else keys:
                place = grid.place(number, column, key.columns)
                column += key.columns
                if placed.setdefault(key, place) != place:
                    raise DescriptionError(f"{pad.name}.rows: \"{key.name}\" of row {number + 1} has another place on "
                                           f"page \"{page}\"; a key outside a run keeps its place, or occurs once")
    return [PlacedKey(key, place) for key, place in placed.items()]
