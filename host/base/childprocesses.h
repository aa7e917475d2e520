// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The processes that this one has started.
#pragma once

#include <QString>
#include <QVector>

struct RunningChild
{
    qint64 pid = 0;
    QString command; ///< with its arguments
};

/// Those that run now, started by any thread. Empty where the system does not tell.
QVector<RunningChild> runningChildren();
