// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder in which the plugin looks for its settings.
#include "host/plugin/datadirectory.h"

#include "environment/directories.h"

#include <QCoreApplication>
#include <QDir>
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

void DataDirectory::removeTraces() const
{
    QDir(systemSettings.path()).removeRecursively();
}
