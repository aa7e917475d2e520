#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Builds the fuzz targets and runs them.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

usage() {
    cat <<'END'
Usage: tools/fuzz.sh [--seconds N | --runs N] [TARGET...]

Runs the fuzz targets import, settings and pass, or those named, one after another, each for a minute
or as long as told. They begin with fuzz/corpus and with what earlier runs found, which stays in
build/fuzz/found. An input that breaks something ends the script, which then tells its file.
END
}

# whole_number TEXT
whole_number() {
    [[ $1 =~ ^[1-9][0-9]*$ ]] || { usage >&2; exit 2; }
    echo "$1"
}

limit=-max_total_time=60
targets=()
while [ $# -gt 0 ]; do
    case "$1" in
        --seconds) limit=-max_total_time=$(whole_number "${2:-}"); shift ;;
        --runs) limit=-runs=$(whole_number "${2:-}"); shift ;;
        --help | -h) usage; exit ;;
        import | settings | pass) targets+=("$1") ;;
        *) usage >&2; exit 2 ;;
    esac
    shift
done
[ ${#targets[@]} -gt 0 ] || targets=(import settings pass)

ensure_packages "${build_packages[@]}" clang libclang-rt-14-dev
mkdir -p build
cmake --preset fuzz >build/configure.log || { cat build/configure.log; exit 1; }
cmake --build --preset fuzz

for target in "${targets[@]}"; do
    echo "== $target"
    found=build/fuzz/found/$target
    mkdir -p "$found"
    prefix=build/fuzz/found/$target-
    if ! "build/fuzz/fuzz/fuzz_$target" "$limit" -max_len=512 "-dict=fuzz/$target.dict" \
        -print_final_stats=1 "-artifact_prefix=$prefix" "$found" "fuzz/corpus/$target"; then
        broken=$(find build/fuzz/found -maxdepth 1 -type f -name "$target-*" -printf '%T@ %p\n' |
            sort -n | tail -n 1 | cut -d ' ' -f 2-)
        echo "fuzz: broken by ${broken:-no input}; run it again with" \
            "build/fuzz/fuzz/fuzz_$target ${broken:-}" >&2
        exit 1
    fi
done
