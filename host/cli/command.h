// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What there is to know of a command: its name, purpose and options, and the function behind it.
#pragma once

#include "host/base/failure.h"

#include <QString>
#include <QStringList>
#include <QVector>

class Options;

/// One option. With a setting, its value may also come from the environment (TALVENHR_ and the
/// option's name in capitals) or from talvenhr.conf.
struct Option
{
    enum Kind {
        Plain,
        Path, ///< a relative one in talvenhr.conf counts from the folder of that file
    };

    QString name; ///< without the dashes; the same in every command that has it
    QString valueName; ///< empty: a switch
    QString text; ///< for --help
    QString setting = {}; ///< SECTION/KEY in talvenhr.conf; empty: only on the command line
    QString standard = {}; ///< the value when none is given anywhere
    Kind kind = Plain;
};

/// Options under a title of their own.
struct OptionGroup
{
    QString title;
    QVector<Option> options;
};

/// A word that is no option.
struct Argument
{
    QString name; ///< as --help shows it: FILE
    QString text;
    bool isOptional = false;
};

/// "FILE", or "[FILE]" for one that may be left out.
QString usageOf(const Argument &argument);

/// Lines under a title, at the end of --help; they stay as they are.
struct HelpSection
{
    QString title;
    QStringList lines;
};

/// One command of `talvenhr`.
struct Command
{
    QString name;
    QString summary; ///< for the list of commands
    QString purpose; ///< a few sentences
    QVector<Argument> arguments; ///< those that may be left out last
    QVector<OptionGroup> groups;
    /// What only talvenhr.conf can set, as SECTION/KEY; a star at the end stands for any ending.
    QStringList fileSettings = {};
    QVector<ExitCode> exitCodes; ///< those with which it can end
    QVector<HelpSection> sections;
    /// Does the work. A failure with a text is told to the user by the caller.
    Failure (*run)(const Options &options) = nullptr;
    /// Told of a configuration that is wrong, where run() is not called; the options know what of
    /// it can be read. May be null.
    void (*notRun)(const Options &options, const Failure &failure) = nullptr;
};

/// The options of a command that talvenhr.conf may hold.
QVector<Option> settingsOf(const Command &command);
/// Those of all commands, each once.
QVector<Option> settingsOf(const QVector<Command> &commands);
/// What only talvenhr.conf can set, of all commands.
QStringList fileSettingsOf(const QVector<Command> &commands);
