// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One pass over a small company as a table: its calls of the database, and what each owes when it
// fails.
#pragma once

#include "support/faults/failuretable.h"

/// The forced first pass of a worker over these people, of whom it has seen only G and I before;
/// what the database answers is at Company.
///
/// | | number | who | branch | what happens to the person |
/// |---|---|---|---|---|
/// | A | 9001 | new, type 11 | 10 | all that a new person needs, and attendance reopened |
/// | B | 9002 | new, type 51 | none | added and enrolled; stands on PaM's list already |
/// | C | 9003 | new, ended | 10 | nothing |
/// | D | 9004 | changes the branch | 20 | updated, balance, supervisor, joins, reopened |
/// | E | 9005 | member, new calendar | 10 | the row is up to date; planned, reopened |
/// | F | 9006 | ended, type 65 | 10 | updated, supervisor; the balance is right |
/// | G | 9007 | as last time | 20 | looked at because the pass is forced |
/// | H | 9008 | overdrawn | 10 | updated, balance, joins; reopened because of the balance |
/// | I | 9009 | as last time | 20 | has waited for the branch, and joins |
PassRows passTable();
