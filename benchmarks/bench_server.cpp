// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One pass on a private MariaDB, in turn with the very calls of that pass made by a bare client.
#include "crowd.h"
#include "host/database/recordingdriver.h"
#include "measure.h"
#include "replay.h"
#include "support/testdatabase.h"
#include "worker/thrworker.h"

#include <QElapsedTimer>

#include <array>
#include <functional>
#include <memory>
#include <utility>

namespace {

enum Kind {
    First,
    FirstWithoutPam,
    Unchanged,
    UnchangedWithFund,
    Forced,
    Changed,
    Waiting,
    OneBranch
};

TestDatabase &server()
{
    static TestDatabase database;
    return database;
}

/// The company's branches with their calendar, one terminal each, and a block of PaM, as a rule;
/// nobody in it.
void setUpDatabase(Kind kind)
{
    TestDatabase &database = server();
    if (!database.error().isEmpty())
        qFatal("%s", qPrintable(database.error()));
    database.clear();
    // The worker remembers uids as long as the process lives.
    database.execute(QStringLiteral("ALTER TABLE people AUTO_INCREMENT = 1"));
    const int branches = kind == Waiting ? 0 : branchCount(crowd());
    for (int number = 1; number <= branches; ++number) {
        database.execute(QStringLiteral("INSERT INTO branches (bid, number, name, mgid) "
                                        "VALUES (%1, %1, 'Branch', 1)")
                             .arg(number));
        database.execute(QStringLiteral("INSERT INTO term (name, bid, status, flags) "
                                        "VALUES ('Door', %1, 1, 2)")
                             .arg(number));
    }
    database.execute(QStringLiteral("INSERT INTO mastergroups (mgid) VALUES (1)"));
    database.execute(
        QStringLiteral("INSERT INTO groups (gid, parent, calendarID) VALUES (1, 1, 1)"));
    if (kind != FirstWithoutPam)
        database.execute(
            QStringLiteral("INSERT INTO vars (name, value) VALUES "
                           "('exportPam.1.active', '1'), ('exportPam.1.selPeople', '')"));
    if (kind == UnchangedWithFund)
        database.execute(QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES (1, 3, 2)"));
}

/// Keeps the calls that it sees.
class CallList : public CallObserver
{
public:
    QSqlError before(const DatabaseCall &call) override
    {
        calls.append(replayedCall(call));
        return QSqlError();
    }

    QVector<ReplayedCall> take() { return std::exchange(calls, {}); }

private:
    QVector<ReplayedCall> calls;
};

/// A worker on the server.
class Plugin
{
public:
    explicit Plugin(const QSqlDatabase &database) :
        handle(database)
    {
        worker->setOrvDb(handle);
        worker->setSyncInterval(1);
        worker->init();
    }
    ~Plugin()
    {
        worker.reset();
        QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
    }

    void tick(const QString &path)
    {
        worker->setImportFile(path);
        QMetaObject::invokeMethod(worker.get(), "checkSync", Qt::DirectConnection);
    }

private:
    QSqlDatabase handle;
    std::unique_ptr<THRWorker> worker = std::make_unique<THRWorker>();
};

/// The exports of one kind of pass, and what comes before a pass of it.
class Scene
{
public:
    Scene(Kind kindOfPass, int people) :
        kind(kindOfPass)
    {
        crowd() = Crowd();
        crowd().people = people;
        crowd().oneBranch = kind == OneBranch;
        exports[0] = writeExport(folders[0]);
        crowd().changed = kind == Changed;
        exports[1] = writeExport(folders[1]);
        setUpDatabase(kind);
    }

    /// Whether a pass makes its database another one, in which it would not be the same again.
    bool isOnce() const { return kind == First || kind == FirstWithoutPam || kind == OneBranch; }

    /// Makes the database what it is before the pass. A worker that has seen the company stays.
    void prepare(std::unique_ptr<Plugin> *plugin, const std::function<QSqlDatabase()> &newHandle)
    {
        if (isOnce())
            setUpDatabase(kind);
        if (isOnce() || !*plugin) {
            plugin->reset();
            *plugin = std::make_unique<Plugin>(newHandle());
            // New people wait a pass for their balance, and one more until nobody asks again.
            for (int i = 0; i < 3 && !isOnce(); ++i)
                (*plugin)->tick(exports[0]);
        }
        if (kind == Forced)
            server().force();
    }

    /// Before the calls of the pass are made again.
    void prepareReplay()
    {
        if (isOnce())
            setUpDatabase(kind);
        if (kind == Forced)
            server().force();
    }

    const QString &exportOf(int pass) const { return exports[(pass + 1) % 2]; }

private:
    const Kind kind;
    const QTemporaryDir folders[2];
    QString exports[2];
};

/// The calls of a pass there and of one back.
std::array<QVector<ReplayedCall>, 2> recordedPasses(Scene *scene)
{
    const auto list = std::make_shared<CallList>();
    const RegisteredDriver driver = recordingDriver(QStringLiteral("QMYSQL"), list);
    const auto newHandle = [&driver] {
        const QSqlDatabase handle = server().handle();
        return driver.addHandleTo(handle, handle.connectionName() + QStringLiteral("-recorded"));
    };
    std::unique_ptr<Plugin> plugin;
    std::array<QVector<ReplayedCall>, 2> calls;
    // After the first pass all uids are known, as in the measured ones.
    for (const int pass : {1, 0, 1}) {
        scene->prepare(&plugin, newHandle);
        list->take();
        plugin->tick(scene->exportOf(pass));
        calls[static_cast<std::size_t>(pass)] = list->take();
    }
    return calls;
}

double seconds(const QElapsedTimer &timer)
{
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

/// A round is two passes, there and back, and then their calls again. The
/// time of an iteration is that of the passes.
void pass(benchmark::State &state, Kind kind)
{
    const Silence silence;
    Scene scene(kind, static_cast<int>(state.range(0)));
    const std::array<QVector<ReplayedCall>, 2> calls = recordedPasses(&scene);

    std::unique_ptr<Plugin> plugin;
    Replay replay(server().server().socketPath(), QStringLiteral("talvenhr"),
                  server().databaseName());
    double ofPasses = 0;
    double ofCalls = 0;
    int statements = 0;
    for (auto _ : state) {
        double round = 0;
        QElapsedTimer timer;
        for (int i = 0; i < 2; ++i) {
            scene.prepare(&plugin, [] { return server().handle(); });
            timer.start();
            plugin->tick(scene.exportOf(i));
            round += seconds(timer);
        }
        for (const QVector<ReplayedCall> &ofPass : calls) {
            scene.prepareReplay();
            timer.start();
            replay.send(ofPass);
            ofCalls += seconds(timer);
        }
        ofPasses += round;
        state.SetIterationTime(round);
        statements = calls[0].size();
    }
    state.counters["calls"] = statements;
    state.counters["ratio"] = ofPasses / ofCalls;
}

} // namespace

#define TALVEN_BENCHMARK(name, kind)                                                               \
    BENCHMARK_CAPTURE(pass, name, kind)                                                            \
        ->ArgName("people")                                                                        \
        ->Arg(1000)                                                                                \
        ->Arg(10000)                                                                               \
        ->UseManualTime()                                                                          \
        ->Unit(benchmark::kMillisecond)

TALVEN_BENCHMARK(first, First);
TALVEN_BENCHMARK(first_without_pam, FirstWithoutPam);
TALVEN_BENCHMARK(unchanged, Unchanged);
TALVEN_BENCHMARK(unchanged_with_fund, UnchangedWithFund);
TALVEN_BENCHMARK(forced, Forced);
TALVEN_BENCHMARK(changed, Changed);
TALVEN_BENCHMARK(waiting, Waiting);
TALVEN_BENCHMARK(one_branch, OneBranch);

BENCHMARK_MAIN();
