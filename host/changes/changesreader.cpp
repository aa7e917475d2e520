// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The file of changes, "talvenhr.changes/1": reading it.
#include "host/changes/changesjson.h"
#include "host/changes/headerjson.h"
#include "host/changes/listedpeople.h"
#include "host/changes/rehearsaljson.h"
#include "host/database/value.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ChangesReader)
};

QVariant cellOf(const QJsonValue &value)
{
    if (value.isObject())
        return QByteArray::fromBase64(
            value.toObject().value(QStringLiteral("base64")).toString().toLatin1());
    return value.isNull() || value.isUndefined() ? QVariant() : plainValue(value.toVariant());
}

PassMessage messageOf(const QJsonObject &object)
{
    return {object.value(QStringLiteral("level")).toString() == QLatin1String("error"),
            momentIn(object.value(QStringLiteral("time"))),
            object.value(QStringLiteral("text")).toString()};
}

/// Reads one document; what is wrong stays in `trouble`.
class ChangesReader
{
public:
    ChangesReader(const QJsonObject &whole, Changes *result) :
        document(whole),
        changes(result)
    { }

    void add(const QJsonObject &person) { changes->people.append(personOf(person)); }
    /// What is wrong; empty if nothing is.
    QString complaint() const { return trouble; }

    /// All but those people who are added.
    QString read()
    {
        if (part("format").toString() != QLatin1String("talvenhr.changes/1"))
            return Text::tr("its format is not 'talvenhr.changes/1'");
        changes->header = headerIn(part("header").toObject());
        const QJsonObject summary = part("summary").toObject();
        for (const ChangeKind kind : changeKinds())
            changes->summary[kind] = numberIn(summary.value(kindName(kind)));
        const QJsonObject totals = part("totals").toObject();
        changes->totals = {totals.value(QStringLiteral("activePeople")).toInt(),
                           totals.value(QStringLiteral("withoutBranch")).toInt(),
                           numberIn(totals.value(QStringLiteral("leave"))),
                           numberIn(totals.value(QStringLiteral("reopenedDays"))),
                           totals.value(QStringLiteral("missing")).toInt(-1),
                           totals.value(QStringLiteral("statements")).toInt(-1)};
        changes->rehearsal = rehearsalIn(part("rehearsal").toObject());
        const QJsonObject plan = part("plan").toObject();
        changes->plan = {plan.value(QStringLiteral("read")).toString(),
                         plan.value(QStringLiteral("change")).toString(),
                         plan.value(QStringLiteral("hash")).toString()};
        readTables();
        readNames();
        const QJsonArray people = part("people").toArray();
        for (const QJsonValue &person : people)
            add(person.toObject());
        const QJsonArray others = part("others").toArray();
        for (const QJsonValue &row : others)
            changes->others.append(changeOf(row.toObject(), Person()));
        const QJsonArray messages = part("messages").toArray();
        for (const QJsonValue &message : messages)
            changes->messages.append(messageOf(message.toObject()));
        return trouble;
    }

private:
    QJsonValue part(const char *name) const { return document.value(QLatin1String(name)); }

    void readTables()
    {
        const QJsonObject tables = part("tables").toObject();
        for (const TouchedTable &table : touchedTables()) {
            const QJsonObject form = tables.value(table.name).toObject();
            if (!form.isEmpty())
                columns.insert(table.name, textsIn(form.value(QStringLiteral("columns"))));
        }
    }

    void readNames()
    {
        const QJsonObject names = part("names").toObject();
        for (auto column = names.begin(); column != names.end(); ++column) {
            const QJsonObject ofColumn = column.value().toObject();
            for (auto name = ofColumn.begin(); name != ofColumn.end(); ++name)
                changes->names[column.key()].insert(name.key().toLongLong(),
                                                    name.value().toString());
        }
    }

    ChangedPerson personOf(const QJsonObject &object)
    {
        ChangedPerson person;
        person.person = {numberIn(object.value(QStringLiteral("uid"))),
                         object.value(QStringLiteral("pamId")).toString(),
                         object.value(QStringLiteral("name")).toString()};
        person.pid = numberIn(object.value(QStringLiteral("pid")));
        const QStringList kinds = textsIn(object.value(QStringLiteral("kinds")));
        for (const QString &name : kinds) {
            ChangeKind kind;
            if (kindOfName(name, &kind))
                person.kinds.add(kind);
            else
                complain(Text::tr("'%1' is no kind of change").arg(name));
        }
        const QJsonArray fields = object.value(QStringLiteral("fields")).toArray();
        for (const QJsonValue &field : fields)
            person.fields.append({field.toObject().value(QStringLiteral("name")).toString(),
                                  cellOf(field.toObject().value(QStringLiteral("before"))),
                                  cellOf(field.toObject().value(QStringLiteral("after")))});
        person.leave = object.value(QStringLiteral("leave")).toInt();
        const QJsonObject reopened = object.value(QStringLiteral("reopened")).toObject();
        person.reopenedDays = reopened.value(QStringLiteral("days")).toInt();
        person.reopenedSince = QDate::fromString(reopened.value(QStringLiteral("since")).toString(),
                                                 Qt::ISODate);
        readTold(object, &person);
        const QJsonArray rows = object.value(QStringLiteral("rows")).toArray();
        for (const QJsonValue &row : rows)
            person.rows.append(changeOf(row.toObject(), person.person));
        const QJsonArray otherwise = object.value(QStringLiteral("otherwise")).toArray();
        for (const QJsonValue &row : otherwise)
            person.otherwise.append(changeOf(row.toObject(), person.person));
        return person;
    }

    void readTold(const QJsonObject &object, ChangedPerson *person)
    {
        const QJsonArray notDone = object.value(QStringLiteral("notDone")).toArray();
        for (const QJsonValue &value : notDone) {
            const QJsonObject told = value.toObject();
            NotDone one {NotDone::Refused, told.value(QStringLiteral("text")).toString(),
                         told.value(QStringLiteral("statement")).toString(),
                         told.value(QStringLiteral("error")).toString()};
            const QString what = told.value(QStringLiteral("what")).toString();
            if (!notDoneOfName(what, &one.what))
                complain(Text::tr("'%1' is nothing that can be left undone").arg(what));
            person->notDone.append(one);
        }
        person->uncertain = textsIn(object.value(QStringLiteral("uncertain")));
        const QJsonArray messages = object.value(QStringLiteral("messages")).toArray();
        for (const QJsonValue &message : messages)
            person->messages.append(messageOf(message.toObject()));
    }

    Change changeOf(const QJsonObject &object, const Person &person)
    {
        Change change;
        const QString name = object.value(QStringLiteral("table")).toString();
        const auto table = std::find_if(
            touchedTables().cbegin(), touchedTables().cend(),
            [&name](const TouchedTable &candidate) { return candidate.name == name; });
        if (table == touchedTables().cend() || !columns.contains(name)) {
            complain(table == touchedTables().cend()
                         ? Text::tr("no pass touches the table '%1'").arg(name)
                         : Text::tr("the columns of the table '%1' are missing").arg(name));
            // A change always has a table.
            change.table = &touchedTables().first();
            return change;
        }
        change.person = person;
        change.table = &*table;
        change.columns = columns.value(name);
        change.before = rowOf(object.value(QStringLiteral("before")), change.columns);
        change.after = rowOf(object.value(QStringLiteral("after")), change.columns);
        return change;
    }

    static TableRow rowOf(const QJsonValue &value, const QStringList &names)
    {
        TableRow row;
        if (!value.isObject())
            return row;
        const QJsonObject object = value.toObject();
        row.reserve(names.size());
        for (const QString &column : names)
            row.append(cellOf(object.value(column)));
        return row;
    }

    /// The first complaint counts.
    void complain(const QString &text)
    {
        if (trouble.isEmpty())
            trouble = text;
    }

    const QJsonObject document;
    Changes *const changes;
    QHash<QString, QStringList> columns; ///< by table
    QString trouble;
};

QString readWhole(const QByteArray &text, Changes *changes)
{
    *changes = {};
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        return Text::tr("it is not JSON: %1, at byte %2")
            .arg(error.errorString())
            .arg(error.offset);
    return ChangesReader(document.object(), changes).read();
}

/// One person after the other: as values of JSON, all of them take several times as much memory as
/// the text and the changes. False for a text that is not fit for that, or has something wrong.
bool readInParts(const QByteArray &text, Changes *changes)
{
    const ListedPeople people = listedPeople(text);
    if (people.places.isEmpty())
        return false;
    *changes = {};
    const QJsonDocument rest = QJsonDocument::fromJson(people.rest);
    ChangesReader reader(rest.object(), changes);
    if (!reader.read().isEmpty())
        return false;
    for (const TextPlace &place : people.places) {
        const QJsonDocument person = QJsonDocument::fromJson(
            QByteArray::fromRawData(text.constData() + place.begin, place.size));
        if (!person.isObject())
            return false;
        reader.add(person.object());
    }
    return reader.complaint().isEmpty();
}

} // namespace

Failure readChanges(const QByteArray &text, const QString &name, Changes *changes)
{
    if (readInParts(text, changes))
        return {};
    const QString trouble = readWhole(text, changes);
    if (trouble.isEmpty())
        return {};
    return {ExitUsage, Text::tr("'%1' is no file of changes: %2").arg(name, trouble)};
}

Failure readChangesFile(const QString &path, Changes *changes)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(path, file.errorString())};
    return readChanges(file.readAll(), path, changes);
}
