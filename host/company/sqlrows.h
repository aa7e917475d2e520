// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows of tables as SQL.
#pragma once

#include <QDate>
#include <QStringList>

/// Rows of one table, gathered to statements of some hundred each.
class SqlRows
{
public:
    /// The table with its columns: "people (uid, pid)".
    explicit SqlRows(const QString &intoTable) :
        table(intoTable)
    { }

    void add(const QStringList &values)
    {
        pending.append(QLatin1Char('(') + values.join(QStringLiteral(", ")) + QLatin1Char(')'));
        if (pending.size() == 500)
            flush();
    }

    /// All statements so far.
    QStringList take()
    {
        flush();
        return statements;
    }

private:
    void flush()
    {
        if (!pending.isEmpty())
            statements.append(QStringLiteral("INSERT INTO %1 VALUES\n").arg(table)
                              + pending.join(QStringLiteral(",\n")));
        pending.clear();
    }

    const QString table;
    QStringList pending;
    QStringList statements;
};

QString sqlNumber(qint64 value);

/// NULL for 0.
QString sqlNumberOrNull(uint value);

/// Between apostrophes, with those within doubled.
QString sqlText(QString text);

/// The first second of the day, in the time zone of the process.
qint64 midnight(const QDate &date);

/// That second; NULL for no date.
QString sqlMidnightOrNull(const QDate &date);

/// The day's month, such as 202611.
QString sqlMonth(const QDate &date);
