// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plugin's file: its metadata, and the object behind it.
#pragma once

#include "host/base/failure.h"

#include <QJsonObject>
#include <QPluginLoader>

class ServerInterface;
class VerInfoInterface;

/// Loads a plugin as the attendance server does: looks at the metadata first and makes the object
/// only of a plugin of the right kind.
///
/// Owned by the command and used on its thread. Its destructor unloads the plugin.
class PluginFile
{
public:
    explicit PluginFile(const QString &path);
    ~PluginFile();
    PluginFile(const PluginFile &) = delete;
    PluginFile &operator=(const PluginFile &) = delete;

    /// The file is there and is a plugin for the attendance server. Nothing is loaded.
    Failure check() const;
    /// Makes the plugin's object.
    Failure load();
    /// Deletes the object, which waits for a running pass, and lets go of the file.
    void unload();

    QString path() const { return loader.fileName(); }
    QJsonObject metaData() const { return loader.metaData(); }
    /// Null before load().
    ServerInterface *server() const { return serverInterface; }
    /// Null also for a plugin that reports nothing but its version.
    VerInfoInterface *verInfo() const;

private:
    const QString fileName;
    QPluginLoader loader;
    QObject *object = nullptr;
    ServerInterface *serverInterface = nullptr;
};
