"""Writes the template that translators start from."""

from layouts import PADS

HEADER = """# Texts of the protected PIN pad and on-screen keyboard.
# Written by res/generator/generate.py from pads.toml: change that, and run it again.
msgid ""
msgstr ""
"Project-Id-Version: vaultpad 1.0\\n"
"PO-Revision-Date: YEAR-MO-DA HO:MI+ZONE\\n"
"Last-Translator: Vault Pad developers\\n"
"Language-Team: LANGUAGE\\n"
"Language: \\n"
"MIME-Version: 1.0\\n"
"Content-Type: text/plain; charset=UTF-8\\n"
"Content-Transfer-Encoding: 8bit\\n"
"""


def _quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def messages(descriptions):
    """Every text that is translated, with its notes for translators."""
    notes = {}
    pads = [descriptions.pads[pad] for pad in PADS]
    for pad in pads:
        notes.setdefault(pad["title"], []).append(pad["title-note"])
    pages = [page for pad in pads if "pages" in pad for _, page in pad["pages"].items()]
    for page in pages:
        notes.setdefault(page["spoken"], []).append(page["spoken-note"])
    speech = descriptions.pads["speech"]
    words = [word for table in (descriptions.pads["keys"], speech["words"]) for _, word in table.items()]
    for word in [*words, speech["capital"]]:
        if "word" in word:
            notes.setdefault(word["word"], []).append(word["note"])
    return notes


def catalogue_template(descriptions):
    text = HEADER
    for message, notes in messages(descriptions).items():
        comments = [f"#. {note}\n" for note in notes] + (["#, c-format\n"] if "%s" in message else [])
        text += "\n" + "".join(comments) + f"msgid {_quoted(message)}\nmsgstr \"\"\n"
    return text
