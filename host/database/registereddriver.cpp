// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A driver of our own in Qt's list of drivers.
#include "host/database/registereddriver.h"

#include <QSqlDriver>

#include <atomic>

namespace {

class Creator : public QSqlDriverCreatorBase
{
public:
    explicit Creator(const RegisteredDriver::Maker &driverMaker) :
        maker(driverMaker)
    { }

    QSqlDriver *createObject() const override { return maker(); }

private:
    const RegisteredDriver::Maker maker;
};

QString uniqueName(const QString &kind)
{
    static std::atomic_int count {0};
    return QStringLiteral("%1-%2").arg(kind).arg(++count);
}

} // namespace

RegisteredDriver::RegisteredDriver(const QString &kind, const Maker &maker) :
    driverName(uniqueName(kind))
{
    QSqlDatabase::registerSqlDriver(driverName, new Creator(maker));
}

RegisteredDriver::~RegisteredDriver()
{
    // Nothing in its place: Qt deletes the creator.
    QSqlDatabase::registerSqlDriver(driverName, nullptr);
}

QSqlDatabase RegisteredDriver::addHandle(const QString &connectionName) const
{
    return QSqlDatabase::addDatabase(driverName, connectionName);
}

QSqlDatabase RegisteredDriver::addHandleTo(const QSqlDatabase &database,
                                           const QString &connectionName) const
{
    QSqlDatabase handle = addHandle(connectionName);
    handle.setDatabaseName(database.databaseName());
    handle.setUserName(database.userName());
    handle.setPassword(database.password());
    handle.setHostName(database.hostName());
    handle.setPort(database.port());
    handle.setConnectOptions(database.connectOptions());
    handle.setNumericalPrecisionPolicy(database.numericalPrecisionPolicy());
    return handle;
}
