// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An observer that writes down what it sees.
#pragma once

#include "host/database/recordingdriver.h"

#include <QStringList>

/// Notes calls and outcomes in a list, which may be another one's, too. For one thread.
class CallNotes : public CallObserver
{
public:
    explicit CallNotes(QStringList *noteList) :
        notes(noteList)
    { }

    QSqlError before(const DatabaseCall &call) override
    {
        notes->append(QStringLiteral("before ") + call.text());
        return refused == call.text()
            ? QSqlError(QStringLiteral("(observer)"), QStringLiteral("not today"), call.errorType(),
                        QStringLiteral("77"))
            : QSqlError();
    }

    void after(const DatabaseCall &call, const CallOutcome &outcome) override
    {
        const QString what = outcome.done ? QStringLiteral("done, %1").arg(outcome.affected)
                                          : outcome.error.text();
        notes->append(QStringLiteral("after %1: %2").arg(call.text(), what));
        nanoseconds = outcome.nanoseconds;
    }

    QString refused; ///< the text of the call that is refused
    qint64 nanoseconds = 0; ///< of the last call

private:
    QStringList *const notes;
};
