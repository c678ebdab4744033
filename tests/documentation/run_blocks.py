"""Executes a document's blocks in their order, in one sandbox: run_blocks.py DOCUMENT BUILD-FOLDER."""
import sys

from exceptions import reasons
from execution import ACTIONS, TA_LANGUAGES
from markdown import blocks
from sandbox import Sandbox


def main(document, build):
    failures = executed = 0
    to_do = [block for block in blocks(document) if block.language not in TA_LANGUAGES]
    if not to_do:
        print(f"{document}: nothing to execute")
        return 0
    with Sandbox(build) as sandbox:
        for block in to_do:
            reason = reasons().get((document, block.text.splitlines()[0]))
            if reason:
                print(f"{block.place}: not executed: {reason}")
                continue
            if len(block.words) > 1:
                (sandbox.root / block.words[1]).write_text(block.text)
            problems = ACTIONS[block.language](block, sandbox)
            executed += 1
            failures += len(problems)
            for problem in problems:
                print(f"{block.place}: {problem}")
    print(f"{document}: {executed} blocks, {failures} problems")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
