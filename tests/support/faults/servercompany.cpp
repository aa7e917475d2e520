// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A small company in the database of the private server, for a pass in which something goes wrong.
#include "support/faults/servercompany.h"

#include "support/eventlog.h"
#include "support/localseconds.h"
#include "support/recordbuilder.h"
#include "support/snapshotlines.h"

#include <QDateTime>
#include <QHash>
#include <QRegularExpression>

namespace {

QString seconds(int year, int month, int day)
{
    return QString::number(localSeconds(QDate(year, month, day)));
}

/// The same with the pid of a person, as far as there is one, wherever the uid stands.
Snapshot withPids(Snapshot snapshot)
{
    QHash<qlonglong, QVariant> pids;
    const TableContent &people = snapshot.tables.first();
    for (const TableRow &row : people.rows)
        pids.insert(row.at(people.indexOf(QStringLiteral("uid"))).toLongLong(),
                    row.at(people.indexOf(QStringLiteral("pid"))));
    for (TableContent &content : snapshot.tables) {
        const int person = content.indexOf(content.table->person);
        if (person < 0)
            continue;
        for (TableRow &row : content.rows)
            row[person] = pids.value(row.at(person).toLongLong(), row.at(person));
    }
    return snapshot;
}

/// Column by column, so that a difference names it.
QStringList peopleValues(const Snapshot &snapshot)
{
    const QString table = QStringLiteral("people");
    const QStringList columns = snapshot.find(table)->columns;
    const QStringList pids = cellLines(snapshot, table, {QStringLiteral("pid")});
    QStringList values;
    for (const QString &column : columns.mid(columns.indexOf(QStringLiteral("pid")) + 1)) {
        const QStringList cells = cellLines(snapshot, table, {column});
        for (int i = 0; i < cells.size(); ++i)
            values.append(QStringLiteral("people %1.%2: %3").arg(pids.at(i), column, cells.at(i)));
    }
    return values;
}

/// The rows of the other tables, each by itself.
QStringList rowValues(const Snapshot &snapshot)
{
    const QStringList tables = lines({
        "people_pam: uid|id",
        "brape: bid|uid|since",
        "people_term: tid|uid",
        "admins_people: aid|uid|request",
        "groups_plan: uid|since|gid",
        "groups_month: uid|month|gid",
        "atten: uid|date|ok",
        "funds_move: uid|type|day|month|value",
        "term: tid|syn",
        "term_sync: tid|type|ref|ref_col|ref_id|created|flags",
        "vars: name|value",
    });
    QStringList values;
    for (const QString &heading : tables) {
        const QString table = heading.section(QStringLiteral(": "), 0, 0);
        const QStringList columns = heading.section(QStringLiteral(": "), 1)
                                        .split(QLatin1Char('|'));
        const QStringList rows = cellLines(snapshot, table, columns);
        for (const QString &row : rows)
            values.append(table + QLatin1Char(' ') + row);
    }
    return values;
}

} // namespace

// So that no uid is a number that stands for something else as well.
int ServerCompany::companies = 400;

QDateTime companyNow()
{
    return QDateTime(QDate(2026, 3, 17), QTime(12, 0));
}

ServerCompany::ServerCompany(TestDatabase &testDatabase) :
    database(testDatabase),
    number(++companies)
{
    database.setClock(localSeconds(QDate(2026, 3, 17), 12));
    fill();
}

QString ServerCompany::own(const QString &text) const
{
    return QString::number(number) + text;
}

void ServerCompany::fill()
{
    QStringList statements {QStringLiteral("START TRANSACTION")};
    const QStringList tables = database.rows(QStringLiteral("SHOW TABLES"));
    for (const QString &table : tables)
        statements.append(QStringLiteral("DELETE FROM `%1`").arg(table));

    const QString b = own(QStringLiteral("00"));
    statements += QStringList {
        QStringLiteral("INSERT INTO mastergroups (mgid) VALUES (91), (92)"),
        QStringLiteral("INSERT INTO groups (gid, parent, calendarID) "
                       "VALUES (13, 91, 3), (15, 92, 5)"),
        QStringLiteral("INSERT INTO branches (bid, number, mgid) VALUES (1, 10, 91), (2, 20, 92)"),
        QStringLiteral("INSERT INTO term (tid, bid, flags) "
                       "VALUES (31, 1, 2), (32, 1, 2), (33, 2, 2), (34, NULL, 2)"),
        QStringLiteral("INSERT INTO admins (aid, personalNumber) "
                       "VALUES (5, 44), (6, 55), (8, NULL), (9, NULL)"),
        QStringLiteral("INSERT INTO bradm (bid, aid) VALUES (1, 8), (1, 9)"),
        QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES (7, 3, 2)"),
        QStringLiteral("INSERT INTO vars (name, value) VALUES ('OQS.THRWorker.forceSync', '1'), "
                       "('exportPam.1.active', '1'), ('exportPam.1.selPeople', '5')"),
        // The mark of a calculation that died long ago.
        QStringLiteral("INSERT INTO people (uid, pid, pamId, name, surname, begin, bid, type, did, "
                       "lastCalc, calc) VALUES (%1, %2, '%3.1', 'Ján', 'Novák', %4, 1, 1, 1, "
                       "%5, 8)")
            .arg(b, own(QStringLiteral("90021")), own(QStringLiteral("9002")), seconds(2015, 3, 1),
                 seconds(2026, 3, 10)),
        QStringLiteral("INSERT INTO brape (bid, uid, since) VALUES (1, %1, %2)")
            .arg(b, seconds(2015, 3, 1)),
        QStringLiteral("INSERT INTO people_term (tid, uid) VALUES (34, %1)").arg(b),
        QStringLiteral("INSERT INTO admins_people (aid, uid, request) VALUES (5, %1, 1)").arg(b),
        QStringLiteral("INSERT INTO funds_move (uid, fid, day, type, month, value) VALUES "
                       "(%1, 7, %2, 1, 202602, 1000), (%1, 7, %3, 3, 202603, 50)")
            .arg(b, seconds(2026, 2, 1), seconds(2026, 3, 10)),
        QStringLiteral("INSERT INTO atten (uid, `date`, `lock`, ok) VALUES (%1, %2, 0, 1), "
                       "(%1, %3, 0, 1), (%1, %4, 0, 1), (%1, %5, 1, 1), (%1, %6, 0, 1)")
            .arg(b, seconds(2025, 12, 10), seconds(2026, 1, 10), seconds(2026, 2, 10),
                 seconds(2026, 2, 11), seconds(2026, 3, 10)),
        QStringLiteral("COMMIT"),
    };
    for (const QString &statement : qAsConst(statements))
        database.execute(statement);
}

QStringList ServerCompany::exportLines() const
{
    const auto numbered = [this](uint person) {
        return record().pid(own(QString::number(9000 + person)).toUInt(), 1);
    };
    return {exportHeader(),
            numbered(1).branch(10).calendar(3, QDate(2021, 3, 1)).balance(3).supervisor(55).line(),
            numbered(2)
                .phone(QStringLiteral("111"))
                .branch(20)
                .calendar(5, QDate(2026, 1, 1))
                .es(5)
                .balance(12.5)
                .supervisor(55)
                .line(),
            numbered(3).tpp(51).line()};
}

QString ServerCompany::uid(const QString &letter)
{
    const int person = 1 + QStringLiteral("ABC").indexOf(letter);
    return database.value(QStringLiteral("SELECT uid FROM people WHERE pid = %1")
                              .arg(own(QString::number(9000 + person)) + QLatin1Char('1')));
}

void ServerCompany::calculateAttendance()
{
    database.execute(QStringLiteral("UPDATE atten SET ok = 2 WHERE ok < 0"));
}

QStringList ServerCompany::content()
{
    const Snapshot snapshot = withPids(database.snapshot());
    QStringList values = peopleValues(snapshot) + rowValues(snapshot);
    // The list person by person.
    const QString list = QStringLiteral("vars exportPam.1.selPeople|");
    const int place = values.indexOf(QRegularExpression(
        QLatin1Char('^') + QRegularExpression::escape(list) + QStringLiteral(".*")));
    if (place >= 0) {
        const QStringList listed = values.takeAt(place).mid(list.size()).split(QLatin1Char(','));
        for (const QString &pid : listed)
            values.append(QStringLiteral("PaM list ") + pid);
    }
    values = lettered(values);
    values.sort();
    return values;
}

QStringList ServerCompany::lettered(QStringList texts) const
{
    for (int person = 1; person <= 3; ++person) {
        texts.replaceInStrings(
            QRegularExpression(
                QStringLiteral("\\b%1%2(1|\\.1)?\\b").arg(own(QStringLiteral("900"))).arg(person)),
            QStringLiteral("ABC").mid(person - 1, 1));
    }
    return texts;
}

QStringList ServerCompany::canonical(QStringList events)
{
    const QStringList people = database.rows(QStringLiteral("SELECT uid, pid FROM people"));
    for (const QString &person : people) {
        const QString uid = person.section(QLatin1Char('|'), 0, 0);
        const QString pid = person.section(QLatin1Char('|'), 1, 1);
        events.replaceInStrings(QRegularExpression(QStringLiteral("\\b%1\\b").arg(uid)),
                                QStringLiteral("10") + pid.mid(pid.size() - 2, 1));
    }
    return events.replaceInStrings(
        QRegularExpression(QStringLiteral("\\b%1([123])(1?)\\b").arg(own(QStringLiteral("900")))),
        QStringLiteral("900\\1\\2"));
}
