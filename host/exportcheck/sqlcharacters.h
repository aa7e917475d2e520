// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Characters as the server's lexer sorts them, by their UTF-16 units.
#pragma once

#include <QChar>

#include <cstring>

inline bool isBlank(ushort unit)
{
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

/// The third character of a comment that begins with two hyphens; 0 stands for the end as well.
inline bool isBlankOrControl(ushort unit)
{
    return unit <= ' ' || unit == 0x7f;
}

inline bool isDigit(ushort unit)
{
    return unit >= '0' && unit <= '9';
}

inline bool isHexDigit(ushort unit)
{
    return isDigit(unit) || (unit >= 'a' && unit <= 'f') || (unit >= 'A' && unit <= 'F');
}

inline bool isBinaryDigit(ushort unit)
{
    return unit == '0' || unit == '1';
}

/// Of a name without quotes: every letter beyond ASCII is one to the server, blanks there too.
inline bool isNameUnit(ushort unit)
{
    return isDigit(unit) || (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z')
        || unit == '_' || unit == '$' || unit >= 0x80;
}

inline bool isSign(ushort unit)
{
    return unit != 0 && unit < 0x80 && std::strchr("(),.+-*/%^&|~!<>=@:{}", unit);
}

/// What a character behind a backslash stands for.
inline QChar unescaped(QChar character)
{
    switch (character.unicode()) {
    case '0':
        return QChar(u'\0');
    case 'b':
        return QLatin1Char('\b');
    case 'n':
        return QLatin1Char('\n');
    case 'r':
        return QLatin1Char('\r');
    case 't':
        return QLatin1Char('\t');
    case 'Z':
        return QChar(u'\x1a');
    default:
        return character;
    }
}
