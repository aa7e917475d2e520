// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the database tells.
#pragma once

#include "host/status/status.h"

class QSqlDatabase;

/// Adds what the open database tells, and what is lost of the rehearsals. Reads only.
Failure addDatabase(const QSqlDatabase &database, Status *status);
