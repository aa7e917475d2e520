// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A snapshot of a test's own.
#include "support/snapshotbuilder.h"

namespace {

QVariant cell(const QString &text)
{
    bool isNumber = false;
    const qlonglong number = text.toLongLong(&isNumber);
    if (isNumber)
        return number;
    return text == QLatin1String("NULL") ? QVariant() : QVariant(text);
}

} // namespace

SnapshotBuilder::SnapshotBuilder()
{
    for (const TouchedTable &table : touchedTables())
        snapshot.tables.append({&table, table.key, {}});
}

SnapshotBuilder &SnapshotBuilder::with(const char *table, std::initializer_list<const char *> rows)
{
    QStringList texts;
    for (const char *row : rows)
        texts.append(QString::fromUtf8(row));
    return with(QString::fromUtf8(table), texts);
}

SnapshotBuilder &SnapshotBuilder::with(const QString &table, const QStringList &rows)
{
    const QStringList parts = table.split(QStringLiteral(": "));
    for (TableContent &content : snapshot.tables) {
        if (content.table->name != parts.first())
            continue;
        content.columns = parts.last().split(QLatin1Char('|'));
        for (const QString &text : rows) {
            TableRow row;
            const QStringList cells = text.split(QLatin1Char('|'));
            for (const QString &one : cells)
                row.append(cell(one));
            content.rows.append(row);
        }
        sortByKey(&content);
        return *this;
    }
    qFatal("no pass touches the table %s", qPrintable(table));
}

SnapshotBuilder &SnapshotBuilder::named(const char *column, qlonglong id, const char *name)
{
    snapshot.names[QString::fromLatin1(column)].insert(id, QString::fromUtf8(name));
    return *this;
}
