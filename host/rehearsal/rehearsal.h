// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The next pass, run on a copy.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/changes/passtrace.h"
#include "host/database/connectionparameters.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>

class RehearsalSite;

/// What is to be rehearsed.
struct RehearsalWishes
{
    QString pluginFile;
    QString settingsFile; ///< the real TalvenHR.ini
    QString exportFile;
    /// The name or path by which people know the export, where the file is a copy of it; empty:
    /// that of the file.
    QString exportName;
    /// Exports that the server has taken since its start, the oldest first; none for a freshly
    /// started one.
    QStringList after;
    bool force = false;
    int timeout = 3600; ///< seconds
    QDate today; ///< the day on which the pass runs; invalid for that of the clock
    bool traced = false; ///< all that the pass says and asks is wanted
};

/// Runs one pass of the plugin on a copy, in a process of its own: nothing of this process can show
/// in it, and what happens to it happens to nobody else.
class Rehearsal
{
public:
    explicit Rehearsal(const RehearsalWishes &rehearsalWishes);

    /// Asked many times a second while the pass runs: true ends it.
    void setInterruption(const std::function<bool()> &wanted) { isInterrupted = wanted; }

    /// `copy` is reached as the plugin reaches the real database, by a login that may read all of
    /// it. Fails with the words of the process where no pass came to its end. The changes say that
    /// they were rehearsed; their plan is the caller's to make.
    Failure run(const ConnectionParameters &copy, const ConnectionParameters &administrator,
                Changes *changes);
    /// What the pass has said and asked; empty unless it was wanted.
    TraceSteps trace() const { return steps; }

private:
    Failure runOn(const ConnectionParameters &copy, const ConnectionParameters &administrator,
                  RehearsalSite *site, Changes *changes);
    Failure runFresh(const ConnectionParameters &copy, const RehearsalSite &site, Changes *changes);
    Failure runAfterOthers(const ConnectionParameters &copy,
                           const ConnectionParameters &administrator, RehearsalSite *site,
                           Changes *changes);
    QStringList arguments(const ConnectionParameters &copy, const QString &folder) const;
    Failure runProcess(const ConnectionParameters &copy, const RehearsalSite &site);

    const RehearsalWishes wishes;
    std::function<bool()> isInterrupted;
    TraceSteps steps;
};
