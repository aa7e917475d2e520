// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options of one command: parsing them, and showing them in groups.
#pragma once

#include "host/base/failure.h"

#include <QCommandLineParser>
#include <QString>
#include <QStringList>
#include <QVector>

/// Qt's parser for one command, with a help text of this program's own: grouped, aligned and
/// wrapped. Every command has --help. Made and used on the stack of the command.
class CommandParser
{
public:
    /// The command as it is called ("talvenhr run"), and what it does in a few sentences.
    CommandParser(const QString &command, const QString &purpose);

    /// Begins a group of options in the help text.
    void addGroup(const QString &title);
    /// An option with a value, or a switch if the name of the value is empty.
    void addOption(const QString &name, const QString &valueName, const QString &text);
    /// A paragraph after the options, such as the exit codes; its lines stay as they are.
    void addSection(const QString &title, const QString &lines);

    /// Takes the arguments that follow the command. Fails on anything that is not an option of the
    /// command.
    Failure parse(const QStringList &arguments);

    bool helpWanted() const { return isSet(QStringLiteral("help")); }
    QString help() const;

    bool isSet(const QString &name) const { return parser.isSet(name); }
    QString value(const QString &name) const { return parser.value(name); }
    /// A whole number between the limits; the default if the option is not given.
    Failure number(const QString &name, int least, int most, int *result) const;

private:
    struct Entry
    {
        QString left; ///< empty for the title of a group
        QString text;
    };

    Failure usageFailure(const QString &text) const;

    const QString command;
    const QString purpose;
    QCommandLineParser parser;
    QVector<Entry> entries;
    QString sections;
};

/// The words of the text in lines of at most `width` characters; the lines after the first begin
/// with `indent` blanks.
QString wrapped(const QString &text, int width, int indent);
