// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A finding at its place in an export.
#pragma once

#include "host/catalogue/findings.h"

#include <QStringList>
#include <QVector>

/// Of these there may be millions: the texts are made when somebody reads them.
struct ExportFinding
{
    const FindingKind *kind = nullptr;
    int line = 0; ///< counts from 1; 0 for what concerns the file
    int column = 0; ///< counts from 1; 0 for the whole line
    QStringList values; ///< for the places of the kind's texts
    QVector<int> lines; ///< all lines that it is about, where these are several; the last is `line`
};

Q_DECLARE_TYPEINFO(ExportFinding, Q_MOVABLE_TYPE);

using ExportFindings = QVector<ExportFinding>;

/// Whether the names and other texts of people may be told.
enum class PersonalTexts {
    Shown,
    Hidden, ///< each is replaced by an ellipsis
};

/// The finding with its texts, about "line 7" or the file.
Finding told(const ExportFinding &found, PersonalTexts texts = PersonalTexts::Shown);

/// The name of its column; empty for a whole line.
QString columnName(const ExportFinding &found);

/// How many findings there are of a severity.
int countOf(const ExportFindings &findings, Finding::Severity severity);
