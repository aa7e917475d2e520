// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers by script and writes down every call.
#include "support/scripteddatabase.h"

#include "support/eventlog.h"

#include <QMutex>
#include <QMutexLocker>
#include <QSqlError>

#include <limits>

namespace {

ScriptedDatabase *current = nullptr;
QMutex scriptMutex;

} // namespace

ScriptedAnswer &ScriptedAnswer::withRows(const QStringList &names,
                                         const QVector<QVariantList> &values)
{
    setRows(names, values);
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
    error = QSqlError(QStringLiteral("(scripted)"), text, QSqlError::UnknownError, code);
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
    QSqlDatabase database = driver.addHandle(name);
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

std::shared_ptr<const DatabaseAnswer> ScriptedDatabase::answerTo(const DatabaseCall &call)
{
    const QString text = call.text();
    EventLog::record(QStringLiteral("sql ") + text);
    const auto answer = std::make_shared<const ScriptedAnswer>(current ? current->nextAnswer(text)
                                                                       : ScriptedAnswer());
    if (answer->sideEffect)
        answer->sideEffect();
    return answer;
}

ScriptedAnswer ScriptedDatabase::nextAnswer(const QString &call)
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
