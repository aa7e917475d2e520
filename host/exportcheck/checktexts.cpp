// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts that both pages of a check have.
#include "host/exportcheck/checktexts.h"

#include "host/exportcheck/cellform.h"

#include <QCoreApplication>
#include <QLocale>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CheckTexts)
};

const int shownLines = 10;

} // namespace

QString groupedNumber(int number)
{
    return QLocale(QLocale::English).toString(number);
}

int cellStart(const QString &line, int column)
{
    int start = 0;
    for (int i = 1; i < column; ++i)
        start = line.indexOf(QLatin1Char('|'), start) + 1;
    return start;
}

QString placeText(const ExportFinding &found)
{
    if (found.line == 0)
        return QString();
    if (found.lines.size() < 2)
        return Text::tr("line %1: ").arg(found.line);
    QStringList numbers;
    for (const int line : found.lines.mid(0, shownLines))
        numbers.append(QString::number(line));
    const QString more = found.lines.size() > shownLines ? QStringLiteral(", …") : QString();
    return Text::tr("lines %1%2: ").arg(numbers.join(QStringLiteral(", ")), more);
}

bool haveOneEffect(const CheckOutcome &outcome, const FindingGroup &group, int count)
{
    const auto effect = [&outcome](int place) {
        return told(outcome.findings.at(place), outcome.texts).becomes;
    };
    const QString first = effect(group.places.constFirst());
    return std::all_of(group.places.cbegin(), group.places.cbegin() + count,
                       [&](int place) { return effect(place) == first; });
}

QString comparisonText(const CheckOutcome &outcome)
{
    if (!outcome.comparison)
        return QString();
    const ExportComparison &compared = *outcome.comparison;
    QStringList changes;
    for (int column = 0; column < exportColumnCount; ++column) {
        const int changed = compared.columns[static_cast<size_t>(column)].changed;
        if (changed > 0)
            changes.append(
                QStringLiteral("%1 %2").arg(exportColumn(column), groupedNumber(changed)));
    }
    const QString text = Text::tr("Against %1: people gained: %2, lost: %3, changed: %4")
                             .arg(outcome.otherFile, groupedNumber(compared.gained),
                                  groupedNumber(compared.lost), groupedNumber(compared.changed));
    return changes.isEmpty()
        ? text + QLatin1Char('.')
        : QStringLiteral("%1 (%2).").arg(text, changes.join(QStringLiteral(", ")));
}

QString databaseText(const CheckOutcome &outcome)
{
    if (!outcome.database)
        return QString();
    const DatabaseCounts &people = *outcome.database;
    return Text::tr(
               "Against the database: people who are new: %1, come back: %2, differ: %3 (get a "
               "last day: %4), are the same: %5, have ended and are not there: %6.")
        .arg(groupedNumber(people.added), groupedNumber(people.revived),
             groupedNumber(people.updated), groupedNumber(people.ended), groupedNumber(people.same),
             groupedNumber(people.leftOut));
}

QVector<int> linesOfFindings(const CheckOutcome &outcome, int count)
{
    QVector<int> numbers;
    const QVector<FindingGroup> groups = groupsOf(outcome.findings);
    for (const FindingGroup &group : groups) {
        for (const int place : group.places.mid(0, count)) {
            const ExportFinding &found = outcome.findings.at(place);
            if (found.line != 0 && found.column != 0)
                numbers.append(found.line);
        }
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}
