// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes of a pass that a test makes up.
#pragma once

#include "host/changes/changesbuilder.h"
#include "support/snapshotbuilder.h"

const QDate passDay(2026, 11, 22);
/// A table of people with the columns that tell who they are.
const char *const somebody = "people: uid|pid|pamId|name|surname|status";

/// A builder with one person, who has the uid 1 and the pid 10011.
SnapshotBuilder onePerson();

/// The changes of a pass at noon of the day.
Changes changesOf(const Snapshot &before, const Snapshot &after, const PassTold &told = {});
/// Two people, 1001.1 and 1002.1, of whom nothing changes but what was told.
Changes changesBy(const PassTold &told);

/// "added notices"
QString kindsText(const KindSet &kinds);
/// "added 1, notices 2"
QString countsText(const KindCounts &counts);
