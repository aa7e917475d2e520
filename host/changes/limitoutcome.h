// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A limit of what a pass may change, and what became of it.
#pragma once

#include <QString>

/// At most so many of a kind.
struct Limit
{
    QString kind; ///< that of a change, or another of limitKinds()
    int number = 0;
    bool isPercent = false; ///< of the active people, of whom there count at least fifty
};

/// A limit, and what there is of it. In days for the kinds of days, else a count.
struct LimitOutcome
{
    Limit limit;
    double allowed = 0;
    double found = 0;

    bool isExceeded() const { return found > allowed; }
};
