// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with the tables, keys and routines of the attendance database.
#include "host/catalogue/findingtopics.h"

FindingTopic tableFindings()
{
    return {
        "Tables and columns",
        "What the statements of a pass name. The schema is the attendance system's: ask its maker "
        "before you change it.",
        {
            {"E-SCHEMA-TABLE", FINDING_TEXT("table that is missing"),
             FINDING_TEXT("there is no table %1 in %2"),
             FINDING_TEXT("each statement that names it fails; what that costs stands in "
                          "recovery.md, under \"A table is missing\""),
             FINDING_TEXT("name the attendance database, or bring the table back from a backup"),
             "people_pam\nattendance"},
            {"E-SCHEMA-COLUMN", FINDING_TEXT("column that is missing"),
             FINDING_TEXT("the table %1 has no column %2"),
             FINDING_TEXT("each statement that names it fails; what that costs stands in "
                          "recovery.md, under \"A column is missing\""),
             FINDING_TEXT("ALTER TABLE `%1` ADD COLUMN `%2` %3"),
             "people\neditor\nINT UNSIGNED NULL"},
            {"E-SCHEMA-TYPE", FINDING_TEXT("column of another kind"),
             FINDING_TEXT("%1.%2 is of type %3, and the plugin writes %4 there"),
             FINDING_TEXT("the server refuses the row, or stores something else"),
             FINDING_TEXT("ALTER TABLE `%1` MODIFY COLUMN `%2` %5"),
             "people\nphone\nint(11)\ntext\nVARCHAR(255) NOT NULL"},
            {"E-SCHEMA-NARROW", FINDING_TEXT("column too narrow for its numbers"),
             FINDING_TEXT("%1.%2 is of type %3, and the plugin writes numbers of %4 there"),
             FINDING_TEXT("a strict server refuses the row; another one stores the nearest number "
                          "that fits, without a word"),
             FINDING_TEXT("ALTER TABLE `%1` MODIFY COLUMN `%2` %5"),
             "people\nend\nint(11)\n0 … 4294967295\nBIGINT NULL"},
            {"E-SCHEMA-SHORT", FINDING_TEXT("column too short for its text"),
             FINDING_TEXT("%1.%2 is of type %3, and the plugin writes up to %4 letters there"),
             FINDING_TEXT("a strict server refuses the row; another one cuts the text, without a "
                          "word"),
             FINDING_TEXT("ALTER TABLE `%1` MODIFY COLUMN `%2` %5"),
             "people\npamId\nvarchar(8)\n21\nVARCHAR(255) NULL"},
            {"E-SCHEMA-NULL", FINDING_TEXT("column that refuses NULL"),
             FINDING_TEXT("%1.%2 may not be NULL, and the plugin writes NULL there"),
             FINDING_TEXT("the server refuses the row: the person is neither added nor updated"),
             FINDING_TEXT("ALTER TABLE `%1` MODIFY COLUMN `%2` %5"),
             "people\nend\nbigint(20)\n\nbigint(20) NULL"},
            {"E-SCHEMA-UNFILLED", FINDING_TEXT("column that nobody fills"),
             FINDING_TEXT("%1.%2 may not be NULL and has no default, and the plugin does not know "
                          "it"),
             FINDING_TEXT("a strict server refuses each new row of the table"),
             FINDING_TEXT("ALTER TABLE `%1` MODIFY COLUMN `%2` %5"),
             "people\nemail\nvarchar(64)\n\nvarchar(64) NULL"},
            {"W-SCHEMA-LIST", FINDING_TEXT("list of PaM that cannot grow to everybody"),
             FINDING_TEXT("a list of all %1 people takes %2 letters, and vars.value holds %3"),
             FINDING_TEXT("once the list is full, new people are not enrolled in PaM; a server "
                          "that is not strict cuts the list, without a word"),
             FINDING_TEXT("ALTER TABLE `vars` MODIFY COLUMN `value` %4"),
             "12000\n83999\n65535\nMEDIUMTEXT NULL"},
        }};
}

FindingTopic keyFindings()
{
    return {
        "Keys, indexes and engines",
        "How the statements of a pass find their rows, and how the server keeps them.",
        {
            {"E-SCHEMA-KEY", FINDING_TEXT("unique key that is missing"),
             FINDING_TEXT("the table %1 has no unique key of exactly %2"),
             FINDING_TEXT("the plugin's upserts find no row by it and add another one: %4"),
             FINDING_TEXT("ALTER TABLE `%1` ADD UNIQUE KEY (%3)"),
             "people\npid\n`pid`\npeople who come back stand twice"},
            {"W-SCHEMA-OTHERKEY", FINDING_TEXT("unique key in the way"),
             FINDING_TEXT("the table %1 has another unique key, %2 (%3)"),
             FINDING_TEXT("where a row with the same values is there, the plugin overwrites it "
                          "instead of adding one"),
             FINDING_TEXT("ALTER TABLE `%1` %4"),
             "people\nphone\nphone\nDROP INDEX `phone`, ADD INDEX (`phone`)"},
            {"W-SCHEMA-ENGINE", FINDING_TEXT("table without transactions"),
             FINDING_TEXT("the engine of the table %1, %2, has no transactions"),
             FINDING_TEXT("a supervisor's mark can be lost half-way, and a copy for a rehearsal "
                          "is not of one moment"),
             FINDING_TEXT("ALTER TABLE `%1` ENGINE = InnoDB"), "admins_people\nMyISAM"},
            {"W-SCHEMA-SCAN", FINDING_TEXT("index that is missing"),
             FINDING_TEXT("no index of %1 begins with %2: the server goes through some %3 rows"),
             FINDING_TEXT("the pass takes longer with each row, for each person anew"),
             FINDING_TEXT("CREATE INDEX %4 ON `%1` (%5)"),
             "atten\nuid, ok, lock\n730000\n`uid_ok_lock`\n`uid`, `ok`, `lock`"},
        }};
}

FindingTopic routineFindings()
{
    return {
        "Routines, triggers and foreign keys",
        "What else the server does in a pass.",
        {
            {"N-SCHEMA-TRIGGER", FINDING_TEXT("trigger on a table that a pass writes"),
             FINDING_TEXT("the table %1 has the trigger %2 (%3)"),
             FINDING_TEXT("it runs for each row that a pass writes; where it fails, the plugin's "
                          "statement fails with it"),
             FINDING_TEXT("see what it does, and that it does not touch the tables that a pass "
                          "reads"),
             "people\npeople_log\nAFTER UPDATE"},
            {"N-SCHEMA-FOREIGNKEY", FINDING_TEXT("foreign key on a table that a pass writes"),
             FINDING_TEXT("the table %1 has the foreign key %2 (%3) to %4"),
             FINDING_TEXT("a row whose counterpart is missing is refused"),
             FINDING_TEXT("see to it that what the settings and the export name is there, such as "
                          "the department"),
             "people\npeople_did\ndid\ndepartments"},
            {"E-SCHEMA-ROUTINE", FINDING_TEXT("routine that is missing"),
             FINDING_TEXT("there is no %2 %1"),
             FINDING_TEXT("each statement that calls it fails; what that costs stands in "
                          "recovery.md, under \"A stored routine is missing\""),
             FINDING_TEXT("bring it back from a backup of the attendance database, and grant "
                          "EXECUTE on it to the plugin's login"),
             "midnightFromTs\nfunction"},
            {"E-SCHEMA-RESULT", FINDING_TEXT("routine with a wrong result"),
             FINDING_TEXT("%2 gives %3, and the plugin means %4"),
             FINDING_TEXT("days or months of corrections and group plans are wrong, without a "
                          "word"),
             FINDING_TEXT("set the time zone of the server's sessions to that of this machine; if "
                          "they are alike, correct %1"),
             "midnightFromTs\nmidnightFromTs(1704065400)\n1704060000\n1704063600"},
            {"W-SCHEMA-SLOW", FINDING_TEXT("routine that is slow"),
             FINDING_TEXT("a call of %1 takes %2 ms"),
             FINDING_TEXT("a pass calls it for each person, and getCurrentGid for each day"),
             FINDING_TEXT("see what it does, and whether the tables that it reads have an index "
                          "for it"),
             "getCurrentGid\n4.2"},
        }};
}
