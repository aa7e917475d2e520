// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Employee records and export lines with good defaults: a test states only what it is about.
#pragma once

#include "export/employeerecord.h"

/// record().pid(1234, 1).branch(7) is a usable, current employee of branch 7.
class RecordBuilder
{
public:
    RecordBuilder();

    RecordBuilder &pid(uint osobniCislo, uint poradoveCisloPP);
    RecordBuilder &name(const QString &jmeno, const QString &prijmeni);
    RecordBuilder &titles(const QString &titul, const QString &titulZa);
    RecordBuilder &phone(const QString &telefon);
    RecordBuilder &employed(const QDate &from, const QDate &to = QDate());
    RecordBuilder &branch(uint stredisko, const QString &popis = QString());
    RecordBuilder &calendar(uint calendarID, const QDate &since = QDate());
    RecordBuilder &tpp(ushort typPracovnihoPomeru);
    RecordBuilder &relationState(ushort stavPracovnihoPomeru);
    RecordBuilder &es(ushort evidencniStav);
    RecordBuilder &interval(const QDate &rsBegin, const QDate &rsEnd, const QString &rsText);
    RecordBuilder &balance(double dovolenaZustatek);
    RecordBuilder &supervisor(uint nadOsCis);

    EmployeeRecord build() const { return employee; }
    operator EmployeeRecord() const { return employee; }

    /// The record as a line of the export file, without a line end.
    QString line() const;

private:
    EmployeeRecord employee;
};

inline RecordBuilder record()
{
    return RecordBuilder();
}

/// The first line of a real export.
QString exportHeader();
