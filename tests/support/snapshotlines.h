// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Rows of a snapshot as lines to compare.
#pragma once

#include "host/database/snapshot.h"

/// The cells of these columns, joined by "|", a line for each row in the order of the key; see
/// cellText() for their form. A table or a column that is not there fails the test.
QStringList cellLines(const Snapshot &snapshot, const QString &table, const QStringList &columns);
