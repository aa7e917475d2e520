// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One employment relation, as the export file or a row of `people` states it.
#include "export/employeerecord.h"

#include <QLocale>

#include <limits>

QString shortDate(const QDate &date)
{
    return QLocale::system().toString(date, QLocale::ShortFormat);
}

uint EmployeeRecord::pid() const
{
    quint64 scale = 10;
    while (poradoveCisloPP >= scale)
        scale *= 10;
    const quint64 largest = std::numeric_limits<uint>::max();
    if (osobniCislo > largest / scale)
        return 0;
    const quint64 joined = osobniCislo * scale + poradoveCisloPP;
    return joined <= largest ? static_cast<uint>(joined) : 0;
}

QString EmployeeRecord::pamId() const
{
    return QStringLiteral("%1.%2").arg(osobniCislo).arg(poradoveCisloPP);
}

bool EmployeeRecord::isUsable() const
{
    return osobniCislo != 0 && poradoveCisloPP != 0 && (!jmeno.isEmpty() || !prijmeni.isEmpty());
}

bool EmployeeRecord::isCurrent() const
{
    // Deliberate: state 3, the ended relation, still counts as current; only a date ends it. Pinned
    // by tst_EmployeeRecord::isCurrent().
    return stavPracovnihoPomeru <= 3
        && (!datumVystupu.isValid() || datumVystupu >= QDate::currentDate());
}

// Deliberate: one arg() after another, so that a text holding %N is itself filled by the later
// ones. Pinned by tst_EmployeeRecord::toText_fillsMarkersInsideTexts().
QString EmployeeRecord::toText(bool personal) const
{
    if (personal) {
        return QStringLiteral("%1.%2 %3 %4 %5 %6 (T: %7) N-V: %8 - %9 "
                              "TPP: %10  K: %11  DOV: %12, S: %13")
            .arg(osobniCislo) // %1
            .arg(poradoveCisloPP) // %2
            .arg(titul) // %3
            .arg(jmeno) // %4
            .arg(prijmeni) // %5
            .arg(titulZa) // %6
            .arg(telefon) // %7
            .arg(shortDate(datumNastupu)) // %8
            .arg(shortDate(datumVystupu)) // %9
            .arg(typPracovnihoPomeru) // %10
            .arg(calendarID) // %11
            .arg(dovolenaZustatek, 0, 'g', -1) // %12
            .arg(stredisko); // %13
    }
    return QStringLiteral("%1.%2 %3 %4 (S: %5, K: %6 from %7) N-V: %8 - %9; "
                          "ES: %10, RS: %11 - %12 '%13' TPP: %14  DOV: %15 NOC: %16")
        .arg(osobniCislo) // %1
        .arg(poradoveCisloPP) // %2
        .arg(prijmeni) // %3
        .arg(jmeno) // %4
        .arg(stredisko) // %5
        .arg(calendarID) // %6
        .arg(shortDate(kalendarPlatnostOd)) // %7
        .arg(shortDate(datumNastupu)) // %8
        .arg(shortDate(datumVystupu)) // %9
        .arg(evidencniStav) // %10
        .arg(shortDate(rsBegin)) // %11
        .arg(shortDate(rsEnd)) // %12
        .arg(rsText) // %13
        .arg(typPracovnihoPomeru) // %14
        .arg(dovolenaZustatek, 0, 'g', -1) // %15
        .arg(nadOsCis); // %16
}

uint EmployeeRecord::personType(ushort tpp)
{
    switch (tpp) {
    case 11:
    case 65:
        return 1;
    case 51:
    case 53:
    case 54:
        return 4;
    default:
        return 0;
    }
}

uint EmployeeRecord::pamTypeForTpp(ushort tpp)
{
    switch (tpp) {
    case 11:
    case 65:
        return 1;
    case 51:
    case 53:
    case 54:
        return 2;
    default:
        return 0;
    }
}

bool operator==(const EmployeeRecord &left, const EmployeeRecord &right)
{
    return left.osobniCislo == right.osobniCislo && left.poradoveCisloPP == right.poradoveCisloPP
        && left.titul == right.titul && left.jmeno == right.jmeno && left.prijmeni == right.prijmeni
        && left.titulZa == right.titulZa && left.telefon == right.telefon
        && left.datumNastupu == right.datumNastupu && left.datumVystupu == right.datumVystupu
        && left.stredisko == right.stredisko && left.strediskoPopis == right.strediskoPopis
        && left.calendarID == right.calendarID
        && left.kalendarPlatnostOd == right.kalendarPlatnostOd
        && left.typPracovnihoPomeru == right.typPracovnihoPomeru
        && left.stavPracovnihoPomeru == right.stavPracovnihoPomeru
        && left.evidencniStav == right.evidencniStav && left.rsBegin == right.rsBegin
        && left.rsEnd == right.rsEnd && left.rsText == right.rsText
        && left.dovolenaZustatek == right.dovolenaZustatek && left.nadOsCis == right.nadOsCis;
}
