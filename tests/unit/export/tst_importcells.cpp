// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The cells of an export line: numbers, texts and dates.
#include "support/workerfixture.h"

#include <QtTest>

#include <cmath>

namespace {

/// The 18 cells of a usable line.
QStringList cells()
{
    return lines({"1234", "1", "", "Ján", "Novák", "", "", "2015-03-01 00:00:00.000", "", "70",
                  "Sklad", "8", "", "11", "0", "0", "12.5", "99"});
}

QString lineWith(int index, const QString &cell)
{
    QStringList all = cells();
    all[index] = cell;
    return all.join(QLatin1Char('|'));
}

/// Eighteen names: only their number matters.
QStringList fields()
{
    QStringList names;
    for (int i = 0; i < 18; ++i)
        names.append(QStringLiteral("field"));
    return names;
}

void parse(WorkerFixture &f, const QString &line)
{
    f.worker.parseLine(line, fields(), QLatin1Char('|'));
}

/// The record of a line with this cell; the test fails if there is not exactly one.
EmployeeRecord recordWith(int index, const QString &cell)
{
    WorkerFixture f;
    parse(f, lineWith(index, cell));
    if (f.peer.importedRecords.size() != 1) {
        QTest::qFail("the line gave no record", __FILE__, __LINE__);
        return EmployeeRecord();
    }
    return f.peer.importedRecords.first();
}

} // namespace

class tst_ImportCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void parseLine_cellsInOrder();
    void parseLine_numbers_data();
    void parseLine_numbers();
    void parseLine_keepsLow16Bits_data();
    void parseLine_keepsLow16Bits();
    void parseLine_balance_data();
    void parseLine_balance();
    void parseLine_texts_data();
    void parseLine_texts();
    void parseLine_dates_data();
    void parseLine_dates();
    void parseLine_unreadableLastDayIsNoEnd();
    void dateFromText_takesTheFormatAsGiven();
    void dateFromText_timeSkippedByAClockChangeIsInvalid();
};

void tst_ImportCells::parseLine_cellsInOrder()
{
    WorkerFixture f;
    parse(f,
          QStringLiteral("1234|2|Ing.|Ján|Novák|PhD.|0905 123 456|2015-03-01 00:00:00.000|"
                         "2031-12-31 00:00:00.000|70|Sklad|8|2024-01-15 00:00:00.000|11|1|21|"
                         "12.5|99"));
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(f.peer.importedRecords.size(), 1);
    const EmployeeRecord employee = f.peer.importedRecords.first();
    QCOMPARE(employee.osobniCislo, 1234u);
    QCOMPARE(employee.poradoveCisloPP, 2u);
    QCOMPARE(employee.titul, QStringLiteral("Ing."));
    QCOMPARE(employee.jmeno, QStringLiteral("Ján"));
    QCOMPARE(employee.prijmeni, QStringLiteral("Novák"));
    QCOMPARE(employee.titulZa, QStringLiteral("PhD."));
    QCOMPARE(employee.telefon, QStringLiteral("0905 123 456"));
    QCOMPARE(employee.datumNastupu, QDate(2015, 3, 1));
    QCOMPARE(employee.datumVystupu, QDate(2031, 12, 31));
    QCOMPARE(employee.stredisko, 70u);
    QCOMPARE(employee.strediskoPopis, QStringLiteral("Sklad"));
    QCOMPARE(employee.calendarID, 8u);
    QCOMPARE(employee.kalendarPlatnostOd, QDate(2024, 1, 15));
    QCOMPARE(employee.typPracovnihoPomeru, ushort(11));
    QCOMPARE(employee.stavPracovnihoPomeru, ushort(1));
    QCOMPARE(employee.evidencniStav, ushort(21));
    QCOMPARE(employee.dovolenaZustatek, 12.5);
    QCOMPARE(employee.nadOsCis, 99u);
    // The file has no columns for these.
    QVERIFY(!employee.rsBegin.isValid());
    QVERIFY(!employee.rsEnd.isValid());
    QVERIFY(employee.rsText.isNull());
}

void tst_ImportCells::parseLine_numbers_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<uint>("number");
    QTest::newRow("number") << QStringLiteral("70") << 70u;
    QTest::newRow("zeros in front") << QStringLiteral("0070") << 70u;
    QTest::newRow("largest") << QStringLiteral("4294967295") << 4294967295u;
    QTest::newRow("beyond 32 bits") << QStringLiteral("4294967296") << 0u;
    QTest::newRow("far beyond") << QStringLiteral("99999999999999999999") << 0u;
    QTest::newRow("below 0") << QStringLiteral("-1") << 0u;
    QTest::newRow("empty") << QString() << 0u;
    QTest::newRow("letters") << QStringLiteral("abc") << 0u;
    QTest::newRow("letters behind") << QStringLiteral("70a") << 0u;
    QTest::newRow("base 16") << QStringLiteral("0x46") << 0u;
    QTest::newRow("decimal point") << QStringLiteral("70.0") << 0u;
    QTest::newRow("in thousands") << QStringLiteral("1,000") << 0u;
    QTest::newRow("with a blank") << QStringLiteral("1 000") << 0u;
}

void tst_ImportCells::parseLine_numbers()
{
    QFETCH(QString, cell);
    QFETCH(uint, number);
    QCOMPARE(recordWith(9, cell).stredisko, number);
    QCOMPARE(recordWith(11, cell).calendarID, number);
    QCOMPARE(recordWith(17, cell).nadOsCis, number);
    if (number != 0) {
        QCOMPARE(recordWith(0, cell).osobniCislo, number);
        QCOMPARE(recordWith(1, cell).poradoveCisloPP, number);
    }
}

void tst_ImportCells::parseLine_keepsLow16Bits_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<int>("number");
    QTest::newRow("number") << QStringLiteral("11") << 11;
    QTest::newRow("largest") << QStringLiteral("65535") << 65535;
    QTest::newRow("one more") << QStringLiteral("65536") << 0;
    QTest::newRow("and eleven") << QStringLiteral("65547") << 11;
    QTest::newRow("largest of 32 bits") << QStringLiteral("4294967295") << 65535;
    QTest::newRow("beyond 32 bits") << QStringLiteral("4294967307") << 0;
    QTest::newRow("below 0") << QStringLiteral("-1") << 0;
    QTest::newRow("empty") << QString() << 0;
    QTest::newRow("letters") << QStringLiteral("11a") << 0;
}

void tst_ImportCells::parseLine_keepsLow16Bits()
{
    QFETCH(QString, cell);
    QFETCH(int, number);
    QCOMPARE(int(recordWith(13, cell).typPracovnihoPomeru), number);
    QCOMPARE(int(recordWith(14, cell).stavPracovnihoPomeru), number);
    QCOMPARE(int(recordWith(15, cell).evidencniStav), number);
}

void tst_ImportCells::parseLine_balance_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<double>("balance");
    QTest::newRow("whole") << QStringLiteral("20") << 20.0;
    QTest::newRow("decimal point") << QStringLiteral("12.5") << 12.5;
    QTest::newRow("many digits") << QStringLiteral("12.3456789") << 12.3456789;
    QTest::newRow("below 0") << QStringLiteral("-3.25") << -3.25;
    QTest::newRow("decimal comma") << QStringLiteral("12,5") << 0.0;
    QTest::newRow("comma for thousands") << QStringLiteral("1,000.5") << 0.0;
    QTest::newRow("with a unit") << QStringLiteral("12.5 d") << 0.0;
    QTest::newRow("letters") << QStringLiteral("abc") << 0.0;
    QTest::newRow("empty") << QString() << 0.0;
}

void tst_ImportCells::parseLine_balance()
{
    QFETCH(QString, cell);
    QFETCH(double, balance);
    const double read = recordWith(16, cell).dovolenaZustatek;
    QVERIFY(read == balance);
    QVERIFY(!std::signbit(read) || balance < 0);
}

void tst_ImportCells::parseLine_texts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("apostrophe") << QStringLiteral("O'Brien");
    QTest::newRow("quotes") << QStringLiteral("\"Novák\"");
    QTest::newRow("backslash") << QStringLiteral("No\\vák");
    QTest::newRow("marker") << QStringLiteral("No%1vák %99");
    QTest::newRow("blanks around") << QStringLiteral("  Novák  ");
    QTest::newRow("blanks only") << QStringLiteral("   ");
    QTest::newRow("tabs") << QStringLiteral("\tNovák\t");
    QTest::newRow("letters of two bytes") << QStringLiteral("Ľubomír Škrečko");
    QTest::newRow("letter beyond 16 bits") << QString::fromUtf8("\xF0\x9D\x94\x91ovák");
    QTest::newRow("NULL as a word") << QStringLiteral("NULL");
}

void tst_ImportCells::parseLine_texts()
{
    QFETCH(QString, text);
    QCOMPARE(recordWith(2, text).titul, text);
    QCOMPARE(recordWith(3, text).jmeno, text);
    QCOMPARE(recordWith(4, text).prijmeni, text);
    QCOMPARE(recordWith(5, text).titulZa, text);
    QCOMPARE(recordWith(6, text).telefon, text);
    QCOMPARE(recordWith(10, text).strediskoPopis, text);

    // The same through the file.
    WorkerFixture f;
    f.writeExport({lineWith(4, text)});
    f.worker.loadAndParseData();
    QCOMPARE(f.peer.importedRecords.value(0).prijmeni, text);
}

void tst_ImportCells::parseLine_dates_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QDate>("date");
    const auto row = [](const char *cell, const QDate &date) {
        QTest::newRow(*cell ? cell : "empty") << QString::fromUtf8(cell) << date;
    };
    row("2024-03-31 00:00:00.000", QDate(2024, 3, 31));
    row("2024-03-10 00:00:00.000", QDate(2024, 3, 10));
    row("2024-10-27 02:30:00.000", QDate(2024, 10, 27));
    row("2024-11-03 01:30:00.000", QDate(2024, 11, 3));
    row("2024-02-29 00:00:00.000", QDate(2024, 2, 29));
    row("2023-10-02 23:59:59.999", QDate(2023, 10, 2));
    row("2023-10-02 14:12:58.001", QDate(2023, 10, 2));
    row("1970-01-01 00:00:00.000", QDate(1970, 1, 1));
    row("1969-12-31 23:00:00.000", QDate(1969, 12, 31));
    row("1900-01-01 00:00:00.000", QDate(1900, 1, 1));
    row("1753-01-01 00:00:00.000", QDate(1753, 1, 1));
    row("0001-01-01 00:00:00.000", QDate(1, 1, 1));
    row("2038-01-20 00:00:00.000", QDate(2038, 1, 20));
    row("9999-12-31 00:00:00.000", QDate(9999, 12, 31));
    // Any other form is no date.
    for (const char *cell : {"",
                             " ",
                             "2024-03-31",
                             "2024-03-31 ",
                             "2024-03-31 00:00",
                             "2024-03-31 00:00:00",
                             "2024-03-31 00:00:00.",
                             "2024-03-31 00:00:00.0",
                             "2024-03-31 00:00:00.00",
                             "2024-03-31 00:00:00.0000",
                             " 2024-03-31 00:00:00.000",
                             "2024-03-31 00:00:00.000 ",
                             "2024-03-31T00:00:00.000",
                             "2024-03-31  00:00:00.000",
                             "2024-03-3100:00:00.000",
                             "2024-3-31 00:00:00.000",
                             "2024-03-1 00:00:00.000",
                             "2024-03-31 0:00:00.000",
                             "2024-03-31 00:0:00.000",
                             "2024-03-31 00:00:0.000",
                             "24-03-31 00:00:00.000",
                             "20240-03-31 00:00:00.000",
                             "-2024-03-31 00:00:00.000",
                             "0000-01-01 00:00:00.000",
                             "2024/03/31 00:00:00.000",
                             "2024.03.31 00:00:00.000",
                             "2024-03-31 00.00.00.000",
                             "2024-03-31 00:00:00,000",
                             "2024-03-31 00:00:00:000",
                             "31.03.2024 00:00:00.000",
                             "31-03-2024 00:00:00.000",
                             "2024-31-03 00:00:00.000",
                             "2024-13-01 00:00:00.000",
                             "2024-00-10 00:00:00.000",
                             "2024-01-00 00:00:00.000",
                             "2024-01-32 00:00:00.000",
                             "2023-02-29 00:00:00.000",
                             "2024-04-31 00:00:00.000",
                             "2024-03-31 24:00:00.000",
                             "2024-03-31 23:60:00.000",
                             "2024-03-31 23:59:60.000",
                             "2024-03-31 00:00:00.000Z",
                             "2024-03-31 00:00:00.000+01:00",
                             "2024-03-31 12:00:00.000 AM",
                             "2024-Mar-31 00:00:00.000",
                             "2024-03-3a 00:00:00.000",
                             "x2024-03-31 00:00:00.000",
                             "'2024-03-31 00:00:00.000'",
                             "20240331",
                             "1711839600",
                             "NULL"})
        row(cell, QDate());
}

void tst_ImportCells::parseLine_dates()
{
    QFETCH(QString, cell);
    QFETCH(QDate, date);
    QCOMPARE(recordWith(7, cell).datumNastupu, date);
    QCOMPARE(recordWith(8, cell).datumVystupu, date);
    QCOMPARE(recordWith(12, cell).kalendarPlatnostOd, date);
}

void tst_ImportCells::parseLine_unreadableLastDayIsNoEnd()
{
    QVERIFY(recordWith(8, QStringLiteral("2001-01-01")).isCurrent());
    QVERIFY(!recordWith(8, QStringLiteral("2001-01-01 00:00:00.000")).isCurrent());
}

void tst_ImportCells::dateFromText_takesTheFormatAsGiven()
{
    const QString format = QStringLiteral("dd.MM.yyyy hh:mm");
    QCOMPARE(THRWorker::dateFromText(QStringLiteral("31.03.2024 12:00"), format),
             QDate(2024, 3, 31));
    QCOMPARE(THRWorker::dateFromText(QStringLiteral("2024-03-31 00:00:00.000"), format), QDate());
    QCOMPARE(THRWorker::dateFromText(QString(), format), QDate());
    QVERIFY(THRWorker::dateFromText(QString(), format).isNull());
}

void tst_ImportCells::dateFromText_timeSkippedByAClockChangeIsInvalid()
{
    const QString format = QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz");
    const QByteArray zone = qgetenv("TZ");
    const QDate inBratislava = THRWorker::dateFromText(QStringLiteral("2024-03-31 02:30:00.000"),
                                                       format);
    const QDate inNewYork = THRWorker::dateFromText(QStringLiteral("2024-03-10 02:30:00.000"),
                                                    format);
    QCOMPARE(inBratislava, zone == "Europe/Bratislava" ? QDate() : QDate(2024, 3, 31));
    QCOMPARE(inNewYork, zone == "America/New_York" ? QDate() : QDate(2024, 3, 10));
}

QTEST_GUILESS_MAIN(tst_ImportCells)
#include "tst_importcells.moc"
