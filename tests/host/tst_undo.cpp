// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that take a pass back: they find what the pass has left, and nothing else.
#include "host/changes/changesbuilder.h"
#include "host/changes/changesjson.h"
#include "host/undo/undofacts.h"
#include "host/undo/undorun.h"
#include "host/undo/undotext.h"
#include "support/databasefixture.h"
#include "support/localseconds.h"

#include <QSqlError>
#include <QSqlQuery>
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

class tst_Undo : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void oddColumns_areFound();
    void foreignEdits_areLeftAlone_data();
    void foreignEdits_areLeftAlone();
    void script_doesTheSameInAClient();
    void marks_giveWayToAnotherSupervisor();
    void addedPerson_staysInactiveWhereAnythingRefers_data();
    void addedPerson_staysInactiveWhereAnythingRefers();
    void addedPerson_isInactiveForALoginThatDoesNotSeeAll();
    void passes_areTakenBackLastFirst();
    void leave_isGivenBackOnceAndNotTwice();
    void kinds_takeBackTheirPart_data();
    void kinds_takeBackTheirPart();
    void leftAlone_tellsWhatHasChanged_data();
    void leftAlone_tellsWhatHasChanged();
    void second_findsAllBack_data();
    void second_findsAllBack();
    void deniedRight_namesTheAccount_data();
    void deniedRight_namesTheAccount();
    void failure_leavesEverything();

private:
    void prepare() override;
    void release() override;
    Changes passOf(const QStringList &statements);
    UndoOutcomes undo(const Changes &changes, const UndoSelection &selection = {});
    UndoPlan planOf(const Changes &changes, const UndoSelection &selection = {});
    QStringList rows(const char *statement) { return database->rows(str(statement)); }
    void execute(const char *statement) { database->execute(str(statement)); }

    QSqlDatabase handle; ///< of the login for undo
    QStringList made; ///< tables of a test's own
};

void tst_Undo::init()
{
    database->clear();
    execute("INSERT INTO branches (bid, number, name) VALUES (1, 100, 'Prvá'), (2, 200, 'Druhá')");
    execute("INSERT INTO term (tid, name, bid, status, flags) VALUES (1, 'Dvere', 1, 1, 2)");
    execute("INSERT INTO admins (aid, personalNumber) VALUES (1, 9001), (2, 9002), (3, 9003)");
    execute("INSERT INTO people (uid, pid, pamId, name, surname, phone, bid, end) VALUES "
            "(1, 10011, '1001.1', 'Eva', 'Malá', '1', 1, NULL)");
    execute("INSERT INTO people_term VALUES (1, 1)");
}

void tst_Undo::cleanup()
{
    for (const QString &table : qAsConst(made))
        database->execute(QStringLiteral("DROP TABLE `%1`").arg(table));
    made.clear();
}

/// The changes that these statements make, as they are read from their file.
Changes tst_Undo::passOf(const QStringList &statements)
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

void tst_Undo::prepare()
{
    execute(oddColumns);
    handle = database->handle();
    handle.setUserName(str("talvenhr_undo"));
    QVERIFY2(handle.open(), qPrintable(handle.lastError().text()));
}

void tst_Undo::release()
{
    handle.close();
}

UndoPlan tst_Undo::planOf(const Changes &changes, const UndoSelection &selection)
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

UndoOutcomes tst_Undo::undo(const Changes &changes, const UndoSelection &selection)
{
    UndoOutcomes outcomes;
    const Failure failure = runUndo(handle, planOf(changes, selection), {}, &outcomes);
    if (failure)
        qFatal("%s", qPrintable(failure.text));
    return outcomes;
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

void tst_Undo::leftAlone_tellsWhatHasChanged_data()
{
    QTest::addColumn<QString>("pass");
    QTest::addColumn<QString>("edit");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *name, const char *pass, const char *edit, const char *text) {
        QTest::newRow(name) << str(pass) << str(edit) << str(text);
    };
    row("another column", "UPDATE people SET phone = '2', bid = 2",
        "UPDATE people SET title = 'Ing. \\'x', editor = 7",
        "title '' -> 'Ing. \\'x', editor NULL -> 7");
    row("the same column", "UPDATE people SET phone = '2'", "UPDATE people SET phone = '77'",
        "phone '2' -> '77'");
    row("a moment and a branch", "UPDATE people SET end = 82800, bid = 2",
        "UPDATE people SET end = 169200, bid = 1",
        "end 1970-01-02 -> 1970-01-03, bid 2 (200 Druhá) -> 1 (100 Prvá)");
    row("a membership", "INSERT INTO brape VALUES (2, 1, 7)", "UPDATE brape SET since = 0",
        "since 1970-01-01 01:00:07 -> 0");
    row("a row that is gone", "UPDATE people SET phone = '2'", "DELETE FROM people", "it is gone");
    row("a long text", "UPDATE people SET phone = '2'",
        "UPDATE people SET rsText = REPEAT('x', 80)",
        "rsText '' -> 'xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx…");
}

void tst_Undo::leftAlone_tellsWhatHasChanged()
{
    QFETCH(QString, pass);
    QFETCH(QString, edit);
    QFETCH(QString, text);
    const Changes changes = passOf({pass});
    database->execute(edit);
    const UndoOutcomes outcomes = undo(changes);
    QCOMPARE(outcomes, UndoOutcomes {UndoStatement::Beside});
    QCOMPARE(outcomes.first().since, text);
}

void tst_Undo::second_findsAllBack_data()
{
    QTest::addColumn<QStringList>("pass");
    const auto row = [](const char *name, const QStringList &pass) { QTest::newRow(name) << pass; };
    const QString newcomer = str(
        "INSERT INTO people (uid, pid, pamId) VALUES (2, 10021, '1002.1')");
    row("own row", {str("UPDATE people SET phone = '2', end = 5, editor = 0")});
    row("membership", {str("INSERT INTO brape VALUES (2, 1, 7)")});
    row("somebody new", {newcomer, str("INSERT INTO brape VALUES (1, 2, 7)")});
    row("somebody new who stays inactive",
        {newcomer, str("INSERT INTO atten (uid, date) VALUES (2, 5)")});
    row("supervisor",
        {str("UPDATE admins_people SET request = 0"),
         str("INSERT INTO admins_people VALUES (2, 1, 1)")});
    row("leave of today",
        {str("INSERT INTO funds_move (uid, fid, day, type, month, value) VALUES "
             "(1, 2, %1, 3, 202601, -250)")
             .arg(seconds(today()))});
    row("leave of another day",
        {str("INSERT INTO funds_move (uid, fid, day, type, month, value) VALUES "
             "(1, 2, %1, 3, 202601, -250)")
             .arg(seconds(today().addDays(-3)))});
    row("list", {str("UPDATE vars SET value = '5,10011' WHERE name = 'exportPam.1.selPeople'")});
}

/// And the changes of a rehearsal tell the same.
void tst_Undo::second_findsAllBack()
{
    QFETCH(QStringList, pass);
    execute("INSERT INTO admins_people VALUES (1, 1, 1)");
    execute("INSERT INTO vars (name, value) VALUES ('exportPam.1.selPeople', '5')");
    Changes changes = passOf(pass);
    const UndoOutcomes first = undo(changes);
    QVERIFY(!first.isEmpty());
    for (const UndoOutcome &outcome : first)
        QVERIFY(outcome.effect != UndoStatement::Beside);
    QVERIFY(!isAllBack(first));
    for (const ChangesHeader::How how : {ChangesHeader::Run, ChangesHeader::Rehearsed}) {
        changes.header.how = how;
        const UndoOutcomes second = undo(changes);
        QCOMPARE(second.size(), first.size());
        QVERIFY(isAllBack(second));
        QCOMPARE(leftAlone(second), 0);
    }
}

void tst_Undo::deniedRight_namesTheAccount_data()
{
    QTest::addColumn<QString>("user");
    QTest::addColumn<QString>("remedy");
    QTest::newRow("reads") << "talvenhr_read"
                           << "use the one for undo, with --user talvenhr_undo ";
    QTest::newRow("another") << "hr"
                             << "use the one for undo, with --user hr_undo ";
    QTest::newRow("undo") << "other_undo"
                          << "give it those that 'talvenhr doctor --grants' prints";
}

void tst_Undo::deniedRight_namesTheAccount()
{
    QFETCH(QString, user);
    QFETCH(QString, remedy);
    const Changes changes = passOf({str("INSERT INTO brape VALUES (2, 1, 7)")});
    const UndoPlan plan = planOf(changes);
    const QString account = QStringLiteral("'%1'@'localhost'").arg(user);
    database->execute(QStringLiteral("CREATE USER IF NOT EXISTS ") + account);
    database->execute(QStringLiteral("GRANT SELECT ON `%1`.* TO ").arg(database->databaseName())
                      + account);
    QSqlDatabase other = database->handle();
    other.setUserName(user);
    QVERIFY2(other.open(), qPrintable(other.lastError().text()));
    UndoOutcomes outcomes;
    const Failure failure = runUndo(other, plan, {}, &outcomes);
    other.close();
    QCOMPARE(int(failure.exitCode), int(ExitDatabase));
    QVERIFY2(failure.text.startsWith(
                 QStringLiteral("nothing was taken back: the account '%1' ").arg(user)),
             qPrintable(failure.text));
    QVERIFY2(failure.text.contains(remedy), qPrintable(failure.text));
    QCOMPARE(rows("SELECT * FROM brape").size(), 1);
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
