// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What --help shows.
#pragma once

#include "host/cli/command.h"

/// The help of the program, with all its commands.
QString helpText(const QVector<Command> &commands);
/// The help of one command: options in groups, exit codes, and its own sections.
QString helpText(const Command &command);
