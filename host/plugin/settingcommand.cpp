// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the export command can run as it was meant.
#include "host/plugin/settingcommand.h"

#include "host/base/shellword.h"
#include "host/catalogue/findings.h"
#include "host/plugin/settingsfile.h"
#include "host/plugin/settingslines.h"

#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

namespace {

const char name[] = "syncCommand";

QString quoted(const QString &word)
{
    return QLatin1Char('\'') + word + QLatin1Char('\'');
}

QString inDoubleQuotes(const QString &words)
{
    return QLatin1Char('"') + words + QLatin1Char('"');
}

Finding commandFinding(const char *code, const QStringList &values)
{
    return finding(code, QLatin1String(name), values);
}

QVector<Finding> programFindings(const QString &command, const QString &program,
                                 const QString &file)
{
    if (!QStandardPaths::findExecutable(program).isEmpty())
        return {};
    if (QFileInfo::exists(program))
        return {commandFinding("W-SET-EXECUTE", {program, shellWord(program)})};
    if (QFileInfo(command).isFile())
        return {commandFinding(
            "W-SET-BLANK",
            {program, command, settingsLine(QLatin1String(name), inDoubleQuotes(command))})};
    return {commandFinding("W-SET-COMMAND", {program, file})};
}

/// Quotes that the reader of INI files takes away, and single ones, which group nothing.
QVector<Finding> quoteFindings(const QStringList &words, const QString &command,
                               const QString &written)
{
    // As somebody wrote it who thought of a command line only.
    QString meant = written;
    meant.remove(QLatin1String("\\"));
    const bool lostDouble = meant.contains(QLatin1Char('"')) && !written.contains(QLatin1Char('\\'))
        && QProcess::splitCommand(meant) != words
        && !(written.startsWith(QLatin1Char('"')) && written.endsWith(QLatin1Char('"')));
    bool hasSingle = false;
    QStringList shown;
    for (const QString &word : words) {
        hasSingle = hasSingle || word.startsWith(QLatin1Char('\''));
        shown.append(quoted(word));
    }
    if (!lostDouble && !hasSingle)
        return {};
    QString better = lostDouble ? meant : command;
    if (hasSingle)
        better.replace(QLatin1Char('\''), QLatin1Char('"'));
    return {commandFinding(
        "W-SET-QUOTES",
        {shown.join(QStringLiteral(", ")), settingsLine(QLatin1String(name), better)})};
}

QVector<Finding> shellFindings(const QStringList &words, const QString &command)
{
    static const QStringList signs {
        QStringLiteral("&&"), QStringLiteral("||"), QStringLiteral("|"),    QStringLiteral("&"),
        QStringLiteral(";"),  QStringLiteral("<"),  QStringLiteral(">"),    QStringLiteral(">>"),
        QStringLiteral("2>"), QStringLiteral("&>"), QStringLiteral("2>&1"),
    };
    for (const QString &word : words.mid(1)) {
        if (!signs.contains(word))
            continue;
        // A double quote within quotes is written three times.
        QString inner = command;
        inner.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
        return {
            commandFinding("W-SET-SHELL",
                           {word,
                            settingsLine(QLatin1String(name),
                                         QStringLiteral("/bin/sh -c ") + inDoubleQuotes(inner))})};
    }
    return {};
}

} // namespace

QVector<Finding> commandFindings(const SettingsFile &settings, const QString &written)
{
    if (static_cast<quint8>(settings.toUInt(QStringLiteral("syncCommandRun"))) == 0)
        return {};
    const QString command = settings.toString(QLatin1String(name));
    const QStringList words = QProcess::splitCommand(command); // as the plugin splits it
    if (words.isEmpty())
        return {commandFinding("W-SET-NOCOMMAND", {})};
    QVector<Finding> findings = programFindings(command, words.constFirst(), settings.path());
    if (findings.isEmpty())
        findings = quoteFindings(words, command, written);
    // What quotes leave ungrouped may be meant for a shell that is there.
    if (findings.isEmpty())
        findings = shellFindings(words, command);
    return findings;
}
