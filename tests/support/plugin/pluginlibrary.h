// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library, as a server loads it.
#pragma once

#include <QPluginLoader>
#include <QSqlDatabase>

/// Not loaded at construction; taken out of memory at destruction.
class PluginLibrary
{
public:
    PluginLibrary();
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary &) = delete;
    PluginLibrary &operator=(const PluginLibrary &) = delete;

    static QString file();

    /// Loads the library if it is not there. The test ends with a message if that fails.
    void load();
    /// Takes the library out of memory, with the object, which ends at the end of a tick. False if
    /// it was not loaded, or somebody else holds it.
    bool unload();
    /// Whether the process has the library's code in its memory.
    static bool isMapped();

    /// The plugin object: the one that lives, or else a new one.
    QObject *object() { return loader.instance(); }
    /// The steps of a server, in its order: log level, database, start.
    void start(quint8 logLevel, const QSqlDatabase &handle);

private:
    QPluginLoader loader;
};
