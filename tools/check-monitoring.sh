#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Has promtool look at the figures of `talvenhr status`, at the rules of the alerts with their tests, and at the
# expressions of the dashboard. Run in the root of the sources, after a build; PRESET is release if not given.
set -euo pipefail
cd "$(dirname "$0")/.."
. tools/packages.sh

talvenhr=$PWD/build/${1:-release}/bin/talvenhr
if ! promtool=$(promtool_path); then
    echo 'check-monitoring: there is no promtool, and its package cannot be fetched: NOTHING WAS CHECKED' >&2
    exit 0
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# One export that was refused, and one that went through.
mkdir "$work/archive" "$work/refused"
record() {
    python3 - "$@" <<'END'
import json, sys
name, outcome, when, path = sys.argv[1:]
summary = {'added': 3, 'errors': 0}
json.dump({
    'format': 'talvenhr.gate/1', 'name': name, 'outcome': outcome, 'when': when, 'fileTime': when,
    'export': {'file': 'ron.data', 'digest': '00', 'size': 1000, 'lines': 12}, 'placedDigest': '00',
    'fates': {'taken': 10, 'header': 1, 'blank': 0, 'dropped': 1}, 'lost': 1, 'gained': 2,
    'findings': [{'code': 'E-CELL-QUOTE', 'severity': 'error', 'count': 1}],
    'rehearsal': {'after': 0, 'people': 3, 'plan': 'a-b', 'summary': summary}, 'limits': [],
    'reasons': [{'code': 'limit:ended', 'text': 'too many', 'remedy': None}] if outcome == 'refused' else [],
    'seconds': 3}, open(path, 'w', encoding='utf-8'))
END
}
record 20261121T020000Z-000000000000 passed 2026-11-21T02:00:00.000Z "$work/archive/1.gate.json"
record 20261122T020000Z-000000000001 refused 2026-11-22T02:00:00.000Z "$work/refused/2.gate.json"
code=0
"$talvenhr" status --config /dev/null --archive "$work/archive" --refused "$work/refused" \
    --place "$work/ron.data" --metrics "$work/talvenhr.prom" --quiet || code=$?
[ "$code" -eq 1 ] || { echo "talvenhr status ended with $code" >&2; exit 1; }
"$promtool" check metrics <"$work/talvenhr.prom"

"$promtool" check rules examples/monitoring/alerts.yml
"$promtool" test rules examples/monitoring/alerts_test.yml

# promtool reads expressions only in rules.
python3 - >"$work/dashboard.yml" <<'END'
import json
panels = json.load(open('examples/monitoring/dashboard.json', encoding='utf-8'))['panels']
expressions = [target['expr'] for panel in panels for target in panel['targets']]
rules = [{'record': f'panel:{number}', 'expr': expression} for number, expression in enumerate(expressions)]
print(json.dumps({'groups': [{'name': 'dashboard', 'rules': rules}]}))
END
"$promtool" check rules "$work/dashboard.yml"
