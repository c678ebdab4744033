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
    for pad in PADS:
        table = descriptions.pads[pad]
        notes.setdefault(table["title"], []).append(table["title-note"])
    for _, key in descriptions.pads["keys"].items():
        if "word" in key:
            notes.setdefault(key["word"], []).append(key["note"])
    return notes


def catalogue_template(descriptions):
    text = HEADER
    for message, notes in messages(descriptions).items():
        text += "\n" + "".join(f"#. {note}\n" for note in notes) + f"msgid {_quoted(message)}\nmsgstr \"\"\n"
    return text
