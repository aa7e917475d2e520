// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The cells of the export file. Nothing is trimmed, and what cannot be read is no error.
#pragma once

#include "export/daycache.h"

#include <QDate>
#include <QString>

/// Also for the parts of a pamId. 0 for an empty cell, one that is no number, and a number beyond
/// 32 bits.
uint numberFromCell(const QStringRef &cell);
/// 0 for a cell that is no number.
double balanceFromCell(const QStringRef &cell);

/// Dates by the digits of their cells.
using DateCache = DayCache<qint64>;

/// The date of a cell that states it with its time; invalid when the cell has any other form, also
/// that of a date without a time.
QDate dateFromCell(const QStringRef &cell, DateCache *cache);
/// The date of a text in the format of a date and time; invalid when the text does not match. A
/// moment that the time zone does not have is taken or refused as the release of Qt has it.
QDate dateFromText(const QString &text, const QString &format);
