#!/usr/bin/env python3
"""Turns a picture into the form that takes the library the least time to load: tga.py INPUT.png OUTPUT.tga

The input is a PNG file as rsvg-convert writes it: red, green, blue and, it may be, alpha. The output is a run-length
encoded Targa file, its top row first; without an alpha channel when nothing shines through.
"""

import io
import sys
from pathlib import Path

try:
    from PIL import Image
except ImportError:
    sys.exit(f"tga.py: {sys.executable} has no Pillow; install the package python3-pil, or use a Python that has it")

MODES = ("RGB", "RGBA")
OPAQUE = 255
FOOTER_SIZE = 26
# Evas leaves out the last packet when nothing follows it before the footer.
PADDING = bytes(4)
# What Pillow raises for a file that is damaged: which of them depends on the place.
DAMAGED = (OSError, SyntaxError, ValueError, Image.DecompressionBombError)


class PictureError(Exception):
    """What is wrong with the input."""


def read(file):
    """The picture with its alpha channel, if something shines through, and without it, if not."""
    try:
        with Image.open(file, formats=["PNG"]) as picture:
            picture.load()
    except DAMAGED as error:
        raise PictureError(f"not a whole PNG file ({error}); draw it again") from None
    if picture.mode not in MODES:
        raise PictureError("not a PNG file with red, green and blue; draw it with rsvg-convert")
    # A PNG file without an alpha channel may name a colour that shines through.
    with_alpha = picture.convert("RGBA")
    least, _ = with_alpha.getchannel("A").getextrema()
    return with_alpha.convert("RGB") if least == OPAQUE else with_alpha


def tga(picture):
    """The bytes of the file."""
    file = io.BytesIO()
    picture.save(file, "TGA", compression="tga_rle", orientation=1)
    content = file.getvalue()
    return content[:-FOOTER_SIZE] + PADDING + content[-FOOTER_SIZE:]


def main():
    if len(sys.argv) != 3:
        print("tga.py: give an input and an output: tga.py INPUT.png OUTPUT.tga", file=sys.stderr)
        return 2
    source, target = sys.argv[1:]
    try:
        with open(source, "rb") as file:
            picture = read(file)
        Path(target).write_bytes(tga(picture))
    except (PictureError, OSError) as error:
        print(f"tga.py: {source}: {error}" if isinstance(error, PictureError) else f"tga.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
