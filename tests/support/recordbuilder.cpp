// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Employee records and export lines with good defaults: a test states only what it is about.
#include "support/recordbuilder.h"

#include <QStringList>

namespace {

QString dateCell(const QDate &date)
{
    return date.isValid() ? date.toString(QStringLiteral("yyyy-MM-dd 00:00:00.000")) : QString();
}

} // namespace

RecordBuilder::RecordBuilder()
{
    employee.osobniCislo = 1234;
    employee.poradoveCisloPP = 1;
    employee.jmeno = QStringLiteral("Ján");
    employee.prijmeni = QStringLiteral("Novák");
    employee.datumNastupu = QDate(2015, 3, 1);
    employee.typPracovnihoPomeru = 11;
}

RecordBuilder &RecordBuilder::pid(uint osobniCislo, uint poradoveCisloPP)
{
    employee.osobniCislo = osobniCislo;
    employee.poradoveCisloPP = poradoveCisloPP;
    return *this;
}

RecordBuilder &RecordBuilder::name(const QString &jmeno, const QString &prijmeni)
{
    employee.jmeno = jmeno;
    employee.prijmeni = prijmeni;
    return *this;
}

RecordBuilder &RecordBuilder::titles(const QString &titul, const QString &titulZa)
{
    employee.titul = titul;
    employee.titulZa = titulZa;
    return *this;
}

RecordBuilder &RecordBuilder::phone(const QString &telefon)
{
    employee.telefon = telefon;
    return *this;
}

RecordBuilder &RecordBuilder::employed(const QDate &from, const QDate &to)
{
    employee.datumNastupu = from;
    employee.datumVystupu = to;
    return *this;
}

RecordBuilder &RecordBuilder::branch(uint stredisko, const QString &popis)
{
    employee.stredisko = stredisko;
    employee.strediskoPopis = popis;
    return *this;
}

RecordBuilder &RecordBuilder::calendar(uint calendarID, const QDate &since)
{
    employee.calendarID = calendarID;
    employee.kalendarPlatnostOd = since;
    return *this;
}

RecordBuilder &RecordBuilder::tpp(ushort typPracovnihoPomeru)
{
    employee.typPracovnihoPomeru = typPracovnihoPomeru;
    return *this;
}

RecordBuilder &RecordBuilder::relationState(ushort stavPracovnihoPomeru)
{
    employee.stavPracovnihoPomeru = stavPracovnihoPomeru;
    return *this;
}

RecordBuilder &RecordBuilder::es(ushort evidencniStav)
{
    employee.evidencniStav = evidencniStav;
    return *this;
}

RecordBuilder &RecordBuilder::interval(const QDate &rsBegin, const QDate &rsEnd,
                                       const QString &rsText)
{
    employee.rsBegin = rsBegin;
    employee.rsEnd = rsEnd;
    employee.rsText = rsText;
    return *this;
}

RecordBuilder &RecordBuilder::balance(double dovolenaZustatek)
{
    employee.dovolenaZustatek = dovolenaZustatek;
    return *this;
}

RecordBuilder &RecordBuilder::supervisor(uint nadOsCis)
{
    employee.nadOsCis = nadOsCis;
    return *this;
}

QString RecordBuilder::line() const
{
    return QStringList {QString::number(employee.osobniCislo),
                        QString::number(employee.poradoveCisloPP),
                        employee.titul,
                        employee.jmeno,
                        employee.prijmeni,
                        employee.titulZa,
                        employee.telefon,
                        dateCell(employee.datumNastupu),
                        dateCell(employee.datumVystupu),
                        QString::number(employee.stredisko),
                        employee.strediskoPopis,
                        QString::number(employee.calendarID),
                        dateCell(employee.kalendarPlatnostOd),
                        QString::number(employee.typPracovnihoPomeru),
                        QString::number(employee.stavPracovnihoPomeru),
                        QString::number(employee.evidencniStav),
                        QString::number(employee.dovolenaZustatek),
                        QString::number(employee.nadOsCis)}
        .join(QLatin1Char('|'));
}

QString exportHeader()
{
    return QStringLiteral(
        "OsobniCislo|PoradoveCisloPP|Titul|Jmeno|Prijmeni|TitulZa|Telefon|DatumNastupu|"
        "DatumVystupu|Stredisko|StrediskoPopis|Kalendar|KalendarPlatnostOd|TypPracovnihoPomeru|"
        "StavPracovnihoPomeru|EvidencniStav|DovolenaZustatek|NadrizenyOsobniCislo");
}
