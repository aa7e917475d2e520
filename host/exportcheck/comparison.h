// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export against the last good one.
#pragma once

#include "host/exportcheck/exportdigest.h"
#include "host/exportcheck/exportfinding.h"

class QIODevice;

/// What has become of the cells of a column.
struct ColumnFigures
{
    int filled = 0;
    int distinct = 0; ///< different cells, not counting empty ones
    int filledBefore = 0;
    int distinctBefore = 0;
    int changed = 0; ///< among the people of both exports
};

/// What two exports differ in.
struct ExportComparison
{
    int before = 0; ///< people of the other export
    int common = 0;
    int gained = 0;
    int lost = 0;
    int changed = 0; ///< people of both with a cell that differs
    std::array<ColumnFigures, exportColumnCount> columns;
    ExportFindings findings; ///< columns and people that have changed beyond what a day brings
};

/// Of the whole, rounded down; 0 of nothing.
int percent(int part, int whole);

/// The lines of an export that are taken. The device is open.
ExportDigest readDigest(QIODevice *device);

/// Filled and distinct cells only.
std::array<ColumnFigures, exportColumnCount> columnFigures(const ExportDigest &digest);

ExportComparison compareExports(const ExportDigest &now, const ExportDigest &before);
