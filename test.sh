#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Installs what is missing, builds, and runs the tests.
set -euo pipefail
cd "$(dirname "$0")"
. tools/packages.sh

usage() {
    cat <<'EOF'
Usage: ./test.sh [--all] [PRESET]

Builds with a preset of CMakePresets.json (release, debug or sanitize; release if none is given) and
runs all its tests. The build stays in build/PRESET and is quick when run again.

  --all   everything that CI runs: release and sanitize, which is built with clang, with their tests,
          the checks of the sources, two builds compared, promtool's view of the figures, the
          commands of docs/operations.md, and the fuzz targets, side by side, for a minute
EOF
}

# run_tests PRESET
run_tests() {
    [ "$1" != sanitize ] || ensure_packages "${clang_packages[@]}"
    cmake --preset "$1" >build/configure.log || { cat build/configure.log; return 1; }
    cmake --build --preset "$1"
    ctest --preset "$1" -j "$(nproc)"
}

presets=(release)
all=false
case "${1:-}" in
    '') ;;
    --all) all=true; presets=(release sanitize) ;;
    --help | -h) usage; exit ;;
    release | debug | sanitize) presets=("$1") ;;
    *) usage >&2; exit 2 ;;
esac

ensure_packages "${build_packages[@]}"
mkdir -p build
if $all; then
    ensure_packages clang-format codespell reuse shellcheck
    tools/check-sources.sh
fi
for preset in "${presets[@]}"; do
    echo "== $preset"
    run_tests "$preset"
done
if $all; then
    echo "== reproducible"
    tools/check-reproducible.sh
    echo "== monitoring"
    tools/check-monitoring.sh
    echo "== operations"
    tools/check-operations.sh
    echo "== fuzz"
    tools/fuzz.sh
fi
