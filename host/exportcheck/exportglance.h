// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A quick look at an export: what becomes of its lines, and what in it is not what it seems.
#pragma once

#include "host/base/finding.h"

#include <QVector>

class QIODevice;

/// How many lines have which fate. They add up to the lines of the file.
struct FateCounts
{
    int taken = 0;
    int header = 0; ///< the first line, if it has the names of the columns
    int blank = 0;
    int dropped = 0;

    int lines() const { return taken + header + blank + dropped; }
    FateCounts &operator+=(const FateCounts &other);
};

/// What a glance has seen: one finding for each kind of matter, with the number of places and the
/// first of them.
struct ExportGlance
{
    FateCounts fates;
    QVector<Finding> findings;
    bool sawUseless = false; ///< an export without a usable line

    /// Adds what was seen of another export.
    ExportGlance &operator+=(const ExportGlance &other);
};

/// Reads the export with the plugin's own reader. The device is open.
ExportGlance glanceAtExport(QIODevice *device);
