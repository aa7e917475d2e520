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

/// The one place or the other: no installation looks where only a build tree has something.
QString partOfProgram(const QString &installed, const QString &built)
{
    const bool inBuildTree = QFileInfo::exists(besideProgram(QStringLiteral("../CMakeCache.txt")));
    return besideProgram(inBuildTree ? built : installed);
}

} // namespace

QString defaultPluginFile()
{
    return partOfProgram(QStringLiteral(TALVENHR_PLUGIN_FROM_BIN "/" TALVENHR_PLUGIN_NAME),
                         QStringLiteral("../plugin/" TALVENHR_PLUGIN_NAME));
}

QString defaultDatabaseFolder()
{
    return partOfProgram(QStringLiteral(TALVENHR_DATABASE_FROM_BIN), QStringLiteral("../database"));
}

QString defaultPrivateFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/talvenhr/private-db");
}
