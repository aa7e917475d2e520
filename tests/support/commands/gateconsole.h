// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A site with a gate, as its users have it.
#pragma once

#include "support/commands/site.h"

/// A data directory with an empty place, the folder "incoming" and a talvenhr.conf for its gate.
class GateConsole : public Site
{
public:
    GateConsole();

    /// Writes talvenhr.conf anew: the folders, and lines behind them in [gate].
    void configure(const QStringList &lines) const;
    /// The command, with this configuration.
    QStringList gate(const QStringList &others = {}) const;
    void deliver(const QString &text) const;
    bool isInPlace() const;
    /// The names of all refused exports, oldest first.
    QStringList refusedNames() const;

    /// Some employees whose names begin with the text.
    static QString exportOf(const QString &opening, int people);
};
