// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that the plugin's own code makes of a record.
#include "host/exportcheck/pluginstatements.h"

#include "host/database/answeringdriver.h"

#include <QSqlDatabase>

#include <mutex>

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

/// Of Qt's list of drivers, among all objects of the class.
std::mutex &listOfDrivers()
{
    static std::mutex mutex;
    return mutex;
}

} // namespace

PluginStatements::PluginStatements(const QHash<ushort, QString> &stateTexts) :
    taken(std::make_shared<QString>())
{
    const std::lock_guard<std::mutex> lock(listOfDrivers());
    // Not made by std::make_unique(): the driver can neither be copied nor moved.
    driver.reset(new RegisteredDriver(answeringDriver(keepStatements(taken))));
    // Nobody else in the process has the driver's name, so that the worker makes a connection.
    QSqlDatabase handle = driver->addHandle(driver->name());
    handle.setDatabaseName(driver->name());
    worker = std::make_unique<THRWorker>();
    worker->setOrvDb(handle);
    worker->setMes(stateTexts);
    worker->dbCheckOpen();
}

PluginStatements::~PluginStatements()
{
    const std::lock_guard<std::mutex> lock(listOfDrivers());
    worker.reset();
    QSqlDatabase::removeDatabase(driver->name());
    // The worker's own, under the name that it gives to it.
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.%1.TalvenHR").arg(driver->name()));
    driver.reset();
}

EmployeeRecord PluginStatements::personOf(Kind kind, const EmployeeRecord &record) const
{
    EmployeeRecord before;
    // One whose interval ends with this record.
    if (kind == UpdateFromState)
        before.rsBegin = QDate::currentDate().addDays(-1);
    return worker->withStateValidity(record, before);
}

QString PluginStatements::statement(Kind kind, const EmployeeRecord &person)
{
    taken->clear();
    if (kind == Add)
        worker->dbAddPerson(person);
    else
        worker->dbUpdatePerson(person, kind == UpdateFromState);
    return *taken;
}
