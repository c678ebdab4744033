"""What is done with a block of each language. Each function returns the problems that it found, as texts."""
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from markdown import ROOT

C_COMPILER = ["cc", "-std=gnu11", "-Wall", "-Wextra", "-Werror", "-fsyntax-only", f"-I{ROOT}/include"]
READ_TELEVISION = ("import ctypes, sys; platform = ctypes.CDLL(sys.argv[1]); "
                   "platform.vconf_get_int(b'db/menu/system/accessibility/focuszoom', ctypes.byref(ctypes.c_int()))")


def run_commands(block, sandbox):
    code, output = sandbox.run(block.text)
    return [f"ends with {code}:\n{output}"] if code != 0 else []


def run_session(block, sandbox):
    """Commands behind "$ ", each with what it writes; "..." stands for anything."""
    problems = []
    for command, expected in re.findall(r"^\$ (.*)\n((?:(?!\$ ).*\n)*)", block.text, flags=re.M):
        code, output = sandbox.run(command)
        pattern = re.escape(expected).replace(re.escape("..."), ".*")
        if code != 0 or not re.fullmatch(pattern, output):
            problems.append(f"$ {command}\nends with {code} and writes:\n{output}")
    return problems


def compile_c(block, sandbox):
    result = subprocess.run([*C_COMPILER, "-x", "c", "-"], input=block.text, capture_output=True, text=True)
    return [result.stderr] if result.returncode != 0 else []


def read_television(block, sandbox):
    """Lets the host platform read the file: what it cannot use, it names on stderr."""
    library = next((sandbox.root / "build/dev/lib").glob("libvaultpad-host-platform.so*"))
    file = Path(sandbox.holder) / "television.ini"
    file.write_text(block.text)
    result = subprocess.run([sys.executable, "-c", READ_TELEVISION, library], capture_output=True, text=True,
                            env={**sandbox.environment(), "VAULTPAD_TELEVISION": str(file)})
    return [result.stderr] if result.stderr or result.returncode != 0 else []


def find_in_resources(block, sandbox):
    """Every element stands like this in a file of the resources."""
    ElementTree.fromstring(f"<fragment>{block.text}</fragment>")
    files = [file.read_text() for file in (ROOT / "res/xml").glob("*/*.xml")]
    lines = [line.strip() for line in block.text.splitlines() if line.strip()]
    return [f"no file of res/xml has {line}" for line in lines if not any(line in file for file in files)]


def look_for_commands(block, sandbox):
    return [f"a command in a block of text: {line}" for line in block.text.splitlines()
            if re.match(r"\s*(\$ |\./\w|(sudo|cmake|ctest|scripts/|build/|vaultpad-[a-z]+ )\b)", line)]


ACTIONS = {
    "sh": run_commands,
    "console": run_session,
    "c": compile_c,
    "ini": read_television,
    "xml": find_in_resources,
    "text": look_for_commands,
}
# Replayed by test_ta_protocol.py.
TA_LANGUAGES = ("ta-open", "ta-event", "ta-answer", "ta-plaintext", "ta-private-exponent")
