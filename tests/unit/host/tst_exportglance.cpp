// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A quick look at an export: fates add up, and each matter is told once with its first place.
#include "host/exportcheck/exportglance.h"

#include <QBuffer>
#include <QtTest>

namespace {

const char header[]
    = "OsobniCislo|PoradoveCisloPP|Titul|Jmeno|Prijmeni|TitulZa|Telefon|DatumNastupu|"
      "DatumVystupu|Stredisko|StrediskoPopis|Kalendar|KalendarPlatnostOd|"
      "TypPracovnihoPomeru|StavPracovnihoPomeru|EvidencniStav|DovolenaZustatek|"
      "NadrizenyOsobniCislo\n";
const char sound[]
    = "4711|1|Ing.|\xc5\xbdofia|Nov\xc3\xa1|||2020-01-01 00:00:00.000||100|Central|1|"
      "2020-01-01 00:00:00.000|11|1|0|12.5|0\n";

/// The sound line with another cell, counted from 1.
QByteArray with(int cell, const char *text)
{
    QList<QByteArray> cells = QByteArray(sound).trimmed().split('|');
    cells[cell - 1] = text;
    return cells.join('|') + '\n';
}

ExportGlance glance(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return glanceAtExport(&buffer);
}

} // namespace

class tst_ExportGlance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fates_addUp();
    void findings_data();
    void findings();
    void findings_nameNumberAndFirstPlace();
    void nothingUsable_guessesWhy_data();
    void nothingUsable_guessesWhy();
    void sum_addsFatesAndFindings();
};

void tst_ExportGlance::fates_addUp()
{
    const FateCounts fates = glance(QByteArray(header) + "\n" + sound + "  \r\n" + header + "1|2\n"
                                    + sound + "5|1\n")
                                 .fates;
    QCOMPARE(fates.header, 1);
    QCOMPARE(fates.blank, 2);
    QCOMPARE(fates.taken, 2);
    QCOMPARE(fates.dropped, 3); // the second header too
    QCOMPARE(fates.lines(), 8);
}

void tst_ExportGlance::findings_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("codes");
    const auto row = [](const char *name, const QByteArray &line, const char *codes) {
        QTest::newRow(name) << line << codes;
    };
    row("sound", sound, "");
    row("sound without options", with(9, ""), "");
    row("zeros", with(17, "0.00"), "");
    row("17 cells", QByteArray("4711|1|||||||||||||||\n"), "E-LINE-CELLS");
    row("no number", with(1, "x"), "E-LINE-KEY");
    row("ordinal 0", with(2, "0"), "E-LINE-KEY");
    row("no name", QByteArray(with(4, "")).replace("Nov\xc3\xa1", ""), "E-LINE-NAME");
    row("date without time", with(8, "2020-01-01"), "E-CELL-DATE");
    row("date, day first", with(9, "31.12.2030 00:00:00.000"), "E-CELL-DATE");
    row("date that is none", with(13, "2023-02-29 00:00:00.000"), "E-CELL-DATE");
    row("decimal comma", with(17, "12,5"), "E-CELL-NUMBER");
    row("33 bits", with(10, "4294967296"), "E-CELL-NUMBER");
    row("17 bits", with(14, "65547"), "E-CELL-NUMBER");
    row("blank within", with(18, "1 001"), "E-CELL-NUMBER");
    row("text in a text", with(11, "12,5 x"), "");
    row("Windows-1250", with(5, "Nov\xe1"), "E-TEXT-UTF8");
    row("the sign itself", with(5, "Nov\xef\xbf\xbd"), "");
}

void tst_ExportGlance::findings()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, codes);
    QStringList found;
    const QVector<Finding> findings = glance(QByteArray(header) + sound + line).findings;
    for (const Finding &finding : findings)
        found.append(finding.code);
    QCOMPARE(found.join(QLatin1Char(' ')), codes);
}

void tst_ExportGlance::findings_nameNumberAndFirstPlace()
{
    const QVector<Finding> findings = glance(QByteArray(header) + sound + with(8, "2020-01-01")
                                             + with(9, "soon") + "1|2|3\n")
                                          .findings;
    QCOMPARE(findings.size(), 2);
    QCOMPARE(
        findingLine(findings.at(0)),
        QStringLiteral("lines of the export dropped for a wrong number of cells: 1 (first: line 5, "
                       "3 cells in place of 18); correct the export and put it there again"));
    QCOMPARE(
        findingLine(findings.at(1)),
        QStringLiteral("dates of the export that count as empty: 2 (first: line 3, DatumNastupu "
                       "'2020-01-01'); write dates as 2024-03-31 00:00:00.000"));
}

void tst_ExportGlance::nothingUsable_guessesWhy_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("text");
    const QByteArray lines = QByteArray(header) + sound;
    QTest::newRow("empty") << QByteArray() << "the export is empty";
    QTest::newRow("header only") << QByteArray(
        header) << "the export has no usable line among 1; it ends with its header";
    QTest::newRow("semicolons") << QByteArray(lines).replace('|', ';')
                                << "the export has no usable line among 2; its cells are separated "
                                   "by semicolons, not by '|'";
    QTest::newRow("tabs") << QByteArray(lines).replace('|', '\t')
                          << "the export has no usable line among 2; its cells are separated by "
                             "tabs, not by '|'";
    QTest::newRow("cells missing")
        << QByteArray("1|2|3\n")
        << "the export has no usable line among 1; line 1 has 3 cells in "
           "place of 18";
    QTest::newRow("keys missing") << with(1, "x")
                                  << "the export has no usable line among 1; line 1 has no "
                                     "personal number or no ordinal ('x', '1')";
    QTest::newRow("names missing") << QByteArray(with(4, "")).replace("Nov\xc3\xa1", "")
                                   << "the export has no usable line among 1; line 1 has no name";
    QTest::newRow("long line") << QByteArray(header).trimmed() + "|\n"
                               << "the export has no usable line among 1; line 1 has 19 cells in "
                                  "place of 18";
    QByteArray utf16("\xff\xfe");
    for (const char byte : lines) {
        utf16 += byte;
        utf16 += '\0';
    }
    QTest::newRow("UTF-16") << utf16
                            << "the export has no usable line among 3; it looks like UTF-16";
}

void tst_ExportGlance::nothingUsable_guessesWhy()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, text);
    const QVector<Finding> findings = glance(content).findings;
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().code, QStringLiteral("E-FILE-NOTHING"));
    QCOMPARE(findings.first().text, text);
}

void tst_ExportGlance::sum_addsFatesAndFindings()
{
    ExportGlance sum = glance(QByteArray(header) + sound + with(9, "x"));
    sum += glance(QByteArray(sound) + "\n1|2\n");
    QCOMPARE(sum.fates.taken, 3);
    QCOMPARE(sum.fates.lines(), 6);
    QCOMPARE(sum.findings.size(), 2);
}

QTEST_GUILESS_MAIN(tst_ExportGlance)
#include "tst_exportglance.moc"
