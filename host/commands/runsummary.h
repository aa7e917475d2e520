// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The last line of a run.
#pragma once

#include "host/plugin/runfigures.h"
#include "host/report/report.h"

/// The figures of a run that took so many milliseconds; the verdict has them all in one line.
Report runSummary(const RunFigures &figures, qint64 milliseconds);
