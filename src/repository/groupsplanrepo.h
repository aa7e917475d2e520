// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Which person is in which work group from which month on: `groups_plan` and `groups_month`.
#pragma once

#include "repository/groupsplan.h"

#include <QDate>
#include <QObject>
#include <QSqlDatabase>

/// Writes the plan of work groups and refreshes the months that follow from it.
///
/// The worker owns the one of the plugin; it belongs to the thread of the connection that setDb()
/// gives it, and neither opens nor closes that connection. Statement failures go to the log
/// (critical), whatever the log level, and to the caller as false or 0. Months are plain numbers
/// yyyyMM, such as 202310.
class GroupsPlanRepo : public QObject
{
    Q_OBJECT

public:
    explicit GroupsPlanRepo(QObject *parent = nullptr);

    void setDb(const QSqlDatabase &database);
    /// Whether add() and del() refresh the months of the person. On after construction.
    void setAutoUpdateMonth(bool update);

    /// True when a row was written. False also for a group or person of 0, without a statement, and
    /// for a row that was there already.
    bool add(const GroupsPlan &plan);
    /// True when a row was removed.
    bool del(const GroupsPlan &plan);
    /// Derives `groups_month` from the attendance and the plan, from the month on. True when a row
    /// has changed; false also for a person or month of 0, without a statement.
    bool updateGroupsMonth(uint uid, uint month);

    /// The group by the latest plan that has begun by the month (0: the current one, by the
    /// server's clock). With `fallback` the person's own group where the plan has none. 0 when
    /// there is none.
    uint getCurrentGid(uint uid, uint month, bool fallback);

    /// The month of a moment in local time.
    static uint monthFromTime(uint time);
    /// The month of a date, 0 for a null date.
    static uint monthFromDate(const QDate &date);

    /// Above 1 every operation but getCurrentGid() is written to the log. For the owner to set.
    quint8 logLevel = 0;

private:
    QSqlDatabase db;
    bool autoUpdateMonth = true;
};
