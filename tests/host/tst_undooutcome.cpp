// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What an undo tells of what it found: who has changed what since, what is back already, who may
// not.
#include "support/localseconds.h"
#include "support/undofixture.h"

#include <QSqlError>
#include <QtTest>

class tst_UndoOutcome : public UndoFixture
{
    Q_OBJECT

private Q_SLOTS:
    void leftAlone_tellsWhatHasChanged_data();
    void leftAlone_tellsWhatHasChanged();
    void second_findsAllBack_data();
    void second_findsAllBack();
    void deniedRight_namesTheAccount_data();
    void deniedRight_namesTheAccount();
};

void tst_UndoOutcome::leftAlone_tellsWhatHasChanged_data()
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

void tst_UndoOutcome::leftAlone_tellsWhatHasChanged()
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

void tst_UndoOutcome::second_findsAllBack_data()
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
void tst_UndoOutcome::second_findsAllBack()
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

void tst_UndoOutcome::deniedRight_namesTheAccount_data()
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

void tst_UndoOutcome::deniedRight_namesTheAccount()
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

QTEST_GUILESS_MAIN(tst_UndoOutcome)
#include "tst_undooutcome.moc"
