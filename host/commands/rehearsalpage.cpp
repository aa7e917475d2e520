// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A rehearsal as a page for a browser.
#include "host/commands/rehearsalpage.h"

#include "host/base/zonedtext.h"
#include "host/changes/changeshtml.h"
#include "host/rehearsal/limits.h"
#include "host/rehearsal/verdict.h"

#include <QCoreApplication>
#include <QHash>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalPage)
};

QString key(const char *name)
{
    return QLatin1String(name);
}

/// How long a bar is, in percent: the share of the limit; without one, of the people. What there
/// is more of fills it as well.
int shareOf(double count, double whole)
{
    if (whole <= 0)
        return count > 0 ? 100 : 0;
    return static_cast<int>(qMin(100 * count / whole, 100.0));
}

QVariantHash limitedValues(const QString &name, const LimitOutcome &limit)
{
    return {{key("name"), name},
            {key("count"), limit.found},
            {key("share"), shareOf(limit.found, limit.allowed)},
            {key("limit"), limit.allowed},
            {key("exceeded"), limit.isExceeded()}};
}

QVariantHash unlimitedValues(const QString &name, qint64 count, int people)
{
    return {{key("name"), name},
            {key("count"), count},
            {key("share"), shareOf(static_cast<double>(count), people)}};
}

/// A bar for each kind that occurs or is limited; then for each limit of something else.
QVariantList kindValues(const Changes &changes)
{
    QHash<QString, const LimitOutcome *> limits;
    for (const LimitOutcome &outcome : changes.rehearsal.limits)
        limits.insert(outcome.limit.kind, &outcome);
    QVariantList values;
    for (const ChangeKind kind : changeKinds()) {
        const QString name = kindName(kind);
        if (const LimitOutcome *const limit = limits.take(name))
            values.append(limitedValues(name, *limit));
        else if (changes.summary[kind] != 0)
            values.append(
                unlimitedValues(name, changes.summary[kind], changes.totals.activePeople));
    }
    for (const LimitOutcome &outcome : changes.rehearsal.limits) {
        if (limits.contains(outcome.limit.kind))
            values.append(limitedValues(outcome.limit.kind, outcome));
    }
    return values;
}

QString serverOf(const ChangesHeader &header)
{
    if (header.after.isEmpty())
        return Text::tr("freshly started server");
    if (header.after.size() == 1)
        return Text::tr("server that has taken one export");
    return Text::tr("server that has taken %1 exports").arg(header.after.size());
}

} // namespace

QVariantHash rehearsalHtmlValues(const Changes &changes)
{
    QVariantList exceeded;
    const QVector<LimitOutcome> limits = exceededLimits(changes);
    for (const LimitOutcome &outcome : limits)
        exceeded.append(exceededText(outcome));
    QStringList notes = changes.rehearsal.warnings + changes.rehearsal.leftOut;
    for (const Finding &finding : changes.rehearsal.findings)
        notes.append(codedLine(finding));
    const QVariantList people = peopleHtmlValues(changes);
    const bool isGood = verdictCode(changes, false) == ExitClean;
    return {{key("title"), Text::tr("What the next pass would change")},
            {key("severity"), key(isGood ? "good" : "error")},
            {key("verdict"), verdictText(changes)},
            {key("export"), changes.header.exported.name},
            {key("when"), zonedText(changes.header.when)},
            {key("forced"), changes.header.forced},
            {key("server"), serverOf(changes.header)},
            {key("plan"), exceeded.isEmpty() ? changes.plan.hash : QString()},
            {key("exceeded"), exceeded},
            {key("notes"), QVariant(notes).toList()},
            {key("kinds"), kindValues(changes)},
            {key("activePeople"), changes.totals.activePeople},
            {key("people"), people},
            {key("silent"), changes.people.size() - people.size()}};
}
