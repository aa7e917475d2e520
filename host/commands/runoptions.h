// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options of `talvenhr run`.
#pragma once

#include "host/base/failure.h"
#include "host/database/connectionparameters.h"
#include "host/report/logwriter.h"

class CommandParser;

/// What the command line asks of a run.
struct RunOptions
{
    QString pluginFile;
    QString dataDirectory; ///< empty: the plugin's own search
    QString privateFolder; ///< empty: the database that `connection` names
    bool privateByDefault = false; ///< no database was named at all
    ConnectionParameters connection;
    int logLevel = 1;
    LogFormat logFormat = LogFormat::Text;
    int passes = 0; ///< 0: until a signal comes
    bool force = false;
    int timeout = 0; ///< seconds, 0: none
};

/// Tells the parser the options, and what the help text says about them.
void addRunOptions(CommandParser *parser);

/// Takes the options from a parser that has parsed them. The password comes from its file or from
/// the environment, which loses it.
Failure readRunOptions(const CommandParser &parser, RunOptions *options);
