// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What somebody has to look at.
#pragma once

#include "host/status/status.h"

/// The levels of monitoring systems; the numbers are their exit codes.
enum class Level {
    Ok = 0,
    Warning = 1,
    Critical = 2,
    Unknown = 3,
};

/// "OK", "WARNING", "CRITICAL", "UNKNOWN".
QString levelName(Level level);

struct Concern
{
    Level level = Level::Warning;
    QString text; ///< a clause, without a full stop
    QString remedy; ///< what to do; may be empty
};

/// Worst first: critical, warning, unknown.
QVector<Concern> concernsOf(const Status &status);
/// The level of the first one; Ok without any.
Level levelOf(const QVector<Concern> &concerns);
/// The level and the texts, in one line.
QString verdictOf(const QVector<Concern> &concerns);
