#!/usr/bin/env python3
"""Prints how many milliseconds wvkbd takes from its start to its first picture: the least of several runs.

wvkbd is an on-screen keyboard for Wayland compositors that have layers; sway is one that runs without a display.
Exit status 3 says that one of them is not installed (packages wvkbd and sway).
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import time

RUNS = int(os.environ.get("VAULTPAD_BENCH_ONCE") and 1 or 25)
NOBODY = 65534
PATIENCE = 10
PICTURE = re.compile(r"\[ *(\d+)\.(\d+)\]  -> wl_surface@\d+\.attach\(wl_buffer")


def environment(folder):
    return {"PATH": os.environ["PATH"], "HOME": folder, "XDG_RUNTIME_DIR": folder, "WLR_BACKENDS": "headless",
            "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}


def user():
    """sway does not run as root."""
    return {"user": NOBODY, "group": NOBODY, "extra_groups": []} if os.getuid() == 0 else {}


def start_compositor(folder):
    configuration = pathlib.Path(folder, "sway.conf")
    configuration.write_text("xwayland disable\n", encoding="utf-8")
    sway = subprocess.Popen(["sway", "-c", configuration], env=environment(folder), stdout=subprocess.DEVNULL,
                            stderr=subprocess.DEVNULL, **user())
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end and sway.poll() is None:
        sockets = [path.name for path in pathlib.Path(folder).glob("wayland-?")]
        if sockets:
            return sway, sockets[0]
        time.sleep(0.05)
    sway.kill()
    raise RuntimeError("sway does not start")


def milliseconds_to_picture(folder, display):
    """The protocol's log counts microseconds of the day's clock in 32 bits."""
    start = time.time_ns() // 1000
    keyboard = subprocess.Popen(["wvkbd-mobintl", "-L", "480"], stdout=subprocess.DEVNULL, stderr=subprocess.PIPE,
                                text=True, env={**environment(folder), "WAYLAND_DISPLAY": display,
                                                "WAYLAND_DEBUG": "1"}, **user())
    try:
        for line in keyboard.stderr:
            picture = PICTURE.match(line)
            if picture:
                shown = int(picture[1]) * 1000 + int(picture[2])
                return ((shown - start) % 2**32) / 1000
    finally:
        keyboard.kill()
        keyboard.communicate()
    raise RuntimeError("wvkbd showed nothing")


def main():
    if not shutil.which("sway") or not shutil.which("wvkbd-mobintl"):
        print("wvkbd_shown: wvkbd is not measured: install wvkbd and sway", file=sys.stderr)
        return 3
    with tempfile.TemporaryDirectory(prefix="vaultpad-wvkbd-") as folder:
        if user():
            os.chown(folder, NOBODY, NOBODY)
        try:
            sway, display = start_compositor(folder)
            try:
                print(min(milliseconds_to_picture(folder, display) for _ in range(RUNS)))
            finally:
                sway.terminate()
                sway.wait()
        except (RuntimeError, OSError) as error:
            print(f"wvkbd_shown: {error}", file=sys.stderr)
            return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
