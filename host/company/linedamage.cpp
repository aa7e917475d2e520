// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of the form of lines: too many or too few cells, other separators, the header.
#include "host/company/exportwriter.h"
#include "host/company/sheetdamage.h"

namespace {

HurtText withLine(ExportSheet *sheet, int line, const QByteArray &text)
{
    sheet->setLine(line, text);
    return {sheet->text(), {{line, 0}}};
}

HurtText withExtraBar(ExportSheet *sheet, Draw *draw, int column)
{
    const int line = sheet->drawLine(draw);
    QByteArray &cell = sheet->cell(line, column);
    cell = cell.isEmpty() ? QByteArray("0|") : cell + "|Nov";
    return {sheet->text(), {{line, 0}}};
}

/// Between this cell and the next one.
HurtText withoutBar(ExportSheet *sheet, Draw *draw, int column)
{
    const int line = sheet->drawLine(draw);
    QList<QByteArray> cells = sheet->line(line).split('|');
    const QByteArray next = cells.takeAt(column);
    cells[column - 1] += next;
    return withLine(sheet, line, cells.join('|'));
}

HurtText withOtherSeparator(ExportSheet *sheet, Draw *draw, char separator)
{
    const int line = sheet->drawLine(draw);
    return withLine(sheet, line, sheet->line(line).replace('|', separator));
}

HurtText tooFewCells(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    const QByteArray text = sheet->line(line);
    return withLine(sheet, line, text.left(text.lastIndexOf('|')));
}

HurtText barAtStart(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    return withLine(sheet, line, '|' + sheet->line(line));
}

HurtText barAtEnd(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    return withLine(sheet, line, sheet->line(line) + '|');
}

/// Of the last line, so that no other one gets another number.
HurtText lineBreak(ExportSheet *sheet, Draw *)
{
    const int last = sheet->lineCount();
    sheet->cell(last, ExportColumn::BranchText).append('\n');
    return {sheet->text(), {{last, 0}, {last + 1, 0}}};
}

HurtText linesJoined(ExportSheet *sheet, Draw *draw)
{
    const int line = qMin(sheet->drawLine(draw), sheet->lineCount() - 1);
    const QByteArray both = sheet->line(line) + sheet->line(line + 1);
    sheet->remove(line + 1);
    return withLine(sheet, line, both);
}

HurtText quotedCells(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    return withLine(sheet, line, '"' + sheet->line(line).replace("|", "\"|\"") + '"');
}

/// An empty cell too many behind the ordinal, and none for the supervisor.
HurtText cellsShifted(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    QList<QByteArray> cells = sheet->line(line).split('|');
    cells.insert(ExportColumn::Ordinal, QByteArray());
    cells.removeLast();
    return withLine(sheet, line, cells.join('|'));
}

HurtText sumLine(ExportSheet *sheet, Draw *)
{
    sheet->append("Celkem|" + QByteArray::number(sheet->lineCount() - 1));
    return {sheet->text(), {{sheet->lineCount(), 0}}};
}

HurtText lineBeforeHeader(ExportSheet *sheet, Draw *)
{
    sheet->insert(1, "Export osob");
    return {sheet->text(), {{1, 0}}};
}

HurtText headerAgain(ExportSheet *sheet, Draw *)
{
    sheet->append(sheet->line(1));
    return {sheet->text(), {{sheet->lineCount(), 0}}};
}

HurtText headerInMiddle(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw) + 1;
    sheet->insert(line, sheet->line(1));
    return {sheet->text(), {{line, 0}}};
}

HurtText headerMissing(ExportSheet *sheet, Draw *)
{
    sheet->remove(1);
    return {sheet->text(), {{0, 0}}};
}

HurtText headerTooShort(ExportSheet *sheet, Draw *)
{
    const QByteArray header = sheet->line(1);
    return withLine(sheet, 1, header.left(header.lastIndexOf('|')));
}

HurtText headerInLowerCase(ExportSheet *sheet, Draw *)
{
    return withLine(sheet, 1, sheet->line(1).toLower());
}

HurtText headerTranslated(ExportSheet *sheet, Draw *)
{
    return withLine(sheet, 1,
                    "PersonalNumber|Ordinal|Title|Name|Surname|TitleAfter|Phone|Begin|End|Branch|"
                    "BranchText|Calendar|CalendarSince|Type|RelationState|State|Leave|Supervisor");
}

HurtText headerOfAnotherRelease(ExportSheet *sheet, Draw *)
{
    return withLine(sheet, 1,
                    sheet->line(1)
                        .replace("TypPracovnihoPomeru", "TypPP")
                        .replace("StavPracovnihoPomeru", "StavPP"));
}

QVector<SheetDamage> damagesOfForm()
{
    return {
        {"too-many-cells", "a separator within a cell", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) {
             return withExtraBar(sheet, draw, ExportColumn::Surname);
         }},
        {"extra-bar-in-title", "a separator within a title", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) {
             return withExtraBar(sheet, draw, ExportColumn::Title);
         }},
        {"extra-bar-in-phone", "a separator within a phone", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) {
             return withExtraBar(sheet, draw, ExportColumn::Phone);
         }},
        {"extra-bar-in-branch-text", "a separator within a branch's name", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) {
             return withExtraBar(sheet, draw, ExportColumn::BranchText);
         }},
        {"bar-at-start", "a separator before a line", "E-LINE-CELLS", barAtStart},
        {"bar-at-end", "a separator behind a line", "E-LINE-CELLS", barAtEnd},
        {"too-few-cells", "the last cell and its separator are missing", "E-LINE-CELLS",
         tooFewCells},
        {"bar-missing-in-names", "no separator between name and surname", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) {
             return withoutBar(sheet, draw, ExportColumn::Name);
         }},
        {"bar-missing-in-dates", "no separator between begin and end", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) {
             return withoutBar(sheet, draw, ExportColumn::Begin);
         }},
        {"bar-missing-in-states", "no separator between both states", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) {
             return withoutBar(sheet, draw, ExportColumn::RelationState);
         }},
        {"tabs", "a line with tabs between its cells", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) { return withOtherSeparator(sheet, draw, '\t'); }},
        {"semicolons", "a line with semicolons between its cells", "E-LINE-CELLS",
         [](ExportSheet *sheet, Draw *draw) { return withOtherSeparator(sheet, draw, ';'); }},
        {"line-break", "a line end within a cell", "E-LINE-CELLS", lineBreak},
        {"lines-joined", "two lines without a line end between them", "E-LINE-CELLS", linesJoined},
        {"sum-line", "a line with the number of people at the end", "E-LINE-CELLS", sumLine},
        {"quoted-cells", "a line with its cells between double quotes", "E-LINE-KEY", quotedCells},
        {"cells-shifted", "all cells but the first two stand one too far", "E-CELL-DATE",
         cellsShifted},
    };
}

QVector<SheetDamage> damagesOfHeader()
{
    return {
        {"line-before-header", "a line with the name of the file", "E-LINE-CELLS",
         lineBeforeHeader},
        {"header-again", "a second header at the end", "W-LINE-HEADER", headerAgain},
        {"header-in-middle", "a second header between two lines", "W-LINE-HEADER", headerInMiddle},
        // Nobody needs it.
        {"header-missing", "no header", "", headerMissing},
        {"header-too-short", "a header with 17 names", "E-LINE-CELLS", headerTooShort},
        {"header-in-lower-case", "a header in lower case", "W-FILE-HEADER", headerInLowerCase},
        {"header-of-another-release", "a header with two names that are others", "W-FILE-HEADER",
         headerOfAnotherRelease},
        {"header-translated", "a header in another language", "W-FILE-HEADER", headerTranslated},
    };
}

} // namespace

const QVector<SheetDamage> &lineDamages()
{
    static const QVector<SheetDamage> all = damagesOfForm() + damagesOfHeader();
    return all;
}
