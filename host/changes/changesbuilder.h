// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// From two snapshots, and what was told between them, to the changes.
#pragma once

#include "host/changes/changes.h"
#include "host/changes/passnotes.h"

/// The changes between the snapshots. `header` is what the caller knows of them; export and force
/// come from `told`. Of the plan there is the hash of the changes; if the caller has the one of
/// what was read, the hash of both as well.
Changes changesBetween(const Snapshot &before, const Snapshot &after, const PassTold &told,
                       const ChangesHeader &header, const QString &readHash = QString());
/// The same for whoever has the difference already.
Changes changesFrom(const QVector<Change> &difference, const Snapshot &before,
                    const Snapshot &after, const PassTold &told, const ChangesHeader &header,
                    const QString &readHash = QString());

/// How many people are active: their `status` is not 0.
int activePeople(const Snapshot &snapshot);
