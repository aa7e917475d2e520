// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the passes of a run change, on standard output.
#pragma once

#include "host/base/failure.h"
#include "host/database/connection.h"
#include "host/database/snapshot.h"

/// Keeps a snapshot of what passes touch, and prints what has become of it. What others write
/// meanwhile is told as well.
///
/// Owned by the run and used on its thread, with a connection of its own that is open only within
/// an operation.
class ChangeWatch
{
public:
    ChangeWatch();

    /// Takes the first snapshot, before any pass. The user needs the right to read all that a pass
    /// touches, which is more than the plugin needs.
    Failure begin(const ConnectionParameters &parameters);
    /// Prints the changes since the snapshot before, which come from the passes up to this number.
    /// Nothing if it has been shown. After a failure of the database the changes come with the next
    /// pass; ExitErrors tells that standard output is lost. What a
    /// pass has written that began before the snapshot could is shown with the one before.
    Failure show(int pass);

private:
    Failure read(Snapshot *snapshot);

    Connection connection;
    Snapshot shown;
    int shownPass = 0;
};
