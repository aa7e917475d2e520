// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The machine's clock, standing still where a test has set it.
#pragma once

#include <QDateTime>

/// Stops the clock of this process from construction to destruction; it moves only when told. Its
/// children and its timers keep the real one. For tests that are registered with FROZEN_CLOCK; an
/// executable that was started in another way ends with a message.
class MachineClock
{
public:
    explicit MachineClock(const QDateTime &moment);
    ~MachineClock();
    MachineClock(const MachineClock &) = delete;
    MachineClock &operator=(const MachineClock &) = delete;

    void set(const QDateTime &moment);
};
