// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A cache of answers that are slow to get and asked for again and again.
#pragma once

#include <QHash>

/// Remembers up to 50,000 answers and then begins anew: enough for every day of a century.
///
/// What the time zone says of a moment may change while the process lives, so a cache of such
/// answers lasts for one reading.
template <typename Question, typename Answer>
class AnswerCache
{
public:
    /// The answer remembered, or else that of `ask`.
    template <typename Ask>
    Answer answer(const Question &question, Ask ask)
    {
        const auto known = answers.constFind(question);
        if (known != answers.constEnd())
            return *known;
        if (answers.size() >= mostAnswers)
            answers.clear();
        return *answers.insert(question, ask());
    }
    void clear() { answers.clear(); }

private:
    static constexpr int mostAnswers = 50000;

    QHash<Question, Answer> answers;
};
