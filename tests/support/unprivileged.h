// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// File modes that bind, also where the tests run as root.
#pragma once

#include <sys/types.h>
#include <unistd.h>

/// As long as it lives, a process of root has an ordinary user's rights; any other keeps its own.
///
/// Both user ids change, for the one in effect decides about opening and removing, and the real one
/// about what QFileInfo says. What root's temporary folders hold is within reach only with their
/// modes opened before.
class Unprivileged
{
public:
    Unprivileged() :
        root(geteuid() == 0),
        bound(!root || setresuid(ordinaryUser, ordinaryUser, 0) == 0)
    { }
    ~Unprivileged()
    {
        if (root && setresuid(0, 0, 0) != 0)
            _exit(1);
    }
    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

    /// False where root may not give up its rights.
    bool isBound() const { return bound; }

private:
    static const uid_t ordinaryUser = 65534;
    const bool root;
    const bool bound;
};
