// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A trial of texts as a finding.
#include "host/exportcheck/trialfinding.h"

#include "export/exportline.h"
#include "host/exportcheck/cellform.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(TrialFinding)
};

const char *trialCode(TextEffect effect, const QString &text)
{
    switch (effect) {
    case TextEffect::RunsElse:
        return "E-TEXT-RUNS";
    case TextEffect::Fails:
        return "E-TEXT-FAILS";
    default:
        return text.contains(QLatin1Char('%')) ? "W-TEXT-MARKER" : "W-TEXT-OTHER";
    }
}

/// An update that has lost its condition is worth a word.
QString withoutCondition(const QString &runs)
{
    const bool isLost = runs.startsWith(QLatin1String("UPDATE "))
        && !runs.contains(QLatin1String(" WHERE "));
    return isLost ? Text::tr("%1 (without WHERE: it changes every row of the table)").arg(runs)
                  : runs;
}

/// Under which SQL mode the text has its effect; empty if under both.
QString modeOf(const TextTrial &trial)
{
    if (trial.onlyWithBackslashEscapes)
        return Text::tr(" unless sql_mode has NO_BACKSLASH_ESCAPES");
    return trial.onlyWithoutBackslashEscapes ? Text::tr(" where sql_mode has NO_BACKSLASH_ESCAPES")
                                             : QString();
}

} // namespace

ExportFinding findingOf(const TextTrial &trial, const ExportLine &line, int lineNumber)
{
    const QString text = line.cells[static_cast<size_t>(trial.column - 1)].toString();
    return {&findingKind(trialCode(trial.effect, text)),
            lineNumber,
            trial.column,
            {exportColumn(trial.column - 1), text, withoutCondition(trial.becomes), modeOf(trial)},
            {}};
}
