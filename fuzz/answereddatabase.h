// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers from bytes and knows which calls a pass may make.
#pragma once

#include "host/database/answeringdriver.h"

#include <QSqlDatabase>
#include <QVariant>
#include <QVector>

#include <cstddef>
#include <cstdint>

enum class PassStatement;

/// What becomes of the calls of one input. There is one at a time, the one that lives.
///
/// The low four bits of a byte choose: 1 to 8 a trouble (the call fails, with or without an error;
/// an error beside success; no rows; rows of NULLs or of odd cells, which take further bytes; an
/// unknown number of changed rows), all others the answer of a healthy database in which persons
/// and branches exist. So are the calls answered that come when the bytes are used up. The lookup
/// of a uid takes no byte and never fails; its answer is always the same, for the process remembers
/// it: pid + 1000, and none for pids divisible by 8 or above 65535.
///
/// Ends the process on a statement that no pass runs, on a prepared value that is not bound, and on
/// a transaction inside another.
class AnsweredDatabase
{
public:
    AnsweredDatabase(const uint8_t *bytes, std::size_t size, bool forced, bool opens,
                     bool markersInTexts);
    ~AnsweredDatabase();
    AnsweredDatabase(const AnsweredDatabase &) = delete;
    AnsweredDatabase &operator=(const AnsweredDatabase &) = delete;

    /// A handle of the process, not open.
    static QSqlDatabase handle();
    /// The text of the error of every statement that fails with one.
    static QString errorText();

    bool isInTransaction() const { return inTransaction; }
    /// The people could be read at least once.
    bool gavePeople() const { return peopleGiven; }

private:
    DatabaseAnswer answerTo(const DatabaseCall &call);
    DatabaseAnswer answerToStatement(const QString &statement);
    QVector<QVariantList> rowsOf(PassStatement shape, const QString &statement, uint8_t byte);
    QVector<QVariantList> people();
    QVector<QVariantList> oddRows(int count, int columns);

    uint8_t next();
    QVariant oddCell();

    const uint8_t *bytes;
    std::size_t left;
    const bool forced;
    const bool opens;
    bool markersInTexts; ///< in the export, or by now in a row
    bool inTransaction = false;
    bool peopleGiven = false;
};
