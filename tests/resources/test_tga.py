"""What becomes of a picture that is stored for the library."""

import struct
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

SOURCES = Path(__file__).resolve().parents[2]
sys.path.insert(0, str(SOURCES / "res/generator"))

import tga  # pylint: disable=wrong-import-position

WIDTH, HEIGHT = 300, 10
GRAY, RGB, RGBA = 0, 2, 6


def pixel(x, y, opaque):
    """A run that is longer than a packet, then pixels that all differ, then pairs."""
    value = 7 if x < 140 else x * 31 + y if x < 290 else x // 2
    return bytes([value & 255, value >> 1 & 255, y * 20, 255 if opaque else value * 3 & 255])


def pixels(opaque):
    return [[pixel(x, y, opaque) for x in range(WIDTH)] for y in range(HEIGHT)]


def filtered(kind, row, above, channels):
    """A row as a PNG writer stores it; written anew, so as not to repeat the reader's mistakes."""
    left = bytes(channels) + row[:-channels]
    corner = bytes(channels) + above[:-channels]

    def estimated(a, b, c):
        _, _, value = min((abs(b - c), 0, a), (abs(a - c), 1, b), (abs(a + b - 2 * c), 2, c))
        return value
    guess = {0: lambda a, b, c: 0, 1: lambda a, b, c: a, 2: lambda a, b, c: b, 3: lambda a, b, c: (a + b) >> 1,
             4: estimated}[kind]
    return bytes([kind]) + bytes(v - guess(*near) & 255 for v, *near in zip(row, left, above, corner))


def png(rows, colour, channels):
    flat = [b"".join(p[:channels] for p in row) for row in rows]
    stored = b"".join(filtered(y % 5, row, flat[y - 1] if y else bytes(len(row)), channels)
                      for y, row in enumerate(flat))

    def chunk(kind, content):
        return struct.pack(">I", len(content)) + kind + content + struct.pack(">I", zlib.crc32(kind + content))
    header = struct.pack(">IIBBBBB", len(rows[0]), len(rows), 8, colour, 0, 0, 0)
    return tga.PNG_SIGNATURE + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(stored)) + chunk(b"IEND", b"")


def decoded(data):
    """Rows of red, green, blue and alpha, and the bits per pixel."""
    kind, width, height, bits, descriptor = struct.unpack("<2xB9xHHBB", data[:18])
    size, position, rows = bits // 8, 18, []
    assert (kind, descriptor) == (10, 0x20 | bits - 24), "not run-length encoded from the top"
    for _ in range(height):
        row = []
        while len(row) < width:
            count, run = (data[position] & 127) + 1, data[position] >> 7
            for i in range(count):
                stored = data[position + 1 + (0 if run else i * size):][:size]
                row.append(stored[2::-1] + (stored[3:] or b"\xff"))
            position += 1 + size * (1 if run else count)
        assert len(row) == width, "a packet goes on in the next row"
        rows.append(row)
    assert data[position:] == tga.FOOTER, "something follows the pixels"
    return rows, bits


class Targa(unittest.TestCase):
    def converted(self, content):
        with tempfile.TemporaryDirectory() as folder:
            source, target = Path(folder) / "in.png", Path(folder) / "out.tga"
            source.write_bytes(content)
            result = subprocess.run([sys.executable, "-B", SOURCES / "res/generator/tga.py", source, target],
                                    capture_output=True, text=True, check=False)
            return result, target.read_bytes() if target.exists() else None

    def test_holds_the_same_pixels_whatever_the_filters_of_the_picture(self):
        rows = pixels(opaque=False)
        self.assertEqual((rows, 32), decoded(self.converted(png(rows, RGBA, 4))[1]))

    def test_has_no_alpha_channel_when_nothing_shines_through(self):
        rows = pixels(opaque=True)
        for colour, channels in ((RGBA, 4), (RGB, 3)):
            self.assertEqual((rows, 24), decoded(self.converted(png(rows, colour, channels))[1]))

    def test_of_one_flat_colour_is_a_run_for_each_128_pixels_of_a_row(self):
        data = self.converted(png([[bytes([1, 2, 3, 255])] * 200] * 2, RGBA, 4))[1]
        self.assertEqual(b"\xff\3\2\1\xc7\3\2\1" * 2, data[18:-len(tga.FOOTER)])

    def test_is_not_written_from_what_is_no_such_picture(self):
        whole = png(pixels(opaque=True), RGBA, 4)
        for content, reason in ((b"P6 1 1 255\n", "PNG file"), (png(pixels(True), GRAY, 1), "PNG file"),
                                (whole[:len(whole) // 2], "not a whole PNG file"), (b"", "not a whole PNG file")):
            result, written = self.converted(content)
            self.assertEqual((1, None), (result.returncode, written))
            self.assertEqual(1, len(result.stderr.splitlines()), result.stderr)
            self.assertIn("in.png", result.stderr)
            self.assertIn(reason, result.stderr)


if __name__ == "__main__":
    unittest.main()
