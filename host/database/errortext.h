// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a database says when it refuses.
#pragma once

#include <QSqlError>
#include <QString>
#include <QStringList>

/// What the server or the client library says, without the driver's own words if there are others.
inline QString errorText(const QSqlError &error)
{
    const QString text = error.databaseText().simplified();
    return text.isEmpty() ? error.text().simplified() : text;
}

/// The server refuses because the login has no right to it: to the database (1044), to a command on
/// a table (1142) or on a column (1143), to what only administrators may do (1227), to a routine
/// (1370).
inline bool isRightDenied(const QSqlError &error)
{
    const QStringList numbers {QStringLiteral("1044"), QStringLiteral("1142"),
                               QStringLiteral("1143"), QStringLiteral("1227"),
                               QStringLiteral("1370")};
    return numbers.contains(error.nativeErrorCode());
}
