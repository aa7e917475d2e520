// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Marks at people with whom the real pass may do otherwise.
#pragma once

#include "host/changes/changes.h"
#include "host/rehearsal/leavedoubts.h"

#include <QHash>

/// Those whose leave the pass could look at: where it is not at rest, what the server remembers of
/// it makes no difference.
QVector<LeaveDoubt> stillOpen(const QVector<LeaveDoubt> &doubts, const Changes &changes);

/// Marks them. `otherwise` is what a forced pass over the unchanged ones does after the pass; whom
/// it does nothing with is not in doubt.
void markDoubts(const QVector<LeaveDoubt> &doubts, const Changes &otherwise, Changes *changes);

/// Marks people, by pid, who are to have a membership or a plan that an earlier export asked for
/// already.
void markUndone(const QHash<qlonglong, Person> &undone, Changes *changes);
