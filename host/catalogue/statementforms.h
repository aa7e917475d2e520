// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The forms of the statements of a pass, and what each needs.
#pragma once

#include "host/catalogue/statements.h"

#include <vector>

/// A row of the table of statements; a statement of two forms has two.
struct StatementForm
{
    PassStatement statement;
    const char *needs; ///< "SELECT people branches, EXECUTE midnightFromTs"
    NamingPlace named;
    const char *form; ///< see TextForm
};

/// Of two forms that fit one text the first one counts.
const std::vector<StatementForm> &statementForms();
