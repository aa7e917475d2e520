// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that a caller learns of a database through Qt.
#pragma once

#include <QSqlDatabase>
#include <QStringList>

/// Opens the handle, makes a table, adds and reads rows in every way, runs transactions and
/// statements that fail, asks the driver for what it knows, drops the table and closes the handle.
/// The answers come as texts: what two handles to one database tell can be compared.
///
/// `identity` is what makes a column of this database number its rows, in its own words.
QStringList experienceOf(QSqlDatabase database, const QString &identity);
