// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What two passes must have in common to be the same plan.
#pragma once

#include "host/changes/changes.h"

/// SHA-256 in hex over all rows that change. Left out are ids that the server makes up (of new
/// people, of notices) and moments (when a row was written, calculated): a person is named by their
/// number, and a row that differs in nothing else does not count. So the rehearsed pass and the
/// real one have the same, and so have two readings of one file.
QString changeHash(const Changes &changes);
/// The same over the rows of one person, or of nobody: tells in whom two passes differ.
QString changeHash(const QVector<Change> &rows);

/// SHA-256 in hex over the digests of export, settings and state, and the plugin's version.
QString readHash(const ChangesHeader &header);

/// Four letters each for export, settings, plugin and state, then '-' and the begin of what
/// changes: a plan whose first part differs may still change the same.
QString planHash(const ChangesHeader &header, const QString &change);
/// The text has the form of a plan's hash.
bool isPlanHash(const QString &text);

/// What a pass reads.
enum class PlanPart {
    Export,
    Settings,
    Plugin,
    State,
};
/// In which of them two plans differ.
QVector<PlanPart> differentParts(const QString &plan, const QString &other);
/// The plan, as planHash() gave it, changes this.
bool isSameChange(const QString &plan, const QString &change);

/// SHA-256 in hex over all rows and columns of the snapshot, for the header.
QString stateDigest(const Snapshot &snapshot);
