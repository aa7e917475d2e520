// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts from anywhere, fit for a terminal.
#include "host/base/oneline.h"

bool turnsDirection(QChar character)
{
    const ushort code = character.unicode();
    return code == 0x200e || code == 0x200f || code == 0x061c || (code >= 0x202a && code <= 0x202e)
        || (code >= 0x2066 && code <= 0x2069);
}

QString oneLine(const QString &text)
{
    QString line;
    line.reserve(text.size());
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code == '\n')
            line += QLatin1String("\\n");
        else if (code == '\t')
            line += QLatin1String("\\t");
        else if (code == '\r')
            line += QLatin1String("\\r");
        else if (code < 0x20 || (code >= 0x7f && code < 0xa0))
            line += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        else if (turnsDirection(character))
            line += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        else
            line += character;
    }
    return line;
}
