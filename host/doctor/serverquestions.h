// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Questions to a database server, and its variables.
#pragma once

#include <QHash>
#include <QSqlDatabase>
#include <QString>
#include <QVariant>

/// The first row of an answer. Without one, `error` tells why: in the server's words, or that there
/// is none.
struct ServerAnswer
{
    QVariantList values;
    QString error;
    QString errorCode; ///< the server's number; empty if it gave none

    bool isValid() const { return !values.isEmpty(); }
    QString text() const { return values.value(0).toString(); }
};

ServerAnswer askServer(const QSqlDatabase &database, const QString &question);

/// Whether a look has been through one connection, from its begin to its end: what was asked after
/// the end of a connection tells nothing.
class SessionWatch
{
public:
    /// Asks the server, as isLost() does.
    explicit SessionWatch(const QSqlDatabase &handle);

    /// The connection is gone, or another one has taken its place. `error` gets the server's words.
    bool isLost(QString *error) const;

private:
    const QSqlDatabase database;
    const ServerAnswer begin;
};

/// What a server says of its settings: those of the session, of all sessions, and its state in a
/// cluster. What it does not tell is a null text.
class ServerVariables
{
public:
    ServerVariables() = default;
    /// For what no server at hand has.
    explicit ServerVariables(const QHash<QString, QString> &values);

    /// Asks the server; `error` gets its words if it does not tell. From then on the session gets
    /// whole answers, whatever limit it began with.
    static ServerVariables read(const QSqlDatabase &database, QString *error);

    QString session(const char *name) const { return ofSession.value(QLatin1String(name)); }
    QString global(const char *name) const { return ofServer.value(QLatin1String(name)); }
    QString status(const char *name) const { return ofCluster.value(QLatin1String(name)); }
    /// The session's variable is ON or 1.
    bool isOn(const char *name) const;

private:
    QHash<QString, QString> ofSession;
    QHash<QString, QString> ofServer;
    QHash<QString, QString> ofCluster;
};
