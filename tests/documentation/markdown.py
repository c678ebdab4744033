"""The project's documents: their fenced blocks, the tables below a heading, and the examples of manual pages."""
import re
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


@dataclass
class Block:
    document: str
    line: int
    words: list  # of the info string: the language, then what the language takes
    text: str

    @property
    def language(self):
        return self.words[0] if self.words else ""

    @property
    def place(self):
        return f"{self.document}:{self.line}"


def documents():
    """All documents, by their path from the root."""
    found = [*ROOT.glob("*.md"), *(ROOT / "docs").glob("*.md"), *(ROOT / "docs/man").iterdir()]
    return sorted(str(path.relative_to(ROOT)) for path in found)


def blocks_of(document, text):
    found = []
    block = None
    for number, line in enumerate(text.splitlines(), 1):
        fence = re.fullmatch(r"( *)```(.*)", line)
        if fence and block is None:
            indent, block = len(fence.group(1)), Block(document, number, fence.group(2).split(), "")
        elif fence:
            found.append(block)
            block = None
        elif block is not None:
            block.text += line[indent:] + "\n"
    if block is not None:
        raise ValueError(f"{block.place}: the block has no end")
    return found


def examples_of(document, text):
    """The lines of a manual page's examples, each a command."""
    examples = re.search(r"^\.SH EXAMPLES\n\.nf\n(.*?)^\.fi$", text, flags=re.M | re.S)
    if not examples:
        return []
    first = text[:examples.start(1)].count("\n") + 1
    return [Block(document, first + index, ["sh"], line.replace("\\-", "-") + "\n")
            for index, line in enumerate(examples.group(1).splitlines())]


def blocks(document):
    read = blocks_of if document.endswith(".md") else examples_of
    return read(document, (ROOT / document).read_text())


def unfenced_code(text):
    """The numbers of lines that begin an indented block: nothing would say what is in it."""
    without = re.sub(r"^( *)```.*?^ *```$", lambda match: re.sub(r".+", "-", match.group()), text, flags=re.M | re.S)
    lines = [""] + without.splitlines()
    return [number for number in range(1, len(lines)) if re.match(r"    +\S", lines[number]) and not lines[number - 1]]


def table(document, heading, columns):
    """The rows of the table below a heading, as lists of that many cells."""
    text = (ROOT / document).read_text()
    section = re.search(rf"^#+ {re.escape(heading)}$(.*?)(?=^#|\Z)", text, flags=re.M | re.S)
    if not section:
        raise ValueError(f"{document}: there is no heading \"{heading}\"")
    rows = []
    for line in section.group(1).splitlines():
        if line.startswith("|") and not re.match(r"\|[-|]+\|$", line):
            cells = [cell.strip(" ") if "`" not in cell else cell.strip() for cell in line.strip("|").split("|")]
            if len(cells) != columns:
                raise ValueError(f"{document}: {heading}: {len(cells)} cells instead of {columns}: {line}")
            rows.append(cells)
    return rows[1:]
