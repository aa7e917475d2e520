// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Any number of people with one relation each: what their export says of them, and their rows.
#pragma once

#include <QString>
#include <QTemporaryDir>
#include <QVariant>

/// What the export says of everybody and what the database answers.
struct Crowd
{
    int people = 0; ///< numbers 1001 on
    bool known = false; ///< they have rows that say what the export says
    bool changed = false; ///< the export has other phone numbers than the rows
    bool branchesKnown = true; ///< else nobody's branch is found
    bool members = true; ///< everybody is a member of his branch
    bool oneBranch = false; ///< of all people; else one to a hundred
    bool forced = false;
};

/// The crowd that all answers are of.
Crowd &crowd();

/// The numbers of its branches are 1 to this one.
int branchCount(const Crowd &of);

/// A line of the export without its end: some 120 bytes of UTF-8.
QByteArray crowdLine(int index);

/// The export of the crowd in a folder of its own, without a header.
QString writeExport(const QTemporaryDir &folder);

/// A column of somebody's row, in the order in which the plugin reads `people`: each text afresh,
/// as from a server. What has no value is NULL.
QVariant personColumn(int index, int column);
