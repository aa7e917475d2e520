// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What two contents of a database do not share.
#pragma once

#include <QStringList>

/// "-VALUE" for what only the first content holds, "+VALUE" for what only the second does; sorted.
QStringList contentDifference(const QStringList &before, const QStringList &after);
