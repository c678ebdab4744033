"""The project's files as git knows them, and what Markdown files link to."""
import re
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]


def tracked(*patterns):
    """The files that git tracks and that are there."""
    listed = subprocess.run(["git", "-c", "safe.directory=*", "ls-files", "-z", "--", *patterns], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout
    return [ROOT / name for name in listed.split("\0") if name and (ROOT / name).is_file()]


def without_code(text):
    """Markdown without its code, in which nothing is a link or a heading."""
    text = re.sub(r"^(```|~~~).*?^\1", "", text, flags=re.M | re.S)
    text = re.sub(r"^(    |\t).*$", "", text, flags=re.M)
    return re.sub(r"`[^`\n]*`", "", text)


def links(text):
    return re.findall(r"\]\(([^)\s]+)[^)]*\)", without_code(text))


def anchors(text):
    """The names that headings get: lower case, hyphens for spaces, nothing but letters, digits and hyphens."""
    headings = re.findall(r"^#+\s+(.*?)\s*#*$", re.sub(r"^(```|~~~).*?^\1", "", text, flags=re.M | re.S), flags=re.M)
    names = []
    for heading in headings:
        plain = re.sub(r"\[([^]]*)\]\([^)]*\)", r"\1", heading)
        name = re.sub(r"[^\w\- ]", "", plain.lower()).replace(" ", "-")
        count = sum(1 for known in names if known == name or re.fullmatch(re.escape(name) + r"-\d+", known))
        names.append(name if count == 0 else f"{name}-{count}")
    return names


def broken_links(document, text):
    broken = []
    for link in links(text):
        if re.match(r"[a-z]+:", link):
            continue
        path, _, anchor = link.partition("#")
        target = (document.parent / path).resolve() if path else document
        if not target.exists():
            broken.append(f"{document.name}: {link}: there is no {target.name}")
        elif anchor and anchor not in anchors(text if target == document else target.read_text()):
            broken.append(f"{document.name}: {link}: no heading has this name")
    return broken
