#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""Runs the commands of a document in their order, in one shell, and compares what they print.

Only fenced blocks marked `console` count. A line that begins with "$ " is a command; one with <<END goes on up to
the line END. What follows is its output, up to the next command; a line of "…" stands for any lines. Every command
has to end with 0; "; echo $?" shows another code.

What differs from day to day, from run to run and from machine to machine is not compared: line breaks, moments,
names of records, the folder, and how much a number is, unless it is 0 or all that a command prints. A name that an
output of the document shows stands for the real one in later commands.
"""

import argparse
import os
import re
import signal
import subprocess
import sys

RECORD = re.compile(r'\d{8}T\d{6}Z-[0-9a-f]{12}')
END_MARK = '\x01'
MASKS = (
    (RECORD, 'RECORD'),
    (re.compile(r'\d{4}-\d\d-\d\d(?:[T ]\d\d:\d\d(?::\d\d)?(?:Z|[+-]\d\d:\d\d)?)?'), 'MOMENT'),
    (re.compile(r'\d[\d.]* (?:bytes|kB|MB)\b'), 'SIZE'),
    (re.compile(r'\b\d+ (?:s|min|h|d)\b(?: \d+ (?:s|min|h)\b)?'), 'SPAN'),
    (re.compile(r'(?<==)\d+(?:s|B)\b'), 'FIGURE'),
    (re.compile(r'(?<![\w.])(?=[\d.]*[1-9])\d+(?:\.\d+)*'), 'NUMBER'),
)


class Step:
    """A command with the output that the document shows; both may have several lines."""

    def __init__(self, command, number):
        self.command = command
        self.number = number
        self.output = []
        self.real = []


def read_steps(lines):
    """The steps, and the lines of the document with a step in place of its lines."""
    steps, parts, inside, end = [], [], False, None
    for number, line in enumerate(lines, 1):
        if line.startswith('```'):
            inside = line == '```console'
            parts.append(line)
        elif not inside:
            parts.append(line)
        elif end is not None:
            steps[-1].command += '\n' + line
            end = None if line == end else end
        elif line.startswith('$ '):
            steps.append(Step(line[2:], number))
            parts.append(steps[-1])
            heredoc = re.search(r"<<'?(\w+)'?", line)
            end = heredoc.group(1) if heredoc else None
        elif steps:
            steps[-1].output.append(line)
    return steps, parts


def masked(text, folder):
    """The text without what differs from run to run."""
    if re.fullmatch(r'\s*\d+\s*', text):
        return text.strip()
    text = re.sub(r'\s+', ' ', text.replace(folder, 'FOLDER')).strip()
    for pattern, word in MASKS:
        text = pattern.sub(word, text)
    return text


def is_same(step, folder, shown_folder):
    """Whether the command has printed what the document shows."""
    parts = '\n'.join(step.output).split('…')
    pattern = '.*'.join(re.escape(masked(part, shown_folder)) for part in parts)
    pattern = pattern.replace('.*\\ ', '.*').replace('\\ .*', '.*')
    return re.fullmatch(' ?' + pattern + ' ?', masked('\n'.join(step.real), folder)) is not None


class Shell:
    """A bash that keeps its variables, functions and jobs from command to command."""

    def __init__(self):
        self.process = subprocess.Popen(['bash'], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT, encoding='utf-8', errors='replace',
                                        start_new_session=True)

    def run(self, command):
        """What it prints, as lines, and its exit code."""
        self.process.stdin.write(f'{{ {command}\n}} </dev/null\nprintf "{END_MARK}%s\\n" "$?"\n')
        self.process.stdin.flush()
        lines = []
        for line in self.process.stdout:
            text, mark, code = line.rstrip('\n').partition(END_MARK)
            if text or not mark:
                lines.append(text)
            if mark:
                return lines, int(code)
        return lines, self.process.wait()

    def close(self):
        """Ends the shell with what runs in the background, and waits for it."""
        self.process.stdin.close()
        os.killpg(self.process.pid, signal.SIGTERM)
        self.process.wait()


def run_steps(steps, folder, shown_folder, writes):
    """The number of steps that are not as the document says."""
    shell, names, wrong = Shell(), {}, 0
    for step in steps:
        command = RECORD.sub(lambda found: names.get(found.group(), found.group()), step.command)
        step.real, code = shell.run(command)
        if writes:
            step.command = command
        shown = RECORD.findall('\n'.join(step.output))
        names.update(zip(shown, RECORD.findall('\n'.join(step.real))))
        if code == 0 and (writes or is_same(step, folder, shown_folder)):
            continue
        wrong += 1
        print(f'line {step.number}: {step.command}\nended with {code}; the document shows:', *step.output,
              'but it printed:', *step.real, sep='\n')
        if code != 0:
            break
    shell.close()
    return wrong


def write_document(path, parts, folder, shown_folder):
    """The document with what was really printed; an output with "…" stays."""
    with open(path, 'w', encoding='utf-8') as file:
        for part in parts:
            if isinstance(part, str):
                file.write(part + '\n')
                continue
            keeps = any('…' == line.strip() for line in part.output)
            output = part.output if keeps else [line.replace(folder, shown_folder) for line in part.real]
            file.write('\n'.join([f'$ {part.command}'] + [line.rstrip() for line in output]) + '\n')


def main():
    parser = argparse.ArgumentParser(description='Runs the commands of a document, and compares what they print.')
    parser.add_argument('document')
    parser.add_argument('--folder', required=True, help='where they run')
    parser.add_argument('--shown-folder', required=True, help='what the document calls it')
    parser.add_argument('--write', action='store_true', help='put the real output into the document')
    options = parser.parse_args()
    with open(options.document, encoding='utf-8') as file:
        steps, parts = read_steps(file.read().splitlines())
    wrong = run_steps(steps, options.folder, options.shown_folder, options.write)
    if options.write and not wrong:
        write_document(options.document, parts, options.folder, options.shown_folder)
    print(f'{options.document}: {len(steps)} commands, {wrong} not as it says')
    return 1 if wrong or not steps else 0


sys.exit(main())
