// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A database that answers at once.
#include "immediatedatabase.h"

#include "crowd.h"
#include "host/database/answeringdriver.h"

#include <QStringList>
#include <QVariant>

#include <memory>

namespace {

QVariant branchColumn(int row, int)
{
    return static_cast<uint>(row + 1);
}

QVariant id(int, int)
{
    return 7u;
}

QVariant zero(int, int)
{
    return 0u;
}

QVariant one(int, int)
{
    return QStringLiteral("1");
}

using Answer = std::shared_ptr<const DatabaseAnswer>;

/// What every statement changes and adds; it has rows only if it is a query.
Answer done(const DatabaseAnswer &rows = DatabaseAnswer())
{
    DatabaseAnswer answer = rows;
    answer.affected = 1;
    answer.insertId = 7;
    return std::make_shared<const DatabaseAnswer>(answer);
}

Answer rows(int count, QVariant (*cell)(int, int))
{
    DatabaseAnswer answer;
    answer.columns = QStringList {QStringLiteral("value")};
    answer.rowCount = count;
    answer.cell = cell;
    return done(answer);
}

/// Answers that are given to many statements are made once, and these statements looked for first.
Answer answerTo(const DatabaseCall &call)
{
    static const Answer noRows = done();
    static const Answer anId = rows(1, id);
    static const Answer aZero = rows(1, zero);
    static const Answer force = rows(1, one);

    const Crowd &of = crowd();
    const auto isIt = [&call](const char *beginning) {
        return call.statement.startsWith(QLatin1String(beginning));
    };
    if (!isIt("SELECT"))
        return noRows;
    if (isIt("SELECT COUNT(*) FROM brape"))
        return of.members ? anId : aZero;
    if (isIt("SELECT COUNT(*) FROM groups_plan") || isIt("SELECT gid") || isIt("SELECT uid")
        || isIt("SELECT tid") || isIt("SELECT aid"))
        return anId;
    if (isIt("SELECT p.pid"))
        return of.known ? rows(of.people, personColumn) : noRows;
    if (isIt("SELECT bid, number"))
        return rows(of.branchesKnown ? branchCount(of) : 0, branchColumn);
    if (call.statement.contains(QLatin1String("forceSync")))
        return of.forced ? force : aZero;
    return noRows;
}

} // namespace

QSqlDatabase immediateHandle()
{
    static const RegisteredDriver driver = answeringDriver(answerTo);
    QSqlDatabase handle = driver.addHandle(QStringLiteral("immediate"));
    handle.setDatabaseName(QStringLiteral("attendance"));
    return handle;
}
