// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options of all commands that rehearse.
#pragma once

#include "host/cli/command.h"
#include "host/copy/copyfacts.h"
#include "host/rehearsal/rehearsal.h"

class Options;

/// --export, --force, --today: which pass it is.
QVector<Option> passOptions();
/// What is rehearsed: the plugin, its real settings, and the export that is named, there or by the
/// option. Takes the options of the plugin, too. `otherExport` is the command that names another
/// export, for whoever has none.
Failure readWishes(const Options &options, const QString &otherExport, RehearsalWishes *wishes);

/// --whole, --without-triggers, --without-routines: what the copy holds.
QVector<Option> copyOptions();
CopyWishes readCopyWishes(const Options &options);
