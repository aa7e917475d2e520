// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Many lives of the built library and of its object in one process: nothing may pile up but what is
// deliberate.
#include "environment/envirosettings.h"
#include "repository/orvdbsettings.h"
#include "support/endurance/loadedplugin.h"
#include "support/endurance/resources.h"
#include "support/patience.h"
#include "support/recordbuilder.h"
#include "support/testdatabase.h"

#include <QFile>
#include <QtTest>

#include <memory>
#include <sys/stat.h>
#include <vector>

namespace {

const int warmUpRounds = 100; // until every cache has been filled
const int lives = 1000; // of the object
const int livesToAState = 100;
const int libraryLives = 100;
const int repeats = 1000; // of start or resume

/// What the heap may gain, whatever the number of lives (bytes).
qint64 heapTolerance()
{
    return heapIsExact() ? 4 * 1024 : 64 * 1024;
}

void compare(const char *what, int rounds, const Resources &before)
{
    const Resources after = Resources::now();
    printFigures(QStringLiteral("%1: %2 rounds, %3; heap %4 bytes")
                     .arg(QString::fromLatin1(what))
                     .arg(rounds)
                     .arg(countsOf(after))
                     .arg(after.heapBytes - before.heapBytes));
    if (heapIsMeasured())
        QVERIFY(after.heapBytes - before.heapBytes < heapTolerance());
}

} // namespace

class tst_Lifecycles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void object_thousandLives();
    void object_diesInEveryState_data();
    void object_diesInEveryState();
    void library_hundredLives();
    void start_whatEachRepeatKeeps_data();
    void start_whatEachRepeatKeeps();

private:
    void live(const QString &state);
    void destroyInMidPass();
    /// Start or resume, by the host. The access to the settings that gets lost is taken down.
    void repeat(const QString &call);
    void deleteLostAccesses();

    std::unique_ptr<TestDatabase> database;
    QSqlDatabase handle;
    std::unique_ptr<LoadedPlugin> plugin;
    std::vector<OrvDbSettings *> lostAccesses;
    int threads = 0; ///< the test's own
};

void tst_Lifecycles::initTestCase()
{
    countObjects();
    threads = Resources::now().threads;
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    handle = database->handle();
}

void tst_Lifecycles::cleanupTestCase()
{
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
    const QString name = handle.connectionName();
    handle = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
    database.reset();
}

void tst_Lifecycles::init()
{
    plugin = std::make_unique<LoadedPlugin>();
    // The pass of a first tick waits until somebody writes into the pipe.
    const QString pipe = plugin->environment.filePath(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    plugin->writeIni({QStringLiteral("deleteFile=false"), QStringLiteral("syncCommand=cat ") + pipe,
                      QStringLiteral("syncCommandRun=1")});
    plugin->writeExport({exportHeader(), record().pid(7301, 1).line()});
}

void tst_Lifecycles::cleanup()
{
    plugin->log.clear();
    plugin.reset();
}

/// One life of the object that ends in the state.
void tst_Lifecycles::live(const QString &state)
{
    plugin->create(0, handle);
    if (state != QLatin1String("created")) {
        plugin->start();
        if (state != QLatin1String("started"))
            plugin->tick();
    }
    const QSet<QObject *> before = livingObjects();
    if (state == QLatin1String("stopped") || state == QLatin1String("stopped and started"))
        plugin->server().stop();
    else if (state == QLatin1String("paused") || state == QLatin1String("resumed"))
        plugin->server().pause();
    if (state == QLatin1String("resumed"))
        repeat(QStringLiteral("resume"));
    else if (state == QLatin1String("stopped and started"))
        repeat(QStringLiteral("start"));

    if (state == QLatin1String("in mid-pass"))
        destroyInMidPass();
    else
        plugin->destroy();
    deleteObjectsSince(before);
    deleteLostAccesses();
    plugin->log.clear();
}

/// The destructor is under way when the pass is allowed to go on.
void tst_Lifecycles::destroyInMidPass()
{
    database->force();
    plugin->onWorkerThread([this] { plugin->worker().logLevel = 1; });
    plugin->log.clear();
    QVERIFY(QMetaObject::invokeMethod(plugin->peer().worker, "checkSync", Qt::QueuedConnection));
    QVERIFY(QTest::qWaitFor(
        [this] { return plugin->log.contains(QStringLiteral("BEGIN synchronization #2")); },
        longestWait));
    const QString pipe = plugin->environment.filePath(QStringLiteral("pipe"));
    connect(plugin->peer().settings, &QObject::destroyed, plugin->peer().settings, [pipe] {
        EventLog::record(QStringLiteral("debug the destructor has begun"));
        QFile file(pipe);
        QVERIFY(file.open(QIODevice::WriteOnly)); // waits for the reader
    });
    plugin->destroy();
    const QStringList events = plugin->log.take();
    QCOMPARE(events.filter(QStringLiteral("BEGIN")) + events.filter(QStringLiteral("destructor"))
                 + events.filter(QStringLiteral("END")),
             lines({"debug THRWorker: BEGIN synchronization #2 (force: YES)",
                    "debug the destructor has begun",
                    "debug THRWorker: END synchronization #2 (waiting records: 0)"}));
    QVERIFY(events.indexOf(QStringLiteral("debug the destructor has begun"))
            < events.indexOf(QRegularExpression(QStringLiteral(".* END synchronization #2.*"))));
    QCOMPARE(database->value(
                 QStringLiteral("SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync'")),
             QStringLiteral("0"));
}

void tst_Lifecycles::repeat(const QString &call)
{
    lostAccesses.push_back(plugin->worker().orvSettings);
    if (call == QLatin1String("start"))
        QVERIFY(plugin->server().start());
    else
        plugin->server().resume();
    QVERIFY(plugin->worker().orvSettings != lostAccesses.back());
}

void tst_Lifecycles::deleteLostAccesses()
{
    for (const OrvDbSettings *access : lostAccesses)
        delete access;
    lostAccesses.clear();
}

void tst_Lifecycles::object_thousandLives()
{
    for (int round = 0; round < warmUpRounds; ++round)
        live(QStringLiteral("ticked"));
    const Resources before = Resources::withThreads(threads);
    for (int round = warmUpRounds; round < lives; ++round) {
        live(QStringLiteral("ticked"));
        QCOMPARE(countsOf(Resources::withThreads(threads)), countsOf(before));
    }
    compare("create, start, tick, destroy", lives - warmUpRounds, before);
}

void tst_Lifecycles::object_diesInEveryState_data()
{
    QTest::addColumn<QString>("state");
    for (const char *state : {"created", "started", "ticked", "stopped", "paused", "resumed",
                              "stopped and started", "in mid-pass"})
        QTest::newRow(state) << QString::fromLatin1(state);
}

void tst_Lifecycles::object_diesInEveryState()
{
    QFETCH(QString, state);
    for (int round = 0; round < livesToAState / 5; ++round)
        live(state);
    const Resources before = Resources::withThreads(threads);
    for (int round = 0; round < livesToAState; ++round) {
        live(state);
        QCOMPARE(countsOf(Resources::withThreads(threads)), countsOf(before));
    }
    compare(qPrintable(QStringLiteral("destroyed ") + state), livesToAState, before);
}

void tst_Lifecycles::library_hundredLives()
{
    const auto loadAndUnload = [this](int round) {
        plugin->create(0, handle);
        QVERIFY(plugin->isMapped());
        if (round % 2 == 0) {
            plugin->start();
            plugin->tick();
        }
        plugin->unload();
        QVERIFY(!plugin->isMapped());
        plugin->log.clear();
    };
    for (int round = 0; round < libraryLives / 5; ++round)
        loadAndUnload(round);
    const Resources before = Resources::withThreads(threads);
    for (int round = 0; round < libraryLives; ++round) {
        loadAndUnload(round);
        QCOMPARE(countsOf(Resources::withThreads(threads)), countsOf(before));
    }
    compare("load, instance, unload", libraryLives, before);
}

void tst_Lifecycles::start_whatEachRepeatKeeps_data()
{
    QTest::addColumn<QString>("call");
    QTest::newRow("start") << QStringLiteral("start");
    QTest::newRow("resume") << QStringLiteral("resume");
}

/// A timer, two repositories and the queue that belongs to one of them, with the access to the
/// settings, which is no QObject. They are on this thread, so that the worker's end leaves them.
void tst_Lifecycles::start_whatEachRepeatKeeps()
{
    QFETCH(QString, call);
    const int objectsOfARepeat = 4;
    plugin->create(0, handle);
    plugin->start();
    plugin->tick();
    plugin->log.clear();
    lostAccesses.reserve(static_cast<size_t>(repeats));
    const QSet<QObject *> objects = livingObjects();
    const Resources before = Resources::withThreads(threads + 1);

    for (int round = 0; round < repeats; ++round) {
        repeat(call);
        plugin->log.clear();
    }
    const Resources after = Resources::now();
    QCOMPARE(after.handles, before.handles);
    QCOMPARE(after.threads, before.threads);
    QCOMPARE(after.connections, before.connections);
    QCOMPARE(after.objects, before.objects + repeats * objectsOfARepeat);
    printFigures(QStringLiteral("each repeat of %1 keeps %2 objects and %3 bytes")
                     .arg(call)
                     .arg(objectsOfARepeat)
                     .arg((after.heapBytes - before.heapBytes) / repeats));

    // The worker's end takes only the objects of its first start.
    plugin->destroy();
    QCOMPARE((livingObjects() - objects).size(), repeats * objectsOfARepeat);
    QCOMPARE(deleteObjectsSince(objects), repeats * objectsOfARepeat);
    deleteLostAccesses();
}

QTEST_GUILESS_MAIN(tst_Lifecycles)
#include "tst_lifecycles.moc"
