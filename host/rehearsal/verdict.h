// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal comes to.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"

/// Those of the limits that are exceeded.
QVector<LimitOutcome> exceededLimits(const Changes &changes);
/// The export has no line that the plugin takes.
bool isExportUseless(const Changes &changes);

int tellingPeople(const Changes &changes);

/// One sentence: whether the pass may go through.
QString verdictText(const Changes &changes);
/// The same with numbers in one line, and with the plan unless the pass is refused.
QString verdictLine(const Changes &changes);
/// 5 beyond a limit, 1 for errors or a useless export, 6 if wanted and something would change.
ExitCode verdictCode(const Changes &changes, bool tellsChanges);
