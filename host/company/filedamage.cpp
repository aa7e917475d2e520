// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of the whole file: its end, its encoding, its columns, what is missing.
#include "host/company/exportwriter.h"
#include "host/company/sheetdamage.h"

#include <QTextCodec>

namespace {

/// Of all people. The header stays as it was.
template <typename Change>
HurtText withColumn(ExportSheet *sheet, int column, Change change)
{
    for (int line = 2; line <= sheet->lineCount(); ++line)
        sheet->cell(line, column) = change(sheet->cell(line, column));
    return {sheet->text(), {{0, column}}};
}

/// The header stays as it was.
HurtText withExchanged(ExportSheet *sheet, int column, int other)
{
    for (int line = 2; line <= sheet->lineCount(); ++line)
        qSwap(sheet->cell(line, column), sheet->cell(line, other));
    return {sheet->text(), {{0, column}, {0, other}}};
}

HurtText byteOrderMark(ExportSheet *sheet, Draw *)
{
    sheet->cell(1, 1).prepend("\xEF\xBB\xBF");
    return {sheet->text(), {{1, 1}}};
}

HurtText cutInLine(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    sheet->cut(line);
    QByteArray text = sheet->text();
    text.chop(1 + sheet->line(line).size() / 2);
    return {text, {{line, 0}}};
}

HurtText cutAtLineEnd(ExportSheet *sheet, Draw *draw)
{
    sheet->cut(qMin(sheet->drawLine(draw) - 1, sheet->lineCount() * 4 / 5));
    return {sheet->text(), {{0, 0}}};
}

HurtText cutAtTenth(ExportSheet *sheet, Draw *draw)
{
    sheet->cut(1 + (sheet->lineCount() - 1) * (1 + draw->below(8)) / 10);
    return {sheet->text(), {{0, 0}}};
}

/// In the middle of the line that stands there.
template <int tenths>
HurtText cutWithin(ExportSheet *sheet, Draw *)
{
    sheet->cut(qMax(2, sheet->lineCount() * tenths / 10));
    const int last = sheet->lineCount();
    QByteArray text = sheet->text();
    text.chop(1 + sheet->line(last).size() / 2);
    return {text, {{last, 0}}};
}

HurtText everySecondLineMissing(ExportSheet *sheet, Draw *)
{
    for (int line = sheet->lineCount() / 2 * 2; line > 1; line -= 2)
        sheet->remove(line);
    return {sheet->text(), {{0, 0}}};
}

HurtText branchMissing(ExportSheet *sheet, Draw *draw)
{
    const QByteArray branch = sheet->cell(sheet->drawLine(draw), ExportColumn::BranchNumber);
    for (int line = sheet->lineCount(); line > 1; --line) {
        if (sheet->cell(line, ExportColumn::BranchNumber) == branch)
            sheet->remove(line);
    }
    return {sheet->text(), {{0, 0}}};
}

HurtText headerOnly(ExportSheet *sheet, Draw *)
{
    sheet->cut(1);
    return {sheet->text(), {{0, 0}}};
}

HurtText empty(ExportSheet *, Draw *)
{
    return {QByteArray(), {{0, 0}}};
}

HurtText errorPage(ExportSheet *, Draw *)
{
    return {"<!DOCTYPE html>\n<html><head><title>500</title></head>\n"
            "<body><h1>Internal Server Error</h1></body></html>\n",
            {{0, 0}}};
}

HurtText otherSeparatorEverywhere(ExportSheet *sheet, Draw *)
{
    return {sheet->text().replace('|', ';'), {{0, 0}}};
}

HurtText carriageReturnsOnly(ExportSheet *sheet, Draw *)
{
    return {sheet->text().replace('\n', '\r'), {{0, 0}}};
}

HurtText encoded(ExportSheet *sheet, const char *encoding, QTextCodec::ConversionFlags flags)
{
    const QString text = QString::fromUtf8(sheet->text());
    QTextCodec::ConverterState state(flags);
    const QTextCodec *codec = QTextCodec::codecForName(encoding);
    return {codec->fromUnicode(text.constData(), text.size(), &state), {{0, 0}}};
}

/// With a byte order mark, as that encoding needs.
HurtText utf16(ExportSheet *sheet, Draw *)
{
    return encoded(sheet, "UTF-16LE", QTextCodec::DefaultConversion);
}

HurtText utf16WithoutMark(ExportSheet *sheet, Draw *)
{
    return encoded(sheet, "UTF-16LE", QTextCodec::IgnoreHeader);
}

HurtText utf16BigEndian(ExportSheet *sheet, Draw *)
{
    return encoded(sheet, "UTF-16BE", QTextCodec::DefaultConversion);
}

HurtText windows1250(ExportSheet *sheet, Draw *)
{
    return encoded(sheet, "windows-1250", QTextCodec::DefaultConversion);
}

HurtText columnEmptied(ExportSheet *sheet, Draw *)
{
    return withColumn(sheet, ExportColumn::Calendar, [](const QByteArray &) { return ""; });
}

HurtText supervisorsEmptied(ExportSheet *sheet, Draw *)
{
    return withColumn(sheet, ExportColumn::Supervisor, [](const QByteArray &) { return ""; });
}

HurtText balancesAllZero(ExportSheet *sheet, Draw *)
{
    return withColumn(sheet, ExportColumn::Leave, [](const QByteArray &) { return "0"; });
}

HurtText balancesWithComma(ExportSheet *sheet, Draw *)
{
    return withColumn(sheet, ExportColumn::Leave, [](QByteArray cell) {
        return cell.contains('.') ? cell.replace('.', ',') : cell + ",0";
    });
}

HurtText datesWithoutTime(ExportSheet *sheet, Draw *)
{
    return withColumn(sheet, ExportColumn::Begin,
                      [](const QByteArray &cell) { return cell.left(10); });
}

HurtText oneBranchForAll(ExportSheet *sheet, Draw *)
{
    return withColumn(sheet, ExportColumn::BranchNumber, [](const QByteArray &) { return "999"; });
}

HurtText endsAllSet(ExportSheet *sheet, Draw *)
{
    return withColumn(sheet, ExportColumn::End,
                      [](const QByteArray &) { return "2099-12-31 00:00:00.000"; });
}

/// Another company, whose people have the same numbers as those of this one.
HurtText testSystem(ExportSheet *sheet, Draw *draw)
{
    CompanyPlan plan;
    plan.people = sheet->lineCount();
    plan.seed = 1000000u + static_cast<quint32>(draw->below(1000000));
    plan.day = QDate(2026, 3, 17);
    return {exportText(generatedCompany(plan)), {{0, 0}}};
}

HurtText anotherColumn(ExportSheet *sheet, Draw *)
{
    sheet->cell(1, ExportColumn::Supervisor).append("|Email");
    for (int line = 2; line <= sheet->lineCount(); ++line)
        sheet->cell(line, ExportColumn::Supervisor).append('|');
    return {sheet->text(), {{0, 0}}};
}

/// Rows of another table, of five cells each.
HurtText blockOfAnotherFile(ExportSheet *sheet, Draw *draw)
{
    const int line = sheet->drawLine(draw);
    QVector<Hurt> hurts;
    for (int i = 0; i < 10; ++i) {
        sheet->insert(line + i, QByteArray::number(5001 + i) + "|2026-01-31|1|16.5|S");
        hurts.append({line + i, 0});
    }
    return {sheet->text(), hurts};
}

/// Two files behind each other, of which the first has no end behind its last line.
HurtText filesJoined(ExportSheet *sheet, Draw *draw)
{
    const int line = qMin(sheet->drawLine(draw), sheet->lineCount() - 1);
    sheet->setLine(line, sheet->line(line) + sheet->line(1));
    return {sheet->text(), {{line, 0}}};
}

HurtText fileTwice(ExportSheet *sheet, Draw *)
{
    QVector<Hurt> hurts;
    const int count = sheet->lineCount();
    for (int line = 1; line <= count; ++line) {
        sheet->append(sheet->line(line));
        hurts.append({count + line, 0});
    }
    return {sheet->text(), hurts};
}

QVector<SheetDamage> cutsWithinLines()
{
    const char *const meaning = "the file ends in the middle of a line, after some tenths";
    return {
        {"cut-after-one-tenth", meaning, "E-FILE-CUT", cutWithin<1>},
        {"cut-after-two-tenths", meaning, "E-FILE-CUT", cutWithin<2>},
        {"cut-after-three-tenths", meaning, "E-FILE-CUT", cutWithin<3>},
        {"cut-after-four-tenths", meaning, "E-FILE-CUT", cutWithin<4>},
        {"cut-after-five-tenths", meaning, "E-FILE-CUT", cutWithin<5>},
        {"cut-after-six-tenths", meaning, "E-FILE-CUT", cutWithin<6>},
        {"cut-after-seven-tenths", meaning, "E-FILE-CUT", cutWithin<7>},
        {"cut-after-eight-tenths", meaning, "E-FILE-CUT", cutWithin<8>},
        {"cut-after-nine-tenths", meaning, "E-FILE-CUT", cutWithin<9>},
    };
}

QVector<SheetDamage> damagesOfWhole()
{
    return {
        {"byte-order-mark", "a byte order mark", "N-TEXT-MARK", byteOrderMark},
        {"cut-in-line", "the file ends in the middle of a line", "E-FILE-CUT", cutInLine},
        {"cut-at-line-end", "the file ends too early, with a whole line", "W-AGAINST-LOST",
         cutAtLineEnd},
        {"cut-at-tenth", "some tenths of the lines are missing at the end", "W-AGAINST-LOST",
         cutAtTenth},
        {"every-second-line-missing", "every second line is missing", "W-AGAINST-LOST",
         everySecondLineMissing},
        {"branch-missing", "the people of one branch are missing", "W-AGAINST-LOST", branchMissing},
        {"block-of-another-file", "ten lines of another file in the middle", "E-LINE-CELLS",
         blockOfAnotherFile},
        {"files-joined", "two files behind each other, without a line end between them",
         "E-LINE-CELLS", filesJoined},
        {"file-twice", "all lines once more behind the last one", "W-PERSON-TWICE", fileTwice},
        {"test-system", "the export of the test system", "W-AGAINST-CHANGED", testSystem},
        {"another-column", "a column more, as another release writes it", "E-FILE-NOTHING",
         anotherColumn},
        {"header-only", "nothing behind the header", "E-FILE-NOTHING", headerOnly},
        {"empty", "nothing at all", "E-FILE-NOTHING", empty},
        {"error-page", "a web server's page about an error", "E-FILE-NOTHING", errorPage},
        {"semicolons-everywhere", "semicolons between all cells", "E-FILE-NOTHING",
         otherSeparatorEverywhere},
        {"cr-only", "carriage returns as line ends", "E-FILE-NOTHING", carriageReturnsOnly},
        {"utf-16", "the file in UTF-16", "E-FILE-NOTHING", utf16},
        {"utf-16-without-mark", "the file in UTF-16, without a byte order mark", "E-FILE-NOTHING",
         utf16WithoutMark},
        {"utf-16-big-endian", "the file in UTF-16 with the high byte first", "E-FILE-NOTHING",
         utf16BigEndian},
        {"windows-1250", "the file in Windows-1250", "E-TEXT-UTF8", windows1250},
    };
}

QVector<SheetDamage> damagesOfColumns()
{
    return {
        {"columns-exchanged", "name and surname have changed places", "W-AGAINST-EXCHANGED",
         [](ExportSheet *sheet, Draw *) {
             return withExchanged(sheet, ExportColumn::Name, ExportColumn::Surname);
         }},
        {"dates-exchanged", "first and last day have changed places", "W-AGAINST-EXCHANGED",
         [](ExportSheet *sheet, Draw *) {
             return withExchanged(sheet, ExportColumn::Begin, ExportColumn::End);
         }},
        {"branch-and-calendar-exchanged", "branch and calendar have changed places",
         "W-AGAINST-EXCHANGED",
         [](ExportSheet *sheet, Draw *) {
             return withExchanged(sheet, ExportColumn::BranchNumber, ExportColumn::Calendar);
         }},
        {"column-emptied", "nobody has a calendar", "W-AGAINST-EMPTY", columnEmptied},
        {"supervisors-emptied", "nobody has a supervisor", "W-AGAINST-EMPTY", supervisorsEmptied},
        // A month may end for everybody.
        {"balances-all-zero", "nobody has any leave", "W-AGAINST-SAME", balancesAllZero},
        {"balances-with-comma", "decimal commas in all balances", "E-CELL-BALANCE",
         balancesWithComma},
        {"dates-without-time", "all first days without a time", "E-CELL-DATE", datesWithoutTime},
        {"one-branch-for-all", "everybody has the same unknown branch", "W-AGAINST-CHANGED",
         oneBranchForAll},
        {"ends-all-set", "everybody has a last day", "W-AGAINST-EMPTY", endsAllSet},
    };
}

} // namespace

const QVector<SheetDamage> &fileDamages()
{
    static const QVector<SheetDamage> all = cutsWithinLines() + damagesOfWhole()
        + damagesOfColumns();
    return all;
}
