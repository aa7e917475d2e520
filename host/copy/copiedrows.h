// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of a table, as lines for another server.
#pragma once

#include "host/base/failure.h"
#include "host/copy/copiedschema.h"

#include <QCryptographicHash>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

/// What the rows of a table have to satisfy to be copied, as SQL expressions; empty ones hold for
/// all rows.
struct RowConditions
{
    QString people; ///< finds the rows of some
    QString period; ///< is asked of one row after the other
};

/// Not whole, a table has the rows that a statement of a pass can look at: unlocked days, and of
/// each month the first locked one, as a pass counts the months in which there are days of any
/// kind; the moves of the leave fund. Where only some people are wished for, the tables that a pass
/// may write have only their rows, and what a pass writes to nobody's.
RowConditions rowConditions(const CopiedSchema &schema, const CopiedTable &table,
                            const CopyWishes &wishes);

/// Reads rows in the order of their key, and hands them out as lines (lineExpression()).
///
/// A large table is read in ranges of its key where that begins with a whole number, as the driver
/// may hold the whole result of a statement; a table without such a key is read at once. Within a
/// transaction of one snapshot the ranges are of one moment.
///
/// Owned by whoever copies, and used on the thread of the handle, which can do nothing else until
/// the last row was read.
class RowStream
{
public:
    /// All that is read goes into the digest, too.
    RowStream(const QSqlDatabase &database, const CopiedTable &table, const RowConditions &wanted,
              QCryptographicHash *digest);

    /// Reads so many rows at once, in place of what suits the table.
    void setRangeRows(int number) { rangeRows = number; }
    /// The lines of the next rows; empty at the end, and on a failure.
    QByteArray next();
    Failure failure() const { return trouble; }
    /// Handed out so far.
    qint64 rows() const { return count; }

private:
    bool appendRow(QByteArray *lines);
    bool nextRow();
    bool beginRange();
    bool findRange();
    QString rangeCondition() const;
    void checkEnd();
    void fail(const QSqlError &error);

    const QSqlDatabase database;
    const CopiedTable table;
    const RowConditions wanted;
    QCryptographicHash *const digest;
    const QString rangeColumn; ///< empty: there is but one range
    int rangeRows;
    QString after; ///< of the range that is read, a number; empty for the first
    QString upTo; ///< likewise; empty for the last
    std::unique_ptr<QSqlQuery> query; ///< of the range that is read
    bool atEnd = false;
    Failure trouble;
    qint64 count = 0;
};
