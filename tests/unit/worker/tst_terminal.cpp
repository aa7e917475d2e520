// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// News of a changed person for his terminals: statements, log lines and what ends the steps.
#include "support/loglevels.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

const char askingUid[] = "sql exec SELECT uid FROM people WHERE pid=12341 LIMIT 1";
const char queueing[]
    = "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
      "SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, 42 ref_id, "
      "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
      "WHERE status = 1 AND uid = 42 AND (flags & 2);";
const char marking[] = "sql exec CALL updateTermsSync(42, 2);";

/// A worker whose database holds pid 12341 as uid 42.
class Notice : public WorkerFixture
{
public:
    Notice() { uid({{42}}); }

    void uid(const QVector<QVariantList> &rows)
    {
        script.on(QStringLiteral("SELECT uid FROM people WHERE pid="))
            .withRows({QStringLiteral("uid")}, rows);
    }
    QStringList send()
    {
        worker.addTermSyncPerson(12341, QLatin1Char('U'), QStringLiteral("people"));
        return log.take();
    }
};

} // namespace

class tst_Terminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void addTermSyncPerson_levels_data() { addLevels(); }
    void addTermSyncPerson_levels();
    void addTermSyncPerson_everyValueHasItsPlace_data();
    void addTermSyncPerson_everyValueHasItsPlace();
    void addTermSyncPerson_referenceStandsAsItIs();
    void addTermSyncPerson_withoutUid_data();
    void addTermSyncPerson_withoutUid();
    void addTermSyncPerson_failedUid();
    void addTermSyncPerson_onNoTerminalCallsTheRoutine();
    void addTermSyncPerson_failedQueueEndsIt_data();
    void addTermSyncPerson_failedQueueEndsIt();
    void addTermSyncPerson_failedRoutine_data() { addTermSyncPerson_failedQueueEndsIt_data(); }
    void addTermSyncPerson_failedRoutine();
    void addTermSyncPerson_onlyTheLastErrorCounts();
    void addTermSyncPerson_asksForTheUidEachTime();

    void dbUpdatePerson_changedRowIsNews();
    void dbUpdatePerson_untouchedRowIsNoNews_data();
    void dbUpdatePerson_untouchedRowIsNoNews();
    void dbUpdatePerson_failureIsNoNews();
    void dbUpdatePerson_testModeIsNoNews_data();
    void dbUpdatePerson_testModeIsNoNews();
    void dbAddPerson_isNoNews();
};

void tst_Terminal::addTermSyncPerson_levels()
{
    QFETCH(int, level);
    Notice f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.send(),
             atLevel(level,
                     {"2 debug THRWorker::addTermSyncPerson(12341, U, people)", askingUid, queueing,
                      marking}));
}

void tst_Terminal::addTermSyncPerson_everyValueHasItsPlace_data()
{
    QTest::addColumn<QString>("type");
    for (const char *type : {"I", "U", "D"})
        QTest::newRow(type) << QString::fromLatin1(type);
}

void tst_Terminal::addTermSyncPerson_everyValueHasItsPlace()
{
    QFETCH(QString, type);
    Notice f;
    f.uid({{4294967295u}});
    f.worker.setLogLevel(2);
    f.worker.addTermSyncPerson(4294967294u, type.at(0), QStringLiteral("people_term"));
    QCOMPARE(f.log.take(),
             (QStringList {
                 QStringLiteral("debug THRWorker::addTermSyncPerson(4294967294, %1, people_term)")
                     .arg(type),
                 QStringLiteral("sql exec SELECT uid FROM people WHERE pid=4294967294 LIMIT 1"),
                 QStringLiteral(
                     "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                     "flags) SELECT `tid` tid, '%1' type, 'people_term' ref, 'uid' ref_col, "
                     "4294967295 ref_id, UNIX_TIMESTAMP() created, 2 flags "
                     "FROM people_term JOIN term USING(tid) "
                     "WHERE status = 1 AND uid = 4294967295 AND (flags & 2);")
                     .arg(type),
                 QStringLiteral("sql exec CALL updateTermsSync(4294967295, 2);")}));
}

void tst_Terminal::addTermSyncPerson_referenceStandsAsItIs()
{
    Notice f;
    f.worker.addTermSyncPerson(12341, QLatin1Char('U'), QStringLiteral("peo'ple"));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 3);
    // As it stands it ends the text too early.
    QVERIFY(events.at(1).contains(QStringLiteral(" 'U' type, 'peo'ple' ref, 'uid' ref_col, ")));
}

void tst_Terminal::addTermSyncPerson_withoutUid_data()
{
    QTest::addColumn<QVector<QVariantList>>("rows");
    QTest::newRow("no row") << QVector<QVariantList>();
    QTest::newRow("0") << QVector<QVariantList> {{0}};
    QTest::newRow("NULL") << QVector<QVariantList> {{QVariant()}};
}

void tst_Terminal::addTermSyncPerson_withoutUid()
{
    QFETCH(QVector<QVariantList>, rows);
    Notice f;
    f.uid(rows);
    QCOMPARE(f.send(),
             lines({askingUid,
                    "warning THRWorker::addTermSyncPerson(12341) - "
                    "uid NOT selected from DB!"}));
}

void tst_Terminal::addTermSyncPerson_failedUid()
{
    Notice f;
    f.script.on(QStringLiteral("SELECT uid"))
        .withRows({QStringLiteral("uid")}, {{42}})
        .withError(QStringLiteral("1146"), QStringLiteral("no such table"));
    // The server's words are not told.
    QCOMPARE(f.send(),
             lines({askingUid,
                    "warning THRWorker::addTermSyncPerson(12341) - "
                    "uid NOT selected from DB!"}));
}

void tst_Terminal::addTermSyncPerson_onNoTerminalCallsTheRoutine()
{
    Notice f;
    f.script.on(QStringLiteral("INSERT INTO `term_sync`")).withAffected(0);
    QCOMPARE(f.send(), lines({askingUid, queueing, marking}));
}

void tst_Terminal::addTermSyncPerson_failedQueueEndsIt_data()
{
    QTest::addColumn<bool>("beside");
    QTest::newRow("refused") << false;
    QTest::newRow("error beside a success") << true;
}

void tst_Terminal::addTermSyncPerson_failedQueueEndsIt()
{
    QFETCH(bool, beside);
    Notice f;
    ScriptedAnswer &answer = f.script.on(QStringLiteral("INSERT INTO `term_sync`"));
    if (beside)
        answer.withErrorBeside(QStringLiteral("1205"), QStringLiteral("lock wait"));
    else
        answer.withError(QStringLiteral("1205"), QStringLiteral("lock wait"));
    QCOMPARE(f.send(),
             lines({askingUid, queueing,
                    "critical THRWorker::addTermSyncPerson() ERROR: lock wait (scripted)"}));
}

void tst_Terminal::addTermSyncPerson_failedRoutine()
{
    QFETCH(bool, beside);
    Notice f;
    ScriptedAnswer &answer = f.script.on(QStringLiteral("CALL "));
    if (beside)
        answer.withErrorBeside(QStringLiteral("1305"), QStringLiteral("no such routine"));
    else
        answer.withError(QStringLiteral("1305"), QStringLiteral("no such routine"));
    QCOMPARE(f.send(),
             lines({askingUid, queueing, marking,
                    "critical THRWorker::addTermSyncPerson() - updateTermsSync() ERROR: "
                    "no such routine (scripted)"}));
}

void tst_Terminal::addTermSyncPerson_onlyTheLastErrorCounts()
{
    // Statements that fail and name no error.
    Notice f;
    f.script.on(QStringLiteral("INSERT INTO `term_sync`")).fails = true;
    f.script.on(QStringLiteral("CALL ")).fails = true;
    QCOMPARE(f.send(), lines({askingUid, queueing, marking}));
}

void tst_Terminal::addTermSyncPerson_asksForTheUidEachTime()
{
    Notice f;
    f.send();
    f.uid({{43}});
    const QStringList events = f.send();
    QCOMPARE(events.first(), QString::fromLatin1(askingUid));
    QCOMPARE(events.last(), QStringLiteral("sql exec CALL updateTermsSync(43, 2);"));
}

// Who sends the news

void tst_Terminal::dbUpdatePerson_changedRowIsNews()
{
    Notice f;
    f.script.on(QStringLiteral("UPDATE people")).withAffected(1);
    QVERIFY(f.worker.dbUpdatePerson(record(), true));
    QStringList events = f.log.take();
    QVERIFY(events.takeFirst().startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
    QCOMPARE(events, lines({askingUid, queueing, marking}));
}

void tst_Terminal::dbUpdatePerson_untouchedRowIsNoNews_data()
{
    QTest::addColumn<int>("affected");
    QTest::newRow("none") << 0;
    QTest::newRow("unknown") << -1;
}

void tst_Terminal::dbUpdatePerson_untouchedRowIsNoNews()
{
    QFETCH(int, affected);
    Notice f;
    f.script.on(QStringLiteral("UPDATE people")).withAffected(affected);
    QVERIFY(!f.worker.dbUpdatePerson(record(), true));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first().startsWith(QStringLiteral("sql exec UPDATE people SET pamId=")));
}

void tst_Terminal::dbUpdatePerson_failureIsNoNews()
{
    Notice f;
    f.script.on(QStringLiteral("UPDATE people"))
        .withAffected(1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax"));
    QVERIFY(!f.worker.dbUpdatePerson(record(), true));
    QCOMPARE(f.log.take().mid(1),
             lines({"critical THRWorker::dbUpdatePerson(1234.1) - SQL ERROR: syntax (scripted)"}));
}

void tst_Terminal::dbUpdatePerson_testModeIsNoNews_data()
{
    QTest::addColumn<int>("level");
    QTest::newRow("silent") << 0;
    QTest::newRow("outspoken") << 3;
}

void tst_Terminal::dbUpdatePerson_testModeIsNoNews()
{
    QFETCH(int, level);
    Notice f;
    f.worker.setTestMode(true);
    f.worker.setLogLevel(static_cast<quint8>(level));
    QVERIFY(f.worker.dbUpdatePerson(record(), true));
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("sql ")), QStringList());
    QCOMPARE(events.filter(QStringLiteral("addTermSyncPerson")), QStringList());
}

void tst_Terminal::dbAddPerson_isNoNews()
{
    Notice f;
    f.worker.setLogLevel(3);
    f.script.on(QStringLiteral("INSERT INTO people")).withInsertId(5).withAffected(1);
    QVERIFY(f.worker.dbAddPerson(record()));
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("term_sync")), QStringList());
    QCOMPARE(events.filter(QStringLiteral("updateTermsSync")), QStringList());
    QCOMPARE(events.filter(QStringLiteral("addTermSyncPerson")), QStringList());
}

QTEST_GUILESS_MAIN(tst_Terminal)
#include "tst_terminal.moc"
