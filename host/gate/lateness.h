// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Since when no export has come.
#pragma once

#include "host/base/failure.h"
#include "host/gate/gaterecord.h"

#include <QDateTime>
#include <QString>
#include <QVector>

/// Notes in the state folder, once, that a gate has run there: the file "begun" with the time
/// (UTC).
Failure noteGateBegin(const QString &stateFolder, const QDateTime &now);

/// Since the last one of the records, oldest first; without any since the gate has begun. Invalid
/// if it has not.
QDateTime nothingSince(const QVector<GateRecord> &records, const QString &stateFolder);

/// The gate has told that nothing has come since the last one of the records.
bool wasLatenessTold(const QVector<GateRecord> &records, const QString &stateFolder);
/// Notes that, in the file "late".
Failure noteLateness(const QVector<GateRecord> &records, const QString &stateFolder);
