"""Writes a layout as the XML that the library reads, and the pieces of XML that voice files share with it."""

from xml.sax.saxutils import quoteattr

from layouts import Text

INDENT = "    "
# Free space between the side of a title's rectangle and its text; the same at both sides.
TITLE_MARGIN = 12
HEADER = """<?xml version="1.0" encoding="UTF-8"?>
<!-- Written by res/generator/generate.py from the descriptions beside it: change those, and run it again. -->
"""


def tag(name, attributes, depth, closed=True):
    """An element on a line of its own, or only its beginning."""
    text = "".join(f" {key}={quoteattr(str(value))}" for key, value in attributes.items())
    return f"{INDENT * depth}<{name}{text}{'/' if closed else ''}>\n"


def section(name, items, attributes=None):
    return tag(name, attributes or {}, 1, closed=False) + "".join(items) + f"{INDENT}</{name}>\n"


def _image_of(item):
    """Id and attributes of the image that an object shows; one without a drawing only takes up its place."""
    if item.drawing is None:
        return f"place.{item.id}", {"width": item.place.width, "height": item.place.height}
    return item.drawing.name, {"type": "file", "url": f"{item.drawing.name}.tga"}


def _nested(content):
    if not isinstance(content, Text):
        return {"type": "image", "ref": content.name, "text-align": "center", "line-height": "inherit"}
    attributes = {"ref": content.string, "font": f"{content.role}-on-{content.plate}", "text-align": content.align}
    if content.align != "center":
        attributes["margin"] = TITLE_MARGIN
    return attributes | {"line-height": "inherit"}


def _object(item):
    attributes = {"id": item.id, "type": "image", "ref": _image_of(item)[0], "x": item.place.x, "y": item.place.y}
    if item.content is None:
        return tag("object", attributes, 2)
    return (tag("object", attributes, 2, closed=False) + tag("object", _nested(item.content), 3)
            + f"{INDENT * 2}</object>\n")


def layout_xml(layout, image_directory):
    images = {}
    strings = {}
    for item in layout.objects:
        image, attributes = _image_of(item)
        images[image] = attributes
        content = item.content
        if isinstance(content, Text):
            strings[content.string] = {"value": content.value} | ({"i18n": "true"} if content.translated else {})
        elif content is not None:
            images[content.name] = {"type": "file", "url": f"{content.name}.tga"}
    fonts = [tag("font", {"id": name, "family": family, "size": size, "color": ink}, 2)
             for name, (family, size, ink) in sorted(layout.fonts.items())]
    return "".join((
        HEADER,
        "<layout>\n",
        section("fonts", fonts),
        section("images", [tag("image", {"id": name} | attributes, 2) for name, attributes in sorted(images.items())],
                 {"basedir": image_directory}),
        section("strings", [tag("string", {"id": name} | attributes, 2) for name, attributes in strings.items()]),
        section("objects", [_object(item) for item in layout.objects]),
        "</layout>\n",
    ))
