#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""Holds what the tests do not run against the list of what they need not run.

coverage.py COVERAGE_JSON EXEMPT, in the root of the sources. COVERAGE_JSON is gcovr's. EXEMPT holds
paragraphs: the reason in lines that begin with "#", then entries

    FILE: line: TEXT            a line that is not run
    FILE: N branches: TEXT      N branches of a line that is run are not taken

TEXT is the line itself without the blanks around it, so that an entry outlives changes elsewhere in
the file. A text that occurs several times in its file takes one entry for each of those lines.

Prints a table of the files, and what is not as listed. Exit code 1 when anything is not.
"""

import collections
import json
import re
import sys

ENTRY = re.compile(r'(?P<file>\S+): (?P<kind>line|\d+ branch(?:es)?): (?P<text>.+)')


def entry(file, kind, text):
    """An entry as the list has it."""
    return f'{file}: {kind}: {text}'


def not_run(file, lines):
    """The entries that a file owes, with the line number of each."""
    with open(file, encoding='utf-8') as source:
        texts = source.read().split('\n')
    for line in lines:
        number = line['line_number']
        text = texts[number - 1].strip()
        branches = line['branches']
        missed = sum(1 for branch in branches if branch['count'] == 0)
        if line.get('gcovr/noncode'):
            continue
        if line['count'] == 0:
            yield entry(file, 'line', text), number
        elif missed:
            kind = '1 branch' if missed == 1 else f'{missed} branches'
            yield entry(file, kind, text), number


def read_exempt(path):
    """The list as a counter of entries. Ends the program at an entry without a reason."""
    entries = collections.Counter()
    reason = False
    with open(path, encoding='utf-8') as source:
        for number, line in enumerate(source, 1):
            line = line.strip()
            if not line:
                reason = False
            elif line.startswith('#'):
                reason = True
            elif not ENTRY.fullmatch(line) or not reason:
                sys.exit(f'{path}:{number}: no entry, or one without a reason: {line}')
            else:
                entries[line] += 1
    return entries


def share(run, total):
    """`run` of `total` as text."""
    percent = 100.0 * run / total if total else 100.0
    return f'{run:5} of {total:5} {percent:6.2f} %'


def print_table(files):
    """Lines and branches of each file, and of all."""
    sums = [0, 0, 0, 0]
    print(f'{"File":45} {"Lines run":22} {"Branches taken":22}')
    for file in files:
        lines = [line for line in file['lines'] if not line.get('gcovr/noncode')]
        branches = [branch for line in lines for branch in line['branches']]
        figures = [sum(1 for line in lines if line['count']), len(lines),
                   sum(1 for branch in branches if branch['count']), len(branches)]
        sums = [left + right for left, right in zip(sums, figures)]
        print(f'{file["file"]:45} {share(*figures[:2])}  {share(*figures[2:])}')
    print(f'{"All":45} {share(*sums[:2])}  {share(*sums[2:])}')


def main():
    with open(sys.argv[1], encoding='utf-8') as source:
        files = sorted(json.load(source)['files'], key=lambda file: file['file'])
    exempt = read_exempt(sys.argv[2])
    print_table(files)

    left = exempt.copy()
    unlisted = []
    for file in files:
        for text, number in not_run(file['file'], file['lines']):
            if left[text] > 0:
                left[text] -= 1
            else:
                unlisted.append((text, number))
    idle = sorted(left.elements())
    for text, number in unlisted:
        print(f'Not run, not listed (line {number}):\n{text}')
    for text in idle:
        print(f'Listed, yet run or gone:\n{text}')
    print(f'{sum(exempt.values())} entries listed, {len(unlisted)} missing, {len(idle)} idle')
    return 1 if unlisted or idle else 0


if __name__ == '__main__':
    sys.exit(main())
