// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of people, most of them of more than one cell or line.
#include "host/company/exportwriter.h"
#include "host/company/sheetdamage.h"

namespace {

HurtText withCells(ExportSheet *sheet, int line, int column, const QByteArray &cell,
                   int otherColumn, const QByteArray &otherCell)
{
    sheet->cell(line, column) = cell;
    sheet->cell(line, otherColumn) = otherCell;
    return {sheet->text(), {{line, column}, {line, otherColumn}}};
}

HurtText noName(ExportSheet *sheet, Draw *draw)
{
    return withCells(sheet, sheet->drawLine(draw), ExportColumn::Name, QByteArray(),
                     ExportColumn::Surname, QByteArray());
}

HurtText blankName(ExportSheet *sheet, Draw *draw)
{
    return withCells(sheet, sheet->drawLine(draw), ExportColumn::Name, " ", ExportColumn::Surname,
                     " ");
}

HurtText lastDayBeforeFirst(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    sheet->cell(line, ExportColumn::End) = "1989-12-31 00:00:00.000";
    return {sheet->text(), {{line, ExportColumn::End}}};
}

HurtText lastDayPassed(ExportSheet *sheet, Draw *draw)
{
    return withCells(sheet, sheet->drawLine(draw), ExportColumn::Begin, "1989-12-01 00:00:00.000",
                     ExportColumn::End, "1989-12-31 00:00:00.000");
}

HurtText numberAndOrdinalExchanged(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    const QByteArray number = sheet->cell(line, ExportColumn::Number);
    const QByteArray ordinal = sheet->cell(line, ExportColumn::Ordinal);
    return withCells(sheet, line, ExportColumn::Number, ordinal, ExportColumn::Ordinal, number);
}

HurtText ownSupervisor(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    sheet->cell(line, ExportColumn::Supervisor) = sheet->cell(line, ExportColumn::Number);
    return {sheet->text(), {{line, ExportColumn::Supervisor}}};
}

/// Each of them has the next one as supervisor, and the last one the first.
HurtText circle(ExportSheet *sheet, const QVector<int> &lines)
{
    QVector<Hurt> hurts;
    for (int i = 0; i < lines.size(); ++i) {
        const int next = lines.at((i + 1) % lines.size());
        sheet->cell(lines.at(i), ExportColumn::Supervisor) = sheet->cell(next,
                                                                         ExportColumn::Number);
        hurts.append({lines.at(i), ExportColumn::Supervisor});
    }
    return {sheet->text(), hurts};
}

HurtText circleOfSupervisors(ExportSheet *sheet, Draw *draw)
{
    return circle(sheet, sheet->drawLines(draw, 2));
}

HurtText circleOfThreeSupervisors(ExportSheet *sheet, Draw *draw)
{
    return circle(sheet, sheet->drawLines(draw, 3));
}

/// 12/3 and 1/23 are both 123.
HurtText sharedKey(ExportSheet *sheet, Draw *draw)
{
    const QVector<int> lines = sheet->drawLines(draw, 2);
    const HurtText first = withCells(sheet, lines.first(), ExportColumn::Number, "12",
                                     ExportColumn::Ordinal, "3");
    const HurtText both = withCells(sheet, lines.last(), ExportColumn::Number, "1",
                                    ExportColumn::Ordinal, "23");
    return {both.text, first.hurts + both.hurts};
}

/// The line once more at the end, with another cell; the same one for column 0.
HurtText twice(ExportSheet *sheet, Draw *draw, int column, const QByteArray &cell)
{
    sheet->append(sheet->line(sheet->drawLine(draw)));
    if (column > 0)
        sheet->cell(sheet->lineCount(), column) = cell;
    return {sheet->text(), {{sheet->lineCount(), 0}}};
}

HurtText personTwice(ExportSheet *sheet, Draw *draw)
{
    return twice(sheet, draw, ExportColumn::Phone, "0905 000 000");
}

HurtText personTwiceTheSame(ExportSheet *sheet, Draw *draw)
{
    return twice(sheet, draw, 0, QByteArray());
}

HurtText personTwiceInBranches(ExportSheet *sheet, Draw *draw)
{
    return twice(sheet, draw, ExportColumn::BranchNumber, "999");
}

/// Two relations of one person.
HurtText numberInTwoSpellings(ExportSheet *sheet, Draw *draw)
{
    const HurtText second = twice(sheet, draw, ExportColumn::Ordinal, "2");
    sheet->cell(sheet->lineCount(), ExportColumn::Number).prepend("00");
    return {sheet->text(), second.hurts};
}

} // namespace

const QVector<SheetDamage> &personDamages()
{
    static const QVector<SheetDamage> all {
        {"no-name", "neither name nor surname", "E-LINE-NAME", noName},
        // Blanks are a name for the reader.
        {"blank-name", "blanks for name and surname", "", blankName},
        {"last-day-before-first", "an end before the begin", "W-PERSON-DATES", lastDayBeforeFirst},
        {"last-day-passed", "a current relation that is over", "N-PERSON-ENDED", lastDayPassed},
        {"number-and-ordinal-exchanged", "personal number and ordinal have changed places", "",
         numberAndOrdinalExchanged},
        {"own-supervisor", "somebody is their own supervisor", "N-PERSON-SELF", ownSupervisor},
        {"circle-of-supervisors", "two people are each other's supervisors", "W-PERSON-CIRCLE",
         circleOfSupervisors},
        {"circle-of-three-supervisors", "three people are each other's supervisors",
         "W-PERSON-CIRCLE", circleOfThreeSupervisors},
        {"shared-key", "two people whose numbers join to the same key", "E-PERSON-KEY", sharedKey},
        {"person-twice", "a relation stands in the file twice", "W-PERSON-TWICE", personTwice},
        {"person-twice-the-same", "a line stands in the file twice", "W-PERSON-TWICE",
         personTwiceTheSame},
        {"person-twice-in-branches", "a relation stands in the file for two branches",
         "W-PERSON-TWICE", personTwiceInBranches},
        {"number-in-two-spellings", "two relations whose personal number is spelt differently",
         "W-PERSON-SPELLING", numberInTwoSpellings},
    };
    return all;
}
