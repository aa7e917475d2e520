// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A recorded database that answers from memory.
#pragma once

#include "host/database/answeringdriver.h"
#include "host/database/recordingdriver.h"
#include "support/database/callnotes.h"

#include <QSqlDatabase>
#include <QStringList>

#include <memory>
#include <utility>

/// A driver that answers from memory and writes what it is asked into the list, as "inner CALL".
class AnsweringNotes
{
public:
    explicit AnsweringNotes(QStringList *notes) :
        driver(answeringDriver([this, notes](const DatabaseCall &call) {
            notes->append(QStringLiteral("inner ") + call.text());
            return std::make_shared<const DatabaseAnswer>(answer);
        }))
    { }

    DatabaseAnswer answer;
    const RegisteredDriver driver;
};

/// An open handle over a driver that answers from memory; one list tells what both see.
struct RecordedMemory
{
    RecordedMemory()
    {
        database.open();
        notes.clear();
    }
    ~RecordedMemory()
    {
        database = QSqlDatabase();
        QSqlDatabase::removeDatabase(QStringLiteral("recorded"));
    }

    QStringList take() { return std::exchange(notes, {}); }

    QStringList notes;
    AnsweringNotes inner {&notes};
    std::shared_ptr<CallNotes> observer = std::make_shared<CallNotes>(&notes);
    const RegisteredDriver driver = recordingDriver(inner.driver.name(), observer);
    QSqlDatabase database = driver.addHandle(QStringLiteral("recorded"));
};

/// A call that was let through, as all three see it.
inline QStringList seen(const QString &call, const QString &outcome)
{
    return {QStringLiteral("before ") + call, QStringLiteral("inner ") + call,
            QStringLiteral("after %1: %2").arg(call, outcome)};
}
