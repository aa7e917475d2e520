// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One employment relation, as the export file or a row of `people` states it.
#pragma once

#include <QDate>
#include <QString>

/// The value type of the synchronisation. What happens to a person is decided by comparing two of
/// these.
///
/// The fields keep the export's Czech and Slovak words; docs/architecture.md has the glossary.
/// rsBegin, rsEnd and rsText come from no export: they are worked out when a person is written.
struct EmployeeRecord
{
    uint osobniCislo = 0; ///< personal number
    uint poradoveCisloPP = 0; ///< ordinal of the employment relation of that person
    QString titul; ///< title before the name
    QString jmeno;
    QString prijmeni;
    QString titulZa; ///< title after the name
    QString telefon;
    QDate datumNastupu; ///< first day of employment
    QDate datumVystupu; ///< last day of employment, invalid when no end is known
    uint stredisko = 0; ///< number of the cost centre (branch), 0 for none
    QString strediskoPopis;
    uint calendarID = 0; ///< number of the calendar, 0 for none
    QDate kalendarPlatnostOd; ///< the day from which the calendar holds
    ushort typPracovnihoPomeru = 0; ///< type of the employment relation (TPP)
    ushort stavPracovnihoPomeru = 0; ///< state of the employment relation
    ushort evidencniStav = 0; ///< evidence state (ES)
    QDate rsBegin; ///< first day of the current evidence state
    QDate rsEnd; ///< end of the current evidence state, invalid while it is open
    QString rsText; ///< text of the evidence state
    double dovolenaZustatek = 0.0; ///< remaining leave
    uint nadOsCis = 0; ///< personal number of the supervisor, 0 for none

    /// The numeric key: the digits of osobniCislo and poradoveCisloPP joined and read back. Beyond
    /// 32 bits it is 0. 12/3 and 1/23 share the key 123.
    uint pid() const;
    /// The text key "osobniCislo.poradoveCisloPP".
    QString pamId() const;

    /// Both numbers set and a name present. What is not usable is no record at all.
    bool isUsable() const;
    /// Not ended: the state is at most 3 and the last day, if known, is today or later.
    bool isCurrent() const;

    /// How the record shows in log lines: with its personal data (title, phone), or with all that
    /// decides about it. Dates in the short form of the system's locale.
    QString toText(bool personal) const;

    /// The kind of person in `people.type` for a type of employment relation: 1, 4, or 0 for
    /// others.
    static uint personType(ushort tpp);
    /// The PaM settings block for a type of employment relation: 1, 2, or 0 for no enrolment.
    static uint pamTypeForTpp(ushort tpp);
};

// A vector that grows may move its records as plain bytes.
Q_DECLARE_TYPEINFO(EmployeeRecord, Q_MOVABLE_TYPE);

/// All 21 fields equal; a null text equals an empty one, and the balance has no tolerance.
bool operator==(const EmployeeRecord &left, const EmployeeRecord &right);
inline bool operator!=(const EmployeeRecord &left, const EmployeeRecord &right)
{
    return !(left == right);
}

/// How a date shows in log lines: in the short form of the system's locale, an invalid one not at
/// all.
QString shortDate(const QDate &date);
