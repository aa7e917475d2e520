// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The file of changes, "talvenhr.changes/1": writing it.
#include "host/changes/changesjson.h"

#include "host/base/ownerfile.h"
#include "host/changes/headerjson.h"
#include "host/changes/rehearsaljson.h"

#include <QHash>
#include <QIODevice>

#include <algorithm>

namespace {

const int partSize = 1 << 16; // bytes that are handed on at a time

/// A cell: null, a number, a text; bytes as an object, for a text could say the same.
QByteArray cellValue(const QVariant &cell)
{
    switch (cell.userType()) {
    case QMetaType::UnknownType:
        return "null";
    case QMetaType::LongLong:
        return QByteArray::number(cell.toLongLong());
    case QMetaType::ULongLong:
        return QByteArray::number(cell.toULongLong());
    case QMetaType::Double:
        return QByteArray::number(cell.toDouble(), 'g', 17);
    case QMetaType::QByteArray:
        return R"({"base64":")" + cell.toByteArray().toBase64() + R"("})";
    default:
        return jsonValue(cell.toString());
    }
}

/// How the rows of one table are written.
struct TableForm
{
    QByteArray name;
    QStringList columns;
    QVector<QByteArray> columnNames; ///< with the colon behind them
    QVector<int> key;
};

TableForm formOf(const Change &change)
{
    TableForm form {jsonValue(change.table->name), change.columns, {}, {}};
    for (const QString &column : change.columns)
        form.columnNames.append(jsonValue(column) + ':');
    for (const QString &column : change.table->key) {
        const int place = change.columns.indexOf(column);
        if (place >= 0)
            form.key.append(place);
    }
    return form;
}

/// Writes parts of a document, and hands them on when there is enough.
class ChangesWriter
{
public:
    ChangesWriter(const Changes &allChanges, const ByteSink &byteSink) :
        changes(allChanges),
        sink(byteSink)
    { }

    void write()
    {
        buffer = R"({"format":"talvenhr.changes/1","header":)" + headerJson(changes.header);
        buffer += R"(,"summary":)" + summary() + R"(,"totals":)" + totals();
        buffer += R"(,"plan":)"
            + jsonObject({{QStringLiteral("read"), jsonText(changes.plan.read)},
                          {QStringLiteral("change"), jsonText(changes.plan.change)},
                          {QStringLiteral("hash"), jsonText(changes.plan.hash)}});
        buffer += R"(,"tables":)" + tables() + R"(,"names":)" + names() + R"(,"people":)";
        list(changes.people, [this](const ChangedPerson &person) { write(person); });
        buffer += R"(,"others":)";
        list(changes.others, [this](const Change &change) { writeRow(change); });
        buffer += R"(,"messages":)";
        list(changes.messages, [this](const PassMessage &message) { write(message); });
        buffer += R"(,"rehearsal":)";
        buffer += changes.header.how == ChangesHeader::Rehearsed ? rehearsalJson(changes.rehearsal)
                                                                 : QByteArrayLiteral("null");
        buffer += "}\n";
        sink(buffer);
    }

private:
    template <typename List, typename Write>
    void list(const List &values, Write writeOne)
    {
        char separator = '[';
        for (const auto &value : values) {
            buffer += separator;
            separator = ',';
            writeOne(value);
            if (buffer.size() >= partSize) {
                sink(buffer);
                buffer.clear();
            }
        }
        buffer += separator == '[' ? "[]" : "]";
    }

    QByteArray summary() const
    {
        JsonMembers members;
        for (const ChangeKind kind : changeKinds())
            members.append({kindName(kind), QByteArray::number(changes.summary[kind])});
        return jsonObject(members);
    }

    QByteArray totals() const
    {
        const ChangeTotals &totals = changes.totals;
        const auto orNull = [](int number) {
            return number < 0 ? QByteArrayLiteral("null") : jsonValue(number);
        };
        return jsonObject(
            {{QStringLiteral("activePeople"), jsonValue(totals.activePeople)},
             {QStringLiteral("withoutBranch"), jsonValue(totals.withoutBranch)},
             {QStringLiteral("leave"), QByteArray::number(totals.leave)},
             {QStringLiteral("reopenedDays"), QByteArray::number(totals.reopenedDays)},
             {QStringLiteral("missing"), orNull(totals.missing)},
             {QStringLiteral("statements"), orNull(totals.statements)}});
    }

    /// Of the tables that have rows here, the order of the columns, which objects do not keep.
    QByteArray tables() const
    {
        QHash<const TouchedTable *, QStringList> seen;
        for (const ChangedPerson &person : changes.people) {
            for (const QVector<Change> *rows : {&person.rows, &person.otherwise}) {
                for (const Change &change : *rows)
                    seen.insert(change.table, change.columns);
            }
        }
        for (const Change &change : changes.others)
            seen.insert(change.table, change.columns);
        JsonMembers members;
        for (const TouchedTable &table : touchedTables()) {
            if (seen.contains(&table))
                members.append(
                    {table.name,
                     jsonObject({{QStringLiteral("key"), jsonValue(table.key)},
                                 {QStringLiteral("columns"), jsonValue(seen.value(&table))}})});
        }
        return jsonObject(members);
    }

    QByteArray names() const
    {
        JsonMembers members;
        for (const NamedId &id : namedIds()) {
            const QHash<qlonglong, QString> ofColumn = changes.names.value(id.column);
            if (ofColumn.isEmpty())
                continue;
            QList<qlonglong> ids = ofColumn.keys();
            std::sort(ids.begin(), ids.end());
            JsonMembers named;
            for (const qlonglong number : qAsConst(ids))
                named.append({QString::number(number), jsonValue(ofColumn.value(number))});
            members.append({id.column, jsonObject(named)});
        }
        return jsonObject(members);
    }

    void write(const ChangedPerson &person)
    {
        const auto idOrNull = [](qlonglong id) {
            return id == 0 ? QByteArrayLiteral("null") : QByteArray::number(id);
        };
        buffer += R"({"pamId":)" + jsonText(person.person.pamId);
        buffer += R"(,"pid":)" + idOrNull(person.pid);
        buffer += R"(,"uid":)" + idOrNull(person.person.uid);
        buffer += R"(,"name":)" + jsonText(person.person.name);
        buffer += R"(,"kinds":)" + jsonValue(kindNames(person.kinds)) + R"(,"fields":)";
        list(person.fields, [this](const ChangedField &field) { write(field); });
        buffer += R"(,"leave":)" + QByteArray::number(person.leave);
        buffer += R"(,"reopened":)" + reopened(person) + R"(,"notDone":)";
        list(person.notDone, [this](const NotDone &notDone) { write(notDone); });
        buffer += R"(,"uncertain":)" + jsonValue(person.uncertain) + R"(,"messages":)";
        list(person.messages, [this](const PassMessage &message) { write(message); });
        buffer += R"(,"rows":)";
        list(person.rows, [this](const Change &change) { writeRow(change); });
        buffer += R"(,"otherwise":)";
        list(person.otherwise, [this](const Change &change) { writeRow(change); });
        buffer += '}';
    }

    static QByteArray reopened(const ChangedPerson &person)
    {
        if (person.reopenedDays == 0)
            return "null";
        return jsonObject(
            {{QStringLiteral("days"), jsonValue(person.reopenedDays)},
             {QStringLiteral("since"), jsonValue(person.reopenedSince.toString(Qt::ISODate))}});
    }

    void write(const ChangedField &field)
    {
        buffer += R"({"name":)" + jsonValue(field.name);
        buffer += R"(,"before":)" + cellValue(field.before);
        buffer += R"(,"after":)" + cellValue(field.after) + '}';
    }

    void write(const NotDone &notDone)
    {
        buffer += jsonObject({{QStringLiteral("what"), jsonValue(notDoneName(notDone.what))},
                              {QStringLiteral("text"), jsonText(notDone.text)},
                              {QStringLiteral("statement"), jsonText(notDone.statement)},
                              {QStringLiteral("error"), jsonText(notDone.error)}});
    }

    void write(const PassMessage &message)
    {
        buffer += jsonObject(
            {{QStringLiteral("level"), message.isError ? R"("error")" : R"("warning")"},
             {QStringLiteral("time"), jsonMoment(message.time)},
             {QStringLiteral("text"), jsonValue(message.text)}});
    }

    void writeRow(const Change &change)
    {
        TableForm &form = forms[change.table];
        if (form.columns != change.columns)
            form = formOf(change);
        buffer += R"({"table":)" + form.name + R"(,"key":)";
        writeCells(form, form.key, change.after.isEmpty() ? change.before : change.after);
        buffer += R"(,"before":)";
        writeCells(form, change.before);
        buffer += R"(,"after":)";
        writeCells(form, change.after);
        buffer += '}';
    }

    void writeCells(const TableForm &form, const QVector<int> &places, const TableRow &row)
    {
        char separator = '{';
        for (const int place : places) {
            buffer += separator;
            buffer += form.columnNames.at(place);
            buffer += cellValue(row.at(place));
            separator = ',';
        }
        buffer += separator == '{' ? "{}" : "}";
    }

    void writeCells(const TableForm &form, const TableRow &row)
    {
        if (row.isEmpty()) {
            buffer += "null";
            return;
        }
        char separator = '{';
        for (int place = 0; place < row.size(); ++place) {
            buffer += separator;
            buffer += form.columnNames.at(place);
            buffer += cellValue(row.at(place));
            separator = ',';
        }
        buffer += '}';
    }

    const Changes &changes;
    const ByteSink &sink;
    QByteArray buffer;
    QHash<const TouchedTable *, TableForm> forms;
};

} // namespace

void writeChanges(const Changes &changes, const ByteSink &sink)
{
    ChangesWriter(changes, sink).write();
}

Failure writeChangesFile(const Changes &changes, const QString &path)
{
    return writeOwnerFile(path, [&changes](QIODevice *file) {
        writeChanges(changes, [file](const QByteArray &bytes) { file->write(bytes); });
    });
}
