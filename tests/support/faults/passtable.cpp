// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// One pass over a small company as a table: its calls of the database, and what each owes when it
// fails.
#include "support/faults/passtable.h"

#include "support/faults/failuretable.h"

namespace {

/// What the words of the operations are for one branch, terminal or person.
struct Word
{
    const char *name;
    const char *value;
};

PassRows with(const QVector<Word> &words, PassRows rows)
{
    const auto fill = [&](QString &text) {
        for (const Word &word : words)
            text.replace(QLatin1String(word.name), QString::fromUtf8(word.value));
    };
    for (PassRow &row : rows) {
        fill(row.id);
        fill(row.when);
        fill(row.text);
        fill(row.person);
        for (QString &owed : row.owed)
            fill(owed);
    }
    return rows;
}

/// Every record comes to its turn, whatever became of the ones before it.
PassRows record(const QVector<Word> &words, const PassRows &rows)
{
    return with(words,
                PassRows {message("people", "from 3: debug THRWorker::doSyncRecord({text})")}
                    + rows);
}

// People

PassRows recordOfA()
{
    return record(
        {{"@", "A"},
         {"{pid}", "90011"},
         {"{pamId}", "9001.1"},
         {"{uid}", "101"},
         {"{text}",
          "9001.1 Novák Ján (S: 10, K: 3 from 1 Mar 2021) N-V: 1 Mar 2015 - ; ES: 0, "
          "RS:  -  '' TPP: 11  DOV: 0 NOC: 55"},
         {"{block}", "1"},
         {"{supervisor}", "55"},
         {"{number}", "10"},
         {"{bid}", "1"},
         {"{calendar}", "3"},
         {"{gid}", "13"},
         {"{since}", "202103"},
         {"{reopened}", "{1 Mar 2021}"}},
        fundChecksOfAStranger()
            + addition("exec INSERT INTO people (...) VALUES('90011', '9001.1', ..., NULL, NULL, "
                       "'', 1, 1, 3, {bid of 1}) ON DUPLICATE KEY UPDATE ...")
            + pamList()
            + PassRows {preparedListing("@.blocks"),
                        listing("@.prepare @.list",
                                "run :name=exportPam.1.selPeople, :value=5,90021,90011"),
                        // Deliberate: the others are lost.
                        listing("@.prepare !@.list",
                                "run :name=exportPam.1.selPeople, :value=90011")}
            + pamRow() + supervisorInsteadOfAnother("@.insert") + branch()
            + PassRows {queue("branches")} + calendar("branches") + newPlan()
            + reopening("@.planned"));
}

PassRows recordOfB()
{
    return record(
        {{"@", "B"},
         {"{pid}", "90021"},
         {"{pamId}", "9002.1"},
         {"{uid}", "102"},
         {"{text}",
          "9002.1 Novák Ján (S: 0, K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, "
          "RS:  -  '' TPP: 51  DOV: 0 NOC: 55"},
         {"{block}", "2"}},
        fundChecksOfAStranger()
            + addition("exec INSERT INTO people (...) VALUES('90021', '9002.1', ..., "
                       "NULL, NULL, '', 4, 1, 0, NULL) ON DUPLICATE KEY UPDATE ...")
            + pamList()
            // Deliberate: he stands on the list, yet an unread one is written anew.
            + PassRows {preparedListing("@.blocks !@.list"),
                        listing("@.prepare", "run :name=exportPam.1.selPeople, :value=90021")}
            + pamRow());
}

PassRows recordOfC()
{
    return record({{"@", "C"},
                   {"{pid}", "90031"},
                   {"{text}",
                    "9003.1 Novák Ján (S: 10, K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, "
                    "RS:  -  '' TPP: 11  DOV: 0 NOC: 0"}},
                  fundChecksOfAStranger());
}

PassRows recordOfD()
{
    return record({{"@", "D"},
                   {"{pid}", "90041"},
                   {"{pamId}", "9004.1"},
                   {"{uid}", "104"},
                   {"{text}",
                    "9004.1 Novák Ján (S: 20, K: 5 from 1 Mar 2021) N-V: 1 Mar 2015 - ; ES: 5, "
                    "RS:  -  '' TPP: 11  DOV: 12.5 NOC: 56"},
                   {"{difference}", "200"},
                   {"{supervisor}", "56"},
                   {"{number}", "20"},
                   {"{bid}", "2"},
                   {"{calendar}", "5"},
                   {"{gid}", "15"},
                   {"{since}", "202103"},
                   {"{reopened}", "{first of previous month}"}},
                  fundChecks()
                      + update("exec UPDATE people SET pamId=9004.1, ..., rsText='maternity', "
                               "lastCalc=..., type=1, did=1, calendarID=5, bid={bid of 2} "
                               "WHERE pid=90041")
                      + news() + balance() + correction() + supervisorInsteadOfAnother("people")
                      + branch() + PassRows {queue("branches")} + calendar("branches")
                      + presentPlan() + PassRows {uidForReopening("people !@.uid")}
                      + reopening("people @.uid"));
}

PassRows recordOfE()
{
    return record(
        {{"@", "E"},
         {"{pid}", "90051"},
         {"{pamId}", "9005.1"},
         {"{uid}", "105"},
         {"{text}",
          "9005.1 Novák Ján (S: 10, K: 4 from 1 Mar 2099) N-V: 1 Mar 2015 - ; ES: 0, "
          "RS:  -  '' TPP: 54  DOV: 0 NOC: 0"},
         {"{number}", "10"},
         {"{bid}", "1"},
         {"{calendar}", "4"},
         {"{gid}", "14"},
         {"{since}", "209903"},
         {"{reopened}", "{first of previous month}"}},
        fundChecks()
            + update("exec UPDATE people SET pamId=9005.1, ..., rsText='', type=4, "
                     "did=1, calendarID=4, bid={bid of 1}  WHERE pid=90051")
            + balance() + branch() + PassRows {queue("branches !@.member")} + calendar("branches")
            + newPlan()
            // Nothing was done: neither queued nor planned.
            + PassRows {waiting("branches @.member !@.planned"), uidForReopening("people !@.uid")}
            + reopening("people @.uid"));
}

PassRows recordOfF()
{
    return record({{"@", "F"},
                   {"{pid}", "90061"},
                   {"{pamId}", "9006.1"},
                   {"{uid}", "106"},
                   {"{text}",
                    "9006.1 Novák Ján (S: 10, K: 0 from ) N-V: 1 Mar 2015 - 31 Dec 2020; ES: 0, "
                    "RS:  -  '' TPP: 65  DOV: 10 NOC: 57"},
                   {"{supervisor}", "57"}},
                  fundChecks()
                      + update("exec UPDATE people SET pamId=9006.1, ..., rsText='', type=1, "
                               "did=1, calendarID=0, bid={bid of 1}  WHERE pid=90061")
                      + news() + balance() + firstSupervisor("people"));
}

PassRows recordOfG()
{
    return record({{"@", "G"},
                   {"{pid}", "90071"},
                   {"{pamId}", "9007.1"},
                   {"{uid}", "107"},
                   {"{text}",
                    "9007.1 Novák Ján (S: 20, K: 6 from ) N-V: 1 Mar 2015 - ; ES: 0, "
                    "RS:  -  '' TPP: 11  DOV: 0 NOC: 0"},
                   {"{number}", "20"},
                   {"{bid}", "2"},
                   {"{calendar}", "6"},
                   {"{gid}", "16"},
                   {"{since}", "0"}},
                  fundChecks()
                      + balance("force @.atRest", "force @.atRest !@.before|!@.corrections")
                      + branch("force people !branches", "force branches", "force branches !@.uid")
                      + PassRows {queue("force branches !@.member")} + calendar("force branches")
                      + presentPlan()
                      + PassRows {waiting("force branches @.member !@.group|!@.plan|!@.uid")});
}

PassRows recordOfH()
{
    return record({{"@", "H"},
                   {"{pid}", "90081"},
                   {"{pamId}", "9008.1"},
                   {"{uid}", "108"},
                   {"{text}",
                    "9008.1 Novák Ján (S: 10, K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, "
                    "RS:  -  '' TPP: 11  DOV: -2 NOC: 0"},
                   {"{difference}", "-200"},
                   {"{number}", "10"},
                   {"{bid}", "1"},
                   {"{reopened}", "{first of previous month}"}},
                  fundChecks()
                      + update("exec UPDATE people SET pamId=9008.1, ..., rsText='', type=1, "
                               "did=1, calendarID=0, bid={bid of 1}  WHERE pid=90081")
                      + news() + balance() + correction() + branch()
                      + PassRows {queue("branches"), uidForReopening("@.correction !@.uid")}
                      + reopening("@.correction @.uid"));
}

PassRows recordOfI()
{
    return record({{"@", "I"},
                   {"{pid}", "90091"},
                   {"{pamId}", "9009.1"},
                   {"{uid}", "109"},
                   {"{text}",
                    "9009.1 Novák Ján (S: 20, K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, "
                    "RS:  -  '' TPP: 11  DOV: 0 NOC: 0"},
                   {"{number}", "20"},
                   {"{bid}", "2"}},
                  fundChecks()
                      + balance("force @.atRest", "force @.atRest !@.before|!@.corrections")
                      + branch()
                      + PassRows {queue("branches"),
                                  // As before.
                                  waiting("!people")});
}

// Branches

/// Two terminals, and two administrators.
PassRows branch1()
{
    return with(
        {{"{bid}", "1"}},
        joining() + with({{"{tid}", "31"}}, joiningTerminal())
            + with({{"{tid}", "32"}}, joiningTerminal())
            + PassRows {message("{bid}.terminals !31.people|!32.people",
                                "warning BranchesRepository::slotAddedPeopleToBranch() - "
                                "AddPeopleToTerms() FAILED!"),
                        administrators(),
                        call("{bid}.underAdmins", "{bid}.admins",
                             "exec INSERT INTO admins_people (aid, uid) VALUES {pairs of 8 in 1},"
                             "{pairs of 9 in 1} ON DUPLICATE KEY UPDATE uid=VALUES(uid);",
                             {"critical BranchesRepository::AddPeopleToAdmins - ERROR: "
                              "told to fail (scripted)",
                              "warning BranchesRepository::slotAddedPeopleToBranch() - "
                              "AddPeopleToAdmins() FAILED!"})});
}

/// One terminal, and no administrator.
PassRows branch2()
{
    return with({{"{bid}", "2"}},
                joining() + with({{"{tid}", "33"}}, joiningTerminal())
                    + PassRows {message("{bid}.terminals !33.people",
                                        "warning BranchesRepository::slotAddedPeopleToBranch() - "
                                        "AddPeopleToTerms() FAILED!"),
                                administrators()});
}

} // namespace

PassRows passTable()
{
    return passBegin() + recordOfA() + recordOfB() + recordOfC() + recordOfD() + recordOfE()
        + recordOfF() + recordOfG() + recordOfH() + recordOfI() + branch1() + branch2() + passEnd();
}
