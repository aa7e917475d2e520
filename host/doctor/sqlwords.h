// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Names and texts as a statement of SQL spells them.
#pragma once

#include <QString>
#include <QStringList>

/// `people`
inline QString quotedName(QString name)
{
    return QLatin1Char('`') + name.replace(QLatin1Char('`'), QLatin1String("``"))
        + QLatin1Char('`');
}

/// `uid`, `date`
inline QString quotedNames(const QStringList &names)
{
    QStringList quoted;
    for (const QString &name : names)
        quoted.append(quotedName(name));
    return quoted.join(QStringLiteral(", "));
}

/// 'text', under both settings of NO_BACKSLASH_ESCAPES if it holds no backslash.
inline QString quotedText(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("''"))
        + QLatin1Char('\'');
}

/// 'user'@'host', of what CURRENT_USER() says.
inline QString quotedAccount(const QString &account)
{
    const int at = account.lastIndexOf(QLatin1Char('@'));
    return at < 0
        ? quotedText(account)
        : quotedText(account.left(at)) + QLatin1Char('@') + quotedText(account.mid(at + 1));
}
