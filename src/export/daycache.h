// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A cache of days that are slow to get and asked for again and again.
#pragma once

#include <QDate>
#include <QHash>

/// Remembers up to 50,000 days by what they were asked with, and then begins anew: enough for every
/// day of a century.
///
/// What the time zone says of a moment may change while the process lives, so a cache lasts for one
/// reading.
template <typename Question>
class DayCache
{
public:
    /// The day remembered, or else that of `ask`.
    template <typename Ask>
    QDate day(const Question &question, Ask ask)
    {
        const auto known = days.constFind(question);
        if (known != days.constEnd())
            return *known;
        if (days.size() >= mostDays)
            days.clear();
        return *days.insert(question, ask());
    }

private:
    static constexpr int mostDays = 50000;

    QHash<Question, QDate> days;
};
