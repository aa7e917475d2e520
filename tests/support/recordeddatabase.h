// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A real database whose every call is written down.
#pragma once

#include <QSqlDatabase>
#include <QSqlError>

#include <functional>

/// A handle that is not open, to the MySQL database of the one given. Its calls and those of its
/// clones land in the EventLog, in the form that ScriptedDatabase gives them, and then go to the
/// real database. It belongs to the caller, who removes its connection; the given one may go.
QSqlDatabase recordedHandle(const QSqlDatabase &database);

/// Comes before each call of every recorded database, on the thread that makes the call, as long as
/// it lives; there is one at a time. It is given the text of the DatabaseCall. The call fails with
/// the error that comes back, and does not reach the real database; an error that is not valid lets
/// it go on. A close is announced as well, but cannot fail.
class RecordedCallHook
{
public:
    using Function = std::function<QSqlError(const QString &call)>;

    explicit RecordedCallHook(const Function &function);
    ~RecordedCallHook();
    RecordedCallHook(const RecordedCallHook &) = delete;
    RecordedCallHook &operator=(const RecordedCallHook &) = delete;
};
