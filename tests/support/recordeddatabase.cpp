// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A real database whose every call is written down.
#include "support/recordeddatabase.h"

#include "support/eventlog.h"

#include <QLibraryInfo>
#include <QMutexLocker>
#include <QPluginLoader>
#include <QSqlDriver>
#include <QSqlDriverPlugin>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QSqlResult>

#include <memory>

namespace {

QMutex hookMutex;
RecordedCallHook::Function hookFunction;

/// Writes the call down. The error with which it has to fail; not valid when it goes on.
QSqlError announce(const QString &call)
{
    EventLog::record(QStringLiteral("sql ") + call);
    RecordedCallHook::Function hook;
    {
        const QMutexLocker locker(&hookMutex);
        hook = hookFunction;
    }
    return hook ? hook(call) : QSqlError();
}

/// Hands everything on to a query of the real driver.
class RecordedResult : public QSqlResult
{
public:
    RecordedResult(const QSqlDriver *driver, const QSqlDriver &real) :
        QSqlResult(driver),
        query(real.createResult())
    { }

protected:
    bool reset(const QString &statement) override
    {
        const QSqlError fault = announce(QStringLiteral("exec ") + statement);
        return fault.isValid() ? refuse(fault) : take(query.exec(statement));
    }

    bool prepare(const QString &) override
    {
        // As the caller wrote it: for this driver Qt has put names in the place of each "?".
        const QSqlError fault = announce(QStringLiteral("prepare ") + lastQuery());
        if (fault.isValid())
            return refuse(fault);
        const bool prepared = query.prepare(lastQuery());
        setLastError(query.lastError());
        return prepared;
    }

    bool exec() override
    {
        QStringList values;
        for (int i = 0; i < boundValueCount(); ++i) {
            const QVariant bound = boundValue(i);
            const QString text = bound.isNull() ? QStringLiteral("NULL") : bound.toString();
            if (bindingSyntax() == NamedBinding) {
                query.bindValue(boundValueName(i), bound);
                values.append(boundValueName(i) + QLatin1Char('=') + text);
            } else {
                query.bindValue(i, bound);
                values.append(QString::number(i) + QLatin1Char('=') + text);
            }
        }
        const QSqlError fault = announce(QStringLiteral("run ")
                                         + values.join(QStringLiteral(", ")));
        return fault.isValid() ? refuse(fault) : take(query.exec());
    }

    QVariant data(int column) override { return query.value(column); }
    bool isNull(int column) override { return query.isNull(column); }
    bool fetch(int row) override { return moved(query.seek(row)); }
    bool fetchFirst() override { return moved(query.first()); }
    bool fetchNext() override { return moved(query.next()); }
    bool fetchLast() override { return moved(query.last()); }
    int size() override { return query.size(); }
    int numRowsAffected() override { return query.numRowsAffected(); }
    QVariant lastInsertId() const override { return query.lastInsertId(); }
    QSqlRecord record() const override { return query.record(); }

private:
    bool take(bool done)
    {
        setLastError(query.lastError());
        setSelect(query.isSelect());
        setActive(done);
        setAt(QSql::BeforeFirstRow);
        return done;
    }

    bool refuse(const QSqlError &fault)
    {
        setLastError(fault);
        setActive(false);
        return false;
    }

    bool moved(bool found)
    {
        setAt(query.at());
        if (!found)
            setLastError(query.lastError());
        return found;
    }

    QSqlQuery query;
};

/// A driver of its own, not a connection of Qt's list: that list is locked while a driver goes.
std::unique_ptr<QSqlDriver> realDriver()
{
    QPluginLoader loader(QLibraryInfo::location(QLibraryInfo::PluginsPath)
                         + QStringLiteral("/sqldrivers/libqsqlmysql.so"));
    auto *const plugin = qobject_cast<QSqlDriverPlugin *>(loader.instance());
    if (!plugin)
        qFatal("no MySQL driver: %s", qPrintable(loader.errorString()));
    return std::unique_ptr<QSqlDriver>(plugin->create(QStringLiteral("QMYSQL")));
}

class RecordedDriver : public QSqlDriver
{
public:
    ~RecordedDriver() override { RecordedDriver::close(); }

    bool hasFeature(DriverFeature feature) const override
    {
        return feature == NamedPlaceholders || real->hasFeature(feature);
    }

    bool open(const QString &name, const QString &user, const QString &password,
              const QString &host, int port, const QString &options) override
    {
        const QSqlError fault = announce(QStringLiteral("open"));
        const bool opened = fault.isValid()
            ? refuse(fault)
            : outcome(real->open(name, user, password, host, port, options));
        setOpen(opened);
        setOpenError(!opened);
        return opened;
    }

    void close() override
    {
        if (!isOpen())
            return;
        announce(QStringLiteral("close"));
        real->close();
        setOpen(false);
    }

    QSqlResult *createResult() const override { return new RecordedResult(this, *real); }

    bool beginTransaction() override
    {
        const QSqlError fault = announce(QStringLiteral("begin"));
        return fault.isValid() ? refuse(fault) : outcome(real->beginTransaction());
    }

    bool commitTransaction() override
    {
        const QSqlError fault = announce(QStringLiteral("commit"));
        return fault.isValid() ? refuse(fault) : outcome(real->commitTransaction());
    }

    bool rollbackTransaction() override
    {
        const QSqlError fault = announce(QStringLiteral("rollback"));
        return fault.isValid() ? refuse(fault) : outcome(real->rollbackTransaction());
    }

private:
    bool outcome(bool done)
    {
        setLastError(real->lastError());
        return done;
    }

    bool refuse(const QSqlError &fault)
    {
        setLastError(fault);
        return false;
    }

    const std::unique_ptr<QSqlDriver> real = realDriver();
};

} // namespace

QSqlDatabase recordedHandle(const QSqlDatabase &database)
{
    const QString driver = QStringLiteral("RECORDED");
    if (!QSqlDatabase::isDriverAvailable(driver))
        QSqlDatabase::registerSqlDriver(driver, new QSqlDriverCreator<RecordedDriver>);

    QSqlDatabase handle = QSqlDatabase::addDatabase(
        driver, database.connectionName() + QStringLiteral("-recorded"));
    handle.setDatabaseName(database.databaseName());
    handle.setUserName(database.userName());
    handle.setPassword(database.password());
    handle.setHostName(database.hostName());
    handle.setPort(database.port());
    handle.setConnectOptions(database.connectOptions());
    return handle;
}

RecordedCallHook::RecordedCallHook(const Function &function)
{
    const QMutexLocker locker(&hookMutex);
    hookFunction = function;
}

RecordedCallHook::~RecordedCallHook()
{
    const QMutexLocker locker(&hookMutex);
    hookFunction = nullptr;
}
