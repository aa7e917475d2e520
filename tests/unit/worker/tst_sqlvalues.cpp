// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Dates and numbers on their way into statements and back, in the time zone of the process.
#include "repository/sqlnumber.h"
#include "support/localseconds.h"
#include "worker/sqlvalues.h"

#include <QtTest>

namespace {

/// Days around which midnights go wrong: clocks change, the leap day, the ends of number ranges.
void addDays()
{
    QTest::addColumn<QDate>("day");
    QTest::newRow("first of the substitute's year") << QDate(2000, 1, 1);
    QTest::newRow("winter") << QDate(2015, 1, 15);
    QTest::newRow("summer") << QDate(2015, 7, 15);
    QTest::newRow("leap day") << QDate(2024, 2, 29);
    QTest::newRow("clocks go forward west") << QDate(2024, 3, 10);
    QTest::newRow("day after that") << QDate(2024, 3, 11);
    QTest::newRow("clocks go forward east") << QDate(2024, 3, 31);
    QTest::newRow("day after that, east") << QDate(2024, 4, 1);
    QTest::newRow("clocks go back east") << QDate(2024, 10, 27);
    QTest::newRow("clocks go back west") << QDate(2024, 11, 3);
    QTest::newRow("last of a year") << QDate(2024, 12, 31);
    QTest::newRow("beyond signed 32 bits") << QDate(2038, 1, 20);
    QTest::newRow("last whole day of unsigned 32 bits") << QDate(2106, 2, 6);
}

} // namespace

class tst_SqlValues : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dateToSqlBegin_localMidnight_data() { addDays(); }
    void dateToSqlBegin_localMidnight();
    void dateToSqlBegin_invalidDateIsTheFirstOf2000();
    void dateToSqlBegin_outside32Bits_data();
    void dateToSqlBegin_outside32Bits();
    void dateToSql_localMidnight_data() { addDays(); }
    void dateToSql_localMidnight();
    void dateToSql_endOfDayIsTheLastSecond_data() { addDays(); }
    void dateToSql_endOfDayIsTheLastSecond();
    void dateToSql_invalidDateIsNull();
    void dateToSql_keeps64Bits_data();
    void dateToSql_keeps64Bits();
    void dateFromDbBegin_zeroIsTheFirstOf2000();
    void dateFromDbBegin_localDay_data() { addDays(); }
    void dateFromDbBegin_localDay();
    void dateFromDb_zeroIsTheNullDate();
    void dateFromDb_localDay_data() { addDays(); }
    void dateFromDb_localDay();
    void dateFromDb_endsOfTheRange();
    void everyStoredDayReadsBackAsItself();
    void unknownBeginStaysTheSame();
    void numberToSql_data();
    void numberToSql();
    void secondsAtMidnight_data() { addDays(); }
    void secondsAtMidnight();
};

void tst_SqlValues::dateToSqlBegin_localMidnight()
{
    QFETCH(QDate, day);
    QCOMPARE(dateToSqlBegin(day), QString::number(localSeconds(day)));
}

void tst_SqlValues::dateToSqlBegin_invalidDateIsTheFirstOf2000()
{
    QCOMPARE(dateToSqlBegin(QDate()), QString::number(localSeconds(QDate(2000, 1, 1))));
    QCOMPARE(dateToSqlBegin(QDate(2023, 2, 29)), QString::number(localSeconds(QDate(2000, 1, 1))));
}

void tst_SqlValues::dateToSqlBegin_outside32Bits_data()
{
    QTest::addColumn<QDate>("day");
    QTest::newRow("before the epoch") << QDate(1969, 12, 31);
    QTest::newRow("long before the epoch") << QDate(1944, 8, 29);
    QTest::newRow("first day after the range") << QDate(2106, 2, 8);
    QTest::newRow("long after the range") << QDate(2200, 1, 15);
}

void tst_SqlValues::dateToSqlBegin_outside32Bits()
{
    QFETCH(QDate, day);
    QCOMPARE(dateToSqlBegin(day), QStringLiteral("4294967295"));
}

void tst_SqlValues::dateToSql_localMidnight()
{
    QFETCH(QDate, day);
    QCOMPARE(dateToSql(day, false), QString::number(localSeconds(day)));
}

void tst_SqlValues::dateToSql_endOfDayIsTheLastSecond()
{
    QFETCH(QDate, day);
    QCOMPARE(dateToSql(day, true), QString::number(localSeconds(day, 23, 59, 59)));
}

void tst_SqlValues::dateToSql_invalidDateIsNull()
{
    QCOMPARE(dateToSql(QDate(), false), QStringLiteral("NULL"));
    QCOMPARE(dateToSql(QDate(), true), QStringLiteral("NULL"));
    QCOMPARE(dateToSql(QDate(2023, 2, 29), false), QStringLiteral("NULL"));
    QCOMPARE(dateToSql(QDate(2023, 2, 29), true), QStringLiteral("NULL"));
}

void tst_SqlValues::dateToSql_keeps64Bits_data()
{
    QTest::addColumn<QDate>("day");
    QTest::newRow("before the epoch") << QDate(1969, 12, 31);
    QTest::newRow("after unsigned 32 bits") << QDate(2200, 1, 15);
}

void tst_SqlValues::dateToSql_keeps64Bits()
{
    QFETCH(QDate, day);
    QCOMPARE(dateToSql(day, false), QString::number(localSeconds(day)));
    QCOMPARE(dateToSql(day, true), QString::number(localSeconds(day, 23, 59, 59)));
}

void tst_SqlValues::dateFromDbBegin_zeroIsTheFirstOf2000()
{
    QCOMPARE(dateFromDbBegin(0), QDate(2000, 1, 1));
    QCOMPARE(dateFromDbBegin(1), localDay(1));
}

void tst_SqlValues::dateFromDbBegin_localDay()
{
    QFETCH(QDate, day);
    QCOMPARE(dateFromDbBegin(static_cast<uint>(localSeconds(day))), day);
    QCOMPARE(dateFromDbBegin(static_cast<uint>(localSeconds(day) - 1)), day.addDays(-1));
    QCOMPARE(dateFromDbBegin(static_cast<uint>(localSeconds(day, 23, 59, 59))), day);
}

void tst_SqlValues::dateFromDb_zeroIsTheNullDate()
{
    QVERIFY(dateFromDb(0).isNull());
    QCOMPARE(dateFromDb(1), localDay(1));
}

void tst_SqlValues::dateFromDb_localDay()
{
    QFETCH(QDate, day);
    QCOMPARE(dateFromDb(static_cast<uint>(localSeconds(day))), day);
    QCOMPARE(dateFromDb(static_cast<uint>(localSeconds(day) - 1)), day.addDays(-1));
    QCOMPARE(dateFromDb(static_cast<uint>(localSeconds(day, 23, 59, 59))), day);
}

void tst_SqlValues::dateFromDb_endsOfTheRange()
{
    QCOMPARE(dateFromDb(2147483648u), localDay(2147483648));
    QCOMPARE(dateFromDb(4294967295u), localDay(4294967295));
    QCOMPARE(dateFromDbBegin(4294967295u), localDay(4294967295));
}

void tst_SqlValues::everyStoredDayReadsBackAsItself()
{
    for (QDate day(2022, 1, 1); day < QDate(2025, 1, 1); day = day.addDays(1)) {
        QCOMPARE(dateFromDbBegin(dateToSqlBegin(day).toUInt()), day);
        QCOMPARE(dateFromDb(dateToSql(day, false).toUInt()), day);
        QCOMPARE(dateFromDb(dateToSql(day, true).toUInt()), day);
    }
}

void tst_SqlValues::unknownBeginStaysTheSame()
{
    const QString stored = dateToSqlBegin(QDate());
    const QDate loaded = dateFromDbBegin(stored.toUInt());
    QCOMPARE(loaded, QDate(2000, 1, 1));
    QCOMPARE(dateToSqlBegin(loaded), stored);
}

void tst_SqlValues::numberToSql_data()
{
    QTest::addColumn<uint>("number");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << 0u << QStringLiteral("NULL");
    QTest::newRow("smallest") << 1u << QStringLiteral("1");
    QTest::newRow("largest") << 4294967295u << QStringLiteral("4294967295");
}

void tst_SqlValues::numberToSql()
{
    QFETCH(uint, number);
    QFETCH(QString, text);
    QCOMPARE(::numberToSql(number), text);
}

void tst_SqlValues::secondsAtMidnight()
{
    QFETCH(QDate, day);
    QCOMPARE(::secondsAtMidnight(day), localSeconds(day));
}

QTEST_GUILESS_MAIN(tst_SqlValues)
#include "tst_sqlvalues.moc"
