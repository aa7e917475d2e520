// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Names and texts as they stand in a statement.
#pragma once

#include <QString>

inline QString quotedName(QString name)
{
    return QLatin1Char('`') + name.replace(QLatin1Char('`'), QLatin1String("``"))
        + QLatin1Char('`');
}

/// For a session that takes a backslash for an escape, which is the server's default.
inline QString quotedText(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("''"))
        + QLatin1Char('\'');
}
