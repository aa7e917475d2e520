// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An action for the time when something else has hung.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

/// Runs an action on a thread of its own when nobody has called it off in time: also while the
/// thread that owns it is stuck in a call.
class Watchdog
{
public:
    Watchdog() = default;
    ~Watchdog();
    Watchdog(const Watchdog &) = delete;
    Watchdog &operator=(const Watchdog &) = delete;

    /// Runs the action after so many milliseconds, in place of one that was armed before. The
    /// action ends the process, as a rule.
    void arm(int milliseconds, const std::function<void()> &action);
    /// When it returns, the action has run or will not run.
    void disarm();

private:
    std::mutex mutex;
    std::condition_variable change;
    bool calledOff = false;
    std::thread thread;
};
