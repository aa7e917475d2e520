// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The shell around all commands: from the arguments of the process to its exit code.
#pragma once

#include "host/cli/command.h"

/// Runs the command that the arguments of the process name, or shows help, version or (--man) the
/// source of the manual page, and returns
/// the exit code of the process. A failure is told on standard error, in the form that the option
/// --log-format asks for, if the command has it.
int runShell(const QVector<Command> &commands, const QStringList &arguments);
