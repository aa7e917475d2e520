// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder in which the plugin looks for its settings, and what stands in them.
#include "host/plugin/datadirectory.h"

#include "environment/directories.h"
#include "environment/envirosettings.h"
#include "host/base/silentmessages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace {

/// What dataDir() asks for when it looks for the directory of this program.
void writeDataDirEntry(const QString &directory)
{
    QString key = QCoreApplication::applicationDirPath();
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    QSettings settings(QSettings::SystemScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
    settings.beginGroup(QStringLiteral("dataDirs"));
    settings.setValue(key, directory);
}

/// Seconds become milliseconds in 32 bits, at least 1000 of them.
uint tickMilliseconds(uint timerInterval)
{
    return qMax(timerInterval * 1000U, 1000U);
}

QString absoluteImportFile(const QString &importFile)
{
    return QFileInfo(importFile.isEmpty() ? QStringLiteral("ron.data") : importFile)
        .absoluteFilePath();
}

} // namespace

DataDirectory::DataDirectory(const QString &name)
{
    if (name.isEmpty()) {
        directory = dataDir(false, QString());
        return;
    }
    directory = QDir::cleanPath(QFileInfo(name).absoluteFilePath());
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, systemSettings.path());
    writeDataDirEntry(directory);
}

Failure DataDirectory::readSettings(PluginSettings *settings) const
{
    const QFileInfo file(iniFile());
    const bool enabledByEnvironment = qEnvironmentVariableIsSet("ENABLED");
    if (!file.exists() && !enabledByEnvironment)
        return {ExitUsage,
                QStringLiteral("no TalvenHR.ini in '%1'; write one there, or name its folder with "
                               "--data-dir")
                    .arg(directory)};
    if (file.exists() && (!file.isFile() || !QFile(iniFile()).open(QIODevice::ReadOnly)))
        return {ExitUsage,
                QStringLiteral("the settings '%1' cannot be read; check the file and its "
                               "permissions")
                    .arg(iniFile())};

    // It tells the log of every key.
    const SilentMessages silence;
    EnviroSettings ini(iniFile(), QSettings::IniFormat);
    ini.setIniCodec("UTF-8");
    settings->enabled = ini.value(QStringLiteral("enabled"), false).toBool();
    settings->syncInterval = ini.value(QStringLiteral("syncInterval"), 60).toUInt();
    settings->tickMilliseconds = tickMilliseconds(
        ini.value(QStringLiteral("timerInterval"), 60).toUInt());
    settings->importFile = absoluteImportFile(
        ini.value(QStringLiteral("importFile"), QVariant()).toString());
    if (ini.status() != QSettings::NoError)
        return {ExitUsage,
                QStringLiteral("the settings '%1' are not a valid INI file").arg(iniFile())};
    if (!settings->enabled)
        return {ExitUsage,
                QStringLiteral("the plugin is disabled; set enabled=true in '%1'").arg(iniFile())};
    return {};
}
