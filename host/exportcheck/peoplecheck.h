// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// People of an export: against the day, and against each other.
#pragma once

#include "host/exportcheck/exportdigest.h"
#include "host/exportcheck/exportfinding.h"

#include <QDate>

/// Appends what is odd about the person of a line that was taken, seen on the day.
void checkPerson(const EmployeeRecord &record, int lineNumber, const QDate &today,
                 ExportFindings *findings);

/// A personal number that is not spelled as numbers are.
struct OddSpelling
{
    int line = 0;
    int column = 0; ///< counts from 1
    uint number = 0;
    QString text;
};

/// What shows only when all lines are there: people twice, shared keys, supervisors, spellings. In
/// the order of the kinds.
ExportFindings checkPeople(const ExportDigest &digest, const QVector<OddSpelling> &spellings);
