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

Runs the fuzz targets import, settings and pass, or those named, side by side, for a minute or as long
as told. They begin with fuzz/corpus and with what earlier runs found, which stays in
build/fuzz/found. An input that breaks something is told with its file, and fails the script.
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

ensure_packages "${build_packages[@]}" "${clang_packages[@]}"
mkdir -p build
cmake --preset fuzz >build/configure.log || { cat build/configure.log; exit 1; }
cmake --build --preset fuzz

# run_target TARGET: its words go to build/fuzz/TARGET.log.
run_target() {
    mkdir -p "build/fuzz/found/$1"
    "build/fuzz/fuzz/fuzz_$1" "$limit" -max_len=512 "-dict=fuzz/$1.dict" -print_final_stats=1 \
        "-artifact_prefix=build/fuzz/found/$1-" "build/fuzz/found/$1" "fuzz/corpus/$1" \
        >"build/fuzz/$1.log" 2>&1
}

# summary TARGET: executions, edges and inputs that it came to.
summary() {
    local edges inputs
    edges=$(grep -oE 'cov: [0-9]+' "build/fuzz/$1.log" | tail -n 1)
    inputs=$(grep -oE 'corp: [0-9]+' "build/fuzz/$1.log" | tail -n 1)
    echo "$1: $(awk '/stat::number_of_executed_units/ { print $2 }' "build/fuzz/$1.log") executions," \
        "${edges#cov: } edges, ${inputs#corp: } inputs"
}

pids=()
for target in "${targets[@]}"; do
    run_target "$target" &
    pids+=($!)
done
failed=0
for i in "${!targets[@]}"; do
    if wait "${pids[i]}"; then
        summary "${targets[i]}"
        continue
    fi
    failed=1
    tail -n 30 "build/fuzz/${targets[i]}.log" >&2
    broken=$(grep -oE 'build/fuzz/found/[a-z]+-[a-z]+-[0-9a-f]+' "build/fuzz/${targets[i]}.log" | tail -n 1)
    echo "fuzz: broken by ${broken:-no input}; run it again with" \
        "build/fuzz/fuzz/fuzz_${targets[i]} ${broken:-}" >&2
done
exit "$failed"
