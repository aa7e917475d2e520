// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Reading the export file: the whole file to records, beside a reader that only splits it.
#include "crowd.h"
#include "measure.h"
#include "worker/thrworker.h"

#include <array>
#include <fstream>
#include <string>
#include <string_view>

/// The worker lets its tests, and this benchmark, see its members.
struct WorkerPeer
{
    static void dropRecords(THRWorker *worker) { worker->importedRecords = {}; }
};

namespace {

/// Arguments: lines, log level. The messages of level 3 go nowhere.
void loadAndParseData(benchmark::State &state)
{
    const int lines = static_cast<int>(state.range(0));
    crowd() = Crowd();
    crowd().people = lines;
    const QTemporaryDir folder;
    const QString path = writeExport(folder);
    const Silence silence;
    THRWorker worker;
    worker.setLogLevel(static_cast<quint8>(state.range(1)));
    worker.setImportFile(path);
    for (auto _ : state) {
        worker.loadAndParseData();
        benchmark::DoNotOptimize(worker);
        state.PauseTiming();
        WorkerPeer::dropRecords(&worker);
        state.ResumeTiming();
    }
    countEach(state, lines);
}

/// The floor: each line of the same file as 18 views, and nothing is made of them.
void splitOnly(benchmark::State &state)
{
    const int lines = static_cast<int>(state.range(0));
    crowd() = Crowd();
    crowd().people = lines;
    const QTemporaryDir folder;
    const std::string path = writeExport(folder).toStdString();
    for (auto _ : state) {
        std::ifstream file(path);
        std::string line;
        std::array<std::string_view, 18> views;
        while (std::getline(file, line)) {
            std::string_view rest = line;
            for (std::string_view &view : views) {
                const std::size_t end = rest.find('|');
                view = rest.substr(0, end);
                rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
            }
            benchmark::DoNotOptimize(views);
        }
    }
    countEach(state, lines);
}

} // namespace

BENCHMARK(loadAndParseData)
    ->ArgNames({"lines", "level"})
    ->ArgsProduct({{1000, 10000, 100000, 1000000}, {0, 3}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK(splitOnly)
    ->ArgName("lines")
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
