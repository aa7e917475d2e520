#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Builds the last commit twice, in different folders, and compares program, plugin and library. Where
# nothing differs from the last commit, build/release is one of the two.
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

# build SOURCES BUILD OPTION...
build() {
    {
        cmake -S "$1" --preset release -B "$2" "${@:3}"
        cmake --build "$2" --target talvenhr TalvenHR
    } >"$work/log" || { cat "$work/log"; return 1; }
}

# build_elsewhere SOURCES BUILD: from an archive of the last commit.
build_elsewhere() {
    mkdir -p "$1"
    git archive HEAD | tar -x -C "$1"
    build "$1" "$2" -DBUILD_TESTING=OFF -DTALVENHR_BUILD_BENCHMARKS=OFF
}

one=$PWD/build/release
if [ -z "$(git status --porcelain)" ]; then
    rm -f "$one/src/CMakeFiles/TalvenHR.dir/plugin/talvenhr.cpp.o" # it holds the moment
    build . "$one"
else
    one=$work/one/build
    build_elsewhere "$work/one" "$one"
fi
two=$work/elsewhere
build_elsewhere "$work/at/another/place/two" "$two"

for file in bin/talvenhr plugin/libTalvenHR.so src/libtalvenhr_core.a; do
    if ! cmp "$one/$file" "$two/$file"; then
        echo "check-reproducible: $file differs from build to build" >&2
        exit 1
    fi
    echo "$(basename "$file"): the same, $(stat -c %s "$two/$file") bytes"
done
