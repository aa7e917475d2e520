// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The last line of a run.
#pragma once

#include "host/plugin/runfigures.h"
#include "host/report/report.h"

/// How a run came to its end.
struct RunEnding
{
    ExitCode exitCode = ExitClean;
    QString reason; ///< empty: it did what it was asked to do
};

/// The figures of a run that took so many milliseconds, and its ending; the verdict has them all in
/// one line.
Report runSummary(const RunFigures &figures, bool testMode, qint64 milliseconds,
                  const RunEnding &ending);
