// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All commands of `talvenhr`.
#pragma once

#include "host/cli/command.h"

/// In the order in which --help lists them.
QVector<Command> allCommands();
