// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options that name the folders of the gate.
#pragma once

#include "host/cli/command.h"

class Options;

/// Where exports come from and go to. Paths that nobody has named are empty.
struct GateFolders
{
    QString incoming;
    QString archive;
    QString refused;
    QString state;
    QString place; ///< the file that the plugin reads
    qint64 lateAfter = 0; ///< seconds; 0: never
};

/// --incoming, --archive, --refused, --state, --place, --late-after
OptionGroup gateFolderOptions();
Failure readGateFolders(const Options &options, GateFolders *folders);

/// Seconds of "90", "90s", "15m", "26h" or "2d"; -1 for a text that is none of these.
qint64 secondsOf(const QString &text);
