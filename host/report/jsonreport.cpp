// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A report for machines.
#include "host/report/jsonreport.h"

#include "host/report/report.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace {

JsonMembers membersOf(const QVector<Figure> &figures)
{
    JsonMembers members;
    for (const Figure &figure : figures)
        members.append({figure.name, jsonValue(figure.value)});
    return members;
}

/// The names of the columns, each with what stands before its value.
QVector<QByteArray> openingsOf(const Table &table)
{
    QVector<QByteArray> openings;
    for (const Column &column : table.columns)
        openings.append((openings.isEmpty() ? "{" : ",") + jsonValue(column.name) + ':');
    return openings;
}

void writeRow(const QVector<QByteArray> &openings, const QVariantList &row,
              const QByteArray &separator, const ByteSink &sink)
{
    QByteArray text = separator;
    for (int i = 0; i < openings.size(); ++i)
        text += openings.at(i) + jsonValue(row.value(i));
    sink(text + '}');
}

void writeRows(const Table &table, const ByteSink &sink)
{
    const QVector<QByteArray> openings = openingsOf(table);
    QByteArray separator = "[";
    for (const QVariantList &row : table.rows) {
        writeRow(openings, row, separator, sink);
        separator = ",";
    }
    QVariantList row;
    while (table.nextRow && table.nextRow(&row)) {
        writeRow(openings, row, separator, sink);
        separator = ",";
    }
    sink(separator == "[" ? "[]" : "]");
}

/// A number, a text without anything to be escaped, which most values are, or a list; empty for
/// others.
QByteArray plainValue(const QVariant &value)
{
    if (!value.isValid())
        return "null";
    if (value.userType() == QMetaType::Int)
        return QByteArray::number(value.toInt());
    if (value.userType() == QMetaType::QVariantList) {
        QByteArray items;
        for (const QVariant &item : value.toList())
            items += (items.isEmpty() ? "" : ",") + jsonValue(item);
        return '[' + items + ']';
    }
    if (value.userType() != QMetaType::QString)
        return QByteArray();
    const QString text = value.toString();
    const bool isPlain = std::all_of(text.cbegin(), text.cend(), [](QChar letter) {
        return letter >= QLatin1Char(' ') && letter != QLatin1Char('"')
            && letter != QLatin1Char('\\') && letter.unicode() != 0x7f && !letter.isSurrogate();
    });
    return isPlain ? '"' + text.toUtf8() + '"' : QByteArray();
}

} // namespace

QByteArray jsonValue(const QVariant &value)
{
    const QByteArray plain = plainValue(value);
    if (!plain.isEmpty())
        return plain;
    const QJsonArray array {QJsonValue::fromVariant(value)};
    const QByteArray text = QJsonDocument(array).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2); // without the array's brackets
}

QByteArray jsonObject(const JsonMembers &members)
{
    QByteArray object;
    for (const auto &member : members)
        object += (object.isEmpty() ? "" : ",") + jsonValue(member.first) + ':' + member.second;
    return '{' + object + '}';
}

void writeJsonReport(const Report &report, const ByteSink &sink)
{
    QByteArray separator = "{";
    const auto begin = [&](const QString &name) {
        sink(separator + jsonValue(name) + ':');
        separator = ",";
    };
    const auto writeMembers = [&](const JsonMembers &members) {
        for (const auto &member : members) {
            begin(member.first);
            sink(member.second);
        }
    };
    if (!report.format.isEmpty())
        writeMembers({{QStringLiteral("format"), jsonValue(report.format)}});
    for (const Section &section : report.sections) {
        if (section.name.isEmpty()) {
            writeMembers(membersOf(section.figures));
            continue;
        }
        begin(section.name);
        if (section.table.columns.isEmpty())
            sink(jsonObject(membersOf(section.figures)));
        else
            writeRows(section.table, sink);
    }
    sink(separator == "{" ? "{}" : "}");
}

QByteArray jsonReport(const Report &report)
{
    QByteArray text;
    writeJsonReport(report, [&text](const QByteArray &bytes) { text += bytes; });
    return text;
}
