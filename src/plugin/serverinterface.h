// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the attendance server asks of each of its plugins.
#pragma once

#include <QSqlDatabase>
#include <QString>
#include <QtPlugin>

/// The interface by which the attendance server drives a plugin.
///
/// The server creates the object through Qt's plugin loader, owns it and calls every operation from
/// one thread. The order of the virtual operations is part of the binary interface.
class ServerInterface
{
public:
    virtual ~ServerInterface() = default;

    /// The bare version of the plugin, such as "1.6.0". Works in every state.
    virtual QString getVersion() const = 0;

    /// Begins or resumes the plugin's work. False only when it could not be set up.
    virtual bool start() = 0;
    virtual void stop() = 0;
    virtual void pause() = 0;
    virtual void resume() = 0;

    /// How much the plugin writes into the log: 0 warnings and errors (and a line for every
    /// settings key, which comes at any level), up to 3 for every record. To be called before
    /// start().
    virtual void setLogLevel(quint8 level) { logLevel = level; }

    /// The server's database. A plugin makes its own connection of the same parameters from it, so
    /// the handle need not be open. To be called before start().
    virtual void setDatabase(const QSqlDatabase &database) { db = database; }

protected:
    quint8 logLevel = 0;
    QSqlDatabase db;
};

Q_DECLARE_INTERFACE(ServerInterface, "com.kestra-lk.oqs.ServerInterface")
