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

/// The sound line with another cell, counted from 1, of another person.
QByteArray with(int cell, const char *text, int number)
{
    QList<QByteArray> cells = QByteArray(sound).trimmed().split('|');
    cells[0] = QByteArray::number(number);
    cells[cell - 1] = text;
    return cells.join('|') + '\n';
}

ExportGlance glance(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    ExportCheckSettings settings;
    settings.today = QDate(2026, 3, 17);
    return glanceAtExport(&buffer, settings);
}

} // namespace

class tst_ExportGlance : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fates_addUp();
    void findings_nameNumberAndFirstPlace();
    void notesAreNotTold();
    void nothingUsable_isTheOnlyFinding();
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

void tst_ExportGlance::findings_nameNumberAndFirstPlace()
{
    const QVector<Finding> findings = glance(QByteArray(header) + sound
                                             + with(8, "2020-01-01", 4712) + with(9, "soon", 4713)
                                             + "1|2|3\n")
                                          .findings;
    QCOMPARE(findings.size(), 2);
    QCOMPARE(findingLine(findings.at(0)),
             QStringLiteral("date that is lost, 2 times in the export, first in line 3: "
                            "DatumNastupu '2020-01-01' is no date for the plugin: it has no time; "
                            "it counts as empty: the first day becomes 1 January 2000; write it as "
                            "2024-03-31 00:00:00.000"));
    QCOMPARE(findingLine(findings.at(1)),
             QStringLiteral("line 5 of the export: the line has 3 cells in place of 18; the line "
                            "is dropped; the plugin says nothing about it below log level 3; "
                            "correct the text in the HR system and export again"));
}

void tst_ExportGlance::notesAreNotTold()
{
    const ExportGlance seen = glance(QByteArray(header) + with(17, "-2.5", 4712));
    QVERIFY(seen.findings.isEmpty());
    QVERIFY(!seen.sawUseless);
}

void tst_ExportGlance::nothingUsable_isTheOnlyFinding()
{
    const ExportGlance seen = glance(QByteArray(header) + "1|2|3\n5|1\n");
    QVERIFY(seen.sawUseless);
    QCOMPARE(seen.findings.size(), 1);
    QCOMPARE(seen.findings.first().text,
             QStringLiteral("the export has no usable line: lines: 3; line 2: the line "
                            "has 3 cells in place of 18"));
}

void tst_ExportGlance::sum_addsFatesAndFindings()
{
    ExportGlance sum = glance(QByteArray(header) + sound + with(9, "x", 4712));
    sum += glance(QByteArray(sound) + "\n1|2\n");
    QCOMPARE(sum.fates.taken, 3);
    QCOMPARE(sum.fates.lines(), 6);
    QCOMPARE(sum.findings.size(), 2);
}

QTEST_GUILESS_MAIN(tst_ExportGlance)
#include "tst_exportglance.moc"
