#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Shows the main job: an export file goes into an attendance database, twice.
set -euo pipefail
cd "$(dirname "$0")"
. tools/packages.sh

if [ $# -gt 0 ]; then
    echo 'Usage: ./demo.sh (takes no arguments; begins afresh in demo-data/)'
    case $1 in --help | -h) exit ;; esac
    exit 2
fi

here=$PWD
data=$here/demo-data
log=$data/run.log
changes=$data/changes.txt
person=2001.1 # the new employee whose road the demo shows
export LC_ALL=C.UTF-8

# --- Appearance ---------------------------------------------------------------------------------

bold='' dim='' green='' red='' plain=''
if [ -t 1 ]; then
    bold=$'\e[1m' dim=$'\e[2m' green=$'\e[32m' red=$'\e[31m' plain=$'\e[0m'
fi

title() { printf '\n%s%s%s\n\n' "$bold" "$1" "$plain"; }
say() { printf '%s\n' "$@"; }
indent() { sed 's/^./  &/'; }

# --- The export file ------------------------------------------------------------------------------

# day OFFSET: a date cell, such as "day -1 month"; an empty OFFSET gives an empty cell.
day() { [ -z "$1" ] || date -d "$1" '+%Y-%m-%d 00:00:00.000'; }

# employee NUMBER RELATION TITLE NAME SURNAME TITLE_AFTER PHONE FROM TO BRANCH CALENDAR SINCE \
#          TYPE RELATION_STATE EVIDENCE_STATE BALANCE SUPERVISOR
employee() {
    printf '%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s|%s\n' "$1" "$2" "$3" "$4" "$5" "$6" \
        "$7" "$(day "$8")" "$(day "$9")" "${10}" "Stredisko ${10}" "${11}" "$(day "${12}")" \
        "${13}" "${14}" "${15}" "${16}" "${17}"
}

header() {
    echo "OsobniCislo|PoradoveCisloPP|Titul|Jmeno|Prijmeni|TitulZa|Telefon|DatumNastupu|\
DatumVystupu|Stredisko|StrediskoPopis|Kalendar|KalendarPlatnostOd|TypPracovnihoPomeru|\
StavPracovnihoPomeru|EvidencniStav|DovolenaZustatek|NadrizenyOsobniCislo"
}

this_month=$(date +%Y-%m-01)

# Known to the database already; only a few of them differ from their row.
known_people() {
    employee 1001 1 Ing. 'Ľubomír' 'Krížik' '' '0900 001 001' 2009-09-01 '' 100 1 2009-09-01 11 1 0 22 ''
    employee 1002 1 '' 'Žofia' 'Šťastná' '' '0900 001 002' 2012-02-01 '' 200 2 2012-02-01 11 1 0 14.5 1001
    employee 1003 1 Ing. 'Jiří' 'Dvořáček' PhD. '0900 001 003' 2015-03-01 '' "$6" 2 2015-03-01 11 1 0 9 1001
    employee 1004 1 Mgr. 'Ľudmila' "$1" '' '0900 001 004' 2016-10-01 '' 100 1 2016-10-01 11 1 0 17 1001
    employee 1005 1 '' 'Štefan' 'Múčka' '' "$2" 2018-04-01 '' 200 3 2023-01-01 11 1 0 3.5 1002
    employee 1006 1 '' 'Zdeňka' 'Řeháková' '' '0900 001 006' 2019-01-01 '' 210 3 2019-01-01 11 1 "$3" 8 1003
    employee 1007 1 '' 'Ján' 'Vŕba' '' '0900 001 007' 2020-06-01 "$4" 300 2 2020-06-01 11 1 0 5 1002
    employee 1008 1 Bc. 'Kateřina' 'Nováčková' '' '0900 001 008' 2017-05-01 '' 400 1 2017-05-01 11 1 0 12 1001
    employee 1008 2 Bc. 'Kateřina' 'Nováčková' '' '0900 001 008' 2022-01-01 '' 100 0 '' 51 1 0 0 ''
    employee 1010 1 '' 'Mária' 'Kováčiková' '' '' 2021-03-28 '' 400 1 2021-03-28 11 1 "$5" 20 1008
}

# Not in the database yet; 1012 is there, but inactive.
new_people() {
    employee 1012 1 '' 'Peter' 'Holý' '' '0900 001 012' "$this_month" '' 200 2 "$this_month" 11 1 0 20 1002
    employee 2001 1 MUDr. 'Přemysl' 'Žďárský' CSc. '' "$this_month" '' 100 1 "$this_month" 11 1 0 20 1001
    employee 2002 1 '' 'Čeněk' 'Ťapka' '' '777 123 456' "$this_month" '' 210 2 "$this_month" 11 1 1 20 1003
    employee 2003 1 '' 'Ľubica' 'Ôsmaková' '' '' "$this_month" '2037-12-31' 300 2 "$this_month" 53 1 0 0 ''
    employee 2004 1 '' 'Agáta' 'Šúrová' '' '' 'yesterday' '' 400 1 "$this_month" 65 1 0 20 1008
    # Has left before we ever met: not added.
    employee 2005 1 '' 'Vilém' 'Bývalý' '' '' 2019-01-01 2023-12-31 200 2 '' 11 4 3 0 ''
}

unusable_lines() {
    employee 0 1 '' 'Bez' 'Čísla' '' '' 2020-01-01 '' 100 1 '' 11 1 0 0 ''
    employee 2099 1 '' '' '' '' '' 2020-01-01 '' 100 1 '' 11 1 0 0 ''
    echo '2098|1|a line that the HR system broke off'
}

write_export() {
    "$@" >"$data/ron.data.new"
    mv "$data/ron.data.new" "$data/ron.data"
}

first_export() {
    header
    known_people 'Ďurišová' '' 0 'today + 3 months' 21 210
    new_people
    unusable_lines
}

# A marriage, a phone, an earlier last day, a move to another branch, a state that begins and one
# that ends.
second_export() {
    header
    known_people 'Horváthová' '0905 555 005' 71 'today - 1 day' 0 200
    new_people
    employee 2006 1 '' 'Dorota' 'Ľahká' '' '' 'today' '' 200 2 "$this_month" 54 1 0 0 ''
    unusable_lines
}

# --- The database -----------------------------------------------------------------------------------

sql() { build/release/bin/talvenhr sql --private-db "$data/db" --execute "$1" | tail -n +2; }

# changes PASS [PERSON]: the rows that a pass changed, by person; what went is red, what came green.
changes() {
    awk -v pass="Pass $1:" -v person="${2-}" 'BEGIN { RS = ""; ORS = "\n\n" }
        /^Pass / { wanted = index($0, pass) == 1; next }
        wanted && (person == "" || index($0, person " ") == 1)' "$changes" |
        sed -e '$d' -e "s/^  -.*/$red&$plain/" -e "s/^  +.*/$green&$plain/" | indent
}

# wait_for PASS: until it is over and its changes are shown.
wait_for() {
    local tries=600
    until grep -q "^Pass $1:" "$changes"; do
        if ! kill -0 "$run" 2>/dev/null || [ $((tries -= 1)) -eq 0 ]; then
            cat "$log" >&2
            exit 1
        fi
        sleep 0.1
    done
}

# messages PASS: what the plugin logged of the one employee in a pass, and all warnings and errors.
# Dots stand for the lines of the others. Left out are the stamps.
messages() {
    cut -c31- "$log" | sed 's/^ *//' | awk -v pass="#$1" -v pid="${person/./}" -v bid=1 '
        /(BEGIN|END) synchronization/ && index($0, pass) { print_it = 1; inside = /BEGIN/ }
        inside && /dbCheckFundMove\(/ { mine = index($0, "(pid: " pid ")") }
        inside && /BranchesRepository::/ { mine = $0 ~ "\\(" bid "[,)]" }
        inside && (mine || /^(warning|critical)/) { print_it = 1 }
        print_it { print; print_it = 0; dots = 0; next }
        inside && !dots { print "…"; dots = 1 }' | indent
}

# --- The show -----------------------------------------------------------------------------------------

ensure_packages "${build_packages[@]}"
mkdir -p build
say "${dim}Building …$plain"
if ! { cmake --preset release && cmake --build --preset release --target talvenhr TalvenHR; } \
    >build/demo.log 2>&1; then
    cat build/demo.log
    exit 1
fi

rm -rf "$data"
mkdir -p "$data"
cat >"$data/TalvenHR.ini" <<EOF
enabled=true
; Seconds from tick to tick; a pass runs on the first tick, on every 60th, and when forced.
timerInterval=1
syncInterval=60
importFile=$data/ron.data
deleteFile=false

[MES]
21=materská dovolenka
71=neplatené voľno
EOF
write_export first_export

title 'The export file that the HR system left (18 columns)'
cut -d'|' -f1,2,4,5,8-10,12,14,16,18 "$data/ron.data" | sed 's/ 00:00:00.000//g' | tail -n +2 | indent
say '' "  ${dim}Shown: numbers, name, first and last day, branch, calendar, type, state, supervisor. The last three"
say "  lines are no employees.$plain"

title 'What the plugin will make of it'
say "  ${dim}talvenhr check demo-data/ron.data --data-dir demo-data$plain" ''
# It ends with 1, since something is wrong.
{ build/release/bin/talvenhr check "$data/ron.data" --data-dir "$data" || true; } |
    sed '/^NOTE/,$d' | indent
say "  ${dim}The plugin drops such lines, and says so at log level 3 only. We let it, to show what it drops.$plain"

title 'The first pass'
say "  ${dim}talvenhr run --data-dir demo-data --private-db demo-data/db --passes 2 --show-changes$plain" ''
build/release/bin/talvenhr run --data-dir "$data" --private-db "$data/db" --passes 2 --show-changes \
    2>"$log" >"$changes" &
run=$!
trap 'kill "$run" 2>/dev/null || true' EXIT
wait_for 1
say "  ${dim}What the log says of one new employee, $person; all of it is in demo-data/run.log$plain" ''
messages 1

title "The road of one employee: what has come into the database for $person"
changes 1 "$person"
say '' "  ${dim}PaM is the export of times for pay. The leave comes with the next pass: when the attendance was asked (NO OK),"
say "  there was no such person yet.$plain"

title 'What the pass did for everybody'
changes 1
say '' "  ${dim}On the first pass after a start everybody counts as changed, so that terminals are told of people"
say "  whose rows show little change. Only terminals in service that take persons are told. Leave moves in"
say "  hundredths of a day, and not for whom it is right already, or whose attendance is not calculated (1005.1).$plain"

title 'The export has changed: what would the next pass change?'
write_export second_export
say "  ${dim}talvenhr rehearse --data-dir demo-data --private-db demo-data/db --force" \
    "      --allow dropped=3 --html demo-data/rehearsal.html$plain" ''
{ build/release/bin/talvenhr rehearse --data-dir "$data" --private-db "$data/db" --force --allow dropped=3 \
    --html "$data/rehearsal.html" || true; } | sed '/^$/,$d' | indent
say '' "  ${dim}It ran the plugin on a copy. With all people, for a browser: demo-data/rehearsal.html$plain"

title 'Somebody forces that pass'
sql "UPDATE vars SET value = 1 WHERE name = 'OQS.THRWorker.forceSync'"
say "  ${dim}UPDATE vars SET value = 1 WHERE name = 'OQS.THRWorker.forceSync'$plain" ''
wait_for 2
trap - EXIT
wait "$run" || true
messages 2
say '' "  ${dim}New on the road of $person$plain"
changes 2 "$person"

title 'What it did this time for everybody'
changes 2
say '' "  ${dim}Who changes branches stays in the old one, too, until somebody takes them out.$plain"

title 'In the end'
sed -n '/END synchronization #2/,$p' "$log" | tail -n +2 | fold -s -w 100 | indent
say '' "  ${dim}The one who waits has no calendar and was in the branch already; docs/oddities.md tells why that counts"
say "  as not done yet.$plain"

title 'An export that was cut off comes to the gate'
mkdir -p "$data/gate/incoming"
{ header; known_people 'Horváthová' '0905 555 005' 71 'today - 1 day' 0 200; new_people; } |
    head -c -200 >"$data/gate/incoming/ron.data"
say "  ${dim}talvenhr gate --incoming demo-data/gate/incoming --place demo-data/gate/ron.data --complete rename" \
    "      --data-dir demo-data$plain" ''
# It ends with 5, for it refuses.
{ build/release/bin/talvenhr gate --incoming "$data/gate/incoming" --place "$data/gate/ron.data" \
    --complete rename --data-dir "$data" || true; } | fold -s -w 100 | indent
page=$(ls "$data"/gate/refused/*.check.html)
say '' "  ${dim}Nothing is in place, so the plugin would find no export. For a browser, what is wrong with it:" \
    "  ${page#"$here"/}" "  With the text beside it and the lines to send back. docs/operations.md sets such a gate up.$plain"

title 'Play on'
cat <<EOF
  Edit   demo-data/ron.data (the export) or demo-data/TalvenHR.ini (the settings), then run

    build/release/bin/talvenhr run --data-dir demo-data --private-db demo-data/db --once --show-changes
    build/release/bin/talvenhr sql --private-db demo-data/db

  The first runs a pass (--force makes it a forced one, --log-level 3 shows every line), the second
  opens a client on the database. ./demo.sh begins afresh.
EOF
