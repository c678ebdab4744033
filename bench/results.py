"""Result files of Google Benchmark: reading, merging and naming what is in them.

A benchmark's own figures are its counters. Three kinds of counter have a meaning by their name:
X_at_least and X_at_most are gates of the figure X; count_of_ITEM is how many items one call works on.
"""
import json
import re

AT_LEAST = "_at_least"
AT_MOST = "_at_most"
COUNT_OF = "count_of_"

# What Google Benchmark writes about a benchmark besides its counters.
OWN_KEYS = {
    "name", "family_index", "per_family_instance_index", "run_name", "run_type", "repetitions", "repetition_index",
    "threads", "iterations", "real_time", "cpu_time", "time_unit", "label", "aggregate_name", "aggregate_unit",
    "error_occurred", "error_message", "items_per_second", "bytes_per_second",
}


class ResultError(Exception):
    """A result file that cannot be used; the text says which and why."""


def plain_name(name):
    """The name without what Google Benchmark appends about the way it was run."""
    return re.sub(r"/(iterations:\d+|repeats:\d+|min_time:[\d.]+|manual_time|real_time|process_time)(?=/|$)", "", name)


def read(path):
    """The benchmarks in a result file, as a dictionary from plain name to entry."""
    try:
        with open(path, encoding="utf-8") as file:
            entries = json.load(file)["benchmarks"]
        return {plain_name(entry["name"]): checked(entry, path) for entry in entries}
    except OSError as error:
        raise ResultError(f"{path}: {error.strerror}") from error
    except (ValueError, KeyError, TypeError) as error:
        raise ResultError(f"{path}: not a result file of Google Benchmark ({error!r}); run scripts/bench") from error


def checked(entry, path):
    if entry.get("error_occurred"):
        raise ResultError(f"{path}: {entry['name']} failed: {entry.get('error_message', '')}")
    return entry


def is_gate(key):
    return key.endswith((AT_LEAST, AT_MOST))


def figures(entry):
    """The counters that are results, in the order in which they were written."""
    return {key: value for key, value in entry.items()
            if key not in OWN_KEYS and not is_gate(key) and not key.startswith(COUNT_OF)}


def gate(entry, figure):
    """(sign, bound) of a figure's gate, or None."""
    for suffix, sign in ((AT_LEAST, ">="), (AT_MOST, "<=")):
        if figure + suffix in entry:
            return sign, entry[figure + suffix]
    return None


def misses(name, entry):
    """A line for every gate of this benchmark that does not hold."""
    lines = []
    for key in filter(is_gate, entry):
        figure = key.removesuffix(AT_LEAST).removesuffix(AT_MOST)
        if figure not in entry:
            raise ResultError(f"{name}: {key} is a gate of {figure}, which was not measured")
        sign, bound = gate(entry, figure)
        # Negated, so that a figure that is not a number misses.
        if not (entry[figure] >= bound if sign == ">=" else entry[figure] <= bound):
            lines.append(f"{name}: {figure} is {entry[figure]:.4g}, and must be {sign} {bound:g}")
    return lines
