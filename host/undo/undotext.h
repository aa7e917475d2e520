// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plan of undo as a script, and what became of it in words.
#pragma once

#include "host/undo/undorun.h"

/// A script for a client, with comments of one line each: which pass it is, how much of what kind
/// is taken back, what stays, how to go on, and who and what each statement is about. With
/// outcomes, one for each step, it marks what is left alone or back already; without any, nobody
/// has looked.
QString undoScript(const Changes &changes, const UndoPlan &plan, const UndoOutcomes &outcomes);

/// What comes back, counted, and what is left alone, one by one, in lines of at most `width`
/// characters.
QString outcomeText(const UndoPlan &plan, const UndoOutcomes &outcomes, int width);
/// What stays of the pass, and how to go on, likewise.
QString afterwardsText(const UndoPlan &plan, const UndoOutcomes &outcomes, int width);

/// The one line about a pass of which nothing is left to be taken back.
QString alreadyBackText(const UndoPlan &plan, const ChangesHeader &header);
/// Which pass it was.
QString passText(const ChangesHeader &header);
