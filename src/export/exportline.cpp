// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A line of the export, from its text to its record and its fate.
#include "export/exportline.h"

#include <algorithm>

namespace {

/// Fills the cells, as far as they go. How many the line has.
int split(const QString &line, QChar separator, ExportCells *cells)
{
    const QChar *const text = line.constData();
    const QChar *const end = text + line.size();
    int count = 0;
    for (const QChar *start = text;;) {
        const QChar *const stop = std::find(start, end, separator);
        if (count < exportColumnCount)
            (*cells)[count] = QStringRef(&line, static_cast<int>(start - text),
                                         static_cast<int>(stop - start));
        ++count;
        if (stop == end)
            return count;
        start = stop + 1;
    }
}

QString textFromCell(const QStringRef &cell, const QString &before)
{
    return cell == before ? before : cell.toString();
}

/// Only the low 16 bits are kept.
ushort shortFromCell(const QStringRef &cell)
{
    return static_cast<ushort>(numberFromCell(cell));
}

EmployeeRecord recordFromCells(const ExportCells &cells, const EmployeeRecord &before,
                               DateCache *dates)
{
    EmployeeRecord record;
    record.osobniCislo = numberFromCell(cells[0]);
    record.poradoveCisloPP = numberFromCell(cells[1]);
    record.titul = textFromCell(cells[2], before.titul);
    record.jmeno = cells[3].toString();
    record.prijmeni = cells[4].toString();
    record.titulZa = textFromCell(cells[5], before.titulZa);
    record.telefon = cells[6].toString();
    record.datumNastupu = dateFromCell(cells[7], dates);
    record.datumVystupu = dateFromCell(cells[8], dates);
    record.stredisko = numberFromCell(cells[9]);
    record.strediskoPopis = textFromCell(cells[10], before.strediskoPopis);
    record.calendarID = numberFromCell(cells[11]);
    record.kalendarPlatnostOd = dateFromCell(cells[12], dates);
    record.typPracovnihoPomeru = shortFromCell(cells[13]);
    record.stavPracovnihoPomeru = shortFromCell(cells[14]);
    record.evidencniStav = shortFromCell(cells[15]);
    record.dovolenaZustatek = balanceFromCell(cells[16]);
    record.nadOsCis = numberFromCell(cells[17]);
    return record;
}

LineFate fateOf(const EmployeeRecord &record)
{
    if (record.isUsable())
        return LineFate::Taken;
    const bool hasKey = record.osobniCislo != 0 && record.poradoveCisloPP != 0;
    return hasKey ? LineFate::NoName : LineFate::NoKey;
}

} // namespace

QStringList exportColumns()
{
    return {QStringLiteral("OsobniCislo"),
            QStringLiteral("PoradoveCisloPP"),
            QStringLiteral("Titul"),
            QStringLiteral("Jmeno"),
            QStringLiteral("Prijmeni"),
            QStringLiteral("TitulZa"),
            QStringLiteral("Telefon"),
            QStringLiteral("DatumNastupu"),
            QStringLiteral("DatumVystupu"),
            QStringLiteral("Stredisko"),
            QStringLiteral("StrediskoPopis"),
            QStringLiteral("Kalendar"),
            QStringLiteral("KalendarPlatnostOd"),
            QStringLiteral("TypPracovnihoPomeru"),
            QStringLiteral("StavPracovnihoPomeru"),
            QStringLiteral("EvidencniStav"),
            QStringLiteral("DovolenaZustatek"),
            QStringLiteral("NadrizenyOsobniCislo")};
}

LineReader::LineReader(int columnCount, QChar cellSeparator) :
    columns(columnCount),
    separator(cellSeparator)
{ }

ExportLine LineReader::read(const QString &line, const EmployeeRecord &before)
{
    ExportLine parsed;
    parsed.cellCount = split(line, separator, &parsed.cells);
    if (parsed.cellCount == columns) {
        parsed.record = recordFromCells(parsed.cells, before, &dates);
        parsed.fate = fateOf(parsed.record);
    }
    return parsed;
}
