// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that a caller learns of a database through Qt.
#include "support/database/experience.h"

#include <QDebug>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlResult>
#include <QVariant>

namespace {

/// Writes down what comes of each step.
class Diary
{
public:
    template <typename... Values>
    void note(const char *step, const Values &...values)
    {
        QString line = QLatin1String(step);
        QDebug stream(&line);
        ((stream << values), ...);
        lines.append(line);
    }

    void noteState(const char *step, const QSqlQuery &query)
    {
        const QSqlError error = query.lastError();
        note(step, query.isActive(), query.isSelect(), query.isValid(), query.isForwardOnly(),
             query.at(), query.size(), query.numRowsAffected(), query.lastInsertId(),
             query.lastQuery(), query.executedQuery(), error.type(), error.nativeErrorCode(),
             error.text());
    }

    QStringList lines;
};

void addRows(Diary *diary, const QSqlDatabase &database)
{
    QSqlQuery query(database);
    query.exec(
        QStringLiteral("INSERT INTO experience (name, amount) VALUES ('Ján', 1.5), ('b', 2)"));
    diary->noteState("two rows", query);
    query.prepare(QStringLiteral("INSERT INTO experience (name, amount) VALUES (:name, :amount)"));
    diary->noteState("prepared by name", query);
    query.bindValue(QStringLiteral(":amount"), 3.25);
    query.bindValue(QStringLiteral(":name"), QVariant(QVariant::String));
    query.exec();
    diary->noteState("run with NULL", query);
    query.bindValue(0, QStringLiteral("by place"));
    query.exec();
    diary->noteState("run again", query);
    diary->note("bound", query.boundValues());
    query.prepare(QStringLiteral("  INSERT INTO experience (name, amount) VALUES (?, ?)  "));
    query.addBindValue(QVariantList {QStringLiteral("x"), QStringLiteral("?")});
    query.addBindValue(QVariantList {-1, QVariant(QVariant::Double)});
    diary->note("batch", query.execBatch());
    diary->noteState("after the batch", query);
    query.exec(QStringLiteral("UPDATE experience SET amount = 7 WHERE name = 'b' OR name = 'x'"));
    diary->noteState("update", query);
    query.exec(QStringLiteral("UPDATE experience SET amount = 7 WHERE name = 'nobody'"));
    diary->noteState("idle update", query);
}

void noteRow(Diary *diary, const QSqlQuery &query)
{
    diary->note("row", query.at(), query.value(0), query.value(1), query.value(2),
                query.value(QStringLiteral("name")), query.isNull(1), query.isNull(2),
                query.record().field(1).value());
}

void readRows(Diary *diary, const QSqlDatabase &database)
{
    const QString statement = QStringLiteral("SELECT id, name, amount FROM experience ORDER BY id");
    QSqlQuery query(database);
    diary->note("select", query.exec(statement));
    diary->noteState("selected", query);
    const QSqlRecord record = query.record();
    for (int i = 0; i < record.count(); ++i)
        diary->note("column", record.field(i).name(), record.field(i).type());
    while (query.next())
        noteRow(diary, query);
    diary->noteState("past the end", query);
    diary->note("last, previous", query.last(), query.previous());
    noteRow(diary, query);
    diary->note("first, third, tenth", query.first(), query.seek(2), query.seek(9));
    diary->note("handle", query.result()->handle().isValid());
    query.finish();
    diary->noteState("finished", query);

    QSqlQuery forward(database);
    forward.setForwardOnly(true);
    forward.setNumericalPrecisionPolicy(QSql::LowPrecisionInt32);
    forward.prepare(statement + QStringLiteral(" LIMIT :most"));
    forward.bindValue(QStringLiteral(":most"), 2);
    diary->note("forwards", forward.exec());
    while (forward.next())
        noteRow(diary, forward);
    diary->noteState("forwards to the end", forward);

    QSqlQuery several(database);
    diary->note("several", several.exec(QStringLiteral("SELECT 1; SELECT 2, 3")), several.next());
    diary->note("next result", several.nextResult(), several.next(), several.record().count());
    diary->note("no more", several.nextResult());
}

void fail(Diary *diary, const QSqlDatabase &database)
{
    QSqlQuery query(database);
    query.exec(QStringLiteral("SELECT missing FROM experience"));
    diary->noteState("no column", query);
    query.prepare(QStringLiteral("SELECT 1 FROM missing"));
    diary->noteState("no table", query);
    query.prepare(QStringLiteral("INSERT INTO experience (id) VALUES (:id)"));
    query.bindValue(QStringLiteral(":id"), 1);
    query.exec();
    diary->noteState("twice the same key", query);
}

void runTransactions(Diary *diary, QSqlDatabase database)
{
    const QString statement = QStringLiteral("DELETE FROM experience WHERE id = 1");
    QSqlQuery query(database);
    const auto count = [&query] {
        return query.exec(QStringLiteral("SELECT COUNT(*) FROM experience")) && query.next()
            ? query.value(0)
            : QVariant();
    };
    diary->note("transaction", database.transaction(), query.exec(statement), count());
    diary->note("rollback", database.rollback(), count(), database.lastError().text());
    diary->note("transaction", database.transaction(), query.exec(statement), count());
    diary->note("commit", database.commit(), count(), database.lastError().text());
}

void askDriver(Diary *diary, const QSqlDatabase &database)
{
    const QSqlDriver *const driver = database.driver();
    for (int i = QSqlDriver::Transactions; i <= QSqlDriver::CancelQuery; ++i) {
        const auto feature = static_cast<QSqlDriver::DriverFeature>(i);
        if (feature != QSqlDriver::EventNotifications && feature != QSqlDriver::CancelQuery)
            diary->note("feature", i, driver->hasFeature(feature));
    }
    const QString table = QStringLiteral("experience");
    diary->note("tables", database.tables().contains(table), database.primaryIndex(table).name(),
                database.primaryIndex(table).count(), database.record(table).count());
    const QString name = QStringLiteral("a name");
    const QString escaped = driver->escapeIdentifier(name, QSqlDriver::FieldName);
    diary->note("escaped", escaped, driver->isIdentifierEscaped(escaped, QSqlDriver::FieldName),
                driver->stripDelimiters(escaped, QSqlDriver::FieldName));
    QSqlField field(name, QVariant::String);
    field.setValue(QStringLiteral("O'Neil\\ "));
    diary->note("formatted", driver->formatValue(field), driver->formatValue(field, true));
    QSqlRecord record;
    record.append(field);
    diary->note("statement",
                driver->sqlStatement(QSqlDriver::InsertStatement, table, record, false));
    diary->note("handle", driver->handle().isValid());
}

} // namespace

QStringList experienceOf(QSqlDatabase database, const QString &identity)
{
    Diary diary;
    diary.note("open", database.open(), database.isOpen(), database.isOpenError(),
               database.lastError().text());
    QSqlQuery query(database);
    query.exec(QStringLiteral("CREATE TABLE experience (id INTEGER PRIMARY KEY %1, "
                              "name VARCHAR(20), amount DOUBLE)")
                   .arg(identity));
    diary.noteState("table", query);
    addRows(&diary, database);
    readRows(&diary, database);
    fail(&diary, database);
    runTransactions(&diary, database);
    askDriver(&diary, database);
    query.exec(QStringLiteral("DROP TABLE experience"));
    diary.noteState("no table", query);
    database.close();
    diary.note("closed", database.isOpen());
    return diary.lines;
}
