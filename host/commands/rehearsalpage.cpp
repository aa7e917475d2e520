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

/// The value for one bar, with its limit if there is one.
QVariantHash barValues(const QString &name, double count, double most, const LimitOutcome *limit)
{
    QVariantHash value {{key("name"), name},
                        {key("count"), count},
                        {key("share"), static_cast<int>(100 * count / most)}};
    if (limit) {
        value.insert(key("limit"), limit->allowed);
        value.insert(key("exceeded"), limit->isExceeded());
    }
    return value;
}

/// A bar for each kind that occurs or is limited, as long as its share of the most frequent one;
/// then for each limit of something else.
QVariantList kindValues(const Changes &changes)
{
    qint64 most = 1;
    QHash<QString, const LimitOutcome *> limits;
    for (const LimitOutcome &outcome : changes.rehearsal.limits)
        limits.insert(outcome.limit.kind, &outcome);
    for (const ChangeKind kind : changeKinds())
        most = qMax(most, changes.summary[kind]);
    QVariantList values;
    for (const ChangeKind kind : changeKinds()) {
        const qint64 count = changes.summary[kind];
        const LimitOutcome *const limit = limits.take(kindName(kind));
        if (count != 0 || limit)
            values.append(barValues(kindName(kind), static_cast<double>(count),
                                    static_cast<double>(most), limit));
    }
    for (const LimitOutcome &outcome : changes.rehearsal.limits) {
        const double whole = qMax(outcome.allowed, outcome.found);
        if (limits.contains(outcome.limit.kind))
            values.append(barValues(outcome.limit.kind, outcome.found, qMax(whole, 1.0), &outcome));
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
            {key("people"), people},
            {key("silent"), changes.people.size() - people.size()}};
}
