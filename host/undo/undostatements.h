// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Statements of an undo that do more than put a row back.
#pragma once

#include "host/undo/undoplan.h"

/// A correction of leave. All are SQL.
struct LeaveCorrection
{
    QString condition; ///< its row as the pass has left it
    QString day; ///< in seconds since the epoch
    QString was; ///< value before the pass; 0 where there was none
    QString now; ///< value that the pass has left
};

/// On the day of the correction its row gets the value of before. Later a move of that day makes
/// up for it, unless `later`, a SELECT of what later corrections come to, is something: then the
/// balance is that of another export, or was given back before.
QVector<UndoStatement> leaveStatements(const LeaveCorrection &correction, const QString &later);

/// Behind `removal`, which takes the person off the terminal: the notice and the mark that the
/// plugin's own repositories write for such a case. `uid` and `tid` are SQL.
QVector<UndoStatement> terminalStatements(const QString &removal, const QString &tid,
                                          const QString &uid);

/// Tell all terminals that hold the person in @uid, as the plugin does.
QVector<UndoStatement> noticeStatements();

/// Somebody new, in @uid, goes, or becomes inactive where one of the references holds. With null
/// nobody knows them: they become inactive.
QVector<UndoStatement> endStatements(const QVector<PersonReference> *references);
