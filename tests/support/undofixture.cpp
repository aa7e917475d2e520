// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company of one person, a pass made of statements, and its undo.
#include "support/undofixture.h"

#include "host/changes/changesbuilder.h"
#include "host/changes/changesjson.h"
#include "host/undo/undofacts.h"

#include <QSqlError>
#include <QtTest>

namespace {

/// Columns that an attendance system may have beside those of a pass.
const char *const oddColumns
    = "ALTER TABLE people ADD ratio FLOAT DEFAULT 0.1234567, ADD exact DOUBLE DEFAULT 1.1e-300, "
      "ADD total DECIMAL(12, 4) DEFAULT -12345678.0125, "
      "ADD met DATETIME(6) DEFAULT '2023-10-29 02:30:00.123456', "
      "ADD seen TIMESTAMP(6) NULL DEFAULT '2026-01-02 03:04:05.000001', ADD born DATE DEFAULT "
      "'1970-02-28', ADD wakes TIME(2) DEFAULT '-12:30:00.55', "
      "ADD note VARCHAR(40) CHARACTER SET latin2 DEFAULT 'Ľúbi čaj ', "
      "ADD kind ENUM('a''b', 'ž') DEFAULT 'ž', ADD bits BIT(12) DEFAULT 2050, "
      "ADD photo BLOB DEFAULT X'00270a5c1aff0d22', ADD nothing INT, "
      "ADD code VARCHAR(40) DEFAULT 'a\\\\b''c\n\\0\\Z%_;-- #'";

} // namespace

void UndoFixture::init()
{
    database->clear();
    execute("INSERT INTO branches (bid, number, name) VALUES (1, 100, 'Prvá'), (2, 200, 'Druhá')");
    execute("INSERT INTO term (tid, name, bid, status, flags) VALUES (1, 'Dvere', 1, 1, 2)");
    execute("INSERT INTO admins (aid, personalNumber) VALUES (1, 9001), (2, 9002), (3, 9003)");
    execute("INSERT INTO people (uid, pid, pamId, name, surname, phone, bid, end) VALUES "
            "(1, 10011, '1001.1', 'Eva', 'Malá', '1', 1, NULL)");
    execute("INSERT INTO people_term VALUES (1, 1)");
}

Changes UndoFixture::passOf(const QStringList &statements)
{
    const Snapshot before = database->snapshot(SnapshotRows::Touchable);
    for (const QString &statement : statements)
        database->execute(statement);
    ChangesHeader header;
    header.when = QDateTime::currentDateTime();
    QByteArray file;
    writeChanges(changesBetween(before, database->snapshot(SnapshotRows::Touchable), {}, header),
                 [&file](const QByteArray &bytes) { file += bytes; });
    Changes changes;
    const Failure failure = readChanges(file, str("test"), &changes);
    if (failure)
        qFatal("%s", qPrintable(failure.text));
    return changes;
}

void UndoFixture::prepare()
{
    execute(oddColumns);
    handle = database->handle();
    handle.setUserName(str("talvenhr_undo"));
    QVERIFY2(handle.open(), qPrintable(handle.lastError().text()));
}

void UndoFixture::release()
{
    handle.close();
}

UndoPlan UndoFixture::planOf(const Changes &changes, const UndoSelection &selection)
{
    UndoFacts facts;
    UndoPlan plan;
    Failure failure = readUndoFacts(handle, changes, {}, &facts);
    if (!failure)
        failure = makeUndoPlan(changes, selection, facts, &plan);
    if (failure)
        qFatal("%s", qPrintable(failure.text));
    return plan;
}

UndoOutcomes UndoFixture::undo(const Changes &changes, const UndoSelection &selection)
{
    UndoOutcomes outcomes;
    const Failure failure = runUndo(handle, planOf(changes, selection), {}, &outcomes);
    if (failure)
        qFatal("%s", qPrintable(failure.text));
    return outcomes;
}
