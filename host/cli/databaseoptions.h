// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options that name a database: a private one, or one on a server.
#pragma once

#include "host/cli/command.h"
#include "host/database/connectionparameters.h"

class Options;

/// Which database a command is to use.
struct DatabaseChoice
{
    QString privateFolder; ///< empty: the database that `connection` names
    bool isDefault = false; ///< no database was named at all
    ConnectionParameters connection;
};

/// --private-db
Option privateDatabaseOption();
/// --private-db, and all that names a database on a server
OptionGroup databaseOptions();
/// The same for a command that looks at no database unless one is named.
OptionGroup lookedAtDatabaseOptions();

/// The folder of the private database that --private-db names, or the default one.
Failure readPrivateFolder(const Options &options, QString *folder);

/// Takes the options. --private-db on the command line goes before a server that the environment or
/// talvenhr.conf names. The password comes from its file, else from TALVENHR_PASSWORD, which the
/// environment loses.
Failure readDatabaseOptions(const Options &options, DatabaseChoice *choice);

/// All that is wrong with the values that name a database on a server, also where none of them
/// counts.
QStringList databaseProblems(const Options &options);
