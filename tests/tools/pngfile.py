"""Reads the PNG files that the project writes: 8 bits of red, green and blue, not interlaced."""

import struct
import zlib
from dataclasses import dataclass

CHANNELS = 3


@dataclass(frozen=True)
class Picture:
    width: int
    height: int
    rows: tuple

    def pixel(self, x, y):
        return tuple(self.rows[y][CHANNELS * x:CHANNELS * (x + 1)])


def _chunks(data):
    position = 8
    while position < len(data):
        length, kind = struct.unpack_from(">I4s", data, position)
        yield kind, data[position + 8:position + 8 + length]
        position += 12 + length


def _predicted(kind, left, above, corner):
    if kind == 1:
        return left
    if kind == 2:
        return above
    if kind == 3:
        return (left + above) // 2
    estimate = left + above - corner
    return min((left, above, corner), key=lambda value: abs(estimate - value))


def _unfiltered(kind, row, above):
    if kind == 0:
        return bytes(row)
    for i, value in enumerate(row):
        left = row[i - CHANNELS] if i >= CHANNELS else 0
        corner = above[i - CHANNELS] if i >= CHANNELS else 0
        row[i] = (value + _predicted(kind, left, above[i], corner)) & 255
    return bytes(row)


def read(path):
    data = path.read_bytes()
    chunks = list(_chunks(data))
    width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", chunks[0][1])
    if data[:8] != b"\x89PNG\r\n\x1a\n" or (depth, colour, interlaced) != (8, 2, 0):
        raise ValueError(f"{path}: not a PNG file of this project's kind")
    pixels = zlib.decompress(b"".join(content for kind, content in chunks if kind == b"IDAT"))
    size = CHANNELS * width
    rows, above = [], bytes(size)
    for start in range(0, height * (size + 1), size + 1):
        above = _unfiltered(pixels[start], bytearray(pixels[start + 1:start + 1 + size]), above)
        rows.append(above)
    return Picture(width, height, tuple(rows))
