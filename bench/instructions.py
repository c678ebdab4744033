#!/usr/bin/env python3
"""Counts instructions: instructions.py PROGRAM RESULTS OUTPUT

Runs each benchmark in RESULTS that says how many items it works on once more, under callgrind, and writes the
instructions per item into OUTPUT. Unlike times, these figures repeat exactly.
"""
import json
import os
import re
import subprocess
import sys

import results


def only(name):
    """A filter for this benchmark. Google Benchmark refuses a backslash before what needs none."""
    return "^" + re.sub(r"([.+*?()\[\]{}|^$\\])", r"\\\1", name) + "(/iterations.*)?$"


def instructions(program, name):
    """The instructions of the one call that the benchmark marks."""
    command = ["valgrind", "--tool=callgrind", "--collect-atstart=no", "--callgrind-out-file=/dev/null",
               program, f"--benchmark_filter={only(name)}"]
    run = subprocess.run(command, env={**os.environ, "VAULTPAD_BENCH_ONCE": "1"}, capture_output=True, text=True,
                         check=False)
    collected = re.search(r"Collected : (\d+)", run.stderr)
    if run.returncode != 0 or not collected or collected[1] == "0":
        raise results.ResultError(f"{name}: no instructions were counted: {run.stderr[-500:]}")
    return int(collected[1])


def counted(program, name, entry):
    for key, items in entry.items():
        if key.startswith(results.COUNT_OF):
            figure = "instructions_per_" + key.removeprefix(results.COUNT_OF)
            yield {"name": name, figure: instructions(program, name) / items}


def main():
    program, source, output = sys.argv[1:]
    try:
        entries = [line for name, entry in results.read(source).items() for line in counted(program, name, entry)]
    except (results.ResultError, OSError) as error:
        print(f"instructions: {error}", file=sys.stderr)
        return 1
    with open(output, "w", encoding="utf-8") as file:
        json.dump({"benchmarks": entries}, file, indent=1)
    return 0


if __name__ == "__main__":
    sys.exit(main())
