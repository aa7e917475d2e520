// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Names that nobody has: made of what means something in a statement.
#include "support/hostiletexts.h"

#include "support/recordbuilder.h"

#include <QStringList>

#include <iterator>

namespace {

const ushort visibleNul = 0x2400;

const char *const pieces[] = {
    // These come most often.
    "'", "'", "'", "''", "\\", "\\", "\\\\", "\\'", "%5", "%", "x", " ",
    // Escapes and markers.
    "\\n", "\\0", "\\%", "\\_", "\\N", "\\Z", "\\ž", "%0", "%1", "%2", "%3", "%4", "%6", "%7", "%8",
    "%9", "%10", "%11", "%12", "%13", "%14", "%15", "%16", "%17", "%18", "%99", "%%", "%%1", "%L5",
    "%L", "%٣", "%²", "%%10",
    // Other quotes, comments, ends.
    "\"", "`", "-- ", "--", "--\t", "#", "/*", "*/", "/*!", "/*!50000", "/*!100100", "/*!999999",
    "/*!40 ", "/*M!", ";", "; ", "\t",
    // What may stand before, between and behind values.
    "1", "0x41", "1e5", ".5", "n'", "x'41'", "b'1'", "_utf8", "NULL", " or ", " and ", " like ",
    " is ", " collate ", " div ", " mod ", " not ", " xor ", " between ", " in ", " where ",
    " limit 1", " order by 1 ", " returning 1", "select ", "case ", "interval 1 day", " as ",
    " on ", " escape ", ":=", "_latin1", "default", "title", "concat(", "1e", "0b1", "{d ", "␀",
    "\\␀", "\x01", "\x7f", "\n", "''''", "\"\"", "=", "+", "-", "*", "/", "%", "(", ")", ",", ", ",
    "<", ">", "!", "|", "&", "@", ".", ":", "~", "?", "[", "{", "$",
    // Whole attacks, names and letters.
    "', phone='1", "', title2='", "'; DELETE FROM people; -- ", "'; SELECT 1; -- ", "' or '1",
    "' 'y", "'/**/'z", "' /*!50000 'b' */ 'c", "'||'", "'); DROP TABLE nothing; -- ", "' -- ",
    "' # ", "' WHERE pid=0 -- ", "DELETE FROM people", "O'Neil", "Ján", "Žižka", "d'",
    "Rock 'n' Roll", "\u00a0", "ß", "€", "or", "N"};

const char *const commonTexts[] = {"", "Ing.", "Ján", "PhD.", "0905 123 456", "+421905", "-", "or"};

template <size_t count>
QString oneOf(const char *const (&texts)[count], Draw *draw)
{
    return QString::fromUtf8(texts[draw->below(static_cast<int>(count))]);
}

} // namespace

QString hostileText(Draw *draw)
{
    QString text;
    for (int left = 1 + draw->below(draw->percent(70) ? 3 : 7); left > 0; --left)
        text += oneOf(pieces, draw);
    return text.replace(QChar(visibleNul), QChar(u'\0'));
}

EmployeeRecord hostileEmployee(Draw *draw)
{
    EmployeeRecord employee = RecordBuilder().calendar(3);
    QString *const texts[] = {&employee.titul, &employee.jmeno, &employee.prijmeni,
                              &employee.titulZa, &employee.telefon};
    for (QString *text : texts)
        *text = oneOf(commonTexts, draw);
    const int kind = draw->below(10);
    const int hostile = kind < 7 ? 1 : (kind < 9 ? 2 : 5);
    for (int i = 0; i < hostile; ++i)
        *texts[hostile == 5 ? i : draw->below(5)] = hostileText(draw);
    return employee;
}
