// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Encodings in which each byte is a letter.
#pragma once

#include "host/base/failure.h"

#include <QByteArray>

#include <array>

/// What the bytes of a file say about its encoding. The lines are shown one after another.
class LettersOfFile
{
public:
    void add(const QByteArray &line);

    /// Neither UTF-8 nor UTF-8 with some damage in it, where its letters are many and what cannot
    /// be UTF-8 is rare; nor UTF-16, by its NUL bytes.
    bool areForeign() const { return invalid > 0 && letters * 4 <= invalid && !has(0); }
    bool has(uchar byte) const { return seen.at(byte); }

private:
    std::array<bool, 256> seen {};
    qint64 letters = 0; ///< outside ASCII
    qint64 invalid = 0;
};

/// A value: such an encoding as a table.
class EightBit
{
public:
    /// Fails for a name that stands for no encoding, or for one with more bytes to a letter or
    /// other signs below 128; says which name was meant.
    static Failure named(const QString &name, EightBit *encoding);

    /// All bytes from 128 on that the file has are letters or other signs that can be seen.
    bool fits(const LettersOfFile &file) const;
    QByteArray toUtf8(const QByteArray &bytes) const;

private:
    std::array<QByteArray, 128> upper; ///< UTF-8 from 128 on; empty for what is no sign
};
