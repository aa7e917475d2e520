// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export mended, and what differs.
#include "support/gate/mendtrial.h"

#include "host/company/exportwriter.h"

#include <QBuffer>
#include <QDate>

namespace {

/// A cell with the column's name, if there is one for each.
MendedCell cellAt(int lineNumber, const QList<QByteArray> &cells, int column)
{
    MendedCell cell;
    cell.line = lineNumber;
    if (cells.size() == 18)
        cell.column = QString::fromLatin1(headerLine().split('|').at(column));
    return cell;
}

} // namespace

QByteArray mended(QByteArray content, const MendWishes &wishes, QVector<MendedCell> *cells)
{
    QBuffer source(&content);
    source.open(QIODevice::ReadOnly);
    QByteArray written;
    QBuffer target(&written);
    target.open(QIODevice::WriteOnly);
    QVector<MendedCell> dropped;
    const Failure failure = mendExport(&source, &target, wishes, cells ? cells : &dropped);
    return failure ? failure.text.toUtf8() : written;
}

MendWishes encodingOnly(const QString &name)
{
    MendWishes wishes;
    wishes.encoding = name;
    return wishes;
}

QByteArray companyExport(quint32 seed)
{
    CompanyPlan plan;
    plan.people = 40 + static_cast<int>(seed % 60);
    plan.seed = seed;
    plan.day = QDate(2026, 3, 17);
    return exportText(generatedCompany(plan));
}

QVector<MendedCell> differences(const QByteArray &before, const QByteArray &after)
{
    QVector<MendedCell> found;
    const QList<QByteArray> old = before.split('\n');
    const QList<QByteArray> now = after.split('\n');
    for (int i = 0; i < qMax(old.size(), now.size()); ++i) {
        const QList<QByteArray> oldCells = old.value(i).split('|');
        const QList<QByteArray> cells = now.value(i).split('|');
        for (int column = 0; column < qMax(oldCells.size(), cells.size()); ++column) {
            if (oldCells.value(column) == cells.value(column))
                continue;
            MendedCell cell = cellAt(i + 1, oldCells, column);
            cell.before = QString::fromUtf8(oldCells.value(column));
            cell.after = QString::fromUtf8(cells.value(column));
            found.append(cell);
        }
    }
    return found;
}

QStringList sorted(const QVector<MendedCell> &cells)
{
    QStringList texts;
    for (const MendedCell &cell : cells) {
        if (cell.line != 0)
            texts.append(
                QStringLiteral("%1 %2: %3 > %4")
                    .arg(QString::number(cell.line), cell.column, cell.before, cell.after));
    }
    texts.sort();
    return texts;
}
