// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The calls of a server that cannot make up its mind, thousands of them, while passes run on a real
// database.
#include "repository/orvdbsettings.h"
#include "support/endurance/busycompany.h"
#include "support/endurance/loadedplugin.h"
#include "support/endurance/resources.h"
#include "support/patience.h"

#include <QCoreApplication>
#include <QFile>
#include <QRegularExpression>
#include <QTimer>
#include <QtTest>

#include <memory>
#include <vector>

namespace {

const int tickInterval = 1; // milliseconds
const int callsBetweenExports = 100;
const unsigned longestPause = 600; // microseconds, from call to call
const char callsVariable[] = "TALVENHR_HOST_CALLS"; // environment: how many calls
const int defaultCalls = 4000;
const int fewestPasses = 20;

int callsWanted()
{
    const int wanted = qEnvironmentVariableIntValue(callsVariable);
    return wanted > 0 ? wanted : defaultCalls;
}

/// Everything that the calls and the passes beside them may say, each a whole line.
const char *const knownLines[] = {
    "debug (Start|Stop|Pause|Resume) TalvenHR\\.\\.",
    "debug THRWorker::(init|start)\\(\\)",
    "warning QObject::killTimer: Timers cannot be stopped from another thread",
    "warning QObject: Cannot create children for a parent that is in a different thread\\.\n"
    "\\(Parent is THRWorker\\(0x[0-9a-f]+\\), parent's thread is QThread\\(0x[0-9a-f]+\\), "
    "current thread is QThread\\(0x[0-9a-f]+\\)",
    "debug THRWorker: (BEGIN synchronization #\\d+ \\(force: NO\\)|"
    "END synchronization #\\d+ \\(waiting records: 0\\))",
    "(debug|info) THRWorker::(dbAddPerson|dbUpdatePerson|checkDovolenkaFond|dbCheckFundMove|"
    "dbCheckAttendance|processNadOsCis|writeFundMove3|loadFundStatusAndMove3|dbAddPersonIntoPam|"
    "addPersonIntoPam|dbResetAdminPeopleRequest|dbSetAdminPeopleRequest|dbGetAidByOsCis)\\(.*",
    "info BranchesRepository::.*",
};

/// What else may be said where people are taken on: by passes that are forced, or leave new people
/// waiting for the calculation of their attendance; by the slots that find the connection closed;
/// and by a repository that a pass has caught between its making and its connection.
const char *const linesOfNewPeople[] = {
    "debug THRWorker: BEGIN synchronization #\\d+ \\(force: YES\\)",
    "debug THRWorker: END synchronization #\\d+ \\(waiting records: [1-9]\\d*\\)",
    "warning QSqlQuery::\\w+: .*",
    "critical (BranchesRepository|GroupsPlanRepo)::\\w+ - ERROR.*",
    "warning BranchesRepository::slotAddedPeopleToBranch\\(\\) - .* FAILED!",
    "warning THRWorker: can't add record '.*' into \\[groups_plan\\]!",
};

QString oneOf(const QStringList &lines)
{
    return QStringLiteral("\\A(?:%1)\\z").arg(lines.join(QLatin1Char('|')));
}

template <size_t Size>
QStringList toList(const char *const (&texts)[Size])
{
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromLatin1(text));
    return list;
}

/// The rows of BusyCompany without the terminals.
QStringList withoutTerminals(QStringList rows)
{
    return rows.replaceInStrings(QRegularExpression(QStringLiteral("^((?:[^|]*[|]){5})[^|]*[|]")),
                                 QStringLiteral("\\1"));
}

/// How many memberships these rows of BusyCompany tell of.
int memberships(const QStringList &rows)
{
    int count = 0;
    for (const QString &row : rows) {
        const QString branches = row.section(QLatin1Char('|'), 4, 4);
        if (branches != QLatin1String("NULL"))
            count += branches.count(QLatin1Char(',')) + 1;
    }
    return count;
}

} // namespace

class tst_HostCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();
    void calls_besidePassesThatChangePeople();
    void calls_besidePassesThatTakePeopleOn();

private:
    enum Call { Start, Stop, Pause, Resume };

    void call(Call call);
    void hammer(int calls, bool withEvents);
    void offerExport(BusyCompany::Changes changes);
    bool waitUntilTaken();
    void readLog();
    void compareLog();
    void stopTicks();
    void compareResources(const Resources &before);

    std::unique_ptr<TestDatabase> database;
    QSqlDatabase handle;
    std::unique_ptr<LoadedPlugin> plugin;
    std::unique_ptr<BusyCompany> company;
    QSet<QObject *> objectsBefore;
    std::vector<OrvDbSettings *> lostAccesses;
    std::mt19937 random;
    int made[4] = {}; ///< calls
    QStringList frames; ///< the lines that open and close passes
    QMap<QString, int> said; ///< how often each other line came
    int callsInPasses = 0; ///< that came between the frames of one
    QStringList allowedLines; ///< patterns of whole lines
    QStringList unknown;
};

void tst_HostCalls::initTestCase()
{
    countObjects();
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    handle = database->handle();
}

void tst_HostCalls::cleanupTestCase()
{
    const QString name = handle.connectionName();
    handle = QSqlDatabase();
    QSqlDatabase::removeDatabase(name);
    database.reset();
}

/// A running plugin that runs a pass on every tick of the timer of its first start.
void tst_HostCalls::init()
{
    random.seed(20261121);
    std::fill(std::begin(made), std::end(made), 0);
    frames.clear();
    said.clear();
    callsInPasses = 0;
    unknown.clear();
    allowedLines = toList(knownLines);
    plugin = std::make_unique<LoadedPlugin>();
    plugin->writeIni({QStringLiteral("syncInterval=1")});
    company = std::make_unique<BusyCompany>(*database, 7, 30);
    plugin->create(1, handle);
    plugin->start();
    plugin->log.clear();
    objectsBefore = livingObjects();
    plugin->tickEvery(tickInterval);
}

void tst_HostCalls::cleanup()
{
    plugin->destroy();
    deleteObjectsSince(objectsBefore);
    for (const OrvDbSettings *access : lostAccesses)
        delete access;
    lostAccesses.clear();
    plugin->log.clear();
    plugin.reset();
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
}

void tst_HostCalls::call(Call call)
{
    ++made[call];
    if (call == Start || call == Resume)
        lostAccesses.push_back(plugin->worker().orvSettings);
    switch (call) {
    case Start:
        QVERIFY(plugin->server().start());
        break;
    case Stop:
        plugin->server().stop();
        break;
    case Pause:
        plugin->server().pause();
        break;
    case Resume:
        plugin->server().resume();
        break;
    }
}

/// The timers of these calls tick only after an hour, so that all passes are the first one's.
void tst_HostCalls::hammer(int calls, bool withEvents)
{
    for (int i = 0; i < calls; ++i) {
        call(static_cast<Call>(random() % 4));
        if (withEvents && random() % 8 == 0)
            QCoreApplication::processEvents();
        QThread::usleep(random() % longestPause);
    }
    readLog();
}

void tst_HostCalls::offerExport(BusyCompany::Changes changes)
{
    plugin->writeExport(company->nextExport(changes));
}

/// Without a look at this thread's events.
bool tst_HostCalls::waitUntilTaken()
{
    const QDeadlineTimer deadline(longestWait);
    while (QFile::exists(plugin->exportPath()) && !deadline.hasExpired())
        QThread::msleep(1);
    plugin->onWorkerThread(); // the pass is over
    return !QFile::exists(plugin->exportPath());
}

/// Sorts what was said: into passes, into lines of the calls, and into what nobody may say.
void tst_HostCalls::readLog()
{
    static const QRegularExpression frame(QStringLiteral("^debug THRWorker: (BEGIN|END) "));
    const QRegularExpression known(oneOf(allowedLines));
    for (const QString &event : plugin->log.take()) {
        if (!event.contains(known))
            unknown.append(event);
        if (event.contains(frame)) {
            frames.append(event);
            continue;
        }
        ++said[event];
        if (frames.size() % 2 == 1 && event.endsWith(QLatin1String(" TalvenHR..")))
            ++callsInPasses;
    }
}

/// Every call has said its whole line, and the passes have kept their order.
void tst_HostCalls::compareLog()
{
    readLog();
    QCOMPARE(unknown.join(QLatin1Char('\n')), QString());
    QCOMPARE(said.value(QStringLiteral("debug Start TalvenHR..")), made[Start]);
    QCOMPARE(said.value(QStringLiteral("debug Stop TalvenHR..")), made[Stop]);
    QCOMPARE(said.value(QStringLiteral("debug Pause TalvenHR..")), made[Pause]);
    QCOMPARE(said.value(QStringLiteral("debug Resume TalvenHR..")), made[Resume]);
    QCOMPARE(said.value(QStringLiteral("debug THRWorker::start()")), made[Start] + made[Resume]);
    // The worker's stop() says so, too.
    QCOMPARE(said.value(QStringLiteral("debug THRWorker::init()")),
             made[Start] + made[Stop] + made[Pause] + made[Resume]);
    for (int i = 0; i < frames.size(); ++i) {
        const QString frame = QStringLiteral("debug THRWorker: %1 synchronization #%2 ")
                                  .arg(i % 2 == 0 ? QStringLiteral("BEGIN") : QStringLiteral("END"))
                                  .arg(i / 2 + 1);
        QVERIFY2(frames.at(i).startsWith(frame), qPrintable(frames.at(i)));
    }
    QCOMPARE(frames.size() % 2, 0);
    QVERIFY(frames.size() / 2 >= fewestPasses);
    QVERIFY(callsInPasses > 0);
}

/// The timer of the first start, the only one that ticks within a test.
void tst_HostCalls::stopTicks()
{
    plugin->onWorkerThread([this] { plugin->peer().worker->findChild<QTimer *>()->stop(); });
}

/// Prints what the process holds after the last tick, and compares it with what it held after the
/// first resume. Each later start or resume has left a timer, two repositories and the queue of
/// one.
void tst_HostCalls::compareResources(const Resources &before)
{
    const Resources after = plugin->resourcesBetweenTicks();
    readLog();
    printFigures(QStringLiteral("%1 calls, %2 of them in mid-pass, %3 passes; %4")
                     .arg(made[Start] + made[Stop] + made[Pause] + made[Resume])
                     .arg(callsInPasses)
                     .arg(plugin->worker().syncCount)
                     .arg(countsOf(after)));
    QCOMPARE(after.handles, before.handles);
    QCOMPARE(after.threads, before.threads);
    QCOMPARE(after.connections, before.connections);
    QCOMPARE(after.objects - before.objects, 4 * (made[Start] + made[Resume] - 1));
    QVERIFY(QTest::qWaitFor([this] { return database->pluginSessions() == 0; }, longestWait));
}

/// People change and stay where they are, so that nothing is queued to this thread: it can come to
/// its events whenever it likes.
void tst_HostCalls::calls_besidePassesThatChangePeople()
{
    const int calls = callsWanted();
    offerExport(BusyCompany::NobodyMoves);
    QVERIFY(waitUntilTaken()); // all people are there
    QCOMPARE(company->rows(), company->owedRows());
    call(Resume); // the first timer is out of reach from now on
    const Resources before = plugin->resourcesBetweenTicks();

    for (int done = 0; done < calls; done += callsBetweenExports) {
        offerExport(BusyCompany::NobodyMoves);
        hammer(callsBetweenExports, true);
        QVERIFY(waitUntilTaken());
        QCOMPARE(company->queuedNotices(), company->owedNotices());
    }
    stopTicks();
    compareResources(before);
    QCOMPARE(company->rows(), company->owedRows());
    compareLog();
}

/// People come and join branches. What follows from a membership is queued to this thread, which
/// does not come to its events before the passes are over.
void tst_HostCalls::calls_besidePassesThatTakePeopleOn()
{
    allowedLines += toList(linesOfNewPeople);
    call(Resume); // the first timer is out of reach from now on
    const Resources before = plugin->resourcesBetweenTicks();
    const int calls = callsWanted();
    for (int done = 0; done < calls; done += callsBetweenExports) {
        offerExport(BusyCompany::EverythingChanges);
        hammer(callsBetweenExports, false);
        QVERIFY(waitUntilTaken());
    }
    // A membership that was lost to a repository without connection comes back with a forced pass.
    // A pass seldom catches one so: most memberships are there by now.
    const int held = memberships(company->rows());
    const int owed = memberships(company->owedRows());
    printFigures(QStringLiteral("%1 of %2 memberships before the forced pass").arg(held).arg(owed));
    QVERIFY(held <= owed);
    QVERIFY(4 * held > 3 * owed);
    database->force();
    plugin->writeExport(company->sameExport());
    QVERIFY(waitUntilTaken());
    stopTicks();
    compareResources(before);
    QCOMPARE(withoutTerminals(company->rows()), withoutTerminals(company->owedRows()));

    const auto slotCalls = [this] {
        const QStringList lines(said.keys());
        return lines.filter(QStringLiteral("::slotAddedPeopleToBranch(")).size();
    };
    QCOMPARE(slotCalls(), 0);
    QCoreApplication::processEvents();
    compareLog();
    QVERIFY(slotCalls() > 0);
}

QTEST_GUILESS_MAIN(tst_HostCalls)
#include "tst_hostcalls.moc"
