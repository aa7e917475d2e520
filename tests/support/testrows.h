// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows that several test functions share: the values of a table.
#pragma once

#include <QtTest>
#include <QVector>

/// Adds one row for each value of a table, called by the value's member `name`.
template <typename Value>
void addRows(const QVector<Value> &table)
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < table.size(); ++i)
        QTest::newRow(table.at(i).name) << i;
}

/// The value that the current row stands for, of the table that addRows() was given.
template <typename Value>
const Value &currentRow(const QVector<Value> &table)
{
    QFETCH(int, index);
    return table.at(index);
}
