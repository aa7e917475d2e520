// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One run at a time on a database.
#include "host/database/runlock.h"

#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringList>
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

/// The first value of the answer, which is not valid without one, and the error if there is any.
struct Answer
{
    QVariant value;
    QSqlError error;
};

Answer answerOf(const QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    const bool answered = query.exec(statement) && query.next();
    return {answered ? query.value(0) : QVariant(), query.lastError()};
}

/// Who has the lock: his connection, and from where as far as the server tells. Empty if nobody has
/// it any more.
QString holderOf(const QSqlDatabase &database, const QString &lock)
{
    const QString id = answerOf(database, QStringLiteral("SELECT IS_USED_LOCK(%1)").arg(lock))
                           .value.toString();
    if (id.isEmpty())
        return QString();
    const QString more = answerOf(database,
                                  QStringLiteral("SELECT CONCAT(user, ' from ', host) FROM "
                                                 "information_schema.processlist WHERE id = %1")
                                      .arg(id))
                             .value.toString();
    return more.isEmpty() ? Text::tr("connection %1 of the server").arg(id)
                          : Text::tr("connection %1 of the server, %2").arg(id, more);
}

/// The server knows no such function, or not in the way in which it runs (as a cluster).
bool meansNoLocks(const QSqlError &error)
{
    const QStringList codes {QStringLiteral("1305"), QStringLiteral("1235"),
                             QStringLiteral("1193")};
    return codes.contains(error.nativeErrorCode());
}

} // namespace

RunLock::RunLock() :
    connection(QStringLiteral("talvenhr.lock"))
{ }

Failure RunLock::take(const ConnectionParameters &parameters)
{
    if (asked)
        return {};
    if (const Failure failure = connection.open(parameters))
        return failure;
    const QSqlDatabase database = connection.handle();
    // A connection that rests for a year is not to be ended for that.
    QSqlQuery(database).exec(QStringLiteral("SET SESSION wait_timeout = 31536000"));
    const QString lock = lockName(parameters.database);
    const QString question = QStringLiteral("SELECT GET_LOCK(%1, 0)").arg(lock);
    Answer answer = answerOf(database, question);
    QString holder;
    if (answer.value.toInt() == 0 && !answer.value.isNull()) {
        holder = holderOf(database, lock);
        if (holder.isEmpty()) // gone in this moment
            answer = answerOf(database, question);
    }
    held = answer.value.toInt() == 1;
    asked = held || meansNoLocks(answer.error);
    if (asked)
        return {};
    if (answer.value.isNull())
        return {ExitDatabase,
                Text::tr("database '%1' cannot be locked against another run: %2")
                    .arg(parameters.database, errorText(answer.error))};
    return {ExitRefused,
            Text::tr("another 'talvenhr run' is at work on database '%1' (%2); two at a time would "
                     "undo each other's work, so wait for its end, or end it")
                .arg(parameters.database, holder)};
}

QString runLockHolder(const QSqlDatabase &database, QString *error)
{
    const QString lock = lockName(database.databaseName());
    const Answer answer = answerOf(database, QStringLiteral("SELECT IS_USED_LOCK(%1)").arg(lock));
    if (answer.error.isValid() && !meansNoLocks(answer.error))
        *error = errorText(answer.error);
    return answer.value.isNull() ? QString() : holderOf(database, lock);
}
