// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The values of a command's options that are in force for one call.
#include "host/cli/options.h"

#include "host/base/nearest.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Options)
};

/// As it stands on the command line.
QString dashed(const QString &option)
{
    return (option.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + option;
}

/// Qt's word for what is wrong, in the form of ours.
QString parserError(const QCommandLineParser &parser)
{
    QString text = parser.errorText();
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text.left(1).toLower() + text.mid(1);
}

} // namespace

std::optional<bool> readYesOrNo(const QString &word)
{
    if (word == QLatin1String("yes") || word == QLatin1String("true"))
        return true;
    if (word == QLatin1String("no") || word == QLatin1String("false"))
        return false;
    return {};
}

OptionGroup commonOptions()
{
    return {Text::tr("Other"),
            {{QStringLiteral("config"), QStringLiteral("FILE"),
              Text::tr("read this configuration file (default: '%1', else '%2')")
                  .arg(QStringLiteral("~/.config/talvenhr/talvenhr.conf"),
                       Configuration::standardPaths().constLast())},
             {QStringLiteral("help"), QString(), Text::tr("show this text")}}};
}

Options::Options(const Command &chosen, const QVector<Option> &all, const QStringList &onlyInFile) :
    command(chosen),
    settings(all),
    fileSettings(onlyInFile)
{
    for (const OptionGroup &group : command.groups)
        known += group.options;
    known += commonOptions().options;
    for (const Option &option : qAsConst(known)) {
        QStringList names {option.name};
        if (option.name == QLatin1String("help"))
            names.append(QStringLiteral("h"));
        parser.addOption({names, QString(), option.valueName});
    }
    for (const Option &setting : settings) {
        if (!find(setting.name))
            known.append(setting);
    }
}

Failure Options::parse(const QStringList &arguments)
{
    if (!parser.parse(QStringList {command.name} + arguments)) {
        const QStringList unknown = parser.unknownOptionNames();
        return usageFailure(
            unknown.isEmpty()
                ? parserError(parser)
                : Text::tr("unknown option '%1'%2")
                      .arg(dashed(unknown.first()), didYouMean(unknown.first(), optionNames())));
    }
    return helpWanted() ? Failure() : checkArguments();
}

Failure Options::checkArguments() const
{
    const QStringList given = parser.positionalArguments();
    const Argument missing = command.arguments.value(given.size(), {{}, {}, true});
    if (!missing.isOptional)
        return usageFailure(Text::tr("%1 is missing: %2").arg(missing.name, missing.text));
    if (given.size() > command.arguments.size())
        return usageFailure(
            Text::tr("unexpected argument '%1'").arg(given.at(command.arguments.size())));
    return {};
}

Failure Options::readConfiguration()
{
    const QString option = QStringLiteral("config");
    const QString path = isGiven(option) ? value(option) : Configuration::standardPath();
    if (path.isEmpty())
        return {};
    QStringList names = fileSettings;
    for (const Option &setting : settings)
        names.append(setting.setting);
    return file.read(path, names);
}

QStringList Options::fileOnlySettings() const
{
    QStringList names = file.settings();
    for (const Option &setting : settings)
        names.removeAll(setting.setting);
    return names;
}

bool Options::helpWanted() const
{
    return parser.isSet(QStringLiteral("help"));
}

bool Options::isSet(const QString &name) const
{
    return parser.optionNames().contains(name)
        || (name == QLatin1String("help") && parser.optionNames().contains(QStringLiteral("h")));
}

Options::Origin Options::origin(const QString &name) const
{
    if (isSet(name))
        return CommandLine;
    const Option *const option = find(name);
    const bool isSetting = option && !option->setting.isEmpty();
    if ((isSetting || name == QLatin1String("config"))
        && !qEnvironmentVariableIsEmpty(variable(name).toLatin1().constData()))
        return Environment;
    return isSetting && file.contains(option->setting) ? File : Default;
}

QString Options::value(const QString &name) const
{
    const Option *const option = find(name);
    switch (origin(name)) {
    case CommandLine:
        return parser.value(name);
    case Environment:
        return qEnvironmentVariable(variable(name).toLatin1().constData());
    case File: {
        const QString text = file.entry(option->setting).value;
        return option->kind == Option::Path && !text.isEmpty()
            ? QFileInfo(QFileInfo(file.path()).absoluteDir(), text).filePath()
            : text;
    }
    case Default:
        break;
    }
    return option ? option->standard : QString();
}

QString Options::placeOf(const QString &name) const
{
    switch (origin(name)) {
    case Environment:
        return variable(name);
    case File: {
        const QString setting = find(name)->setting;
        return Text::tr("'%1' in %2, line %3,")
            .arg(setting.section(QLatin1Char('/'), 1), file.path())
            .arg(file.entry(setting).line);
    }
    case CommandLine:
    case Default:
        break;
    }
    return QStringLiteral("--") + name;
}

Failure Options::number(const QString &name, int least, int most, int *result) const
{
    if (!isGiven(name))
        return {};
    bool ok = false;
    const int number = value(name).toInt(&ok);
    if (!ok || number < least || number > most)
        return usageFailure(Text::tr("%1 takes a number from %2 to %3, not '%4'")
                                .arg(placeOf(name))
                                .arg(least)
                                .arg(most)
                                .arg(value(name)));
    *result = number;
    return {};
}

Failure Options::yesOrNo(const QString &setting, bool *result) const
{
    const Configuration::Entry entry = file.entry(setting);
    if (entry.value.isEmpty())
        return {};
    const std::optional<bool> read = readYesOrNo(entry.value);
    if (!read)
        return usageFailure(Text::tr("'%1' in %2, line %3, takes yes or no, not '%4'")
                                .arg(setting.section(QLatin1Char('/'), 1), file.path())
                                .arg(entry.line)
                                .arg(entry.value));
    *result = *read;
    return {};
}

Failure Options::usageFailure(const QString &text) const
{
    return {ExitUsage, Text::tr("%1; see 'talvenhr %2 --help'").arg(text, command.name)};
}

QString Options::variable(const QString &name)
{
    QString text = QStringLiteral("TALVENHR_") + name.toUpper();
    return text.replace(QLatin1Char('-'), QLatin1Char('_'));
}

const Option *Options::find(const QString &name) const
{
    const auto found = std::find_if(known.cbegin(), known.cend(),
                                    [&](const Option &option) { return option.name == name; });
    return found == known.cend() ? nullptr : &*found;
}

QStringList Options::optionNames() const
{
    QStringList names;
    for (const OptionGroup &group : command.groups) {
        for (const Option &option : group.options)
            names.append(option.name);
    }
    return names;
}
