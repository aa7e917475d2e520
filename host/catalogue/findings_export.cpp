// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with an export: its lines, cells, texts and people.
#include "host/catalogue/findingtopics.h"

FindingTopic exportFileFindings()
{
    return {
        "An export as a whole",
        "What concerns the file and not one of its lines.",
        {
            {"E-FILE-NOTHING", FINDING_TEXT("no usable line"),
             FINDING_TEXT("the export has no usable line: %1"),
             FINDING_TEXT(
                 "the pass takes it, removes it if deleteFile says so, and adds or updates "
                 "nobody"),
             FINDING_TEXT("put a correct export there"), "it looks like UTF-16"},
            {"E-FILE-CUT", FINDING_TEXT("file that was cut off"),
             FINDING_TEXT("the last line has %1 cells and no line end: the file was cut off"),
             FINDING_TEXT("the line is dropped, and so is all that should follow it"),
             FINDING_TEXT("fetch the export again, when it is whole"), "7"},
            {"W-FILE-ENDED", FINDING_TEXT("many people whose last day has gone by"),
             FINDING_TEXT(
                 "the last day of %1 of %2 people has gone by, though their state is at most 3"),
             FINDING_TEXT("all of them count as ended"),
             FINDING_TEXT("look whether the columns of first and last day have changed places"),
             "324\n325"},
            {"W-FILE-HEADER", FINDING_TEXT("header with other names"),
             FINDING_TEXT("the first line names its columns otherwise: %1"),
             FINDING_TEXT(
                 "the plugin never looks at the names: the cells are taken in the order in "
                 "which they stand"),
             FINDING_TEXT("look whether the columns still have their order"),
             "column 4 is named 'Prijmeni' in place of 'Jmeno'"},
            {"N-FILE-END", FINDING_TEXT("no line end behind the last line"),
             FINDING_TEXT("the last line has no line end; a file that was cut off ends like this"),
             nullptr, FINDING_TEXT("compare its number of lines with that of the HR system"),
             nullptr},
            {"W-FILE-CHANGES", FINDING_TEXT("file that changes"),
             FINDING_TEXT("the file was written while it was checked"),
             FINDING_TEXT("what stands here is not about the file as it is now"),
             FINDING_TEXT("check it again when it is whole"), nullptr},
            {"N-FILE-STATES", FINDING_TEXT("texts of states not looked at"),
             FINDING_TEXT(
                 "the texts of [MES] in TalvenHR.ini stand in the same statements, and were not "
                 "looked at"),
             nullptr, FINDING_TEXT("name the folder of TalvenHR.ini with --data-dir"), nullptr},
        }};
}

FindingTopic exportLineFindings()
{
    return {
        "Lines of an export",
        "What costs a person their whole line. Lines count from 1, the header is line "
        "1.",
        {
            {"E-LINE-CELLS", FINDING_TEXT("wrong number of cells"),
             FINDING_TEXT("the line has %1 cells in place of 18%2"),
             FINDING_TEXT(
                 "the line is dropped; the plugin says nothing about it below log level 3"),
             FINDING_TEXT("correct the text in the HR system and export again"),
             "19\n; one '|' too many seems to be in Prijmeni"},
            {"E-LINE-KEY", FINDING_TEXT("no personal number or ordinal"),
             FINDING_TEXT(
                 "OsobniCislo '%1' and PoradoveCisloPP '%2' are read as %3 and %4, and neither "
                 "may be 0"),
             FINDING_TEXT(
                 "the line is dropped; the plugin says nothing about it below log level 3"),
             FINDING_TEXT("correct the number in the HR system and export again"), "47O1\n1\n0\n1"},
            {"E-LINE-NAME", FINDING_TEXT("no name"),
             FINDING_TEXT("Jmeno and Prijmeni are both empty"),
             FINDING_TEXT(
                 "the line is dropped; the plugin says nothing about it below log level 3"),
             FINDING_TEXT("enter a name in the HR system and export again"), nullptr},
            {"W-LINE-HEADER", FINDING_TEXT("header further down"),
             FINDING_TEXT("the line holds the names of the columns, and is not the first"),
             FINDING_TEXT(
                 "the line is dropped; exports may have been joined, so that people of both are "
                 "in this one"),
             FINDING_TEXT("look whether the file is made of two exports"), nullptr},
        }};
}

FindingTopic exportCellFindings()
{
    return {"Cells of an export",
            "Cells that the plugin reads as something else than what stands there. It says "
            "nothing about any of them.",
            {
                {"E-CELL-DATE", FINDING_TEXT("date that is lost"),
                 FINDING_TEXT("%1 '%2' is no date for the plugin: %3"), FINDING_TEXT("%4"),
                 FINDING_TEXT("write it as 2024-03-31 00:00:00.000"),
                 "DatumVystupu\n31.03.2024\nthe day stands first\nit counts as empty, so that the "
                 "person has no last day and keeps their access"},
                {"E-CELL-YEAR", FINDING_TEXT("date beyond the range"),
                 FINDING_TEXT("%1 '%2' lies outside the years 1970 to 2105"), FINDING_TEXT("%3"),
                 FINDING_TEXT("leave the cell empty where no day is known"),
                 "DatumVystupu\n9999-12-31 00:00:00.000\nthe column cannot hold it: the statement "
                 "for the person fails, or another day is stored"},
                {"E-CELL-NUMBER", FINDING_TEXT("number that is lost"),
                 FINDING_TEXT("%1 '%2' is no number"), FINDING_TEXT("%3"),
                 FINDING_TEXT("write digits only"),
                 "Stredisko\n1O2\nit is read as 0, so that the person is given no branch"},
                {"E-CELL-RANGE", FINDING_TEXT("number beyond its bits"),
                 FINDING_TEXT("%1 '%2' does not fit %3 bits"), FINDING_TEXT("it is read as %4"),
                 FINDING_TEXT("correct the number"), "TypPracovnihoPomeru\n65547\n16\n11"},
                {"W-CELL-NUMBER", FINDING_TEXT("number in an unusual spelling"),
                 FINDING_TEXT("%1 '%2' is spelled unlike other numbers"),
                 FINDING_TEXT("it is read as %3"),
                 FINDING_TEXT("write digits only, without a sign, blanks or zeros in front"),
                 "Stredisko\n+102\n102"},
                {"E-CELL-BALANCE", FINDING_TEXT("leave balance that is lost"),
                 FINDING_TEXT("DovolenaZustatek '%1' is no number for the plugin: %2"),
                 FINDING_TEXT("it is read as %3, and the leave in the fund is corrected to that"),
                 FINDING_TEXT("write digits, and a point before the decimals"),
                 "12,5\nit has a decimal comma\n0"},
                {"W-CELL-BALANCE", FINDING_TEXT("leave balance that loses a hundredth"),
                 FINDING_TEXT("DovolenaZustatek '%1' is cut to %2 hundredths of a day"),
                 FINDING_TEXT("the fund gets a little less than what stands there"),
                 FINDING_TEXT(
                     "round the balance in the HR system to what the fund can hold, or accept it"),
                 "0.29\n28"},
                {"N-CELL-NEGATIVE", FINDING_TEXT("negative leave balance"),
                 FINDING_TEXT("DovolenaZustatek '%1' is below zero"),
                 FINDING_TEXT("the fund is corrected to it"), nullptr, "-2.5"},
                {"E-CELL-CALENDAR", FINDING_TEXT("calendar without a date"),
                 FINDING_TEXT("Kalendar %1 has no KalendarPlatnostOd"),
                 FINDING_TEXT(
                     "the group plan is entered for month 0, and all unlocked attendance of the "
                     "person is opened again from its first day on"),
                 FINDING_TEXT("enter the day from which the calendar holds"), "7"},
            }};
}

FindingTopic exportPeopleFindings()
{
    return {
        "People of an export",
        "What shows only when lines are compared with each other or with the day.",
        {
            {"E-PERSON-KEY", FINDING_TEXT("key shared by two people"),
             FINDING_TEXT("%1 and %2 both have the key %3"),
             FINDING_TEXT(
                 "the plugin takes them for one person: each overwrites the row of the other"),
             FINDING_TEXT("give one of them another number in the HR system"), "12.3\n1.23\n123"},
            {"E-PERSON-ZERO", FINDING_TEXT("key beyond 32 bits"),
             FINDING_TEXT("the key of %1 does not fit 32 bits"),
             FINDING_TEXT(
                 "it is read as 0, like that of everybody to whom this happens: they overwrite "
                 "each other"),
             FINDING_TEXT("shorten the number in the HR system"), "4294967295.1"},
            {"W-PERSON-TWICE", FINDING_TEXT("person twice"),
             FINDING_TEXT("%1 stands in the export %2 times%3"), FINDING_TEXT("%4"),
             FINDING_TEXT("remove the lines that do not hold"),
             "4711.1\n2\n; they differ in Telefon\nthe lines overwrite each other: the row "
             "changes in each pass"},
            {"W-PERSON-SPELLING", FINDING_TEXT("personal number in several spellings"),
             FINDING_TEXT("the personal number %1 is also spelled '%2'"),
             FINDING_TEXT("the plugin takes both for one number"), FINDING_TEXT("spell it alike"),
             "815\n0815"},
            {"W-PERSON-CIRCLE", FINDING_TEXT("circle of supervisors"),
             FINDING_TEXT("%1 are supervisors of each other in a circle"),
             FINDING_TEXT("each is given as supervisor to the next"),
             FINDING_TEXT("correct NadrizenyOsobniCislo"), "12, 15"},
            {"W-PERSON-DATES", FINDING_TEXT("last day before the first"),
             FINDING_TEXT("DatumVystupu lies before DatumNastupu"),
             FINDING_TEXT("both are stored; the person counts as ended"),
             FINDING_TEXT("correct the dates"), nullptr},
            {"W-PERSON-BEGIN", FINDING_TEXT("no first day"), FINDING_TEXT("DatumNastupu is empty"),
             FINDING_TEXT("the first day becomes 1 January 2000"),
             FINDING_TEXT("enter the first day in the HR system"), nullptr},
            {"N-PERSON-ENDED", FINDING_TEXT("last day in the past"),
             FINDING_TEXT("the last day has gone by; StavPracovnihoPomeru is %1"),
             FINDING_TEXT(
                 "the person counts as ended: they are not added, and keep branch and calendar "
                 "if they are there"),
             nullptr, "1"},
            {"N-PERSON-SELF", FINDING_TEXT("own supervisor"),
             FINDING_TEXT("the person is named as their own supervisor"),
             FINDING_TEXT("if they are an administrator, they get the mark for themselves"),
             nullptr, nullptr},
            {"N-PERSON-SUPERVISOR", FINDING_TEXT("supervisor who is not in the export"),
             FINDING_TEXT("NadrizenyOsobniCislo %1 is the number of nobody in the export"),
             FINDING_TEXT("the plugin looks for the administrator with this number all the same"),
             nullptr, "9999"},
        }};
}
