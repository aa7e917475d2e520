// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// How much a pass may change.
#include "host/rehearsal/limits.h"

#include "host/base/nearest.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Limits)
};

const int fewestPeople = 50; // below this a percent would be less than one person
const int hundredthsOfADay = 100;

const QString withoutBranch = QStringLiteral("without-branch");
const QString leaveDays = QStringLiteral("leave-days");
const QString leaveDaysEach = QStringLiteral("leave-days-each");
const QString reopenedDays = QStringLiteral("reopened-days");
const QString missing = QStringLiteral("missing");
const QString changedColumn = QStringLiteral("changed:");
const QString lost = QStringLiteral("lost");
const QString gained = QStringLiteral("gained");

/// How many people have another value in the column.
int changedPeople(const Changes &changes, const QString &column)
{
    return static_cast<int>(std::count_if(
        changes.people.cbegin(), changes.people.cend(), [&column](const ChangedPerson &person) {
            return std::any_of(
                person.fields.cbegin(), person.fields.cend(),
                [&column](const ChangedField &field) { return field.name == column; });
        }));
}

/// The largest correction of one person, in days.
double largestLeave(const Changes &changes)
{
    int largest = 0;
    for (const ChangedPerson &person : changes.people)
        largest = qMax(largest, std::abs(person.leave));
    return static_cast<double>(largest) / hundredthsOfADay;
}

double foundOf(const QString &kind, const Changes &changes)
{
    ChangeKind ofChanges = ChangeKind::Added;
    if (kindOfName(kind, &ofChanges))
        return static_cast<double>(changes.summary[ofChanges]);
    if (kind == withoutBranch)
        return changes.totals.withoutBranch;
    if (kind == leaveDays)
        return static_cast<double>(std::abs(changes.totals.leave)) / hundredthsOfADay;
    if (kind == leaveDaysEach)
        return largestLeave(changes);
    if (kind == reopenedDays)
        return static_cast<double>(changes.totals.reopenedDays);
    if (kind == missing)
        return qMax(changes.totals.missing, 0);
    return changedPeople(changes, kind.mid(changedColumn.size()));
}

/// With all of its digits: as an option, it is to be typed.
QString numberText(double number)
{
    return QString::number(number, 'g', 15);
}

bool isKind(const QString &kind)
{
    const bool isColumn = kind.startsWith(changedColumn) && kind.size() > changedColumn.size();
    return isColumn || limitKinds().contains(kind);
}

} // namespace

QStringList limitKinds()
{
    QStringList kinds;
    for (const ChangeKind kind : changeKinds())
        kinds.append(kindName(kind));
    return kinds << withoutBranch << leaveDays << leaveDaysEach << reopenedDays << missing << lost
                 << gained;
}

bool isOfExports(const QString &kind)
{
    return kind == lost || kind == gained;
}

Failure readLimit(const QString &text, Limit *limit)
{
    const int sign = text.lastIndexOf(QLatin1Char('='));
    const QString kind = text.left(qMax(sign, 0)).trimmed();
    QString number = text.mid(sign + 1).trimmed();
    if (sign < 0)
        return {ExitUsage,
                Text::tr("'%1' is no limit; write KIND=NUMBER or KIND=NUMBER%").arg(text)};
    if (!isKind(kind))
        return {ExitUsage,
                Text::tr("'%1' is no kind of change%2; there are: %3, changed:COLUMN")
                    .arg(kind, didYouMean(kind, limitKinds()),
                         limitKinds().join(QStringLiteral(", ")))};
    const bool isPercent = number.endsWith(QLatin1Char('%'));
    if (isPercent)
        number.chop(1);
    bool isNumber = false;
    const int value = number.trimmed().toInt(&isNumber);
    if (!isNumber || value < 0)
        return {ExitUsage,
                Text::tr("'%1' is no limit of '%2'; write a number, or one with %")
                    .arg(text.mid(sign + 1).trimmed(), kind)};
    if (isPercent && kind.startsWith(QLatin1String("leave-days")))
        return {ExitUsage, Text::tr("'%1' counts days, and takes no %").arg(kind)};
    *limit = {kind, value, isPercent};
    return {};
}

Failure checkColumns(const QVector<Limit> &limits, const QStringList &columnsOfPeople)
{
    for (const Limit &limit : limits) {
        const QString column = limit.kind.mid(changedColumn.size());
        if (limit.kind.startsWith(changedColumn) && !columnsOfPeople.contains(column))
            return {ExitUsage,
                    Text::tr("the limit '%1': the table people has no column '%2'%3")
                        .arg(limit.kind, column, didYouMean(column, columnsOfPeople))};
    }
    return {};
}

void setLimit(const Limit &limit, QVector<Limit> *limits)
{
    for (Limit &known : *limits) {
        if (known.kind == limit.kind) {
            known = limit;
            return;
        }
    }
    limits->append(limit);
}

QVector<Limit> standardLimits()
{
    return {{QStringLiteral("added"), 10, true},
            {QStringLiteral("revived"), 5, true},
            {QStringLiteral("updated"), 50, true},
            {QStringLiteral("ended"), 5, true},
            {QStringLiteral("moved"), 20, true},
            {QStringLiteral("supervisors"), 20, true},
            {QStringLiteral("dropped"), 2, true},
            {withoutBranch, 2, true},
            {missing, 5, true},
            {leaveDaysEach, 60, false},
            {QStringLiteral("changed:surname"), 5, true}};
}

std::optional<LimitOutcome> limitOutcome(const Limit &limit, double found, int people)
{
    if (!limit.isPercent)
        return LimitOutcome {limit, static_cast<double>(limit.number), found};
    if (people == 0)
        return {};
    return LimitOutcome {limit, std::floor(1.0 * qMax(people, fewestPeople) * limit.number / 100),
                         found};
}

QVector<LimitOutcome> limitOutcomes(const QVector<Limit> &limits, const Changes &changes)
{
    QVector<LimitOutcome> outcomes;
    for (const Limit &limit : limits) {
        if (isOfExports(limit.kind))
            continue;
        if (const auto outcome = limitOutcome(limit, foundOf(limit.kind, changes),
                                              changes.totals.activePeople))
            outcomes.append(*outcome);
    }
    return outcomes;
}

QString limitText(const Limit &limit)
{
    return limit.isPercent ? QStringLiteral("%1 %").arg(limit.number)
                           : QString::number(limit.number);
}

QString exceededWords(const LimitOutcome &outcome)
{
    return Text::tr("%1 (%2, limit %3)")
        .arg(outcome.limit.kind, numberText(outcome.found), numberText(outcome.allowed));
}

QString excessText(const LimitOutcome &outcome)
{
    const QString of = isOfExports(outcome.limit.kind) ? Text::tr("people of the last good export")
                                                       : Text::tr("active people");
    const QString allowed = outcome.limit.isPercent
        ? Text::tr("%1 (%2 of the %3)")
              .arg(numberText(outcome.allowed), limitText(outcome.limit), of)
        : numberText(outcome.allowed);
    return Text::tr("%1: %2, and the limit is %3")
        .arg(outcome.limit.kind, numberText(outcome.found), allowed);
}

QString exceededText(const LimitOutcome &outcome)
{
    return Text::tr("%1; to let it through this once: --allow %2=%3")
        .arg(excessText(outcome), outcome.limit.kind, numberText(std::ceil(outcome.found)));
}
