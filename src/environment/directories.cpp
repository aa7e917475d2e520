// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where an installation keeps its data and its logs.
#include "environment/directories.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

QString currentDataDir = QStringLiteral("data");
QString currentLogsDir = QStringLiteral("logs");

namespace {

QString configuredDataDir(const QString &key)
{
    QSettings settings(QSettings::SystemScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
    settings.beginGroup(QStringLiteral("dataDirs"));
    return QDir::fromNativeSeparators(settings.value(key, QVariant()).toString());
}

/// Deliberate: the second entry, the first one of the whole machine and not of the user. Pinned by
/// tst_Directories::dataDir_takesTheSecondStandardLocation().
QString standardDataDir()
{
    return QStandardPaths::standardLocations(QStandardPaths::DataLocation).value(1);
}

} // namespace

void ensureDir(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists() && !QDir(path).mkpath(path))
        qCritical("Directory '%s' is not created!", qPrintable(path));
    if (!info.isWritable())
        qCritical("Directory '%s' is not writable!", qPrintable(path));
}

QString dataDir(bool verify, const QString &key)
{
    QString settingsKey = key.isEmpty() ? QCoreApplication::applicationDirPath() : key;
    // A path has to make one key, not a chain of groups.
    settingsKey.replace(QLatin1Char('/'), QLatin1Char('|'));

    QString directory = configuredDataDir(settingsKey);
    if (directory.isEmpty())
        directory = standardDataDir();
    if (directory.isEmpty())
        directory = QStandardPaths::writableLocation(QStandardPaths::AppDataLocation);

    if (verify)
        ensureDir(directory);
    currentDataDir = directory;
    return directory;
}

QString logsDir(const QString &key)
{
    const QString directory = QStringLiteral("%1/logs").arg(dataDir(false, key));
    ensureDir(directory);
    currentLogsDir = directory;
    return directory;
}
