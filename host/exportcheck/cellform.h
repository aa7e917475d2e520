// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What stands in a cell, beside what the plugin's reader makes of it.
#pragma once

#include <QString>

struct ExportLine;

/// The cells of the line are the names of the columns.
bool isHeader(const ExportLine &line);

/// The column holds dates.
bool isDateColumn(int column);

/// The cell holds a date or number that the reader takes for none, or for another number. Cells of
/// text are never lost.
bool isLost(const ExportLine &line, int column);

/// Which other sign than '|' seems to separate the cells of a line; empty if none does. Ends
/// without a full stop.
QString separatorFault(const QString &line);
