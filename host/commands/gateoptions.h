// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The settings of the gate, from options and talvenhr.conf.
#pragma once

#include "host/cli/command.h"
#include "host/cli/databaseoptions.h"
#include "host/commands/gatehooks.h"
#include "host/gate/gate.h"

class Options;

/// When an export is rehearsed.
enum class GateRehearsal {
    Auto, ///< where a database is named
    Yes,
    No,
};

/// All that the gate command has to know.
struct GateOptions
{
    GateSettings settings; ///< without the rehearsal
    GateRehearsal rehearsal = GateRehearsal::Auto;
    DatabaseChoice database;
    QString pluginFile;
    QString settingsFile; ///< the real TalvenHR.ini
    int timeLimit = 1800; ///< seconds
    std::optional<ReleaseWish> release;
    GateHooks hooks;

    bool rehearses() const;
    /// Empty where it rehearses.
    QString whyNotRehearsed() const;
};

/// The folders, the road and the measures; for --help and talvenhr.conf.
QVector<OptionGroup> gateOptionGroups();
/// What only talvenhr.conf can set, as SECTION/KEY.
QStringList gateFileSettings();

/// A person wants to let one export through, and sees for themselves how that ends.
bool isForOneExport(const Options &options);

/// Takes all of it. Fails on what cannot hold, before anything is looked at; the rest is taken all
/// the same, and the state has a name only where something may be kept there.
Failure readGateOptions(const Options &options, GateOptions *gate);
/// What a gate would say of the values, of the folder of deliveries and of the hooks.
QStringList gateProblems(const Options &options, const DatabaseChoice &database);
