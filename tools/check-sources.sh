#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 The TalvenHR authors
# SPDX-License-Identifier: MIT
# Checks that need no build: format, scripts, licences, spelling, API level, and what documents say of
# the code.
set -euo pipefail
cd "$(dirname "$0")/.."

failed=0
complain() {
    echo "check-sources: $1" >&2
    failed=1
}

# Every C++ file as .clang-format has it.
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
clang-format --dry-run --Werror "${sources[@]}" || complain "run clang-format -i on the files above"

# Scripts.
mapfile -t scripts < <(git ls-files --cached --others --exclude-standard '*.sh' .ci/run)
shellcheck -x "${scripts[@]}" || complain "scripts need attention"

# Every file with its licence.
reuse lint >/dev/null || { reuse lint; complain "files need a licence, at their head or in .reuse/dep5"; }

# Spelling, but for what people's exports and fuzzers wrote.
mapfile -t written < <(git ls-files --cached --others --exclude-standard -- ':!fuzz/corpus' ':!*.data')
codespell --ignore-words tools/words.txt "${written[@]}" ||
    complain "spelling, or words that tools/words.txt lacks"

# Which folder may include which, and who prints.
tools/check-includes.py || complain "includes or output are not where they belong"

# Servers are built with Qt 5.9: what came later must not be used in the plugin.
newer_api=(
    'QStringView|QRandomGenerator|qEnvironmentVariable\(|keyValueBegin|keyValueEnd' # 5.10
    'QCbor|QSignalMapper::mappedInt|QConcatenateTablesProxyModel'                 # 5.12, 5.13
    'swapItemsAt|QCalendar'                                                        # 5.13, 5.14
    'QRecursiveMutex|startOfDay\(|endOfDay\(|Qt::endl|Qt::hex|Qt::dec'              # 5.14
    'Qt::(Skip|Keep)EmptyParts|moveToTrash|startCommand|splitCommand'              # 5.14, 5.15
)
pattern=$(IFS='|'; echo "${newer_api[*]}")
if git grep -nE "$pattern" -- src; then
    complain "the lines above use API that Qt 5.9 does not have"
fi

# Tests that comments and documents name: the slot must exist.
while read -r pinned; do
    class=${pinned%%::*}
    slot=${pinned##*::}
    git grep -qF "void $class::$slot(" -- tests || complain "no test $pinned"
done < <(git grep -hoE 'tst_[A-Za-z]+::[A-Za-z0-9_]+' -- src docs | sort -u)

# What docs/hosts.md shows of the small host.
# shellcheck disable=SC2016 # no command, the mark of an example
examples='/^```cpp/,/^```/{/^```/d; p}'
while read -r line; do
    grep -qF -- "$line" examples/host/main.cpp || complain "examples/host does not say: $line"
done < <(sed -n "$examples" docs/hosts.md)

# What administrators look up: every message of the plugin, every key, every column.
mapfile -t plugin < <(git ls-files --cached --others --exclude-standard 'src/*.cpp')
# look_up FILE: each line of the input must stand there as code.
look_up() {
    while read -r text; do
        grep -qF -- "\`$text" "$1" || complain "$1 lacks: $text"
    done < <(sort -u)
}
look_up docs/messages.md < <(
    tools/literals.pl 'qDebug|qInfo|qWarning|qCritical|reportSqlError' "${plugin[@]}"
)
look_up docs/administration.md < <(
    tools/literals.pl 'settings->value\(QStringLiteral' "${plugin[@]}"
    grep -oE '"[A-Z][A-Za-z]+"' src/export/exportline.cpp | tr -d '"'
)

exit "$failed"
