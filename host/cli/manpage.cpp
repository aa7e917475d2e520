// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The manual page, made of what --help shows.
#include "host/cli/manpage.h"

#include "host/cli/configuration.h"
#include "host/cli/options.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ManPage)
};

/// The text without a meaning for scdoc.
QString plain(QString text)
{
    for (const char sign : {'\\', '_', '*', '<', '>', '[', '#', '~'})
        text.replace(QLatin1Char(sign), QLatin1Char('\\') + QString(QLatin1Char(sign)));
    return text;
}

QString heading(const QString &title)
{
    return QStringLiteral("\n# %1\n").arg(title.toUpper());
}

QString entry(const QString &word, const QString &text)
{
    return QStringLiteral("\n*%1*\n\t%2\n").arg(plain(word), plain(text));
}

QString optionEntry(const Option &option)
{
    QString word = QStringLiteral("--") + option.name;
    if (!option.valueName.isEmpty())
        word += QLatin1Char(' ') + option.valueName;
    return entry(word, option.text);
}

QString groupEntries(const OptionGroup &group)
{
    QString text = QStringLiteral("\n_%1_\n").arg(plain(group.title));
    for (const Option &option : group.options)
        text += optionEntry(option);
    return text;
}

QString commandPart(const Command &command)
{
    QString usage = QStringLiteral("*talvenhr ") + command.name + Text::tr("* [options]");
    for (const Argument &argument : command.arguments)
        usage += QLatin1Char(' ') + usageOf(argument);
    QString text = QStringLiteral("\n## %1\n\n%2\n\n%3\n")
                       .arg(command.name, usage, plain(command.purpose));
    for (const Argument &argument : command.arguments)
        text += entry(argument.name, argument.text);
    for (const OptionGroup &group : command.groups)
        text += groupEntries(group);
    for (const HelpSection &section : command.sections)
        text += QStringLiteral("\n_%1_\n\n```\n%2\n```\n")
                    .arg(plain(section.title), section.lines.join(QLatin1Char('\n')));
    return text;
}

QString exitCodes(const QVector<Command> &commands)
{
    QVector<ExitCode> used;
    for (const Command &command : commands)
        used += command.exitCodes;
    QString text;
    const QVector<ExitMeaning> meanings = exitMeanings();
    for (const ExitMeaning &meaning : meanings) {
        if (used.contains(meaning.code))
            text += entry(QString::number(meaning.code), meaning.meaning);
    }
    return text;
}

QString environment(const QVector<Command> &commands)
{
    QString text = entry(QStringLiteral("TALVENHR_PASSWORD"), Text::tr("the database password"))
        + entry(Options::variable(QStringLiteral("config")),
                Text::tr("stands for the option --config"));
    const QVector<Option> settings = settingsOf(commands);
    for (const Option &setting : settings)
        text += entry(Options::variable(setting.name),
                      Text::tr("stands for the option --%1").arg(setting.name));
    return text;
}

QString files(const QVector<Command> &commands)
{
    QString text = entry(QStringLiteral("~/.config/talvenhr/talvenhr.conf"),
                         Text::tr("the user's configuration"))
        + entry(Configuration::standardPaths().constLast(),
                Text::tr("the machine's, if the user has none"));
    QStringList keys;
    const QVector<Option> settings = settingsOf(commands);
    for (const Option &setting : settings)
        keys.append(setting.setting);
    return text + QLatin1Char('\n')
        + plain(Text::tr("Settings, as SECTION/KEY: %1. Each is the default of the option of its "
                         "name; 'talvenhr config' shows which is in force.")
                    .arg(keys.join(QStringLiteral(", "))))
        + QLatin1Char('\n');
}

} // namespace

QString manPage(const QVector<Command> &commands)
{
    QString text = QStringLiteral("talvenhr(1)") + heading(Text::tr("Name"))
        + QStringLiteral("\ntalvenhr - ")
        + Text::tr("keeps an attendance database in line with an HR system's employee export")
        + QLatin1Char('\n') + heading(Text::tr("Synopsis"))
        + QStringLiteral("\n*talvenhr* COMMAND [options]\n") + heading(Text::tr("Commands"));
    for (const Command &command : commands)
        text += commandPart(command);
    return text + heading(Text::tr("Options of every command")) + groupEntries(commonOptions())
        + heading(Text::tr("Exit status")) + exitCodes(commands) + heading(Text::tr("Environment"))
        + environment(commands) + heading(Text::tr("Files")) + files(commands);
}
