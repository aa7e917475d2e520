// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the settings of a server are to a statement, and to the time in it.
#include "host/copy/serversettings.h"

#include "host/copy/sqlnames.h"
#include "host/copy/zonetable.h"
#include "host/database/errortext.h"

#include <QCoreApplication>
#include <QHash>
#include <QRegularExpression>
#include <QSqlQuery>
#include <QVariant>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(DatabaseCopy)
};

const QString zoneVariable = QStringLiteral("time_zone");

/// Those of connections (character sets, timeouts) are the client's business, or cost only time.
QStringList variableNames()
{
    return QStringLiteral("time_zone sql_mode old_mode auto_increment_increment "
                          "auto_increment_offset character_set_server collation_server "
                          "group_concat_max_len tx_isolation div_precision_increment "
                          "default_week_format lc_time_names innodb_strict_mode sql_auto_is_null "
                          "sql_safe_updates sql_select_limit max_sort_length autocommit "
                          "completion_type foreign_key_checks unique_checks "
                          "check_constraint_checks max_allowed_packet innodb_autoinc_lock_mode "
                          "lower_case_table_names")
        .split(QLatin1Char(' '));
}

bool isForTheStart(const QString &name)
{
    return name == QLatin1String("innodb_autoinc_lock_mode")
        || name == QLatin1String("lower_case_table_names");
}

/// Not to be set in a session.
bool isGlobalOnly(const QString &name)
{
    return name == QLatin1String("max_allowed_packet");
}

Failure fault(const QSqlQuery &query)
{
    return {ExitDatabase,
            Text::tr("the settings of the server cannot be copied: %1")
                .arg(errorText(query.lastError()))};
}

QString valueText(const QString &value)
{
    static const QRegularExpression number(QStringLiteral("^-?\\d+$"));
    return number.match(value).hasMatch() ? value : quotedText(value);
}

Failure readVariables(QSqlQuery *query, const QString &scope, QHash<QString, QString> *values)
{
    QStringList names;
    for (const QString &name : variableNames())
        names.append(quotedText(name));
    if (!query->exec(QStringLiteral("SHOW %1 VARIABLES WHERE Variable_name IN (%2)")
                         .arg(scope, names.join(QStringLiteral(", ")))))
        return fault(*query);
    while (query->next())
        values->insert(query->value(0).toString().toLower(), query->value(1).toString());
    return {};
}

Failure setVariable(QSqlQuery *query, const QString &scope, const QString &name,
                    const QString &value)
{
    // Unknown to a server of another version.
    const bool done = query->exec(
        QStringLiteral("SET %1 %2 = %3").arg(scope, name, valueText(value)));
    return done || query->lastError().nativeErrorCode() == QLatin1String("1193") ? Failure()
                                                                                 : fault(*query);
}

/// The name under which this server can have the zone: the source's own, if that can be.
Failure takeZone(const QSqlDatabase &database, const ServerSettings &settings, QString *name)
{
    QSqlQuery query(database);
    const QString tryZone = QStringLiteral("SET time_zone = %1");
    const auto isRight = [&](const QString &zone) {
        return query.exec(tryZone.arg(quotedText(zone)))
            && localTimes(database) == settings.localTimes;
    };
    if (isRight(*name))
        return {};
    QString known = *name;
    QTimeZone zone(name->toUtf8());
    if (!zone.isValid() || !keepsTimes(zone, settings.localTimes))
        zone = zoneOf(settings.localTimes);
    // SYSTEM is this machine's here, so the zone gets the name that it has everywhere.
    if (*name == QLatin1String("SYSTEM"))
        known = QString::fromUtf8(zone.id());
    if (zone.isValid()) {
        for (const QString &statement : zoneStatements(known, zone)) {
            if (!query.exec(statement))
                return fault(query);
        }
        if (isRight(known)) {
            *name = known;
            return {};
        }
    }
    return {ExitRefused,
            Text::tr("the source has the time zone '%1', which this machine does not know: the "
                     "copy would count in other days; install the package tzdata, or let the "
                     "server of the source use a zone with a name")
                .arg(*name)};
}

} // namespace

QString ServerSettings::global(const QString &variable) const
{
    for (const ServerVariable &one : variables) {
        if (one.name == variable)
            return one.global;
    }
    return QString();
}

QString ServerSettings::session(const QString &variable) const
{
    for (const ServerVariable &one : variables) {
        if (one.name == variable)
            return one.session;
    }
    return QString();
}

QString localTimes(const QSqlDatabase &database)
{
    QStringList times;
    for (const qint64 moment : probedMoments())
        times.append(QStringLiteral("FROM_UNIXTIME(%1)").arg(moment));
    QSqlQuery query(database);
    const bool done = query.exec(QStringLiteral("SELECT CONCAT_WS(',', %1)")
                                     .arg(times.join(QStringLiteral(", "))))
        && query.next();
    return done ? query.value(0).toString() : QString();
}

Failure readServerSettings(const QSqlDatabase &database, ServerSettings *settings)
{
    QSqlQuery query(database);
    QHash<QString, QString> globals;
    QHash<QString, QString> sessions;
    Failure failure = readVariables(&query, QStringLiteral("GLOBAL"), &globals);
    if (!failure)
        failure = readVariables(&query, QStringLiteral("SESSION"), &sessions);
    if (failure)
        return failure;
    for (const QString &name : variableNames()) {
        if (globals.contains(name) && !isForTheStart(name))
            settings->variables.append({name, globals.value(name), sessions.value(name)});
    }
    settings->autoincLockMode
        = globals.value(QStringLiteral("innodb_autoinc_lock_mode"), QStringLiteral("1")).toInt();
    settings->lowerCaseTableNames = globals.value(QStringLiteral("lower_case_table_names")).toInt();
    settings->localTimes = localTimes(database);
    return settings->localTimes.isEmpty()
        ? Failure {ExitDatabase, Text::tr("the server does not tell local times")}
        : Failure();
}

Failure applyServerSettings(const QSqlDatabase &database, const ServerSettings &settings)
{
    QString zone = settings.session(zoneVariable);
    if (const Failure failure = takeZone(database, settings, &zone))
        return failure;
    const bool oneZone = settings.global(zoneVariable) == settings.session(zoneVariable);

    QSqlQuery query(database);
    QStringList differing;
    for (const ServerVariable &variable : settings.variables) {
        const bool isZone = variable.name == zoneVariable;
        const QString session = isZone ? zone : variable.session;
        const QString global = isZone && oneZone ? zone : variable.global;
        Failure failure = setVariable(&query, QStringLiteral("GLOBAL"), variable.name, global);
        // A zone that no session of the login sees can stay away.
        if (failure && isZone)
            failure = setVariable(&query, QStringLiteral("GLOBAL"), variable.name, zone);
        if (failure)
            return failure;
        if (session != global && !isGlobalOnly(variable.name))
            differing.append(QStringLiteral("%1 = %2").arg(variable.name, valueText(session)));
    }
    if (differing.isEmpty())
        return {};
    const QString statement = QStringLiteral("SET ") + differing.join(QStringLiteral(", "));
    return query.exec(QStringLiteral("SET GLOBAL init_connect = ") + quotedText(statement))
        ? Failure()
        : fault(query);
}
