// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the benchmarks have in common.
#pragma once

#include <QtGlobal>

#include <benchmark/benchmark.h>

/// Sends all messages nowhere while it lives.
class Silence
{
public:
    Silence() :
        previous(
            qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {}))
    { }
    ~Silence() { qInstallMessageHandler(previous); }

private:
    Q_DISABLE_COPY(Silence)
    const QtMessageHandler previous;
};

/// The counter "each": seconds for each of so many things that an iteration works on.
inline void countEach(benchmark::State &state, int count)
{
    state.counters["each"] = benchmark::Counter(
        count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
