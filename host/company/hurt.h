// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A place in a damaged export.
#pragma once

/// Lines and columns count from 1, the header is line 1. The lines are those of the damaged text.
struct Hurt
{
    int line = 0; ///< 0 for all of them
    int column = 0; ///< 0 for the whole line
};

inline bool operator==(const Hurt &left, const Hurt &right)
{
    return left.line == right.line && left.column == right.column;
}
