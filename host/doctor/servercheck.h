// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether a pass can work on a database server.
#pragma once

#include "host/doctor/doctor.h"

class QSqlDatabase;
class ServerVariables;

/// Looks at the server behind an open handle: its kind, modes, letters, clock, limits, cluster, the
/// options of the connection, and who runs the plugin there. Only reads, with the rights of any
/// login. `runsCommand`: passes run an export command, during which the connection rests.
Diagnosis serverDiagnosis(const QSqlDatabase &database, bool runsCommand);

// Its parts.
Diagnosis modeDiagnosis(const ServerVariables &variables);
Diagnosis limitDiagnosis(const ServerVariables &variables, bool runsCommand);
Diagnosis clusterDiagnosis(const ServerVariables &variables);
Diagnosis connectionDiagnosis(const QString &connectOptions);
/// `folder` is the server's data folder, if it lies on this machine.
Diagnosis spaceDiagnosis(const QString &folder, qint64 freeBytes);
/// Of what a pass puts into lists; the most digits of each kind of number.
struct ListSizes
{
    qint64 people = 0;
    qint64 pids = 0; ///< letters of all pids, with their commas
    int uidDigits = 0;
    int tidDigits = 0;
    int aidDigits = 0;
    qint64 admins = 0; ///< the most of any branch
};
/// The longest list, if all people came to one branch, against the largest statement.
Diagnosis packetDiagnosis(qint64 largest, const ListSizes &sizes);
Diagnosis letterDiagnosis(const QSqlDatabase &database, const ServerVariables &variables);
Diagnosis clockDiagnosis(const QSqlDatabase &database);
