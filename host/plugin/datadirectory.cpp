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

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DataDirectory)
};

/// What dataDir() asks for when it looks for the directory of this program. False if it cannot be
/// written.
bool writeDataDirEntry(const QString &directory)
{
    QString key = QCoreApplication::applicationDirPath();
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    QSettings settings(QSettings::SystemScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
    settings.beginGroup(QStringLiteral("dataDirs"));
    settings.setValue(key, directory);
    settings.sync();
    return settings.status() == QSettings::NoError;
}

} // namespace

DataDirectory::DataDirectory(const QString &name)
{
    if (name.isEmpty()) {
        directory = dataDir(false, QString());
        return;
    }
    directory = QDir::cleanPath(QFileInfo(name).absoluteFilePath());
    systemSettings.reset(new ScratchFolder);
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, systemSettings->path());
    isTold = systemSettings->failure().isEmpty() && writeDataDirEntry(directory);
}

Failure DataDirectory::check() const
{
    if (isTold)
        return {};
    return {ExitUsage,
            Text::tr("the plugin cannot be told of '%1', for the temporary folder '%2' cannot be "
                     "written; make room there, or set TMPDIR")
                .arg(directory, QDir::tempPath())};
}

void DataDirectory::removeTraces() const
{
    if (systemSettings)
        QDir(systemSettings->path()).removeRecursively();
}
