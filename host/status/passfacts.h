// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass has come to, from its changes, or from the export that it has read.
#pragma once

#include "host/status/status.h"

/// `file` is where the changes stand.
PassStatus passOfChanges(const Changes &changes, const QString &file);
/// The pass that has read the export: all that is known are its earliest moment and, where it was
/// rehearsed, what it should have changed.
PassStatus passOfRecord(const GateRecord &record, const Status &status);

/// What was left undone, in the order of people.
QVector<WaitingPerson> waitingOf(const Changes &changes);

/// Errors by the database's code.
QMap<QString, int> errorsOf(const Changes &changes);
