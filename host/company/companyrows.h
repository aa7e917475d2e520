// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows that the attendance database holds of a company.
#pragma once

#include "host/company/company.h"

#include <QStringList>

/// Statements that fill the empty tables of the attendance database. A bid, a tid, an aid is the id
/// of its part of the company; uids count from 1 in the order of the relations. Moments are those
/// of the time zone of this process, which has to be the server's.

/// Branches, groups, terminals, administrators, funds and settings: what is there before anybody is
/// taken on.
QStringList structureRows(const Company &company);

/// What the database knows of its people.
struct PeopleDepth
{
    QDate today; ///< the clock's; nothing is calculated beyond the day before
    int attendanceDays = 0; ///< so many days back, but for Saturdays and Sundays
};

/// The people with memberships, terminals, supervisors, PaM, group plans and months, attendance and
/// leave, as they are once the plugin has taken the export of the company's day and attendance is
/// calculated. Days before the month before today's are locked, some were entered by hand, and with
/// one in fifty people the last three wait for their calculation.
QStringList peopleRows(const Company &company, const PeopleDepth &depth);

/// What the attendance system does at night: it calculates open days, opens the one that begins,
/// and makes those inactive who have left the export. `today` is the seconds of its midnight, or an
/// expression for them.
QStringList nightStatements(const QString &today);

/// Statements for the client, as one transaction without the checks that only cost time in an empty
/// database.
QByteArray loadingScript(const QStringList &statements);
