#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""A hook of `talvenhr gate` that sends a mail, by the machine's sendmail.

In talvenhr.conf, with a copy of this file where it may be run:

    [hooks]
    refused=/etc/talvenhr/mail.py hr@example.org it@example.org
    passed=/etc/talvenhr/mail.py it@example.org
    late=/etc/talvenhr/mail.py --late hr@example.org
    failed=/etc/talvenhr/mail.py it@example.org

The gate's record comes on standard input, or null where late means that no export ever came. It holds no
names of people; what the mail says is enough to find the reports. To `failed` comes why the gate could not do its work.
"""

import argparse
import email.message
import json
import math
import os
import shutil
import socket
import subprocess
import sys


def one_line(text):
    """What may stand in a header: a file's name can be anything."""
    return ''.join(c if c.isprintable() else '?' for c in text)


def is_failure(record):
    """The gate could not do its work: no record of an export."""
    return record is not None and record['format'].startswith('talvenhr.gatefailure/')


def subject(record, late):
    """What has happened, with the file that it happened to."""
    if record is None:
        return f'[talvenhr {socket.gethostname()}] no export yet'
    if is_failure(record):
        return f'[talvenhr {socket.gethostname()}] the gate failed'
    what = 'no export since' if late else f'export {record["outcome"]}:'
    return one_line(f'[talvenhr {socket.gethostname()}] {what} {record["export"]["file"]}')


def ways(record):
    """What lets the export through: none if people are missing in it."""
    codes = [reason['code'] for reason in record['reasons']]
    if 'E-FILE-CUT' in codes or 'E-FILE-NOTHING' in codes:
        yield 'Ask for a whole export, and deliver that.'
        return
    allowed = ''.join([f' --allow {code}' for code in codes if code.startswith('W-AGAINST-')]
                      + [f' --allow {limit["kind"]}={math.ceil(limit["found"])}'
                         for limit in record['limits'] if limit['found'] > limit['allowed']])
    if allowed and all(code.startswith(('limit:', 'W-AGAINST-')) for code in codes):
        yield ('If that is right:\n'
               f'  talvenhr gate{allowed} {record["name"]} --reason "..."')
    yield ('To let it through in spite of all of this:\n'
           f'  talvenhr gate --release {record["name"]} --reason "..."')


def paragraphs(record, late):
    """The text of the mail, for somebody who has to do something."""
    if record is None:
        yield 'No export was ever delivered. Look whether the HR system writes any.'
        return
    if is_failure(record):
        yield f'The gate could not do its work at {record["when"]} (exit code {record["exitCode"]}):'
        yield f'* {record["text"]}'
        yield ('No export passes until it can, and no further mail tells of it. Mend what it names, and run\n'
               '  talvenhr gate\n'
               "as the attendance server's user.")
        return
    exported = record['export']
    yield f'{exported["file"]}, {exported["lines"]} lines, {exported["size"]} bytes'
    if late:
        yield f'The last export was delivered at {record["when"]}. Look whether the HR system writes any.'
        return
    yield f'{record["outcome"]} at {record["when"]}, filed as {record["name"]}'
    for reason in record['reasons']:
        yield f'* {reason["text"]} ({reason["code"]})'
        if reason['remedy']:
            yield f'  What to do: {reason["remedy"]}'
    if record['release']:
        yield f'Let through by {record["release"]["by"]}: {record["release"]["reason"]}'
    elif record['outcome'] == 'refused':
        yield from ways(record)


def main():
    """Exit code 0 when sendmail has taken the mail; else the gate shows the last line as a warning."""
    parser = argparse.ArgumentParser(description='Mails what the gate has decided.')
    parser.add_argument('--late', action='store_true', help='say that no export was delivered')
    parser.add_argument('recipient', nargs='+')
    options = parser.parse_args()

    record = json.load(sys.stdin.buffer)
    mail = email.message.EmailMessage()
    mail['To'] = ', '.join(options.recipient)
    mail['Subject'] = subject(record, options.late)
    mail['Auto-Submitted'] = 'auto-generated'
    mail.set_content('\n\n'.join(paragraphs(record, options.late)) + '\n')

    path = os.environ.get('PATH', os.defpath) + ':/usr/sbin:/usr/lib'
    sendmail = shutil.which('sendmail', path=path)
    if not sendmail:
        sys.exit('there is no sendmail')
    return subprocess.run([sendmail, '-t', '-i'], input=bytes(mail), check=False).returncode


sys.exit(main())
