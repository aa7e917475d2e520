// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A small company in the database of the private server, for a pass in which something goes wrong.
#include "support/faults/servercompany.h"

#include "support/localseconds.h"
#include "support/recordbuilder.h"

#include <QDateTime>
#include <QRegularExpression>

namespace {

/// A moment, readable; the administrator's session has the time zone of the process.
QString moment(const QString &column)
{
    return QStringLiteral("CAST(FROM_UNIXTIME(%1) AS CHAR)").arg(column);
}

QString seconds(int year, int month, int day)
{
    return QString::number(localSeconds(QDate(year, month, day)));
}

/// Of table `people`; the first is what names the row.
const QStringList peopleColumns {
    QStringLiteral("pid"),     QStringLiteral("pamId"),      QStringLiteral("title"),
    QStringLiteral("name"),    QStringLiteral("surname"),    QStringLiteral("title2"),
    QStringLiteral("phone"),   QStringLiteral("rsText"),     QStringLiteral("type"),
    QStringLiteral("status"),  QStringLiteral("did"),        QStringLiteral("bid"),
    QStringLiteral("gid"),     QStringLiteral("calendarID"), QStringLiteral("calc"),
    QStringLiteral("editor"),  QStringLiteral("begin"),      QStringLiteral("end"),
    QStringLiteral("rsBegin"), QStringLiteral("rsEnd"),      QStringLiteral("created"),
    QStringLiteral("edited"),  QStringLiteral("lastCalc"),
};
const int firstMoment = 16;

/// The row of a table that names a person by uid, with the person's pid instead.
QString rowQuery(const char *table, const char *columns, const char *uid = "uid")
{
    return QStringLiteral("SELECT CONCAT('%1 ', CONCAT_WS('|', %2)) "
                          "FROM %1 t LEFT JOIN people p ON p.uid = t.%3")
        .arg(QLatin1String(table), QLatin1String(columns), QLatin1String(uid));
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
    // Column by column, so that a difference names it.
    QStringList columns = peopleColumns;
    for (int i = firstMoment; i < columns.size(); ++i)
        columns[i] = moment(columns.at(i));
    QStringList values;
    const QStringList people = database.rows(
        QStringLiteral("SELECT %1 FROM people").arg(columns.join(QStringLiteral(", "))));
    for (const QString &person : people) {
        const QStringList cells = person.split(QLatin1Char('|'));
        for (int i = 1; i < cells.size(); ++i)
            values.append(QStringLiteral("people %1.%2: %3")
                              .arg(cells.first(), peopleColumns.at(i), cells.at(i)));
    }
    const QStringList queries {
        rowQuery("people_pam", "IFNULL(p.pid, t.uid), id"),
        rowQuery("brape", "t.bid, IFNULL(p.pid, t.uid), FROM_UNIXTIME(since)"),
        rowQuery("people_term", "tid, IFNULL(p.pid, t.uid)"),
        rowQuery("admins_people", "aid, IFNULL(p.pid, t.uid), request"),
        rowQuery("groups_plan", "IFNULL(p.pid, t.uid), since, t.gid"),
        rowQuery("groups_month", "IFNULL(p.pid, t.uid), month, t.gid"),
        rowQuery("atten", "IFNULL(p.pid, t.uid), DATE(FROM_UNIXTIME(`date`)), ok"),
        rowQuery("funds_move", "IFNULL(p.pid, t.uid), t.type, FROM_UNIXTIME(day), month, value"),
        rowQuery("term_sync",
                 "tid, t.type, ref, ref_col, IFNULL(p.pid, ref_id), FROM_UNIXTIME(t.created), "
                 "flags",
                 "ref_id"),
        QStringLiteral("SELECT CONCAT('term ', tid, '|', syn) FROM term"),
        QStringLiteral("SELECT CONCAT('vars ', name, '|', value) FROM vars "
                       "WHERE name = 'OQS.THRWorker.forceSync'"),
    };
    for (const QString &query : queries)
        values += database.rows(query);
    const QStringList listed = database
                                   .value(QStringLiteral("SELECT value FROM vars "
                                                         "WHERE name = 'exportPam.1.selPeople'"))
                                   .split(QLatin1Char(','));
    for (const QString &pid : listed)
        values.append(QStringLiteral("PaM list ") + pid);
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

QStringList contentDifference(const QStringList &before, const QStringList &after)
{
    QStringList added = after;
    QStringList difference;
    for (const QString &value : before) {
        if (!added.removeOne(value))
            difference.append(QLatin1Char('-') + value);
    }
    for (const QString &value : qAsConst(added))
        difference.append(QLatin1Char('+') + value);
    difference.sort();
    return difference;
}
