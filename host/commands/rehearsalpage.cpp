// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A rehearsal as a page for a browser.
#include "host/commands/rehearsalpage.h"

#include "host/changes/changestext.h"
#include "host/database/changetext.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RehearsalPage)
};

QString key(const char *name)
{
    return QLatin1String(name);
}

/// A bar for each kind that occurs, as long as the most frequent one allows, with its limit.
QVariantList kindValues(const Changes &changes, const QVector<LimitOutcome> &limits)
{
    qint64 most = 1;
    for (const ChangeKind kind : changeKinds())
        most = qMax(most, changes.summary[kind]);
    QVariantList values;
    for (const ChangeKind kind : changeKinds()) {
        const qint64 count = changes.summary[kind];
        const auto limit = std::find_if(
            limits.cbegin(), limits.cend(),
            [kind](const LimitOutcome &outcome) { return outcome.limit.kind == kindName(kind); });
        if (count == 0 && limit == limits.cend())
            continue;
        QVariantHash value {{key("name"), kindName(kind)},
                            {key("count"), count},
                            {key("share"), 100 * count / most}};
        if (limit != limits.cend()) {
            value.insert(key("limit"), limit->allowed);
            value.insert(key("exceeded"), limit->isExceeded());
        }
        values.append(value);
    }
    return values;
}

QVariantHash personValues(const ChangedPerson &person, const IdNames &names)
{
    QStringList rows;
    const QVector<PersonChanges> texts = changeTexts(person.rows, names);
    for (const PersonChanges &text : texts)
        rows += text.lines;
    QStringList kinds;
    for (const ChangeKind kind : changeKinds()) {
        if (person.kinds.has(kind))
            kinds.append(kindName(kind));
    }
    return {{key("number"), person.person.pamId},
            {key("name"), person.person.name},
            {key("kinds"), kinds.join(QStringLiteral(", "))},
            {key("words"), QVariant(personWords(person, names)).toList()},
            {key("rows"), rows.join(QLatin1Char('\n'))},
            {key("marked"), !person.notDone.isEmpty() || !person.messages.isEmpty()}};
}

} // namespace

QVariantHash rehearsalHtmlValues(const Changes &changes, const QVector<LimitOutcome> &limits,
                                 const CopyFacts &copied)
{
    QVariantList exceeded;
    for (const LimitOutcome &outcome : limits) {
        if (outcome.isExceeded())
            exceeded.append(exceededText(outcome));
    }
    QVariantList people;
    const QVector<int> places = worstFirst(changes);
    for (const int place : places)
        people.append(personValues(changes.people.at(place), changes.names));
    const qint64 errors = changes.summary[ChangeKind::Errors];
    const QString verdict = !exceeded.isEmpty()
        ? Text::tr("Refused: the pass would change more than the limits allow.")
        : errors > 0 ? Text::tr("The pass would have errors.")
                     : Text::tr("The pass would keep to the limits.");
    return {{key("title"), Text::tr("What the next pass would change")},
            {key("severity"), key(!exceeded.isEmpty() || errors > 0 ? "error" : "good")},
            {key("verdict"), verdict},
            {key("export"), changes.header.exported.name},
            {key("when"), changes.header.when.toString(Qt::ISODate)},
            {key("forced"), changes.header.forced},
            {key("plan"), changes.plan.hash},
            {key("exceeded"), exceeded},
            {key("notes"), QVariant(copied.warnings + copied.leftOut).toList()},
            {key("kinds"), kindValues(changes, limits)},
            {key("people"), people}};
}
