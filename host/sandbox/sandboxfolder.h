// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a sandbox: whose it is, and what lies where in it.
#pragma once

#include "host/base/failure.h"

#include <QLockFile>
#include <QScopedPointer>
#include <QString>

/// A folder that is new or empty, or holds a sandbox that was broken off in the making; any other
/// is never written to. All in it is for its owner only.
class SandboxFolder
{
public:
    explicit SandboxFolder(const QString &name);

    /// Makes the folder if it is missing, and clears it of a half-made sandbox. From then on it
    /// counts as half-made itself.
    Failure take();
    /// The sandbox is complete.
    Failure finish();

    QString path() const { return directory; }
    QString path(const QString &name) const { return directory + QLatin1Char('/') + name; }

    Failure makeFolder(const QString &name) const;
    Failure write(const QString &name, const QByteArray &text, bool isProgram = false) const;

private:
    bool holdsOtherFiles() const;
    Failure otherFiles() const;
    Failure clear() const;

    const QString directory;
    QScopedPointer<QLockFile> lock;
};
