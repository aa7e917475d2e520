// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The next pass of a server that has taken exports before.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/database/connection.h"
#include "host/rehearsal/exportmemory.h"
#include "host/rehearsal/heldrun.h"
#include "host/rehearsal/leavedoubts.h"
#include "host/rehearsal/rehearsal.h"
#include "host/rehearsal/rehearsalsite.h"

#include <QHash>

/// Lets one plugin take the earlier exports first, while the copy can only be read: what the plugin
/// remembers of them does not depend on what it could write, and the copy stays as it is. Then
/// comes the pass that is rehearsed.
///
/// The memory differs from the real server's where that found another database at its passes. Who
/// may be concerned is marked; where the other outcome can be had, a forced pass over these people
/// alone gives it, as it looks at leave again in the same way.
///
/// Owned by a rehearsal, used once and on its thread.
class ServerLife
{
public:
    /// `site` has been made, and `administrator` may do everything on the copy.
    ServerLife(const RehearsalWishes &rehearsalWishes, const RehearsalSite *site,
               const ConnectionParameters &administrator);

    void setInterruption(const std::function<bool()> &wanted) { plugin.setInterruption(wanted); }

    /// `arguments` are those of the process. The changes are those of the pass, with its marks.
    Failure run(const QStringList &arguments, Changes *changes);

private:
    Failure prepare();
    Failure replay(const QStringList &arguments);
    Failure noteUndone();
    Failure mark(Changes *changes);
    Failure runOtherwise(const QVector<LeaveDoubt> &doubts, Changes *otherwise);
    Failure commitEach() const;
    Failure letWrite(bool write) const;

    const RehearsalWishes wishes;
    const RehearsalSite *const site;
    const ConnectionParameters parameters;
    Connection administrator;
    HeldRun plugin;
    ExportMemory memory;
    QVector<SeenPerson> seen;
    QVector<LeaveDoubt> doubts;
    QHash<qlonglong, Person> undone; ///< by pid: they lack a membership or plan
};
