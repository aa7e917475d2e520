// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What there is to know of a command: its name, purpose and options, and the function behind it.
#include "host/cli/command.h"

#include <algorithm>

QString usageOf(const Argument &argument)
{
    return argument.isOptional ? QLatin1Char('[') + argument.name + QLatin1Char(']')
                               : argument.name;
}

QVector<Option> settingsOf(const Command &command)
{
    QVector<Option> settings;
    for (const OptionGroup &group : command.groups)
        std::copy_if(group.options.begin(), group.options.end(), std::back_inserter(settings),
                     [](const Option &option) { return !option.setting.isEmpty(); });
    return settings;
}

QVector<Option> settingsOf(const QVector<Command> &commands)
{
    QVector<Option> all;
    for (const Command &command : commands) {
        const QVector<Option> settings = settingsOf(command);
        for (const Option &option : settings) {
            const bool known = std::any_of(all.cbegin(), all.cend(), [&](const Option &other) {
                return other.setting == option.setting;
            });
            if (!known)
                all.append(option);
        }
    }
    return all;
}

QStringList fileSettingsOf(const QVector<Command> &commands)
{
    QStringList settings;
    for (const Command &command : commands)
        settings += command.fileSettings;
    settings.removeDuplicates();
    return settings;
}
