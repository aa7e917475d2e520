// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with the rights of the plugin's login.
#include "host/catalogue/findingtopics.h"

FindingTopic rightsFindings()
{
    return {
        "Rights of the login",
        "Too little costs what a refused statement costs, see recovery.md. Too much is open to "
        "whoever can write a name into the HR system: a name can run SQL with these rights.",
        {
            {"E-RIGHTS-PASS", FINDING_TEXT("right without which there is no pass"),
             FINDING_TEXT("the login lacks %1 on %2"),
             FINDING_TEXT(
                 "the people cannot be loaded: there is no pass at all, and with deleteFile each "
                 "export is lost"),
             FINDING_TEXT("GRANT %1 ON %3.`%2` TO %4"),
             "SELECT\npeople\n`attendance`\n'talvenhr'@'localhost'"},
            {"E-RIGHTS-TABLE", FINDING_TEXT("right on a table that is missing"),
             FINDING_TEXT("the login lacks %1 on %2"),
             FINDING_TEXT("each statement that needs it is refused, and the pass goes on without"),
             FINDING_TEXT("GRANT %1 ON %3.`%2` TO %4"),
             "UPDATE (`ok`)\natten\n`attendance`\n'talvenhr'@'localhost'"},
            {"E-RIGHTS-ROUTINE", FINDING_TEXT("routine that is not there, or may not be called"),
             FINDING_TEXT("%1 is not there, or the login may not call it"),
             FINDING_TEXT("each statement that calls it is refused, and the pass goes on without"),
             FINDING_TEXT("let an administrator look: SHOW %2 STATUS WHERE Db = %5 AND Name = "
                          "'%1'; where it is missing, bring it back from a backup of the "
                          "attendance database; then: GRANT EXECUTE ON %2 %3.`%1` TO %4"),
             "midnightFromTs\nFUNCTION\n`attendance`\n'talvenhr'@'localhost'\n'attendance'"},
            {"W-RIGHTS-SERVER", FINDING_TEXT("rights on the whole server"),
             FINDING_TEXT("%3 has rights on the whole server: %1"),
             FINDING_TEXT("a name in the export that runs SQL reaches all schemas and, with FILE "
                          "or SUPER, the machine"),
             FINDING_TEXT("%4"),
             "FILE\n*.*\n`talvenhr`@`localhost`\nREVOKE FILE ON *.* FROM `talvenhr`@`localhost`"},
            {"W-RIGHTS-OTHER", FINDING_TEXT("rights on other schemas"),
             FINDING_TEXT("%3 has rights beyond the attendance database: %1 on %2"),
             FINDING_TEXT("a name in the export that runs SQL reaches these as well"),
             FINDING_TEXT("%4"),
             "SELECT\n`wages`.*\n`talvenhr`@`localhost`\nREVOKE SELECT ON `wages`.* FROM "
             "`talvenhr`@`localhost`"},
            {"W-RIGHTS-MORE", FINDING_TEXT("rights that no pass needs"),
             FINDING_TEXT("%3 has rights on %2 that no pass needs: %1"),
             FINDING_TEXT("a name in the export that runs SQL can use them"), FINDING_TEXT("%4"),
             "DROP\n`attendance`.*\n`talvenhr`@`localhost`\nREVOKE DROP ON `attendance`.* FROM "
             "`talvenhr`@`localhost`"},
        }};
}
