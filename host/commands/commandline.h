// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The program `talvenhr`: its commands.
#pragma once

#include <QStringList>

/// Runs the command that the arguments of the process name; returns the exit code of the process.
int runCommandLine(const QStringList &arguments);
