// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A line of the export: its cells, its record and its fate. What each cell comes to,
// tst_ImportCells and tst_ExportCells try.
#include "export/exportline.h"
#include "support/recordbuilder.h"

#include <QtTest>

Q_DECLARE_METATYPE(LineFate)

namespace {

/// Every column set, each to a value of its own.
RecordBuilder novak()
{
    return record()
        .titles(QStringLiteral("Ing."), QStringLiteral("PhD."))
        .phone(QStringLiteral("0905 123 456"))
        .employed(QDate(2015, 3, 1), QDate(2031, 12, 31))
        .branch(70, QStringLiteral("Sklad"))
        .calendar(8, QDate(2024, 1, 15))
        .relationState(1)
        .es(21)
        .balance(12.5)
        .supervisor(99);
}

/// The line of that person with another text in one cell.
QString lineWith(int index, const QString &cell)
{
    QStringList cells = novak().line().split(exportSeparator);
    cells[index] = cell;
    return cells.join(exportSeparator);
}

ExportLine read(const QString &line)
{
    return LineReader().read(line);
}

} // namespace

class tst_ExportLine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void columns_areThoseOfTheHeader();
    void read_fate_data();
    void read_fate();
    void read_fateAgreesWithTheRecord();
    void read_record();
    void read_recordThatIsNotTaken();
    void read_nothingOfAWrongCount();
    void read_cellsAreViewsOfTheLine();
    void read_cellsOfAShortLine();
    void read_otherColumnsAndSeparators_data();
    void read_otherColumnsAndSeparators();
    void read_sharesTextsWithTheRecordBefore();
    void read_remembersWhatTheTimeZoneSaid();
};

void tst_ExportLine::columns_areThoseOfTheHeader()
{
    QCOMPARE(exportColumns().size(), exportColumnCount);
    QCOMPARE(exportColumns().join(exportSeparator), exportHeader());
}

void tst_ExportLine::read_fate_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<LineFate>("fate");
    QTest::addColumn<int>("cellCount");
    const auto row = [](const char *name, const QString &line, LineFate fate, int count = 18) {
        QTest::newRow(name) << line << fate << count;
    };
    const QString whole = novak().line();
    row("whole", whole, LineFate::Taken);
    row("first name alone", lineWith(4, QString()), LineFate::Taken);
    row("surname alone", lineWith(3, QString()), LineFate::Taken);
    row("key and surname alone", QStringLiteral("1|1|||N|||||||||||||"), LineFate::Taken);
    row("empty", QString(), LineFate::WrongCount, 1);
    row("one cell", QStringLiteral("x"), LineFate::WrongCount, 1);
    row("17 cells", whole.left(whole.lastIndexOf(exportSeparator)), LineFate::WrongCount, 17);
    row("19 cells, the last one empty", whole + exportSeparator, LineFate::WrongCount, 19);
    row("bar in a title", lineWith(2, QStringLiteral("Ing.|Mgr.")), LineFate::WrongCount, 19);
    row("a million bars", QString(1000000, exportSeparator), LineFate::WrongCount, 1000001);
    row("header", exportHeader(), LineFate::NoKey);
    row("personal number 0", lineWith(0, QStringLiteral("0")), LineFate::NoKey);
    row("personal number unreadable", lineWith(0, QStringLiteral("12a")), LineFate::NoKey);
    row("ordinal 0", lineWith(1, QStringLiteral("0")), LineFate::NoKey);
    row("ordinal beyond 32 bits", lineWith(1, QStringLiteral("4294967296")), LineFate::NoKey);
    row("nothing at all", QString(17, exportSeparator), LineFate::NoKey);
    row("no names", QStringLiteral("1234|1||||||||||||||||"), LineFate::NoName);
}

void tst_ExportLine::read_fate()
{
    QFETCH(QString, line);
    QFETCH(int, cellCount);
    const ExportLine parsed = read(line);
    QTEST(parsed.fate, "fate");
    QCOMPARE(parsed.cellCount, cellCount);
}

void tst_ExportLine::read_fateAgreesWithTheRecord()
{
    for (int cells = 0; cells < 16; ++cells) {
        const auto cell = [cells](int bit) { return QString::number(cells >> bit & 1); };
        const auto name = [&](int bit) { return cell(bit).remove(QLatin1Char('0')); };
        const QString line = QStringList {cell(0), cell(1), QString(), name(2), name(3)}.join(
                                 exportSeparator)
            + QString(13, exportSeparator);
        const ExportLine parsed = read(line);
        QCOMPARE(parsed.fate == LineFate::Taken, parsed.record.isUsable());
        QCOMPARE(parsed.fate == LineFate::NoKey, cells % 4 != 3);
    }
}

void tst_ExportLine::read_record()
{
    const QString line = novak().line();
    QVERIFY(read(line).record == novak());
}

void tst_ExportLine::read_recordThatIsNotTaken()
{
    // Which cell it lacks can be seen.
    const QString line = lineWith(1, QStringLiteral("x"));
    QVERIFY(read(line).record == novak().pid(1234, 0));
}

void tst_ExportLine::read_nothingOfAWrongCount()
{
    const QString line = novak().line() + exportSeparator;
    QVERIFY(read(line).record == EmployeeRecord());
}

void tst_ExportLine::read_cellsAreViewsOfTheLine()
{
    const QString line = lineWith(2, QStringLiteral(" Ing. ")) + QStringLiteral("|more");
    const ExportLine parsed = read(line);
    const QStringList expected = line.split(exportSeparator);
    for (int i = 0; i < exportColumnCount; ++i) {
        QCOMPARE(parsed.cells.at(i).toString(), expected.at(i));
        QVERIFY(parsed.cells.at(i).string() == &line);
    }
}

void tst_ExportLine::read_cellsOfAShortLine()
{
    const QString line = QStringLiteral("1|");
    const ExportLine parsed = read(line);
    QCOMPARE(parsed.cellCount, 2);
    QCOMPARE(parsed.cells.at(0).toString(), QStringLiteral("1"));
    QVERIFY(parsed.cells.at(1).isEmpty() && !parsed.cells.at(1).isNull());
    QVERIFY(parsed.cells.at(2).isNull());
}

void tst_ExportLine::read_otherColumnsAndSeparators_data()
{
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("line");
    QTest::addColumn<LineFate>("fate");
    QTest::newRow("another separator") << 18 << novak().line() << LineFate::WrongCount;
    QTest::newRow("none") << 0 << QString() << LineFate::WrongCount;
    QTest::newRow("one") << 1 << QStringLiteral("1") << LineFate::NoKey;
    QTest::newRow("two") << 2 << QStringLiteral("1;1") << LineFate::NoName;
    QTest::newRow("up to the first name") << 4 << QStringLiteral("1;1;;N") << LineFate::Taken;
    const QString novakAndMore = novak().line().replace(exportSeparator, QLatin1Char(';'))
        + QStringLiteral(";;");
    QTest::newRow("twenty") << 20 << novakAndMore << LineFate::Taken;
}

void tst_ExportLine::read_otherColumnsAndSeparators()
{
    QFETCH(int, columns);
    QFETCH(QString, line);
    LineReader reader(columns, QLatin1Char(';'));
    QCOMPARE(reader.columnCount(), columns);
    QTEST(reader.read(line).fate, "fate");
}

void tst_ExportLine::read_sharesTextsWithTheRecordBefore()
{
    const EmployeeRecord before = novak();
    const QString line = lineWith(5, QStringLiteral("CSc."));
    const EmployeeRecord after = LineReader().read(line, before).record;
    QVERIFY(after.titul.constData() == before.titul.constData());
    QVERIFY(after.strediskoPopis.constData() == before.strediskoPopis.constData());
    QCOMPARE(after.titulZa, QStringLiteral("CSc."));
}

void tst_ExportLine::read_remembersWhatTheTimeZoneSaid()
{
    const QByteArray zone = qgetenv("TZ");
    // An hour that Bratislava skips.
    const QString line = lineWith(7, QStringLiteral("2024-03-31 02:30:00.000"));
    LineReader reader;
    qputenv("TZ", "Europe/Bratislava");
    const QDate skipped = reader.read(line).record.datumNastupu;
    qputenv("TZ", "UTC");
    const QDate remembered = reader.read(line).record.datumNastupu;
    const QDate asked = read(line).record.datumNastupu;
    qputenv("TZ", zone);
    QCOMPARE(skipped, QDate());
    QCOMPARE(remembered, QDate());
    QCOMPARE(asked, QDate(2024, 3, 31));
}

QTEST_GUILESS_MAIN(tst_ExportLine)
#include "tst_exportline.moc"
