// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts as a command of the shell spells them.
#pragma once

#include <QString>

/// 'text', one word whatever it holds.
inline QString shellWord(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''"))
        + QLatin1Char('\'');
}
