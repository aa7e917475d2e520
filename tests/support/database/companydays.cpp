// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company on the private server, pass after pass and day after day.
#include "support/database/companydays.h"

#include "repository/branchesrepository.h"
#include "support/localseconds.h"

#include <QtTest>

CompanyDays::CompanyDays(TestDatabase &companyDatabase, MachineClock &machineClock) :
    database(companyDatabase),
    clock(machineClock)
{
    database.clear();
    execute(QStringLiteral("INSERT INTO mastergroups (mgid) VALUES (1), (2)"));
    execute(QStringLiteral("INSERT INTO groups (gid, parent, calendarID) VALUES "
                           "(11, 1, 1), (21, 2, 1), (22, 2, 2)"));
    execute(QStringLiteral("INSERT INTO branches (bid, number, mgid) VALUES "
                           "(1, 100, 1), (2, 200, 2)"));
    execute(QStringLiteral("INSERT INTO term (tid, bid, status, flags) VALUES "
                           "(1, 1, 1, 2), (2, 2, 1, 2), (3, 2, 0, 2)"));
    execute(QStringLiteral("INSERT INTO admins (aid, personalNumber) VALUES "
                           "(1, 9001), (2, 9002), (3, NULL)"));
    execute(QStringLiteral("INSERT INTO bradm (bid, aid) VALUES (2, 3)"));
    execute(QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES (2, 3, 2), (3, 3, 1)"));
    execute(QStringLiteral("INSERT INTO vars (name, value) VALUES "
                           "('exportPam.1.active', '1'), ('exportPam.1.selPeople', '77')"));
}

void CompanyDays::setTime(const QDate &day, const QTime &time)
{
    today = day;
    clock.set(QDateTime(day, time));
    database.setClock(localSeconds(day, time.hour(), time.minute(), time.second()));
}

void CompanyDays::dropLeaveFund()
{
    execute(QStringLiteral("DELETE FROM funds"));
    leaveFund = 0;
}

void CompanyDays::restartWorker(quint8 logLevel)
{
    worker.reset();
    worker = std::make_unique<DatabaseWorker>(database, DatabaseWorker::Recorded);
    worker->worker.setSyncInterval(1);
    worker->worker.setMes(
        {{ushort(21), QStringLiteral("materská")}, {ushort(22), QStringLiteral("rodičovská")}});
    worker->worker.setLogLevel(logLevel);
    worker->peer.branchesRepo->logLevel = logLevel; // as init() would have taken it over
    // Every tick is to open it at the time of its day.
    worker->peer.db.close();
    QCOMPARE(worker->log.take(), lines({"sql close"}));
    level = logLevel;
    passes = 0;
}

void CompanyDays::force()
{
    database.force();
    forced = true;
}

QStringList CompanyDays::pass(const QStringList &lines, int waiting)
{
    worker->writeExport(QStringList {exportHeader()} + lines);
    worker->tick();
    ++passes;

    QStringList begin {
        QStringLiteral("sql open"),
        QStringLiteral(
            "sql exec SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1"),
        QStringLiteral("sql exec SELECT p.pid, p.pamId, p.title, p.name, p.surname, p.title2, "
                       "p.phone, p.begin, p.end, p.rsBegin, p.rsEnd, p.rsText, p.calendarID, "
                       "b.number FROM people p LEFT JOIN branches b USING(bid) WHERE p.status;"),
        QStringLiteral("sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;"),
        QStringLiteral("sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;")};
    QStringList end {QStringLiteral("sql close")};
    if (forced) {
        end.prepend(QStringLiteral("sql run :name=OQS.THRWorker.forceSync, :value=0"));
        end.prepend(QStringLiteral("sql prepare INSERT INTO vars (name, value) VALUES(:name, "
                                   ":value) ON DUPLICATE KEY UPDATE value=VALUES(value);"));
    }
    if (level > 0) {
        begin.insert(2,
                     QStringLiteral("debug THRWorker: BEGIN synchronization #%1 (force: %2)")
                         .arg(passes)
                         .arg(forced ? QStringLiteral("YES") : QStringLiteral("NO")));
        begin.append(QStringLiteral("info THRWorker::checkDovolenkaFond(): fid=%1").arg(leaveFund));
        end.prepend(QStringLiteral("debug THRWorker: END synchronization #%1 (waiting records: %2)")
                        .arg(passes)
                        .arg(waiting));
    }
    forced = false;

    const QStringList events = worker->log.take();
    const auto compareFrame = [&] {
        QCOMPARE(events.mid(0, begin.size()), begin);
        QCOMPARE(events.mid(qMax(begin.size(), events.size() - end.size())), end);
        QCOMPARE(worker->peer.waitingRecords.size(), waiting);
    };
    compareFrame();
    return events.mid(begin.size(), events.size() - begin.size() - end.size());
}

void CompanyDays::settle(uint uid, uint personalNumber)
{
    execute(QStringLiteral("INSERT INTO people SET uid=%1, pid=%2, pamId='%3.1', name='Ján', "
                           "surname='Novák', begin=%4, type=1, did=1, bid=1, calendarID=1, "
                           "created=5, edited=6, editor=7")
                .arg(uid)
                .arg(personalNumber * 10 + 1)
                .arg(personalNumber)
                .arg(seconds(QDate(2015, 3, 1))));
    execute(QStringLiteral("INSERT INTO brape (bid, uid, since) VALUES (1, %1, 8)").arg(uid));
    execute(QStringLiteral("INSERT INTO people_term (tid, uid) VALUES (1, %1)").arg(uid));
    execute(
        QStringLiteral("INSERT INTO groups_plan (uid, since, gid) VALUES (%1, 0, 11)").arg(uid));
}

void CompanyDays::calculate()
{
    execute(QStringLiteral("UPDATE atten SET ok=1"));
    execute(
        QStringLiteral("UPDATE people SET calc=0, lastCalc=%1").arg(seconds(today.addDays(-1))));
}

QString CompanyDays::uidOf(uint pid)
{
    return database.value(QStringLiteral("SELECT uid FROM people WHERE pid=%1").arg(pid));
}

QStringList CompanyDays::personRow(const QString &columns, const QString &uid)
{
    return rows(QStringLiteral("SELECT %1 FROM people WHERE uid=%2").arg(columns, uid));
}

QStringList CompanyDays::marks(const QString &uid)
{
    return rows(QStringLiteral("SELECT aid, request FROM admins_people WHERE uid=%1 ORDER BY aid")
                    .arg(uid));
}

QStringList CompanyDays::takeQueue()
{
    const QStringList queue = rows(
        QStringLiteral("SELECT tid, type, ref, ref_id FROM term_sync ORDER BY id"));
    execute(QStringLiteral("DELETE FROM term_sync"));
    return queue;
}

QStringList fundChecks(uint pid, uint uid)
{
    return fundChecksAtWork(pid)
        + QStringList {
            QStringLiteral("sql exec SELECT COUNT(*) FROM atten WHERE uid = %1 AND `lock`=0 AND "
                           "ok < 0 AND date >= midnightFromTs(UNIX_TIMESTAMP())")
                .arg(uid)};
}

QStringList fundChecksOfNobody(uint pid)
{
    return fundChecksAtWork(pid);
}

QStringList fundChecksAtWork(uint pid)
{
    return {QStringLiteral("sql exec SELECT COUNT(*) FROM funds_move WHERE type=3 AND "
                           "day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = 2 AND "
                           "uid=(SELECT uid FROM people WHERE pid = %1);")
                .arg(pid),
            QStringLiteral("sql exec SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE "
                           "a.uid = p.uid AND !a.lock AND a.ok = -1) uncalc FROM people p WHERE "
                           "pid = %1")
                .arg(pid)};
}

QStringList balanceRead(uint pid, const QDate &monthBegin)
{
    return {QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                           "USING(uid) WHERE fm.day < %1  AND fm.fid = 2 AND p.pid = %2")
                .arg(seconds(monthBegin))
                .arg(pid),
            QStringLiteral("sql exec SELECT SUM(fm.value) FROM funds_move fm JOIN people p "
                           "USING(uid) WHERE fm.type=3 AND fm.day >= %1 AND "
                           "fm.day < midnightFromTs(UNIX_TIMESTAMP()) AND fm.fid = 2 AND "
                           "p.pid = %2")
                .arg(seconds(monthBegin))
                .arg(pid)};
}

QString correction(uint uid, int value, const QDate &day)
{
    return QStringLiteral("sql exec INSERT INTO funds_move (type, day, month, value, fid, uid) "
                          "VALUES(3, %1, monthFromTimestamp(%1), %2, 2, %3) "
                          "ON DUPLICATE KEY UPDATE value=VALUES(value)")
        .arg(seconds(day))
        .arg(value)
        .arg(uid);
}

QStringList reopening(const QString &uid, const QDate &since)
{
    return {QStringLiteral("sql exec UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND "
                           "`date` >= %1 AND uid =%2")
                .arg(seconds(since), uid),
            QStringLiteral("sql exec UPDATE people set lastCalc = %1, calc = 0 "
                           "WHERE lastCalc > %1 AND uid=%2")
                .arg(seconds(since.addDays(-1)), uid)};
}

QString update(uint personalNumber, const QString &phone, const QString &end,
               const QString &interval, const QString &type, const QString &tail)
{
    return QStringLiteral("sql exec UPDATE people SET pamId=%1.1, title='', name='Ján', "
                          "surname='Novák', title2='', phone='%2', begin=%3, end=%4, "
                          "edited=UNIX_TIMESTAMP(), editor=0, %5, type=%6, did=1, %7 "
                          "WHERE pid=%8")
        .arg(QString::number(personalNumber), phone, seconds(QDate(2015, 3, 1)), end, interval,
             type, tail, QString::number(personalNumber * 10 + 1));
}

QString phoneUpdate(uint personalNumber, const QString &phone)
{
    return update(personalNumber, phone, QStringLiteral("NULL"),
                  QStringLiteral("rsBegin=NULL, rsEnd=NULL, rsText=''"), QStringLiteral("1"),
                  QStringLiteral("calendarID=1, bid=1 "));
}

QStringList news(uint pid, const QString &uid)
{
    return {QStringLiteral("sql exec SELECT uid FROM people WHERE pid=%1 LIMIT 1").arg(pid),
            QStringLiteral("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, "
                           "created, flags) SELECT `tid` tid, 'U' type, 'people' ref, 'uid' "
                           "ref_col, %1 ref_id, UNIX_TIMESTAMP() created, 2 flags FROM people_term "
                           "JOIN term USING(tid) WHERE status = 1 AND uid = %1 AND (flags & 2);")
                .arg(uid),
            QStringLiteral("sql exec CALL updateTermsSync(%1, 2);").arg(uid)};
}

QString uidAsked(uint pid)
{
    return QStringLiteral("sql exec SELECT uid FROM people WHERE pid = %1 LIMIT 1;").arg(pid);
}

QString adminAsked(uint personalNumber)
{
    return QStringLiteral("sql exec SELECT aid FROM admins WHERE personalNumber = %1")
        .arg(personalNumber);
}

QStringList markMoved(uint aid, const QString &uid)
{
    return {QStringLiteral("sql begin"),
            QStringLiteral("sql exec UPDATE admins_people SET request =0 WHERE uid=%1 AND "
                           "aid != %2")
                .arg(uid)
                .arg(aid),
            QStringLiteral("sql exec INSERT INTO admins_people (aid, uid, request) VALUES(%1, %2, "
                           "1) ON DUPLICATE KEY UPDATE request=1")
                .arg(aid)
                .arg(uid),
            QStringLiteral("sql commit")};
}

QStringList membershipInPlace(uint pid, const QString &uid, uint since)
{
    return {QStringLiteral("sql exec SELECT COUNT(*) FROM brape WHERE bid = 1 AND "
                           "uid = (SELECT uid FROM people WHERE pid = %1 LIMIT 1);")
                .arg(pid),
            QStringLiteral("sql exec SELECT gid FROM branches b LEFT JOIN mastergroups mg ON "
                           "mg.mgid = b.mgid LEFT JOIN groups g ON g.parent = mg.mgid "
                           "WHERE bid = 1 AND g.calendarID = 1 LIMIT 1;"),
            QStringLiteral("sql exec SELECT COUNT(*) FROM groups_plan WHERE gid = 11 AND uid = %1 "
                           "AND since = %2;")
                .arg(uid)
                .arg(since)};
}

QString insert(const QString &who, const QString &end, const QString &interval, const QString &rest)
{
    return QStringLiteral(
               "sql exec INSERT INTO people (pid, pamId, title, name, surname, title2, phone, "
               "begin, end, created, rsBegin, rsEnd, rsText, type, did, calendarID, bid) "
               "VALUES(%1, %2, %3, UNIX_TIMESTAMP(), %4, %5) ON DUPLICATE KEY UPDATE "
               "pamId=VALUES(pamId), title=VALUES(title), name=VALUES(name), "
               "surname=VALUES(surname), title2=VALUES(title2), phone=VALUES(phone), "
               "begin=VALUES(begin), end=VALUES(end), edited=VALUES(created), status=1, "
               "type=VALUES(type), did=1")
        .arg(who, seconds(QDate(2015, 3, 1)), end, interval, rest);
}

QStringList pamListRead()
{
    return lines({"sql exec SELECT name, value FROM vars WHERE name LIKE 'exportPam.%.active%'",
                  "sql exec SELECT value FROM vars WHERE name='exportPam.1.selPeople' LIMIT 1"});
}

QStringList pamListWritten(const char *people)
{
    return {QStringLiteral("sql prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                           "ON DUPLICATE KEY UPDATE value=VALUES(value);"),
            QStringLiteral("sql run :name=exportPam.1.selPeople, :value=")
                + QString::fromLatin1(people)};
}

QStringList pamRow(uint pid, const QString &uid, uint block)
{
    return {QStringLiteral("sql exec SELECT uid FROM people WHERE pid=%1").arg(pid),
            QStringLiteral("sql exec INSERT INTO people_pam (uid, id) VALUES(%1, %2) "
                           "ON DUPLICATE KEY UPDATE id=VALUES(id)")
                .arg(uid)
                .arg(block)};
}

QStringList secondBranchAsked(uint pid, const QString &uid, uint since)
{
    return {QStringLiteral("sql exec SELECT COUNT(*) FROM brape WHERE bid = 2 AND "
                           "uid = (SELECT uid FROM people WHERE pid = %1 LIMIT 1);")
                .arg(pid),
            QStringLiteral("sql exec SELECT gid FROM branches b LEFT JOIN mastergroups mg ON "
                           "mg.mgid = b.mgid LEFT JOIN groups g ON g.parent = mg.mgid "
                           "WHERE bid = 2 AND g.calendarID = 2 LIMIT 1;"),
            QStringLiteral("sql exec SELECT COUNT(*) FROM groups_plan WHERE gid = 22 AND uid = %1 "
                           "AND since = %2;")
                .arg(uid)
                .arg(since)};
}

QStringList planWritten(uint gid, const QString &uid, uint since)
{
    return {QStringLiteral("sql exec INSERT INTO groups_plan (gid, uid, since) "
                           "VALUES(%1, %2, %3) ON DUPLICATE KEY UPDATE gid=VALUES(gid), "
                           "uid=VALUES(uid), since=VALUES(since);")
                .arg(gid)
                .arg(uid)
                .arg(since),
            QStringLiteral("sql exec INSERT INTO groups_month  (gid, uid, month) SELECT "
                           "getCurrentGid(p.uid, monthFromTimestamp(a.date), p.gid) gid, a.uid, "
                           "monthFromTimestamp(a.date) month  FROM atten a LEFT JOIN people p "
                           "USING(uid) WHERE a.uid=%1 AND monthFromTimestamp(a.date) >= %2 "
                           "GROUP BY monthFromTimestamp(a.date) HAVING gid IS NOT NULL "
                           "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
                           "month=VALUES(month);")
                .arg(uid)
                .arg(since)};
}

QStringList secondBranchJoined(const QString &uids, const QString &queued, const QString &uid)
{
    return {QStringLiteral("sql exec INSERT INTO brape (bid, uid, since) SELECT 2 bid, uid, "
                           "UNIX_TIMESTAMP() since FROM people WHERE uid IN(%1) "
                           "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()")
                .arg(uids),
            QStringLiteral("sql exec SELECT tid FROM term WHERE status > 0 AND bid = 2"),
            QStringLiteral("sql exec INSERT INTO people_term (tid, uid) VALUES (2, %1) "
                           "ON DUPLICATE KEY UPDATE tid=VALUES(tid);")
                .arg(uid),
            QStringLiteral("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, "
                           "created, flags) SELECT 2 tid, 'I' type, 'people_term' ref, 'uid' "
                           "ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, 2 flags FROM people "
                           "WHERE status = 1 AND uid IN(%1);")
                .arg(queued),
            QStringLiteral("sql exec Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 2"),
            QStringLiteral("sql exec SELECT aid FROM bradm WHERE bid = 2"),
            QStringLiteral("sql exec INSERT INTO admins_people (aid, uid) VALUES (3, %1) "
                           "ON DUPLICATE KEY UPDATE uid=VALUES(uid);")
                .arg(uid)};
}
