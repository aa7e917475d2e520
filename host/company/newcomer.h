// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Somebody who is taken on.
#pragma once

#include "host/company/company.h"
#include "host/company/draw.h"

/// A person with a name, a branch of the company, a calendar that the branch has, and some leave;
/// in the export, and without a supervisor. The company has at least one branch with a number, and
/// as its last one without; its branches take turns with the master groups.
Employment newcomer(const Company &company, uint number, const QDate &begin, Draw *draw);

/// Finds another branch, calendar, type and leave for a relation that begins on its first day.
void settle(const Company &company, Employment *employment, Draw *draw);
