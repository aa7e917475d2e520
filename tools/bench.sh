#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Runs all benchmarks and writes their tables.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

# The last commit before the plugin was made fast.
before=c0a3748c6982fd7addfef782e9123061cb334582

usage() {
    cat <<'END'
Usage: tools/bench.sh [--before COMMIT] [--quick]

Builds the benchmarks over this checkout's src/ and over that of an earlier commit, runs them in turn,
and writes the tables of docs/performance.md to build/bench/tables.md. Half an hour on an idle machine.

  --before COMMIT   compares with this commit
  --quick           only up to 10,000 people
END
}

sizes=(100 1000 10000 100000 1000000)
while [ $# -gt 0 ]; do
    case "$1" in
        --before) before=${2:?a commit}; shift ;;
        --quick) sizes=(100 1000 10000) ;;
        --help | -h) usage; exit ;;
        *) usage >&2; exit 2 ;;
    esac
    shift
done

ensure_packages "${build_packages[@]}" python3
build=build/bench
results=$build/results
rm -rf "$build/before" "$results"
mkdir -p "$build/before" "$results"
git archive "$before" src | tar -x -C "$build/before"
cmake --preset bench -DTALVENHR_BASELINE="$PWD/$build/before" >build/configure.log ||
    { cat build/configure.log; exit 1; }
cmake --build --preset bench

# As servers run that tell the C library where the time zone stands; the last runs show the others.
export TZ=:/etc/localtime
runs=0
# run BENCHMARK FILTER [SUFFIX]: one process, so that nobody finds another one's memory.
run() {
    local name=$1${3:-}
    runs=$((runs + 1))
    "$build/benchmarks/$name" --benchmark_filter="$2" --benchmark_out_format=json \
        --benchmark_out="$results/$name-$runs.json" 2>/dev/null |
        grep -E '^[a-zA-Z]+[/ ].*each|^pass' || true
}

for size in "${sizes[@]}"; do
    [ "$size" -gt 100 ] || continue
    run bench_dates "lines:$size\$"
    run bench_import "lines:$size($|/)"
    run bench_import "lines:$size($|/)" _before
done
for kind in 0 1 2 3 4 5; do
    for size in "${sizes[@]}"; do
        run bench_pass "kind:$kind/people:$size\$"
        # The time of the earlier state grows with the square of the people.
        [ "$size" -gt 10000 ] || run bench_pass "kind:$kind/people:$size\$" _before
    done
done
for kind in 0 1 2 3 4 5 6; do
    for size in 1000 10000; do
        run bench_server "kind:$kind/people:$size/"
    done
done
unset TZ
tables=$results
results=$build/results-without-tz
rm -rf "$results"
mkdir -p "$results"
run bench_dates 'lines:10000$'
run bench_import 'lines:10000/level:0$'
run bench_pass 'kind:1/people:10000$'
python3 tools/bench-tables.py "$tables" "$results" >"$build/tables.md"
echo "The tables are in $build/tables.md"
