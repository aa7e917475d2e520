// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A check of an export in a few words.
#pragma once

#include "host/exportcheck/exportcheck.h"

#include <QVector>

/// The fates of the lines, and one finding for each kind of error and warning, with the number of
/// places and the first of them.
struct ExportGlance
{
    FateCounts fates;
    QVector<Finding> findings;
    bool sawUseless = false; ///< an export without a usable line

    /// Adds what was seen of another export.
    ExportGlance &operator+=(const ExportGlance &other);
};

/// What a check has come to, in a few words.
ExportGlance glanceOf(const ExportCheck &check);
/// Checks the export. The device is open.
ExportGlance glanceAtExport(QIODevice *device, const ExportCheckSettings &settings);
