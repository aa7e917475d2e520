// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a check of an export finds, line by line.
#include "host/company/exportwriter.h"
#include "host/exportcheck/cellcheck.h"
#include "host/exportcheck/exportcheck.h"
#include "host/exportcheck/linefault.h"
#include "host/exportcheck/textcheck.h"

#include <QBuffer>
#include <QtTest>

namespace {

const char sound[] = "4711|1|Ing.|Jana|Nov\xc3\xa1kov\xc3\xa1|PhD.|0905 123 456|"
                     "2020-01-01 00:00:00.000|2030-12-31 00:00:00.000|120|Sklad|3|"
                     "2024-01-01 00:00:00.000|11|1|0|12.5|4711";

/// The sound line with other cells, counted from 1.
QByteArray line(const QMap<int, QByteArray> &cells)
{
    QList<QByteArray> all = QByteArray(sound).split('|');
    for (auto cell = cells.begin(); cell != cells.end(); ++cell)
        all[cell.key() - 1] = cell.value();
    return all.join('|') + '\n';
}

ExportCheck check(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    ExportCheckSettings settings;
    settings.today = QDate(2026, 3, 17);
    return checkExport(&buffer, settings);
}

/// "CODE line:column" for each, but for the note that the sound person is their own supervisor.
QString places(const ExportCheck &checked)
{
    QStringList texts;
    for (const ExportFinding &found : checked.findings) {
        if (qstrcmp(found.kind->code, "N-PERSON-SELF") != 0)
            texts.append(QStringLiteral("%1 %2:%3")
                             .arg(QLatin1String(found.kind->code))
                             .arg(found.line)
                             .arg(found.column));
    }
    return texts.join(QStringLiteral(", "));
}

ExportFinding findingOf(const ExportCheck &checked, const char *code)
{
    for (const ExportFinding &found : checked.findings) {
        if (qstrcmp(found.kind->code, code) == 0)
            return found;
    }
    return {};
}

} // namespace

class tst_ExportCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneLine_data();
    void oneLine();
    void severalLines_data();
    void severalLines();
    void uselessFile_guessesWhy_data();
    void uselessFile_guessesWhy();
    void becomes_tellsWhatThePluginReads_data();
    void becomes_tellsWhatThePluginReads();
    void lineFault_data();
    void lineFault();
    void dateFault_data();
    void dateFault();
    void encoding_isGuessed_data();
    void encoding_isGuessed();
    void zerosInFront_areUsualIfMostHaveThem();
    void acrossLines_allAreNamed();
    void hiddenTexts_leaveNumbersAndColumns();
};

void tst_ExportCheck::oneLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("found");
    const auto row = [](const char *name, const QByteArray &text, const char *found) {
        QTest::newRow(name) << text << found;
    };
    const auto cell = [](int column, const char *text) { return line({{column, text}}); };

    row("sound", line({}), "");
    row("sound, all that may be empty",
        line({{3, ""},
              {4, ""},
              {6, ""},
              {7, ""},
              {9, ""},
              {10, ""},
              {12, ""},
              {13, ""},
              {17, ""},
              {18, ""}}),
        "");
    row("Windows line end", line({}).trimmed() + "\r\n", "");
    row("17 cells", line({}).replace("|120|", "|"), "E-LINE-CELLS 1:0");
    row("19 cells", line({{5, "No|vak"}}), "E-LINE-CELLS 1:0");
    row("no number", cell(1, "x"), "E-LINE-KEY 1:0");
    row("ordinal 0", cell(2, "0"), "E-LINE-KEY 1:0");
    row("no name", line({{4, ""}, {5, ""}}), "E-LINE-NAME 1:0");
    row("date without a time", cell(8, "2020-01-01"), "E-CELL-DATE 1:8");
    row("last day without a time", cell(9, "2030-01-01"), "E-CELL-DATE 1:9");
    row("no such day", cell(13, "2023-02-29 00:00:00.000"), "E-CELL-DATE 1:13");
    row("no first day", cell(8, ""), "W-PERSON-BEGIN 1:8");
    row("own supervisor of a type without one", line({{14, "51"}, {18, "9"}}), "");
    row("end of time", cell(9, "9999-12-31 00:00:00.000"), "E-CELL-YEAR 1:9");
    row("before 1970", cell(8, "1969-12-31 00:00:00.000"), "E-CELL-YEAR 1:8");
    row("a plan before 1970", cell(13, "1900-01-01 00:00:00.000"), "E-CELL-YEAR 1:13");
    row("a plan of any year", cell(13, "9999-01-01 00:00:00.000"), "");
    row("letter in a number", cell(10, "1O2"), "E-CELL-NUMBER 1:10");
    row("33 bits", cell(10, "4294967296"), "E-CELL-RANGE 1:10");
    row("32 bits", cell(10, "4294967295"), "");
    row("17 bits", cell(14, "65547"), "E-CELL-RANGE 1:14");
    row("plus", cell(10, "+120"), "W-CELL-NUMBER 1:10");
    row("zero in front", cell(10, "0120"), "W-CELL-NUMBER 1:10");
    row("blank in front", cell(10, " 120"), "W-CELL-NUMBER 1:10");
    row("minus", cell(10, "-120"), "E-CELL-NUMBER 1:10");
    row("decimal comma", cell(17, "12,5"), "E-CELL-BALANCE 1:17");
    row("not finite", cell(17, "inf"), "E-CELL-BALANCE 1:17");
    row("beyond the fund", cell(17, "21474836.48"), "E-CELL-BALANCE 1:17");
    row("the most that fits", cell(17, "21474836.47"), "");
    row("lost hundredth", cell(17, "0.29"), "W-CELL-BALANCE 1:17");
    row("thousandths", cell(17, "12.345"), "W-CELL-BALANCE 1:17");
    row("zeros behind", cell(17, "12.3400"), "");
    row("plus in front", cell(17, "+12.5"), "W-CELL-NUMBER 1:17");
    row("exponent", cell(17, "1e1"), "W-CELL-NUMBER 1:17");
    row("zero width",
        cell(5,
             "Nov\xe2\x80\x8b"
             "ak"),
        "W-TEXT-CONTROL 1:5");
    row("negative", cell(17, "-2.5"), "N-CELL-NEGATIVE 1:17");
    row("calendar without a date", cell(13, ""), "E-CELL-CALENDAR 1:13");
    row("calendar without a date of somebody who has ended", line({{13, ""}, {15, "4"}}), "");
    row("calendar without a branch", line({{10, "0"}, {13, ""}}), "");
    row("neither", line({{12, ""}, {13, ""}}), "");
    row("Windows-1250", cell(5, "Nov\xe1k"), "E-TEXT-UTF8 1:5");
    row("the sign itself", cell(5, "Nov\xef\xbf\xbdk"), "");
    row("tab", cell(5, "Nov\tak"), "W-TEXT-CONTROL 1:5");
    row("four bytes", cell(4, "Jana \xf0\x9f\x99\x82"), "E-TEXT-PLANE 1:4");
    row("mark", "\xef\xbb\xbf" + line({}), "N-TEXT-MARK 1:0");
    row("NUL", line({{18, QByteArray("4711\0x", 6)}}), "E-TEXT-NUL 1:0");
    row("key of 33 bits", line({{1, "429496729"}, {2, "6"}, {18, ""}}), "E-PERSON-ZERO 1:1");
    row("ended", cell(9, "2026-03-16 00:00:00.000"), "N-PERSON-ENDED 1:9");
    row("ends today", cell(9, "2026-03-17 00:00:00.000"), "");
    row("ended, and the state says so", line({{9, "2026-03-16 00:00:00.000"}, {15, "4"}}), "");
    row("end before begin", cell(9, "2019-12-31 00:00:00.000"), "W-PERSON-DATES 1:9");
    row("supervisor elsewhere", cell(18, "9"), "N-PERSON-SUPERVISOR 1:18");
}

void tst_ExportCheck::oneLine()
{
    QFETCH(QByteArray, text);
    const QByteArray other = line({{1, "12"}, {10, "7"}, {18, ""}});
    QTEST(places(check(text + other)), "found");
}

void tst_ExportCheck::severalLines_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("found");
    const QByteArray first = line({});
    QTest::newRow("header first") << headerLine() + "\n" + first << "";
    QTest::newRow("header again") << first + headerLine() + "\n"
                                  << "W-LINE-HEADER 2:0";
    QTest::newRow("header in lower case")
        << headerLine().toLower() + "\n" + first << "W-FILE-HEADER 1:0";
    QTest::newRow("cut in the last line")
        << first + line({{1, "5"}, {18, ""}}).left(60) << "E-FILE-CUT 2:0";
    QTest::newRow("cut in the last cell") << first + line({{1, "5"}}).trimmed() << "N-FILE-END 2:0";
    QTest::newRow("twice, alike") << first + "\n" + first << "W-PERSON-TWICE 3:1";
    QTest::newRow("shared key") << line({{1, "12"}, {2, "3"}, {18, ""}})
            + line({{1, "1"}, {2, "23"}, {18, ""}})
                                << "E-PERSON-KEY 2:1";
    QTest::newRow("two relations") << first + line({{2, "2"}}) << "";
    QTest::newRow("circle") << line({{18, "12"}}) + line({{1, "12"}, {18, "4711"}})
                            << "W-PERSON-CIRCLE 2:18";
    QTest::newRow("circle of three, and one below") << line({{18, "3"}})
            + line({{1, "3"}, {18, "4"}}) + line({{1, "4"}, {18, "4711"}})
            + line({{1, "5"}, {18, "3"}}) << "W-PERSON-CIRCLE 3:18";
    QTest::newRow("blank for its NUL") << first + QByteArray("\0x", 2) + "\n \n"
                                       << "E-TEXT-NUL 2:0";
    QTest::newRow("spelled as supervisor")
        << first + line({{1, "5"}, {18, "04711"}}) << "W-CELL-NUMBER 2:18, W-PERSON-SPELLING 2:18";
    QTest::newRow("spelled twice")
        << first + line({{1, "04711"}, {2, "2"}}) << "W-CELL-NUMBER 2:1, W-PERSON-SPELLING 2:1";
}

void tst_ExportCheck::severalLines()
{
    QFETCH(QByteArray, text);
    const ExportCheck checked = check(text);
    QTEST(places(checked), "found");
}

void tst_ExportCheck::uselessFile_guessesWhy_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("why");
    const QByteArray lines = headerLine() + "\n" + line({});
    QTest::newRow("empty") << QByteArray() << "it is empty";
    QTest::newRow("blank") << QByteArray("\n \n") << "lines: 2; all are blank";
    QTest::newRow("header only") << headerLine() + "\n"
                                 << "lines: 1; it ends with its header";
    QTest::newRow("semicolons") << QByteArray(lines).replace('|', ';')
                                << "lines: 2; its cells are separated by semicolons, not by '|'";
    QTest::newRow("tabs") << QByteArray(lines).replace('|', '\t')
                          << "lines: 2; its cells are separated by tabs, not by '|'";
    QTest::newRow("carriage returns") << QByteArray(lines).replace('\n', '\r')
                                      << "lines: 1; its lines end with carriage returns only";
    QTest::newRow("cells missing")
        << QByteArray("1|2|3\n") << "lines: 1; line 1: the line has 3 cells in place of 18";
    QTest::newRow("keys missing")
        << line({{1, "x"}})
        << "lines: 1; line 1: OsobniCislo '…' and PoradoveCisloPP '1' are read as 0 and 1, and "
           "neither may be 0";
    QByteArray utf16("\xff\xfe");
    for (const char byte : lines) {
        utf16 += byte;
        utf16 += '\0';
    }
    QTest::newRow("UTF-16") << utf16 << "lines: 3; it looks like UTF-16";
}

void tst_ExportCheck::uselessFile_guessesWhy()
{
    QFETCH(QByteArray, content);
    const ExportCheck checked = check(content);
    QVERIFY(checked.isUseless());
    QCOMPARE(QByteArray(checked.findings.constFirst().kind->code), QByteArray("E-FILE-NOTHING"));
    QTEST(checked.findings.constFirst().values.constFirst(), "why");
}

void tst_ExportCheck::becomes_tellsWhatThePluginReads_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QByteArray>("cell");
    QTest::addColumn<QString>("becomes");
    QTest::newRow("16 bits") << 14 << QByteArray("65547") << "it is read as 11";
    QTest::newRow("32 bits") << 10 << QByteArray("4294967396") << "it is read as 0";
    QTest::newRow("plus") << 10 << QByteArray("+7") << "it is read as 7";
    QTest::newRow("branch") << 10 << QByteArray("x")
                            << "it is read as 0: the branch in the person's row is emptied";
    QTest::newRow("begin") << 8 << QByteArray("1.1.2020")
                           << "it counts as empty: the first day becomes 1 January 2000";
    QTest::newRow("comma") << 17 << QByteArray("12,5")
                           << "it is read as 0, and the leave in the fund is corrected to that";
}

void tst_ExportCheck::becomes_tellsWhatThePluginReads()
{
    QFETCH(int, column);
    QFETCH(QByteArray, cell);
    const ExportCheck checked = check(line({{column, cell}, {18, ""}}));
    QCOMPARE(checked.findings.size(), 1);
    QTEST(told(checked.findings.constFirst()).becomes, "becomes");
}

void tst_ExportCheck::lineFault_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("fault");
    QTest::newRow("a bar in a date's neighbour")
        << line({{11, "Sklad|1"}}) << "one '|' too many seems to be in StrediskoPopis";
    QTest::newRow("in the phone") << line({{7, "0905|123"}})
                                  << "one '|' too many seems to be in Telefon";
    QTest::newRow("between dates") << line({}).replace("000|2030", "0002030")
                                   << "a '|' seems to be missing in or behind DatumNastupu";
    QTest::newRow("between names") << line({}).replace("Jana|", "Jana")
                                   << "a '|' seems to be missing between Titul and TitulZa";
    QTest::newRow("two lines") << line({}).trimmed() + line({})
                               << "it seems to be two lines without a line end between them";
    QTest::newRow("few cells") << QByteArray("a|b") << "";
}

void tst_ExportCheck::lineFault()
{
    QFETCH(QByteArray, text);
    QTEST(::lineFault(QString::fromUtf8(text).trimmed()), "fault");
}

void tst_ExportCheck::dateFault_data()
{
    QTest::addColumn<QString>("cell");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *cell, const char *fault) {
        QTest::newRow(cell) << QString::fromUtf8(cell) << QString::fromUtf8(fault);
    };
    row("2024-03-31", "it has no time");
    row("2024-03-31 00:00:00", "it has no milliseconds");
    row("2024-03-31T00:00:00.000", "a T stands in place of the blank");
    row("31.03.2024 00:00:00.000", "the day stands first");
    row("31. 3. 2024", "the day stands first");
    row("3/31/24", "the month stands first");
    row("3/5/24", "the day stands first");
    row(" 2024-03-31 00:00:00.000", "a blank stands before or behind it");
    row("2024-3-31 00:00:00.000", "its month or its day has one digit");
    row("2024-03-31 00:00:00.0", "its milliseconds do not have three digits");
    row("2024/03/31 00:00:00.000", "its parts are not joined by '-'");
    row("24-03-31 00:00:00.000", "its year has two digits");
    row("0000-00-00 00:00:00.000", "zeros stand for an empty date");
    row("20240331", "its parts are not separated, and it has no time");
    row("2024-02-30 00:00:00.000", "there is no such day");
    row("2024-03-31 25:00:00.000", "there is no such time");
    row("soon", "it is no date and time");
}

void tst_ExportCheck::dateFault()
{
    QFETCH(QString, cell);
    QTEST(::dateFault(cell), "fault");
}

void tst_ExportCheck::encoding_isGuessed_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("encoding");
    QTest::addColumn<QString>("text");
    QTest::newRow("1250") << QByteArray("Luk\xe1\x9a") << "Windows-1250" << QStringLiteral("Lukáš");
    QTest::newRow("8859-2") << QByteArray("Luk\xe1\xb9") << "ISO-8859-2" << QStringLiteral("Lukáš");
    QTest::newRow("either") << QByteArray("Nov\xe1k") << "Windows-1250" << QStringLiteral("Novák");
}

void tst_ExportCheck::encoding_isGuessed()
{
    QFETCH(QByteArray, bytes);
    QTEST(likelyEncoding(bytes), "encoding");
    QTEST(decoded(bytes, likelyEncoding(bytes)), "text");
}

void tst_ExportCheck::zerosInFront_areUsualIfMostHaveThem()
{
    QByteArray lines;
    for (int person = 1; person <= 4; ++person)
        lines += line({{1, "000" + QByteArray::number(person)}, {18, ""}});
    QCOMPARE(places(check(lines + line({}))), QString());
    QCOMPARE(places(check(lines + line({}) + line({{1, "5"}, {10, "0120"}}))),
             QStringLiteral("W-CELL-NUMBER 6:10, N-PERSON-SUPERVISOR 6:18")
                 .section(QLatin1Char(','), 0, 0));
}

void tst_ExportCheck::acrossLines_allAreNamed()
{
    const ExportCheck checked = check(line({}) + line({{1, "12"}, {18, ""}})
                                      + line({{7, "0905"}, {11, "x"}}));
    const ExportFinding twice = findingOf(checked, "W-PERSON-TWICE");
    QCOMPARE(twice.lines, QVector<int>({1, 3}));
    QCOMPARE(twice.line, 3);
    QCOMPARE(told(twice).text,
             QStringLiteral("4711.1 stands in the export 2 times; the lines "
                            "differ in Telefon, StrediskoPopis"));
    QVERIFY(told(twice).becomes.contains(QStringLiteral("back and forth")));
}

void tst_ExportCheck::hiddenTexts_leaveNumbersAndColumns()
{
    const ExportCheck checked = check(line({{5, "Nov\tak"}}));
    const ExportFinding found = findingOf(checked, "W-TEXT-CONTROL");
    QCOMPARE(told(found, PersonalTexts::Hidden).text,
             QStringLiteral("Prijmeni '…' holds the invisible character U+…"));
    const ExportCheck numbers = check(line({{10, "x"}}));
    QCOMPARE(told(findingOf(numbers, "E-CELL-NUMBER"), PersonalTexts::Hidden).text,
             QStringLiteral("Stredisko '…' is no number"));
}

QTEST_GUILESS_MAIN(tst_ExportCheck)
#include "tst_exportcheck.moc"
