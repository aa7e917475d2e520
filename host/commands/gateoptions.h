// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The settings of the gate, from options and talvenhr.conf.
#pragma once

#include "host/cli/command.h"
#include "host/cli/databaseoptions.h"
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

    bool rehearses() const;
};

/// The folders, the road and the measures; for --help and talvenhr.conf.
QVector<OptionGroup> gateOptionGroups();
/// What only talvenhr.conf can set, as SECTION/KEY.
QStringList gateFileSettings();

/// Takes all of it. Fails on what cannot hold, before anything is looked at.
Failure readGateOptions(const Options &options, GateOptions *gate);
