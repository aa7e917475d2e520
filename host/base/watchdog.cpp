// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An action for the time when something else has hung.
#include "host/base/watchdog.h"

#include <chrono>

Watchdog::~Watchdog()
{
    disarm();
}

void Watchdog::arm(int milliseconds, const std::function<void()> &action)
{
    disarm();
    calledOff = false;
    thread = std::thread([this, milliseconds, action] {
        std::unique_lock<std::mutex> lock(mutex);
        const bool isCalledOff = change.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                                 [this] { return calledOff; });
        lock.unlock();
        if (!isCalledOff)
            action();
    });
}

void Watchdog::disarm()
{
    if (!thread.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(mutex);
        calledOff = true;
    }
    change.notify_all();
    thread.join();
}
