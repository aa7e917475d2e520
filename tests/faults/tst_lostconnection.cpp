// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass whose connection is cut before any one of its calls, and one in which any one call fails.
#include "support/faults/faultround.h"
#include "support/patience.h"

#include <QDeadlineTimer>
#include <QThread>
#include <QtTest>

#include <memory>

namespace {

/// Cuts the plugin's connection as an administrator does, and sees it go. One that was closed just
/// before takes its moment on the server.
void cutConnection(TestDatabase &database)
{
    const QDeadlineTimer patience(longestWait);
    while (database.pluginSessions() > 1) {
        QVERIFY(!patience.hasExpired());
        QThread::msleep(1);
    }
    QCOMPARE(database.pluginSessions(), 1);
    database.execute(QStringLiteral("KILL CONNECTION USER 'talvenhr'@'localhost'"));
    const QDeadlineTimer deadline(longestWait);
    while (database.pluginSessions() > 0) {
        QVERIFY(!deadline.hasExpired());
        QThread::msleep(1); // without a look at this thread's events: a pass is under way
    }
}

/// Cuts it before one call of the next pass.
std::unique_ptr<RecordedCallHook> cuttingConnection(TestDatabase &database, int call)
{
    return beforeCall(call, [&database] {
        cutConnection(database);
        return QSqlError();
    });
}

/// Fails one call of the next pass, and leaves the connection alone.
std::unique_ptr<RecordedCallHook> refusing(int call)
{
    return beforeCall(call, [] {
        return QSqlError(QStringLiteral("driver"), QStringLiteral("refused"),
                         QSqlError::StatementError, QStringLiteral("1114"));
    });
}

} // namespace

class tst_LostConnection : public FaultFixture
{
    Q_OBJECT

private Q_SLOTS:
    void connectionCut_endsAllThatFollows_data();
    void connectionCut_endsAllThatFollows();
    void connectionCut_plainPassSeesThoseWhoseLeaveWaits();
    void statementRefused_othersGoOn_data();
    void statementRefused_othersGoOn();
    void outcomes_allHappen();
    void commitRefused_nextTransactionCommits();
    void commitRefused_endOfThePassUndoesAllThatFollows();
};

void tst_LostConnection::connectionCut_endsAllThatFollows_data()
{
    QTest::addColumn<int>("call");
    const QStringList ids = ExpectedPass(0, Fault(), serverTable()).calls();
    // Not before the first, which opens it.
    for (int i = 1; i < ids.size(); ++i)
        QTest::addRow("before call %d: %s", i + 1, qPrintable(ids.at(i))) << i + 1;
}

/// What was written stands, but for a transaction under way; all later calls fail at once.
void tst_LostConnection::connectionCut_endsAllThatFollows()
{
    QFETCH(int, call);
    FaultRound round(*database);
    std::unique_ptr<RecordedCallHook> hook = cuttingConnection(*database, call);
    round.comparePass(
        *undisturbed, {call, 1000},
        {QStringLiteral("2006"), QStringLiteral("(MySQL s|S)erver has gone away QMYSQL.*")},
        [&] { hook.reset(); });
    // Which is what an undisturbed pass has written by then.
    const Fault fault {call, 1000};
    QCOMPARE(undisturbed->contentAfter(ExpectedPass(0, fault, serverTable()), fault),
             undisturbed->contentBefore(call));

    const QString id = ExpectedPass(0, Fault(), serverTable()).calls().at(call - 1);
    const bool prepared = QStringList {QStringLiteral("A.listed"), QStringLiteral("C.listed"),
                                       QStringLiteral("cleared")}
                              .contains(id);
    QCOMPARE(round.driverComplaints(), prepared ? 1 : 0);
}

/// The force variable, still set, makes the next pass a forced one. Without it only those are
/// looked at again whose balance had to wait: A, who was new, but neither B nor C.
void tst_LostConnection::connectionCut_plainPassSeesThoseWhoseLeaveWaits()
{
    FaultRound round(*database);
    std::unique_ptr<RecordedCallHook> hook = cuttingConnection(*database,
                                                               numberOf(QStringLiteral("C.move")));
    round.pass();
    hook.reset();
    QCOMPARE(database->value(QStringLiteral("SELECT value FROM vars "
                                            "WHERE name = 'OQS.THRWorker.forceSync'")),
             QStringLiteral("1"));
    database->execute(QStringLiteral("UPDATE vars SET value = '0' "
                                     "WHERE name = 'OQS.THRWorker.forceSync'"));
    const QStringList before = round.company.content();
    round.pass();
    QCOMPARE(contentDifference(before, round.company.content()),
             lines({"+admins_people 8|A|0", "+admins_people 9|A|0",
                    "+brape 1|A|2026-03-17 12:00:00", "+funds_move A|3|2026-03-17|202603|300",
                    "+people_term 31|A", "+people_term 32|A", "+term 31|2", "+term 32|2",
                    "+term_sync 31|I|people_term|uid|A|2026-03-17 12:00:00|2",
                    "+term_sync 32|I|people_term|uid|A|2026-03-17 12:00:00|2", "-term 31|0",
                    "-term 32|0"}));
    round.recover();
    QCOMPARE(contentDifference(undisturbed->contentInTheEnd(), round.company.content()),
             QStringList());
}

void tst_LostConnection::statementRefused_othersGoOn_data()
{
    QTest::addColumn<int>("call");
    const QStringList ids = ExpectedPass(0, Fault(), serverTable()).calls();
    // Not the last, which closes the connection; the commits have tests of their own.
    for (int i = 0; i + 1 < ids.size(); ++i) {
        if (!ids.at(i).endsWith(QLatin1String(".commit")))
            QTest::addRow("call %d: %s", i + 1, qPrintable(ids.at(i))) << i + 1;
    }
}

/// As when a table is full: the connection stays.
void tst_LostConnection::statementRefused_othersGoOn()
{
    QFETCH(int, call);
    FaultRound round(*database);
    std::unique_ptr<RecordedCallHook> hook = refusing(call);
    round.comparePass(*undisturbed, {call, call},
                      {QStringLiteral("1114"), QStringLiteral("refused driver")},
                      [&] { hook.reset(); });
}

/// No row of the outcomes is idle in the two tests above.
void tst_LostConnection::outcomes_allHappen()
{
    QVector<Fault> faults;
    const int calls = ExpectedPass(0, Fault(), serverTable()).calls().size();
    QCOMPARE(calls, 80); // docs/testing.md names it
    for (int call = 1; call < calls; ++call)
        faults << Fault {call, call} << Fault {call, 1000};
    QCOMPARE(idleOutcomes(faults), QStringList());
}

/// Nobody looks at what becomes of a commit: its transaction goes on, and the next one's begin
/// commits it.
void tst_LostConnection::commitRefused_nextTransactionCommits()
{
    FaultRound round(*database);
    std::unique_ptr<RecordedCallHook> hook = refusing(numberOf(QStringLiteral("A.commit")));
    const QString difference = eventDifference(round.pass(),
                                               ExpectedPass(0, Fault(), serverTable()).events());
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    hook.reset();
    QCOMPARE(contentDifference(undisturbed->contentAfter(), round.company.content()),
             QStringList());
}

/// Without a next one the transaction takes in all that follows, and the end of the tick undoes it:
/// not a word in the log, and the database as it was before the transaction.
void tst_LostConnection::commitRefused_endOfThePassUndoesAllThatFollows()
{
    FaultRound round(*database);
    std::unique_ptr<RecordedCallHook> hook = refusing(numberOf(QStringLiteral("B.commit")));
    const QStringList events = round.pass();
    hook.reset();
    QCOMPARE(complaints(events), QStringList());
    QVERIFY(events.join(QLatin1Char(' ')).contains(QStringLiteral("exec INSERT INTO brape")));
    // The server notices that the connection has gone.
    QTRY_COMPARE_WITH_TIMEOUT(database->pluginSessions(), 0, longestWait);
    QCOMPARE(contentDifference(undisturbed->contentBefore(numberOf(QStringLiteral("B.begin"))),
                               round.company.content()),
             QStringList());

    // As if the connection had been lost there.
    round.recover();
    QCOMPARE(
        contentDifference(undisturbed->contentInTheEnd(), round.company.content()),
        lossesOf(ExpectedPass(0, {numberOf(QStringLiteral("B.commit")), 1000}, serverTable())));
}

QTEST_GUILESS_MAIN(tst_LostConnection)
#include "tst_lostconnection.moc"
