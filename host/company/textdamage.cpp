// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Flaws of single cells of an export that hold texts.
//
// Whoever is added and whoever is updated need two statements whose markers have other numbers. A
// text is owed what is worse: where one of them fails, it is said to fail.
#include "host/company/celldamage.h"
#include "host/company/exportwriter.h"

namespace {

QVector<CellDamage> quoteDamages()
{
    return {
        {"apostrophe", "an apostrophe in a surname", "E-TEXT-FAILS", ExportColumn::Surname,
         precededBy("O'")},
        {"apostrophe-in-title", "an apostrophe in a title", "E-TEXT-FAILS", ExportColumn::Title,
         becomes("Ing'")},
        {"apostrophe-in-title-after", "an apostrophe in a title after the name", "E-TEXT-FAILS",
         ExportColumn::TitleAfter, becomes("Ph'D")},
        {"apostrophe-in-phone", "an apostrophe in a phone", "E-TEXT-FAILS", ExportColumn::Phone,
         becomes("'0905 123 456")},
        {"apostrophe-doubled", "two apostrophes, of which the server stores one", "W-TEXT-OTHER",
         ExportColumn::Surname, precededBy("O''")},
        {"backslash", "a backslash at the end of a surname", "E-TEXT-FAILS", ExportColumn::Surname,
         followedBy("\\")},
        {"backslash-in-phone", "a backslash at the end of a phone", "E-TEXT-FAILS",
         ExportColumn::Phone, becomes("0905 123 456\\")},
        {"backslash-within", "a backslash that makes a line end", "W-TEXT-OTHER",
         ExportColumn::Surname, followedBy("\\nova")},
        {"backslash-doubled", "two backslashes, of which the server stores one", "W-TEXT-OTHER",
         ExportColumn::Surname, followedBy("\\\\")},
        {"statement", "a surname that ends the statement and begins another", "E-TEXT-RUNS",
         ExportColumn::Surname, followedBy("'; DELETE FROM term_sync; -- ")},
        {"assignment", "a surname that sets another column", "E-TEXT-RUNS", ExportColumn::Surname,
         followedBy("', type=9, title2='")},
        {"comment", "a surname that makes the condition a comment", "E-TEXT-RUNS",
         ExportColumn::Surname, followedBy("' -- ")},
        {"comment-by-hash", "a surname that makes the condition a comment by a hash sign",
         "E-TEXT-RUNS", ExportColumn::Surname, followedBy("' # ")},
        {"comment-left-open", "a surname that begins a comment which has no end", "E-TEXT-FAILS",
         ExportColumn::Surname, followedBy("' /* ")},
        // Within a literal these mean nothing.
        {"comment-signs", "signs of comments in a surname", "", ExportColumn::Surname,
         followedBy(" -- /* #")},
        {"double-quote", "a nickname between double quotes", "", ExportColumn::Surname,
         followedBy(" \"Jo\"")},
        {"backtick", "a backtick in a surname", "", ExportColumn::Surname, followedBy("`")},
    };
}

QVector<CellDamage> markerDamages()
{
    return {
        {"marker", "a place marker in a surname", "E-TEXT-FAILS", ExportColumn::Surname,
         followedBy(" %5")},
        {"marker-of-next-text", "a place marker in a surname that a later text fills",
         "W-TEXT-MARKER", ExportColumn::Surname, followedBy(" %6")},
        {"marker-zero", "the lowest place marker", "E-TEXT-FAILS", ExportColumn::Phone,
         becomes("0905 %0")},
        {"marker-one", "a place marker of a place that is filled already", "E-TEXT-FAILS",
         ExportColumn::Name, followedBy(" %1")},
        {"marker-of-two-digits", "the place marker of the branch", "W-TEXT-MARKER",
         ExportColumn::Phone, becomes("0905 %16")},
        {"marker-of-three-digits", "a place marker that each statement reads otherwise",
         "E-TEXT-FAILS", ExportColumn::Phone, becomes("0905 %100")},
        {"marker-localised", "a place marker of the other form in a phone", "W-TEXT-MARKER",
         ExportColumn::Phone, becomes("0905 %L9")},
        {"marker-in-arabic-digits", "a place marker in Arabic digits", "W-TEXT-MARKER",
         ExportColumn::Phone, becomes("0905 %٨")},
        {"marker-low-in-arabic-digits",
         "a place marker of a place that is filled already, in Arabic "
         "digits",
         "E-TEXT-FAILS", ExportColumn::TitleAfter, becomes("%٣")},
    };
}

QVector<CellDamage> letterDamages()
{
    return {
        {"four-byte-letter", "a letter outside the basic plane", "E-TEXT-PLANE", ExportColumn::Name,
         followedBy("\xF0\x9D\x92\x9C")},
        {"emoji", "a smiling face behind a surname", "E-TEXT-PLANE", ExportColumn::Surname,
         followedBy(" \xF0\x9F\x99\x82")},
        {"nul", "a NUL byte", "E-TEXT-NUL", ExportColumn::Surname,
         followedBy(QByteArray("\0ab", 3))},
        {"nul-in-last-cell", "a NUL byte that hides no cell", "E-TEXT-NUL",
         ExportColumn::Supervisor, followedBy(QByteArray("\0ab", 3))},
        {"control-character", "a bell in a phone", "W-TEXT-CONTROL", ExportColumn::Phone,
         followedBy("\a")},
        {"control-character-in-name", "a start of heading in a name", "W-TEXT-CONTROL",
         ExportColumn::Name, followedBy("\x01")},
        {"tab-in-name", "a tab in a name", "W-TEXT-CONTROL", ExportColumn::Name,
         followedBy("\tJr")},
        {"carriage-return-in-phone", "a carriage return in a phone", "W-TEXT-CONTROL",
         ExportColumn::Phone, followedBy("\r")},
        {"delete-character", "a delete character in a surname", "W-TEXT-CONTROL",
         ExportColumn::Surname, followedBy("\x7F")},
        {"utf-8-twice", "a name that was made UTF-8 twice", "W-TEXT-CONTROL", ExportColumn::Name,
         becomes("Me\xC3\x84\xC2\x8Dislav")},
        {"bad-utf8", "a letter broken in two", "E-TEXT-UTF8", ExportColumn::Surname,
         followedBy("\xC5")},
        {"bad-utf8-of-three", "two of the three bytes of a letter", "E-TEXT-UTF8",
         ExportColumn::TitleAfter, followedBy("\xE2\x82")},
        {"bad-utf8-too-long", "a slash in two bytes", "E-TEXT-UTF8", ExportColumn::Surname,
         followedBy("\xC0\xAF")},
        {"bad-utf8-surrogates", "a letter as two surrogates", "E-TEXT-UTF8", ExportColumn::Name,
         followedBy("\xED\xA0\xBD\xED\xB8\x80")},
        {"windows-1250-line", "one name in Windows-1250", "E-TEXT-UTF8", ExportColumn::Name,
         becomes("Luk\xE1\x9A")},
        {"iso-8859-2-line", "one name in ISO 8859-2", "E-TEXT-UTF8", ExportColumn::Name,
         becomes("Luk\xE1\xB9")},
        {"byte-order-mark-in-cell", "a byte order mark before a surname", "W-TEXT-CONTROL",
         ExportColumn::Surname, precededBy("\xEF\xBB\xBF")},
        {"byte-order-mark-in-line", "a byte order mark before a line that is not the first",
         "N-TEXT-MARK", ExportColumn::Number, precededBy("\xEF\xBB\xBF")},
        {"text-too-long", "a surname longer than its column", "W-DATA-LENGTH",
         ExportColumn::Surname, followedBy(QByteArray(150, 'x'))},
    };
}

} // namespace

const QVector<CellDamage> &textDamages()
{
    static const QVector<CellDamage> all = quoteDamages() + markerDamages() + letterDamages();
    return all;
}
