// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of single cells of an export.
#include "host/company/celldamage.h"

#include "host/company/exportwriter.h"

const QVector<CellDamage> &cellDamages()
{
    static const QVector<CellDamage> all {
        {"date-without-time", "the first day without a time", ExportColumn::Begin,
         [](const QByteArray &cell) { return cell.left(10); }},
        {"date-without-milliseconds", "the first day without milliseconds", ExportColumn::Begin,
         [](const QByteArray &cell) { return cell.left(19); }},
        {"date-day-first", "the first day as 31.12.2020", ExportColumn::Begin,
         [](const QByteArray &cell) {
             return cell.mid(8, 2) + '.' + cell.mid(5, 2) + '.' + cell.left(4) + cell.mid(10);
         }},
        {"date-impossible", "30 February", ExportColumn::Begin,
         [](const QByteArray &cell) { return cell.left(4) + "-02-30" + cell.mid(10); }},
        {"date-all-zero", "zeros in place of an empty date", ExportColumn::End,
         [](const QByteArray &) { return QByteArray("0000-00-00 00:00:00.000"); }},
        {"calendar-without-date", "a calendar without the day from which it holds",
         ExportColumn::CalendarSince, [](const QByteArray &) { return QByteArray(); }},
        {"decimal-comma", "a decimal comma", ExportColumn::Leave,
         [](const QByteArray &) { return QByteArray("12,5"); }},
        {"lost-hundredth", "a balance that is cut to one hundredth less", ExportColumn::Leave,
         [](const QByteArray &) { return QByteArray("0.29"); }},
        {"balance-no-number", "a word for a balance", ExportColumn::Leave,
         [](const QByteArray &) { return QByteArray("NULL"); }},
        {"number-beyond-32-bits", "a branch that does not fit 32 bits", ExportColumn::BranchNumber,
         [](const QByteArray &) { return QByteArray("4294967396"); }},
        {"number-beyond-16-bits", "a type that only its low bits make an ordinary one",
         ExportColumn::Type, [](const QByteArray &) { return QByteArray("65547"); }},
        {"number-with-sign", "a minus before the branch", ExportColumn::BranchNumber,
         [](const QByteArray &cell) { return '-' + cell; }},
        {"number-with-blank", "a blank within the branch", ExportColumn::BranchNumber,
         [](const QByteArray &cell) { return cell.left(1) + ' ' + cell.mid(1); }},
        {"number-with-letter", "a letter O for a zero in the personal number", ExportColumn::Number,
         [](const QByteArray &cell) { return cell.left(1) + 'O' + cell.mid(2); }},
        {"number-with-zero-before", "a personal number in another spelling", ExportColumn::Number,
         [](const QByteArray &cell) { return '0' + cell; }},
        {"number-zero", "personal number 0", ExportColumn::Number,
         [](const QByteArray &) { return QByteArray("0"); }},
        {"number-empty", "no personal number", ExportColumn::Number,
         [](const QByteArray &) { return QByteArray(); }},
        {"ordinal-zero", "ordinal 0", ExportColumn::Ordinal,
         [](const QByteArray &) { return QByteArray("0"); }},
        {"supervisor-missing", "a supervisor who is not in the file", ExportColumn::Supervisor,
         [](const QByteArray &) { return QByteArray("9999999"); }},
        {"apostrophe", "an apostrophe in a surname", ExportColumn::Surname,
         [](const QByteArray &cell) { return "O'" + cell; }},
        {"backslash", "a backslash at the end of a surname", ExportColumn::Surname,
         [](const QByteArray &cell) { return cell + '\\'; }},
        {"marker", "a place marker in a surname", ExportColumn::Surname,
         [](const QByteArray &cell) { return cell + " %5"; }},
        {"marker-localised", "a place marker of the other form in a phone", ExportColumn::Phone,
         [](const QByteArray &) { return QByteArray("0905 %L9"); }},
        {"statement", "a surname that ends the statement and begins another", ExportColumn::Surname,
         [](const QByteArray &cell) { return cell + "'; DELETE FROM term_sync; -- "; }},
        {"four-byte-letter", "a letter outside the basic plane", ExportColumn::Name,
         [](const QByteArray &cell) { return cell + "\xF0\x9D\x92\x9C"; }},
        {"nul", "a NUL byte", ExportColumn::Surname,
         [](const QByteArray &cell) { return cell + '\0' + "ab"; }},
        {"control-character", "a bell in a phone", ExportColumn::Phone,
         [](const QByteArray &cell) { return cell + '\a'; }},
        {"bad-utf8", "a letter broken in two", ExportColumn::Surname,
         [](const QByteArray &cell) { return cell + '\xC5'; }},
        {"text-too-long", "a surname longer than its column", ExportColumn::Surname,
         [](const QByteArray &cell) { return cell + QByteArray(150, 'x'); }},
    };
    return all;
}
