// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A driver of our own in Qt's list of drivers.
#pragma once

#include <QSqlDatabase>
#include <QString>

#include <functional>

QT_BEGIN_NAMESPACE
class QSqlDriver;
QT_END_NAMESPACE

/// A driver under a name that no other one has, in Qt's list for as long as this object lives.
///
/// QSqlDatabase::cloneDatabase() goes by the driver's name, so that a handle and all its clones
/// come from the same object. They may outlive it; but then nobody can clone them any more.
///
/// Qt's list of drivers has no lock: make and destroy the object while no other thread makes or
/// clones a handle, whatever its driver.
class RegisteredDriver
{
public:
    /// A new driver, which becomes Qt's. Called on the thread that makes or clones a handle; lives
    /// as long as the RegisteredDriver.
    using Maker = std::function<QSqlDriver *()>;

    /// The driver's name begins with `kind`.
    RegisteredDriver(const QString &kind, const Maker &maker);
    ~RegisteredDriver();
    RegisteredDriver(const RegisteredDriver &) = delete;
    RegisteredDriver &operator=(const RegisteredDriver &) = delete;

    const QString &name() const { return driverName; }

    /// A handle that is not open, under this name in Qt's list of connections.
    QSqlDatabase addHandle(const QString &connectionName) const;
    /// As addHandle(), to the database of the handle given, which may go.
    QSqlDatabase addHandleTo(const QSqlDatabase &database, const QString &connectionName) const;

private:
    const QString driverName;
};
