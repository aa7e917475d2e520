// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The fast ways of reading a cell accept and refuse what Qt's own do, and give the same.
#include "export/exportcells.h"
#include "worker/thrworker.h"

#include <QtTest>

#include <cstring>
#include <random>

namespace {

const int cellsOfARun = 150000;

class tst_ExportCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void dates_ofEveryDay();
    void dates_aroundClockChanges();
    void dates_mutated();
    void dates_ofOddYears();
    void dates_ofYearsWithASign();
    void dates_thatDifferInOneDigit();
    void numbers_data();
    void numbers();
    void numbers_random();
    void balances_data();
    void balances();
    void balances_random();
    void dates_moreThanAreRemembered();

private:
    int random(int count) { return static_cast<int>(generator() % static_cast<uint>(count)); }
    QString mutated(QString cell);
    QString digits(int count);
    void compareDate(const QString &cell);
    void compareNumber(const QString &cell);
    void compareBalance(const QString &cell);

    std::mt19937 generator;
    DateCache cache;
    int accepted = 0;
    int refused = 0;
};

QString stated(const QDate &date, const QTime &time)
{
    return date.toString(Qt::ISODate) + QLatin1Char(' ')
        + time.toString(QStringLiteral("hh:mm:ss.zzz"));
}

void tst_ExportCells::init()
{
    generator.seed(20261121);
    accepted = 0;
    refused = 0;
}

void tst_ExportCells::compareDate(const QString &cell)
{
    const QDate expected = THRWorker::dateFromText(cell, QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz"));
    ++(expected.isValid() ? accepted : refused);
    if (dateFromCell(QStringRef(&cell), &cache) != expected)
        QFAIL(qPrintable(cell));
}

void tst_ExportCells::compareNumber(const QString &cell)
{
    const uint expected = cell.toUInt();
    ++(expected != 0 ? accepted : refused);
    if (numberFromCell(QStringRef(&cell)) != expected)
        QFAIL(qPrintable(cell));
}

/// To the last bit: what is no number, and the sign of 0, are compared, too.
void tst_ExportCells::compareBalance(const QString &cell)
{
    const double expected = cell.toDouble();
    const double given = balanceFromCell(QStringRef(&cell));
    ++(expected != 0 ? accepted : refused);
    if (std::memcmp(&given, &expected, sizeof expected) != 0)
        QFAIL(qPrintable(cell));
}

/// One to three letters replaced, put in, taken out or exchanged.
QString tst_ExportCells::mutated(QString cell)
{
    const QString letters = QString::fromUtf8("0123456789-:. +T,/eEx|\tAaPMáЖ٣²\u00a0");
    for (int i = random(3); i >= 0 && !cell.isEmpty(); --i) {
        const int place = random(cell.size());
        const QChar letter = letters.at(random(letters.size()));
        switch (random(4)) {
        case 0:
            cell[place] = letter;
            break;
        case 1:
            cell.insert(place, letter);
            break;
        case 2:
            cell.remove(place, 1);
            break;
        default:
            std::swap(cell.begin()[place], cell.begin()[random(cell.size())]);
        }
    }
    return cell;
}

QString tst_ExportCells::digits(int count)
{
    QString text;
    for (int i = 0; i < count; ++i)
        text += QLatin1Char(static_cast<char>('0' + random(10)));
    return text;
}

void tst_ExportCells::dates_ofEveryDay()
{
    for (QDate day(1895, 1, 1); day.year() < 2110; day = day.addDays(1)) {
        compareDate(stated(day, QTime(0, 0)));
        compareDate(stated(day, QTime(random(24), random(60), random(60), random(1000))));
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY(accepted > 150000);
}

/// Every quarter of an hour of each day on which the zone has another offset than on the day
/// before.
void tst_ExportCells::dates_aroundClockChanges()
{
    int changes = 0;
    for (QDate day(1968, 1, 1); day.year() < 2045; day = day.addDays(1)) {
        const int before = QDateTime(day.addDays(-1), QTime(12, 0)).offsetFromUtc();
        if (QDateTime(day, QTime(12, 0)).offsetFromUtc() == before)
            continue;
        ++changes;
        for (int quarter = -96; quarter < 192; ++quarter) {
            const QDateTime moment = QDateTime(day, QTime(0, 0), Qt::UTC).addSecs(quarter * 900);
            compareDate(stated(moment.date(), moment.time()));
            compareDate(stated(moment.date(), moment.time().addMSecs(899999)));
            if (QTest::currentTestFailed())
                return;
        }
    }
    QCOMPARE(refused > 0, changes > 0); // in the skipped hours, which every other zone has
    QCOMPARE(changes == 0, qgetenv("TZ") == "UTC");
}

void tst_ExportCells::dates_mutated()
{
    for (int i = 0; i < cellsOfARun && !QTest::currentTestFailed(); ++i) {
        const QDate day = QDate(1900, 1, 1).addDays(random(80000));
        compareDate(mutated(stated(day, QTime(random(24), random(60)))));
    }
    QVERIFY(accepted > cellsOfARun / 50);
    QVERIFY(refused > cellsOfARun / 50);
}

void tst_ExportCells::dates_ofOddYears()
{
    for (int year = 0; year <= 9999 && !QTest::currentTestFailed(); ++year) {
        const QString text = QString::number(year).rightJustified(4, QLatin1Char('0'));
        for (const char *const rest :
             {"-01-01 00:00:00.000", "-02-29 12:00:00.000", "-12-31 23:59:59.999",
              "-00-10 00:00:00.000", "-06-31 00:00:00.000", "-06-15 24:00:00.000"})
            compareDate(text + QLatin1String(rest));
    }
    QVERIFY(accepted > 0);
    QVERIFY(refused > 0);
}

/// All on one day of the year: none takes the answer of another.
void tst_ExportCells::dates_ofYearsWithASign()
{
    for (const char *const year : {"+123", "ab01", "+456", "-001", "+001", "+123", " 123"})
        compareDate(QLatin1String(year) + QLatin1String("-05-01 00:00:00.000"));
    QVERIFY(refused > 0);
}

/// What is remembered of one is not the answer for another. The colon is what follows the nine.
void tst_ExportCells::dates_thatDifferInOneDigit()
{
    const QString cell = QStringLiteral("2010-10-10 10:10:10.100");
    for (int place = 0; place < cell.size(); ++place) {
        for (const QChar character : QStringLiteral("0123456789:")) {
            QString other = cell;
            other[place] = character;
            compareDate(cell);
            compareDate(other);
        }
    }
    QVERIFY(refused > 0);
}

void tst_ExportCells::numbers_data()
{
    QTest::addColumn<QString>("cell");
    for (const char *const cell : {"",
                                   "0",
                                   "1",
                                   "-1",
                                   "+1",
                                   " 1",
                                   "1 ",
                                   "007",
                                   "999999999",
                                   "1000000000",
                                   "4294967295",
                                   "4294967296",
                                   "0000000001",
                                   "00000000000000000001",
                                   "12a",
                                   "1.0",
                                   "1e3",
                                   "0x10",
                                   "99999999999999999999",
                                   "-0",
                                   "1,000"})
        QTest::newRow(cell) << QString::fromLatin1(cell);
    QTest::newRow("other digits") << QString::fromUtf8("٣٤");
}

void tst_ExportCells::numbers()
{
    QFETCH(QString, cell);
    compareNumber(cell);
}

void tst_ExportCells::numbers_random()
{
    for (int i = 0; i < cellsOfARun && !QTest::currentTestFailed(); ++i) {
        const QString cell = digits(1 + random(12));
        compareNumber(i % 2 ? cell : mutated(cell));
    }
    QVERIFY(accepted > cellsOfARun / 4);
    QVERIFY(refused > cellsOfARun / 50);
}

void tst_ExportCells::balances_data()
{
    QTest::addColumn<QString>("cell");
    for (const char *const cell :
         {"",       ".",     "0",     "-0",          "0.0",     "-0.0",
          ".5",     "5.",    "12.5",  "-12.5",       "+12.5",   "12,5",
          "0.29",   "0.1",   "0.3",   "999999.999",  "1000000", "123456789.125",
          "0.0001", "1e2",   "1e400", "nan",         "inf",     "-inf",
          "12.5 ",  " 12.5", "1.2.3", "21474836.47", "x"})
        QTest::newRow(cell) << QString::fromLatin1(cell);
}

void tst_ExportCells::balances()
{
    QFETCH(QString, cell);
    compareBalance(cell);
}

void tst_ExportCells::balances_random()
{
    for (int i = 0; i < cellsOfARun && !QTest::currentTestFailed(); ++i) {
        const QString cell = digits(random(9)) + QLatin1Char('.') + digits(random(6));
        compareBalance(i % 2 ? cell : mutated(cell));
    }
    QVERIFY(accepted > cellsOfARun / 4);
    QVERIFY(refused > cellsOfARun / 50);
}

/// Each in turn, for more than the cache holds: the first time, remembered, and after it began
/// anew.
void tst_ExportCells::dates_moreThanAreRemembered()
{
    for (int i = 0; i < 60000 && !QTest::currentTestFailed(); ++i) {
        const QDate day = QDate(2020, 1, 1).addDays(i % 1000);
        compareDate(stated(day, QTime(i / 1000 % 24, i / 24000, 17)));
        compareDate(QStringLiteral("2020-01-01 00:00:00.000"));
    }
    QVERIFY(accepted > 100000);
}

} // namespace

QTEST_GUILESS_MAIN(tst_ExportCells)
#include "tst_exportcells.moc"
