"""The command blocks that no test executes."""
from pathlib import Path

LIST = Path(__file__).with_name("not-executed.txt")


def reasons():
    """From document and first line of a block to the reason."""
    lines = [line for line in LIST.read_text().splitlines() if line and not line.startswith("#")]
    fields = [[field.strip() for field in line.split(" | ")] for line in lines]
    return {(document, first): reason for document, first, reason in fields}
