// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a database says when it refuses.
#pragma once

#include <QSqlError>
#include <QString>

/// What the server or the client library says, without the driver's own words if there are others.
inline QString errorText(const QSqlError &error)
{
    const QString text = error.databaseText().simplified();
    return text.isEmpty() ? error.text().simplified() : text;
}
