// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Numbers drawn from a seed, the same on every machine.
#pragma once

#include <QtGlobal>

#include <random>

/// The same seed draws the same numbers with every standard library: the generator is laid down by
/// the language, its distributions are not, so that they have no part in this.
class Draw
{
public:
    explicit Draw(quint32 seed) :
        generator(seed)
    { }

    /// From 0 to one less than the limit, which is at least 1.
    int below(int limit)
    {
        const quint64 number = static_cast<quint32>(generator());
        return static_cast<int>((number * static_cast<quint64>(limit)) >> 32);
    }
    /// True in so many of a hundred draws.
    bool percent(int share) { return below(100) < share; }
    /// True in so many of ten thousand draws.
    bool perTenThousand(int share) { return below(10000) < share; }

private:
    std::mt19937 generator;
};
