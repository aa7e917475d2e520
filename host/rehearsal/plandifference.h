// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Why a pass is not the one that was planned.
#pragma once

#include "host/changes/changes.h"

/// Lines: what is read otherwise than at the time of the plan's hash, and who would change now.
/// Which people were planned, a hash does not tell. At most ten of them by name.
QStringList planDifference(const QString &plan, const Changes &now);
/// Lines: what is read otherwise, and the people with whom the planned changes and those of now do
/// otherwise, at most ten by name.
QStringList planDifference(const Changes &planned, const Changes &now);
