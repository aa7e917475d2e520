// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A disk that is soon full.
#pragma once

#include <QString>

/// A file system of a given size in memory, seen by this process and its children only.
///
/// Needs the rights to mount: those of root, or of a user whom the system lets have a name space of
/// their own. Made before the process starts any thread.
class SmallDisk
{
public:
    /// Mounts it over an existing folder.
    SmallDisk(const QString &folder, int kilobytes);
    ~SmallDisk();
    SmallDisk(const SmallDisk &) = delete;
    SmallDisk &operator=(const SmallDisk &) = delete;

    /// Why there is none; empty if there is.
    QString failure() const { return trouble; }
    /// Fills it but for so many kilobytes. False if that failed.
    bool fillUpTo(int kilobytesLeft) const;

private:
    bool enterNameSpace();

    const QString place;
    QString trouble;
};
