// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a report: a page of text, or "talvenhr.status/1".
#pragma once

#include "host/report/report.h"
#include "host/status/concerns.h"

/// What there is to say, with labels; names nobody.
Section statusFigures(const Status &status);
/// One screen, but for the people who are lost or wait: so many of each.
Report statusPage(const Status &status, PersonalTexts texts, int shownPeople = 10);
/// The commands that bring back what is lost, whole lines to be copied; empty if nothing is.
QString recoveryText(const Status &status, PersonalTexts texts);
/// All of it; docs/status.schema.json describes it.
Report statusDocument(const Status &status, PersonalTexts texts);

/// 0 where all is well; 1 otherwise, 3 without the database that is named.
ExitCode exitCodeOf(const Status &status);
