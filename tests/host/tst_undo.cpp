// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that take a pass back: they find what the pass has left, and nothing else.
#include "host/undo/undofacts.h"
#include "host/undo/undotext.h"
#include "support/localseconds.h"
#include "support/undofixture.h"

#include <QtTest>

class tst_Undo : public UndoFixture
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void oddColumns_areFound();
    void foreignEdits_areLeftAlone_data();
    void foreignEdits_areLeftAlone();
    void script_doesTheSameInAClient();
    void marks_giveWayToAnotherSupervisor();
    void marks_giveWayToOneNamedMeanwhile();
    void addedPerson_staysInactiveWhereAnythingRefers_data();
    void addedPerson_staysInactiveWhereAnythingRefers();
    void addedPerson_isInactiveForALoginThatDoesNotSeeAll();
    void passes_areTakenBackLastFirst();
    void leave_isGivenBackOnceAndNotTwice();
    void kinds_takeBackTheirPart_data();
    void kinds_takeBackTheirPart();
    void failure_leavesEverything();

private:
    QStringList made; ///< tables of a test's own
};

void tst_Undo::cleanup()
{
    for (const QString &table : qAsConst(made))
        database->execute(QStringLiteral("DROP TABLE `%1`").arg(table));
    made.clear();
}

void tst_Undo::oddColumns_areFound()
{
    const QStringList before = rows("SELECT * FROM people");
    const Changes changes = passOf({str("UPDATE people SET phone = '2', editor = 0")});
    QCOMPARE(undo(changes), UndoOutcomes {UndoStatement::TakesBack});
    execute("UPDATE people SET edited = NULL");
    QCOMPARE(rows("SELECT * FROM people"), before);
    QCOMPARE(rows("SELECT tid, type, ref, ref_col, ref_id, flags FROM term_sync"),
             QStringList {str("1|U|people|uid|1|2")});
    QCOMPARE(database->value(str("SELECT syn FROM term")), str("2"));
}

void tst_Undo::foreignEdits_areLeftAlone_data()
{
    QTest::addColumn<QString>("edit");
    for (const char *edit : {"ratio = 0.123458",
                             "exact = 1.1000000000000002e-300",
                             "total = -12345678.0126",
                             "met = '2023-10-29 02:30:00.123457'",
                             "seen = '2026-01-02 03:04:05.000002'",
                             "born = '1970-03-01'",
                             "wakes = '-12:30:00.56'",
                             "note = 'Ľúbi čaj'",
                             "note = 'ľúbi čaj '",
                             "note = NULL",
                             "kind = 'a''b'",
                             "bits = 2051",
                             "photo = X'00270a5c1aff0d23'",
                             "nothing = 0",
                             "code = 'a\\\\b''c'",
                             "surname = 'malá'",
                             "surname = 'Mala'",
                             "surname = 'Malá '",
                             "end = 5",
                             "editor = 12",
                             "status = 0"})
        QTest::newRow(edit) << str(edit);
}

void tst_Undo::foreignEdits_areLeftAlone()
{
    QFETCH(QString, edit);
    const Changes changes = passOf({str("UPDATE people SET phone = '2'")});
    database->execute(str("UPDATE people SET ") + edit);
    const QStringList before = rows("SELECT * FROM people");
    QCOMPARE(undo(changes), UndoOutcomes {UndoStatement::Beside});
    QCOMPARE(rows("SELECT * FROM people"), before);
    QCOMPARE(rows("SELECT * FROM term_sync"), QStringList());
    QCOMPARE(database->value(str("SELECT syn FROM term")), str("0"));
}

/// Whatever the names hold, and whatever the server takes a backslash for.
void tst_Undo::script_doesTheSameInAClient()
{
    execute("UPDATE people SET name = 'O''Neill\\\\; -- \n\\\\g \\'x\\0'");
    const QStringList before = rows("SELECT uid, HEX(name), phone, status FROM people");
    for (const char *mode : {"", "NO_BACKSLASH_ESCAPES,ANSI_QUOTES"}) {
        const Changes changes = passOf(
            {str("UPDATE people SET name = 'x', phone = '2\\\\'''"),
             str("INSERT INTO people (uid, pid, pamId, name) VALUES (2, 10021, '1002.1', 'a\\nb')"),
             str("INSERT INTO brape VALUES (1, 2, 7)")});
        const QString script = undoScript(changes, planOf(changes), {});
        database->execute(QStringLiteral("SET GLOBAL sql_mode = '%1'").arg(QLatin1String(mode)));
        QString error;
        QVERIFY2(database->server().execute(database->databaseName(), script, &error),
                 qPrintable(error));
        QCOMPARE(rows("SELECT uid, HEX(name), phone, status FROM people"), before);
        QCOMPARE(rows("SELECT * FROM brape"), QStringList());
    }
    execute("SET GLOBAL sql_mode = DEFAULT");
}

void tst_Undo::marks_giveWayToAnotherSupervisor()
{
    execute("INSERT INTO admins_people VALUES (1, 1, 1)");
    const Changes changes = passOf({str("UPDATE admins_people SET request = 0"),
                                    str("INSERT INTO admins_people VALUES (2, 1, 1)")});
    execute("INSERT INTO admins_people VALUES (3, 1, 1)");
    QCOMPARE(undo(changes), (UndoOutcomes {UndoStatement::TakesBack, UndoStatement::Beside}));
    QCOMPARE(rows("SELECT aid, request FROM admins_people ORDER BY aid"),
             (QStringList {str("1|0"), str("3|1")}));
}

/// After the transaction has begun to read.
void tst_Undo::marks_giveWayToOneNamedMeanwhile()
{
    execute("INSERT INTO people (uid, pid, pamId) VALUES (2, 10021, '1002.1')");
    execute("INSERT INTO admins_people VALUES (1, 2, 1)");
    const Changes changes = passOf({str("UPDATE people SET phone = '2' WHERE uid = 1"),
                                    str("UPDATE admins_people SET request = 0")});
    execute("UPDATE people SET phone = '3' WHERE uid = 1");
    int steps = 0;
    UndoOutcomes outcomes;
    const Failure failure = runUndo(
        handle, planOf(changes),
        [&] {
            if (++steps == 2)
                execute("INSERT INTO admins_people VALUES (3, 2, 1)");
            return false;
        },
        &outcomes);
    QVERIFY2(!failure, qPrintable(failure.text));
    QCOMPARE(outcomes, (UndoOutcomes {UndoStatement::Beside, UndoStatement::Beside}));
    QCOMPARE(rows("SELECT aid, request FROM admins_people ORDER BY aid"),
             (QStringList {str("1|0"), str("3|1")}));
}

void tst_Undo::addedPerson_staysInactiveWhereAnythingRefers_data()
{
    QTest::addColumn<QStringList>("reference");
    QTest::addColumn<int>("outcome");
    const auto row = [](const char *name, const QStringList &reference, int outcome) {
        QTest::newRow(name) << reference << outcome;
    };
    row("nothing", {}, UndoStatement::Removes);
    row("a notice",
        {str("INSERT INTO term_sync (tid, type, ref, ref_col, ref_id, created, flags) VALUES "
             "(1, 'I', 'people_term', 'uid', 2, 5, 2)")},
        UndoStatement::Removes);
    row("a day", {str("INSERT INTO atten (uid, date) VALUES (2, 5)")},
        UndoStatement::MakesInactive);
    row("a table of somebody else's",
        {str("CREATE TABLE cards (id INT, uid INT)"), str("INSERT INTO cards VALUES (7, 2)")},
        UndoStatement::MakesInactive);
    row("a foreign key",
        {str("CREATE TABLE cards (owner INT UNSIGNED, FOREIGN KEY (owner) REFERENCES people "
             "(uid))"),
         str("INSERT INTO cards VALUES (2)")},
        UndoStatement::MakesInactive);
    row("a row that was changed", {str("UPDATE brape SET since = 8")},
        UndoStatement::MakesInactive);
}

void tst_Undo::addedPerson_staysInactiveWhereAnythingRefers()
{
    QFETCH(QStringList, reference);
    QFETCH(int, outcome);
    const Changes changes = passOf(
        {str("INSERT INTO people (uid, pid, pamId) VALUES (2, 10021, '1002.1')"),
         str("INSERT INTO brape VALUES (1, 2, 7)"), str("INSERT INTO people_term VALUES (1, 2)")});
    for (const QString &statement : reference)
        database->execute(statement);
    made = rows("SHOW TABLES LIKE 'cards'");
    QCOMPARE(int(undo(changes).constLast().effect), outcome);
    QCOMPARE(rows("SELECT status FROM people WHERE uid = 2"),
             outcome == UndoStatement::Removes ? QStringList() : QStringList(str("0")));
    // The terminal hears of it, for it had heard of the person.
    QCOMPARE(rows("SELECT tid, type, ref, ref_id FROM term_sync WHERE type = 'D'"),
             QStringList {str("1|D|people_term|2")});
}

/// A table that it does not see could refer to them.
void tst_Undo::addedPerson_isInactiveForALoginThatDoesNotSeeAll()
{
    const Changes changes = passOf(
        {str("INSERT INTO people (uid, pid, pamId) VALUES (2, 10021, '1002.1')")});
    UndoFacts facts;
    QSqlDatabase other = database->handle();
    QVERIFY(other.open());
    QVERIFY(!readUndoFacts(other, changes, {}, &facts));
    other.close();
    QVERIFY(!facts.areWhole);
    UndoPlan plan;
    QVERIFY(!makeUndoPlan(changes, {}, facts, &plan));
    UndoOutcomes outcomes;
    QVERIFY(!runUndo(handle, plan, {}, &outcomes));
    QCOMPARE(outcomes, UndoOutcomes {UndoStatement::MakesInactive});
}

/// That a row was written again by an undo is no change of it.
void tst_Undo::passes_areTakenBackLastFirst()
{
    const Changes first = passOf({str("UPDATE people SET phone = '2', editor = 0, edited = 5")});
    const Changes last = passOf({str("UPDATE people SET phone = '3', edited = 6")});
    QCOMPARE(undo(first), UndoOutcomes {UndoStatement::Beside});
    QCOMPARE(undo(last), UndoOutcomes {UndoStatement::TakesBack});
    QCOMPARE(undo(first), UndoOutcomes {UndoStatement::TakesBack});
    QCOMPARE(rows("SELECT phone, editor FROM people"), QStringList {str("1|NULL")});
}

void tst_Undo::leave_isGivenBackOnceAndNotTwice()
{
    const QString insert = str("INSERT INTO funds_move (uid, fid, day, type, month, value) VALUES "
                               "(1, 2, %1, 3, 202601, %2)");
    const QString present = seconds(today());
    // Of today: the row stays, at 0.
    Changes changes = passOf({insert.arg(present, str("-250"))});
    QCOMPARE(undo(changes), UndoOutcomes {UndoStatement::TakesBack});
    QCOMPARE(rows("SELECT value FROM funds_move"), QStringList {str("0")});
    // Of a day that has gone by: a move of today, and no second one.
    execute("DELETE FROM funds_move");
    changes = passOf({insert.arg(seconds(today().addDays(-3)), str("-250"))});
    QCOMPARE(undo(changes), UndoOutcomes {UndoStatement::TakesBack});
    const QStringList both {str("-250"), str("250")};
    QCOMPARE(rows("SELECT value FROM funds_move ORDER BY day"), both);
    QCOMPARE(database->value(str("SELECT MAX(day) FROM funds_move")), present);
    QCOMPARE(database->value(str("SELECT month FROM funds_move ORDER BY day DESC")),
             today().toString(str("yyyyMM")));
    QVERIFY(isAllBack(undo(changes)));
    QCOMPARE(rows("SELECT value FROM funds_move ORDER BY day"), both);
    // Two passes, the last one first.
    execute("DELETE FROM funds_move");
    changes = passOf({insert.arg(seconds(today().addDays(-3)), str("-250"))});
    const Changes last = passOf({insert.arg(present, str("-100"))});
    const UndoOutcomes tooSoon = undo(changes);
    QCOMPARE(tooSoon, UndoOutcomes {UndoStatement::Beside});
    QCOMPARE(tooSoon.first().since, str("leave was corrected again on a later day"));
    QCOMPARE(undo(last), UndoOutcomes {UndoStatement::TakesBack});
    QCOMPARE(undo(changes), UndoOutcomes {UndoStatement::TakesBack});
    QCOMPARE(rows("SELECT value FROM funds_move ORDER BY day"), both);
}

void tst_Undo::kinds_takeBackTheirPart_data()
{
    QTest::addColumn<QStringList>("kinds");
    QTest::addColumn<QString>("row");
    QTest::addColumn<int>("members");
    QTest::newRow("all") << QStringList() << "1|NULL|1" << 0;
    QTest::newRow("ended") << QStringList {str("ended")} << "2|NULL|2" << 1;
    QTest::newRow("moved") << QStringList {str("moved")} << "1|2147483647|2" << 1;
    QTest::newRow("memberships") << QStringList {str("memberships")} << "2|2147483647|2" << 0;
}

void tst_Undo::kinds_takeBackTheirPart()
{
    QFETCH(QStringList, kinds);
    QFETCH(QString, row);
    QFETCH(int, members);
    const Changes changes = passOf(
        {str("UPDATE people SET bid = 2, end = 2147483647, phone = '2', editor = NULL"),
         str("INSERT INTO brape VALUES (2, 1, 7)")});
    UndoSelection selection;
    for (const QString &kind : kinds)
        QVERIFY(!addUndoKind(kind, &selection));
    undo(changes, selection);
    QCOMPARE(rows("SELECT bid, end, phone FROM people"), QStringList {row});
    QCOMPARE(rows("SELECT * FROM brape").size(), members);
}

void tst_Undo::failure_leavesEverything()
{
    const Changes changes = passOf(
        {str("UPDATE people SET phone = '2'"), str("INSERT INTO brape VALUES (2, 1, 7)")});
    const QStringList before = rows("SELECT * FROM people");
    execute("CREATE TRIGGER never BEFORE UPDATE ON people FOR EACH ROW "
            "SIGNAL SQLSTATE '45000' SET MESSAGE_TEXT = 'not now'");
    UndoOutcomes outcomes;
    const Failure failure = runUndo(handle, planOf(changes), {}, &outcomes);
    execute("DROP TRIGGER never");
    QCOMPARE(int(failure.exitCode), int(ExitDatabase));
    QVERIFY2(failure.text.contains(str("not now")), qPrintable(failure.text));
    QCOMPARE(rows("SELECT * FROM people"), before);
    QCOMPARE(rows("SELECT * FROM brape").size(), 1);
    QCOMPARE(int(runUndo(
                     handle, planOf(changes), [] { return true; }, &outcomes)
                     .exitCode),
             int(ExitInterrupted));
    QCOMPARE(rows("SELECT * FROM brape").size(), 1);
}

QTEST_GUILESS_MAIN(tst_Undo)
#include "tst_undo.moc"
