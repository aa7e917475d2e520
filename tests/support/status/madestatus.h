// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Exports, passes and losses that a test makes up.
#pragma once

#include "host/changes/passnotes.h"
#include "support/status/gatefolder.h"

/// The record with a rehearsal of so many people who are new.
GateRecord rehearsed(GateRecord record, int added, int errors = 0);
/// The record with a reason: "too many | ends".
GateRecord refused(GateRecord record);
/// A real pass so many hours ago, in the archive.
void keepPass(const GateFolder &folder, int hoursAgo, const PassTold &told);
/// A pass with an error of the code 1062, and two who wait.
PassTold toldError();

/// "CRITICAL text"; empty where there is none.
QString firstConcern(const Status &status);

/// Eva Malá, 1001.1, whom an export of 10:00 should have added.
LostPerson lostEva();
