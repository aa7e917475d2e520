// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A temporary folder that holds data of people.
#pragma once

#include <QString>
#include <QTemporaryDir>

/// A temporary folder for its owner only, which goes with the object. A process that is killed
/// leaves it behind, without the lock that it holds while it lives: the next one that makes such a
/// folder removes what was left.
///
/// Owned by whoever needs room, on any thread. It holds one file of its own.
class ScratchFolder
{
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    /// Why there is none; empty if there is.
    QString failure() const { return trouble; }
    QString path() const { return folder.path(); }
    QString filePath(const QString &name) const { return folder.filePath(name); }

private:
    bool lockIt();

    QTemporaryDir folder;
    QString trouble;
    int lock = -1;
};

/// Removes the folders of this user in the place for temporary files whose process has gone.
void removeLeftScratchFolders();
