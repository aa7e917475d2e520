// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Which person is in which work group from which month on: `groups_plan` and `groups_month`.
#include "repository/groupsplanrepo.h"

#include "repository/sqlerror.h"

#include <QDateTime>
#include <QVariant>

namespace {

QString toText(const GroupsPlan &plan)
{
    return QStringLiteral("G: %1, U: %2, S: %3").arg(plan.gid).arg(plan.uid).arg(plan.since);
}

} // namespace

GroupsPlanRepo::GroupsPlanRepo(QObject *parent) :
    QObject(parent)
{ }

void GroupsPlanRepo::setDb(const QSqlDatabase &database)
{
    db = database;
}

void GroupsPlanRepo::setAutoUpdateMonth(bool update)
{
    autoUpdateMonth = update;
}

bool GroupsPlanRepo::add(const GroupsPlan &plan)
{
    if (logLevel > 1)
        qDebug("GroupsPlanRepo::add(%s)", qPrintable(toText(plan)));
    if (plan.gid == 0 || plan.uid == 0)
        return false;

    QSqlQuery query(db);
    const QString statement = QStringLiteral(
                                  "INSERT INTO groups_plan (gid, uid, since) VALUES(%1, %2, %3) "
                                  "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
                                  "since=VALUES(since);")
                                  .arg(plan.gid)
                                  .arg(plan.uid)
                                  .arg(plan.since);
    if (!query.exec(statement)) {
        qCritical("GroupsPlanRepo::add - ERROR[%i]: %s", SQL_NUMBER_AND_TEXT(query));
        return false;
    }
    if (query.numRowsAffected() <= 0)
        return false;

    if (autoUpdateMonth)
        updateGroupsMonth(plan.uid, plan.since);
    return true;
}

bool GroupsPlanRepo::del(const GroupsPlan &plan)
{
    if (logLevel > 1)
        qDebug("GroupsPlanRepo::del(%s)", qPrintable(toText(plan)));
    if (plan.gid == 0 || plan.uid == 0)
        return false;

    QSqlQuery query(db);
    const QString statement
        = QStringLiteral("DELETE FROM groups_plan WHERE gid = %1 AND uid = %2 AND since = %3")
              .arg(plan.gid)
              .arg(plan.uid)
              .arg(plan.since);
    if (!query.exec(statement)) {
        qCritical("GroupsPlanRepo::del - ERROR[%i]: %s", SQL_NUMBER_AND_TEXT(query));
        return false;
    }
    if (query.numRowsAffected() <= 0)
        return false;

    if (autoUpdateMonth)
        updateGroupsMonth(plan.uid, plan.since);
    return true;
}

bool GroupsPlanRepo::updateGroupsMonth(uint uid, uint month)
{
    if (logLevel > 1)
        qDebug("GroupsPlanRepo::updateGroupsMonth(%u, %u)", uid, month);
    if (uid == 0 || month == 0)
        return false;

    QSqlQuery query(db);
    // Two blanks after groups_month and after month.
    const QString statement
        = QStringLiteral(
              "INSERT INTO groups_month  (gid, uid, month) "
              "SELECT getCurrentGid(p.uid, monthFromTimestamp(a.date), p.gid) gid, a.uid, "
              "monthFromTimestamp(a.date) month  "
              "FROM atten a LEFT JOIN people p USING(uid) "
              "WHERE a.uid=%1 AND monthFromTimestamp(a.date) >= %2 "
              "GROUP BY monthFromTimestamp(a.date) HAVING gid IS NOT NULL "
              "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
              "month=VALUES(month);")
              .arg(uid)
              .arg(month);
    if (!query.exec(statement)) {
        qCritical("GroupsPlanRepo::updateGroupsMonth - ERROR[%i]: %s", SQL_NUMBER_AND_TEXT(query));
        return false;
    }
    return query.numRowsAffected() > 0;
}

uint GroupsPlanRepo::getCurrentGid(uint uid, uint month, bool fallback)
{
    if (uid == 0)
        return 0;

    QString condition = QStringLiteral("WHERE uid = %1 ").arg(uid);
    condition += month != 0 ? QStringLiteral("AND since <= %1").arg(month)
                            : QStringLiteral("AND since <= DATE_FORMAT(NOW(), '%Y%m')");
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("SELECT gid FROM groups_plan ") + condition
                    + QStringLiteral(" ORDER BY since DESC LIMIT 1"))) {
        qCritical("GroupsPlanRepo::getCurrentGid [groups_plan] - ERROR[%i]: %s",
                  SQL_NUMBER_AND_TEXT(query));
        return 0;
    }
    const uint planned = query.next() ? query.value(0).toUInt() : 0;
    if (planned != 0 || !fallback)
        return planned;

    QSqlQuery fallbackQuery(db);
    if (!fallbackQuery.exec(QStringLiteral("SELECT gid FROM people WHERE uid = %1").arg(uid))) {
        qCritical("GroupsPlanRepo::getCurrentGid [people] - ERROR[%i]: %s",
                  SQL_NUMBER_AND_TEXT(fallbackQuery));
        return 0;
    }
    return fallbackQuery.next() ? fallbackQuery.value(0).toUInt() : 0;
}

uint GroupsPlanRepo::monthFromTime(uint time)
{
    return QDateTime::fromTime_t(time).toString(QStringLiteral("yyyyMM")).toUInt();
}

uint GroupsPlanRepo::monthFromDate(const QDate &date)
{
    return date.toString(QStringLiteral("yyyyMM")).toUInt();
}
