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
each measurement in a process of its own, and writes the tables of docs/performance.md to
build/bench/tables.md. Twenty-five minutes on an idle machine with two processors.

  --before COMMIT   compares with this commit
  --quick           only up to 10,000 people, and runs of a fifth of a second
END
}

sizes=(100 1000 10000 100000 1000000)
seconds=0.5
while [ $# -gt 0 ]; do
    case "$1" in
        --before) before=${2:?a commit}; shift ;;
        --quick) sizes=(100 1000 10000); seconds=0.2 ;;
        --help | -h) usage; exit ;;
        *) usage >&2; exit 2 ;;
    esac
    shift
done

ensure_packages "${build_packages[@]}" git python3
git cat-file -e "$before^{commit}" || {
    echo "bench: no commit $before here; this takes a clone with its history" >&2
    exit 1
}
build=build/bench
results=$build/results
rm -rf "$build/before" "$results" "$results-without-tz"
mkdir -p "$build/before" "$results" "$results-without-tz"
git archive "$before" src | tar -x -C "$build/before"
cmake --preset bench -DTALVENHR_BASELINE="$PWD/$build/before" >build/configure.log ||
    { cat build/configure.log; exit 1; }
cmake --build --preset bench --target \
    bench_dates bench_import bench_import_before bench_pass bench_pass_before bench_server

# As servers run that tell the C library where the time zone stands; the last runs show the others.
export TZ=:/etc/localtime
runs=0
# run PROGRAM FILTER [SECONDS]: one process, so that nobody finds another one's memory.
run() {
    runs=$((runs + 1))
    local file=$results/$1-$runs
    "$build/benchmarks/$1" --benchmark_filter="$2" --benchmark_min_time="${3:-$seconds}" \
        --benchmark_out_format=json --benchmark_out="$file.json" >"$file.log" 2>&1 ||
        { cat "$file.log" >&2; exit 1; }
    grep -E '^[a-zA-Z]+/' "$file.log"
}

for lines in "${sizes[@]}"; do
    [ "$lines" -gt 100 ] || continue
    run bench_dates "lines:$lines\$"
    run bench_import "lines:$lines($|/)"
    run bench_import_before "lines:$lines($|/)"
done
for kind in first unchanged forced changed waiting one_branch; do
    for people in "${sizes[@]}"; do
        run bench_pass "/$kind/people:$people\$"
        # The time of the earlier state grows with the square of the people.
        [ "$people" -gt 10000 ] || run bench_pass_before "/$kind/people:$people\$"
    done
done
# Long enough for several rounds of the passes that are short.
for kind in first first_without_pam unchanged unchanged_with_fund forced changed waiting one_branch; do
    for people in 1000 10000; do
        run bench_server "/$kind/people:$people/" 4
    done
done
unset TZ
tables=$results
results=$results-without-tz
run bench_dates 'lines:10000$'
run bench_import 'lines:10000/level:0$'
run bench_pass '/unchanged/people:10000$'
python3 tools/bench-tables.py "$tables" "$results" >"$build/tables.md"
echo "The tables are in $build/tables.md"
