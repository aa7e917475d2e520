// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal comes to.
#include "host/rehearsal/verdict.h"

#include "host/changes/changestext.h"
#include "host/rehearsal/limits.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Verdict)
};

bool isChanging(const Changes &changes)
{
    return !changes.people.isEmpty() || !changes.others.isEmpty();
}

qint64 errorsIn(const Changes &changes)
{
    return changes.summary[ChangeKind::Errors];
}

QString numbers(const Changes &changes)
{
    return Text::tr("people who change: %1, errors: %2")
        .arg(tellingPeople(changes))
        .arg(errorsIn(changes));
}

} // namespace

QVector<LimitOutcome> exceededLimits(const Changes &changes)
{
    QVector<LimitOutcome> exceeded;
    std::copy_if(changes.rehearsal.limits.cbegin(), changes.rehearsal.limits.cend(),
                 std::back_inserter(exceeded),
                 [](const LimitOutcome &outcome) { return outcome.isExceeded(); });
    return exceeded;
}

bool isExportUseless(const Changes &changes)
{
    const QVector<Finding> &findings = changes.rehearsal.findings;
    return std::any_of(findings.cbegin(), findings.cend(), [](const Finding &finding) {
        return finding.code == QLatin1String("E-FILE-NOTHING");
    });
}

int tellingPeople(const Changes &changes)
{
    return static_cast<int>(
        std::count_if(changes.people.cbegin(), changes.people.cend(), isWorthTelling));
}

QString verdictText(const Changes &changes)
{
    if (!exceededLimits(changes).isEmpty())
        return Text::tr("Refused: the pass would go beyond the limits.");
    if (errorsIn(changes) > 0)
        return Text::tr("The pass would have errors.");
    if (isExportUseless(changes))
        return Text::tr("The export has no usable line.");
    return isChanging(changes) ? Text::tr("The pass would keep to the limits.")
                               : Text::tr("Nothing would change.");
}

QString verdictLine(const Changes &changes)
{
    QStringList exceeded;
    const QVector<LimitOutcome> limits = exceededLimits(changes);
    for (const LimitOutcome &outcome : limits)
        exceeded.append(exceededWords(outcome));
    // Without the plan, which would let the pass through.
    if (!exceeded.isEmpty())
        return Text::tr("Refused, limits exceeded: %1; %2")
            .arg(exceeded.join(QStringLiteral(", ")), numbers(changes));
    const QString counts = Text::tr("%1, plan: %2").arg(numbers(changes), changes.plan.hash);
    if (errorsIn(changes) > 0)
        return Text::tr("The pass has errors; %1").arg(counts);
    if (isExportUseless(changes))
        return Text::tr("The export has no usable line; %1").arg(counts);
    return isChanging(changes) ? Text::tr("Within the limits; %1").arg(counts)
                               : Text::tr("Nothing would change; %1").arg(counts);
}

ExitCode verdictCode(const Changes &changes, bool tellsChanges)
{
    if (!exceededLimits(changes).isEmpty())
        return ExitRefused;
    if (errorsIn(changes) > 0 || isExportUseless(changes))
        return ExitErrors;
    return isChanging(changes) && tellsChanges ? ExitChanged : ExitClean;
}
