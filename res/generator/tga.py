#!/usr/bin/env python3
"""Turns a picture into the form that takes the library the least time to load: tga.py INPUT.png OUTPUT.tga

The input is a PNG file as rsvg-convert writes it: 8 bits of red, green, blue and, it may be, alpha, not interlaced. The
output is a run-length encoded Targa file, its top row first; without an alpha channel when nothing shines through.
"""

import struct
import sys
import zlib
from pathlib import Path

PNG_SIGNATURE = b"\x89PNG\r\n\x1a\n"
PNG_CHANNELS = {2: 3, 6: 4}
OPAQUE = 255
RUN_LENGTH_ENCODED = 10
TOP_ROW_FIRST = 0x20
# The upper bit of a packet's first byte tells a run from single pixels; the lower ones are the number less one.
RUN = 0x80
PACKET = 128
# Evas leaves out the last packet when nothing follows it.
PADDING = bytes(4)
FOOTER = PADDING + struct.pack("<II", 0, 0) + b"TRUEVISION-XFILE.\0"


class PictureError(Exception):
    """What is wrong with the input."""


def _chunks(data):
    position = len(PNG_SIGNATURE)
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


def _unfiltered(kind, row, above, channels):
    if kind == 0:
        return row
    result = bytearray(row)
    for i, value in enumerate(row):
        left = result[i - channels] if i >= channels else 0
        corner = above[i - channels] if i >= channels else 0
        result[i] = (value + _predicted(kind, left, above[i], corner)) & 255
    return bytes(result)


def read_png(data):
    """Rows of pixels, each the bytes of red, green, blue and alpha."""
    try:
        chunks = list(_chunks(data))
        width, height, depth, colour, _, _, interlaced = struct.unpack(">IIBBBBB", chunks[0][1])
        if data[:8] != PNG_SIGNATURE or depth != 8 or colour not in PNG_CHANNELS or interlaced:
            raise PictureError("not a PNG file with 8 bits of red, green and blue; draw it with rsvg-convert")
        packed = zlib.decompress(b"".join(content for kind, content in chunks if kind == b"IDAT"))
    except (struct.error, zlib.error, IndexError) as error:
        raise PictureError(f"not a whole PNG file ({error}); draw it again") from None
    channels = PNG_CHANNELS[colour]
    size = channels * width
    if len(packed) != height * (size + 1):
        raise PictureError("not a whole PNG file; draw it again")
    rows, above, seen = [], bytes(size), {}
    for start in range(0, len(packed), size + 1):
        # A plate consists of few different rows.
        key = packed[start:start + 1 + size], above
        if key not in seen:
            seen[key] = _unfiltered(packed[start], packed[start + 1:start + 1 + size], above, channels)
        above = seen[key]
        rows.append(above)
    alpha = b"" if channels == 4 else bytes([OPAQUE])
    return [[row[i:i + channels] + alpha for i in range(0, size, channels)] for row in rows]


def _packets(pixels):
    """One row; a packet never goes on in the next one."""
    position = 0
    while position < len(pixels):
        end = position + 1
        while end < len(pixels) and end - position < PACKET and pixels[end] == pixels[position]:
            end += 1
        if end - position > 1:
            yield bytes([RUN | end - position - 1]) + pixels[position]
        else:
            while end < len(pixels) and end - position < PACKET and pixels[end:end + 1] != pixels[end + 1:end + 2]:
                end += 1
            yield bytes([end - position - 1]) + b"".join(pixels[position:end])
        position = end


def tga(rows):
    """The file for rows of red, green, blue and alpha."""
    width, height = len(rows[0]), len(rows)
    opaque = all(pixel[3] == OPAQUE for row in rows for pixel in row)
    alpha_bits = 0 if opaque else 8
    header = struct.pack("<BBBHHBHHHHBB", 0, 0, RUN_LENGTH_ENCODED, 0, 0, 0, 0, 0, width, height, 24 + alpha_bits,
                         TOP_ROW_FIRST | alpha_bits)
    body, encoded = [], {}
    for row in rows:
        key = b"".join(row)
        if key not in encoded:
            stored = [pixel[2::-1] if opaque else pixel[2::-1] + pixel[3:] for pixel in row]
            encoded[key] = b"".join(_packets(stored))
        body.append(encoded[key])
    return header + b"".join(body) + FOOTER


def main():
    if len(sys.argv) != 3:
        print("tga.py: give an input and an output: tga.py INPUT.png OUTPUT.tga", file=sys.stderr)
        return 2
    source, target = sys.argv[1:]
    try:
        Path(target).write_bytes(tga(read_png(Path(source).read_bytes())))
    except (PictureError, OSError) as error:
        print(f"tga.py: {source}: {error}" if isinstance(error, PictureError) else f"tga.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
