#!/usr/bin/env python3
"""Makes layout and voice files, the images' sources and the translators' template from the descriptions beside it.

    generate.py                  writes the committed files: res/xml/ and res/locale/vaultpad.pot
    generate.py --check          writes nothing; names each committed file that differs and exits with 1
    generate.py --list-images    prints the names of the images, without an ending
    generate.py --images FOLDER  writes one SVG for each image into FOLDER
    generate.py --smallest-text  prints the font sizes that no language's texts may fall below
"""

import argparse
import sys
from pathlib import Path

from catalogue import catalogue_template
from descriptions import DescriptionError, Descriptions
from layouts import PADS, drawings_of, make_layouts
from layoutxml import layout_xml
from voices import voice_path, voice_xml

GENERATOR = Path(__file__).resolve().parent
RESOURCES = GENERATOR.parent


def committed_files(descriptions, layouts):
    """The text of every file that is kept in the sources, by its path below the resources."""
    directory = descriptions.layouts["image-directory"]
    files = {f"xml/{layout.variant.path}": layout_xml(layout, directory) for layout in layouts}
    files |= {f"xml/{voice_path(pad)}": voice_xml(descriptions, pad) for pad in PADS}
    files["locale/vaultpad.pot"] = catalogue_template(descriptions)
    return files


def write_if_changed(path, text):
    """Keeps a file that is right already, so that nothing made from it is made again."""
    data = text.encode("utf-8")
    if path.exists() and path.read_bytes() == data:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(data)


def check(files):
    """Prints each committed file that differs from what it should be; returns whether there is none."""
    wrong = []
    for name, text in files.items():
        path = RESOURCES / name
        if not path.exists():
            wrong.append(f"{path}: missing; run {GENERATOR / 'generate.py'}")
        elif path.read_bytes() != text.encode("utf-8"):
            wrong.append(f"{path}: differs from what the descriptions make; run {GENERATOR / 'generate.py'}")
    print("".join(f"{line}\n" for line in wrong), end="", file=sys.stderr)
    return not wrong


def main():
    parser = argparse.ArgumentParser(description="Makes layouts, voice files, images and the template.")
    choice = parser.add_mutually_exclusive_group()
    choice.add_argument("--check", action="store_true", help="compare the committed files, write nothing")
    choice.add_argument("--list-images", action="store_true", help="print the images' names")
    choice.add_argument("--images", type=Path, metavar="FOLDER", help="write the images' SVG files")
    choice.add_argument("--smallest-text", action="store_true", help="print the smallest font sizes")
    arguments = parser.parse_args()
    try:
        descriptions = Descriptions(GENERATOR)
        layouts = make_layouts(descriptions)
        if arguments.list_images:
            print("\n".join(drawings_of(layouts)))
        elif arguments.images:
            for name, drawing in drawings_of(layouts).items():
                write_if_changed(arguments.images / f"{name}.svg", drawing.svg())
        elif arguments.smallest_text:
            print("\n".join(f"{role}={size}" for role, size in descriptions.styles["smallest-text"].items()))
        elif arguments.check:
            return 0 if check(committed_files(descriptions, layouts)) else 1
        else:
            for name, text in committed_files(descriptions, layouts).items():
                write_if_changed(RESOURCES / name, text)
    except (DescriptionError, OSError) as error:
        print(f"generate.py: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
