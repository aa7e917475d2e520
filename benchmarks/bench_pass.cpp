// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One pass over a database that answers at once: what the plugin itself costs, in time and memory.
#include "company.h"
#include "processmemory.h"
#include "worker/thrworker.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

void silence(QtMsgType, const QMessageLogContext &, const QString &) { }

enum Kind { First, Unchanged, Forced, Changed, Waiting, OneBranch };
const char *const kindNames[] = {"first",   "unchanged", "forced",
                                 "changed", "waiting",   "one branch"};

/// A worker before the pass that is measured, and the export file that this pass reads.
class Pass
{
public:
    Pass(Kind kind, int people) :
        previous(qInstallMessageHandler(silence))
    {
        Company &of = company();
        of = Company();
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
        qInstallMessageHandler(previous);
    }

    void tick()
    {
        worker->setSyncInterval(1);
        QMetaObject::invokeMethod(worker.get(), "checkSync", Qt::DirectConnection);
    }

private:
    const QtMessageHandler previous;
    QTemporaryDir folder;
    std::unique_ptr<THRWorker> worker;
};

/// Arguments: kind, people.
void pass(benchmark::State &state)
{
    const Kind kind = static_cast<Kind>(state.range(0));
    const int people = static_cast<int>(state.range(1));
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
    state.SetLabel(kindNames[kind]);
    state.counters["each"] = benchmark::Counter(
        people, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.counters["bytes"] = bytes / people;
}

} // namespace

BENCHMARK(pass)
    ->ArgNames({"kind", "people"})
    ->ArgsProduct({{First, Unchanged, Forced, Changed, Waiting, OneBranch},
                   {100, 1000, 10000, 100000, 1000000}})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
