// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whose files are whose, and what is in the way of new ones.
#pragma once

#include <QString>

/// The name of the user to whom a file or folder belongs; "user 1234" if the number has no name,
/// empty if there is no such file within reach.
QString ownerOf(const QString &path);

/// The user of this process, as ownerOf() would call them.
QString currentUser();

/// The file or folder exists and belongs to the user of this process.
bool isOwn(const QString &path);

/// The first file or folder below this one that belongs to somebody else; empty if there is none.
/// What links lead to counts, but nobody walks through them.
QString foreignFileIn(const QString &folder);

/// Who may be asked about a path that is closed to the user: "; '/root' belongs to root" names the
/// last part of it that can be seen. Empty if that is the user's own.
QString keeperText(const QString &path);

/// The system's word for why nothing can be written into the folder; empty if it can.
QString writeTroubleIn(const QString &folder);
