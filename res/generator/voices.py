"""The voice files: what is spoken for the title and the keys of a pad."""

from dataclasses import dataclass

from layoutxml import HEADER, section, tag
from rows import keys_of


@dataclass(frozen=True)
class Voice:
    """What is spoken for the objects of an id, without a key's state; the letter takes the place of %s in the text."""

    id: str
    text: str
    translated: bool
    letter: str = ""


class Speaker:
    """Finds what is spoken for the keys of a pad."""

    def __init__(self, descriptions, pad):
        self._descriptions = descriptions
        self._pad = descriptions.pads[pad]
        self._keys = descriptions.pads["keys"]
        self._speech = descriptions.pads["speech"]

    def voices(self):
        """The title first, it is spoken when the pad opens; then the keys, page by page."""
        return [Voice("label.title", self._pad["title"], True)] + [self._voice(key) for key in keys_of(self._pad)]

    def _voice(self, key):
        look = self._keys.get(key.name)
        if look and "word" in look:
            return Voice(key.id, look["word"], True)
        if key.target:
            return Voice(key.id, self._pad["pages"][key.target]["spoken"], True)
        if look or key.name in self._speech["words"]:
            return Voice(key.id, self._speech["words"][key.name]["word"], True)
        character = self._descriptions.character(key.name)
        if character.isupper():
            return Voice(key.id, self._speech["capital"]["word"], True, character)
        return Voice(key.id, character, False)


def voice_path(pad):
    """The file, below the folder of the layouts."""
    return f"audio/{pad}-audio.xml"


def voice_xml(descriptions, pad):
    items = []
    for voice in Speaker(descriptions, pad).voices():
        attributes = {"id": voice.id, "text": voice.text}
        if voice.translated:
            attributes["i18n"] = "true"
        if voice.letter:
            attributes["letter"] = voice.letter
        items.append(tag("item", attributes, 2))
    return "".join((HEADER, "<voice>\n", section("voices", items), "</voice>\n"))
