// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The values of a command's options that are in force for one call.
#pragma once

#include "host/cli/command.h"
#include "host/cli/configuration.h"

#include <QCommandLineParser>

#include <optional>

/// Takes each option from the command line, else from the environment, else from talvenhr.conf,
/// else its default. Made and used on the stack of the shell.
class Options
{
public:
    enum Origin {
        Default,
        File,
        Environment,
        CommandLine,
    };

    /// Every command has the options --config and --help besides its own. `settings` are those that
    /// talvenhr.conf may hold for any command, `fileSettings` what only that file can set.
    Options(const Command &command, const QVector<Option> &settings,
            const QStringList &fileSettings = {});

    /// Takes the arguments that follow the command. Fails on anything that the command does not
    /// know.
    Failure parse(const QStringList &arguments);
    /// Reads the file that --config or TALVENHR_CONFIG names, or else the standard one, if any.
    Failure readConfiguration();

    bool helpWanted() const;
    /// The option stands on the command line.
    bool isSet(const QString &name) const;
    /// The option stands on the command line, in the environment or in talvenhr.conf.
    bool isGiven(const QString &name) const { return origin(name) != Default; }
    QString value(const QString &name) const;
    /// All values of an option that may be given several times on the command line.
    QStringList values(const QString &name) const { return parser.values(name); }
    Origin origin(const QString &name) const;
    /// Where the value comes from, for a message: the option, the variable, or the line of the
    /// file.
    QString placeOf(const QString &name) const;
    /// A whole number between the limits; `result` stays as it is if the option is not given.
    Failure number(const QString &name, int least, int most, int *result) const;
    /// A switch that only talvenhr.conf can set: yes or no, and true or false, too. `result` stays
    /// as it is where it is not set, or empty.
    Failure yesOrNo(const QString &setting, bool *result) const;
    /// The words that are no options, in the order of the command's arguments.
    QString argument(int index) const { return parser.positionalArguments().value(index); }

    /// All settings that talvenhr.conf may hold.
    const QVector<Option> &allSettings() const { return settings; }
    const Configuration &configuration() const { return file; }
    /// What only talvenhr.conf can set and does set, as SECTION/KEY.
    QStringList fileOnlySettings() const;

    /// The failure for options that do not fit together.
    Failure usageFailure(const QString &text) const;

    /// The variable of the environment that stands for an option.
    static QString variable(const QString &name);

private:
    const Option *find(const QString &name) const;
    QStringList optionNames() const;
    Failure checkArguments() const;

    const Command command;
    const QVector<Option> settings;
    const QStringList fileSettings;
    QVector<Option> known; ///< of the command, and the settings of all
    QCommandLineParser parser;
    Configuration file;
};

/// The one reader of switches: yes or true, no or false; nothing for another word.
std::optional<bool> readYesOrNo(const QString &word);

/// What every command has besides its own options.
OptionGroup commonOptions();
