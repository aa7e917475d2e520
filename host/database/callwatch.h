// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A handle that can be asked which of its calls is still waiting for its answer.
#pragma once

#include "host/database/registereddriver.h"

#include <QDateTime>
#include <QSqlDatabase>
#include <QString>

#include <functional>
#include <memory>

struct CallOutcome;
struct DatabaseCall;

/// A call that the database has not answered yet.
struct PendingCall
{
    /// In one line, shortened, and without the texts of the export: '…' stands for all from the
    /// first apostrophe to the last one. Empty if no call is pending.
    QString text;
    QDateTime since; ///< with the offset from UTC
};

/// Makes handles whose calls it watches; what works on a handle of its own (the plugin) makes one
/// call at a time.
///
/// Made and destroyed while no other thread makes or clones a handle. The watched handle goes with
/// this object; clones of it may outlive it.
class CallWatch
{
public:
    CallWatch();
    ~CallWatch();
    CallWatch(const CallWatch &) = delete;
    CallWatch &operator=(const CallWatch &) = delete;

    /// Is called with every call that has its answer, on the thread that has made it. To be set
    /// before there is a handle.
    void listen(const std::function<void(const DatabaseCall &, const CallOutcome &)> &listener);
    /// A handle to the same database by the same driver. To be called once.
    QSqlDatabase watched(const QSqlDatabase &handle);
    /// The call that is pending now, from any thread.
    PendingCall pending() const;

private:
    class Observer;

    const std::shared_ptr<Observer> observer;
    std::unique_ptr<RegisteredDriver> driver;
};
