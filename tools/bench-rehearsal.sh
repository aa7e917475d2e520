#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Times a rehearsal against the pass that it rehearses, and takes it apart.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
    cat <<'END'
Usage: tools/bench-rehearsal.sh [PEOPLE]

Makes a sandbox of PEOPLE (default: 10000) with a year of attendance each, and of 20 people, in a temporary
folder, and prints a table of what passes and rehearsals take: elapsed seconds, seconds of the processor in
all processes together, and the memory of the largest process. On a machine with other work only the
seconds of the processor mean something. Needs the release build; 10,000 people take eight minutes.
END
}

case "${1:-}" in
    --help | -h) usage; exit ;;
    *[!0-9]*) usage >&2; exit 2 ;;
esac
people=${1:-10000}
program=$PWD/build/release/bin/talvenhr
plugin=$PWD/build/release/plugin/libTalvenHR.so
folder=$(mktemp -d)
trap 'jobs -p | xargs -r kill; rm -rf "$folder"' EXIT

# The day whose export passes and rehearsals take.
provide() {
    cp "$(find "$folder/$1/exports" -name '*.data' | sort | tail -1)" "$folder/$1/ron.data"
}

# sandbox NAME PEOPLE
sandbox() {
    "$program" sandbox "$folder/$1" --people "$2" --days 3 >/dev/null
    provide "$1"
    sed -i 's/^syncCommandRun=.*/syncCommandRun=0/' "$folder/$1/TalvenHR.ini"
}

# measure WHAT COMMAND NAME [OPTION...]
measure() {
    local what=$1 command=$2 name=$3
    shift 3
    provide "$name"
    /usr/bin/time -o "$folder/time" -f '%e %U %S %M' "$program" "$command" --plugin "$plugin" \
        --data-dir "$folder/$name" --private-db "$folder/$name/db" "$@" >/dev/null 2>"$folder/errors" ||
        { cat "$folder/errors" >&2; exit 1; }
    awk -v what="$what" '{ printf "| %s | %.1f s | %.1f s | %d MB |\n", what, $1, $2 + $3, $4 / 1024 }' \
        "$folder/time"
}

force_again() {
    while sleep 0.5; do
        mariadb --no-defaults --socket "$folder/passed/db/server.sock" attendance --execute "
            INSERT INTO vars (name, value) VALUES ('OQS.THRWorker.forceSync', 1)
            ON DUPLICATE KEY UPDATE value = 1" 2>/dev/null || true
    done
}

sandbox company "$people"
sandbox tiny 20
head -2 "$folder/company/ron.data" >"$folder/one.data"
# shellcheck disable=SC2016 # quotes of the database
"$program" sql --private-db "$folder/company/db" --execute '
    INSERT IGNORE INTO atten (uid, `date`, `lock`, man, ok)
    SELECT uid, day, 1, 0, 0
    FROM (SELECT UNIX_TIMESTAMP(CURDATE() - INTERVAL seq DAY) AS day FROM seq_1_to_365) AS days
    JOIN people ORDER BY uid, day'
cp -a "$folder/company" "$folder/passed"
sed -i "s#$folder/company#$folder/passed#" "$folder/passed/TalvenHR.ini"

echo "| $people people | Elapsed | Processor | Memory |"
echo '|---|---|---|---|'
measure 'the pass itself' run passed --once --log-level 0
measure 'its rehearsal' rehearse company --no-limits --quiet
measure 'a rehearsal of one line' rehearse company --export "$folder/one.data" --no-limits --quiet
measure 'the same with --whole' rehearse company --export "$folder/one.data" --no-limits --quiet --whole
measure 'a forced pass' run passed --once --force --log-level 0
measure 'the same with --changes' run passed --once --force --log-level 0 --changes "$folder/changes"
# A server that goes on: its export stays, and only a force makes a pass.
sed -i -e 's/^syncInterval=.*/syncInterval=3600/' -e '1a deleteFile=false' "$folder/passed/TalvenHR.ini"
force_again &
measure 'four forced passes' run passed --passes 4 --force --log-level 0
measure 'the same with --changes' run passed --passes 4 --force --log-level 0 --changes "$folder/changes"
kill $!
measure 'a rehearsal for 20 people' rehearse tiny --no-limits --quiet
