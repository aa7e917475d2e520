// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can be wrong with the rows of the attendance database.
#include "host/catalogue/findingtopics.h"

FindingTopic variableFindings()
{
    return {
        "Variables and leave funds",
        "Rows on which a pass relies and that it does not check, as in the two sections below. A "
        "word in capital letters in a line of SQL stands for what only you know.",
        {
            {"W-CONTENT-PAMNONE", FINDING_TEXT("no block of PaM"),
             FINDING_TEXT("no variable exportPam.N.active marks a block of PaM"),
             FINDING_TEXT("new people are not enrolled on a list of PaM, and no later pass makes "
                          "up for it"),
             FINDING_TEXT("INSERT INTO vars (name, value) VALUES ('exportPam.1.active', '1')"),
             nullptr},
            {"W-CONTENT-PAMSEVERAL", FINDING_TEXT("several blocks of PaM"),
             FINDING_TEXT("more than one variable marks a block of PaM: %1; the longest list is "
                          "that of %2"),
             FINDING_TEXT("the plugin does not choose among them: new people are not enrolled on "
                          "a list of PaM, and no later pass makes up for it"),
             FINDING_TEXT("DELETE FROM vars WHERE name IN (%3)"),
             "exportPam.1.active, exportPam.2.active\nexportPam.1.active\n'exportPam.2.active'"},
            {"E-CONTENT-FUNDNONE", FINDING_TEXT("no leave fund"),
             FINDING_TEXT("no fund has iid 3 and unit 2"),
             FINDING_TEXT("no leave balance is taken over; the log says no more than fid=0"),
             FINDING_TEXT("INSERT INTO funds (iid, unit) VALUES (3, 2)"), nullptr},
            {"W-CONTENT-FUNDSEVERAL", FINDING_TEXT("several leave funds"),
             FINDING_TEXT("the funds %1 all have iid 3 and unit 2"),
             FINDING_TEXT("the plugin takes the one that the server gives first, %2 just now"),
             FINDING_TEXT("UPDATE funds SET iid = NULL WHERE fid IN (%3)"), "2, 4\n2\n4"},
            {"E-CONTENT-WIDE", FINDING_TEXT("id beyond 16 bits"),
             FINDING_TEXT("the %1 of the leave fund or of a branch with a number is %2"),
             FINDING_TEXT("the plugin cuts it to 16 bits, without a word: %3"),
             FINDING_TEXT("give it an id up to 65535, in all tables that name it"),
             "fid\n65538\ncorrections of leave go to fid 2"},
            {"W-CONTENT-FORCED", FINDING_TEXT("forced pass"),
             FINDING_TEXT("the variable OQS.THRWorker.forceSync is '%1'"),
             FINDING_TEXT("the next tick runs a forced pass, which looks at every person of the "
                          "export"),
             FINDING_TEXT("UPDATE vars SET value = '0' WHERE name = 'OQS.THRWorker.forceSync'"),
             "1"},
        }};
}

FindingTopic branchFindings()
{
    return {
        "Branches, terminals and plans",
        "What leads people to their places.",
        {
            {"W-CONTENT-BRANCHNONE", FINDING_TEXT("branch without a number"),
             FINDING_TEXT("the branch with bid %1 has a master group, and no number"),
             FINDING_TEXT("no line of the export can name it"),
             FINDING_TEXT("UPDATE branches SET number = NUMBER WHERE bid = %1"), "6"},
            {"W-CONTENT-BRANCHZERO", FINDING_TEXT("branch with the number 0"),
             FINDING_TEXT("the branch with bid %1 has the number 0"),
             FINDING_TEXT("every person without a branch in the export gets its bid in people"),
             FINDING_TEXT("UPDATE branches SET number = NUMBER WHERE bid = %1"), "6"},
            {"E-CONTENT-BRANCHTWICE", FINDING_TEXT("number of several branches"),
             FINDING_TEXT("the branches with bid %2 all have the number %1"),
             FINDING_TEXT("people of this number come to the one that the server gives last, %3 "
                          "just now, without a word"),
             FINDING_TEXT("%4"),
             "200\n2, 7\n7\nUPDATE branches SET number = NUMBER_2 WHERE bid = 2"},
            {"W-CONTENT-TERMINAL", FINDING_TEXT("terminal out of service that holds people"),
             FINDING_TEXT("the terminal with tid %1 is out of service, and is the only one that "
                          "takes %2 of its people"),
             FINDING_TEXT("no terminal in service learns what changes about them"),
             FINDING_TEXT("UPDATE term SET status = 1 WHERE tid = %1"), "5\n12"},
            {"W-CONTENT-PLAN", FINDING_TEXT("group plan without months"),
             FINDING_TEXT("the plan of the person with uid %1 since %2 has no months in "
                          "groups_month, and there is attendance in its time"),
             FINDING_TEXT("the plugin does not derive them anew as long as the plan is there"),
             FINDING_TEXT(
                 "INSERT INTO groups_month (gid, uid, month) SELECT DISTINCT getCurrentGid(p.uid, "
                 "monthFromTimestamp(a.date), p.gid), p.uid, monthFromTimestamp(a.date) FROM atten "
                 "a JOIN people p USING(uid) WHERE p.uid = %1 AND monthFromTimestamp(a.date) >= %2 "
                 "ON DUPLICATE KEY UPDATE gid = VALUES(gid)"),
             "5\n202301"},
        }};
}

FindingTopic peopleFindings()
{
    return {
        "People and administrators",
        "The keys by which a pass knows them.",
        {
            {"E-CONTENT-PIDTWICE", FINDING_TEXT("people with one key"),
             FINDING_TEXT("the people with uid %2 all have the pid %1"),
             FINDING_TEXT("the plugin takes them for one person: it writes to all of them, and "
                          "their leave is not corrected"),
             FINDING_TEXT("UPDATE people SET pid = NULL, pamId = NULL, status = 0 WHERE uid IN "
                          "(%3) -- it makes them inactive"),
             "10011\n1, 20\n20"},
            {"E-CONTENT-PIDNULL", FINDING_TEXT("person without a key"),
             FINDING_TEXT("the person with uid %1 has the pamId '%2' and no pid"),
             FINDING_TEXT("the plugin knows them, and no change that it writes reaches the row"),
             FINDING_TEXT("%3"), "20\n4711.1\nUPDATE people SET pid = 47111 WHERE uid = 20"},
            {"E-CONTENT-PAMID", FINDING_TEXT("person with two keys"),
             FINDING_TEXT("the pamId '%2' of the person with uid %1 gives the key %3, and their "
                          "pid is %4"),
             FINDING_TEXT("the plugin files this row under the key %3, writes to it what belongs "
                          "to another person, and takes this one for new"),
             FINDING_TEXT("%5"),
             "20\n4711.1\n47111\n47112\nUPDATE people SET pid = 47111 WHERE uid = 20"},
            {"E-CONTENT-ADMINTWICE", FINDING_TEXT("personal number of several administrators"),
             FINDING_TEXT("the administrators with aid %2 all have the personal number %1"),
             FINDING_TEXT("the supervisor's mark goes to the one that the server gives first, "
                          "without a word"),
             FINDING_TEXT("UPDATE admins SET personalNumber = NULL WHERE personalNumber = %1 AND "
                          "aid <> %3"),
             "1001\n1, 6\n1"},
            {"N-CONTENT-CORRECTED", FINDING_TEXT("corrections of today"),
             FINDING_TEXT("the leave of %1 people was corrected today already, by an earlier pass "
                          "or by somebody else"),
             FINDING_TEXT("the plugin corrects it no more until tomorrow"),
             FINDING_TEXT("wait until tomorrow"), "3"},
            {"N-CONTENT-NOBODY", FINDING_TEXT("no people"),
             FINDING_TEXT("the database knows nobody"),
             FINDING_TEXT("a pass adds everybody who is in the export"),
             FINDING_TEXT("if that is not the first pass of all, bring the people back from a "
                          "backup before it"),
             nullptr},
            {"N-CONTENT-MORE", FINDING_TEXT("more of the same"),
             FINDING_TEXT("%1 more findings have the code %2"), nullptr,
             FINDING_TEXT("mend those that are shown, and look again"), "980\nE-CONTENT-PIDNULL"},
        }};
}
