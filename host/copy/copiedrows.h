// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of a table, as a statement for another server.
#pragma once

#include "host/base/failure.h"
#include "host/copy/copiedschema.h"

#include <QCryptographicHash>
#include <QSqlError>
#include <QSqlQuery>

#include <memory>

/// The statement that reads the rows of a table that are to be copied, in the order of its key,
/// each row as one text: its values in parentheses, as literals that depend on no character set and
/// on no time zone, provided that the session that takes them has the time zone +00:00.
///
/// Not whole, a table has the rows that a statement of a pass can look at: unlocked days, and of
/// each month the first locked one, as a pass counts the months in which there are days of any
/// kind; the moves of the leave fund. Where only some people are wished for, the tables that a pass
/// may write have only their rows, and what a pass writes to nobody's.
QString rowStatement(const CopiedSchema &schema, const CopiedTable &table,
                     const CopyWishes &wishes);

/// Reads rows one after the other, and hands them out as statements of many rows each.
///
/// Owned by whoever copies, and used on the thread of the handle, which can do nothing else until
/// the last row was read. The driver may hold the whole result until then.
class RowStream
{
public:
    /// All that is read goes into the digest, too.
    RowStream(const QSqlDatabase &database, const CopiedTable &table, const QString &statement,
              QCryptographicHash *digest);

    /// An INSERT of the next rows; empty at the end, and on a failure.
    QByteArray next();
    Failure failure() const { return trouble; }
    /// Handed out so far.
    qint64 rows() const { return count; }

private:
    bool nextRow(QByteArray *row);
    bool begin();
    void checkEnd();
    void fail(const QSqlError &error);

    const QSqlDatabase database;
    const CopiedTable table;
    const QString statement;
    QCryptographicHash *const digest;
    std::unique_ptr<QSqlQuery> query;
    Failure trouble;
    qint64 count = 0;
};
