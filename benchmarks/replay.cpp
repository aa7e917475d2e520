// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The calls of a pass, made again by a bare client of the database.
#include "replay.h"

#include <QRegularExpression>

namespace {

QString behind(const QString &call, const char *word)
{
    const QString begin = QLatin1String(word) + QLatin1Char(' ');
    return call.startsWith(begin) ? call.mid(begin.size()) : QString();
}

/// The values of "0=text, 1=text": the only prepared statement of a pass has two, a name without a
/// comma and a text.
QVector<QByteArray> boundValues(const QString &text)
{
    const QRegularExpression form(QStringLiteral("^[^=]+=(.*?), [^=,]+=(.*)$"),
                                  QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        qFatal("not the values of a prepared statement: %s", qPrintable(text));
    return {match.captured(1).toUtf8(), match.captured(2).toUtf8()};
}

} // namespace

ReplayedCall replayedCall(const QString &call)
{
    static const QStringList words {QStringLiteral("open"), QStringLiteral("close"),
                                    QStringLiteral("begin"), QStringLiteral("commit"),
                                    QStringLiteral("rollback")};
    ReplayedCall replayed;
    const int word = words.indexOf(call);
    if (word >= 0) {
        replayed.kind = static_cast<ReplayedCall::Kind>(word);
    } else if (call.startsWith(QLatin1String("prepare "))) {
        replayed.kind = ReplayedCall::Prepare;
        replayed.text = behind(call, "prepare")
                            .replace(QRegularExpression(QStringLiteral(":(name|value)")),
                                     QStringLiteral("?"))
                            .toUtf8();
    } else if (call.startsWith(QLatin1String("run "))) {
        replayed.kind = ReplayedCall::Run;
        replayed.values = boundValues(behind(call, "run"));
    } else {
        replayed.text = behind(call, "exec").toUtf8();
    }
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
    case ReplayedCall::Open:
        open();
        break;
    case ReplayedCall::Close:
        close();
        break;
    case ReplayedCall::Begin:
        exec("BEGIN WORK");
        break;
    case ReplayedCall::Commit:
        exec("COMMIT");
        break;
    case ReplayedCall::Rollback:
        exec("ROLLBACK");
        break;
    case ReplayedCall::Exec:
        exec(call.text);
        break;
    case ReplayedCall::Prepare:
        prepare(call.text);
        break;
    case ReplayedCall::Run:
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
