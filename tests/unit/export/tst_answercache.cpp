// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The cache of answers: what is asked, and how often.
#include "worker/answercache.h"

#include <QtTest>

namespace {

/// Answers each number with its double, and counts how often it was asked.
class Doubling
{
public:
    int of(int number)
    {
        return cache.answer(number, [this, number] {
            ++asked;
            return 2 * number;
        });
    }

    AnswerCache<int, int> cache;
    int asked = 0;
};

} // namespace

class tst_AnswerCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answer_isAskedForOnce();
    void answer_beginsAnewAfterTheMost();
    void clear_forgets();
};

void tst_AnswerCache::answer_isAskedForOnce()
{
    Doubling doubling;
    QCOMPARE(doubling.of(7), 14);
    QCOMPARE(doubling.of(8), 16);
    QCOMPARE(doubling.asked, 2);
    QCOMPARE(doubling.of(7), 14);
    QCOMPARE(doubling.of(8), 16);
    QCOMPARE(doubling.asked, 2);
}

void tst_AnswerCache::answer_beginsAnewAfterTheMost()
{
    const int most = 50000;
    Doubling doubling;
    for (int i = 0; i < most; ++i)
        doubling.of(i);
    for (int i = 0; i < most; ++i)
        doubling.of(i);
    QCOMPARE(doubling.asked, most);
    QCOMPARE(doubling.of(most), 2 * most);
    QCOMPARE(doubling.asked, most + 1);
    // That one is remembered, and nothing from before it.
    QCOMPARE(doubling.of(most), 2 * most);
    QCOMPARE(doubling.asked, most + 1);
    for (int i = 0; i < most - 1; ++i)
        doubling.of(i);
    QCOMPARE(doubling.asked, 2 * most);
}

void tst_AnswerCache::clear_forgets()
{
    Doubling doubling;
    doubling.of(7);
    doubling.cache.clear();
    QCOMPARE(doubling.of(7), 14);
    QCOMPARE(doubling.asked, 2);
}

QTEST_GUILESS_MAIN(tst_AnswerCache)
#include "tst_answercache.moc"
