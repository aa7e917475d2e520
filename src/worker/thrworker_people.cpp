// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: the table `people`.
#include "worker/thrworker.h"

#include "export/daycache.h"
#include "export/exportcells.h"
#include "repository/sqlerror.h"
#include "repository/sqlnumber.h"
#include "worker/sqlvalues.h"

#include <QDateTime>
#include <QVariant>

#include <utility>

namespace {

/// Local days by the seconds with which a row states them, but for 0.
using RowDays = DayCache<uint>;

/// Fills osobniCislo and poradoveCisloPP from the text key of a row: its first and its last part,
/// and 0 for the second where there is no dot.
void readPamId(const QVariant &column, EmployeeRecord *record)
{
    const QString text = column.toString();
    const int firstDot = text.indexOf(QLatin1Char('.'));
    record->osobniCislo = numberFromCell(text.leftRef(firstDot));
    record->poradoveCisloPP = firstDot < 0
        ? 0
        : numberFromCell(text.midRef(text.lastIndexOf(QLatin1Char('.')) + 1));
}

/// The row of dbLoadPeople(). Column 0, the stored pid, is not read: what pamId gives is the key.
EmployeeRecord personFromRow(const QSqlQuery &row, RowDays *days)
{
    const auto day = [&](int column, QDate (*fromDb)(uint)) {
        const uint seconds = row.value(column).toUInt();
        return seconds == 0 ? fromDb(seconds) : days->day(seconds, [&] { return fromDb(seconds); });
    };
    EmployeeRecord record;
    readPamId(row.value(1), &record);
    record.titul = row.value(2).toString();
    record.jmeno = row.value(3).toString();
    record.prijmeni = row.value(4).toString();
    record.titulZa = row.value(5).toString();
    record.telefon = row.value(6).toString();
    record.datumNastupu = day(7, dateFromDbBegin);
    record.datumVystupu = day(8, dateFromDb);
    record.rsBegin = day(9, dateFromDb);
    record.rsEnd = day(10, dateFromDb);
    record.rsText = row.value(11).toString();
    record.calendarID = row.value(12).toUInt();
    record.stredisko = row.value(13).toUInt();
    return record;
}

} // namespace

bool THRWorker::dbLoadPeople()
{
    if (logLevel > 1)
        qDebug("THRWorker::dbLoadPeople()");

    QSqlQuery query(db);
    const QString statement = QStringLiteral(
        "SELECT p.pid, p.pamId, p.title, p.name, p.surname, p.title2, p.phone, p.begin, p.end, "
        "p.rsBegin, p.rsEnd, p.rsText, p.calendarID, b.number "
        "FROM people p LEFT JOIN branches b USING(bid) WHERE p.status;");
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbLoadPeople() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
        return false;
    }

    dbPeople.clear();
    dbPeople.reserve(importedRecords.size());
    RowDays days;
    while (query.next()) {
        EmployeeRecord person = personFromRow(query, &days);
        const uint pid = person.pid();
        dbPeople[pid] = std::move(person);
    }
    return true;
}

bool THRWorker::dbCheckPerson(const EmployeeRecord &record)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbCheckPerson(%s)", qPrintable(record.pamId()));

    QSqlQuery query(db);
    const QString statement = QStringLiteral("SELECT COUNT(*) FROM people WHERE pid = %1;")
                                  .arg(record.pid());
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbCheckPerson() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
        return false;
    }
    return query.next() && query.value(0).toBool();
}

uint THRWorker::dbGetUidByPid(uint pid)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbGetUidByPid(%u)", pid);

    QSqlQuery query(db);
    const QString statement = QStringLiteral("SELECT uid FROM people WHERE pid = %1 LIMIT 1;")
                                  .arg(pid);
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbGetUidByPid() - SQL ERROR [%s]: %s", SQL_CODE_AND_TEXT(query));
        return 0;
    }
    return query.next() ? query.value(0).toUInt() : 0;
}

// Deliberate: texts stand in the statements as they are, and each arg() rewrites the whole text so
// far: an apostrophe breaks the statement, and a text holding %5 is filled by a later value. Pinned
// by tst_People::textsAreNeitherEscapedNorProtected().
bool THRWorker::dbAddPerson(const EmployeeRecord &record)
{
    if (logLevel == 0 && testMode)
        return true;
    if (logLevel > 0)
        qDebug("THRWorker::dbAddPerson(%s)", qPrintable(record.toText(true)));
    if (testMode) {
        qWarning("THRWorker::dbAddPerson(%s) - Testing mode is active, person not really add!",
                 qPrintable(record.pamId()));
        return true;
    }

    QSqlQuery query(db);
    // Deliberate: a row of the same pid, though inactive, is revived. Its department becomes 1, not
    // the configured one, and its interval, calendar and branch stay. Pinned by
    // tst_PeopleTable::dbAddPerson_upsertRevivesInactiveRow().
    const QString statement
        = QStringLiteral(
              "INSERT INTO people (pid, pamId, title, name, surname, title2, phone, "
              "begin, end, created, rsBegin, rsEnd, rsText, type, did, calendarID, bid) "
              "VALUES('%1', '%2', '%3', '%4', '%5', '%6', '%7', %8, %9, UNIX_TIMESTAMP(), "
              "%10, %11, '%12', %13, %14, %15, %16)")
              .arg(record.pid()) // %1
              .arg(record.pamId()) // %2
              .arg(record.titul) // %3
              .arg(record.jmeno) // %4
              .arg(record.prijmeni) // %5
              .arg(record.titulZa) // %6
              .arg(record.telefon) // %7
              .arg(dateToSqlBegin(record.datumNastupu)) // %8
              .arg(dateToSql(record.datumVystupu, true)) // %9
              .arg(dateToSql(record.rsBegin, false)) // %10
              .arg(dateToSql(record.rsEnd, false)) // %11
              .arg(record.rsText) // %12
              .arg(EmployeeRecord::personType(record.typPracovnihoPomeru)) // %13
              .arg(numberToSql(departmentId)) // %14
              .arg(record.calendarID) // %15
              .arg(numberToSql(branches.value(record.stredisko))) // %16
        + QStringLiteral(" ON DUPLICATE KEY UPDATE pamId=VALUES(pamId), title=VALUES(title), "
                         "name=VALUES(name), surname=VALUES(surname), title2=VALUES(title2), "
                         "phone=VALUES(phone), begin=VALUES(begin), end=VALUES(end), "
                         "edited=VALUES(created), status=1, type=VALUES(type), did=1");
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbAddPerson(%s) - SQL ERROR: %s", qPrintable(record.pamId()),
                  SQL_TEXT(query));
        return false;
    }
    // Before the statements that follow: the insert id belongs to the connection's last one.
    const bool written = query.lastInsertId().toInt() > 0 || query.numRowsAffected() > 0;
    if (!addPersonIntoPam(record.pid()))
        qWarning("THRWorker::dbAddPerson(%s) - addPersonIntoPam() FAILED!",
                 qPrintable(record.pamId()));
    return written;
}

bool THRWorker::dbUpdatePerson(const EmployeeRecord &record, bool changeLastCalc)
{
    if (logLevel == 0 && testMode)
        return true;
    if (logLevel > 0)
        qDebug("THRWorker::dbUpdatePerson(%s)", qPrintable(record.toText(true)));
    if (testMode) {
        qWarning(
            "THRWorker::dbUpdatePerson(%s) - Testing mode is active, person not really update!",
            qPrintable(record.toText(false)));
        return true;
    }

    QSqlQuery query(db);
    const bool withLastCalc = changeLastCalc && record.rsBegin.isValid();
    // %9, the key, stands at the end of the text and is filled in its turn.
    QString statement = withLastCalc
        ? QStringLiteral("UPDATE people SET pamId=%1, title='%2', name='%3', surname='%4', "
                         "title2='%5', phone='%6', begin=%7, end=%8, edited=UNIX_TIMESTAMP(), "
                         "editor=0, rsBegin=%10, rsEnd=%11, rsText='%12', lastCalc=%13, type=%14, "
                         "did=%15, calendarID=%16, bid=%17 WHERE pid=%9")
        // Two blanks before WHERE.
        : QStringLiteral("UPDATE people SET pamId=%1, title='%2', name='%3', surname='%4', "
                         "title2='%5', phone='%6', begin=%7, end=%8, edited=UNIX_TIMESTAMP(), "
                         "editor=0, rsBegin=%10, rsEnd=%11, rsText='%12', type=%13, "
                         "did=%14, calendarID=%15, bid=%16  WHERE pid=%9");
    statement = statement
                    .arg(record.pamId()) // %1, without apostrophes, unlike the insert
                    .arg(record.titul) // %2
                    .arg(record.jmeno) // %3
                    .arg(record.prijmeni) // %4
                    .arg(record.titulZa) // %5
                    .arg(record.telefon) // %6
                    .arg(dateToSqlBegin(record.datumNastupu)) // %7
                    .arg(dateToSql(record.datumVystupu, true)) // %8
                    .arg(record.pid()) // %9
                    // Deliberate: together, so that a marker which one of the three completes in
                    // an earlier text is not filled by the others. Pinned by
                    // tst_People::dbUpdatePerson_fillsTheIntervalTogether().
                    .arg(dateToSql(record.rsBegin, false), // %10
                         dateToSql(record.rsEnd, false), // %11
                         record.rsText); // %12
    if (withLastCalc)
        statement = statement.arg(QDateTime(record.rsBegin.addDays(-1)).toTime_t());
    statement = statement.arg(EmployeeRecord::personType(record.typPracovnihoPomeru))
                    .arg(numberToSql(departmentId))
                    .arg(record.calendarID)
                    .arg(numberToSql(branches.value(record.stredisko)));
    if (!query.exec(statement)) {
        qCritical("THRWorker::dbUpdatePerson(%s) - SQL ERROR: %s", qPrintable(record.pamId()),
                  SQL_TEXT(query));
        return false;
    }
    if (query.numRowsAffected() <= 0)
        return false;
    addTermSyncPerson(record.pid(), QLatin1Char('U'), QStringLiteral("people"));
    return true;
}

bool THRWorker::dbChangeLastCalc(uint uid, const QDate &date)
{
    if (logLevel > 1)
        qDebug("THRWorker::dbChangeLastCalc(%u, %s)", uid, qPrintable(shortDate(date)));

    QSqlQuery query(db);
    const QString reopen = QStringLiteral("UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 "
                                          "AND `date` >= %1 AND uid =%2")
                               .arg(secondsAtMidnight(date))
                               .arg(uid);
    if (!query.exec(reopen)) {
        qCritical("THRWorker::dbChangeLastCalc() [UPDATE atten] - SQL ERROR [%s]: %s",
                  SQL_CODE_AND_TEXT(query));
        return false;
    }

    // The mark only ever moves back here, and `calc` is cleared only when it moves.
    const QString moveMark = QStringLiteral("UPDATE people set lastCalc = %1, calc = 0 "
                                            "WHERE lastCalc > %1 AND uid=%2")
                                 .arg(secondsAtMidnight(date.addDays(-1)))
                                 .arg(uid);
    if (!query.exec(moveMark)) {
        qCritical("THRWorker::dbChangeLastCalc() [UPDATE people] - SQL ERROR [%s]: %s",
                  SQL_CODE_AND_TEXT(query));
        return false;
    }
    return true;
}
