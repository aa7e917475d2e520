// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The calls of a pass, made again by a bare client of the database.
#pragma once

#include "host/database/databasecall.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <mysql.h>

/// A call, ready to be sent.
struct ReplayedCall
{
    DatabaseCall::Kind kind = DatabaseCall::Exec;
    QByteArray text; ///< of a statement, in UTF-8
    QVector<QByteArray> values; ///< of a run
};

/// Placeholders with names become "?".
ReplayedCall replayedCall(const DatabaseCall &call);

/// Sends calls over a connection of its own and fetches all rows that come, as the plugin does, and
/// makes nothing of them. A call that fails ends the program.
class Replay
{
public:
    Replay(const QString &socket, const QString &user, const QString &database);
    ~Replay();

    void send(const QVector<ReplayedCall> &calls);

private:
    void send(const ReplayedCall &call);
    void open();
    void close();
    void exec(const QByteArray &text);
    void prepare(const QByteArray &text);
    void run(QVector<QByteArray> values);

    const QByteArray socket;
    const QByteArray user;
    const QByteArray database;
    MYSQL *connection = nullptr;
    MYSQL_STMT *prepared = nullptr;
};
