#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Builds with counters, runs the tests, and writes what they run of src/ to build/coverage/.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

usage() {
    cat <<'EOF'
Usage: tools/coverage.sh [--report]

Fails when a line or branch of src/ is not run that tools/coverage-exempt.txt does not list, and when
one is run that it lists. The report is build/coverage/report.txt, and for a browser
build/coverage/html/index.html.

  --report   only the report, of the last run of the tests
EOF
}

build=build/coverage
run=true
case "${1:-}" in
    '') ;;
    --report) run=false ;;
    --help | -h) usage; exit ;;
    *) usage >&2; exit 2 ;;
esac

ensure_packages "${build_packages[@]}" gcovr python3
if $run; then
    mkdir -p build
    cmake --preset coverage >build/configure.log || { cat build/configure.log; exit 1; }
    cmake --build --preset coverage
    find "$build" -name '*.gcda' -delete
    # The command line and the installation add nothing: they load the same library.
    ctest --preset coverage -j "$(nproc)" -L 'unit|database|faults|plugin|transcript'
fi

# Nothing of TalvenHR throws: the preset builds without exceptions, so that no branch stands for one.
mkdir -p "$build/html"
gcovr --root . --filter 'src/' --exclude-throw-branches --exclude-unreachable-branches \
    --json "$build/coverage.json" --html-details "$build/html/index.html" -j "$(nproc)" \
    "$build/src" "$build/tests"
tools/coverage.py "$build/coverage.json" tools/coverage-exempt.txt | tee "$build/report.txt"
