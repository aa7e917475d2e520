// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Values that statements of a pass hold.
#pragma once

#include <QDateTime>
#include <QLatin1String>

/// The funds among which the plugin looks for that of leave.
const QLatin1String isLeaveFund("iid = 3 AND unit = 2");

/// Where a day begins on this machine, in seconds since the epoch.
inline qint64 localMidnight(const QDate &day)
{
    return QDateTime(day, QTime(0, 0)).toSecsSinceEpoch();
}
