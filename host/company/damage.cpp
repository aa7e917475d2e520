// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of exports, to be had by name.
#include "host/company/damage.h"

#include "host/company/celldamage.h"
#include "host/company/exportsheet.h"
#include "host/company/exportwriter.h"

#include <QStringList>
#include <QTextCodec>

namespace {

/// A flaw of a line or two, or of the file. It changes the sheet, or gives the text itself.
struct SheetDamage
{
    const char *name;
    const char *meaning;
    DamagedExport (*change)(ExportSheet sheet, Draw *draw);
};

DamagedExport withLine(ExportSheet *sheet, int line, const QByteArray &text)
{
    sheet->setLine(line, text);
    return {sheet->text(), {{line, 0}}};
}

DamagedExport withCells(ExportSheet *sheet, int line, int column, const QByteArray &cell,
                        int otherColumn, const QByteArray &otherCell)
{
    sheet->cell(line, column) = cell;
    sheet->cell(line, otherColumn) = otherCell;
    return {sheet->text(), {{line, column}, {line, otherColumn}}};
}

DamagedExport tooManyCells(ExportSheet sheet, Draw *draw)
{
    const int line = sheet.drawLine(draw);
    sheet.cell(line, ExportColumn::Surname).append("|Nov");
    return {sheet.text(), {{line, 0}}};
}

DamagedExport tooFewCells(ExportSheet sheet, Draw *draw)
{
    const int line = sheet.drawLine(draw);
    const QByteArray text = sheet.line(line);
    return withLine(&sheet, line, text.left(text.lastIndexOf('|')));
}

DamagedExport withOtherSeparator(ExportSheet *sheet, int line, char separator)
{
    return withLine(sheet, line, sheet->line(line).replace('|', separator));
}

DamagedExport tabs(ExportSheet sheet, Draw *draw)
{
    return withOtherSeparator(&sheet, sheet.drawLine(draw), '\t');
}

DamagedExport semicolons(ExportSheet sheet, Draw *draw)
{
    return withOtherSeparator(&sheet, sheet.drawLine(draw), ';');
}

/// Of the last line, so that no other one gets another number.
DamagedExport lineBreak(ExportSheet sheet, Draw *)
{
    const int last = sheet.lineCount();
    sheet.cell(last, ExportColumn::BranchText).append('\n');
    return {sheet.text(), {{last, 0}, {last + 1, 0}}};
}

DamagedExport oneLineInWindows1250(ExportSheet sheet, Draw *draw)
{
    const int line = sheet.drawLine(draw);
    sheet.cell(line, ExportColumn::Name) = "Luk\xE1\x9A";
    return {sheet.text(), {{line, ExportColumn::Name}}};
}

DamagedExport noName(ExportSheet sheet, Draw *draw)
{
    return withCells(&sheet, sheet.drawLine(draw), ExportColumn::Name, QByteArray(),
                     ExportColumn::Surname, QByteArray());
}

DamagedExport lastDayBeforeFirst(ExportSheet sheet, Draw *draw)
{
    const int line = sheet.drawLine(draw);
    sheet.cell(line, ExportColumn::End) = "1989-12-31 00:00:00.000";
    return {sheet.text(), {{line, ExportColumn::End}}};
}

DamagedExport ownSupervisor(ExportSheet sheet, Draw *draw)
{
    const int line = sheet.drawLine(draw);
    sheet.cell(line, ExportColumn::Supervisor) = sheet.cell(line, ExportColumn::Number);
    return {sheet.text(), {{line, ExportColumn::Supervisor}}};
}

DamagedExport circleOfSupervisors(ExportSheet sheet, Draw *draw)
{
    const QPair<int, int> lines = sheet.drawTwoLines(draw);
    sheet.cell(lines.first, ExportColumn::Supervisor) = sheet.cell(lines.second,
                                                                   ExportColumn::Number);
    sheet.cell(lines.second, ExportColumn::Supervisor) = sheet.cell(lines.first,
                                                                    ExportColumn::Number);
    return {sheet.text(),
            {{lines.first, ExportColumn::Supervisor}, {lines.second, ExportColumn::Supervisor}}};
}

/// 12/3 and 1/23 are both 123.
DamagedExport sharedKey(ExportSheet sheet, Draw *draw)
{
    const QPair<int, int> lines = sheet.drawTwoLines(draw);
    const DamagedExport first = withCells(&sheet, lines.first, ExportColumn::Number, "12",
                                          ExportColumn::Ordinal, "3");
    const DamagedExport both = withCells(&sheet, lines.second, ExportColumn::Number, "1",
                                         ExportColumn::Ordinal, "23");
    return {both.text, first.hurts + both.hurts};
}

DamagedExport personTwice(ExportSheet sheet, Draw *draw)
{
    const int line = sheet.drawLine(draw);
    sheet.append(sheet.line(line));
    sheet.cell(sheet.lineCount(), ExportColumn::Phone) = "0905 000 000";
    return {sheet.text(), {{sheet.lineCount(), 0}}};
}

DamagedExport headerAgain(ExportSheet sheet, Draw *)
{
    sheet.append(sheet.line(1));
    return {sheet.text(), {{sheet.lineCount(), 0}}};
}

DamagedExport byteOrderMark(ExportSheet sheet, Draw *)
{
    sheet.cell(1, 1).prepend("\xEF\xBB\xBF");
    return {sheet.text(), {{1, 1}}};
}

DamagedExport cutInLine(ExportSheet sheet, Draw *draw)
{
    const int line = sheet.drawLine(draw);
    sheet.cut(line);
    QByteArray text = sheet.text();
    text.chop(1 + sheet.line(line).size() / 2);
    return {text, {{line, 0}}};
}

DamagedExport cutAtLineEnd(ExportSheet sheet, Draw *draw)
{
    sheet.cut(sheet.drawLine(draw) - 1);
    return {sheet.text(), {{0, 0}}};
}

DamagedExport headerOnly(ExportSheet sheet, Draw *)
{
    sheet.cut(1);
    return {sheet.text(), {{0, 0}}};
}

DamagedExport empty(ExportSheet, Draw *)
{
    return {QByteArray(), {{0, 0}}};
}

DamagedExport otherSeparatorEverywhere(ExportSheet sheet, Draw *)
{
    return {sheet.text().replace('|', ';'), {{0, 0}}};
}

DamagedExport carriageReturnsOnly(ExportSheet sheet, Draw *)
{
    return {sheet.text().replace('\n', '\r'), {{0, 0}}};
}

/// With a byte order mark, as that encoding needs.
DamagedExport utf16(ExportSheet sheet, Draw *)
{
    const QTextCodec *codec = QTextCodec::codecForName("UTF-16");
    return {codec->fromUnicode(QString::fromUtf8(sheet.text())), {{0, 0}}};
}

DamagedExport windows1250(ExportSheet sheet, Draw *)
{
    const QTextCodec *codec = QTextCodec::codecForName("windows-1250");
    return {codec->fromUnicode(QString::fromUtf8(sheet.text())), {{0, 0}}};
}

/// The header stays as it was.
DamagedExport columnsExchanged(ExportSheet sheet, Draw *)
{
    for (int line = 2; line <= sheet.lineCount(); ++line)
        qSwap(sheet.cell(line, ExportColumn::Name), sheet.cell(line, ExportColumn::Surname));
    return {sheet.text(), {{0, ExportColumn::Name}, {0, ExportColumn::Surname}}};
}

DamagedExport columnEmptied(ExportSheet sheet, Draw *)
{
    for (int line = 2; line <= sheet.lineCount(); ++line)
        sheet.cell(line, ExportColumn::Calendar).clear();
    return {sheet.text(), {{0, ExportColumn::Calendar}}};
}

const SheetDamage sheetDamages[] = {
    {"too-many-cells", "a separator within a cell", tooManyCells},
    {"too-few-cells", "the last cell and its separator are missing", tooFewCells},
    {"tabs", "a line with tabs between its cells", tabs},
    {"semicolons", "a line with semicolons between its cells", semicolons},
    {"line-break", "a line end within a cell", lineBreak},
    {"windows-1250-line", "one name in Windows-1250", oneLineInWindows1250},
    {"no-name", "neither name nor surname", noName},
    {"last-day-before-first", "an end before the begin", lastDayBeforeFirst},
    {"own-supervisor", "somebody is their own supervisor", ownSupervisor},
    {"circle-of-supervisors", "two people are each other's supervisors", circleOfSupervisors},
    {"shared-key", "two people whose numbers join to the same key", sharedKey},
    {"person-twice", "a relation stands in the file twice", personTwice},
    {"header-again", "a second header at the end", headerAgain},
    {"byte-order-mark", "a byte order mark", byteOrderMark},
    {"cut-in-line", "the file ends in the middle of a line", cutInLine},
    {"cut-at-line-end", "the file ends too early, with a whole line", cutAtLineEnd},
    {"header-only", "nothing behind the header", headerOnly},
    {"empty", "nothing at all", empty},
    {"semicolons-everywhere", "semicolons between all cells", otherSeparatorEverywhere},
    {"cr-only", "carriage returns as line ends", carriageReturnsOnly},
    {"utf-16", "the file in UTF-16", utf16},
    {"windows-1250", "the file in Windows-1250", windows1250},
    {"columns-exchanged", "name and surname have changed places", columnsExchanged},
    {"column-emptied", "nobody has a calendar", columnEmptied},
};

} // namespace

QStringList damageNames()
{
    QStringList names;
    for (const CellDamage &damage : cellDamages())
        names.append(QLatin1String(damage.name));
    for (const SheetDamage &damage : sheetDamages)
        names.append(QLatin1String(damage.name));
    return names;
}

QString damageMeaning(const QString &name)
{
    for (const CellDamage &damage : cellDamages()) {
        if (name == QLatin1String(damage.name))
            return QLatin1String(damage.meaning);
    }
    for (const SheetDamage &damage : sheetDamages) {
        if (name == QLatin1String(damage.name))
            return QLatin1String(damage.meaning);
    }
    return QString();
}

DamagedExport damaged(const QByteArray &soundExport, const QString &name, quint32 seed)
{
    ExportSheet sheet(soundExport);
    Draw draw(seed);
    for (const CellDamage &damage : cellDamages()) {
        if (name != QLatin1String(damage.name))
            continue;
        const int line = sheet.drawLine(&draw);
        QByteArray &cell = sheet.cell(line, damage.column);
        cell = damage.change(cell);
        return {sheet.text(), {{line, damage.column}}};
    }
    for (const SheetDamage &damage : sheetDamages) {
        if (name == QLatin1String(damage.name))
            return damage.change(sheet, &draw);
    }
    return {soundExport, {}};
}
