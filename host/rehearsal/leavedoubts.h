// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whose leave a running server may look at again.
#pragma once

#include "host/base/failure.h"
#include "host/rehearsal/exportmemory.h"

#include <QSqlDatabase>
#include <QString>
#include <QVector>

/// Somebody of whom the exports alone do not tell whether the server found their leave at rest.
struct LeaveDoubt
{
    SeenPerson person;
    QString reason; ///< a sentence without a full stop
};

/// Those for whom today's database does not prove that their leave was at rest when the server saw
/// them last: people who came, were calculated or had their leave corrected since then. The handle
/// is that of the copy, before the pass. Nobody, where there is no fund of leave.
Failure readLeaveDoubts(const QSqlDatabase &copy, const QVector<SeenPerson> &seen,
                        QVector<LeaveDoubt> *doubts);
