// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Which of two exports is the older one.
#include "host/gate/exportdate.h"

#include <QtTest>

class tst_ExportDate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void name_tellsItsDate_data();
    void name_tellsItsDate();
    void otherDigits_areNoDate_data();
    void otherDigits_areNoDate();
    void older_isToldByNamesFirst_data();
    void older_isToldByNamesFirst();
    void order_hasNoCircles();
    void oneWithoutADate_letsTheFilesDecide();
};

void tst_ExportDate::name_tellsItsDate_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("moment");
    const auto row = [](const char *name, const char *moment) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(moment);
    };
    row("20261122", "2026-11-22T00:00:00");
    row("ron20261122.data", "2026-11-22T00:00:00");
    row("export_20261122-1240.txt", "2026-11-22T12:40:00");
    row("export_20261122-124002.txt", "2026-11-22T12:40:02");
    row("export_20261122_1240.txt", "2026-11-22T12:40:00");
    row("export_20261122T124002Z.txt", "2026-11-22T12:40:02");
    row("export20261122124002.txt", "2026-11-22T12:40:02");
    row("2026-11-22", "2026-11-22T00:00:00");
    row("hr-2026-11-22.csv", "2026-11-22T00:00:00");
    row("2026-11-22T12.40.02.csv", "2026-11-22T12:40:02");
    row("2026-11-22 12:40.csv", "2026-11-22T12:40:00");
    row("2026-11-22-12-40-02.csv", "2026-11-22T12:40:02");
    row("22.11.2026", "2026-11-22T00:00:00");
    row("Export 22.11.2026.data", "2026-11-22T00:00:00");
    row("22.11.2026_12.40", "2026-11-22T12:40:00");
    row("20000101", "2000-01-01T00:00:00");
    row("20991231", "2099-12-31T00:00:00");
    row("20240229", "2024-02-29T00:00:00");
    // Of several ones the last, whatever their forms.
    row("20260101-20261122.data", "2026-11-22T00:00:00");
    row("2026-01-01-2026-11-22.data", "2026-11-22T00:00:00");
    row("2026-01-01_22.11.2026.data", "2026-11-22T00:00:00");
    row("22.11.2026_2026-01-01.data", "2026-01-01T00:00:00");
    row("20261122-20261399", "2026-11-22T00:00:00");
    // What follows is no time.
    row("20261122-2510", "2026-11-22T00:00:00");
    row("20261122-1260", "2026-11-22T00:00:00");
    row("20261122-12", "2026-11-22T00:00:00");
    row("20261122-12400", "2026-11-22T00:00:00");
    row("20261122-12400212", "2026-11-22T00:00:00");
    row("2026-11-22-3", "2026-11-22T00:00:00");
    // What stands before it.
    row("branch-120-20261122", "2026-11-22T00:00:00");
    row("1001_22.11.2026", "2026-11-22T00:00:00");
    // Folders do not count.
    row("/archive/20250101/ron-20261122.data", "2026-11-22T00:00:00");
}

void tst_ExportDate::name_tellsItsDate()
{
    QFETCH(QString, name);
    QFETCH(QString, moment);
    const std::optional<QDateTime> found = dateInName(name);
    QVERIFY(found);
    QCOMPARE(found->toString(Qt::ISODate), moment);
}

void tst_ExportDate::otherDigits_areNoDate_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"",
                             "ron.data",
                             "export-120.txt",
                             "export-20261.txt",
                             "19991231",
                             "21000101",
                             "20261301",
                             "20260230",
                             "20250229",
                             "20260011",
                             "2026-13-01",
                             "2026-11-31",
                             "2026-1-2",
                             "31.11.2026",
                             "1.1.2026",
                             "22.11.26",
                             "22-11-2026",
                             "11/22/2026",
                             "120261122",
                             "202611221",
                             "202611221240",
                             "20261122246002",
                             "202611221240021",
                             "+421905202611",
                             "0905123456",
                             "12026-11-22",
                             "2026-11-221",
                             "122.11.2026",
                             "22.11.20261",
                             "/archive/20250101/ron.data"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_ExportDate::otherDigits_areNoDate()
{
    QFETCH(QString, name);
    QVERIFY(!dateInName(name));
}

void tst_ExportDate::older_isToldByNamesFirst_data()
{
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    QTest::addColumn<int>("seconds"); // by which the other one's file is the newer one
    QTest::addColumn<bool>("isOlder");
    const auto row = [](const char *one, const char *other, int seconds, bool isOlder) {
        QTest::addRow("%s, %s, %d", one, other, seconds)
            << QString::fromLatin1(one) << QString::fromLatin1(other) << seconds << isOlder;
    };
    row("20261121", "20261122", 0, true);
    row("20261121", "20261122", -100, true);
    row("20261122", "20261121", 100, false);
    row("21.11.2026", "2026-11-22", -100, true);
    row("20261122-1240", "20261122-124001", -100, true);
    row("20261122-124001", "20261122-1240", 100, false);
    // Where the names are no help.
    row("20261122", "20261122", 1, true);
    row("20261122", "20261122", 0, false);
    row("20261122", "20261122", -1, false);
    row("20261122", "20261122-1240", -1, false);
    row("20261122-1240", "20261122", 1, true);
    row("20261122-1240", "20261122-1240", 1, true);
    row("ron.data", "ron.data", 1, true);
    row("ron.data", "ron.data", -1, false);
    row("20261122", "ron.data", -1, false);
    row("ron.data", "20261122", 1, true);
}

void tst_ExportDate::older_isToldByNamesFirst()
{
    QFETCH(QString, one);
    QFETCH(QString, other);
    QFETCH(int, seconds);
    QFETCH(bool, isOlder);
    const QDateTime time(QDate(2026, 11, 23), QTime(1, 0));
    QCOMPARE(::isOlder({one, time}, {other, time.addSecs(seconds)}), isOlder);
}

/// Whatever files they are, they can be sorted: nothing is older than what is older than itself.
void tst_ExportDate::order_hasNoCircles()
{
    const QDateTime time(QDate(2026, 11, 23), QTime(1, 0));
    const QStringList names {QStringLiteral("20261122"),      QStringLiteral("20261121"),
                             QStringLiteral("20261122-1240"), QStringLiteral("20261122-0700"),
                             QStringLiteral("20261121-0700"), QStringLiteral("ron.data")};
    QVector<DatedFile> all;
    for (int i = 0; i < 3 * names.size(); ++i)
        all.append({names.at(i % names.size()), time.addSecs(i * 7 % 5)});
    const auto verifyOrder = [](const QVector<DatedFile> &files) {
        const AgeOrder order(files);
        for (const DatedFile &one : files) {
            for (const DatedFile &other : files) {
                for (const DatedFile &third : files) {
                    // Also that of those which are as old as each other.
                    QVERIFY(order.isOlder(one, other) || order.isOlder(other, third)
                            || !order.isOlder(one, third));
                    QVERIFY(!order.isOlder(one, other) || !order.isOlder(other, one));
                }
            }
        }
    };
    verifyOrder(all);
    for (int count = 2; count < names.size(); ++count) {
        QVector<DatedFile> files;
        for (const DatedFile &file : qAsConst(all)) {
            if (names.indexOf(file.name) < count)
                files.append(file);
        }
        verifyOrder(files);
    }
}

void tst_ExportDate::oneWithoutADate_letsTheFilesDecide()
{
    const QDateTime time(QDate(2026, 11, 23), QTime(1, 0));
    const DatedFile newer {QStringLiteral("20261122"), time};
    const DatedFile older {QStringLiteral("20261121"), time.addSecs(1)};
    QVERIFY(AgeOrder({newer, older}).isOlder(older, newer));
    const DatedFile plain {QStringLiteral("ron.data"), time};
    QVERIFY(AgeOrder({newer, older, plain}).isOlder(newer, older));
}

QTEST_GUILESS_MAIN(tst_ExportDate)
#include "tst_exportdate.moc"
