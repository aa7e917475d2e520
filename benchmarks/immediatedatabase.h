// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers at once.
#pragma once

#include <QSqlDatabase>

/// A handle, not open, on a driver that has the answer to each statement of a pass of company()
/// ready. It keeps nothing for an employee: rows are made as they are read.
QSqlDatabase immediateHandle();
