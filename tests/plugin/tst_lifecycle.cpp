// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The calls of the server and the worker's thread, with a real thread and real timers.
#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"
#include "support/patience.h"
#include "support/plugin/pluginfixture.h"
#include "support/recordbuilder.h"
#include "support/textfile.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSemaphore>
#include <QTimer>
#include <QtTest>

namespace {

const char readForce[]
    = "sql exec SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1";
const char stopFromOutside[]
    = "warning QObject::killTimer: Timers cannot be stopped from another thread";
const char childFromOutside[]
    = "warning QObject: Cannot create children for a parent that is in a different thread.\n"
      "(Parent is THRWorker(ADDRESS), parent's thread is QThread(ADDRESS), "
      "current thread is QThread(ADDRESS)";

bool *enableOnWarning = nullptr;
QtMessageHandler previousHandler = nullptr;

void enablingHandler(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    previousHandler(type, context, text);
    if (text == QLatin1String("TalvenHR is DISABLED"))
        *enableOnWarning = true;
}

/// Events without the addresses of objects.
QStringList withoutAddresses(QStringList events)
{
    return events.replaceInStrings(QRegularExpression(QStringLiteral("0x[0-9a-f]+")),
                                   QStringLiteral("ADDRESS"));
}

/// As many lines as the worker has children; they all want to be made anew.
QStringList warningsOfChildren(int children)
{
    QStringList warnings;
    for (int i = 0; i < children; ++i)
        warnings.append(QString::fromLatin1(childFromOutside));
    return warnings;
}

const char addingToBranch[]
    = "sql exec INSERT INTO brape (bid, uid, since) SELECT 70 bid, uid, UNIX_TIMESTAMP() since "
      "FROM people WHERE uid IN(5) ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()";

/// An export file of one new person of branch 7, whom the database takes as uid 5 into bid 70, with
/// one terminal and one administrator. Found uids last as long as the process: the pid is always
/// 99111.
void offerPerson(PluginFixture &f)
{
    const QString path = f.environment.filePath(QStringLiteral("ron.data"));
    writeLines(path, {record().pid(9911, 1).branch(7).line()});
    f.worker().importFile = path;
    const auto answer = [&f](const char *question, const QVariantList &row) {
        f.script.on(QString::fromLatin1(question))
            .withRows({QStringLiteral("a"), QStringLiteral("b")}, {row});
    };
    answer("SELECT bid, number FROM branches", {70, 7});
    answer("exec SELECT uid FROM people", {5});
    answer("SELECT tid FROM term", {3});
    answer("SELECT aid FROM bradm", {4});
    f.script.on(QStringLiteral("INSERT INTO people ")).withInsertId(5).withAffected(1);
    f.script.on(QStringLiteral("INSERT INTO brape")).withAffected(1);
}

/// What follows from the membership, on an open connection.
QStringList propagation()
{
    return lines({"info BranchesRepository::slotAddedPeopleToBranch(70, '5')",
                  "info BranchesRepository::getTids4Branch(70)",
                  "sql exec SELECT tid FROM term WHERE status > 0 AND bid = 70",
                  "sql exec INSERT INTO people_term (tid, uid) VALUES (3, 5) "
                  "ON DUPLICATE KEY UPDATE tid=VALUES(tid);",
                  "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                  "flags) SELECT 3 tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, "
                  "UNIX_TIMESTAMP() created, 2 flags FROM people WHERE status = 1 AND uid IN(5);",
                  "sql exec Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 3",
                  "info BranchesRepository::getAids4Branch(70)",
                  "sql exec SELECT aid FROM bradm WHERE bid = 70",
                  "sql exec INSERT INTO admins_people (aid, uid) VALUES (4, 5) "
                  "ON DUPLICATE KEY UPDATE uid=VALUES(uid);"});
}

/// The events from the membership on.
QStringList fromTheMembership(const QStringList &events)
{
    return events.mid(events.indexOf(QString::fromLatin1(addingToBranch)));
}

void force(ScriptedDatabase &script)
{
    script.on(QString::fromLatin1(readForce).mid(4))
        .withRows({QStringLiteral("value")}, {{QStringLiteral("1")}});
}

} // namespace

class tst_Lifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructor_startsNothing();
    void start_movesTheWorkerToItsThread();
    void start_makesTheTimerOnTheWorkersThread();
    void start_makesTheRepositoriesOnTheWorkersThread();
    void start_membershipsArePropagatedWithinThePass();
    void start_runsNoPassAtOnce();
    void start_firstTickComesAfterOneInterval();
    void start_handsOverLevelAndDatabaseOnce();
    void start_secondMakesNoSecondWorkerOrThread();
    void start_secondWithoutStopDoublesTheTicks();
    void start_gates();
    void start_failedInitIsReported();
    void laterCallsReachTheWorkerDirectly_data();
    void laterCallsReachTheWorkerDirectly();
    void laterCalls_gates_data();
    void laterCalls_gates();
    void laterCalls_beforeStartOnlyLog();
    void stop_endsTheTicks_data();
    void stop_endsTheTicks();
    void stop_rightAfterTheFirstStartStopsNothing();
    void stop_keepsThreadAndCounters();
    void stop_letsARunningPassEnd();
    void stop_afterResumeStopsTheNewTimerWithoutAWord();
    void resume_makesATimerWithoutParent();
    void resume_makesRepositoriesWithoutParent();
    void resume_membershipsArePropagatedAfterThePass();
    void resume_membershipsArePropagatedBesideThePass();
    void resume_signalOfTheWorkersThreadYieldsFalse();
    void resume_ticksOnTheWorkersThread();
    void resume_tickDuringAPassComesAfterIt();
    void forcedPass_onTheWorkersThread();
};

void tst_Lifecycle::constructor_startsNothing()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    QObject parent;
    TalvenHR plugin(&parent);
    const PluginPeer peer(plugin);
    QCOMPARE(plugin.parent(), &parent);
    QCOMPARE(peer.logLevel, quint8(0));
    QVERIFY(!peer.db.isValid());
    QVERIFY(peer.settings);
    QCOMPARE(peer.initialised, false);
    QCOMPARE(peer.enabled, true);
    QVERIFY(!peer.worker);
    QVERIFY(!peer.workerThread.isRunning());
    QVERIFY(!peer.workerThread.parent());
    QVERIFY(!TalvenHR().parent());
}

void tst_Lifecycle::start_movesTheWorkerToItsThread()
{
    PluginFixture f;
    f.createRunning(0);
    const PluginPeer peer = f.peer();
    QCOMPARE(peer.initialised, true);
    QCOMPARE(peer.enabled, true);
    QVERIFY(peer.worker);
    QVERIFY(!peer.worker->parent());
    QCOMPARE(peer.worker->thread(), &peer.workerThread);
    QVERIFY(peer.workerThread.isRunning());
    QCOMPARE(peer.workerThread.priority(), QThread::LowPriority);
}

void tst_Lifecycle::start_makesTheTimerOnTheWorkersThread()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.create(1);
    QVERIFY(f.plugin->start());
    f.onWorkerThread();
    const void *const here = QThread::currentThreadId();
    QCOMPARE(f.log.threadOf(QStringLiteral("debug TalvenHR::init()")), here);
    QCOMPARE(f.log.threadOf(QStringLiteral("debug THRWorker::setMes() count: 0)")), here);
    const void *const there = f.log.threadOf(QStringLiteral("debug THRWorker::start()"));
    QVERIFY(there && there != here);
    QCOMPARE(f.log.threadOf(QStringLiteral("debug THRWorker::init()")), there);
    QTimer *const timer = f.worker().timer;
    QCOMPARE(timer->parent(), f.peer().worker);
    QCOMPARE(timer->thread(), &f.peer().workerThread);
    QVERIFY(timer->isActive());
    QVERIFY(!timer->isSingleShot());
    QVERIFY(!f.log.contains(QStringLiteral("warning ")));
    f.log.clear();
}

void tst_Lifecycle::start_makesTheRepositoriesOnTheWorkersThread()
{
    PluginFixture f;
    f.createRunning(1);
    const QList<QObject *> repositories {f.worker().branchesRepo, f.worker().groupsPlanRepo};
    for (const QObject *repository : repositories) {
        QCOMPARE(repository->parent(), f.peer().worker);
        QCOMPARE(repository->thread(), &f.peer().workerThread);
    }
}

void tst_Lifecycle::start_membershipsArePropagatedWithinThePass()
{
    PluginFixture f;
    f.createRunning(1);
    offerPerson(f);
    f.tick();
    const void *thread = nullptr;
    f.onWorkerThread([&thread] { thread = QThread::currentThreadId(); });
    QCOMPARE(f.log.threadOf(QStringLiteral("slotAddedPeopleToBranch")), thread);
    QCOMPARE(
        fromTheMembership(f.log.take()),
        lines({addingToBranch}) + propagation()
            + lines({"debug THRWorker: END synchronization #1 (waiting records: 0)", "sql close"}));
    QCoreApplication::processEvents();
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Lifecycle::start_runsNoPassAtOnce()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")}); // ticks every minute
    f.create(2);
    QVERIFY(f.plugin->start());
    f.onWorkerThread();
    QVERIFY(!f.log.contains(QStringLiteral("checkSync")));
    QVERIFY(!f.log.contains(QStringLiteral("sql ")));
    QCOMPARE(f.worker().tickCount, 0u);
    f.log.clear();
}

void tst_Lifecycle::start_firstTickComesAfterOneInterval()
{
    PluginFixture f;
    f.createRunning(2, {QStringLiteral("timerInterval=1")});
    QElapsedTimer elapsed;
    const void *thread = nullptr;
    f.onWorkerThread([&] {
        thread = QThread::currentThreadId();
        f.worker().timer->start(); // from the beginning of an interval
        elapsed.start();
    });
    QTRY_VERIFY_WITH_TIMEOUT(f.log.contains(QStringLiteral("END synchronization #1")), longestWait);
    // The timer may be coarse by a twentieth.
    QVERIFY(elapsed.elapsed() >= 950);
    QCOMPARE(f.log.threadOf(QStringLiteral("checkSync(): #1")), thread);
    QCOMPARE(f.log.threadOf(QStringLiteral("sql open")), thread);
    QCOMPARE(f.log.threadOf(QString::fromLatin1(readForce)), thread);
    f.plugin->setLogLevel(0);
    f.destroy();
    f.log.clear();
}

void tst_Lifecycle::start_handsOverLevelAndDatabaseOnce()
{
    PluginFixture f;
    f.createRunning(1);
    QCOMPARE(f.worker().logLevel, quint8(1));
    QCOMPARE(f.worker().db.connectionName(), QStringLiteral("OQS.scripted.TalvenHR"));
    QVERIFY(!f.worker().db.isOpen());
    QVERIFY(!f.peer().db.isOpen());

    f.plugin->setLogLevel(3);
    f.plugin->setDatabase(f.script.handle(QStringLiteral("another")));
    f.restart([&f] { QVERIFY(f.plugin->start()); });
    QCOMPARE(f.worker().logLevel, quint8(1));
    QCOMPARE(f.worker().db.databaseName(), QStringLiteral("scripted"));
    QVERIFY(!QSqlDatabase::contains(QStringLiteral("OQS.another.TalvenHR")));
    f.log.clear();
}

void tst_Lifecycle::start_secondMakesNoSecondWorkerOrThread()
{
    PluginFixture f;
    f.createRunning(0);
    const THRWorker *const worker = f.peer().worker;
    f.restart([&f] { QVERIFY(f.plugin->start()); });
    QCOMPARE(f.peer().worker, worker);
    QCOMPARE(worker->thread(), &f.peer().workerThread);
    QVERIFY(f.peer().workerThread.isRunning());
    QCOMPARE(f.peer().initialised, true);
    f.log.clear();
}

void tst_Lifecycle::start_secondWithoutStopDoublesTheTicks()
{
    PluginFixture f;
    f.createRunning(2);
    QTimer *const first = f.worker().timer;
    f.restart([&f] { QVERIFY(f.plugin->start()); });
    QTimer *const second = f.worker().timer;
    QVERIFY(second != first);
    QVERIFY(first->isActive());
    QVERIFY(second->isActive());
    f.log.clear();

    // Each of them makes the worker tick, the new one from this thread's event loop.
    QVERIFY(QMetaObject::invokeMethod(first, "timeout", Qt::BlockingQueuedConnection));
    QCOMPARE(f.log.count(QStringLiteral("checkSync(): #1")), 1);
    const void *const thread = f.log.threadOf(QStringLiteral("checkSync(): #1"));
    QVERIFY(QMetaObject::invokeMethod(second, "timeout", Qt::DirectConnection));
    f.onWorkerThread();
    QCOMPARE(f.log.threadOf(QStringLiteral("checkSync(): #2")), thread);
    QCOMPARE(f.worker().tickCount, 2u);

    // Only the new one is within reach of stop().
    f.plugin->stop();
    QVERIFY(first->isActive());
    QVERIFY(!second->isActive());
    f.log.clear();
}

void tst_Lifecycle::start_gates()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.create(0);
    QVERIFY(f.plugin->start());
    f.onWorkerThread();
    QVERIFY(!f.log.contains(QStringLiteral("TalvenHR")));
    QVERIFY(!f.log.contains(QStringLiteral("THRWorker")));
    f.log.clear();
    f.plugin->setLogLevel(1);
    f.restart([&f] { QVERIFY(f.plugin->start()); });
    QCOMPARE(f.log.count(QStringLiteral("debug Start TalvenHR..")), 1);
    f.plugin->setLogLevel(255);
    f.restart([&f] { QVERIFY(f.plugin->start()); });
    QCOMPARE(f.log.count(QStringLiteral("debug Start TalvenHR..")), 2);
    f.log.clear();
}

void tst_Lifecycle::start_failedInitIsReported()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=false")});
    f.create(0);
    // As things are, init() fails only for a plugin that it has just disabled. Here the plugin is
    // enabled again before start() looks.
    enableOnWarning = &f.peer().enabled;
    previousHandler = qInstallMessageHandler(enablingHandler);
    const bool started = f.plugin->start();
    qInstallMessageHandler(previousHandler);
    QVERIFY(!started);
    QCOMPARE(f.log.take(),
             lines({"debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "warning TalvenHR is DISABLED",
                    "warning TalvenHR not start properly - init failed!"}));
}

void tst_Lifecycle::laterCallsReachTheWorkerDirectly_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("starts");
    QTest::newRow("stop") << QStringLiteral("stop") << QStringLiteral("debug Stop TalvenHR..")
                          << false;
    QTest::newRow("pause") << QStringLiteral("pause") << QStringLiteral("debug Pause TalvenHR..")
                           << false;
    QTest::newRow("resume") << QStringLiteral("resume") << QStringLiteral("debug Resume TalvenHR..")
                            << true;
    QTest::newRow("start") << QStringLiteral("start") << QStringLiteral("debug Start TalvenHR..")
                           << true;
}

void tst_Lifecycle::laterCallsReachTheWorkerDirectly()
{
    QFETCH(QString, call);
    QFETCH(QString, line);
    QFETCH(bool, starts);
    PluginFixture f;
    f.createRunning(1);
    const int children = f.peer().worker->children().size();
    QVERIFY(children > 0);

    // All is done and logged when the call returns, while the worker's thread is busy elsewhere.
    QSemaphore busy;
    QSemaphore goOn;
    QObject trigger;
    connect(&trigger, &QObject::objectNameChanged, f.peer().worker, [&] {
        busy.release();
        goOn.tryAcquire(1, longestWait);
    });
    trigger.setObjectName(QStringLiteral("now"));
    QVERIFY(busy.tryAcquire(1, longestWait));
    QStringList events;
    const void *thread = nullptr;
    const QString ofTheWorker = starts ? QStringLiteral("debug THRWorker::start()")
                                       : QStringLiteral("debug THRWorker::init()");
    if (starts) {
        f.restart([&] {
            if (call == QLatin1String("start"))
                QVERIFY(f.plugin->start());
            else
                f.plugin->resume();
            thread = f.log.threadOf(ofTheWorker);
            events = f.log.take();
        });
    } else {
        if (call == QLatin1String("stop"))
            f.plugin->stop();
        else
            f.plugin->pause();
        thread = f.log.threadOf(ofTheWorker);
        events = f.log.take();
    }
    goOn.release();

    QCOMPARE(thread, static_cast<const void *>(QThread::currentThreadId()));
    if (starts) {
        QCOMPARE(withoutAddresses(events),
                 (QStringList {line, QStringLiteral("debug THRWorker::start()"),
                               QStringLiteral("debug THRWorker::init()")}
                  + warningsOfChildren(children)));
    } else {
        // Words of init(), though it is stop().
        QCOMPARE(events,
                 (QStringList {line, QStringLiteral("debug THRWorker::init()"),
                               QString::fromLatin1(stopFromOutside)}));
    }
    f.onWorkerThread();
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Lifecycle::laterCalls_gates_data()
{
    QTest::addColumn<QString>("call");
    for (const char *call : {"stop", "pause", "resume"})
        QTest::newRow(call) << QString::fromLatin1(call);
}

void tst_Lifecycle::laterCalls_gates()
{
    QFETCH(QString, call);
    PluginFixture f;
    f.createRunning(0);
    const auto run = [&] {
        if (call == QLatin1String("stop"))
            f.plugin->stop();
        else if (call == QLatin1String("pause"))
            f.plugin->pause();
        else
            f.restart([&f] { f.plugin->resume(); });
    };
    run();
    QVERIFY(!f.log.contains(QStringLiteral("debug ")));
    f.plugin->setLogLevel(1);
    run();
    QCOMPARE(f.log.count(QStringLiteral("debug ")), 1);
    QVERIFY(f.log.contains(QStringLiteral(" TalvenHR..")));
    f.log.clear();
}

void tst_Lifecycle::laterCalls_beforeStartOnlyLog()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.create(1);
    f.plugin->stop();
    f.plugin->pause();
    f.plugin->resume();
    QCOMPARE(f.log.take(),
             lines({"debug Stop TalvenHR..", "debug Pause TalvenHR..", "debug Resume TalvenHR.."}));
    QVERIFY(!f.peer().worker);
    QCOMPARE(f.peer().enabled, true);
    QCOMPARE(f.peer().initialised, false);
}

void tst_Lifecycle::stop_endsTheTicks_data()
{
    QTest::addColumn<bool>("pause");
    QTest::newRow("stop") << false;
    QTest::newRow("pause") << true;
}

void tst_Lifecycle::stop_endsTheTicks()
{
    QFETCH(bool, pause);
    PluginFixture f;
    f.createRunning(2, {QStringLiteral("timerInterval=1")});
    if (pause)
        f.plugin->pause();
    else
        f.plugin->stop();
    QVERIFY(!f.worker().timer->isActive());
    f.onWorkerThread(); // a tick that was due is over
    f.log.clear();

    // Another timer of the same interval goes off twice on the same thread, and no tick comes.
    QTimer witness;
    int times = 0;
    QSemaphore twice;
    connect(&witness, &QTimer::timeout, f.peer().worker, [&] {
        if (++times == 2)
            twice.release();
    });
    witness.moveToThread(&f.peer().workerThread);
    f.onWorkerThread([&] { witness.start(1000); });
    const bool wentOff = twice.tryAcquire(1, longestWait);
    QThread *const here = QThread::currentThread();
    f.onWorkerThread([&] {
        witness.stop();
        witness.moveToThread(here);
    });
    QVERIFY(wentOff);
    QCOMPARE(f.log.take(), QStringList());
}

/// The worker's thread has begun, and the worker has no timer yet.
void tst_Lifecycle::stop_rightAfterTheFirstStartStopsNothing()
{
    QSemaphore begun;
    QSemaphore mayGoOn;
    PluginFixture f;
    const auto goOn = qScopeGuard([&mayGoOn] { mayGoOn.release(); });
    f.environment.writeIni({QStringLiteral("enabled=true"), QStringLiteral("timerInterval=1"),
                            QStringLiteral("importFile=/nowhere/ron.data")});
    f.create(1);
    QThread *const thread = &f.peer().workerThread;
    const auto hold = [&] {
        begun.release();
        mayGoOn.acquire();
    };
    connect(thread, &QThread::started, thread, hold, Qt::DirectConnection);
    QVERIFY(f.plugin->start());
    QVERIFY(begun.tryAcquire(1, longestWait));
    f.plugin->stop();
    QVERIFY(!f.worker().timer);
    QVERIFY(!f.log.contains(QStringLiteral("THRWorker::start()")));

    mayGoOn.release();
    f.onWorkerThread([&f] { QVERIFY(f.worker().timer->isActive()); });
    QTRY_VERIFY_WITH_TIMEOUT(f.log.contains(QStringLiteral("END synchronization #1")), longestWait);
    f.destroy();
    f.log.clear();
}

void tst_Lifecycle::stop_keepsThreadAndCounters()
{
    PluginFixture f;
    f.createRunning(0);
    f.tick();
    f.plugin->stop();
    f.onWorkerThread();
    QVERIFY(f.peer().workerThread.isRunning());
    QCOMPARE(f.peer().initialised, true);
    QCOMPARE(f.peer().enabled, true);
    QCOMPARE(f.worker().tickCount, 1u);
    QCOMPARE(f.worker().syncCount, 1u);
    f.tick(); // by hand: the thread is in its event loop
    QCOMPARE(f.worker().tickCount, 2u);
    QCOMPARE(f.worker().syncCount, 1u);
    f.log.clear();
}

void tst_Lifecycle::stop_letsARunningPassEnd()
{
    PluginFixture f;
    f.createRunning(1);
    Gate gate(f.script, QStringLiteral("SELECT value FROM vars"));
    f.tickUntil(gate);
    f.plugin->stop(); // does not wait
    EventLog::record(QStringLiteral("debug stop() has returned"));
    gate.open();
    f.onWorkerThread();
    QCOMPARE(f.log.take(),
             lines({"sql open", readForce, "debug Stop TalvenHR..", "debug THRWorker::init()",
                    stopFromOutside, "debug stop() has returned",
                    "debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)", "sql close"}));
}

void tst_Lifecycle::stop_afterResumeStopsTheNewTimerWithoutAWord()
{
    PluginFixture f;
    f.createRunning(1);
    f.plugin->stop();
    f.restart([&f] { f.plugin->resume(); });
    QTimer *const timer = f.worker().timer;
    QVERIFY(timer->isActive());
    f.log.clear();
    // It belongs to this thread, so Qt has nothing to say.
    f.plugin->stop();
    QCOMPARE(f.log.take(), lines({"debug Stop TalvenHR..", "debug THRWorker::init()"}));
    QVERIFY(!timer->isActive());
}

void tst_Lifecycle::resume_makesATimerWithoutParent()
{
    PluginFixture f;
    f.createRunning(0, {QStringLiteral("timerInterval=7")});
    QTimer *const first = f.worker().timer;
    f.plugin->pause();
    f.restart([&f] { f.plugin->resume(); });
    QTimer *const second = f.worker().timer;
    QVERIFY(second != first);
    QVERIFY(!second->parent());
    QCOMPARE(second->thread(), QThread::currentThread());
    QCOMPARE(second->interval(), 7000);
    QVERIFY(second->isActive());
    QVERIFY(!first->isActive());
    // The stopped one stays where it was.
    QCOMPARE(first->parent(), f.peer().worker);
    f.log.clear();
}

void tst_Lifecycle::resume_makesRepositoriesWithoutParent()
{
    PluginFixture f;
    f.createRunning(0);
    QObject *const firstBranches = f.worker().branchesRepo;
    QObject *const firstPlans = f.worker().groupsPlanRepo;
    f.plugin->pause();
    f.restart([&f] { f.plugin->resume(); });
    QVERIFY(f.worker().branchesRepo != firstBranches);
    QVERIFY(f.worker().groupsPlanRepo != firstPlans);
    const QList<QObject *> repositories {f.worker().branchesRepo, f.worker().groupsPlanRepo};
    for (const QObject *repository : repositories) {
        QVERIFY(!repository->parent());
        QCOMPARE(repository->thread(), QThread::currentThread());
    }
    // The earlier ones stay where they were.
    QCOMPARE(firstBranches->parent(), f.peer().worker);
    QCOMPARE(firstPlans->parent(), f.peer().worker);
    QCOMPARE(firstBranches->thread(), &f.peer().workerThread);
    f.log.clear();
}

void tst_Lifecycle::resume_membershipsArePropagatedAfterThePass()
{
    PluginFixture f;
    f.createRunning(1);
    f.plugin->stop();
    f.restart([&f] { f.plugin->resume(); });
    offerPerson(f);
    f.log.clear();
    // This thread waits for the pass, and so the slot waits for this thread.
    f.tick();
    QCOMPARE(fromTheMembership(f.log.take()),
             lines({addingToBranch, "debug THRWorker: END synchronization #1 (waiting records: 0)",
                    "sql close"}));

    // By now the connection is closed: nobody lands on a terminal or under an administrator, and
    // the two readers alone complain.
    QCoreApplication::processEvents();
    QCOMPARE(f.log.threadOf(QStringLiteral("slotAddedPeopleToBranch")),
             static_cast<const void *>(QThread::currentThreadId()));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::slotAddedPeopleToBranch(70, '5')",
                    "info BranchesRepository::getTids4Branch(70)",
                    "warning QSqlQuery::exec: database not open",
                    "critical BranchesRepository::getTids4Branch - ERROR: ",
                    "info BranchesRepository::getAids4Branch(70)",
                    "warning QSqlQuery::exec: database not open",
                    "critical BranchesRepository::getAids4Branch - ERROR: "}));
}

void tst_Lifecycle::resume_membershipsArePropagatedBesideThePass()
{
    PluginFixture f;
    f.createRunning(1);
    f.plugin->stop();
    f.restart([&f] { f.plugin->resume(); });
    offerPerson(f);
    f.log.clear();
    // The pass is about to close its connection when this thread comes to its events.
    Gate gate(f.script, QStringLiteral("close"));
    f.tickUntil(gate);
    QCOMPARE(fromTheMembership(f.log.take()),
             lines({addingToBranch, "debug THRWorker: END synchronization #1 (waiting records: 0)",
                    "sql close"}));
    QCoreApplication::processEvents();
    QCOMPARE(f.log.threadOf(QStringLiteral("sql exec INSERT INTO people_term")),
             static_cast<const void *>(QThread::currentThreadId()));
    QCOMPARE(f.log.take(), propagation());
    gate.open();
    f.onWorkerThread();
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Lifecycle::resume_signalOfTheWorkersThreadYieldsFalse()
{
    PluginFixture f;
    f.createRunning(0);
    BranchesRepository *const before = f.worker().branchesRepo;
    bool yielded = false;
    f.onWorkerThread([&] {
        f.worker().db.open();
        yielded = Q_EMIT before->sigAddedPeopleToBranch(70, QStringLiteral("5"));
    });
    QVERIFY(yielded);

    f.plugin->stop();
    f.restart([&f] { f.plugin->resume(); });
    f.log.clear();
    BranchesRepository *const after = f.worker().branchesRepo;
    f.onWorkerThread(
        [&] { yielded = Q_EMIT after->sigAddedPeopleToBranch(70, QStringLiteral("5")); });
    QVERIFY(!yielded);
    QCOMPARE(f.log.take(), QStringList());
    QCoreApplication::processEvents();
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT tid FROM term WHERE status > 0 AND bid = 70",
                    "sql exec SELECT aid FROM bradm WHERE bid = 70"}));
    // On this thread it is a direct call.
    QVERIFY(Q_EMIT after->sigAddedPeopleToBranch(70, QStringLiteral("5")));
    f.onWorkerThread([&f] { f.worker().db.close(); });
    f.log.clear();
}

void tst_Lifecycle::resume_ticksOnTheWorkersThread()
{
    PluginFixture f;
    f.createRunning(2, {QStringLiteral("timerInterval=1")});
    f.plugin->stop();
    f.restart([&f] { f.plugin->resume(); });
    const void *thread = nullptr;
    f.onWorkerThread([&thread] { thread = QThread::currentThreadId(); });
    f.log.clear();
    QTRY_VERIFY_WITH_TIMEOUT(f.log.contains(QStringLiteral("checkSync(): #")), longestWait);
    QCOMPARE(f.log.threadOf(QStringLiteral("checkSync(): #")), thread);
    f.destroy();
    f.log.clear();
}

void tst_Lifecycle::resume_tickDuringAPassComesAfterIt()
{
    PluginFixture f;
    f.createRunning(0);
    Gate gate(f.script, QStringLiteral("SELECT value FROM vars"));
    f.tickUntil(gate);
    f.restart([&f] { f.plugin->resume(); }); // does not wait
    f.worker().timer->setInterval(0);
    QSignalSpy ticks(f.worker().timer, &QTimer::timeout);
    QVERIFY(ticks.wait(longestWait));
    f.worker().timer->stop();
    f.log.clear();
    gate.open();
    f.onWorkerThread();
    // No warning of a pass in progress: the tick has waited in the event loop of the worker's
    // thread.
    QCOMPARE(f.log.take().mid(0, 4), lines({"sql close", "sql open", readForce, "sql close"}));
    QCOMPARE(f.worker().tickCount, 1u + uint(ticks.count()));
}

void tst_Lifecycle::forcedPass_onTheWorkersThread()
{
    PluginFixture f;
    f.createRunning(1);
    f.tick();
    f.log.clear();
    force(f.script);
    f.tick();
    const void *thread = nullptr;
    f.onWorkerThread([&thread] { thread = QThread::currentThreadId(); });
    QCOMPARE(f.log.threadOf(QStringLiteral("sql run")), thread);
    QCOMPARE(f.log.take(),
             lines({"sql open", readForce, "debug THRWorker: BEGIN synchronization #2 (force: YES)",
                    "debug THRWorker: END synchronization #2 (waiting records: 0)",
                    "sql prepare INSERT INTO vars (name, value) VALUES(:name, :value) "
                    "ON DUPLICATE KEY UPDATE value=VALUES(value);",
                    "sql run :name=OQS.THRWorker.forceSync, :value=0", "sql close"}));
}

QTEST_GUILESS_MAIN(tst_Lifecycle)
#include "tst_lifecycle.moc"
