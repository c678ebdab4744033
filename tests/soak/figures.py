#!/usr/bin/env python3
"""What a long run found, as Markdown, from the logs of its parts: figures.py FOLDER"""
import re
import sys
from pathlib import Path


class MissingFigure(Exception):
    pass


def table(heads, rows):
    lines = ["| " + " | ".join(heads) + " |", "|" + "---|" * len(heads)]
    return "\n".join(lines + ["| " + " | ".join(map(str, row)) + " |" for row in rows])


class Log:
    """What one part of the run said."""

    def __init__(self, folder, name):
        self.path = Path(folder) / f"{name}.log"
        self.text = self.path.read_text(encoding="utf-8", errors="replace")

    def all(self, pattern):
        found = re.findall(pattern, self.text, flags=re.M)
        if not found:
            raise MissingFigure(f"{self.path}: no line is like '{pattern}'; see what it says, and run this part again")
        return found

    def one(self, pattern):
        return self.all(pattern)[-1]

    def count(self, what):
        """The number behind a label of the summary that exists when it is not zero."""
        found = re.findall(rf"^{what} +(\d+)$", self.text, flags=re.M)
        return int(found[-1]) if found else 0


def fault_sweep(log):
    calls = dict(log.all(r"^(\w+): (\d+) calls failed one by one"))
    allocations = dict(log.all(r"^(\w+): (\d+) allocations failed one by one"))
    survived = sum(int(count) for count in log.all(r"failed one by one, (\d+) sessions survived"))
    rows = [[form, calls[form], allocations.get(form, "")] for form in calls]
    rows.append(["all", sum(map(int, calls.values())), sum(map(int, allocations.values()))])
    return (table(["form of a session", "platform calls failed one by one", "allocations failed one by one"], rows) +
            f"\n\nSessions survived: {survived}, the one with the failure and the one after it each time.")


def growth(log, kind):
    allocated = log.one(rf"^{kind} +\d+ +(-?\d+) B")
    judged = f"{kind}: too few sessions to judge" not in log.text
    return f"{allocated} bytes" + ("" if judged else " (too few sessions to judge)")


def soak_column(log):
    sessions, warm_ups, minutes = log.one(r"^sessions +(\d+) after warm-ups of (\d+), in ([\d.]+) minutes")
    failed = [int(count) for count in re.findall(r"^failed: \w+ +(\d+)$", log.text, flags=re.M)]
    kinds = ("key names, EFL comes and goes", "key names, EFL stays up", "plain")
    return [minutes, f"{sessions}, after warm-ups of {warm_ups}", log.one(r"^decrypted as typed +(\d+)$"),
            log.one(r"^longest session +([\d.]+ s)$"),
            ", ".join(str(log.count(f"{victim} killed")) for victim in ("TA", "helper", "voice maker")),
            f"{sum(failed)}, in {len(failed)} functions", *(growth(log, kind) for kind in kinds),
            log.one(r"^findings +(\d+)$")]


def soaks(shipped, speaking):
    labels = ["minutes", "sessions in one client", "decrypted, and as typed", "longest session",
              "kills of the TA, of the helper, of the voice maker", "platform calls that failed, in sessions of their own",
              "allocated per session, EFL up and down with each", "allocated per session, EFL stays up",
              "allocated per session, plain family", "findings"]
    return table(["", "shipped library", "voice guide on"], zip(labels, soak_column(shipped), soak_column(speaking)))


def fuzzers(log):
    return table(["fuzzer", "executions", "findings"], log.all(r"^([\w-]+) +(\d+) +\d+ +(\d+)$"))


def hostile_clients(log):
    return table(["what the hostile voice client sends", "pads opened and used", "seconds"],
                 log.all(r"^(\w+): (\d+) pads in ([\d.]+) seconds$"))


def figures(folder):
    parts = [("Every platform call and every allocation fails once", fault_sweep(Log(folder, "faults"))),
             ("Soaks", soaks(Log(folder, "soak"), Log(folder, "soak-speaking"))),
             ("Fuzzers", fuzzers(Log(folder, "fuzz"))),
             ("Hostile voice clients", hostile_clients(Log(folder, "hostile-voice")))]
    return "\n".join(f"### {title}\n\n{text}\n" for title, text in parts)


def main():
    if len(sys.argv) != 2:
        print(f"figures: call: {sys.argv[0]} FOLDER", file=sys.stderr)
        return 2
    try:
        print(figures(sys.argv[1]), end="")
    except (MissingFigure, OSError) as error:
        print(f"figures: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
