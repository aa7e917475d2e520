// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Moments for people who may sit in another time zone.
#pragma once

#include <QDateTime>

/// "2026-11-22T12:40:02+01:00" in the zone of this machine; a "Z" where that is UTC.
inline QString zonedText(const QDateTime &moment)
{
    const QDateTime local = moment.toLocalTime();
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODate);
}
