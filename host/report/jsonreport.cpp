// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A report for machines.
#include "host/report/jsonreport.h"

#include "host/report/report.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace {

JsonMembers membersOf(const QVector<Figure> &figures)
{
    JsonMembers members;
    for (const Figure &figure : figures)
        members.append({figure.name, jsonValue(figure.value)});
    return members;
}

QByteArray rowsOf(const Table &table)
{
    QByteArray rows;
    for (const QVariantList &row : table.rows) {
        JsonMembers members;
        for (int i = 0; i < table.columns.size(); ++i)
            members.append({table.columns.at(i).name, jsonValue(row.value(i))});
        rows += (rows.isEmpty() ? "" : ",") + jsonObject(members);
    }
    return '[' + rows + ']';
}

} // namespace

QByteArray jsonValue(const QVariant &value)
{
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

QByteArray jsonReport(const Report &report)
{
    JsonMembers members;
    if (!report.format.isEmpty())
        members.append({QStringLiteral("format"), jsonValue(report.format)});
    for (const Section &section : report.sections) {
        if (section.name.isEmpty())
            members += membersOf(section.figures);
        else if (section.table.columns.isEmpty())
            members.append({section.name, jsonObject(membersOf(section.figures))});
        else
            members.append({section.name, rowsOf(section.table)});
    }
    return jsonObject(members);
}
