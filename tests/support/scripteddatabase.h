// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers by script and writes down every call.
#pragma once

#include "host/database/answeringdriver.h"

#include <QSqlDatabase>
#include <QStringList>
#include <QVariant>
#include <QVector>

#include <functional>
#include <memory>
#include <vector>

/// What the scripted database answers to a call.
struct ScriptedAnswer : DatabaseAnswer
{
    std::function<void()> sideEffect; ///< called before the answer is given

    ScriptedAnswer &withRows(const QStringList &names, const QVector<QVariantList> &values);
    ScriptedAnswer &withInsertId(const QVariant &id);
    ScriptedAnswer &withAffected(int count);
    /// The query's lastError().text() is then "TEXT (scripted)".
    ScriptedAnswer &withError(const QString &code, const QString &text);
    /// As withError(), yet the call succeeds: only lastError() tells.
    ScriptedAnswer &withErrorBeside(const QString &code, const QString &text);
    ScriptedAnswer &doing(const std::function<void()> &effect);
};

/// The script behind a driver, and the handle by which code under test reaches it.
///
/// Each call lands in the EventLog: "sql " and the text of the DatabaseCall. There is one script at
/// a time, shared by all clones of the handle and by all threads.
///
/// Without a rule a statement succeeds with no rows, no insert id and no affected rows.
class ScriptedDatabase
{
public:
    ScriptedDatabase();
    ~ScriptedDatabase();
    ScriptedDatabase(const ScriptedDatabase &) = delete;
    ScriptedDatabase &operator=(const ScriptedDatabase &) = delete;

    /// A handle that is not open, registered under a name of its own; its database is called as
    /// told.
    QSqlDatabase handle(const QString &databaseName = QStringLiteral("scripted"));

    /// The answer to every call whose text contains this one ("open", "begin", "prepare ..." and
    /// statements alike). The newest rule wins. With `times` the rule is used up after so many
    /// calls.
    ScriptedAnswer &on(const QString &text, int times = -1);

    /// Numbers all calls from 1; the n-th, or every one from the n-th on, fails.
    void failCall(int number, bool andAllLater = false);
    /// As failCall(), all from the first to the last; they fail no more after failCall(0).
    void failCalls(int first, int last);
    int callCount() const;

private:
    struct Rule
    {
        QString text;
        int left;
        ScriptedAnswer answer;
    };

    static std::shared_ptr<const DatabaseAnswer> answerTo(const DatabaseCall &call);
    ScriptedAnswer nextAnswer(const QString &call);

    const RegisteredDriver driver = answeringDriver(answerTo);

    // Addresses of answers must last: a rule is filled after it was made.
    std::vector<std::unique_ptr<Rule>> rules;
    int calls = 0;
    int firstFailingCall = 0;
    int lastFailingCall = 0;
    QStringList connectionNames;
};
