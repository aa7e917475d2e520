// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file about people: for its owner only, unless others are let in.
#pragma once

#include "host/base/failure.h"

#include <QString>
#include <QStringList>

#include <functional>

class QIODevice;

/// Fails if no file can be made in its folder, if something else than a regular file stands there,
/// if it is one of those that are read, or if two of them are the same. Empty names stand for none.
Failure checkOutputFiles(const QStringList &outputs, const QStringList &inputs);

/// Makes the folder, for its owner only, if it is not there; whom an existing one is open to stays
/// as it is. Fails where no file can be made in it.
Failure makeOwnerFolder(const QString &folder);

/// Copies a file into one that only its owner reads, whole or not at all.
Failure copyToOwnerFile(const QString &source, const QString &target);

/// What was renamed in the folder outlives a power cut from now on.
void writeFolderOut(const QString &folder);

/// Who may read a file besides its owner.
enum class FileReaders {
    Nobody,
    Group,
    Everybody,
};

/// Writes a file that nobody else may read, unless `readers` lets them. It is whole or not there:
/// what stood there before stays until all is written, and anything but a regular file stays as it
/// is. Fails with the system's words.
Failure writeOwnerFile(const QString &path, const std::function<void(QIODevice *file)> &write,
                       FileReaders readers = FileReaders::Nobody);

/// The same for what can fail by itself: then nothing is written, and that failure is the result.
Failure fillOwnerFile(const QString &path, const std::function<Failure(QIODevice *file)> &fill,
                      FileReaders readers = FileReaders::Nobody);
