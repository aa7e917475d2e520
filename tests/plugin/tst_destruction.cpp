// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin object's end, in every state, and what it leaves to the next one.
#include "environment/envirosettings.h"
#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"
#include "support/patience.h"
#include "support/plugin/pluginfixture.h"

#include <QPointer>
#include <QTimer>
#include <QtTest>

namespace {

const char readForce[]
    = "sql exec SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync' LIMIT 1";

} // namespace

class tst_Destruction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void destructor_beforeStart();
    void destructor_ofADisabledPlugin();
    void destructor_deletesTheSettingsBeforeItEndsTheThread();
    void destructor_deletesTheWorkerOnItsThread();
    void destructor_waitsForTheRunningPass();
    void destructor_afterStop();
    void destructor_afterResume();
    void destructor_doesNotStopTheWorker();
    void connection_staysForTheNextPlugin();
};

void tst_Destruction::destructor_beforeStart()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.create(1);
    const QPointer<QObject> settings = f.peer().settings;
    QVERIFY(settings);
    f.destroy();
    QVERIFY(!settings);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Destruction::destructor_ofADisabledPlugin()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=false")});
    f.create(1);
    QVERIFY(f.plugin->start());
    f.log.clear();
    f.destroy();
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Destruction::destructor_deletesTheSettingsBeforeItEndsTheThread()
{
    PluginFixture f;
    f.createRunning(1);
    THRWorker *const worker = f.peer().worker;
    QSemaphore rounds; // of the event loop of the worker's thread
    f.onWorkerThread([worker, &rounds] {
        auto *const timer = new QTimer(worker);
        connect(timer, &QTimer::timeout, worker, [&rounds] { rounds.release(); });
        timer->start(1);
    });
    bool goesOn = false;
    connect(f.peer().settings, &QObject::destroyed, this, [&rounds, &goesOn] {
        rounds.acquire(rounds.available());
        // One round may be under way when a thread is told to end, but no second one follows.
        goesOn = rounds.tryAcquire(2, longestWait);
    });
    f.destroy();
    QVERIFY(goesOn);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Destruction::destructor_deletesTheWorkerOnItsThread()
{
    PluginFixture f;
    f.createRunning(1);
    const QPointer<THRWorker> worker = f.peer().worker;
    const QPointer<QTimer> timer = f.worker().timer;
    const QPointer<QObject> branches = f.worker().branchesRepo;
    const QPointer<QObject> plans = f.worker().groupsPlanRepo;
    const void *thread = nullptr;
    const void *threadOfEnd = nullptr;
    f.onWorkerThread([&thread] { thread = QThread::currentThreadId(); });
    connect(
        worker.data(), &QObject::destroyed, worker.data(),
        [&threadOfEnd] { threadOfEnd = QThread::currentThreadId(); }, Qt::DirectConnection);
    f.destroy();
    QVERIFY(!worker);
    QVERIFY(!timer);
    QVERIFY(!branches);
    QVERIFY(!plans);
    QCOMPARE(threadOfEnd, thread);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Destruction::destructor_waitsForTheRunningPass()
{
    PluginFixture f;
    f.createRunning(1);
    Gate gate(f.script, QStringLiteral("SELECT value FROM vars"));
    f.tickUntil(gate);
    // The settings go first: by then the destructor runs, and only then the pass can go on.
    connect(f.peer().settings, &QObject::destroyed, this, [&gate] {
        EventLog::record(QStringLiteral("debug the destructor has begun"));
        gate.open();
    });
    f.destroy();
    EventLog::record(QStringLiteral("debug the destructor is over"));
    QCOMPARE(f.log.take(),
             lines({"sql open", readForce, "debug the destructor has begun",
                    "debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)", "sql close",
                    "debug the destructor is over"}));
}

void tst_Destruction::destructor_afterStop()
{
    PluginFixture f;
    f.createRunning(1);
    const QPointer<THRWorker> worker = f.peer().worker;
    f.plugin->stop();
    f.log.clear();
    f.destroy();
    QVERIFY(!worker);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Destruction::destructor_afterResume()
{
    PluginFixture f;
    f.createRunning(1);
    f.plugin->stop();
    f.restart([&f] { f.plugin->resume(); });
    const QPointer<THRWorker> worker = f.peer().worker;
    const QPointer<QTimer> timer = f.worker().timer;
    const QPointer<QObject> branches = f.worker().branchesRepo;
    const QPointer<QObject> plans = f.worker().groupsPlanRepo;
    f.log.clear();
    f.plugin.reset();
    QVERIFY(!worker);
    // Nobody owns the new repositories, nor the new timer. It drives nothing any more.
    QVERIFY(branches && plans);
    QVERIFY(timer && timer->isActive());
    QVERIFY(QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Destruction::destructor_doesNotStopTheWorker()
{
    PluginFixture f;
    f.createRunning(1);
    f.destroy();
    // Neither the words of stop() nor Qt's warning about timers of another thread.
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Destruction::connection_staysForTheNextPlugin()
{
    PluginFixture f;
    f.createRunning(1);
    f.tick();
    f.destroy();
    QVERIFY(QSqlDatabase::contains(QStringLiteral("OQS.scripted.TalvenHR")));
    f.log.clear();

    f.create(1);
    QVERIFY(f.plugin->start());
    f.onWorkerThread();
    // Found and opened where it was asked for, on this thread.
    QCOMPARE(f.log.threadOf(QStringLiteral("sql open")),
             static_cast<const void *>(QThread::currentThreadId()));
    QCOMPARE(f.log.takeMatching(
                 {QStringLiteral("sql "), QStringLiteral("setOrvDb"), QStringLiteral("warning ")}),
             lines({"debug THRWorker::setOrvDb(OQS.scripted.TalvenHR)", "sql open"}));

    f.tick();
    // The first tick of the new worker, which counts anew.
    QCOMPARE(f.log.take(),
             lines({readForce, "debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)", "sql close"}));
    f.tick();
    QCOMPARE(f.log.take(), lines({"sql open", readForce, "sql close"}));
}

QTEST_GUILESS_MAIN(tst_Destruction)
#include "tst_destruction.moc"
