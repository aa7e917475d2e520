// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What somebody meant who wrote a word that nobody knows.
#include "host/base/nearest.h"

#include <QCoreApplication>
#include <QVector>

#include <algorithm>
#include <numeric>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Nearest)
};

/// How many letters have to be put in, taken out or exchanged for others (Levenshtein).
int editDistance(const QString &from, const QString &to)
{
    QVector<int> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 0; i < from.size(); ++i) {
        int diagonal = row.at(0);
        row[0] = i + 1;
        for (int j = 0; j < to.size(); ++j) {
            const int exchanged = diagonal + (from.at(i) == to.at(j) ? 0 : 1);
            diagonal = row.at(j + 1);
            row[j + 1] = std::min({exchanged, row.at(j) + 1, row.at(j + 1) + 1});
        }
    }
    return row.constLast();
}

} // namespace

QString nearest(const QString &word, const QStringList &known)
{
    QString best;
    // A third of the letters may be wrong, and two of a short word.
    int least = std::max(2, word.size() / 3) + 1;
    for (const QString &candidate : known) {
        const int distance = editDistance(word.toLower(), candidate.toLower());
        if (distance < least && distance < candidate.size()) {
            least = distance;
            best = candidate;
        }
    }
    return best;
}

QString didYouMean(const QString &word, const QStringList &known)
{
    const QString meant = nearest(word, known);
    return meant.isEmpty() ? QString() : Text::tr(" (did you mean '%1'?)").arg(meant);
}
