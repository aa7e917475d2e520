// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that the plugin's own code makes of a record.
#include "host/exportcheck/pluginstatements.h"

#include "host/database/answeringdriver.h"

#include <QSqlDatabase>

namespace {

/// Keeps each statement and refuses it, so that the plugin goes on to none that follows from it.
AnswerFunction keepStatements(const std::shared_ptr<QString> &taken)
{
    const auto done = std::make_shared<const DatabaseAnswer>();
    const auto refused = std::make_shared<DatabaseAnswer>();
    refused->fails = true;
    return [taken, done,
            refused = std::shared_ptr<const DatabaseAnswer>(refused)](const DatabaseCall &call) {
        if (call.kind != DatabaseCall::Exec)
            return done;
        *taken = call.statement;
        return refused;
    };
}

} // namespace

/// Handles of the driver go by its name, which nobody else in the process has.
PluginStatements::Connections::Connections(const QString &name) :
    database(name)
{ }

PluginStatements::Connections::~Connections()
{
    QSqlDatabase::removeDatabase(database);
    // The worker's clone, under the name that it gives to it.
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.%1.TalvenHR").arg(database));
}

PluginStatements::PluginStatements(const QHash<ushort, QString> &stateTexts) :
    taken(std::make_shared<QString>()),
    driver(answeringDriver(keepStatements(taken))),
    connections(driver.name())
{
    QSqlDatabase handle = driver.addHandle(driver.name());
    handle.setDatabaseName(driver.name());
    worker.setOrvDb(handle);
    worker.setMes(stateTexts);
    worker.dbCheckOpen();
}

PluginStatements::~PluginStatements() = default;

EmployeeRecord PluginStatements::personOf(Kind kind, const EmployeeRecord &record) const
{
    EmployeeRecord before;
    // One whose interval ends with this record.
    if (kind == UpdateFromState)
        before.rsBegin = QDate::currentDate().addDays(-1);
    return worker.withStateValidity(record, before);
}

QString PluginStatements::statement(Kind kind, const EmployeeRecord &person)
{
    taken->clear();
    if (kind == Add)
        worker.dbAddPerson(person);
    else
        worker.dbUpdatePerson(person, kind == UpdateFromState);
    return *taken;
}
