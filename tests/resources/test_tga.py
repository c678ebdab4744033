"""What becomes of a picture that is stored for the library."""

import io
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

from PIL import Image

SOURCES = Path(__file__).resolve().parents[2]
WIDTH, HEIGHT = 300, 10
FOOTER = bytes(4) + bytes(8) + b"TRUEVISION-XFILE.\0"


def pixel(x, y, opaque):
    """A run that is longer than a packet, then pixels that all differ, then pairs."""
    value = 7 if x < 140 else x * 31 + y if x < 290 else x // 2
    return value & 255, value >> 1 & 255, y * 20, 255 if opaque else value * 3 & 255


def picture(opaque):
    result = Image.new("RGBA", (WIDTH, HEIGHT))
    result.putdata([pixel(x, y, opaque) for y in range(HEIGHT) for x in range(WIDTH)])
    return result


def png(image, **options):
    file = io.BytesIO()
    image.save(file, "PNG", **options)
    return file.getvalue()


def decoded(data):
    """The pixels, and the bits of each in the file; by a decoder that is stricter than Pillow's."""
    kind, width, height, bits, descriptor = struct.unpack("<2xB9xHHBB", data[:18])
    size, position, pixels = bits // 8, 18, []
    assert (kind, descriptor) == (10, 0x20 | bits - 24), "not run-length encoded from the top"
    for _ in range(height):
        row = []
        while len(row) < width:
            count, run = (data[position] & 127) + 1, data[position] >> 7
            for i in range(count):
                stored = data[position + 1 + (0 if run else i * size):][:size]
                row.append(tuple(stored[2::-1] + (stored[3:] or b"\xff")))
            position += 1 + size * (1 if run else count)
        assert len(row) == width, "a packet goes on in the next row"
        pixels.extend(row)
    assert data[position:] == FOOTER, "something else than the footer follows the pixels"
    return pixels, bits


class Targa(unittest.TestCase):
    def converted(self, content):
        with tempfile.TemporaryDirectory() as folder:
            source, target = Path(folder) / "in.png", Path(folder) / "out.tga"
            source.write_bytes(content)
            result = subprocess.run([sys.executable, "-B", SOURCES / "res/generator/tga.py", source, target],
                                    capture_output=True, text=True, check=False)
            return result, target.read_bytes() if target.exists() else None

    def test_holds_the_same_pixels(self):
        drawn = picture(opaque=False)
        self.assertEqual((list(drawn.getdata()), 32), decoded(self.converted(png(drawn))[1]))

    def test_has_no_alpha_channel_when_nothing_shines_through(self):
        drawn = picture(opaque=True)
        for mode in ("RGBA", "RGB"):
            self.assertEqual((list(drawn.getdata()), 24), decoded(self.converted(png(drawn.convert(mode)))[1]))

    def test_has_an_alpha_channel_when_a_colour_shines_through(self):
        one_colour = Image.new("RGB", (2, 1), (1, 2, 3))
        self.assertEqual(([(1, 2, 3, 0)] * 2, 32), decoded(self.converted(png(one_colour, transparency=(1, 2, 3)))[1]))

    def test_of_one_flat_colour_is_a_run_for_each_128_pixels_of_a_row(self):
        data = self.converted(png(Image.new("RGBA", (200, 2), (1, 2, 3, 255))))[1]
        self.assertEqual(b"\xff\3\2\1\xc7\3\2\1" * 2, data[18:-len(FOOTER)])

    def test_is_not_written_from_what_is_no_such_picture(self):
        whole = png(picture(opaque=True))
        large = png(Image.effect_noise((300, 300), 100).convert("RGB"))
        damaged = "not a whole PNG file"
        for content, reason in ((b"P6 1 1 255\n", damaged), (b"", damaged), (whole[:len(whole) // 2], damaged),
                                (whole[:60] + b"?" + whole[61:], damaged),
                                (whole[:8] + struct.pack(">I4sI", 0, b"IHDR", zlib.crc32(b"IHDR")), damaged),
                                (b"ID?T".join(large.rsplit(b"IDAT", 1)), damaged),
                                (png(picture(True).convert("L")), "red, green and blue")):
            result, written = self.converted(content)
            self.assertEqual((1, None), (result.returncode, written))
            self.assertEqual(1, len(result.stderr.splitlines()), result.stderr)
            self.assertIn("in.png", result.stderr)
            self.assertIn(reason, result.stderr)

    def test_tells_a_file_that_is_not_there(self):
        result = subprocess.run([sys.executable, "-B", SOURCES / "res/generator/tga.py", "none.png", "none.tga"],
                                capture_output=True, text=True, check=False)
        self.assertEqual(1, result.returncode)
        self.assertEqual("tga.py: [Errno 2] No such file or directory: 'none.png'\n", result.stderr)

    def test_tells_that_pillow_is_missing(self):
        result = subprocess.run([sys.executable, "-S", "-B", SOURCES / "res/generator/tga.py", "in.png", "out.tga"],
                                capture_output=True, text=True, check=False)
        self.assertEqual(1, result.returncode)
        self.assertRegex(result.stderr, r"\Atga.py: .* has no Pillow; install the package python3-pil.*\n\Z")


if __name__ == "__main__":
    unittest.main()
