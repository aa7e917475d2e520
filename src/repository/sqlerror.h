// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The failure of a query as printf arguments, so that each message stands whole where it is logged.
#pragma once

#include <QSqlError>
#include <QSqlQuery>

/// For "%s": the text of the query's last error.
#define SQL_TEXT(query) qPrintable((query).lastError().text())

/// For "[%s]: %s": the server's own error code and the text of the query's last error.
#define SQL_CODE_AND_TEXT(query) qPrintable((query).lastError().nativeErrorCode()), SQL_TEXT(query)

/// The server's own error code as a number, -1 when it gave none.
inline int sqlErrorNumber(const QSqlError &error)
{
    return error.nativeErrorCode().isEmpty() ? -1 : error.nativeErrorCode().toInt();
}

/// For "[%i]: %s": the server's own error code as a number and the text of the query's last error.
#define SQL_NUMBER_AND_TEXT(query) sqlErrorNumber((query).lastError()), SQL_TEXT(query)
