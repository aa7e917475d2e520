// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Numbers that may be absent, as statements state them.
#pragma once

#include <QString>

/// Decimal, or "NULL" for 0.
inline QString numberToSql(uint number)
{
    return number == 0 ? QStringLiteral("NULL") : QString::number(number);
}
