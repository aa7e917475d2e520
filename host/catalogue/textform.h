// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A text with places for values.
#pragma once

#include <QString>
#include <QStringList>
#include <QVarLengthArray>

#include <optional>
#include <vector>

/// What a statement or a message looks like, with a letter for each value: {u} a number without a
/// sign, {k} one that is not 0, {i} a number with a sign, {n} one with a sign or NULL, {m} two
/// numbers joined by a dot, {l} numbers with commas, {p} pairs of numbers with commas, {b} a value
/// that is bound ("?" or ":name"), {t} any text.
///
/// A text may hold whatever its author put there, also what looks like the rest of the form. Such a
/// text is still of the form; the values of its text places are then one reading among several.
/// Values in front of the first text place, and those behind the last one, have one reading only.
///
/// A value; all operations are for any thread.
class TextForm
{
public:
    /// From a text with letters in braces.
    static TextForm ofPlaces(const char *text);
    /// From the text of a message: %u stands for {u}, %i for {i}, %s for {t}.
    static TextForm ofMessage(const char *text);

    bool fits(const QString &text) const;
    /// The values at the places, nothing if the text is not of the form. From the place `loose` on,
    /// counted from 0, any text may stand at any place.
    std::optional<QStringList> match(const QString &text, int loose = allTyped) const;

    static constexpr int allTyped = 1000;

private:
    /// Few, but where a text is made of what follows it.
    using Positions = QVarLengthArray<int, 4>;

    TextForm(const QString &text, QChar mark, int markLength);
    std::vector<Positions> reach(const QString &text, const QString &kinds) const;
    Positions step(const QString &text, const Positions &from, int place, QChar kind) const;
    QStringList readBack(const QString &text, const std::vector<Positions> &reached,
                         const QString &kinds) const;

    QString begin; ///< up to the first place
    QString places; ///< the letter of each place
    QStringList literals; ///< what follows each place
};
