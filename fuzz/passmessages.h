// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass may log, and at which level.
#pragma once

#include <QString>

#include <optional>

/// The lowest log level at which a pass says this: 0 for a warning or an error that does not depend
/// on the level, nothing for a message that no pass owes. A message in the form of MessageList; the
/// error of the database, which may stand alone in one, is given as the database tells it.
std::optional<int> lowestLevelOf(const QString &message, const QString &databaseError);
