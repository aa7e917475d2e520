// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options by which a command is told how much a pass may change.
#pragma once

#include "host/cli/command.h"
#include "host/rehearsal/limits.h"

class Options;

/// --limit, --allow and --no-limits.
OptionGroup limitOptions();
/// The keys of talvenhr.conf that hold limits, as SECTION/KEY.
QStringList limitSettings();

/// Sets the limits of talvenhr.conf.
Failure readLimitsOfFile(const Options &options, QVector<Limit> *limits);
/// The limits of the defaults and talvenhr.conf, unless --no-limits drops them, then those of
/// --limit and --allow.
Failure readLimits(const Options &options, QVector<Limit> *limits);
