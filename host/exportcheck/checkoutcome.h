// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that `talvenhr check` has to tell.
#pragma once

#include "host/exportcheck/comparison.h"
#include "host/exportcheck/databasecheck.h"
#include "host/exportcheck/exportcheck.h"

#include <QString>

#include <optional>

/// A check of a file, with what it was compared with.
struct CheckOutcome
{
    QString file;
    FateCounts fates;
    ExportFindings findings; ///< those of the file stand first
    std::array<ColumnFigures, exportColumnCount> columns {};
    QString otherFile; ///< that of `comparison`
    std::optional<ExportComparison> comparison;
    std::optional<DatabaseCounts> database; ///< of its people
    PersonalTexts texts = PersonalTexts::Shown;

    int count(Finding::Severity severity) const { return countOf(findings, severity); }
};

/// In one sentence, what all of it comes to.
QString verdict(const CheckOutcome &outcome);

/// Findings of one kind.
struct FindingGroup
{
    const FindingKind *kind;
    QVector<int> places; ///< in the findings
};

/// The groups, worst first.
QVector<FindingGroup> groupsOf(const ExportFindings &findings);
