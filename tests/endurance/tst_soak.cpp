// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Days of the plugin in half a minute: thousands of ticks, hundreds of passes over changing
// exports, and a server that goes and comes back.
#include "support/endurance/busycompany.h"
#include "support/endurance/loadedplugin.h"
#include "support/endurance/resources.h"
#include "support/patience.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <memory>

namespace {

const int tickInterval = 1; // milliseconds
const char ticksVariable[] = "TALVENHR_SOAK_TICKS"; // environment: how many ticks at least
const uint defaultTicks = 6000;
const uint ticksToAPass = 10;
const uint ticksToARestart = 1400;
const int fewestRestarts = 4;

/// One, and those that the server has not taken off its list since they were closed.
const int mostAtTheServer = 3;

/// What the allocator may keep for itself between the warm-up and the end.
const qint64 heapTolerance = 256 * 1024; // bytes
const qint64 residentTolerance = 8 * 1024 * 1024; // bytes

} // namespace

class tst_Soak : public QObject
{
    Q_OBJECT

public:
    tst_Soak();

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void days();

private:
    struct Progress
    {
        uint ticks;
        uint passes;
    };

    Progress progress();
    void round(bool withExport, bool forced);
    void restartServer(bool withExport);
    bool waitFor(const char *event);
    void checkLog(const QStringList &events) const;
    void checkLogWithoutServer(const QStringList &events) const;
    void compareRows();
    Resources betweenTicks();
    void print(const Resources &warm, const Resources &end, qint64 warmResident,
               qint64 milliseconds);

    std::unique_ptr<TestDatabase> database;
    QSqlDatabase handle;
    std::unique_ptr<LoadedPlugin> plugin;
    std::unique_ptr<BusyCompany> company;
    int exports = 0;
    int forcedPasses = 0;
    int restarted = 0;
    int mostConnections = 0;
};

/// As many days as are wanted: Qt has a limit for a function.
tst_Soak::tst_Soak()
{
    if (qEnvironmentVariableIsSet(ticksVariable))
        qputenv("QTEST_FUNCTION_TIMEOUT", "2000000000"); // milliseconds
}

void tst_Soak::initTestCase()
{
    countObjects();
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    handle = database->handle();
    plugin = std::make_unique<LoadedPlugin>();
    plugin->writeIni({QStringLiteral("syncInterval=%1").arg(ticksToAPass)});
    company = std::make_unique<BusyCompany>(*database, 20261121, 40);
    plugin->create(1, handle);
    plugin->start();
    plugin->tickEvery(tickInterval);
}

void tst_Soak::cleanupTestCase()
{
    if (plugin) {
        plugin->unload();
        plugin->log.clear();
    }
    plugin.reset();
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
    const QString name = handle.connectionName();
    handle = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
    database.reset();
}

tst_Soak::Progress tst_Soak::progress()
{
    Progress progress {};
    plugin->onWorkerThread([this, &progress] {
        progress = {plugin->worker().tickCount, plugin->worker().syncCount};
    });
    return progress;
}

bool tst_Soak::waitFor(const char *event)
{
    const QString text = QString::fromLatin1(event);
    return QTest::qWaitFor([this, &text] { return plugin->log.contains(text); }, longestWait);
}

/// A pass, with or without a new export, forced or in its turn.
void tst_Soak::round(bool withExport, bool forced)
{
    checkLog(plugin->log.take());
    if (withExport) {
        plugin->writeExport(company->nextExport());
        ++exports;
    }
    if (forced) {
        database->force();
        ++forcedPasses;
        QVERIFY(waitFor("(force: YES)"));
    }
    if (withExport)
        QVERIFY(
            QTest::qWaitFor([this] { return !QFile::exists(plugin->exportPath()); }, longestWait));
    else
        QVERIFY(waitFor("BEGIN synchronization"));
    plugin->onWorkerThread(); // the pass is over
    mostConnections = qMax(mostConnections, database->pluginSessions());
    QCOMPARE(company->queuedNotices(), company->owedNotices());
}

/// Nothing but what a pass says when all goes well.
void tst_Soak::checkLog(const QStringList &events) const
{
    QCOMPARE(complaints(events), QStringList());
}

/// Nothing else but what ticks say that find no server.
void tst_Soak::checkLogWithoutServer(const QStringList &events) const
{
    static const QRegularExpression missed(
        QStringLiteral("\\A(critical THRWorker::dbCheckOpen\\(\\) - SQL ERROR: [^\\n]+|"
                       "warning THRWorker::checkSync\\(\\) - database not open!)\\z"));
    QStringList others = complaints(events);
    others.erase(std::remove_if(others.begin(), others.end(),
                                [](const QString &event) { return event.contains(missed); }),
                 others.end());
    QCOMPARE(others, QStringList());
}

/// The server goes while no pass has work to do, is missed by some ticks, and comes back. An export
/// that arrives meanwhile waits for it.
void tst_Soak::restartServer(bool withExport)
{
    checkLog(plugin->log.take());
    if (withExport)
        database->server().kill();
    else
        database->server().stop();
    plugin->onWorkerThread(); // the tick that has lost the server is over, whatever it has said
    plugin->log.clear();
    QVERIFY(waitFor("database not open!"));
    if (withExport) {
        plugin->writeExport(company->nextExport());
        ++exports;
    }
    checkLogWithoutServer(plugin->log.take());
    QVERIFY(waitFor("database not open!"));
    QCOMPARE(QFile::exists(plugin->exportPath()), withExport);
    database->restart();
    ++restarted;
    QVERIFY(waitFor("END synchronization"));
    plugin->onWorkerThread(); // the pass is over
    checkLogWithoutServer(plugin->log.take());
}

void tst_Soak::compareRows()
{
    QCOMPARE(company->rows(), company->owedRows());
}

/// With an empty log, and without a tick under way.
Resources tst_Soak::betweenTicks()
{
    checkLog(plugin->log.take());
    return plugin->resourcesBetweenTicks();
}

void tst_Soak::print(const Resources &warm, const Resources &end, qint64 warmResident,
                     qint64 milliseconds)
{
    const Progress done = progress();
    printFigures(QStringLiteral("%1 ticks, %2 passes (%3 forced), %4 exports, %5 restarts, %6 s")
                     .arg(done.ticks)
                     .arg(done.passes)
                     .arg(forcedPasses)
                     .arg(exports)
                     .arg(restarted)
                     .arg(milliseconds / 1000.0, 0, 'f', 1));
    printFigures(QStringLiteral("resident: %1 KiB warm, %2 KiB at the end, %3 KiB at most; "
                                "heap %4 bytes more")
                     .arg(warmResident / 1024)
                     .arg(residentBytes() / 1024)
                     .arg(peakResidentBytes() / 1024)
                     .arg(end.heapBytes - warm.heapBytes));
    printFigures(QStringLiteral("%1; at most %2 of the plugin's at the server")
                     .arg(countsOf(end))
                     .arg(mostConnections));
    printFigures(QStringLiteral("%1 people, %2 rows in term_sync")
                     .arg(company->people())
                     .arg(company->queuedNotices()));
}

void tst_Soak::days()
{
    const uint ticks = qMax(uint(qEnvironmentVariableIntValue(ticksVariable)), defaultTicks);
    QElapsedTimer elapsed;
    elapsed.start();
    Resources warm {};
    qint64 warmResident = 0;
    std::mt19937 random(1);
    // Ticks that miss the server are many when it is slow to come back.
    const auto isOver = [this, ticks] {
        const Progress done = progress();
        return done.ticks >= ticks && done.passes >= ticks / ticksToAPass
            && restarted >= fewestRestarts;
    };
    for (uint rounds = 1; !isOver(); ++rounds) {
        if (warmResident == 0 && progress().ticks >= ticks / 3) {
            warm = betweenTicks();
            warmResident = residentBytes();
        }
        round(random() % 3 != 0, random() % 4 == 0);
        if (progress().ticks > ticksToARestart * uint(restarted + 1))
            restartServer(restarted % 2 == 0);
        if (rounds % 20 == 0)
            compareRows();
        if (QTest::currentTestFailed())
            return;
    }
    compareRows();
    const qint64 milliseconds = elapsed.elapsed();
    const Resources end = betweenTicks();
    print(warm, end, warmResident, milliseconds);
    QVERIFY(mostConnections <= mostAtTheServer);
    QCOMPARE(countsOf(end), countsOf(warm));
    if (heapIsMeasured()) {
        QVERIFY(end.heapBytes - warm.heapBytes < heapTolerance);
        QVERIFY(residentBytes() - warmResident < residentTolerance);
    }
    plugin->onWorkerThread([this] { plugin->worker().timer->stop(); });
    QVERIFY(QTest::qWaitFor([this] { return database->pluginSessions() == 0; }, longestWait));
}

QTEST_GUILESS_MAIN(tst_Soak)
#include "tst_soak.moc"
