// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What --help shows.
#include "host/cli/helptext.h"

#include "host/cli/options.h"
#include "host/report/textreport.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(HelpText)
};

const int helpWidth = 80;

/// A word on the left, and its explanation on the right.
struct Entry
{
    QString left;
    QString text;
};

QString lines(const QVector<Entry> &entries, int column)
{
    QString text;
    for (const Entry &entry : entries)
        text += QStringLiteral("  %1%2\n")
                    .arg(entry.left, -(column - 2))
                    .arg(wrapped(entry.text, helpWidth - column, column));
    return text;
}

/// Where the explanations begin.
int columnOf(const QVector<Entry> &entries)
{
    int widest = 0;
    for (const Entry &entry : entries)
        widest = qMax(widest, entry.left.size());
    return 2 + widest + 2;
}

QString titled(const QString &title, const QString &text)
{
    return QStringLiteral("\n%1:\n%2").arg(title, text);
}

Entry entryOf(const Option &option)
{
    QString left = QStringLiteral("--") + option.name;
    if (option.name == QLatin1String("help"))
        left.prepend(QStringLiteral("-h, "));
    if (!option.valueName.isEmpty())
        left += QLatin1Char(' ') + option.valueName;
    return {left, option.text};
}

QString exitCodeLines(const QVector<ExitCode> &codes)
{
    QVector<Entry> entries;
    const QVector<ExitMeaning> meanings = exitMeanings();
    for (const ExitMeaning &meaning : meanings) {
        if (codes.contains(meaning.code))
            entries.append({QString::number(meaning.code), meaning.meaning});
    }
    return titled(Text::tr("Exit codes"), lines(entries, columnOf(entries)));
}

QString usageLine(const Command &command)
{
    QString line = QStringLiteral("talvenhr ") + command.name + Text::tr(" [options]");
    for (const Argument &argument : command.arguments)
        line += QLatin1Char(' ') + usageOf(argument);
    return Text::tr("Usage: %1").arg(line);
}

/// The arguments and options under their titles, all in the same columns.
QString optionLines(const Command &command)
{
    QVector<Entry> all;
    for (const Argument &argument : command.arguments)
        all.append({argument.name, argument.text});
    const QVector<Entry> arguments = all;
    const QVector<OptionGroup> groups = command.groups + QVector<OptionGroup> {commonOptions()};
    for (const OptionGroup &group : groups) {
        for (const Option &option : group.options)
            all.append(entryOf(option));
    }
    const int column = columnOf(all);

    QString text = arguments.isEmpty() ? QString()
                                       : titled(Text::tr("Arguments"), lines(arguments, column));
    for (const OptionGroup &group : groups) {
        QVector<Entry> entries;
        for (const Option &option : group.options)
            entries.append(entryOf(option));
        text += titled(group.title, lines(entries, column));
    }
    return text;
}

} // namespace

QString helpText(const QVector<Command> &commands)
{
    QVector<Entry> entries;
    QVector<ExitCode> codes;
    for (const Command &command : commands) {
        entries.append({command.name, command.summary});
        codes += command.exitCodes;
    }
    const QVector<Entry> options {{QStringLiteral("-h, --help"), Text::tr("show this text")},
                                  {QStringLiteral("-v, --version"), Text::tr("show the version")}};
    return Text::tr("Usage: talvenhr COMMAND [options]") + QStringLiteral("\n\n")
        + wrapped(Text::tr("Keeps an attendance database in line with an HR system's employee "
                           "export."),
                  helpWidth, 0)
        + QLatin1Char('\n') + titled(Text::tr("Commands"), lines(entries, columnOf(entries)))
        + titled(Text::tr("Options"), lines(options, columnOf(options))) + QLatin1Char('\n')
        + Text::tr("'talvenhr help COMMAND' tells more of a command.") + QLatin1Char('\n')
        + exitCodeLines(codes);
}

QString helpText(const Command &command)
{
    QString text = QStringLiteral("%1\n\n%2\n")
                       .arg(usageLine(command), wrapped(command.purpose, helpWidth, 0))
        + optionLines(command) + exitCodeLines(command.exitCodes);
    for (const HelpSection &section : command.sections)
        text += titled(section.title,
                       QStringLiteral("  ") + section.lines.join(QStringLiteral("\n  "))
                           + QLatin1Char('\n'));
    return text;
}
