// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What an export shows when it is compared: with another one, or with the database.
#include "host/catalogue/findingtopics.h"

FindingTopic exportComparisonFindings()
{
    return {
        "An export against the last good one",
        "Only with `--against FILE`.",
        {
            {"W-AGAINST-LOST", FINDING_TEXT("people missing"),
             FINDING_TEXT("%1 of %2 people of the other export are not in this one (%3 %)"),
             FINDING_TEXT(
                 "the plugin changes nothing about people who are not in the file: they keep "
                 "their access"),
             FINDING_TEXT("look whether the file was cut off, or is that of a part of the company"),
             "312\n1000\n31"},
            {"W-AGAINST-EMPTY", FINDING_TEXT("column that is filled unlike before"),
             FINDING_TEXT("%1: empty in %2 % of the lines, %3 % before"),
             FINDING_TEXT("the plugin takes the cells as they are, for everybody"),
             FINDING_TEXT("look whether the HR system fills the column as before"),
             "Kalendar\n100\n0"},
            {"W-AGAINST-SAME", FINDING_TEXT("column with one cell for everybody"),
             FINDING_TEXT("%1: the same in all lines; %2 different cells before"),
             FINDING_TEXT("the plugin takes the cell as it is, for everybody"),
             FINDING_TEXT("look whether the HR system fills the column as before"),
             "DovolenaZustatek\n214"},
            {"W-AGAINST-CHANGED", FINDING_TEXT("column that has changed nearly everywhere"),
             FINDING_TEXT("%1: changed for %2 % of the people"),
             FINDING_TEXT("the plugin takes the cells as they are, for everybody"),
             FINDING_TEXT("look whether the HR system fills the column as before"), "Prijmeni\n98"},
            {"W-AGAINST-EXCHANGED", FINDING_TEXT("columns that look exchanged"),
             FINDING_TEXT(
                 "%1 and %2 have changed places for %3 % of the people whose cells have changed"),
             FINDING_TEXT("the cells are stored under the wrong names"),
             FINDING_TEXT("restore the order of the columns"), "Jmeno\nPrijmeni\n100"},
        }};
}

FindingTopic exportDatabaseFindings()
{
    return {
        "An export against the database",
        "Only with the options of a database.",
        {
            {"W-DATA-BRANCH", FINDING_TEXT("branch that does not exist"),
             FINDING_TEXT("no branch has the number %1 (lines that name it: %2)"),
             FINDING_TEXT(
                 "the branch in these people's rows is emptied; each waits until the export "
                 "delivers the same record again and the branch is there"),
             FINDING_TEXT(
                 "enter the number at a branch of the attendance system, or correct Stredisko"),
             "120\n14"},
            {"W-DATA-BRANCHES", FINDING_TEXT("number of several branches"),
             FINDING_TEXT("%1 branches have the number %2"),
             FINDING_TEXT("people of this number come to the one that the server gives last"),
             FINDING_TEXT("leave the number at one branch"), "2\n120"},
            {"W-DATA-CALENDAR", FINDING_TEXT("calendar without a group"),
             FINDING_TEXT(
                 "the branch %1 has no group with the calendar %2 (lines that name it: %3)"),
             FINDING_TEXT("these people get no group plan"),
             FINDING_TEXT("add a group with this calendar to the master group of the branch"),
             "120\n7\n14"},
            {"W-DATA-SUPERVISOR", FINDING_TEXT("supervisor who is no administrator"),
             FINDING_TEXT("no administrator has the personal number %1 (lines that name them as "
                          "supervisor: %2)"),
             FINDING_TEXT("these people keep the supervisor that they have"),
             FINDING_TEXT("enter the personal number at the administrator"), "4711\n14"},
            {"W-DATA-SUPERVISORS", FINDING_TEXT("number of several administrators"),
             FINDING_TEXT("%1 administrators have the personal number %2"),
             FINDING_TEXT("the mark goes to the one that the server gives first"),
             FINDING_TEXT("leave the number at one administrator"), "2\n4711"},
            {"W-DATA-ENDED", FINDING_TEXT("many people who end"),
             FINDING_TEXT("%1 of %2 people of the database get a last day, or another one"),
             FINDING_TEXT("from that day on they count as ended"),
             FINDING_TEXT("look whether the columns of first and last day have changed places"),
             "309\n325"},
            {"W-DATA-LENGTH", FINDING_TEXT("text longer than its column"),
             FINDING_TEXT("%1 '%2' is longer than the %3 letters of its column"),
             FINDING_TEXT("%4"), FINDING_TEXT("shorten the text, or widen the column"),
             "Telefon\n0905 000 000, 0905 000 001\n20\nthe server cuts it"},
        }};
}
