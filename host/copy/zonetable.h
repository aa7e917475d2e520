// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A time zone of this machine as a MariaDB server keeps it.
#pragma once

#include <QStringList>
#include <QTimeZone>
#include <QVector>

/// Moments that tell most zones apart: one a week from 1990 to 2037, in seconds since the epoch.
const QVector<qint64> &probedMoments();

/// The zone has these local times at the probed moments: "2024-03-31 03:00:00,…".
bool keepsTimes(const QTimeZone &zone, const QString &localTimes);

/// The zone of this machine that has these local times, the system's own before others; invalid if
/// none has.
QTimeZone zoneOf(const QString &localTimes);

/// Statements for the administrator of a server, after which it knows the zone by the name.
QStringList zoneStatements(const QString &name, const QTimeZone &zone);
