#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""Prints the tables of docs/performance.md from the results of tools/bench.sh."""

import glob
import json
import os
import re
import sys

MICROSECONDS = 1e6


def read(folder):
    """All benchmarks by program and name."""
    results = {}
    paths = glob.glob(os.path.join(folder, "*.json"))
    for path in sorted(paths, key=lambda path: int(re.search(r"(\d+)\.json$", path).group(1))):
        program = re.sub(r"-\d+\.json$", "", os.path.basename(path))
        with open(path, encoding="utf-8") as file:
            for entry in json.load(file)["benchmarks"]:
                results[program, entry["name"]] = entry
    return results


def number(value, digits=2):
    return f"{value:,.{digits}f}"


def title(kind):
    return kind.replace("_", " ").replace("pam", "PaM")


def row(*cells):
    print("| " + " | ".join(str(cell) for cell in cells) + " |")


def head(*cells):
    row(*cells)
    print("|" + "---|" * len(cells))


def each(results, program, name):
    entry = results.get((program, name))
    return entry["each"] * MICROSECONDS if entry else None


def sizes(results, program, pattern):
    found = {int(match.group(1)) for key in results if key[0] == program
             for match in [re.search(pattern, key[1])] if match}
    return sorted(found)


def date_table(results):
    print("### Reading a date\n")
    print("Microseconds a date; each line has two.\n")
    head("Lines", "By its digits", "by its format", "gain")
    for lines in sizes(results, "bench_dates", r"lines:(\d+)"):
        digits = each(results, "bench_dates", f"byDigits/lines:{lines}")
        form = each(results, "bench_dates", f"byFormat/lines:{lines}")
        row(f"{lines:,}", number(digits), number(form), number(form / digits, 0))
    print()


def import_table(results):
    print("### Reading the export\n")
    print("Microseconds a line.\n")
    head("Lines", "Only split", "Level 0", "times the floor", "before", "gain", "Level 3", "before")
    for lines in sizes(results, "bench_import", r"lines:(\d+)"):
        floor = each(results, "bench_import", f"splitOnly/lines:{lines}")
        level0 = each(results, "bench_import", f"loadAndParseData/lines:{lines}/level:0")
        level3 = each(results, "bench_import", f"loadAndParseData/lines:{lines}/level:3")
        before0 = each(results, "bench_import_before", f"loadAndParseData/lines:{lines}/level:0")
        before3 = each(results, "bench_import_before", f"loadAndParseData/lines:{lines}/level:3")
        row(f"{lines:,}", number(floor), number(level0), number(level0 / floor, 1), number(before0),
            number(before0 / level0, 1), number(level3), number(before3))
    print()


def kinds(results, program):
    """The kinds of pass that a program was asked for, in the order of the runs."""
    return list(dict.fromkeys(name.split("/")[1] for of, name in results if of == program))


def pass_table(results):
    print("### A pass on a database that answers at once\n")
    print("Microseconds and bytes of memory, at most, an employee.\n")
    head("Pass", "People", "Time", "before", "gain", "Memory")
    for kind in kinds(results, "bench_pass"):
        for people in sizes(results, "bench_pass", rf"/{kind}/people:(\d+)$"):
            name = f"pass/{kind}/people:{people}"
            now = each(results, "bench_pass", name)
            before = each(results, "bench_pass_before", name)
            row(title(kind), f"{people:,}", number(now), number(before) if before else "",
                number(before / now, 1) if before else "",
                number(results["bench_pass", name]["bytes"], 0))
    print()


def server_table(results):
    print("### A pass on a private MariaDB\n")
    print("Two passes, against the same calls made by a bare client.\n")
    head("Pass", "People", "Calls a pass", "Milliseconds", "times the bare client")
    for kind in kinds(results, "bench_server"):
        for people in sizes(results, "bench_server", rf"/{kind}/people:(\d+)/"):
            entry = results["bench_server", f"pass/{kind}/people:{people}/manual_time"]
            row(title(kind), f"{people:,}", f"{entry['calls']:,.0f}", number(entry["real_time"], 0),
                number(entry["ratio"]))
    print()


def without_zone_table(results, bare):
    print("### Where TZ is not set\n")
    print("Microseconds, for 10,000 people.\n")
    head("", "TZ set", "not set")
    for what, program, name in (
            ("A date by its digits", "bench_dates", "byDigits/lines:10000"),
            ("A date by its format", "bench_dates", "byFormat/lines:10000"),
            ("A line at level 0", "bench_import", "loadAndParseData/lines:10000/level:0"),
            ("An employee of an unchanged pass", "bench_pass", "pass/unchanged/people:10000")):
        row(what, number(each(results, program, name)), number(each(bare, program, name)))
    print()


def main():
    results = read(sys.argv[1])
    import_table(results)
    date_table(results)
    pass_table(results)
    server_table(results)
    without_zone_table(results, read(sys.argv[2]))


main()
