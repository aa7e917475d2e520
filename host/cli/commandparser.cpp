// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options of one command: parsing them, and showing them in groups.
#include "host/cli/commandparser.h"

namespace {

const int helpWidth = 80;

} // namespace

CommandParser::CommandParser(const QString &commandName, const QString &purposeText) :
    command(commandName),
    purpose(purposeText)
{ }

void CommandParser::addGroup(const QString &title)
{
    entries.append({QString(), title});
}

void CommandParser::addOption(const QString &name, const QString &valueName, const QString &text)
{
    QStringList names {name};
    QString left = QStringLiteral("--") + name;
    if (name == QLatin1String("help")) {
        names.prepend(QStringLiteral("h"));
        left.prepend(QStringLiteral("-h, "));
    }
    if (!valueName.isEmpty())
        left += QLatin1Char(' ') + valueName;
    parser.addOption(QCommandLineOption(names, text, valueName));
    entries.append({left, text});
}

void CommandParser::addSection(const QString &title, const QString &lines)
{
    sections += QStringLiteral("\n%1:\n%2\n").arg(title, lines);
}

Failure CommandParser::parse(const QStringList &arguments)
{
    addOption(QStringLiteral("help"), QString(), QStringLiteral("show this text"));
    if (!parser.parse(QStringList {command} + arguments)) {
        QString text = parser.errorText();
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
        return usageFailure(text.left(1).toLower() + text.mid(1));
    }
    if (!parser.positionalArguments().isEmpty() && !helpWanted())
        return usageFailure(
            QStringLiteral("unexpected argument '%1'").arg(parser.positionalArguments().first()));
    return {};
}

QString CommandParser::help() const
{
    int widest = 0;
    for (const Entry &entry : entries)
        widest = qMax(widest, entry.left.size());
    const int column = 2 + widest + 2;

    QString text = QStringLiteral("Usage: %1 [options]\n\n%2\n")
                       .arg(command, wrapped(purpose, helpWidth, 0));
    for (const Entry &entry : entries) {
        if (entry.left.isEmpty())
            text += QStringLiteral("\n%1:\n").arg(entry.text);
        else
            text += QStringLiteral("  %1%2\n")
                        .arg(entry.left, -(column - 2))
                        .arg(wrapped(entry.text, helpWidth - column, column));
    }
    return text + sections;
}

Failure CommandParser::number(const QString &name, int least, int most, int *result) const
{
    if (!isSet(name))
        return {};
    bool ok = false;
    const int number = value(name).toInt(&ok);
    if (!ok || number < least || number > most)
        return usageFailure(QStringLiteral("--%1 takes a number from %2 to %3, not '%4'")
                                .arg(name)
                                .arg(least)
                                .arg(most)
                                .arg(value(name)));
    *result = number;
    return {};
}

Failure CommandParser::usageFailure(const QString &text) const
{
    return {ExitUsage, QStringLiteral("%1; see '%2 --help'").arg(text, command)};
}

QString wrapped(const QString &text, int width, int indent)
{
    QString result;
    int used = 0;
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString &word : words) {
        if (used > 0 && used + 1 + word.size() > width) {
            result += QLatin1Char('\n') + QString(indent, QLatin1Char(' '));
            used = 0;
        } else if (used > 0) {
            result += QLatin1Char(' ');
            ++used;
        }
        result += word;
        used += word.size();
    }
    return result;
}
