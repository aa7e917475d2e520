// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A folder that keeps the changes of passes, a file for each.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"

/// Makes the folder, for its owner only, if it is not there; whom an existing one is open to stays
/// as it is. Fails where no file can be made in it.
Failure makeChangesFolder(const QString &folder);

/// A path that is free: moment (UTC) and number of the last pass, such as
/// "FOLDER/20261122T124002Z-1.changes.json".
QString newChangesPath(const QString &folder, const ChangesHeader &header);
