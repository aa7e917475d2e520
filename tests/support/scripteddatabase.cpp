// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers by script and writes down every call.
#include "support/scripteddatabase.h"

#include "support/eventlog.h"

#include <QMutex>
#include <QMutexLocker>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlField>
#include <QSqlRecord>
#include <QSqlResult>

#include <limits>

namespace {

ScriptedDatabase *current = nullptr;
QMutex scriptMutex;

QSqlError scriptedError(const ScriptedAnswer &answer, QSqlError::ErrorType type)
{
    return QSqlError(QStringLiteral("(scripted)"), answer.errorText, type, answer.errorCode);
}

class ScriptedResult : public QSqlResult
{
public:
    explicit ScriptedResult(const QSqlDriver *driver) :
        QSqlResult(driver)
    { }

protected:
    bool reset(const QString &statement) override
    {
        return take(ScriptedDatabase::call(QStringLiteral("exec ") + statement),
                    QSqlError::StatementError);
    }

    bool prepare(const QString &) override
    {
        // As the caller wrote it: for this driver Qt has put names in the place of each "?".
        return take(ScriptedDatabase::call(QStringLiteral("prepare ") + lastQuery()),
                    QSqlError::StatementError);
    }

    bool exec() override
    {
        QStringList values;
        for (int i = 0; i < boundValueCount(); ++i) {
            const QVariant bound = boundValue(i);
            const QString name = bindingSyntax() == NamedBinding ? boundValueName(i)
                                                                 : QString::number(i);
            values.append(name + QLatin1Char('=')
                          + (bound.isNull() ? QStringLiteral("NULL") : bound.toString()));
        }
        return take(
            ScriptedDatabase::call(QStringLiteral("run ") + values.join(QStringLiteral(", "))),
            QSqlError::StatementError);
    }

    QVariant data(int column) override { return answer.rows.value(at()).value(column); }
    bool isNull(int column) override { return data(column).isNull(); }
    int size() override { return answer.rows.size(); }
    int numRowsAffected() override { return answer.affected; }
    QVariant lastInsertId() const override { return answer.insertId; }
    bool fetchFirst() override { return fetch(0); }
    bool fetchLast() override { return fetch(answer.rows.size() - 1); }

    bool fetch(int row) override
    {
        if (row < 0 || row >= answer.rows.size())
            return false;
        setAt(row);
        return true;
    }

    QSqlRecord record() const override
    {
        QSqlRecord fields;
        for (const QString &column : answer.columns)
            fields.append(QSqlField(column));
        return fields;
    }

private:
    bool take(const ScriptedAnswer &given, QSqlError::ErrorType errorType)
    {
        answer = given;
        setAt(QSql::BeforeFirstRow);
        setSelect(!answer.columns.isEmpty());
        setActive(!answer.fails);
        setLastError(answer.reportsError ? scriptedError(answer, errorType) : QSqlError());
        return !answer.fails;
    }

    ScriptedAnswer answer;
};

class ScriptedDriver : public QSqlDriver
{
public:
    ~ScriptedDriver() override { ScriptedDriver::close(); }

    bool hasFeature(DriverFeature feature) const override
    {
        return feature == Transactions || feature == PreparedQueries || feature == NamedPlaceholders
            || feature == PositionalPlaceholders || feature == LastInsertId || feature == QuerySize;
    }

    bool open(const QString &, const QString &, const QString &, const QString &, int,
              const QString &) override
    {
        const bool opened = succeed(QStringLiteral("open"), QSqlError::ConnectionError);
        setOpen(opened);
        setOpenError(!opened);
        return opened;
    }

    void close() override
    {
        if (!isOpen())
            return;
        ScriptedDatabase::call(QStringLiteral("close"));
        setOpen(false);
    }

    QSqlResult *createResult() const override { return new ScriptedResult(this); }

    bool beginTransaction() override
    {
        return succeed(QStringLiteral("begin"), QSqlError::TransactionError);
    }
    bool commitTransaction() override
    {
        return succeed(QStringLiteral("commit"), QSqlError::TransactionError);
    }
    bool rollbackTransaction() override
    {
        return succeed(QStringLiteral("rollback"), QSqlError::TransactionError);
    }

private:
    bool succeed(const QString &call, QSqlError::ErrorType errorType)
    {
        const ScriptedAnswer answer = ScriptedDatabase::call(call);
        setLastError(answer.reportsError ? scriptedError(answer, errorType) : QSqlError());
        return !answer.fails;
    }
};

} // namespace

ScriptedAnswer &ScriptedAnswer::withRows(const QStringList &names,
                                         const QVector<QVariantList> &values)
{
    columns = names;
    rows = values;
    return *this;
}

ScriptedAnswer &ScriptedAnswer::withInsertId(const QVariant &id)
{
    insertId = id;
    return *this;
}

ScriptedAnswer &ScriptedAnswer::withAffected(int count)
{
    affected = count;
    return *this;
}

ScriptedAnswer &ScriptedAnswer::withError(const QString &code, const QString &text)
{
    fails = true;
    return withErrorBeside(code, text);
}

ScriptedAnswer &ScriptedAnswer::withErrorBeside(const QString &code, const QString &text)
{
    reportsError = true;
    errorCode = code;
    errorText = text;
    return *this;
}

ScriptedAnswer &ScriptedAnswer::doing(const std::function<void()> &effect)
{
    sideEffect = effect;
    return *this;
}

ScriptedDatabase::ScriptedDatabase()
{
    Q_ASSERT(!current);
    current = this;
    // Qt keeps the creator until the end of the process; registering again replaces it.
    QSqlDatabase::registerSqlDriver(QStringLiteral("SCRIPTED"),
                                    new QSqlDriverCreator<ScriptedDriver>);
}

ScriptedDatabase::~ScriptedDatabase()
{
    // The clones of the code under test stay registered: they go here as well.
    const QStringList names = QSqlDatabase::connectionNames();
    for (const QString &name : names) {
        if (connectionNames.contains(name) || name.startsWith(QLatin1String("OQS.")))
            QSqlDatabase::removeDatabase(name);
    }
    current = nullptr;
}

QSqlDatabase ScriptedDatabase::handle(const QString &databaseName)
{
    const QString name = QStringLiteral("scripted-%1").arg(connectionNames.size() + 1);
    connectionNames.append(name);
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("SCRIPTED"), name);
    database.setDatabaseName(databaseName);
    return database;
}

ScriptedAnswer &ScriptedDatabase::on(const QString &text, int times)
{
    const QMutexLocker locker(&scriptMutex);
    rules.push_back(std::make_unique<Rule>(Rule {text, times, ScriptedAnswer()}));
    return rules.back()->answer;
}

void ScriptedDatabase::failCall(int number, bool andAllLater)
{
    failCalls(number, andAllLater ? std::numeric_limits<int>::max() : number);
}

void ScriptedDatabase::failCalls(int first, int last)
{
    const QMutexLocker locker(&scriptMutex);
    firstFailingCall = first;
    lastFailingCall = last;
}

int ScriptedDatabase::callCount() const
{
    const QMutexLocker locker(&scriptMutex);
    return calls;
}

ScriptedAnswer ScriptedDatabase::call(const QString &call)
{
    EventLog::record(QStringLiteral("sql ") + call);
    if (!current)
        return ScriptedAnswer();
    const ScriptedAnswer answer = current->answerTo(call);
    if (answer.sideEffect)
        answer.sideEffect();
    return answer;
}

ScriptedAnswer ScriptedDatabase::answerTo(const QString &call)
{
    const QMutexLocker locker(&scriptMutex);
    ++calls;
    if (firstFailingCall > 0 && calls >= firstFailingCall && calls <= lastFailingCall)
        return ScriptedAnswer().withError(QStringLiteral("9999"), QStringLiteral("told to fail"));
    for (auto rule = rules.rbegin(); rule != rules.rend(); ++rule) {
        if ((*rule)->left == 0 || !call.contains((*rule)->text))
            continue;
        if ((*rule)->left > 0)
            --(*rule)->left;
        return (*rule)->answer;
    }
    return ScriptedAnswer();
}
