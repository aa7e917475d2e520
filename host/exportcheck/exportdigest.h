// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is kept of an export to compare its lines with each other and with another export.
#pragma once

#include "export/exportline.h"

#include <QString>
#include <QVector>

#include <array>
#include <vector>

/// A line that was taken, without its texts.
struct DigestLine
{
    int line = 0;
    uint number = 0; ///< OsobniCislo
    uint ordinal = 0;
    uint pid = 0;
    uint supervisor = 0; ///< 0 where the plugin keeps no mark
    std::array<uint, exportColumnCount> cells {}; ///< a hash of each; 0 for an empty one

    /// Number and ordinal: nobody else has both.
    quint64 relation() const { return (static_cast<quint64>(number) << 32) | ordinal; }
    QString pamId() const { return QStringLiteral("%1.%2").arg(number).arg(ordinal); }
};

/// About 100 bytes a line.
using ExportDigest = std::vector<DigestLine>;

/// The plugin keeps the supervisor's mark of this person.
bool keepsSupervisor(const EmployeeRecord &record);

DigestLine digestOf(const ExportLine &line, int lineNumber);

/// The places of the lines in the digest, ordered by relation; lines of one relation stay in the
/// order of the file.
std::vector<int> orderedByRelation(const ExportDigest &digest);
