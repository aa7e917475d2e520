// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One run at a time on a database.
#include "host/database/runlock.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QVariant>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RunLock)
};

/// As a literal of SQL. The server takes names of up to 64 characters.
QString lockName(const QString &database)
{
    QString name = QStringLiteral("talvenhr run ") + database.left(48);
    name.replace(QLatin1Char('\''), QLatin1Char('_')).replace(QLatin1Char('\\'), QLatin1Char('_'));
    return QLatin1Char('\'') + name + QLatin1Char('\'');
}

/// The first value of the answer; not valid without one.
QVariant answerOf(const QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    return query.exec(statement) && query.next() ? query.value(0) : QVariant();
}

/// Who has the lock: his connection, and from where and since when as far as the server tells.
QString holderOf(const QSqlDatabase &database, const QString &lock)
{
    const QString id = answerOf(database, QStringLiteral("SELECT IS_USED_LOCK(%1)").arg(lock))
                           .toString();
    const QString more = answerOf(database,
                                  QStringLiteral("SELECT CONCAT(user, ' from ', host) FROM "
                                                 "information_schema.processlist WHERE id = %1")
                                      .arg(id))
                             .toString();
    return more.isEmpty() ? Text::tr("connection %1 of the server").arg(id)
                          : Text::tr("connection %1 of the server, %2").arg(id, more);
}

} // namespace

RunLock::RunLock() :
    connection(QStringLiteral("talvenhr.lock"))
{ }

Failure RunLock::take(const ConnectionParameters &parameters)
{
    if (const Failure failure = connection.open(parameters))
        return failure;
    const QSqlDatabase database = connection.handle();
    // A connection that rests for a year is not to be ended for that.
    QSqlQuery(database).exec(QStringLiteral("SET SESSION wait_timeout = 31536000"));
    const QString lock = lockName(parameters.database);
    const QVariant answer = answerOf(database, QStringLiteral("SELECT GET_LOCK(%1, 0)").arg(lock));
    held = answer.toInt() == 1;
    if (answer.isNull() || held)
        return {};
    return {ExitRefused,
            Text::tr("another 'talvenhr run' is at work on database '%1' (%2); two at a time would "
                     "undo each other's work, so wait for its end, or end it")
                .arg(parameters.database, holderOf(database, lock))};
}
