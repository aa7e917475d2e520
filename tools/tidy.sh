#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Installs what is missing, and builds src/ and host/ under clang-tidy. What passed is not looked at again.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

if [ $# -gt 0 ]; then
    echo 'Usage: tools/tidy.sh (takes no arguments; .clang-tidy has the checks)'
    case $1 in --help | -h) exit ;; esac
    exit 2
fi

ensure_packages "${build_packages[@]}" clang clang-tidy
mkdir -p build
cmake --preset tidy >build/configure.log || { cat build/configure.log; exit 1; }
cmake --build --preset tidy --target TalvenHR talvenhr
