#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Runs the commands of docs/operations.md in a temporary folder and compares what they print. After a build, in the
# root of the sources. --write puts what they really print into the document. Where there is a browser, it lays out the
# site that they leave. The configuration that the document gives for a real server has to be one without a fault.
set -euo pipefail
cd "$(dirname "$0")/.."

folder=$(mktemp -d)
# What a command that failed has left running goes with its folder.
cleanup() {
    if [ -f "$folder/company/db/server.pid" ]; then kill "$(cat "$folder/company/db/server.pid")" || true; fi
    rm -rf "$folder"
}
trap cleanup EXIT

# real_block N DOCUMENT ROOT: the Nth settings that the document gives for a real server, with paths below ROOT.
real_block() {
    awk -v wanted="$1" '/^## /{ real = /real server/ } /^```/{ block = 0 } real && block
        /^```ini$/ && real { block = ++given == wanted }' "$2" | sed "s|\([=\"]\)/|\1$3/|"
}

# Its paths lead below the folder, where all that they name lies as the document says.
check_configuration() {
    local root=$folder/real sources=$1 document=$2
    mkdir -p "$root"/{etc/talvenhr,opt/attendance/plugins,srv/attendance,srv/hr/incoming,srv/hr/place}
    cp "$sources/build/release/plugin/libTalvenHR.so" "$root/opt/attendance/plugins"
    real_block 2 "$document" "$root" >"$root/srv/attendance/TalvenHR.ini"
    install "$sources/examples/hooks/mail.py" "$root/etc/talvenhr"
    install -m 0600 /dev/null "$root/etc/talvenhr/read.password"
    echo look >"$root/etc/talvenhr/read.password"
    real_block 1 "$document" "$root" >"$root/etc/talvenhr/talvenhr.conf"
    grep -q '^incoming=' "$root/etc/talvenhr/talvenhr.conf"
    talvenhr config --config "$root/etc/talvenhr/talvenhr.conf" >"$root/told" || {
        cat "$root/told" >&2
        return 1
    }
}

checker=$PWD/tools/check-console.py
pages=$PWD/tools/check-pages.py
document=$PWD/docs/operations.md
mkdir "$folder/bin"
ln -s "$PWD/build/release/bin/talvenhr" "$folder/bin/talvenhr"
export PATH=$folder/bin:$PATH HOME=$folder LC_ALL=C.UTF-8
unset SUDO_USER # it would stand in the output
check_configuration "$PWD" "$document"
cd "$folder"
"$checker" "$document" --folder "$folder" --shown-folder /home/me "$@"
if command -v chromium >/dev/null; then
    "$pages" company/site/*.html
else
    echo 'check-operations: there is no chromium: no page was laid out' >&2
fi
