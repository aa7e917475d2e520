// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with TalvenHR.ini. A line to write stands at the end of its remedy.
#include "host/catalogue/findingtopics.h"

FindingTopic settingFileFindings()
{
    return {
        "The file of the settings",
        "What concerns TalvenHR.ini as a whole, and keys that the plugin does not ask for.",
        {
            {"E-SET-FILE", FINDING_TEXT("settings that cannot be used"), FINDING_TEXT("%1"),
             nullptr, nullptr,
             "no TalvenHR.ini in '/srv/attendance'; write one there, or name its folder with "
             "--data-dir"},
            {"W-SET-BOM", FINDING_TEXT("byte order mark"),
             FINDING_TEXT("'%1' begins with a byte order mark, so that its first key or group is "
                          "ignored"),
             nullptr,
             FINDING_TEXT("save it in UTF-8 without one: sed -i '1s/^\\xEF\\xBB\\xBF//' %2"),
             "/srv/attendance/TalvenHR.ini\n'/srv/attendance/TalvenHR.ini'"},
            {"W-SET-UTF16", FINDING_TEXT("settings in UTF-16"),
             FINDING_TEXT("'%1' is not in UTF-8 (in UTF-16, perhaps), so that its keys are "
                          "ignored"),
             nullptr,
             FINDING_TEXT("save it in UTF-8: iconv -f UTF-16 -t UTF-8 %2 > %2.new && mv %2.new "
                          "%2"),
             "/srv/attendance/TalvenHR.ini\n'/srv/attendance/TalvenHR.ini'"},
            {"W-SET-ENCODING", FINDING_TEXT("settings not in UTF-8"),
             FINDING_TEXT("'%1' holds letters that are not in UTF-8, which arrive damaged"),
             nullptr,
             FINDING_TEXT("save it in UTF-8; from Windows-1250: iconv -f WINDOWS-1250 -t UTF-8 "
                          "%2 > %2.new && mv %2.new %2"),
             "/srv/attendance/TalvenHR.ini\n'/srv/attendance/TalvenHR.ini'"},
            {"W-SET-GROUP", FINDING_TEXT("key in a group"),
             FINDING_TEXT("the key '%1' stands in the group [%2] of '%3', where the plugin does "
                          "not look for it"),
             nullptr, FINDING_TEXT("move above all groups the line: %4"),
             "importFile\nMES\n/srv/attendance/TalvenHR.ini\nimportFile=/srv/hr/ron.data"},
            {"W-SET-CASE", FINDING_TEXT("key in other letters"),
             FINDING_TEXT("the key '%1' of '%2' is ignored, for capitals count"), nullptr,
             FINDING_TEXT("replace it by the line: %3"),
             "importfile\n/srv/attendance/TalvenHR.ini\nimportFile=/srv/hr/ron.data"},
            {"W-SET-UNKNOWN", FINDING_TEXT("unknown key"),
             FINDING_TEXT("the plugin does not know the key '%1' of '%2'%3"), nullptr,
             FINDING_TEXT("correct or remove the line: %4"),
             "importFil\n/srv/attendance/TalvenHR.ini\n (did you mean "
             "'importFile'?)\nimportFil=/srv/hr/ron.data"},
            {"W-SET-HASH", FINDING_TEXT("line that is no comment"),
             FINDING_TEXT("a line of '%1' begins with '#', which begins no comment there: the "
                          "plugin reads it as the key '%2', and does not know that"),
             nullptr, FINDING_TEXT("begin it with ';', or remove the line: %3"),
             "/srv/attendance/TalvenHR.ini\n# importFile\n# importFile=/srv/hr/ron.data"},
            {"W-SET-TWICE", FINDING_TEXT("key that stands there twice"),
             FINDING_TEXT("the key '%1' stands in '%2' more than once, and the last line counts: "
                          "%3"),
             nullptr, FINDING_TEXT("remove the line: %4"),
             "importFile\n/srv/attendance/TalvenHR.ini\nimportFile=/srv/hr/new.data\n"
             "importFile=/srv/hr/ron.data"},
        }};
}

FindingTopic settingValueFindings()
{
    return {
        "Values of the settings",
        "What the plugin reads as something else than what stands there. It says nothing about "
        "any of them.",
        {
            {"E-SET-DISABLED", FINDING_TEXT("plugin not enabled"),
             FINDING_TEXT("the plugin is disabled"), nullptr,
             FINDING_TEXT("set enabled=true in '%1'"), "/srv/attendance/TalvenHR.ini"},
            {"E-SET-SYNC", FINDING_TEXT("syncInterval 0"),
             FINDING_TEXT("syncInterval is 0, and the second tick divides by it"),
             FINDING_TEXT("that ends the process"),
             FINDING_TEXT("set it to 1 or more in '%1', such as by the line: syncInterval=60"),
             "/srv/attendance/TalvenHR.ini"},
            {"W-SET-SWITCH", FINDING_TEXT("switch that is not read as meant"),
             FINDING_TEXT("'%1=%2' is read as true, as is everything but 'false', '0' and an "
                          "empty value"),
             nullptr, FINDING_TEXT("write the line: %1=%3"), "deleteFile\nno\nfalse"},
            {"W-SET-NUMBER", FINDING_TEXT("value that is no number"),
             FINDING_TEXT("'%1=%2' is no number and is read as %3"), nullptr,
             FINDING_TEXT("write a whole number, such as in the line: %1=%4"),
             "timerInterval\n1 min\n0\n60"},
            {"W-SET-WRAP", FINDING_TEXT("number that does not fit"),
             FINDING_TEXT("'%1=%2' is read as %3, for numbers go from 0 to %4"), nullptr,
             FINDING_TEXT("write such a number, as in the line: %1=%5"),
             "syncCommandRun\n257\n1\n255\n2"},
            {"W-SET-TIMER", FINDING_TEXT("time of a tick that wraps round"),
             FINDING_TEXT("'timerInterval=%1' wraps round: the plugin ticks every %2 ms"), nullptr,
             FINDING_TEXT("write at most %3, as in the line: timerInterval=60"),
             "4294968\n1000\n4294967"},
            {"W-SET-COMMA", FINDING_TEXT("comma without quotes"),
             FINDING_TEXT("the value of '%1' holds a comma without quotes and is read as empty"),
             nullptr, FINDING_TEXT("put it into double quotes, in the line: %2"),
             "importFile\nimportFile=\"/srv/hr/a,b\""},
            {"W-SET-COMMENT", FINDING_TEXT("semicolon without quotes"),
             FINDING_TEXT("the value of '%1' holds a semicolon without quotes: it ends there, as "
                          "'%2', and the rest is a comment"),
             nullptr,
             FINDING_TEXT("give a comment a line of its own, or put the value into double quotes, "
                          "in the line: %3"),
             "importFile\n/srv/hr/a\nimportFile=\"/srv/hr/a;b\""},
            {"W-SET-BACKSLASH", FINDING_TEXT("backslash that is lost"),
             FINDING_TEXT("a backslash in the value of '%1' is dropped, or changes the letter "
                          "behind it: the value is read as '%2'"),
             nullptr, FINDING_TEXT("double it, in the line: %3"),
             "importFile\nC:xport\nimportFile=C:\\\\export"},
            {"N-SET-RUN", FINDING_TEXT("syncCommandRun above 2"),
             FINDING_TEXT("'syncCommandRun=%1' means the same as 2: the export command runs on "
                          "every pass"),
             nullptr, FINDING_TEXT("write it so, in the line: syncCommandRun=2"), "7"},
            {"N-SET-DEPARTMENT", FINDING_TEXT("departmentId 0"),
             FINDING_TEXT("departmentId is 0, which stands for no department"),
             FINDING_TEXT("people whom a pass adds or updates have none; one who comes back has 1"),
             FINDING_TEXT("write the number of their department, such as in the line: "
                          "departmentId=1"),
             nullptr},
            {"W-SET-EXPORT", FINDING_TEXT("no export named"),
             FINDING_TEXT("'importFile' is empty: the plugin reads 'ron.data' in the working "
                          "directory of the server"),
             nullptr, FINDING_TEXT("name the export with its whole path, as in the line: %1"),
             "importFile=/srv/attendance/ron.data"},
        }};
}

FindingTopic settingCommandFindings()
{
    return {
        "The export command",
        "What keeps `syncCommand` from running as it was meant. The plugin starts a program with "
        "arguments, without a shell; double quotes group words, single quotes do not.",
        {
            {"W-SET-NOCOMMAND", FINDING_TEXT("no export command named"),
             FINDING_TEXT("syncCommandRun asks for an export command, and there is none"),
             FINDING_TEXT("each such pass warns, and goes on with the export that is there"),
             FINDING_TEXT("name it in syncCommand, or write the line: syncCommandRun=0"), nullptr},
            {"W-SET-COMMAND", FINDING_TEXT("export command not found"),
             FINDING_TEXT("the export command '%1' is not found"),
             FINDING_TEXT("each pass goes on without it, with the export that is there"),
             FINDING_TEXT("install it, or correct syncCommand in '%2'"),
             "/srv/hr/export\n/srv/attendance/TalvenHR.ini"},
            {"W-SET-EXECUTE", FINDING_TEXT("export command that may not be executed"),
             FINDING_TEXT("the export command '%1' may not be executed"),
             FINDING_TEXT("each pass goes on without it, with the export that is there"),
             FINDING_TEXT("let it be executed: chmod a+x %2"), "/srv/hr/export\n'/srv/hr/export'"},
            {"W-SET-BLANK", FINDING_TEXT("blank in the name of the export command"),
             FINDING_TEXT("the export command ends at its first blank: '%1' is not found, '%2' is "
                          "there"),
             FINDING_TEXT("each pass goes on without it, with the export that is there"),
             FINDING_TEXT("put it into quotes with backslashes, in the line: %3"),
             "/srv/hr\n/srv/hr export/run\nsyncCommand=\\\"/srv/hr export/run\\\""},
            {"W-SET-QUOTES", FINDING_TEXT("quotes that do not group"),
             FINDING_TEXT("quotes in syncCommand do not group words: it is split into %1"), nullptr,
             FINDING_TEXT("put a backslash before each double quote, in the line: %2"),
             "'sh', '-c', 'export', '--all'\nsyncCommand=sh -c \\\"export --all\\\""},
            {"W-SET-SHELL", FINDING_TEXT("signs of a shell"),
             FINDING_TEXT("'%1' in syncCommand means nothing, for no shell reads it: the program "
                          "gets it as an argument"),
             nullptr, FINDING_TEXT("call a shell, in the line: %2"),
             "&&\nsyncCommand=/bin/sh -c \\\"/srv/hr/fetch && /srv/hr/sort\\\""},
        }};
}

FindingTopic settingStateFindings()
{
    return {
        "Texts of evidence states",
        "What is wrong with the keys and texts of the group `[MES]`.",
        {
            {"W-SET-STATE", FINDING_TEXT("key that is no state"),
             FINDING_TEXT("'%1' in the group [MES] of '%2' is no number of a state; its text "
                          "becomes that of state %3"),
             nullptr,
             FINDING_TEXT("write NUMBER=TEXT with a number up to 65535, or remove the line: %4"),
             "maternity\n/srv/attendance/TalvenHR.ini\n0\nmaternity=materská"},
            {"W-SET-STATEPLACE", FINDING_TEXT("text of a state outside [MES]"),
             FINDING_TEXT("a line of '%1' looks like the text of a state, and does not stand in "
                          "the group [MES], in capitals"),
             FINDING_TEXT("the plugin does not look for it: people in this state get no interval "
                          "with this text"),
             FINDING_TEXT("move it below a line [MES], as the line: %2"),
             "/srv/attendance/TalvenHR.ini\n21=materská"},
            {"W-SET-STATETEXT", FINDING_TEXT("text of a state that does not stay what it is"),
             FINDING_TEXT("the text '%2' of state %1 does not stay what it is in the statement for "
                          "a person, for it holds an apostrophe, a backslash, or a percent sign "
                          "before a digit or an L"),
             FINDING_TEXT("%3"), FINDING_TEXT("write another sign, in the line: %4"),
             "21\nparents' leave\nno person in this state is added or updated, for the statement "
             "breaks\n21=parents’ leave"},
            {"N-SET-STATE", FINDING_TEXT("state without a text"),
             FINDING_TEXT("the text of state %1 is empty"),
             FINDING_TEXT("people in this state get an interval without a text"),
             FINDING_TEXT("write a text, or remove the line: %2"), "21\n21="},
        }};
}
