// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Reading the export file: the whole file to records, by number of lines and log level.
#include "worker/thrworker.h"

#include <QTemporaryFile>

#include <benchmark/benchmark.h>

namespace {

void silence(QtMsgType, const QMessageLogContext &, const QString &) { }

/// An export file of so many employees.
void writeExport(QTemporaryFile *file, int lines)
{
    if (!file->open())
        qFatal("no temporary file");
    for (int number = 1; number <= lines; ++number) {
        file->write(
            QStringLiteral("%1|1|Ing.|Ľubomír|Krížik||0900 001 001|2015-03-01 00:00:00.000||"
                           "100|Riaditeľstvo|1|2024-01-01 00:00:00.000|11|1|0|12.5|1001\n")
                .arg(number)
                .toUtf8());
    }
    file->close();
}

/// Arguments: lines, log level.
void loadAndParseData(benchmark::State &state)
{
    QTemporaryFile file;
    writeExport(&file, static_cast<int>(state.range(0)));
    const QtMessageHandler previous = qInstallMessageHandler(silence);
    for (auto _ : state) {
        THRWorker worker;
        worker.setLogLevel(static_cast<quint8>(state.range(1)));
        worker.setImportFile(file.fileName());
        worker.loadAndParseData();
        benchmark::DoNotOptimize(worker);
    }
    qInstallMessageHandler(previous);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(loadAndParseData)
    ->ArgNames({"lines", "level"})
    ->ArgsProduct({{1000, 10000}, {0, 3}})
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
