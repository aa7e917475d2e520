// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The manual page, made of what --help shows.
#pragma once

#include "host/cli/command.h"

/// talvenhr(1) in the language of scdoc.
QString manPage(const QVector<Command> &commands);
