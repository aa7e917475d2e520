// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One pass over a database that answers at once: what the plugin itself costs, in time and memory.
#include "crowd.h"
#include "immediatedatabase.h"
#include "measure.h"
#include "processmemory.h"
#include "worker/thrworker.h"

#include <memory>

namespace {

enum Kind { First, Unchanged, Forced, Changed, Waiting, OneBranch };

/// A worker before the pass that is measured, and the export file that this pass reads.
class Pass
{
public:
    Pass(Kind kind, int people)
    {
        Crowd &of = crowd();
        of = Crowd();
        of.people = people;
        of.known = kind != First && kind != OneBranch;
        of.branchesKnown = kind != Waiting;
        of.members = kind != First && kind != OneBranch;
        of.oneBranch = kind == OneBranch;
        worker = std::make_unique<THRWorker>();
        worker->setOrvDb(immediateHandle());
        worker->setImportFile(writeExport(folder));
        worker->init();
        if (kind == First || kind == OneBranch)
            return;
        tick();
        of.forced = kind == Forced;
        of.changed = kind == Changed;
        worker->setImportFile(writeExport(folder));
    }
    ~Pass()
    {
        worker.reset();
        QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
        QSqlDatabase::removeDatabase(QStringLiteral("immediate"));
    }

    void tick()
    {
        worker->setSyncInterval(1);
        QMetaObject::invokeMethod(worker.get(), "checkSync", Qt::DirectConnection);
    }

private:
    const Silence silence;
    QTemporaryDir folder;
    std::unique_ptr<THRWorker> worker;
};

void pass(benchmark::State &state, Kind kind)
{
    const int people = static_cast<int>(state.range(0));
    double bytes = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto measured = std::make_unique<Pass>(kind, people);
        PeakMemory memory;
        state.ResumeTiming();
        measured->tick();
        state.PauseTiming();
        bytes = static_cast<double>(memory.peakBytes());
        measured.reset();
        state.ResumeTiming();
    }
    countEach(state, people);
    state.counters["bytes"] = bytes / people;
}

} // namespace

#define TALVEN_BENCHMARK(name, kind)                                                               \
    BENCHMARK_CAPTURE(pass, name, kind)                                                            \
        ->ArgName("people")                                                                        \
        ->RangeMultiplier(10)                                                                      \
        ->Range(100, 1000000)                                                                      \
        ->Unit(benchmark::kMillisecond)

TALVEN_BENCHMARK(first, First);
TALVEN_BENCHMARK(unchanged, Unchanged);
TALVEN_BENCHMARK(forced, Forced);
TALVEN_BENCHMARK(changed, Changed);
TALVEN_BENCHMARK(waiting, Waiting);
TALVEN_BENCHMARK(one_branch, OneBranch);

BENCHMARK_MAIN();
