// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folders of the gate, for all commands that know of it.
#pragma once

#include "host/cli/command.h"

#include <optional>

class Options;

/// What others have to know of the gate. Paths that nobody has named are empty.
struct GateFolders
{
    QString incoming;
    QString archive;
    QString refused;
    QString state;
    QString place; ///< the file that the plugin reads
    int lateAfter = 0; ///< hours without a delivery; 0: never late
};

/// An option of [gate].
Option gateOption(const char *name, const char *valueName, const QString &text,
                  const char *standard = "", Option::Kind kind = Option::Plain);
/// --late-after
Option latenessOption();

/// The folders of the gate itself.
OptionGroup gateFolderOptions();
/// --incoming, --place, --archive, --refused, --state, --late-after, for a command that looks at
/// the gate.
OptionGroup watchedGateOptions();

/// What holds where nobody has named it.
struct GateStandard
{
    QString value;
    QString origin; ///< for people
};

/// That of a setting of [gate] whose default is no fixed value; nothing for all others, and where
/// it cannot be known.
std::optional<GateStandard> gateStandard(const Options &options, const QString &name);

Failure readGateFolders(const Options &options, GateFolders *folders);
Failure readLateness(const Options &options, int *hours);
/// "archive", "refused" or "state": as it is named, or of this name beside `incoming`, which has
/// to be absolute.
QString gateFolder(const Options &options, const char *name, const QString &incoming);
