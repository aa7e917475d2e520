#!/usr/bin/env python3
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
"""Has a browser lay out pages as wide as a telephone, and looks whether one has to be scrolled sideways.

Each page stands in a frame of 400 dots. Needs chromium.
"""

import json
import pathlib
import re
import subprocess
import sys
import tempfile

WIDTH = 400
FRAME = """<!DOCTYPE html><title>frame</title><iframe width="{width}" height="900" style="border: 0" src="{page}"></iframe>
<script>
onload = function () {{
  var page = document.querySelector("iframe").contentDocument.documentElement;
  document.title = JSON.stringify([page.clientWidth, page.scrollWidth]);
}};
</script>
"""


def widths(page, folder):
    """How wide the page is, and how wide it would be without scrolling."""
    frame = folder / 'frame.html'
    frame.write_text(FRAME.format(width=WIDTH, page=page.resolve().as_uri()), encoding='utf-8')
    command = ['chromium', '--headless', '--no-sandbox', '--disable-gpu', '--hide-scrollbars',
               '--allow-file-access-from-files', f'--user-data-dir={folder / "profile"}', '--dump-dom',
               frame.as_uri()]
    document = subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                              timeout=120, encoding='utf-8').stdout
    return json.loads(re.search('<title>(.*?)</title>', document).group(1))


def main():
    wide = 0
    with tempfile.TemporaryDirectory() as name:
        for path in sys.argv[1:]:
            shown, needed = widths(pathlib.Path(path), pathlib.Path(name))
            if needed > shown:
                wide += 1
                print(f'{path}: {needed} dots wide, of which {shown} show')
    print(f'{len(sys.argv) - 1} pages, {wide} too wide for {WIDTH} dots')
    return 1 if wide or len(sys.argv) < 2 else 0


sys.exit(main())
