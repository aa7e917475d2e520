// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One gate at a time in a state folder.
#pragma once

#include "host/base/failure.h"

#include <QLockFile>
#include <QString>

/// The file "lock" in the state folder. The one of a gate that has died on this machine gives way.
class GateLock
{
public:
    explicit GateLock(const QString &stateFolder);

    /// Fails with who is at work since when, and with what to do where that cannot be known.
    Failure take();
    bool isHeld() const { return file.isLocked(); }

private:
    QString systemWord() const;
    Failure refusal() const;
    bool removeBroken() const;

    const QString folder;
    const QString path;
    QLockFile file;
};
