// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plugin's file: its metadata, and the object behind it.
#include "host/plugin/pluginfile.h"

#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"

#include <QFileInfo>

PluginFile::PluginFile(const QString &path) :
    fileName(QFileInfo(path).absoluteFilePath()),
    loader(fileName)
{ }

PluginFile::~PluginFile()
{
    unload();
}

Failure PluginFile::check() const
{
    const QFileInfo file(fileName);
    if (!file.isFile())
        return {ExitUsage,
                QStringLiteral("no plugin at '%1'; build or install it, or name its file with "
                               "--plugin")
                    .arg(fileName)};
    if (!file.isReadable())
        return {ExitUsage, QStringLiteral("the plugin '%1' cannot be read").arg(fileName)};

    const QString iid = loader.metaData().value(QStringLiteral("IID")).toString();
    if (iid.isEmpty())
        return {ExitUsage,
                QStringLiteral("'%1' is not a Qt plugin; name another file with --plugin")
                    .arg(fileName)};
    const QString wantedIid = QString::fromLatin1(qobject_interface_iid<ServerInterface *>());
    if (iid != wantedIid)
        return {
            ExitUsage,
            QStringLiteral("'%1' is no plugin for the attendance server: its interface is '%2', "
                           "not '%3'; name another file with --plugin")
                .arg(fileName, iid, wantedIid)};
    return {};
}

Failure PluginFile::load()
{
    object = loader.instance();
    if (!object)
        return {ExitUsage,
                QStringLiteral("the plugin cannot be loaded: %1")
                    .arg(loader.errorString().simplified())};
    serverInterface = qobject_cast<ServerInterface *>(object);
    if (!serverInterface)
        return {ExitUsage,
                QStringLiteral("the plugin '%1' has no object for the attendance server")
                    .arg(fileName)};
    return {};
}

void PluginFile::unload()
{
    if (!loader.isLoaded())
        return;
    serverInterface = nullptr;
    delete object;
    object = nullptr;
    loader.unload();
}

VerInfoInterface *PluginFile::verInfo() const
{
    return qobject_cast<VerInfoInterface *>(object);
}
