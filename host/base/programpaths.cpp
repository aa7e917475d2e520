// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where the files that belong to this program lie, in the build tree or installed.
#include "host/base/programpaths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace {

QString besideProgram(const QString &relativePath)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/')
                           + relativePath);
}

} // namespace

QString defaultPluginFile()
{
    const QString name = QStringLiteral(TALVENHR_PLUGIN_NAME);
    const QString built = besideProgram(QStringLiteral("../plugin/") + name);
    return QFileInfo::exists(built)
        ? built
        : besideProgram(QStringLiteral(TALVENHR_PLUGIN_FROM_BIN "/") + name);
}

QString defaultDatabaseFolder()
{
    const QString installed = besideProgram(QStringLiteral(TALVENHR_DATABASE_FROM_BIN));
    return QFileInfo(installed).isDir() ? installed : QStringLiteral(TALVENHR_DATABASE_SOURCE);
}

QString defaultPrivateFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/talvenhr/private-db");
}
