// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a command has found out, as a value: writers turn it into text or JSON.
#pragma once

#include "host/base/failure.h"

#include <QString>
#include <QVariant>
#include <QVector>

#include <functional>

/// One fact of a report.
struct Figure
{
    QString name; ///< for machines
    QString label; ///< for people; empty: only machines are told
    QVariant value;
    QString shown; ///< for people, where the value itself does not read well
};

struct Column
{
    QString name; ///< for machines
    QString heading; ///< for people
};

/// Rows of one shape. A row has a value for each column.
struct Table
{
    QVector<Column> columns;
    QVector<QVariantList> rows;
    /// Gives the rows one by one where there may be millions, in place of `rows`: false behind the
    /// last one. Only for machines, and only once. May be null.
    std::function<bool(QVariantList *row)> nextRow = {};
};

/// Figures, or a table.
struct Section
{
    QString name; ///< for machines; the figures of a section without a name stand in the open
    QString title; ///< for people; may be empty
    QVector<Figure> figures;
    Table table;
};

/// For machines: nothing where there is no text.
inline QVariant textOrNull(const QString &text)
{
    return text.isEmpty() ? QVariant() : QVariant(text);
}

/// What it all comes to.
struct Verdict
{
    ExitCode exitCode = ExitClean;
    QString text; ///< a line; empty if the report speaks for itself
};

/// The whole of what a command tells on standard output, or of a run's last line.
struct Report
{
    QString format; ///< "talvenhr.NAME/VERSION", which tells machines what to expect; may be empty
    QVector<Section> sections;
    Verdict verdict;
};
