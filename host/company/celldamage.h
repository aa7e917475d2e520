// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of single cells of an export.
#pragma once

#include <QByteArray>
#include <QVector>

/// A flaw of one cell.
struct CellDamage
{
    const char *name;
    const char *meaning;
    int column; ///< from 1
    QByteArray (*change)(const QByteArray &cell);
};

/// In the order in which they are shown.
const QVector<CellDamage> &cellDamages();
