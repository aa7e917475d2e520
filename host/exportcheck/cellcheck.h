// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Cells that the plugin reads as something else than what stands there.
#pragma once

#include "host/exportcheck/exportfinding.h"

class QDate;
struct ExportLine;

/// Appends what is wrong with the numbers, dates and the balance of a line that was taken, seen on
/// the day. Quick for a sound line.
void checkCells(const ExportLine &line, int lineNumber, const QDate &today,
                ExportFindings *findings);

/// The form that a cell seems to have which is no date for the plugin.
QString dateFault(const QString &cell);
