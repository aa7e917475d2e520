// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The calls of a pass, made again by a bare client of the database.
#include "replay.h"

#include <QRegularExpression>

ReplayedCall replayedCall(const DatabaseCall &call)
{
    ReplayedCall replayed;
    replayed.kind = call.kind;
    QString text = call.statement;
    if (call.kind == DatabaseCall::Prepare)
        text.replace(QRegularExpression(QStringLiteral(":(name|value)")), QStringLiteral("?"));
    replayed.text = text.toUtf8();
    for (const DatabaseCall::Value &bound : call.values)
        replayed.values.append(bound.value.toString().toUtf8());
    return replayed;
}

Replay::Replay(const QString &socketPath, const QString &userName, const QString &databaseName) :
    socket(socketPath.toUtf8()),
    user(userName.toUtf8()),
    database(databaseName.toUtf8())
{ }

Replay::~Replay()
{
    close();
}

void Replay::send(const QVector<ReplayedCall> &calls)
{
    for (const ReplayedCall &call : calls)
        send(call);
    close();
}

void Replay::send(const ReplayedCall &call)
{
    switch (call.kind) {
    case DatabaseCall::Open:
        open();
        break;
    case DatabaseCall::Close:
        close();
        break;
    case DatabaseCall::Begin:
        exec("BEGIN WORK");
        break;
    case DatabaseCall::Commit:
        exec("COMMIT");
        break;
    case DatabaseCall::Rollback:
        exec("ROLLBACK");
        break;
    case DatabaseCall::Exec:
        exec(call.text);
        break;
    case DatabaseCall::Prepare:
        prepare(call.text);
        break;
    case DatabaseCall::Run:
        run(call.values);
        break;
    }
}

void Replay::open()
{
    connection = mysql_init(nullptr);
    if (!mysql_real_connect(connection, nullptr, user.constData(), nullptr, database.constData(), 0,
                            socket.constData(), CLIENT_MULTI_STATEMENTS))
        qFatal("replay: %s", mysql_error(connection));
    mysql_set_character_set(connection, "utf8");
}

void Replay::close()
{
    if (prepared)
        mysql_stmt_close(prepared);
    prepared = nullptr;
    if (connection)
        mysql_close(connection);
    connection = nullptr;
}

void Replay::exec(const QByteArray &text)
{
    if (mysql_real_query(connection, text.constData(), static_cast<unsigned long>(text.size()))
        != 0)
        qFatal("replay: %s\n%s", mysql_error(connection), text.constData());
    do {
        if (MYSQL_RES *const result = mysql_store_result(connection)) {
            while (mysql_fetch_row(result)) {
            }
            mysql_free_result(result);
        }
    } while (mysql_next_result(connection) == 0);
}

void Replay::prepare(const QByteArray &text)
{
    if (prepared)
        mysql_stmt_close(prepared);
    prepared = mysql_stmt_init(connection);
    if (mysql_stmt_prepare(prepared, text.constData(), static_cast<unsigned long>(text.size()))
        != 0)
        qFatal("replay: %s\n%s", mysql_stmt_error(prepared), text.constData());
}

void Replay::run(QVector<QByteArray> values)
{
    QVector<MYSQL_BIND> binds(values.size());
    for (int i = 0; i < values.size(); ++i) {
        binds[i] = MYSQL_BIND();
        binds[i].buffer_type = MYSQL_TYPE_STRING;
        binds[i].buffer = values[i].data();
        binds[i].buffer_length = static_cast<unsigned long>(values[i].size());
    }
    if (mysql_stmt_bind_param(prepared, binds.data()) != 0 || mysql_stmt_execute(prepared) != 0)
        qFatal("replay: %s", mysql_stmt_error(prepared));
}
