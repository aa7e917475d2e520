// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin's settings, TalvenHR.ini, taken as the plugin takes them.
#include "host/plugin/settingsfile.h"

#include "environment/envirosettings.h"
#include "host/base/silentmessages.h"
#include "host/plugin/settingkeys.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SettingsFile)
};

/// Over what the plugin gets for each key, wherever it comes from.
QString digestOf(const SettingsFile &file)
{
    QStringList keys = settingKeyNames() + file.keys();
    keys.removeDuplicates();
    keys.sort();
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &key : qAsConst(keys)) {
        const QStringList values = file.value(key).toStringList();
        hash.addData(
            (key + QLatin1Char('=') + values.join(QChar(0x1f)) + QLatin1Char('\n')).toUtf8());
    }
    return QString::fromLatin1(hash.result().toHex());
}

} // namespace

SettingsFile::SettingsFile(const QString &path) :
    file(path),
    ini(new EnviroSettings(path, QSettings::IniFormat))
{
    ini->setIniCodec("UTF-8");
    ini->allKeys(); // Groups are read when they are asked for, and their faults are known then.
}

SettingsFile::~SettingsFile() = default;

Failure SettingsFile::check() const
{
    const QFileInfo info(file);
    const QFileInfo folder(info.path());
    if (folder.isDir() && !folder.isExecutable())
        return {ExitUsage,
                Text::tr("the folder '%1' is closed to this user; it belongs to %2")
                    .arg(folder.filePath(), folder.owner())};
    if (!info.exists() && !qEnvironmentVariableIsSet("ENABLED"))
        return {ExitUsage,
                Text::tr("no TalvenHR.ini in '%1'; write one there, or name its folder with "
                         "--data-dir")
                    .arg(info.path())};
    if (info.exists() && (!info.isFile() || !QFile(file).open(QIODevice::ReadOnly)))
        return {ExitUsage,
                Text::tr("the settings '%1' cannot be read; check the file and its permissions")
                    .arg(file)};
    if (ini->status() != QSettings::NoError)
        return {ExitUsage,
                Text::tr("the settings '%1' are not a valid INI file; each line must be a group in "
                         "brackets, KEY=VALUE, or a comment that begins with ';'")
                    .arg(file)};
    return {};
}

QString SettingsFile::folder() const
{
    return QFileInfo(file).absolutePath();
}

QVariant SettingsFile::value(const QString &key) const
{
    // It tells the log of every key.
    const SilentMessages silence;
    return ini->value(key, settingKey(key).standard);
}

PluginSettings SettingsFile::values() const
{
    PluginSettings values;
    values.syncInterval = toUInt(QStringLiteral("syncInterval"));
    // Seconds become milliseconds in 32 bits, at least 1000 of them.
    values.tickMilliseconds = qMax(toUInt(QStringLiteral("timerInterval")) * 1000U, 1000U);
    values.testMode = toBool(QStringLiteral("testMode"));
    const QString importFile = toString(QStringLiteral("importFile"));
    values.importFile = QFileInfo(importFile.isEmpty() ? QStringLiteral("ron.data") : importFile)
                            .absoluteFilePath();
    values.digest = digestOf(*this);
    return values;
}

QHash<ushort, QString> SettingsFile::stateTexts() const
{
    QHash<ushort, QString> texts;
    const QStringList all = keys();
    for (const QString &key : all) {
        if (key.startsWith(QLatin1String("MES/")))
            texts.insert(static_cast<ushort>(key.midRef(4).toUInt()), toString(key));
    }
    return texts;
}

bool SettingsFile::holds(const QString &key) const
{
    return ini->contains(key);
}

QStringList SettingsFile::keys() const
{
    return ini->allKeys();
}
