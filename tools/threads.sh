#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Installs what is missing, builds with the thread sanitizer, and runs the tests that have threads.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

usage() {
    cat <<'EOT'
Usage: tools/threads.sh [--all-reports]

Builds with the preset tsan and runs tests/plugin and the host's calls of tests/endurance. Fails on
any report that tools/tsan.supp does not know; docs/testing.md explains those that it knows. The
reports are in build/tsan/reports.

  --all-reports   reports also what is known, and so fails
EOT
}

known=":suppressions=$PWD/tools/tsan.supp:print_suppressions=1"
case "${1:-}" in
    '') ;;
    --all-reports) known= ;;
    --help | -h) usage; exit ;;
    *) usage >&2; exit 2 ;;
esac

tests=(plugin/tst_inifile plugin/tst_settings plugin/tst_lifecycle plugin/tst_destruction
       plugin/tst_loadedpass plugin/tst_plugin endurance/tst_hostcalls)
build=build/tsan
reports=$build/reports
failed=0

# run_test TEST [FUNCTION]: the reports go to a file of its own.
run_test() {
    local name=${1##*/}${2:+-$2} status=0 found matched
    TSAN_OPTIONS="$options:log_path=$reports/$name" LD_PRELOAD=$PWD/$build/qtsync/libtalvenhr_qtsync.so \
        "${fixed_addresses[@]}" "$build/tests/$1" "${@:2}" >"$reports/$name.out" 2>&1 || status=$?
    found=$(cat "$reports/$name".[0-9]* 2>/dev/null | grep -c 'WARNING: ThreadSanitizer' || true)
    matched=$(cat "$reports/$name".[0-9]* 2>/dev/null | grep -oE 'Matched [0-9]+' | grep -oE '[0-9]+' || true)
    printf '%-60s %3s reports, %3s known\n' "$name" "$found" "${matched:-0}"
    [ "$status" -eq 0 ] && return
    grep -E -A3 '^FAIL|^SUMMARY' "$reports/$name".* || true
    failed=1
}

ensure_packages "${build_packages[@]}"
mkdir -p build
cmake --preset tsan >build/configure.log || { cat build/configure.log; exit 1; }
cmake --build --preset tsan --target TalvenHR talvenhr_qtsync "${tests[@]##*/}"
rm -rf "$reports"
mkdir -p "$reports"

# As the tests run otherwise.
export LC_ALL=C.UTF-8 QT_HASH_SEED=0 TZ=Europe/Bratislava
# Of memory that only libraries without the sanitizer touch it knows too little to judge.
options="exitcode=66:history_size=7:ignore_noninstrumented_modules=1$known"
# The sanitizer of g++ 12 cannot do with all the layouts that newer kernels deal out.
fixed_addresses=()
if setarch --addr-no-randomize true 2>/dev/null; then
    fixed_addresses=(setarch --addr-no-randomize)
fi

for test in "${tests[@]}"; do
    if [ "$test" != plugin/tst_plugin ]; then
        run_test "$test"
        continue
    fi
    # One process to a function: after a report the sanitizer keeps the library's file in memory, and
    # some functions look whether it has gone.
    for function in $("$build/tests/$test" -functions | tr -d '()'); do
        run_test "$test" "$function"
    done
done
exit "$failed"
