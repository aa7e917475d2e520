// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The export of a company, as its HR system writes it.
#include "host/company/exportwriter.h"

#include <QHash>

namespace {

QByteArray dateCell(const QDate &date)
{
    return date.isValid() ? date.toString(Qt::ISODate).toLatin1() + " 00:00:00.000" : QByteArray();
}

/// 1250 hundredths are 12.5.
QByteArray daysCell(int hundredths)
{
    const int whole = qAbs(hundredths) / 100;
    const int rest = qAbs(hundredths) % 100;
    QByteArray cell = QByteArray::number(whole);
    if (rest != 0)
        cell += '.' + QByteArray::number(rest).rightJustified(2, '0');
    if (cell.contains('.') && cell.endsWith('0'))
        cell.chop(1);
    return hundredths < 0 ? '-' + cell : cell;
}

} // namespace

QByteArray headerLine()
{
    return "OsobniCislo|PoradoveCisloPP|Titul|Jmeno|Prijmeni|TitulZa|Telefon|DatumNastupu|"
           "DatumVystupu|Stredisko|StrediskoPopis|Kalendar|KalendarPlatnostOd|TypPracovnihoPomeru|"
           "StavPracovnihoPomeru|EvidencniStav|DovolenaZustatek|NadrizenyOsobniCislo";
}

QByteArray exportLine(const Employment &employment, const Branch *branch)
{
    const QByteArray cells[] = {QByteArray::number(employment.number),
                                QByteArray::number(employment.ordinal),
                                employment.titleBefore.toUtf8(),
                                employment.name.toUtf8(),
                                employment.surname.toUtf8(),
                                employment.titleAfter.toUtf8(),
                                employment.phone.toUtf8(),
                                dateCell(employment.begin),
                                dateCell(employment.end),
                                QByteArray::number(employment.branch),
                                branch ? branch->name.toUtf8() : QByteArray(),
                                QByteArray::number(employment.calendar),
                                dateCell(employment.calendarSince),
                                QByteArray::number(employment.type),
                                QByteArray::number(employment.relationState),
                                QByteArray::number(employment.evidenceState),
                                daysCell(employment.leave),
                                QByteArray::number(employment.supervisor)};
    QByteArray line;
    for (const QByteArray &cell : cells)
        line += cell + '|';
    line.chop(1);
    return line;
}

QByteArray exportText(const Company &company)
{
    QHash<uint, const Branch *> branches;
    for (const Branch &branch : company.branches) {
        if (branch.number != 0)
            branches.insert(branch.number, &branch);
    }
    QByteArray text = headerLine() + '\n';
    for (const Employment &employment : company.employments) {
        if (employment.inExport)
            text += exportLine(employment, branches.value(employment.branch)) + '\n';
    }
    return text;
}
