// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The cache of days: what is asked, and how often.
#include "export/daycache.h"

#include <QtTest>

namespace {

/// Answers each number with the Julian day of its double, and counts how often it was asked.
class Doubling
{
public:
    int of(int number)
    {
        const QDate day = cache.day(number, [this, number] {
            ++asked;
            return QDate::fromJulianDay(2 * number);
        });
        return static_cast<int>(day.toJulianDay());
    }

    DayCache<int> cache;
    int asked = 0;
};

} // namespace

class tst_DayCache : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void day_isAskedForOnce();
    void day_beginsAnewAfterTheMost();
};

void tst_DayCache::day_isAskedForOnce()
{
    Doubling doubling;
    QCOMPARE(doubling.of(7), 14);
    QCOMPARE(doubling.of(8), 16);
    QCOMPARE(doubling.asked, 2);
    QCOMPARE(doubling.of(7), 14);
    QCOMPARE(doubling.of(8), 16);
    QCOMPARE(doubling.asked, 2);
}

void tst_DayCache::day_beginsAnewAfterTheMost()
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

QTEST_GUILESS_MAIN(tst_DayCache)
#include "tst_daycache.moc"
