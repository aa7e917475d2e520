// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings variables: the table `vars` of the attendance database.
#include "repository/orvdbsettings.h"

#include "repository/sqlerror.h"

#include <QDebug>

namespace {

/// Two records, the caption alone and then the error unquoted. Deliberate: variableSet() and
/// dbOpen() write one record with the error in quotes instead. Pinned by
/// tst_OrvDbSettings::errorRecords().
void reportSqlError(const char *caption, const QSqlQuery &query)
{
    if (!query.lastError().isValid())
        return;
    qCritical() << caption;
    qCritical() << SQL_TEXT(query);
}

void reportSetError(const QSqlQuery &query)
{
    if (query.lastError().isValid())
        qCritical() << "variableSet ERROR:" << query.lastError().text();
}

bool prepareSet(QSqlQuery &query)
{
    return query.prepare(QStringLiteral("INSERT INTO vars (name, value) VALUES(:name, :value) "
                                        "ON DUPLICATE KEY UPDATE value=VALUES(value);"));
}

bool execSet(QSqlQuery &query, const QString &name, const QVariant &value)
{
    query.bindValue(QStringLiteral(":name"), QVariant(name), QSql::In);
    query.bindValue(QStringLiteral(":value"), value, QSql::In);
    return query.exec();
}

} // namespace

OrvDbSettings::OrvDbSettings(const QSqlDatabase &database) :
    db(database)
{ }

void OrvDbSettings::setDb(const QSqlDatabase &database)
{
    db = database;
}

bool OrvDbSettings::dbOpen()
{
    const bool opened = db.open();
    if (db.lastError().isValid())
        qCritical() << "OrvDbSettings Database Error:" << db.lastError().text();
    return opened;
}

void OrvDbSettings::dbClose()
{
    db.close();
}

QVariant OrvDbSettings::variableGet(const QString &name, QVariant defaultValue)
{
    QSqlQuery query(db);
    const QString statement = QStringLiteral("SELECT value FROM vars WHERE name='%1' LIMIT 1")
                                  .arg(name);
    if (query.exec(statement) && query.next())
        return query.value(QStringLiteral("value"));

    reportSqlError("OrvDbSettings::variableGet - SQL ERROR:", query);
    return defaultValue;
}

bool OrvDbSettings::variableSet(const QString &name, const QVariant &value)
{
    QSqlQuery query(db);
    if (prepareSet(query) && execSet(query, name, value))
        return true;

    reportSetError(query);
    return false;
}

bool OrvDbSettings::variableSet(const QMap<QString, QVariant> &values)
{
    QSqlQuery query(db);
    if (!prepareSet(query)) {
        reportSetError(query);
        return false;
    }

    // Deliberate: 16 bits, so that 65536 variables or more never count as all written. Pinned by
    // tst_OrvDbSettings::variableSet_mapOf65536IsNeverASuccess().
    quint16 written = 0;
    for (auto it = values.constBegin(); it != values.constEnd(); ++it) {
        if (execSet(query, it.key(), it.value()))
            ++written;
        reportSetError(query);
    }
    return values.size() == written;
}

bool OrvDbSettings::variableDel(const QString &name, bool like)
{
    QSqlQuery query(db);
    const QString statement = like
        ? QStringLiteral("DELETE FROM vars WHERE name LIKE '%1%'").arg(name)
        : QStringLiteral("DELETE FROM vars WHERE name='%1'").arg(name);
    const bool deleted = query.exec(statement) && query.numRowsAffected() > 0;
    reportSqlError("OrvDbSettings::variableDel - SQL ERROR:", query);
    return deleted;
}

QMap<QString, QVariant> OrvDbSettings::variableGetMultiple(const QStringList &names)
{
    if (names.isEmpty())
        return {};

    QStringList quoted;
    for (const QString &name : names)
        quoted.append(QLatin1Char('\'') + name + QLatin1Char('\''));
    return selectVariables(QStringLiteral("SELECT name, value FROM vars WHERE name IN(%1)")
                               .arg(quoted.join(QLatin1Char(','))));
}

QMap<QString, QVariant> OrvDbSettings::variableGetMultiple(const QString &prefix)
{
    return selectVariables(
        QStringLiteral("SELECT name, value FROM vars WHERE name LIKE '%1%'").arg(prefix));
}

/// The rows of the statement up to its end or to the first error.
QMap<QString, QVariant> OrvDbSettings::selectVariables(const QString &statement)
{
    QMap<QString, QVariant> variables;
    QSqlQuery query(db);
    if (query.exec(statement)) {
        while (query.next())
            variables.insert(query.value(QStringLiteral("name")).toString(),
                             query.value(QStringLiteral("value")));
    }
    reportSqlError("OrvDbSettings::variableGetMultiple - SQL ERROR:", query);
    return variables;
}
