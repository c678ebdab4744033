"""The examples of docs/ta-protocol.md are replayed against the emulated trusted application, byte by byte."""
import os
import re
import subprocess
import unittest

from execution import TA_LANGUAGES
from markdown import ROOT, blocks, table
from ta_client import TaClient

DOCUMENT = "docs/ta-protocol.md"
ANSWER_WORDS = 5


def content(block):
    """The bytes of a block, None for each that may be any."""
    found = []
    for line in block.text.splitlines():
        line = line.split("#")[0].strip()
        unknown = re.fullmatch(r"\?\? (\d+)", line)
        found += [None] * int(unknown.group(1)) if unknown else bytes.fromhex(line)
    return found


def sizes():
    return {int(number): [int(size) for size in re.findall(r"\d+", size)]
            for number, _, size, _ in table(DOCUMENT, "Events", 4)}


def decrypted(answer, modulus, private_exponent):
    """The plaintext of an answer, by the private key and OpenSSL's command."""
    key_length, data_length = (int.from_bytes(answer[place:place + 4], "little") for place in (8, 12))
    start = 4 * ANSWER_WORDS
    key, data = answer[start:start + key_length], answer[start + key_length:start + key_length + data_length]
    number = pow(int.from_bytes(key, "big"), int.from_bytes(private_exponent, "big"), int.from_bytes(modulus, "big"))
    padded = number.to_bytes(len(modulus), "big")
    session_key = padded[padded.index(0, 2) + 1:]
    return subprocess.run(["openssl", "enc", "-d", "-aes-256-cbc", "-K", session_key.hex(), "-iv", "0" * 32],
                          input=data, check=True, capture_output=True).stdout


class Replay:
    """One pass through the document's blocks."""

    def __init__(self, test):
        self.test = test
        self.client = None
        self.answer = self.modulus = self.private_exponent = b""
        self.events = []
        self.sizes = sizes()

    def close(self):
        if self.client:
            self.client.close()

    def step(self, block):
        {"ta-open": self.open, "ta-event": self.event, "ta-answer": self.compare_answer,
         "ta-plaintext": self.compare_plaintext}.get(block.language, lambda _: None)(block)

    def open(self, block):
        self.close()
        self.client = TaClient(os.environ["VAULTPAD_TA"])
        expected = -1 if "refused" in block.words else 0
        self.test.assertEqual(expected, self.client.open(bytes(content(block))), block.place)

    def event(self, block):
        number = int(block.words[1])
        expected = -1 if "refused" in block.words else 0
        data = bytes(content(block))
        result, self.answer = self.client.invoke(number, data, self.sizes.get(number, [100]))
        self.test.assertEqual(expected, result, block.place)
        self.events.append((number, expected))
        if number == 3:
            length = int.from_bytes(data[8:12], "little")
            self.modulus = data[16:16 + length]

    def compare_answer(self, block):
        expected = content(block)
        for place, byte in enumerate(self.answer):
            wanted = expected[place] if place < len(expected) else 0
            if wanted is not None:
                self.test.assertEqual(wanted, byte, f"{block.place}: byte {place} of the answer")
        self.test.assertTrue(any(byte is not None for byte in expected), block.place)

    def compare_plaintext(self, block):
        self.test.assertEqual(bytes(content(block)), decrypted(self.answer, self.modulus, self.private_exponent),
                              block.place)


class TaProtocol(unittest.TestCase):
    def test_the_emulated_ta_answers_as_the_document_says(self):
        examples = [block for block in blocks(DOCUMENT) if block.language in TA_LANGUAGES]
        replay = Replay(self)
        self.addCleanup(replay.close)
        # Stands behind the plaintext that it decrypts.
        replay.private_exponent = next(
            bytes(content(block)) for block in examples if block.language == "ta-private-exponent")
        for block in examples:
            replay.step(block)
        self.assertEqual(set(range(9)), {number for number, result in replay.events if result == 0})

    def test_the_table_of_events_says_what_the_header_says(self):
        header = (ROOT / "include/vaultpad/ta-protocol.h").read_text()
        events = {int(number): name for name, number in re.findall(r"VAULTPAD_TA_EVENT_(\w+) = (\d+)", header)}
        block_sizes = {name: int(size) for name, size in re.findall(r"VAULTPAD_TA_BLOCK_(\w+) = (\d+)", header)}
        self.assertEqual(events, {int(row[0]): row[1].strip("`") for row in table(DOCUMENT, "Events", 4)})
        for number, name in events.items():
            wanted = [block_sizes["KEY_REQUEST"], block_sizes["KEY_ANSWER"]] if name == "KEY" else [block_sizes[name]]
            self.assertEqual(wanted, sizes()[number], name)


if __name__ == "__main__":
    unittest.main()
