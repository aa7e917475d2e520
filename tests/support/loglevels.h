// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is written at which log level.
#pragma once

#include <QStringList>

#include <initializer_list>

/// Adds a row for each log level, 0 to 3; its column is `level` (int).
void addLevels();

/// Of events that begin with the level from which on they come, as in "2 debug ...", those that
/// come at this one. An event without a level, such as a call of the database, always comes.
QStringList atLevel(int level, const QStringList &marked);
QStringList atLevel(int level, std::initializer_list<const char *> marked);
