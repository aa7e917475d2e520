// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What has become of the steps of an undo.
#include "host/undo/undooutcome.h"

#include "host/copy/sqlnames.h"
#include "host/database/changetext.h"
#include "host/database/errortext.h"
#include "host/database/value.h"

#include <QCoreApplication>
#include <QSqlQuery>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoOutcome)
};

const int longestText = 60; // characters of a value, behind which it is cut

QString shortened(const QString &text)
{
    return text.size() > longestText ? text.left(longestText) + QChar(0x2026) : text;
}

/// Whether it is back; then for each cell whether it is as it was left, and what it holds.
QString question(const LeftRow &row)
{
    QStringList columns {QLatin1Char('(') + row.isBack + QLatin1Char(')')};
    for (const LeftCell &cell : row.cells)
        columns << cell.condition << quotedName(cell.column);
    return QStringLiteral("SELECT ") + columns.join(QStringLiteral(", ")) + QStringLiteral(" FROM ")
        + quotedName(row.table->name) + QStringLiteral(" WHERE ") + row.place;
}

/// "phone '05' -> '77'" for each cell that is not as it was left.
QStringList changedCells(const QSqlQuery &query, const LeftRow &row, const IdNames &names)
{
    QStringList texts;
    int place = 0;
    for (const LeftCell &cell : row.cells) {
        const bool isLeft = query.value(++place).toBool();
        const QVariant now = plainValue(query.value(++place));
        if (!isLeft)
            texts.append(QStringLiteral("%1 %2 -> %3")
                             .arg(cell.column, shortened(cell.text),
                                  shortened(cellText(*row.table, cell.column, now, names))));
    }
    return texts;
}

} // namespace

int leftAlone(const UndoOutcomes &outcomes)
{
    return static_cast<int>(
        std::count_if(outcomes.cbegin(), outcomes.cend(),
                      [](const UndoOutcome &outcome) { return outcome.isLeftAlone(); }));
}

int wereBack(const UndoOutcomes &outcomes)
{
    return static_cast<int>(
        std::count_if(outcomes.cbegin(), outcomes.cend(),
                      [](const UndoOutcome &outcome) { return outcome.isBack; }));
}

bool isAllBack(const UndoOutcomes &outcomes)
{
    return !outcomes.isEmpty() && wereBack(outcomes) == outcomes.size();
}

Failure askWhy(const QSqlDatabase &database, const UndoStep &step, const IdNames &names,
               UndoOutcome *outcome)
{
    const LeftRow &row = step.row;
    QSqlQuery query(database);
    if (!query.exec(question(row)))
        return {ExitDatabase,
                Text::tr("the database does not tell what has changed since: %1")
                    .arg(errorText(query.lastError()))};
    if (!query.next()) {
        outcome->isBack = row.hasCome;
        outcome->since = Text::tr("it is gone");
        return {};
    }
    outcome->isBack = query.value(0).toBool();
    const QStringList cells = changedCells(query, row, names);
    outcome->since = cells.isEmpty() ? row.otherwise : cells.join(QStringLiteral(", "));
    return {};
}
