// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A cell of a table as a value of its own kind.
#pragma once

#include <QVariant>

/// The value in one of five kinds, whatever type the driver has for its column: NULL (an invalid
/// variant), a whole number (qlonglong; qulonglong beyond that), a number with a fraction (double),
/// a text (QString), bytes (QByteArray). Dates and times of the database's own types become texts.
QVariant plainValue(const QVariant &value);

/// Less than 0, 0, or more than 0. Of two kinds NULL comes first, then numbers, texts, bytes; "1"
/// is not 1. Texts stand in the order of their code points. For results of plainValue() only.
int compareValues(const QVariant &one, const QVariant &other);
