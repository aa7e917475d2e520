// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with the plugin's file, its folders and its machine.
#include "host/catalogue/findingtopics.h"

FindingTopic exportPlaceFindings()
{
    return {
        "The place of the export",
        "What the folder and the file that `importFile` names look like to the user who asks. The "
        "attendance server may run as another one.",
        {
            {"W-PLACE-RELATIVE", FINDING_TEXT("export without its whole path"),
             FINDING_TEXT("importFile '%1' counts from the working directory of the process that "
                          "loads the plugin"),
             FINDING_TEXT("an attendance server may look anywhere and find no export, of which its "
                          "log tells from level 2 on"),
             FINDING_TEXT("name it with its whole path, as in the line: %2"),
             "ron.data\nimportFile=/srv/attendance/ron.data"},
            {"W-PLACE-WINDOWS", FINDING_TEXT("export with a path of another system"),
             FINDING_TEXT("importFile '%1' is a path of Windows, and on this machine a mere name "
                          "in the working directory of the process that loads the plugin"),
             FINDING_TEXT("no export is found, of which its log tells from level 2 on"),
             FINDING_TEXT("name it with its path on this machine, as in the line: %2"),
             "C:\\hr\\ron.data\nimportFile=/srv/attendance/ron.data"},
            {"E-PLACE-FOLDER", FINDING_TEXT("no folder for the export"),
             FINDING_TEXT("the folder '%1' of importFile is not there"),
             FINDING_TEXT("no export is ever found"), FINDING_TEXT("make it: mkdir -p %2"),
             "/srv/hr\n'/srv/hr'"},
            {"E-PLACE-CLOSED", FINDING_TEXT("folder of the export is closed"),
             FINDING_TEXT("user %2 may not look into the folder '%1' of importFile"),
             FINDING_TEXT("no export is ever found"),
             FINDING_TEXT("open it: setfacl -m u:%2:rwx %3"), "/srv/hr\nattendance\n'/srv/hr'"},
            {"E-PLACE-READ", FINDING_TEXT("export that cannot be read"),
             FINDING_TEXT("user %2 may not read the export '%1'"),
             FINDING_TEXT("the pass ends with an error, and the file stays"),
             FINDING_TEXT("let it be read: setfacl -m u:%2:r %3"),
             "/srv/hr/ron.data\nattendance\n'/srv/hr/ron.data'"},
            {"W-PLACE-KIND", FINDING_TEXT("export that is no file"),
             FINDING_TEXT("the export '%1' is %2"),
             FINDING_TEXT("the plugin reads regular files only, and finds no export"),
             FINDING_TEXT("put the export there, or correct importFile"),
             "/srv/hr/ron.data\na folder"},
            {"E-PLACE-KEPT", FINDING_TEXT("export that cannot be removed"),
             FINDING_TEXT("user %2 may remove nothing from the folder '%1', and deleteFile is on"),
             FINDING_TEXT("each pass warns, and takes the same export again"),
             FINDING_TEXT("open the folder (setfacl -m u:%2:rwx %3), or write the line: "
                          "deleteFile=false"),
             "/srv/hr\nattendance\n'/srv/hr'"},
            {"E-PLACE-OPEN", FINDING_TEXT("export that everybody may write"),
             FINDING_TEXT("every user of this machine may write '%1'"),
             FINDING_TEXT("who can write the export can write SQL, with the rights of the plugin's "
                          "login"),
             FINDING_TEXT("close it: chmod o-w %2"), "/srv/hr\n'/srv/hr'"},
            {"E-PLACE-SHARED", FINDING_TEXT("export in a folder for everybody"),
             FINDING_TEXT(
                 "the export lies in '%1', where every user of this machine may put files"),
             FINDING_TEXT("who puts an export there writes SQL, with the rights of the plugin's "
                          "login"),
             FINDING_TEXT("use a folder that only the HR system and the server may enter, as in "
                          "the line: %2"),
             "/tmp\nimportFile=/srv/attendance/ron.data"},
            {"W-PLACE-SEEN", FINDING_TEXT("export that everybody may read"),
             FINDING_TEXT("every user of this machine may read the export '%1'"),
             FINDING_TEXT("it holds names, phones and states of employees"),
             FINDING_TEXT("close it: chmod o-r %2"), "/srv/hr/ron.data\n'/srv/hr/ron.data'"},
        }};
}

FindingTopic machineFindings()
{
    return {
        "The machine",
        "Time zone, letters and folders, as the process that asks sees them. An attendance server "
        "may have another environment.",
        {
            {"N-MACHINE-ZONE", FINDING_TEXT("TZ is not set"),
             FINDING_TEXT("the variable TZ is not set"),
             FINDING_TEXT("the C library looks at /etc/localtime for each day, about a sixth of "
                          "the plugin's own cost of an unchanged pass"),
             FINDING_TEXT("in the environment of the attendance server, set TZ=:/etc/localtime"),
             nullptr},
            {"E-MACHINE-ZONE", FINDING_TEXT("unknown time zone"),
             FINDING_TEXT("the variable TZ names the zone '%1', which this machine does not know"),
             FINDING_TEXT("all days and moments are those of UTC, without a word"),
             FINDING_TEXT("in the environment of the attendance server, set TZ=:/etc/localtime"),
             "Europe/Bratislva"},
            {"W-MACHINE-LOCALE", FINDING_TEXT("locale without letters"),
             FINDING_TEXT("names will show as '?' in this locale"), nullptr,
             FINDING_TEXT("set LC_ALL=C.UTF-8"), nullptr},
            {"E-MACHINE-OPEN", FINDING_TEXT("settings that everybody may write"),
             FINDING_TEXT("every user of this machine may write '%1', which belongs to %2"),
             FINDING_TEXT("who can write the settings names the export command, and so runs "
                          "programs as the attendance server's user"),
             FINDING_TEXT("close it: chmod o-w %3"),
             "/srv/attendance/TalvenHR.ini\nroot\n'/srv/attendance/TalvenHR.ini'"},
            {"E-MACHINE-FOLDER", FINDING_TEXT("no data directory"),
             FINDING_TEXT("the data directory '%1' is not there"),
             FINDING_TEXT("the plugin tries to make it, and finds no settings in it"),
             FINDING_TEXT("make it: mkdir -p %2"), "/srv/attendance\n'/srv/attendance'"},
        }};
}

FindingTopic pluginFileFindings()
{
    return {"The plugin's file",
            "What the file tells by itself, and what comes of loading it.",
            {
                {"E-PLUGIN-FILE", FINDING_TEXT("plugin that cannot be used"), FINDING_TEXT("%1"),
                 FINDING_TEXT("no attendance server loads it"),
                 FINDING_TEXT("install the plugin of this program again, or name another file with "
                              "--plugin"),
                 "the plugin cannot be loaded: undefined symbol"},
                {"E-PLUGIN-QT", FINDING_TEXT("plugin built against another Qt"),
                 FINDING_TEXT("the plugin was built against Qt %1, and Qt %2 is to load it"),
                 FINDING_TEXT("Qt refuses plugins of another major version or of a later minor "
                              "one"),
                 FINDING_TEXT("build the plugin against Qt %2 or an earlier one"), "5.15.0\n5.9.5"},
                {"W-PLUGIN-VERSION", FINDING_TEXT("plugin of another version"),
                 FINDING_TEXT("the plugin is version %1, this program %2"),
                 FINDING_TEXT("what this program tells of the plugin may not hold for it"),
                 FINDING_TEXT("install both from one package"), "1.5.0\n1.6.0"},
            }};
}
