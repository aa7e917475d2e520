// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of single cells of an export that hold dates and numbers.
#include "host/company/celldamage.h"

#include "host/company/exportwriter.h"

namespace {

/// The day of a whole date, as people write it.
QByteArray dayFirst(const QByteArray &cell)
{
    return cell.mid(8, 2) + '.' + cell.mid(5, 2) + '.' + cell.left(4) + cell.mid(10);
}

QVector<CellDamage> beginDamages()
{
    return {
        {"date-without-time", "the first day without a time", "E-CELL-DATE", ExportColumn::Begin,
         [](const QByteArray &cell) { return cell.left(10); }},
        {"date-without-milliseconds", "the first day without milliseconds", "E-CELL-DATE",
         ExportColumn::Begin, [](const QByteArray &cell) { return cell.left(19); }},
        {"date-day-first", "the first day as 31.12.2020", "E-CELL-DATE", ExportColumn::Begin,
         dayFirst},
        {"date-impossible", "30 February", "E-CELL-DATE", ExportColumn::Begin,
         [](const QByteArray &cell) { return cell.left(4) + "-02-30" + cell.mid(10); }},
        {"date-two-digit-year", "the first day with a year of two digits", "E-CELL-DATE",
         ExportColumn::Begin, [](const QByteArray &cell) { return cell.mid(2); }},
        {"date-of-antiquity", "the first day in the year 20", "E-CELL-YEAR", ExportColumn::Begin,
         [](const QByteArray &cell) { return "0020" + cell.mid(4); }},
        {"date-with-letter", "a T between day and time", "E-CELL-DATE", ExportColumn::Begin,
         [](const QByteArray &cell) { return cell.left(10) + 'T' + cell.mid(11); }},
        {"date-with-slashes", "the first day as 2020/12/31", "E-CELL-DATE", ExportColumn::Begin,
         [](QByteArray cell) { return cell.replace('-', '/'); }},
        {"date-with-comma", "a comma before the milliseconds", "E-CELL-DATE", ExportColumn::Begin,
         [](QByteArray cell) { return cell.replace('.', ','); }},
        {"date-with-blank", "a blank behind the first day", "E-CELL-DATE", ExportColumn::Begin,
         followedBy(" ")},
        {"date-hour-24", "the first day begins at 24:00", "E-CELL-DATE", ExportColumn::Begin,
         [](const QByteArray &cell) { return cell.left(11) + "24" + cell.mid(13); }},
        {"date-before-1970", "the first day in 1960", "E-CELL-YEAR", ExportColumn::Begin,
         [](const QByteArray &cell) { return "1960" + cell.mid(4); }},
        {"date-beyond-2106", "the first day in 2152", "E-CELL-YEAR", ExportColumn::Begin,
         [](const QByteArray &cell) { return "2152" + cell.mid(4); }},
    };
}

QVector<CellDamage> otherDateDamages()
{
    return {
        {"date-all-zero", "zeros in place of an empty date", "E-CELL-DATE", ExportColumn::End,
         becomes("0000-00-00 00:00:00.000")},
        {"date-null", "a word in place of an empty date", "E-CELL-DATE", ExportColumn::End,
         becomes("NULL")},
        {"begin-empty", "no first day", "W-PERSON-BEGIN", ExportColumn::Begin, becomes("")},
        {"end-without-time", "the last day without a time", "E-CELL-DATE", ExportColumn::End,
         becomes("2099-12-31")},
        {"end-without-milliseconds", "the last day without milliseconds", "E-CELL-DATE",
         ExportColumn::End, becomes("2099-12-31 00:00:00")},
        {"end-day-first", "the last day as 31.12.2099", "E-CELL-DATE", ExportColumn::End,
         becomes("31.12.2099 00:00:00.000")},
        {"end-impossible", "31 November for a last day", "E-CELL-DATE", ExportColumn::End,
         becomes("2099-11-31 00:00:00.000")},
        {"end-two-digit-year", "the last day with a year of two digits", "E-CELL-DATE",
         ExportColumn::End, becomes("99-12-31 00:00:00.000")},
        {"end-of-time", "the last day that a calendar has", "E-CELL-YEAR", ExportColumn::End,
         becomes("9999-12-31 00:00:00.000")},
        {"end-before-1970", "the day 0 of spreadsheets for a last day", "E-CELL-YEAR",
         ExportColumn::End, becomes("1899-12-30 00:00:00.000")},
        {"calendar-without-date", "a calendar without the day from which it holds",
         "E-CELL-CALENDAR", ExportColumn::CalendarSince, becomes("")},
        {"calendar-since-without-time", "a calendar's day without a time", "E-CELL-DATE",
         ExportColumn::CalendarSince, [](const QByteArray &cell) { return cell.left(10); }},
        {"calendar-since-without-milliseconds", "a calendar's day without milliseconds",
         "E-CELL-DATE", ExportColumn::CalendarSince,
         [](const QByteArray &cell) { return cell.left(19); }},
        {"calendar-since-day-first", "a calendar's day as 31.12.2020", "E-CELL-DATE",
         ExportColumn::CalendarSince, dayFirst},
        {"calendar-since-impossible", "a calendar's day in month 13", "E-CELL-DATE",
         ExportColumn::CalendarSince,
         [](const QByteArray &cell) { return cell.left(5) + "13" + cell.mid(7); }},
        {"calendar-since-before-1970", "a calendar's day in 1960", "E-CELL-YEAR",
         ExportColumn::CalendarSince, [](const QByteArray &cell) { return "1960" + cell.mid(4); }},
    };
}

QVector<CellDamage> balanceDamages()
{
    return {
        {"decimal-comma", "a decimal comma", "E-CELL-BALANCE", ExportColumn::Leave,
         becomes("12,5")},
        {"lost-hundredth", "a balance that is cut to one hundredth less", "W-CELL-BALANCE",
         ExportColumn::Leave, becomes("0.29")},
        {"balance-three-decimals", "a balance with thousandths", "W-CELL-BALANCE",
         ExportColumn::Leave, becomes("12.345")},
        {"balance-no-number", "a word for a balance", "E-CELL-BALANCE", ExportColumn::Leave,
         becomes("NULL")},
        {"balance-with-thousands-blank", "a blank behind the thousands of a balance",
         "E-CELL-BALANCE", ExportColumn::Leave, becomes("1 234.5")},
        {"balance-with-thousands-comma", "a comma behind the thousands of a balance",
         "E-CELL-BALANCE", ExportColumn::Leave, becomes("1,234.5")},
        {"balance-with-unit", "a balance with its unit", "E-CELL-BALANCE", ExportColumn::Leave,
         becomes("12.5 d")},
        {"balance-infinite", "an infinite balance", "E-CELL-BALANCE", ExportColumn::Leave,
         becomes("inf")},
        {"balance-nan", "a balance that says that it is no number", "E-CELL-BALANCE",
         ExportColumn::Leave, becomes("nan")},
        {"balance-too-large", "a balance beyond all numbers", "E-CELL-BALANCE", ExportColumn::Leave,
         becomes("1e400")},
        {"balance-beyond-32-bits", "a balance whose hundredths do not fit 32 bits",
         "E-CELL-BALANCE", ExportColumn::Leave, becomes("21474836.48")},
        {"balance-with-plus", "a plus before a balance", "W-CELL-NUMBER", ExportColumn::Leave,
         becomes("+12.5")},
        {"balance-with-exponent", "a balance with an exponent", "W-CELL-NUMBER",
         ExportColumn::Leave, becomes("1.25e1")},
        {"balance-negative", "more leave taken than there was", "N-CELL-NEGATIVE",
         ExportColumn::Leave, becomes("-3.5")},
    };
}

QVector<CellDamage> numberDamages()
{
    return {
        {"number-beyond-32-bits", "a branch that does not fit 32 bits", "E-CELL-RANGE",
         ExportColumn::BranchNumber, becomes("4294967396")},
        {"calendar-beyond-32-bits", "a calendar that does not fit 32 bits", "E-CELL-RANGE",
         ExportColumn::Calendar, becomes("4294967297")},
        {"supervisor-beyond-32-bits", "a supervisor who does not fit 32 bits", "E-CELL-RANGE",
         ExportColumn::Supervisor, becomes("42949672961001")},
        {"number-beyond-16-bits", "a type that only its low bits make an ordinary one",
         "E-CELL-RANGE", ExportColumn::Type, becomes("65547")},
        {"relation-state-beyond-16-bits", "a relation's state of more than 16 bits", "E-CELL-RANGE",
         ExportColumn::RelationState, becomes("65537")},
        {"evidence-state-beyond-16-bits", "an evidence state of more than 16 bits", "E-CELL-RANGE",
         ExportColumn::State, becomes("65557")},
        {"number-with-sign", "a minus before the branch", "E-CELL-NUMBER",
         ExportColumn::BranchNumber, precededBy("-")},
        {"number-with-blank", "a blank within the branch", "E-CELL-NUMBER",
         ExportColumn::BranchNumber,
         [](const QByteArray &cell) { return cell.left(1) + ' ' + cell.mid(1); }},
        {"number-with-decimals", "a branch with a decimal", "E-CELL-NUMBER",
         ExportColumn::BranchNumber, followedBy(".0")},
        {"number-with-exponent", "a branch with an exponent", "E-CELL-NUMBER",
         ExportColumn::BranchNumber, becomes("1e2")},
        {"number-in-hex", "a branch in hexadecimal digits", "E-CELL-NUMBER",
         ExportColumn::BranchNumber, becomes("0x64")},
        {"number-in-arabic-digits", "a branch in Arabic digits", "E-CELL-NUMBER",
         ExportColumn::BranchNumber, becomes("١٠٠")},
        {"type-no-number", "a word for a type", "E-CELL-NUMBER", ExportColumn::Type,
         becomes("HPP")},
        {"relation-state-no-number", "a letter for a relation's state", "E-CELL-NUMBER",
         ExportColumn::RelationState, becomes("A")},
        {"supervisor-no-number", "a name for a supervisor", "E-CELL-NUMBER",
         ExportColumn::Supervisor, becomes("Kováč")},
        {"number-with-plus", "a plus before the branch", "W-CELL-NUMBER",
         ExportColumn::BranchNumber, precededBy("+")},
        {"number-with-blank-before", "a blank before the branch", "W-CELL-NUMBER",
         ExportColumn::BranchNumber, precededBy(" ")},
        {"number-with-blank-behind", "a blank behind the branch", "W-CELL-NUMBER",
         ExportColumn::BranchNumber, followedBy(" ")},
        {"number-with-hard-blank", "a no-break blank behind the branch", "W-CELL-NUMBER",
         ExportColumn::BranchNumber, followedBy("\xC2\xA0")},
        {"number-with-zero-before", "a personal number in another spelling", "W-CELL-NUMBER",
         ExportColumn::Number, precededBy("0")},
        {"ordinal-with-zero-before", "an ordinal in another spelling", "W-CELL-NUMBER",
         ExportColumn::Ordinal, precededBy("0")},
    };
}

QVector<CellDamage> keyDamages()
{
    return {
        {"number-with-letter", "a letter O for a zero in the personal number", "E-LINE-KEY",
         ExportColumn::Number,
         [](const QByteArray &cell) { return cell.left(1) + 'O' + cell.mid(2); }},
        {"personal-number-beyond-32-bits", "a personal number that does not fit 32 bits",
         "E-LINE-KEY", ExportColumn::Number, becomes("42949672961001")},
        {"number-zero", "personal number 0", "E-LINE-KEY", ExportColumn::Number, becomes("0")},
        {"number-empty", "no personal number", "E-LINE-KEY", ExportColumn::Number, becomes("")},
        {"ordinal-zero", "ordinal 0", "E-LINE-KEY", ExportColumn::Ordinal, becomes("0")},
        {"ordinal-letter", "a Roman ordinal", "E-LINE-KEY", ExportColumn::Ordinal, becomes("I")},
        {"key-beyond-32-bits", "the largest personal number, whose key does not fit 32 bits",
         "E-PERSON-ZERO", ExportColumn::Number, becomes("4294967295")},
        {"key-just-beyond-32-bits", "the least personal number whose key does not fit 32 bits",
         "E-PERSON-ZERO", ExportColumn::Number, becomes("429496730")},
        {"supervisor-missing", "a supervisor who is not in the file", "N-PERSON-SUPERVISOR",
         ExportColumn::Supervisor, becomes("9999999")},
    };
}

} // namespace

std::function<QByteArray(const QByteArray &)> becomes(const QByteArray &text)
{
    return [text](const QByteArray &) { return text; };
}

std::function<QByteArray(const QByteArray &)> precededBy(const QByteArray &text)
{
    return [text](const QByteArray &cell) { return text + cell; };
}

std::function<QByteArray(const QByteArray &)> followedBy(const QByteArray &text)
{
    return [text](const QByteArray &cell) { return cell + text; };
}

const QVector<CellDamage> &valueDamages()
{
    static const QVector<CellDamage> all = beginDamages() + otherDateDamages() + balanceDamages()
        + numberDamages() + keyDamages();
    return all;
}
