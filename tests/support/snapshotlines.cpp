// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows of a snapshot as lines to compare.
#include "support/snapshotlines.h"

#include "host/database/changetext.h"

#include <QtTest>

QStringList cellLines(const Snapshot &snapshot, const QString &table, const QStringList &columns)
{
    const TableContent *content = snapshot.find(table);
    const QVector<int> places = content ? placesOf(columns, *content) : QVector<int>();
    if (places.size() != columns.size()) {
        QTest::qFail(qPrintable(QStringLiteral("no such columns in a table ") + table), __FILE__,
                     __LINE__);
        return {};
    }
    QStringList lines;
    for (const TableRow &row : content->rows) {
        QStringList cells;
        for (int i = 0; i < columns.size(); ++i)
            cells.append(cellText(*content->table, columns.at(i), row.at(places.at(i))));
        lines.append(cells.join(QLatin1Char('|')));
    }
    return lines;
}
