// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker's settings, life, tick and pass: statements, log lines and their order.
#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"
#include "repository/orvdbsettings.h"
#include "support/workerfixture.h"

#include <QMetaMethod>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

namespace {

const char readForce[]
    = "sql exec SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1";
const char prepareForce[] = "sql prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                            "ON DUPLICATE KEY UPDATE value=VALUES(value);";
const char clearForce[] = "sql run :name=OQS.THRWorker.forceSync, :value=0";
const char loadPeople[]
    = "sql exec SELECT p.pid, p.pamId, p.title, p.name, p.surname, p.title2, p.phone, p.begin, "
      "p.end, p.rsBegin, p.rsEnd, p.rsText, p.calendarID, b.number FROM people p LEFT JOIN branches b "
      "USING(bid) WHERE p.status;";

const char loadBranches[] = "sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;";
const char findFund[] = "sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;";

QString addingToBranch(uint bid, const char *uids)
{
    return QStringLiteral("sql exec INSERT INTO brape (bid, uid, since) SELECT %1 bid, uid, "
                          "UNIX_TIMESTAMP() since FROM people WHERE uid IN(%2) "
                          "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()")
        .arg(bid)
        .arg(QString::fromLatin1(uids));
}

void force(ScriptedDatabase &script)
{
    script.on(QString::fromLatin1(readForce).mid(4))
        .withRows({QStringLiteral("value")}, {{QStringLiteral("1")}});
}

} // namespace

class tst_Worker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void startValues();
    void setTimerInterval_data();
    void setTimerInterval();
    void setTimerInterval_reachesTheTimer();
    void setMes();
    void setOrvDb_clonesUnderTheNameOfTheDatabase();
    void setOrvDb_takesUpTheRegisteredConnection();
    void setOrvDb_updatesTheSettings();
    void setOrvDb_updatesTheBranches();
    void setOrvDb_leavesTheGroupPlansOnTheirConnection();
    void setOrvDb_beforeInit();
    void init_makesTimerAndSettings();
    void init_makesTheRepositories_data();
    void init_makesTheRepositories();
    void init_connectsTheAddedSignalsOnly();
    void start_repeatedDoublesTheTicks();
    void start_repeatedLeavesTheRepositoriesBehind();
    void start_logs();
    void stop_speaksTheWordsOfInit();
    void dbCheckOpen_opensOnce();
    void dbCheckOpen_failure();
    void dbClose_speaksTheWordsOfDbCheckOpen();
    void checkSync_firstTickRunsAPassEvenWithSyncIntervalZero();
    void checkSync_passesEverySyncIntervalTicks();
    void checkSync_syncIntervalOfOnePassesOnEveryTick();
    void checkSync_defaultPassesOnTicks1And60And120();
    void checkSync_skippedWhileInProgress();
    void checkSync_isInProgressFromTheForceFlagToTheClose();
    void checkSync_databaseNotOpen();
    void checkSync_lostFirstTickIsNotMadeUp();
    void checkSync_forcedTickClearsTheFlag();
    void checkSync_forceValues_data();
    void checkSync_forceValues();
    void checkSync_wholeTickInOrder();
    void checkSync_emptyFileReadsNoPeople();
    void checkSync_peopleNotLoaded();
    void checkSync_levelZeroPrintsNothing();
    void checkSync_failedClearIsNotLookedAt();
    void runCommand_data();
    void runCommand();
    void runCommand_empty();
    void runCommand_exitCodes_data();
    void runCommand_exitCodes();
    void isqlProcessErrorOccurred_data();
    void isqlProcessErrorOccurred();
};

void tst_Worker::metaObject()
{
    const QMetaObject &meta = THRWorker::staticMetaObject;
    QCOMPARE(meta.className(), "THRWorker");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
    QCOMPARE(meta.classInfoCount() - meta.classInfoOffset(), 0);
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.methodType(), QMetaMethod::Slot);
        methods.append(QString::fromLatin1(method.methodSignature())
                       + (method.access() == QMetaMethod::Public ? QStringLiteral(" public")
                                                                 : QStringLiteral(" private")));
    }
    QCOMPARE(methods,
             lines({"start() public", "stop() public", "checkSync() private",
                    "isqlProcessErrorOccurred(QProcess::ProcessError) private"}));
}

void tst_Worker::startValues()
{
    THRWorker worker;
    const WorkerPeer peer(worker);
    QVERIFY(!worker.parent());
    QCOMPARE(peer.logLevel, quint8(0));
    QCOMPARE(peer.initDone, false);
    QCOMPARE(peer.testMode, false);
    QCOMPARE(peer.inProgress, false);
    QVERIFY(!peer.db.isValid());
    QVERIFY(!peer.timer);
    QCOMPARE(peer.timerInterval, 60000u);
    QCOMPARE(peer.tickCount, 0u);
    QCOMPARE(peer.syncInterval, 60u);
    QCOMPARE(peer.syncCount, 0u);
    QVERIFY(peer.importFile.isEmpty());
    QCOMPARE(peer.deleteFile, false);
    QCOMPARE(peer.forceSync, false);
    QVERIFY(peer.lastRecords.isEmpty());
    QVERIFY(peer.waitingRecords.isEmpty());
    QVERIFY(!peer.orvSettings);
    QVERIFY(peer.importedRecords.isEmpty());
    QVERIFY(!peer.branchesRepo);
    QVERIFY(peer.branches.isEmpty());
    QVERIFY(peer.branchPeople.isEmpty());
    QVERIFY(!peer.groupsPlanRepo);
    QVERIFY(peer.syncCommand.isEmpty());
    QCOMPARE(peer.syncCommandRun, quint8(0));
    QVERIFY(peer.dbPeople.isEmpty());
    QCOMPARE(peer.departmentId, 1u);
    QCOMPARE(peer.fundId, quint16(0));
    QVERIFY(peer.mes.isEmpty());
    QVERIFY(peer.fundRetry.isEmpty());
}

void tst_Worker::setTimerInterval_data()
{
    QTest::addColumn<uint>("milliseconds");
    QTest::addColumn<uint>("stored");
    QTest::newRow("0") << 0u << 1000u;
    QTest::newRow("999") << 999u << 1000u;
    QTest::newRow("1000") << 1000u << 1000u;
    QTest::newRow("1001") << 1001u << 1001u;
    QTest::newRow("compared as unsigned") << 4294967295u << 4294967295u;
}

void tst_Worker::setTimerInterval()
{
    QFETCH(uint, milliseconds);
    QFETCH(uint, stored);
    WorkerFixture f;
    f.worker.setTimerInterval(milliseconds);
    QCOMPARE(f.peer.timerInterval, stored);
}

void tst_Worker::setTimerInterval_reachesTheTimer()
{
    WorkerFixture f;
    f.worker.setTimerInterval(2000);
    f.init();
    QCOMPARE(f.peer.timer->interval(), 2000);
    f.worker.setTimerInterval(5);
    QCOMPARE(f.peer.timer->interval(), 1000);
}

void tst_Worker::setMes()
{
    WorkerFixture f;
    f.worker.setMes({{ushort(21), QStringLiteral("MD")}, {ushort(22), QStringLiteral("RD")}});
    QCOMPARE(f.log.take(), QStringList());
    f.worker.setLogLevel(1);
    f.worker.setMes({{ushort(21), QStringLiteral("MD")}});
    QCOMPARE(f.log.take(), lines({"debug THRWorker::setMes() count: 1)"}));
    QCOMPARE(f.peer.mes.size(), 1);
}

void tst_Worker::setOrvDb_clonesUnderTheNameOfTheDatabase()
{
    EventLog log;
    ScriptedDatabase script;
    THRWorker worker;
    const WorkerPeer peer(worker);
    worker.setLogLevel(1);
    worker.setOrvDb(script.handle(QStringLiteral("dochadzka")));
    QCOMPARE(log.take(), lines({"debug THRWorker::setOrvDb(OQS.dochadzka.TalvenHR)"}));
    QCOMPARE(peer.db.connectionName(), QStringLiteral("OQS.dochadzka.TalvenHR"));
    QCOMPARE(peer.db.databaseName(), QStringLiteral("dochadzka"));
    QVERIFY(!peer.db.isOpen());
}

void tst_Worker::setOrvDb_takesUpTheRegisteredConnection()
{
    EventLog log;
    ScriptedDatabase script;
    {
        THRWorker earlier;
        earlier.setOrvDb(script.handle());
    }
    QCOMPARE(log.take(), QStringList());
    QVERIFY(QSqlDatabase::contains(QStringLiteral("OQS.scripted.TalvenHR")));

    THRWorker worker;
    worker.setOrvDb(script.handle());
    // The connection that is there is opened at once; a clone would not be.
    QCOMPARE(log.take(), lines({"sql open"}));
    QVERIFY(WorkerPeer(worker).db.isOpen());
}

void tst_Worker::setOrvDb_updatesTheSettings()
{
    WorkerFixture f;
    f.init();
    f.peer.db.close();
    f.worker.setOrvDb(f.script.handle(QStringLiteral("another")));
    f.peer.db.open();
    f.log.take();
    f.peer.orvSettings->variableGet(QStringLiteral("x"), QVariant());
    QCOMPARE(f.log.take(), lines({"sql exec SELECT value FROM vars WHERE name='x' LIMIT 1"}));
    f.peer.db.close();
    QCOMPARE(f.log.take(), lines({"sql close"}));
}

void tst_Worker::setOrvDb_updatesTheBranches()
{
    WorkerFixture f;
    f.init();
    f.peer.db.close();
    f.worker.setOrvDb(f.script.handle(QStringLiteral("another")));
    f.peer.db.open();
    f.log.take();
    f.script.on(QStringLiteral("INSERT INTO brape")).withAffected(1);
    f.answer("SELECT tid FROM term", 3);
    // Also the terminal queue of the repository is on the connection that is open.
    QVERIFY(f.peer.branchesRepo->addPeopleToBranch(70, QStringLiteral("5")));
    QCOMPARE(f.log.take(),
             QStringList {addingToBranch(70, "5")}
                 + lines({"sql exec SELECT tid FROM term WHERE status > 0 AND bid = 70",
                          "sql exec INSERT INTO people_term (tid, uid) VALUES (3, 5) "
                          "ON DUPLICATE KEY UPDATE tid=VALUES(tid);",
                          "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, "
                          "created, flags) SELECT 3 tid, 'I' type, 'people_term' ref, "
                          "'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, 2 flags "
                          "FROM people WHERE status = 1 AND uid IN(5);",
                          "sql exec Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 3",
                          "sql exec SELECT aid FROM bradm WHERE bid = 70"}));
}

void tst_Worker::setOrvDb_leavesTheGroupPlansOnTheirConnection()
{
    WorkerFixture f;
    f.init();
    QSqlDatabase first = f.peer.db;
    f.worker.setOrvDb(f.script.handle(QStringLiteral("another")));
    QVERIFY(f.peer.db.connectionName() != first.connectionName());
    f.peer.db.open();
    f.log.take();
    f.script.on(QStringLiteral("INSERT INTO groups_plan")).withAffected(1);
    GroupsPlan plan;
    plan.gid = 11;
    plan.uid = 5;
    plan.since = 0;
    const char adding[] = "sql exec INSERT INTO groups_plan (gid, uid, since) VALUES(11, 5, 0) "
                          "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
                          "since=VALUES(since);";
    // The first connection is still open, and only the plans are on it.
    QVERIFY(f.peer.groupsPlanRepo->add(plan));
    QCOMPARE(f.log.take(), lines({adding}));
    first.close();
    QCOMPARE(f.log.take(), lines({"sql close"}));
    QVERIFY(f.peer.db.isOpen());
    QVERIFY(!f.peer.groupsPlanRepo->add(plan));
    QCOMPARE(f.log.take(),
             lines({"warning QSqlQuery::exec: database not open",
                    "critical GroupsPlanRepo::add - ERROR[-1]: "}));
}

void tst_Worker::setOrvDb_beforeInit()
{
    EventLog log;
    ScriptedDatabase script;
    THRWorker worker;
    worker.setOrvDb(script.handle());
    const WorkerPeer peer(worker);
    QVERIFY(!peer.orvSettings);
    QVERIFY(!peer.branchesRepo);
    QVERIFY(!peer.groupsPlanRepo);
    QVERIFY(!peer.db.isOpen());
    QCOMPARE(log.take(), QStringList());
}

void tst_Worker::init_makesTheRepositories_data()
{
    QTest::addColumn<int>("level");
    for (const int level : {0, 1, 3, 255})
        QTest::newRow(qPrintable(QString::number(level))) << level;
}

void tst_Worker::init_makesTheRepositories()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.init();
    f.log.clear();
    QCOMPARE(f.peer.branchesRepo->parent(), &f.worker);
    QCOMPARE(f.peer.branchesRepo->logLevel, static_cast<quint8>(level));
    QCOMPARE(f.peer.groupsPlanRepo->parent(), &f.worker);
    QCOMPARE(f.peer.groupsPlanRepo->logLevel, static_cast<quint8>(level));
    // Both are on the worker's connection, and a plan that is added refreshes the months.
    f.peer.branchesRepo->logLevel = 0;
    f.peer.groupsPlanRepo->logLevel = 0;
    f.script.on(QStringLiteral("INSERT INTO groups_plan")).withAffected(1);
    GroupsPlan plan;
    plan.gid = 11;
    plan.uid = 5;
    plan.since = 202310;
    QVERIFY(f.peer.groupsPlanRepo->add(plan));
    QVERIFY(!f.peer.branchesRepo->addPeopleToBranch(70, QStringLiteral("5")));
    QCOMPARE(f.log.take(),
             lines({"sql exec INSERT INTO groups_plan (gid, uid, since) VALUES(11, 5, 202310) "
                    "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
                    "since=VALUES(since);",
                    "sql exec INSERT INTO groups_month  (gid, uid, month) SELECT "
                    "getCurrentGid(p.uid, monthFromTimestamp(a.date), p.gid) gid, a.uid, "
                    "monthFromTimestamp(a.date) month  FROM atten a LEFT JOIN people p USING(uid) "
                    "WHERE a.uid=5 AND monthFromTimestamp(a.date) >= 202310 "
                    "GROUP BY monthFromTimestamp(a.date) HAVING gid IS NOT NULL "
                    "ON DUPLICATE KEY UPDATE gid=VALUES(gid), uid=VALUES(uid), "
                    "month=VALUES(month);"})
                 << addingToBranch(70, "5"));
}

void tst_Worker::init_connectsTheAddedSignalsOnly()
{
    WorkerFixture f;
    f.init();
    f.script.on(QStringLiteral("DELETE FROM brape")).withAffected(1);
    // A slot would yield true: there is neither terminal nor administrator.
    QVERIFY(Q_EMIT f.peer.branchesRepo->sigAddedPeopleToBranch(70, QStringLiteral("5")));
    QVERIFY(!Q_EMIT f.peer.branchesRepo->sigDeletedPeopleFromBranch(70, QStringLiteral("5")));
    f.log.clear();
    QVERIFY(f.peer.branchesRepo->delPeopleFromBranch(70, QStringLiteral("5")));
    QCOMPARE(f.log.take(), lines({"sql exec DELETE FROM brape WHERE bid = 70 AND uid IN(5)"}));
}

void tst_Worker::init_makesTimerAndSettings()
{
    WorkerFixture f;
    f.worker.setTimerInterval(7000);
    f.worker.setLogLevel(1);
    QVERIFY(f.worker.init());
    QCOMPARE(f.log.take(), lines({"debug THRWorker::init()"}));
    QCOMPARE(f.peer.timer->parent(), &f.worker);
    QCOMPARE(f.peer.timer->interval(), 7000);
    QVERIFY(!f.peer.timer->isSingleShot());
    QVERIFY(!f.peer.timer->isActive());
    QVERIFY(f.peer.orvSettings);
    QCOMPARE(f.peer.initDone, false);
}

void tst_Worker::start_logs()
{
    WorkerFixture f;
    f.worker.setLogLevel(1);
    f.worker.start();
    QCOMPARE(f.log.take(), lines({"debug THRWorker::start()", "debug THRWorker::init()"}));
    QVERIFY(f.peer.timer->isActive());
}

void tst_Worker::start_repeatedDoublesTheTicks()
{
    WorkerFixture f;
    f.worker.setSyncInterval(100);
    f.worker.start();
    QTimer *first = f.peer.timer;
    const OrvDbSettings *firstSettings = f.peer.orvSettings;
    f.worker.start();
    QVERIFY(f.peer.timer != first);
    QVERIFY(f.peer.orvSettings != firstSettings);
    QCOMPARE(first->parent(), &f.worker);
    QVERIFY(first->isActive());
    QVERIFY(f.peer.timer->isActive());

    // Both drive checkSync().
    QVERIFY(QMetaObject::invokeMethod(first, "timeout"));
    f.log.take();
    QCOMPARE(f.peer.tickCount, 1u);

    // Only the newest one is within reach of stop().
    f.worker.stop();
    QVERIFY(first->isActive());
    QVERIFY(!f.peer.timer->isActive());
    delete firstSettings;
}

void tst_Worker::start_repeatedLeavesTheRepositoriesBehind()
{
    WorkerFixture f;
    f.worker.start();
    const OrvDbSettings *firstSettings = f.peer.orvSettings;
    QObject *const firstBranches = f.peer.branchesRepo;
    QObject *const firstPlans = f.peer.groupsPlanRepo;
    f.worker.setLogLevel(2);
    f.worker.start();
    QVERIFY(f.peer.branchesRepo != firstBranches);
    QVERIFY(f.peer.groupsPlanRepo != firstPlans);
    QCOMPARE(firstBranches->parent(), &f.worker);
    QCOMPARE(firstPlans->parent(), &f.worker);
    // Two timers, two of each repository.
    QCOMPARE(f.worker.children().size(), 6);
    // The newest are in use, with the level of their time.
    QCOMPARE(f.peer.branchesRepo->logLevel, quint8(2));
    QCOMPARE(f.peer.groupsPlanRepo->logLevel, quint8(2));
    f.log.clear();
    f.worker.setLogLevel(0);
    f.peer.branchPeople.insert(70, lines({"5"}));
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    QCOMPARE(f.log.take(),
             lines({loadBranches, findFund, "info BranchesRepository::addPeopleToBranch(70, '5')"})
                 << addingToBranch(70, "5"));
    delete firstSettings;
}

void tst_Worker::stop_speaksTheWordsOfInit()
{
    WorkerFixture f;
    f.worker.setLogLevel(1);
    f.worker.stop(); // without a timer
    QCOMPARE(f.log.take(), lines({"debug THRWorker::init()"}));
    f.worker.setLogLevel(0);
    f.worker.start();
    f.worker.stop();
    QCOMPARE(f.log.take(), QStringList());
    QVERIFY(!f.peer.timer->isActive());
}

void tst_Worker::dbCheckOpen_opensOnce()
{
    WorkerFixture f;
    f.peer.db.close();
    f.log.take();
    f.worker.setLogLevel(2);
    QVERIFY(f.worker.dbCheckOpen());
    QCOMPARE(f.log.take(), lines({"debug THRWorker::dbCheckOpen()", "sql open"}));
    f.worker.setLogLevel(1);
    QVERIFY(f.worker.dbCheckOpen());
    QCOMPARE(f.log.take(), QStringList());
    QVERIFY(f.peer.dbMutex.tryLock());
    f.peer.dbMutex.unlock();
}

void tst_Worker::dbCheckOpen_failure()
{
    WorkerFixture f;
    f.peer.db.close();
    f.log.take();
    f.fail("open", "2002", "no server");
    QVERIFY(!f.worker.dbCheckOpen());
    QCOMPARE(
        f.log.take(),
        lines({"sql open", "critical THRWorker::dbCheckOpen() - SQL ERROR: no server (scripted)"}));
    QVERIFY(f.peer.dbMutex.tryLock());
    f.peer.dbMutex.unlock();
}

void tst_Worker::dbClose_speaksTheWordsOfDbCheckOpen()
{
    WorkerFixture f;
    f.worker.setLogLevel(2);
    f.worker.dbClose();
    QCOMPARE(f.log.take(), lines({"debug THRWorker::dbCheckOpen()", "sql close"}));
    f.worker.setLogLevel(1);
    f.worker.dbClose();
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Worker::checkSync_firstTickRunsAPassEvenWithSyncIntervalZero()
{
    WorkerFixture f;
    f.init();
    f.worker.setSyncInterval(0);
    f.tick();
    QCOMPARE(f.peer.syncCount, 1u);
}

void tst_Worker::checkSync_passesEverySyncIntervalTicks()
{
    WorkerFixture f;
    f.init();
    f.worker.setSyncInterval(3);
    QVector<uint> passes;
    for (int tick = 1; tick <= 9; ++tick) {
        f.tick();
        passes.append(f.peer.syncCount);
    }
    QCOMPARE(passes, (QVector<uint> {1, 1, 2, 2, 2, 3, 3, 3, 4}));
}

void tst_Worker::checkSync_syncIntervalOfOnePassesOnEveryTick()
{
    WorkerFixture f;
    f.init();
    f.worker.setSyncInterval(1);
    for (uint tick = 1; tick <= 3; ++tick) {
        f.tick();
        QCOMPARE(f.peer.syncCount, tick);
    }
}

void tst_Worker::checkSync_defaultPassesOnTicks1And60And120()
{
    WorkerFixture f;
    f.init();
    QVector<uint> ticks;
    uint passes = 0;
    for (uint tick = 1; tick <= 125; ++tick) {
        f.tick();
        if (f.peer.syncCount != passes)
            ticks.append(tick);
        passes = f.peer.syncCount;
    }
    QCOMPARE(ticks, (QVector<uint> {1, 60, 120}));
}

void tst_Worker::checkSync_skippedWhileInProgress()
{
    WorkerFixture f;
    f.init();
    f.peer.inProgress = true;
    f.tick();
    QCOMPARE(f.log.take(),
             lines({"warning THRWorker::checkSync() - synchronization is in progress, "
                    "this iteration was skipped!"}));
    QCOMPARE(f.peer.tickCount, 1u);
    QCOMPARE(f.peer.inProgress, true);
    QCOMPARE(f.peer.syncCount, 0u);
}

void tst_Worker::checkSync_isInProgressFromTheForceFlagToTheClose()
{
    WorkerFixture f;
    f.init();
    f.peer.tickCount = 1; // no pass is due
    const auto tickAgain = [&f] { f.tick(); };
    f.script.on(QStringLiteral("SELECT value FROM vars"), 1).doing(tickAgain);
    f.script.on(QStringLiteral("close"), 1).doing(tickAgain);
    f.tick();
    const QString skipped = QStringLiteral(
        "warning THRWorker::checkSync() - synchronization is in progress, "
        "this iteration was skipped!");
    QCOMPARE(f.log.take().count(skipped), 2);
    QCOMPARE(f.peer.tickCount, 4u);
    QCOMPARE(f.peer.inProgress, false);
}

void tst_Worker::checkSync_databaseNotOpen()
{
    WorkerFixture f;
    f.init();
    f.peer.db.close();
    f.log.take();
    f.script.on(QStringLiteral("open"), 1)
        .withError(QStringLiteral("2002"), QStringLiteral("no server"));
    f.tick();
    QCOMPARE(
        f.log.take(),
        lines({"sql open", "critical THRWorker::dbCheckOpen() - SQL ERROR: no server (scripted)",
               "warning THRWorker::checkSync() - database not open!"}));
    QCOMPARE(f.peer.inProgress, false);
    // The next tick tries again.
    f.tick();
    QCOMPARE(f.log.take(), lines({"sql open", readForce, "sql close"}));
}

void tst_Worker::checkSync_lostFirstTickIsNotMadeUp()
{
    WorkerFixture f;
    f.init();
    f.worker.setSyncInterval(4);
    f.peer.db.close();
    f.script.on(QStringLiteral("open"), 1)
        .withError(QStringLiteral("2002"), QStringLiteral("no server"));
    QVector<uint> passes;
    for (int tick = 1; tick <= 4; ++tick) {
        f.tick();
        passes.append(f.peer.syncCount);
    }
    QCOMPARE(passes, (QVector<uint> {0, 0, 0, 1}));
    f.log.clear();
}

void tst_Worker::checkSync_forcedTickClearsTheFlag()
{
    WorkerFixture f;
    f.init();
    f.peer.tickCount = 1;
    force(f.script);
    f.worker.setLogLevel(1);
    f.tick();
    // Also when the export file is not there.
    QCOMPARE(f.log.take(),
             lines({readForce, "debug THRWorker: BEGIN synchronization #1 (force: YES)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)", prepareForce,
                    clearForce, "sql close"}));
}

void tst_Worker::checkSync_forceValues_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<bool>("forced");
    QTest::newRow("NULL") << QVariant() << false;
    QTest::newRow("empty") << QVariant(QString()) << false;
    QTest::newRow("0") << QVariant(QStringLiteral("0")) << false;
    QTest::newRow("false") << QVariant(QStringLiteral("false")) << false;
    QTest::newRow("1") << QVariant(QStringLiteral("1")) << true;
    QTest::newRow("true") << QVariant(QStringLiteral("true")) << true;
    QTest::newRow("any other text") << QVariant(QStringLiteral("no")) << true;
    QTest::newRow("number 2") << QVariant(2) << true;
}

void tst_Worker::checkSync_forceValues()
{
    QFETCH(QVariant, value);
    QFETCH(bool, forced);
    WorkerFixture f;
    f.init();
    f.peer.tickCount = 1;
    f.script.on(QString::fromLatin1(readForce).mid(4))
        .withRows({QStringLiteral("value")}, {{value}});
    f.tick();
    QCOMPARE(f.peer.forceSync, forced);
    QCOMPARE(f.peer.syncCount, forced ? 1u : 0u);
    QCOMPARE(f.log.take().contains(QString::fromLatin1(clearForce)), forced);
}

void tst_Worker::checkSync_wholeTickInOrder()
{
    WorkerFixture f;
    f.init();
    f.peer.db.close();
    f.log.take();
    f.worker.setLogLevel(2);
    f.worker.setSyncCommand(QStringLiteral("true"));
    f.worker.setSyncCommandRun(2);
    f.worker.setTestMode(true);
    f.writeExport({record().line()});
    f.tick();
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::checkSync(): #1",
                    "debug THRWorker::dbCheckOpen()",
                    "sql open",
                    readForce,
                    "debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker::runCommand(): 'true'",
                    "debug THRWorker::loadAndParseData()",
                    "debug THRWorker::dbLoadPeople()",
                    loadPeople,
                    "debug THRWorker::doSync() - stack count: 1",
                    "debug THRWorker::dbLoadBranches()",
                    loadBranches,
                    "debug THRWorker::checkDovolenkaFond()",
                    findFund,
                    "info THRWorker::checkDovolenkaFond(): fid=0",
                    "debug THRWorker::dbAddPerson(1234.1  Ján Novák  (T: ) N-V: 1 Mar 2015 -  "
                    "TPP: 11  K: 0  DOV: 0, S: 0)",
                    "warning THRWorker::dbAddPerson(1234.1) - Testing mode is active, "
                    "person not really add!",
                    "debug THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 1)",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 1) - "
                    "Testing mode is active, person not really add into PaM!",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)",
                    "debug THRWorker::dbCheckOpen()",
                    "sql close"}));
    QCOMPARE(f.peer.inProgress, false);
}

void tst_Worker::checkSync_emptyFileReadsNoPeople()
{
    WorkerFixture f;
    f.init();
    f.writeExport({});
    f.tick();
    QCOMPARE(f.log.take(), lines({readForce, "sql close"}));
}

void tst_Worker::checkSync_peopleNotLoaded()
{
    WorkerFixture f;
    f.init();
    f.worker.setLogLevel(1);
    f.peer.tickCount = 1;
    force(f.script);
    f.fail("FROM people p", "1146", "no such table");
    f.writeExport({record().line()});
    f.tick();
    QCOMPARE(f.log.take(),
             lines({readForce, "debug THRWorker: BEGIN synchronization #1 (force: YES)", loadPeople,
                    "critical THRWorker::dbLoadPeople() - SQL ERROR [1146]: "
                    "no such table (scripted)",
                    "critical THRWorker: load people from ORVDB failed - "
                    "synchronization terminated!",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)", prepareForce,
                    clearForce, "sql close"}));
    QVERIFY(f.peer.importedRecords.isEmpty());
    QVERIFY(f.peer.lastRecords.isEmpty());
}

void tst_Worker::checkSync_levelZeroPrintsNothing()
{
    WorkerFixture f;
    f.init();
    // All that is written succeeds: a failure is told of at every level.
    f.answer("SELECT fid FROM funds", 2);
    f.script.on(QStringLiteral("INSERT INTO people ")).withInsertId(41).withAffected(1);
    f.listInPam(QString());
    f.answer("SELECT uid FROM people WHERE pid=", 41);
    f.script.on(QStringLiteral("INSERT INTO people_pam ")).withAffected(1);
    f.answer("SELECT aid FROM admins", 6);
    f.answer("SELECT uid FROM people WHERE pid = ", 41);
    f.writeExport({exportHeader(), record().supervisor(5).line(), QStringLiteral("bad line")});
    f.tick();
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QRegularExpression(QStringLiteral("^(?!sql )"))), QStringList());
    // Every step was taken.
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO people_pam ")).size(), 1);
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO admins_people ")).size(), 1);
}

void tst_Worker::checkSync_failedClearIsNotLookedAt()
{
    WorkerFixture f;
    f.init();
    f.peer.tickCount = 1;
    force(f.script);
    f.fail("prepare INSERT INTO vars", "1142", "denied");
    f.tick();
    QCOMPARE(f.log.take(),
             lines({readForce, prepareForce, "critical variableSet ERROR: \"denied (scripted)\"",
                    "sql close"}));
    QCOMPARE(f.peer.inProgress, false);
}

void tst_Worker::runCommand_data()
{
    QTest::addColumn<int>("when");
    QTest::addColumn<bool>("forced");
    QTest::addColumn<bool>("runs");
    QTest::newRow("never") << 0 << false << false;
    QTest::newRow("never, forced") << 0 << true << false;
    QTest::newRow("on force") << 1 << false << false;
    QTest::newRow("on force, forced") << 1 << true << true;
    QTest::newRow("always") << 2 << false << true;
    QTest::newRow("always, forced") << 2 << true << true;
    QTest::newRow("beyond 2") << 255 << false << true;
}

void tst_Worker::runCommand()
{
    QFETCH(int, when);
    QFETCH(bool, forced);
    QFETCH(bool, runs);
    WorkerFixture f;
    f.init();
    const QString trace = f.filePath(QStringLiteral("trace"));
    f.worker.setSyncCommand(QStringLiteral("touch \"%1\"").arg(trace));
    f.worker.setSyncCommandRun(static_cast<quint8>(when));
    if (forced)
        force(f.script);
    f.tick();
    QCOMPARE(QFileInfo::exists(trace), runs);
}

void tst_Worker::runCommand_empty()
{
    WorkerFixture f;
    f.worker.setLogLevel(2);
    f.worker.runCommand();
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::runCommand(): ''",
                    "warning THRWorker::runCommand() - NO command, aborted!"}));
    f.worker.setLogLevel(1);
    f.worker.runCommand();
    QCOMPARE(f.log.take(), lines({"warning THRWorker::runCommand() - NO command, aborted!"}));
}

void tst_Worker::runCommand_exitCodes_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<int>("exitCode");
    QTest::newRow("success") << QStringLiteral("true") << 0;
    QTest::newRow("failure") << QStringLiteral("sh -c \"exit 7\"") << 7;
    QTest::newRow("not there") << QStringLiteral("/nowhere/export") << -2;
    QTest::newRow("killed") << QStringLiteral("sh -c \"kill -9 $$\"") << -1;
}

void tst_Worker::runCommand_exitCodes()
{
    QFETCH(QString, command);
    QFETCH(int, exitCode);
    WorkerFixture f;
    f.worker.setSyncCommand(command);
    f.worker.runCommand();
    QStringList expected;
    if (exitCode != 0)
        expected.append(QStringLiteral("warning THRWorker::runCommand() - command: '%1' exit with "
                                       "code: %2")
                            .arg(command)
                            .arg(exitCode));
    QCOMPARE(f.log.take(), expected);
}

void tst_Worker::isqlProcessErrorOccurred_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("line");
    const QStringList texts = lines(
        {"Failed to start", "Crashed", "Timedout", "Read Error", "Write Error", "Unknown Error"});
    for (int error = 0; error < texts.size(); ++error) {
        QTest::newRow(qPrintable(texts.at(error)))
            << error << QStringLiteral("critical THRWorker: isql process ") + texts.at(error);
    }
    QTest::newRow("none of them") << 6
                                  << QStringLiteral(
                                         "critical THRWorker: isql process Unknown Error");
}

void tst_Worker::isqlProcessErrorOccurred()
{
    QFETCH(int, error);
    QFETCH(QString, line);
    WorkerFixture f;
    QVERIFY(QMetaObject::invokeMethod(
        &f.worker, "isqlProcessErrorOccurred", Qt::DirectConnection,
        Q_ARG(QProcess::ProcessError, static_cast<QProcess::ProcessError>(error))));
    QCOMPARE(f.log.take(), QStringList {line});
}

QTEST_GUILESS_MAIN(tst_Worker)
#include "tst_worker.moc"
