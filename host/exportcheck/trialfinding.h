// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A trial of texts as a finding.
#pragma once

#include "host/exportcheck/exportfinding.h"
#include "host/exportcheck/statementtrial.h"

struct ExportLine;

/// What the text of a cell does to a statement, as the finding that it is; the trial is of a
/// column.
ExportFinding findingOf(const TextTrial &trial, const ExportLine &line, int lineNumber);
