// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library, as a server loads it.
#include "support/plugin/pluginlibrary.h"

#include "plugin/serverinterface.h"

#include <QFile>
#include <QtTest>

#include <algorithm>

PluginLibrary::PluginLibrary()
{
    loader.setFileName(file());
    loader.setLoadHints({}); // otherwise the library stays in memory when it is unloaded
}

PluginLibrary::~PluginLibrary()
{
    unload();
}

QString PluginLibrary::file()
{
    return QStringLiteral(TALVENHR_PLUGIN_FILE);
}

void PluginLibrary::load()
{
    if (!loader.isLoaded() && !loader.load())
        qFatal("%s", qPrintable(loader.errorString()));
}

bool PluginLibrary::unload()
{
    return loader.unload();
}

bool PluginLibrary::isMapped()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(maps.fileName()));
    const QList<QByteArray> lines = maps.readAll().split('\n');
    const QByteArray name = QFile::encodeName(file());
    return std::any_of(lines.begin(), lines.end(), [&name](const QByteArray &line) {
        return line.contains(" r-xp ") && line.endsWith(name);
    });
}

void PluginLibrary::start(quint8 logLevel, const QSqlDatabase &handle)
{
    auto *const server = qobject_cast<ServerInterface *>(object());
    QVERIFY(server);
    server->setLogLevel(logLevel);
    server->setDatabase(handle);
    QVERIFY(server->start());
}
