// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of exports, to be had by name.
#pragma once

#include "host/company/hurt.h"

#include <QByteArray>
#include <QString>
#include <QVector>

struct DamagedExport
{
    QByteArray text;
    QVector<Hurt> hurts; ///< all places, in their order; the others are as they were
    /// The code of the finding that the damage is owed at these places. There may be others beside
    /// it: a line that a NUL byte cuts has too few cells as well.
    QString finding;
    /// Nothing in the file shows the damage: only a comparison with the last good export does, or
    /// one with the database. Without a code not even these do, by more than a changed cell. There
    /// may be notes nevertheless, and dates that contradict each other.
    bool againstOnly = false;
};

/// The kinds of damage, in the order of the places that they hurt: cells, lines, the file.
QStringList damageNames();

/// What somebody has done who made this damage, in a few words; empty for an unknown name.
QString damageMeaning(const QString &name);

/// The sound export of a company of forty people or more with one damage; the seed decides about
/// the line. Unchanged and without a hurt where the name is unknown.
///
/// What is hurt is an ordinary line, as a rule: of somebody with one relation whom nobody has as
/// supervisor, so that no other line is hurt along with it.
DamagedExport damaged(const QByteArray &soundExport, const QString &name, quint32 seed);
