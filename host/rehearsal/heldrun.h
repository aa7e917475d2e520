// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plugin in a process of its own that lives for as many passes as are wanted.
#pragma once

#include "host/base/childprocess.h"
#include "host/base/failure.h"
#include "host/changes/changes.h"

#include <functional>

/// Drives `talvenhr run --hold`: between two passes the plugin waits for goOn(), so that export and
/// database can be prepared for the next one.
///
/// Owned by a rehearsal and used on its thread. The process ends with the object.
class HeldRun
{
public:
    /// `changesFolder` is where the process writes the changes of each pass.
    explicit HeldRun(const QString &changesFolder);
    ~HeldRun();

    /// Asked many times a second while waiting: true ends the process.
    void setInterruption(const std::function<bool()> &wanted) { isInterrupted = wanted; }

    void start(const QStringList &arguments, const QProcessEnvironment &environment);
    /// Waits for the end of the next pass. Fails with the words of the process where none came to
    /// its end.
    Failure waitForPass();
    /// Of the last pass.
    Failure readChanges(Changes *changes) const;
    void goOn();

private:
    Failure failure();

    const QString folder;
    std::function<bool()> isInterrupted;
    ChildProcess process;
    int passes = 0;
};
