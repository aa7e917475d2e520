// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The attendance database, as far as a run has to do with it by itself.
#pragma once

#include "host/base/failure.h"

class QSqlDatabase;

/// Whether the tables are there without which no pass can do its work, and may be read. The handle
/// is open.
Failure checkAttendance(const QSqlDatabase &database);

/// Makes the next pass a forced one. The handle is open.
Failure forceNextPass(const QSqlDatabase &database);
