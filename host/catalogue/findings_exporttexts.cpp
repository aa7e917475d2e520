// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with the texts of an export.
#include "host/catalogue/findingtopics.h"

FindingTopic exportTextFindings()
{
    return {
        "Texts of an export",
        "The plugin puts texts into its statements as they are. See administration.md, "
        "\"What is not escaped\".",
        {
            {"E-TEXT-RUNS", FINDING_TEXT("text that runs as SQL"),
             FINDING_TEXT("%1 '%2' turns the statement for this person into another one"),
             FINDING_TEXT("the server runs it with the rights of the login: %3"),
             FINDING_TEXT("remove it, and find out how it came into the HR system"),
             "Prijmeni\nx'; DELETE FROM term_sync; -- \nDELETE FROM term_sync"},
            {"E-TEXT-FAILS", FINDING_TEXT("text that breaks the statement"),
             FINDING_TEXT("%1 '%2' breaks the statement for this person"),
             FINDING_TEXT(
                 "the statement fails%4: the person is neither added nor updated, in this pass "
                 "and in each later one"),
             FINDING_TEXT(
                 "write a typographic apostrophe (’) for the plain one, no backslash at the end, and "
                 "a blank behind a percent sign"),
             "Prijmeni\nO'Neill\n\n"},
            {"W-TEXT-MARKER", FINDING_TEXT("place marker in a text"),
             FINDING_TEXT(
                 "%1 '%2' holds a place marker, which the plugin fills with another value"),
             FINDING_TEXT("what is stored: '%3'"),
             FINDING_TEXT("write a blank behind the percent sign"),
             "Prijmeni\nNovák %5\nNovák Ing."},
            {"W-TEXT-OTHER", FINDING_TEXT("text that is stored as another"),
             FINDING_TEXT("%1 '%2' is stored as another text"),
             FINDING_TEXT("what is stored: '%3'"),
             FINDING_TEXT("write no backslash and no plain apostrophe"), "Prijmeni\na\\b\nab"},
            {"E-TEXT-STATE", FINDING_TEXT("text of a state that breaks the statement"),
             FINDING_TEXT(
                 "the text of state %1 in [MES] of TalvenHR.ini, '%2', breaks the statement "
                 "for everybody in this state"),
             FINDING_TEXT("nobody who comes into this state is updated or added"),
             FINDING_TEXT("correct the text in TalvenHR.ini: no plain apostrophe, no backslash at "
                          "the end, a blank behind a percent sign"),
             "21\no'clock"},
            {"W-TEXT-STATE", FINDING_TEXT("text of a state that is stored as another"),
             FINDING_TEXT("the text of state %1 in [MES] of TalvenHR.ini, '%2', is stored as "
                          "another text"),
             FINDING_TEXT("people in this state get the other text"),
             FINDING_TEXT("correct the text in TalvenHR.ini: no backslash, and a blank behind a "
                          "percent sign"),
             "21\n100 %5"},
            {"E-TEXT-UTF8", FINDING_TEXT("letters that are no UTF-8"),
             FINDING_TEXT("%1 holds bytes that are no UTF-8; in %2 it reads '%3'"),
             FINDING_TEXT("the letters are stored as question marks in a diamond: '%4'"),
             FINDING_TEXT("write the export in UTF-8; iconv -f %2 -t UTF-8 recodes a whole file"),
             "Jmeno\nWindows-1250\nLukáš\nLuk�"},
            {"E-TEXT-NUL", FINDING_TEXT("NUL byte"),
             FINDING_TEXT("the line holds a NUL byte behind %1 characters"),
             FINDING_TEXT("the plugin does not read the rest of the line"),
             FINDING_TEXT("find out what has damaged the file, and export again"), "17"},
            {"W-TEXT-CONTROL", FINDING_TEXT("invisible character"),
             FINDING_TEXT("%1 '%2' holds the invisible character U+%3"),
             FINDING_TEXT("it is stored with the text"), FINDING_TEXT("remove it in the HR system"),
             "Prijmeni\nNov ák\n0009"},
            {"E-TEXT-PLANE", FINDING_TEXT("letter that the connection cannot carry"),
             FINDING_TEXT("%1 '%2' holds the letter U+%3, which takes four bytes"),
             FINDING_TEXT(
                 "the server refuses the statement: the person is neither added nor updated"),
             FINDING_TEXT("remove the letter in the HR system"), "Prijmeni\nNovák 🙂\n1F642"},
            {"N-TEXT-MARK", FINDING_TEXT("byte order mark"),
             FINDING_TEXT("the line begins with a byte order mark"),
             FINDING_TEXT("the plugin skips it"), nullptr, nullptr},
        }};
}
