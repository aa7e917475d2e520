// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the plugin will make of each line of an export, and what in it is damaged.
#pragma once

#include "host/exportcheck/exportdigest.h"
#include "host/exportcheck/exportfinding.h"
#include "host/exportcheck/statementtrial.h"

#include <QDate>

#include <functional>

class DatabaseCheck;
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

/// What a check has to know besides the file.
struct ExportCheckSettings
{
    QDate today; ///< decides who has ended
    StatementTrial *trial = nullptr; ///< tries the texts; null leaves them untried
    DatabaseCheck *database = nullptr; ///< is shown the lines that are taken; may be null
    std::function<void(qint64 bytes)>
        progress; ///< told now and then how much was read; may be null
};

/// What a check has come to.
struct ExportCheck
{
    FateCounts fates;
    ExportFindings findings; ///< by line; those of the file stand first
    ExportDigest digest; ///< of the lines taken

    bool isUseless() const { return fates.taken == 0; }
};

/// Reads the export with the plugin's own reader. The device is open, and can be read again.
ExportCheck checkExport(QIODevice *device, const ExportCheckSettings &settings);
