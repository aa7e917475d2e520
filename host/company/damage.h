// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of exports, to be had by name.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// A place in a damaged export. Lines and columns count from 1, the header is line 1.
struct Hurt
{
    int line = 0; ///< 0 for all of them
    int column = 0; ///< 0 for the whole line
};

inline bool operator==(const Hurt &left, const Hurt &right)
{
    return left.line == right.line && left.column == right.column;
}

struct DamagedExport
{
    QByteArray text;
    QVector<Hurt> hurts; ///< all places, in their order; the others are as they were
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
