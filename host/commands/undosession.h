// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One undo: a look at a copy, and if wanted the real thing.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/cli/databaseoptions.h"
#include "host/copy/copyfacts.h"
#include "host/undo/undorun.h"

#include <functional>

/// The values of the options.
struct UndoOptions
{
    Changes changes;
    UndoSelection selection;
    DatabaseChoice database;
    CopyWishes copy;
    QString settledFile; ///< see settledFileOf(); empty: nobody asks for it
    bool isApplied = false;
};

/// Made and used on the stack of a command.
class UndoSession
{
public:
    explicit UndoSession(const UndoOptions &undoOptions);

    /// The failure's exit code is that of the command also where nothing has failed.
    Failure run();

private:
    Failure printOnly();
    Failure look(const ConnectionParameters &source);
    Failure lookIn(const QString &folder, const ConnectionParameters &source);
    Failure tellAndApply(const ConnectionParameters &parameters);
    Failure apply(const ConnectionParameters &parameters);
    void tellTriggers(const QSqlDatabase &copy);

    const UndoOptions options;
    std::function<bool()> isInterrupted;
    std::function<void(const QString &)> show;
    UndoPlan plan;
    UndoOutcomes outcomes;
};
