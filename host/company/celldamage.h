// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of single cells of an export.
#pragma once

#include <QByteArray>
#include <QVector>

#include <functional>

/// A flaw of one cell.
struct CellDamage
{
    const char *name;
    const char *meaning;
    const char *finding; ///< the code that it is owed; empty for none
    int column; ///< from 1
    std::function<QByteArray(const QByteArray &cell)> change;
};

/// Changes of a cell: to another one, and by what stands before or behind it from now on.
std::function<QByteArray(const QByteArray &)> becomes(const QByteArray &text);
std::function<QByteArray(const QByteArray &)> precededBy(const QByteArray &text);
std::function<QByteArray(const QByteArray &)> followedBy(const QByteArray &text);

/// In the order in which they are shown: of dates and numbers, and of texts.
const QVector<CellDamage> &valueDamages();
const QVector<CellDamage> &textDamages();
