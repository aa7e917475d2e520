// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Values as a statement of SQL spells them, whatever the server's modes are.
#pragma once

#include <QString>
#include <QVariant>

/// A literal for a result of plainValue(). A text is spelt in hexadecimal digits where it holds a
/// backslash, which not every server takes for the same, or what nobody sees, such as a control
/// character or a mark that turns the direction of a text.
QString sqlValue(const QVariant &value);

/// The condition that the column holds this very value: NULL-safe, letters and blanks told apart
/// whatever the collation, and a number with a fraction as the server shows it. For a connection
/// that speaks utf8mb4.
QString holdsValue(const QString &column, const QVariant &value);
