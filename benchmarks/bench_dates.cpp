// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Reading the dates of an export: by their digits, beside the way that takes any form.
#include "crowd.h"
#include "export/exportcells.h"
#include "measure.h"

#include <QDateTime>
#include <QStringList>

namespace {

const int firstDayColumn = 7;
const int calendarDateColumn = 12;

/// The cells of an export that hold a date.
QStringList dateCells(int lines)
{
    crowd() = Crowd();
    crowd().people = lines;
    QStringList cells;
    for (int index = 0; index < lines; ++index) {
        const QStringList line = QString::fromUtf8(crowdLine(index)).split(QLatin1Char('|'));
        cells << line.at(firstDayColumn) << line.at(calendarDateColumn);
    }
    return cells;
}

/// With nothing remembered from an earlier reading.
void byDigits(benchmark::State &state)
{
    const QStringList cells = dateCells(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        DateCache cache;
        for (const QString &cell : cells)
            benchmark::DoNotOptimize(dateFromCell(QStringRef(&cell), &cache));
    }
    countEach(state, cells.size());
}

void byFormat(benchmark::State &state)
{
    const QStringList cells = dateCells(static_cast<int>(state.range(0)));
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
    for (auto _ : state) {
        for (const QString &cell : cells)
            benchmark::DoNotOptimize(QDateTime::fromString(cell, format).date());
    }
    countEach(state, cells.size());
}

} // namespace

BENCHMARK(byDigits)
    ->ArgName("lines")
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(byFormat)
    ->ArgName("lines")
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
