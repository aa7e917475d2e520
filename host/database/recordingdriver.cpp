// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A driver that shows every call of another one to an observer.
#include "host/database/recordingdriver.h"

#include "host/database/callresult.h"

#include <QElapsedTimer>
#include <QSqlDriver>
#include <QSqlIndex>
#include <QSqlQuery>
#include <QSqlRecord>

#include <utility>

namespace {

/// Of the registration and of each driver.
using SharedObserver = std::shared_ptr<CallObserver>;

/// Shows the call to the observer, and lets it be made unless it is refused.
template <typename Make>
CallOutcome observe(CallObserver &observer, const DatabaseCall &call, const Make &make)
{
    CallOutcome outcome;
    outcome.error = observer.before(call);
    if (outcome.error.isValid() && call.kind != DatabaseCall::Close)
        return outcome;
    QElapsedTimer timer;
    timer.start();
    outcome = make();
    outcome.nanoseconds = timer.nsecsElapsed();
    observer.after(call, outcome);
    return outcome;
}

/// Hands everything on to a query of the inner driver.
class RecordingResult : public CallResult
{
public:
    RecordingResult(const QSqlDriver *driver, const QSqlDriver &inner, CallObserver &observing) :
        CallResult(driver),
        observer(observing),
        query(inner.createResult())
    {
        query.setNumericalPrecisionPolicy(numericalPrecisionPolicy());
    }

    QVariant handle() const override { return query.result()->handle(); }

protected:
    bool make(const DatabaseCall &call) override
    {
        const CallOutcome outcome = observe(observer, call, [&] { return pass(call); });
        setLastError(outcome.error);
        if (call.kind != DatabaseCall::Prepare)
            settle(outcome.done);
        return outcome.done;
    }

    QVariant data(int column) override { return query.value(column); }
    bool isNull(int column) override { return query.isNull(column); }
    bool fetch(int row) override { return moved(query.seek(row)); }
    bool fetchFirst() override { return moved(query.first()); }
    bool fetchNext() override { return moved(query.next()); }
    bool fetchPrevious() override { return moved(query.previous()); }
    bool fetchLast() override { return moved(query.last()); }
    int size() override { return query.size(); }
    int numRowsAffected() override { return query.numRowsAffected(); }
    QVariant lastInsertId() const override { return query.lastInsertId(); }
    QSqlRecord record() const override { return query.record(); }

    bool nextResult() override
    {
        const bool found = query.nextResult();
        setLastError(query.lastError());
        settle(found);
        return found;
    }

    void detachFromResultSet() override { query.finish(); }

    void setForwardOnly(bool forward) override
    {
        CallResult::setForwardOnly(forward);
        query.setForwardOnly(forward);
    }

    void setNumericalPrecisionPolicy(QSql::NumericalPrecisionPolicy policy) override
    {
        CallResult::setNumericalPrecisionPolicy(policy);
        query.setNumericalPrecisionPolicy(policy);
    }

private:
    CallOutcome pass(const DatabaseCall &call)
    {
        CallOutcome outcome;
        switch (call.kind) {
        case DatabaseCall::Exec:
            outcome.done = query.exec(call.statement);
            break;
        case DatabaseCall::Prepare:
            outcome.done = query.prepare(call.statement);
            break;
        default:
            bind(call.values);
            outcome.done = query.exec();
        }
        outcome.error = query.lastError();
        if (call.kind != DatabaseCall::Prepare && !query.isSelect())
            outcome.affected = query.numRowsAffected();
        return outcome;
    }

    void bind(const QVector<DatabaseCall::Value> &values)
    {
        for (int i = 0; i < values.size(); ++i) {
            if (bindingSyntax() == NamedBinding)
                query.bindValue(values.at(i).name, values.at(i).value, bindValueType(i));
            else
                query.bindValue(i, values.at(i).value, bindValueType(i));
        }
    }

    void settle(bool done)
    {
        setAt(query.at());
        setSelect(query.isSelect());
        setActive(done);
    }

    bool moved(bool found)
    {
        setAt(query.at());
        if (!found)
            setLastError(query.lastError());
        return found;
    }

    CallObserver &observer; // of the driver, without which no call is made
    QSqlQuery query;
};

/// A connection that is not in Qt's list, which is locked while a driver goes.
class UnlistedDatabase : public QSqlDatabase
{
public:
    explicit UnlistedDatabase(const QString &driver) :
        QSqlDatabase(driver)
    { }
};

class RecordingDriver : public QSqlDriver
{
public:
    RecordingDriver(const QString &innerDriver, SharedObserver observing) :
        observer(std::move(observing)),
        connection(innerDriver),
        inner(*connection.driver())
    { }
    ~RecordingDriver() override { RecordingDriver::close(); }

    bool open(const QString &name, const QString &user, const QString &password,
              const QString &host, int port, const QString &options) override
    {
        const bool opened = make(DatabaseCall::Open, [&] {
            return inner.open(name, user, password, host, port, options);
        });
        setOpen(opened);
        setOpenError(!opened);
        return opened;
    }

    void close() override
    {
        if (!isOpen())
            return;
        make(DatabaseCall::Close, [this] {
            inner.close();
            return true;
        });
        setOpen(false);
    }

    bool beginTransaction() override
    {
        return make(DatabaseCall::Begin, [this] { return inner.beginTransaction(); });
    }
    bool commitTransaction() override
    {
        return make(DatabaseCall::Commit, [this] { return inner.commitTransaction(); });
    }
    bool rollbackTransaction() override
    {
        return make(DatabaseCall::Rollback, [this] { return inner.rollbackTransaction(); });
    }

    QSqlResult *createResult() const override
    {
        return new RecordingResult(this, inner, *observer);
    }

    bool hasFeature(DriverFeature feature) const override
    {
        return feature != EventNotifications && feature != CancelQuery && inner.hasFeature(feature);
    }
    QVariant handle() const override { return inner.handle(); }
    QStringList tables(QSql::TableType type) const override { return inner.tables(type); }
    QSqlIndex primaryIndex(const QString &table) const override
    {
        return inner.primaryIndex(table);
    }
    QSqlRecord record(const QString &table) const override { return inner.record(table); }
    QString formatValue(const QSqlField &field, bool trimmed) const override
    {
        return inner.formatValue(field, trimmed);
    }
    QString escapeIdentifier(const QString &identifier, IdentifierType type) const override
    {
        return inner.escapeIdentifier(identifier, type);
    }
    bool isIdentifierEscaped(const QString &identifier, IdentifierType type) const override
    {
        return inner.isIdentifierEscaped(identifier, type);
    }
    QString stripDelimiters(const QString &identifier, IdentifierType type) const override
    {
        return inner.stripDelimiters(identifier, type);
    }
    QString sqlStatement(StatementType type, const QString &table, const QSqlRecord &record,
                         bool prepared) const override
    {
        return inner.sqlStatement(type, table, record, prepared);
    }

private:
    template <typename Make>
    bool make(DatabaseCall::Kind kind, const Make &call)
    {
        const CallOutcome outcome = observe(*observer, {kind, {}, {}}, [&] {
            CallOutcome made;
            made.done = call();
            made.error = inner.lastError();
            return made;
        });
        setLastError(outcome.error);
        return outcome.done;
    }

    const SharedObserver observer;
    const UnlistedDatabase connection;
    QSqlDriver &inner;
};

} // namespace

void CallObserver::after(const DatabaseCall &, const CallOutcome &) { }

RegisteredDriver recordingDriver(const QString &innerDriver, const SharedObserver &observer)
{
    return RegisteredDriver(QStringLiteral("RECORDING"), [innerDriver, observer] {
        return new RecordingDriver(innerDriver, observer);
    });
}
