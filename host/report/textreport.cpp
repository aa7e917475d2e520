// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A report for people.
#include "host/report/textreport.h"

#include "host/base/oneline.h"
#include "host/report/report.h"

#include <QStringList>

namespace {

const int gap = 2; // blanks between columns

QString padded(const QString &text, int width)
{
    return text.leftJustified(width);
}

QString shownValue(const QVariant &value)
{
    return oneLine(value.toString());
}

/// Labels on the left, values on the right.
QString figureLines(const QVector<Figure> &figures, int width)
{
    int column = 0;
    for (const Figure &figure : figures)
        column = qMax(column, figure.label.size() + gap);
    QString text;
    for (const Figure &figure : figures) {
        if (figure.label.isEmpty())
            continue;
        const QString shown = figure.shown.isNull() ? shownValue(figure.value)
                                                    : oneLine(figure.shown);
        text += padded(figure.label, column) + wrapped(shown, width - column, column)
            + QLatin1Char('\n');
    }
    return text;
}

/// The cells of each row as text, the headings first.
QVector<QStringList> shownRows(const Table &table)
{
    QVector<QStringList> rows(1);
    for (const Column &column : table.columns)
        rows[0].append(column.heading);
    for (const QVariantList &values : table.rows) {
        QStringList row;
        for (int i = 0; i < table.columns.size(); ++i)
            row.append(shownValue(values.value(i)));
        rows.append(row);
    }
    return rows;
}

/// Columns as wide as what stands in them; the last one is wrapped.
QString tableLines(const Table &table, int width)
{
    const QVector<QStringList> rows = shownRows(table);
    QVector<int> widths(table.columns.size());
    for (const QStringList &row : rows) {
        for (int i = 0; i < row.size(); ++i)
            widths[i] = qMax(widths.at(i), row.at(i).size() + gap);
    }
    int last = 0;
    for (int i = 0; i + 1 < widths.size(); ++i)
        last += widths.at(i);

    QString text;
    for (const QStringList &row : rows) {
        for (int i = 0; i + 1 < row.size(); ++i)
            text += padded(row.at(i), widths.at(i));
        text += wrapped(row.constLast(), qMax(width - last, width / 3), last);
        while (text.endsWith(QLatin1Char(' ')))
            text.chop(1);
        text += QLatin1Char('\n');
    }
    return text;
}

} // namespace

QString textReport(const Report &report, int width)
{
    QStringList parts;
    for (const Section &section : report.sections) {
        QString part;
        if (!section.title.isEmpty())
            part += section.title + QLatin1Char('\n');
        part += section.table.columns.isEmpty() ? figureLines(section.figures, width)
                                                : tableLines(section.table, width);
        if (!part.isEmpty())
            parts.append(part);
    }
    if (!report.verdict.text.isEmpty())
        parts.append(wrapped(report.verdict.text, width, 0) + QLatin1Char('\n'));
    return parts.join(QLatin1Char('\n'));
}

QString wrapped(const QString &text, int width, int indent)
{
    return wrapped(text.split(QLatin1Char(' ')), width, indent);
}

QString wrapped(const QStringList &words, int width, int indent)
{
    QString result;
    int used = 0;
    for (const QString &word : words) {
        if (used > 0 && used + 1 + word.size() > width) {
            result += QLatin1Char('\n') + QString(indent, QLatin1Char(' '));
            used = 0;
        } else if (used > 0) {
            result += QLatin1Char(' ');
            ++used;
        }
        result += word;
        used += word.size();
    }
    return result;
}
