// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The lines in which rows travel from one server to another.
#pragma once

#include "host/copy/copiedschema.h"

bool isWholeNumber(const CopiedColumn &column);

/// The SQL expression that makes a line of a row, with its end. It is NULL where the text of a
/// value is beyond what the server makes.
QString lineExpression(const CopiedTable &table);

/// What LOAD DATA is told of such lines, from INTO on. They depend on no character set, and on no
/// time zone provided that the session that takes them has the time zone +00:00.
QString loadingOf(const CopiedTable &table);
