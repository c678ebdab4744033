#!/usr/bin/env python3
"""Writes the seeds of the fuzzers whose input is no text, into corpus/ beside this script; --check compares them."""
import pathlib
import struct
import sys
import zlib

CORPUS = pathlib.Path(__file__).parent / "corpus"


def word(*values):
    return b"".join(struct.pack("<I", value & 0xFFFFFFFF) for value in values)


def short(value):
    return struct.pack("<H", value & 0xFFFF)


def write(target, name, data):
    file = CORPUS / target / name
    if "--check" not in sys.argv[1:]:
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(data)
    elif not file.is_file() or file.read_bytes() != data:
        sys.exit(f"{file} is not what this script makes; run {sys.argv[0]}")


def event(number, request=b""):
    return bytes([number]) + short(len(request)) + request


def image(name, width, height, x, y, size=None):
    pixels = b"\x5a" * (width * height * 3)
    return name.encode() + b"\0" + word(width, height, x, y, len(pixels) if size is None else size) + pixels


def clip(name, samples, size=None):
    sound = (b"RIFF" + word(36 + len(samples)) + b"WAVEfmt " + word(16) + struct.pack("<HHIIHH", 1, 1, 22050, 44100, 2, 16)
             + b"data" + word(len(samples)) + samples)
    # Stored, which is the same bytes with every version of zlib.
    data = zlib.compress(sound, 0)
    return name.encode() + b"\0" + word(len(data), len(sound) if size is None else size) + data


TYPE = event(5, word(1, 4, 0, 0, 0, 0, 500, 300))
DESCRIPTION = event(8, word(20, 0x56505549, 1, 1920, 1080, 1))
IMAGES = event(0, word(3) + image("/root/background.ppm", 6, 4, 0, 0) + image("/root/key.1.normal.ppm", 2, 2, 0, 0)
               + image("/root/key.1.focus.ppm", 2, 2, 0, 0))
PUBLIC_KEY = event(3, word(0, 0, 128, 3) + b"\xc5" * 128 + b"\x01\x00\x01" + word(4) + b"seed")
RETURN, UP, LEFT, RIGHT, DOWN = (event(2, word(2, code)) for code in (36, 111, 113, 114, 116))


def ta_sessions():
    write("ta-session", "whole-session",
          b"\0" + TYPE + DESCRIPTION + IMAGES + event(7) + PUBLIC_KEY + event(6) + event(1) + RETURN * 4)
    clips = word(3) + clip("key.1", b"\1\2\3\4") + clip("label.title", b"\5\6") + clip("background", b"")
    write("ta-session", "clips", b"\0" + TYPE + DESCRIPTION + IMAGES + event(7) + event(4, clips) + event(1) + RETURN + UP)
    write("ta-session", "clip-of-wrong-size", b"\0" + TYPE + DESCRIPTION + event(7) + event(4, word(1) + clip("1", b"", 9)))
    write("ta-session", "prepared-clips", b"\x01" + event(4, clips) + RIGHT + LEFT + RETURN)
    write("ta-session", "prepared-pin-pad", b"\x01" + RIGHT + RETURN + LEFT + UP + DOWN + RETURN * 4)
    write("ta-session", "prepared-keyboard-turned", b"\xe3" + RETURN + DOWN + RETURN + event(1) + PUBLIC_KEY)
    write("ta-session", "refusals",
          b"\0" + event(2, word(2, 36)) + event(5, word(9)) + TYPE + DESCRIPTION + event(9)
          + event(0, word(1) + image("/root/a.ppm", 2, 2, 0, 0, 0xFFFFFFFF)))


def answers():
    write("ta-answer", "text", word(1, 1, 128, 32, 4) + b"\x11" * 128 + b"\x22" * 32)
    write("ta-answer", "no-text", word(1, 0, 0, 0, 0))
    write("ta-answer", "largest", word(1, 1, 256, 512, 40) + b"\x11" * 768)
    write("ta-answer", "too-large", word(1, 1, 257, 513, 40))


def voices():
    message = lambda index, text, final: b"\0" + bytes([index]) + short(len(text)) + bytes([final, len(text)]) + text
    write("voice-message", "three-clips", b"".join(message(i, b"sound", 1) for i in range(3)))
    write("voice-message", "wrong-fields", message(9, b"a", 1) + b"\0\x01\xff\xff\x01\x00" + message(2, b"b", 0))
    write("voice-message", "short", b"\x0d" + word(1, 4, 1) + b"\x03\0\0")
    write("voice-packing", "clips", b"".join(b"\x02k%c" % (65 + i) + b"\x05sound" + bytes([i * 9, i, i]) for i in range(17)))


def key_names():
    for name in ("Return", "Up", "XF86Back", "XF86AudioRaiseVolume", "XF86AudioLowerVolume", "a", "to-symbols",
                 "BackSpace.to-lower"):
        write("key-name", name, b"\x02\x03" + name.encode())


def decryptions():
    text = bytes([4]) + "2580".encode("utf-16-le")
    write("decryption", "good", b"\x01\x10\x01" + b"\xee" * 16 + text)
    write("decryption", "good-bare", b"\x01\x00\x00" + text.ljust(15, b"\x07") + b"\x10" * 16)
    write("decryption", "any",
          b"\0" + word(16) + b"\x01" + b"\xc5" * 128 + short(128) + b"\x33" * 128 + short(128) + b"\x44" * 128
          + short(32) + b"\x55" * 32)
    write("decryption", "lengths", b"\0" + word(0xFFFFFFFF) + b"\0" + short(5) + b"abcde" + short(700))


ta_sessions()
answers()
voices()
key_names()
decryptions()
