#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""Holds the includes of src/ and host/ to the order of their folders.

A folder of host/ (a wing) includes only the wings that host/CMakeLists.txt says it uses, and src/ only
where it uses `core`. src/ never includes host/, and src/export nothing else of src/. Every include in
quotes is rooted at the project or at src/. No include of headers runs in a circle, and only report/
prints. Run in the root of the sources; prints what is wrong, a line each. Exit code
1 when anything is.
"""

import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"', re.MULTILINE)
WING = re.compile(r'talven_add_wing\((\w+)(?:\s+USES\s+([\w\s]+?))?\s+SOURCES')
# What writes to the terminal or to a standard stream.
PRINTING = re.compile(r'\b(?:std::)?(?:f?printf|f?puts|fputc|fwrite)\s*\(|\bstd::c(?:out|err)\b'
                      r'|\bQTextStream\s+\w+\((?:stdout|stderr)\)|STD(?:OUT|ERR)_FILENO')
PRINTING_WINGS = {'report'}


def read_wings(path):
    """Each wing with all that it may use, directly or through others."""
    direct = {name: set(uses.split()) for name, uses in WING.findall(path.read_text('utf-8'))}
    allowed = {}
    for name in direct:
        seen, waiting = set(), [name]
        while waiting:
            wing = waiting.pop()
            if wing not in seen:
                seen.add(wing)
                waiting.extend(direct.get(wing, ()))
        allowed[name] = seen
    return allowed


def resolve(text):
    """The file that an include names, seen from the root or from src/; None if there is none."""
    for path in (pathlib.Path(text), pathlib.Path('src') / text):
        if path.is_file():
            return path
    return None


def wrong_folders(file, included, wings):
    """What is wrong with one include."""
    top, folder = file.parts[0], file.parts[1]
    target = included.parts[:2]
    if top == 'src':
        if target[0] != 'src':
            yield f'{file}: src/ includes {included}'
        elif folder == 'export' and target[1] != 'export':
            yield f'{file}: the export is read without {included}'
    elif folder in wings:
        if target[0] == 'src' and 'core' not in wings[folder]:
            yield f'{file}: the wing "{folder}" does not use src/, but includes {included}'
        if target[0] == 'host' and target[1] not in wings[folder]:
            yield f'{file}: the wing "{folder}" does not use "{target[1]}", but includes {included}'


def circles(includes):
    """Each circle of includes once, as text."""
    done = set()

    def walk(file, path):
        if file in path:
            yield ' -> '.join(str(step) for step in [*path[path.index(file):], file])
            return
        if file in done:
            return
        for included in includes.get(file, ()):
            yield from walk(included, [*path, file])
        done.add(file)

    for file in sorted(includes):
        yield from walk(file, [])


def main():
    wings = read_wings(pathlib.Path('host/CMakeLists.txt'))
    wrong, includes = [], {}
    for top in ('src', 'host'):
        for file in sorted(pathlib.Path(top).rglob('*')):
            if file.suffix not in ('.h', '.cpp'):
                continue
            text = file.read_text('utf-8')
            named = [name for name in INCLUDE.findall(text) if not name.endswith('.moc')]
            wrong.extend(f'{file}: no file "{name}" from the root or from src/'
                         for name in named if not resolve(name))
            includes[file] = [path for path in map(resolve, named) if path]
            if len(file.parts) < 3:
                continue
            if top == 'host' and file.parts[1] not in wings:
                wrong.append(f'{file}: the folder is no wing of host/CMakeLists.txt')
            for included in includes[file]:
                wrong.extend(wrong_folders(file, included, wings))
            if top == 'host' and file.parts[1] not in PRINTING_WINGS and PRINTING.search(text):
                wrong.append(f'{file}: prints; only report/ does')
    # A source includes its own header: only headers can make circles.
    wrong.extend(f'in a circle: {circle}' for circle in
                 circles({file: found for file, found in includes.items() if file.suffix == '.h'}))
    print('\n'.join(wrong), end='\n' if wrong else '')
    sys.exit(1 if wrong else 0)


main()
