// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The moment of the build, as the version report shows it.
#include "plugin/buildstamp.h"

#include <QLocale>
#include <QtTest>

class tst_BuildStamp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buildStamp_data();
    void buildStamp();
    void buildStamp_everyMonth_data();
    void buildStamp_everyMonth();
    void buildStamp_speaksEnglishEverywhere();
    void buildStamp_ofThisCompiler();
    void buildStamp_unreadable_data();
    void buildStamp_unreadable();
};

void tst_BuildStamp::buildStamp_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("time");
    QTest::addColumn<QString>("stamp");
    const QString day = QStringLiteral("Oct  2 2023");
    QTest::newRow("day of one digit")
        << day << QStringLiteral("14:12:58") << QStringLiteral("2310021412");
    QTest::newRow("day of two digits")
        << QStringLiteral("Dec 31 1999") << QStringLiteral("23:59:59")
        << QStringLiteral("9912312359");
    QTest::newRow("midnight") << day << QStringLiteral("00:00:00") << QStringLiteral("2310020000");
    QTest::newRow("seconds are dropped, not rounded")
        << day << QStringLiteral("14:59:59") << QStringLiteral("2310021459");
    QTest::newRow("numbers of one digit")
        << QStringLiteral("Jan  1 2005") << QStringLiteral("01:02:03")
        << QStringLiteral("0501010102");
    QTest::newRow("leap day") << QStringLiteral("Feb 29 2024") << QStringLiteral("12:00:00")
                              << QStringLiteral("2402291200");
    QTest::newRow("blanks around") << QStringLiteral("  Oct   2   2023 ")
                                   << QStringLiteral(" 14:12:58\n") << QStringLiteral("2310021412");
}

void tst_BuildStamp::buildStamp()
{
    QFETCH(QString, date);
    QFETCH(QString, time);
    QFETCH(QString, stamp);
    QCOMPARE(::buildStamp(date, time), stamp);
}

void tst_BuildStamp::buildStamp_everyMonth_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("stamp");
    const char *months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const char *stamps[] = {"2301070910", "2302070910", "2303070910", "2304070910",
                            "2305070910", "2306070910", "2307070910", "2308070910",
                            "2309070910", "2310070910", "2311070910", "2312070910"};
    for (int month = 0; month < 12; ++month) {
        QTest::newRow(months[month])
            << QString::fromLatin1(months[month]) + QStringLiteral("  7 2023")
            << QString::fromLatin1(stamps[month]);
    }
}

void tst_BuildStamp::buildStamp_everyMonth()
{
    QFETCH(QString, date);
    QFETCH(QString, stamp);
    QCOMPARE(::buildStamp(date, QStringLiteral("09:10:11")), stamp);
}

void tst_BuildStamp::buildStamp_speaksEnglishEverywhere()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Slovak, QLocale::Slovakia));
    const QString stamp = ::buildStamp(QStringLiteral("May  2 2023"), QStringLiteral("14:12:58"));
    const QString slovak = ::buildStamp(QStringLiteral("máj  2 2023"), QStringLiteral("14:12:58"));
    QLocale::setDefault(before);
    QCOMPARE(stamp, QStringLiteral("2305021412"));
    QCOMPARE(slovak, QString());
}

void tst_BuildStamp::buildStamp_ofThisCompiler()
{
    const QString date = QStringLiteral(__DATE__);
    const QString time = QStringLiteral(__TIME__);
    const QString stamp = ::buildStamp(date, time);
    QCOMPARE(stamp.size(), 10);
    QCOMPARE(stamp.left(2), date.right(2));
    QCOMPARE(stamp.mid(4, 2).toInt(), date.mid(4, 2).toInt());
    QCOMPARE(stamp.mid(6), time.left(2) + time.mid(3, 2));
}

void tst_BuildStamp::buildStamp_unreadable_data()
{
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("time");
    const QString time = QStringLiteral("14:12:58");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("no date") << QString() << time;
    QTest::newRow("unknown to the compiler")
        << QStringLiteral("??? ?? ????") << QStringLiteral("??:??:??");
    QTest::newRow("no such month") << QStringLiteral("Okt  2 2023") << time;
    QTest::newRow("no such day") << QStringLiteral("Feb 29 2023") << time;
    QTest::newRow("year of two digits") << QStringLiteral("Oct  2 23") << time;
    QTest::newRow("another order") << QStringLiteral("2 Oct 2023") << time;
    QTest::newRow("in numbers") << QStringLiteral("2023-10-02") << time;
    QTest::newRow("whole month") << QStringLiteral("October  2 2023") << time;
}

void tst_BuildStamp::buildStamp_unreadable()
{
    QFETCH(QString, date);
    QFETCH(QString, time);
    QCOMPARE(::buildStamp(date, time), QString());
}

QTEST_GUILESS_MAIN(tst_BuildStamp)
#include "tst_buildstamp.moc"
