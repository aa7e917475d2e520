# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Sourced by the scripts: installs the Debian packages that are missing.

# What it takes to build and run TalvenHR, and to give it a private database.
# shellcheck disable=SC2034 # used by those who source this
build_packages=(g++ cmake ninja-build qtbase5-dev libqt5sql5-mysql libqt5sql5-sqlite
                libbenchmark-dev libgrantlee5-dev libmariadb-dev pkg-config scdoc binutils-mingw-w64-x86-64
                tzdata libfaketime mariadb-server-core mariadb-client-core
                python3-jsonschema zlib1g-dev)

# What it takes beyond that to build with clang and sanitizers, and to have lines named in what they report.
# shellcheck disable=SC2034
clang_packages=(clang libclang-rt-14-dev llvm)

# ensure_packages PACKAGE...: installs those that are missing; says nothing when all are there.
ensure_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null |
            grep -qx installed || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0

    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Packages are missing. As root: apt-get update && apt-get install --no-install-recommends" \
                "${missing[*]}" >&2
            return 1
        fi
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}"
    "${as_root[@]}" apt-get update -qq
    DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" >/dev/null
}

# as_administrator COMMAND...: as root, or by sudo where that is there.
as_administrator() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# promtool_path: prints where promtool is. If the machine has none it is taken out of its Debian package, which
# would also install and start a server, into build/tools.
promtool_path() {
    local tool=build/tools/promtool
    if command -v promtool; then return; fi
    if [ ! -x "$tool" ]; then
        mkdir -p build/tools
        (cd build/tools && apt-get download -qq prometheus >&2) || {
            # The lists of packages may not be there yet.
            as_administrator apt-get update -qq >&2
            (cd build/tools && apt-get download -qq prometheus >&2)
        } || return 1
        dpkg-deb --fsys-tarfile build/tools/prometheus_*.deb |
            tar --extract --to-stdout ./usr/bin/promtool >"$tool.new"
        rm -f build/tools/prometheus_*.deb
        chmod +x "$tool.new"
        mv "$tool.new" "$tool"
    fi
    echo "$PWD/$tool"
}
