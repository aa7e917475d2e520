#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Builds the last commit twice, in different folders, and compares program, plugin and library.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

if [ $# -gt 0 ]; then
    echo 'Usage: tools/check-reproducible.sh (takes no arguments)'
    case $1 in --help | -h) exit ;; esac
    exit 2
fi

ensure_packages "${build_packages[@]}"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The plugin tells the moment of its build.
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH
# A cache would give back what the first build has made.
export CCACHE_DISABLE=1
unset CMAKE_CXX_COMPILER_LAUNCHER

# build SOURCES BUILD: what is compared is then in BUILD/made.
build() {
    mkdir -p "$1" "$2/made"
    git archive HEAD | tar -x -C "$1"
    {
        cmake -S "$1" --preset release -B "$2" -DBUILD_TESTING=OFF -DTALVENHR_BUILD_BENCHMARKS=OFF \
            -DTALVENHR_PRECOMPILE=OFF
        cmake --build "$2" --target talvenhr TalvenHR
    } >"$work/log" || { cat "$work/log"; return 1; }
    cp "$2/bin/talvenhr" "$2/plugin/libTalvenHR.so" "$2/src/libtalvenhr_core.a" "$2/made"
}

build "$work/one" "$work/one/build"
build "$work/at/another/place/two" "$work/elsewhere"

for file in talvenhr libTalvenHR.so libtalvenhr_core.a; do
    if ! cmp "$work/one/build/made/$file" "$work/elsewhere/made/$file"; then
        echo "check-reproducible: $file differs from build to build" >&2
        exit 1
    fi
    echo "$file: the same, $(stat -c %s "$work/elsewhere/made/$file") bytes"
done
