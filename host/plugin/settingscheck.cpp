// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings that mean something else than what stands there.
#include "host/plugin/settingscheck.h"

#include "host/base/nearest.h"
#include "host/plugin/settingkeys.h"
#include "host/plugin/settingsfile.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <limits>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SettingsCheck)
};

const uint longestTimer = std::numeric_limits<uint>::max() / 1000; // seconds

Finding warning(const char *code, const QString &about, const QString &text, const QString &remedy)
{
    return {QLatin1String(code), Finding::Warning, about, text, {}, remedy};
}

Finding error(const char *code, const QString &about, const QString &text, const QString &remedy)
{
    return {QLatin1String(code), Finding::Error, about, text, {}, remedy};
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The known key that somebody meant, whatever the case of its letters; empty if there is none.
QString keyInAnyCase(const QString &name)
{
    for (const SettingKey &key : settingKeys()) {
        if (key.name.compare(name, Qt::CaseInsensitive) == 0)
            return key.name;
    }
    return QString();
}

/// What is wrong with the place or the spelling of a key that the plugin does not ask for.
Finding strangeKey(const QString &key, const QString &file)
{
    const QString group = key.section(QLatin1Char('/'), 0, -2);
    const QString name = key.section(QLatin1Char('/'), -1);
    const QString known = keyInAnyCase(name);
    if (!known.isEmpty() && !group.isEmpty())
        return warning("W-SET-GROUP", name,
                       Text::tr("the key '%1' stands in the group [%2] of '%3', where the plugin "
                                "does not look for it")
                           .arg(name, group, file),
                       Text::tr("move it above all groups"));
    if (!known.isEmpty())
        return warning("W-SET-CASE", name,
                       Text::tr("the key '%1' of '%2' is ignored").arg(name, file),
                       Text::tr("write it '%1'").arg(known));
    if (group == QLatin1String("MES"))
        return warning("W-SET-STATE", key,
                       Text::tr("'%1' in the group [MES] of '%2' is no number of a state; its text "
                                "becomes that of state 0")
                           .arg(name, file),
                       Text::tr("write NUMBER=TEXT"));
    return warning("W-SET-UNKNOWN", key,
                   Text::tr("the plugin does not know the key '%1' of '%2'%3")
                       .arg(key, file, didYouMean(name, settingKeyNames())),
                   Text::tr("correct or remove it"));
}

bool isKnown(const QString &key)
{
    if (!settingKey(key).name.isEmpty())
        return true;
    bool isNumber = false;
    if (key.startsWith(QLatin1String("MES/")))
        key.mid(4).toUInt(&isNumber);
    return isNumber;
}

QVector<Finding> keyFindings(const SettingsFile &settings)
{
    QVector<Finding> findings;
    const QStringList keys = settings.keys();
    for (const QString &key : keys) {
        if (!isKnown(key))
            findings.append(strangeKey(key, settings.path()));
    }
    return findings;
}

QVector<Finding> fileFindings(const SettingsFile &settings)
{
    const QByteArray content = contentOf(settings.path());
    const QString file = settings.path();
    if (content.startsWith("\xef\xbb\xbf"))
        return {warning("W-SET-BOM", file,
                        Text::tr("'%1' begins with a byte order mark, so that its first key or "
                                 "group is ignored")
                            .arg(file),
                        Text::tr("save it in UTF-8 without one"))};
    if (content.contains('\0'))
        return {warning("W-SET-ENCODING", file,
                        Text::tr("'%1' is not in UTF-8 (in UTF-16, perhaps), so that its keys are "
                                 "ignored")
                            .arg(file),
                        Text::tr("save it in UTF-8"))};
    if (QString::fromUtf8(content).contains(QChar(QChar::ReplacementCharacter)))
        return {warning(
            "W-SET-ENCODING", file,
            Text::tr("'%1' holds letters that are not in UTF-8, which arrive damaged").arg(file),
            Text::tr("save it in UTF-8"))};
    return {};
}

/// The text as it stands in the file or environment; the plugin's own reader made it.
QVector<Finding> switchFindings(const QString &name, const QString &text)
{
    static const QStringList clear {QStringLiteral("true"),
                                    QStringLiteral("false"),
                                    QStringLiteral("1"),
                                    QStringLiteral("0"),
                                    QStringLiteral("yes"),
                                    QStringLiteral("on"),
                                    QString()};
    if (clear.contains(text.toLower()))
        return {};
    return {warning("W-SET-SWITCH", name,
                    Text::tr("'%1=%2' is read as true, as is everything but 'false', '0' and an "
                             "empty value")
                        .arg(name, text),
                    Text::tr("write true or false"))};
}

QVector<Finding> numberFindings(const QString &name, const QVariant &value)
{
    bool isNumber = false;
    const uint number = value.toUInt(&isNumber);
    const QString text = value.toString();
    if (!isNumber)
        return {
            warning("W-SET-NUMBER", name,
                    Text::tr("'%1=%2' is no number and is read as %3").arg(name, text).arg(number),
                    Text::tr("write a whole number"))};
    if (text != QString::number(number))
        return {warning("W-SET-WRAP", name,
                        Text::tr("'%1=%2' is read as %3").arg(name, text).arg(number),
                        Text::tr("write a whole number from 0 to 4294967295"))};
    if (name == QLatin1String("timerInterval") && number > longestTimer)
        return {warning("W-SET-WRAP", name,
                        Text::tr("'%1=%2' wraps round: the plugin ticks every %3 ms")
                            .arg(name, text)
                            .arg(qMax(number * 1000U, 1000U)),
                        Text::tr("write at most %1").arg(longestTimer))};
    if (name == QLatin1String("syncCommandRun") && number > 255)
        return {warning(
            "W-SET-WRAP", name,
            Text::tr("'%1=%2' is read as %3, its low 8 bits").arg(name, text).arg(number % 256),
            Text::tr("write 0, 1 or 2"))};
    return {};
}

QVector<Finding> commandFindings(const SettingsFile &settings)
{
    const QString name = QStringLiteral("syncCommand");
    // Split as the plugin splits it.
    const QString program = QProcess::splitCommand(settings.toString(name)).value(0);
    if (static_cast<quint8>(settings.toUInt(QStringLiteral("syncCommandRun"))) == 0)
        return {};
    if (program.isEmpty())
        return {warning("W-SET-COMMAND", name,
                        Text::tr("syncCommandRun asks for an export command, and there is none"),
                        Text::tr("name it in syncCommand, or set syncCommandRun=0"))};
    if (!QStandardPaths::findExecutable(program).isEmpty())
        return {};
    return {
        warning("W-SET-COMMAND", name,
                QFileInfo::exists(program)
                    ? Text::tr("the export command '%1' may not be executed: each pass goes on "
                               "without it, with the export that is there")
                          .arg(program)
                    : Text::tr("the export command '%1' is not found: each pass goes on without "
                               "it, with the export that is there")
                          .arg(program),
                Text::tr("correct syncCommand in '%1'").arg(settings.path()))};
}

QVector<Finding> valueFindings(const SettingsFile &settings)
{
    QVector<Finding> findings;
    for (const SettingKey &key : settingKeys()) {
        const QVariant value = settings.value(key.name);
        if (value.type() == QVariant::StringList)
            findings.append(warning("W-SET-COMMA", key.name,
                                    Text::tr("the value of '%1' holds a comma without quotes and "
                                             "is read as empty")
                                        .arg(key.name),
                                    Text::tr("put it into double quotes")));
        else if (key.kind == SettingKey::Switch)
            findings += switchFindings(key.name, value.toString());
        else if (key.kind == SettingKey::Number)
            findings += numberFindings(key.name, value);
    }
    if (settings.holds(QStringLiteral("importFile"))
        && settings.toString(QStringLiteral("importFile")).isEmpty())
        findings.append(
            warning("W-SET-EXPORT", QStringLiteral("importFile"),
                    Text::tr("'importFile' is empty: the plugin reads 'ron.data' in the "
                             "working directory of the server"),
                    Text::tr("name the export with its whole path")));
    return findings;
}

/// What keeps the plugin from working, or takes the process down.
QVector<Finding> fatalFindings(const SettingsFile &settings, const QVector<Finding> &others)
{
    QVector<Finding> findings;
    if (!settings.toBool(QStringLiteral("enabled"))) {
        Finding disabled = error("E-SET-DISABLED", QStringLiteral("enabled"),
                                 Text::tr("the plugin is disabled"),
                                 Text::tr("set enabled=true in '%1'").arg(settings.path()));
        for (const Finding &other : others) {
            const bool isCause = other.about.compare(disabled.about, Qt::CaseInsensitive) == 0
                || other.about == settings.path();
            if (isCause)
                disabled.remedy = findingLine(other);
        }
        findings.append(disabled);
    }
    if (settings.toUInt(QStringLiteral("syncInterval")) == 0)
        findings.append(
            error("E-SET-SYNC", QStringLiteral("syncInterval"),
                  Text::tr("syncInterval is 0, and the second tick divides by it, which "
                           "ends the process"),
                  Text::tr("set it to 1 or more in '%1'").arg(settings.path())));
    return findings;
}

} // namespace

QVector<Finding> settingsFindings(const SettingsFile &settings)
{
    QVector<Finding> findings = fileFindings(settings);
    // Strange keys of a file that was not read as it was meant tell nothing more.
    if (findings.isEmpty())
        findings = keyFindings(settings);
    findings += valueFindings(settings) + commandFindings(settings);
    return findings + fatalFindings(settings, findings);
}
