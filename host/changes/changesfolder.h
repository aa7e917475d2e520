// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A folder that keeps the changes of passes, a file for each.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"

/// A path that is free: moment (UTC) and number of the last pass, such as
/// "FOLDER/20261122T124002Z-1.changes.json".
QString newChangesPath(const QString &folder, const ChangesHeader &header);

/// Reads the changes of a pass of this number. Fails unless the folder has one file of such a pass.
Failure readChangesOfPass(const QString &folder, int pass, Changes *changes);
