#!/usr/bin/env python3
"""Makes a table of result files, writes it into a document, and fails when a gate does not hold."""
import argparse
import os
import sys

import results

START = "<!-- bench: what follows is written by scripts/bench -->"
END = "<!-- bench: end -->"


def sections(paths):
    """A dictionary from program to its benchmarks; NAME.json and NAME.*.json are about the same program."""
    programs = {}
    for path in paths:
        benchmarks = programs.setdefault(os.path.basename(path).split(".")[0], {})
        for name, entry in results.read(path).items():
            benchmarks.setdefault(name, {}).update(entry)
    return programs


def time_of(entry):
    return f"{entry['real_time']:.4g} {entry['time_unit'].replace('us', 'µs')}" if "real_time" in entry else ""


def cell(entry, figure):
    if figure not in entry:
        return ""
    gate = results.gate(entry, figure)
    bound = f" ({'≥' if gate[0] == '>=' else '≤'} {gate[1]:g})" if gate else ""
    return f"{entry[figure]:.3g}{bound}"


def table(benchmarks):
    names = list(dict.fromkeys(figure for entry in benchmarks.values() for figure in results.figures(entry)))
    labels = any(entry.get("label") for entry in benchmarks.values())
    heads = ["measured", "time", *(name.replace("_", " ") for name in names), *(["beside"] if labels else [])]
    lines = ["| " + " | ".join(heads) + " |", "|" + "---|" * len(heads)]
    for name, entry in benchmarks.items():
        cells = [name, time_of(entry), *(cell(entry, figure) for figure in names)]
        if labels:
            cells.append(entry.get("label", ""))
        lines.append("| " + " | ".join(cells) + " |")
    return "\n".join(lines)


def processor():
    try:
        with open("/proc/cpuinfo", encoding="utf-8") as file:
            return next((line.split(":", 1)[1].strip() for line in file if line.startswith("model name")), "unnamed")
    except OSError:
        return "unnamed"


def report(programs):
    parts = [f"Processor: {processor()}, {os.cpu_count()} of its cores."]
    for program, benchmarks in programs.items():
        parts += [f"### {program}", table(benchmarks)]
    return "\n\n".join(parts) + "\n"


def put_into(path, text):
    with open(path, encoding="utf-8") as file:
        document = file.read()
    before, start, rest = document.partition(START)
    _, end, after = rest.partition(END)
    if not start or not end:
        raise results.ResultError(f"{path}: lacks the lines '{START}' and '{END}'; put them where the table belongs")
    with open(path, "w", encoding="utf-8") as file:
        file.write(f"{before}{START}\n\n{text}\n{END}{after}")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--document", help="the document to write the table into; without it, standard output")
    parser.add_argument("results", nargs="+", help="result files of Google Benchmark, in JSON")
    arguments = parser.parse_args()
    try:
        programs = sections(arguments.results)
        text = report(programs)
        missed = [line for benchmarks in programs.values() for name, entry in benchmarks.items()
                  for line in results.misses(name, entry)]
        if arguments.document:
            put_into(arguments.document, text)
        else:
            print(text)
    except (results.ResultError, OSError) as error:
        print(f"report: {error}", file=sys.stderr)
        return 2
    for line in missed:
        print(f"report: missed: {line}", file=sys.stderr)
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
