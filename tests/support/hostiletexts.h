// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Names that nobody has: made of what means something in a statement.
#pragma once

#include "export/employeerecord.h"
#include "host/company/draw.h"

/// A text of a few pieces: quotes, backslashes, markers, comments, semicolons, words of SQL,
/// letters.
QString hostileText(Draw *draw);

/// An employee with such texts in one, two or all columns of text, and common ones in the others.
EmployeeRecord hostileEmployee(Draw *draw);
