// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The pass over the company on the private server as a table, and what its faults cost.
#include "support/faults/servertable.h"

#include "support/faults/failuretable.h"
#include "support/localseconds.h"

#include <algorithm>

namespace {

using Words = QVector<QPair<QString, QString>>;

/// The rows with the words replaced, one after the other.
PassRows with(const Words &words, PassRows rows)
{
    for (PassRow &row : rows) {
        for (const auto &word : words) {
            row.id.replace(word.first, word.second);
            row.when.replace(word.first, word.second);
            row.text.replace(word.first, word.second);
            row.person.replace(word.first, word.second);
            row.owed.replaceInStrings(word.first, word.second);
        }
    }
    return rows;
}

PassRows record(const Words &words, const PassRows &rows)
{
    return with(words,
                PassRows {message("people", "from 3: debug THRWorker::doSyncRecord({text})")}
                    + rows);
}

/// A plan that is new reopens the days since its date.
PassRows reopeningByPlan()
{
    return with({{QStringLiteral("@.reopened"), QStringLiteral("@.planReopened")},
                 {QStringLiteral("@.marked"), QStringLiteral("@.planMarked")},
                 {QStringLiteral("{reopened}"), QStringLiteral("{planned}")}},
                reopening("@.planned"));
}

Words wordsOf(const char *letter, const char *number)
{
    const QString text = QString::fromLatin1(number);
    return {{QStringLiteral("@"), QString::fromLatin1(letter)},
            {QStringLiteral("{pid}"), text + QLatin1Char('1')},
            {QStringLiteral("{pamId}"), text + QStringLiteral(".1")}};
}

/// Whoever was not added has no uid, and looking for it is in vain.
PassRows recordOfA()
{
    return record(
        wordsOf("A", "9001")
            + Words {{QStringLiteral("{uid}"), QStringLiteral("101")},
                     {QStringLiteral("{text}"),
                      QStringLiteral("9001.1 Novák Ján (S: 10, K: 3 from 1 Mar 2021) "
                                     "N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 3 "
                                     "NOC: 55")},
                     {QStringLiteral("{block}"), QStringLiteral("1")},
                     {QStringLiteral("{supervisor}"), QStringLiteral("55")},
                     {QStringLiteral("{number}"), QStringLiteral("10")},
                     {QStringLiteral("{bid}"), QStringLiteral("1")},
                     {QStringLiteral("{calendar}"), QStringLiteral("3")},
                     {QStringLiteral("{gid}"), QStringLiteral("13")},
                     {QStringLiteral("{since}"), QStringLiteral("202103")},
                     {QStringLiteral("{planned}"), QStringLiteral("{1 Mar 2021}")}},
        fundChecksOfAStranger()
            + addition("exec INSERT INTO people (...) VALUES('90011', '9001.1', ..., NULL, NULL, "
                       "'', 1, 1, 3, {bid of 1}) ON DUPLICATE KEY UPDATE ...")
            + pamList()
            + PassRows {preparedListing("@.blocks"),
                        listing("@.prepare @.list",
                                "run :name=exportPam.1.selPeople, :value=5,90011"),
                        // Deliberate: whoever stood on the list is lost.
                        listing("@.prepare !@.list",
                                "run :name=exportPam.1.selPeople, :value=90011")}
            + pamRow() + firstSupervisor("@.insert")
            + PassRows {call("@.nobody", "branches !@.insert",
                             "exec SELECT uid FROM people WHERE pid = {pid} LIMIT 1;",
                             {"critical THRWorker::dbGetUidByPid() - SQL ERROR [9999]: "
                              "told to fail (scripted)"})}
            + branch("people !branches", "branches", "branches @.insert !@.uid")
            + PassRows {queue("branches")} + calendar("branches") + newPlan() + reopeningByPlan());
}

PassRows recordOfB()
{
    return record(
        wordsOf("B", "9002")
            + Words {{QStringLiteral("{uid}"), QStringLiteral("102")},
                     {QStringLiteral("{text}"),
                      QStringLiteral("9002.1 Novák Ján (S: 20, K: 5 from 1 Jan 2026) "
                                     "N-V: 1 Mar 2015 - ; ES: 5, RS:  -  '' TPP: 11  DOV: 12.5 "
                                     "NOC: 55")},
                     {QStringLiteral("{difference}"), QStringLiteral("200")},
                     {QStringLiteral("{supervisor}"), QStringLiteral("55")},
                     {QStringLiteral("{number}"), QStringLiteral("20")},
                     {QStringLiteral("{bid}"), QStringLiteral("2")},
                     {QStringLiteral("{calendar}"), QStringLiteral("5")},
                     {QStringLiteral("{gid}"), QStringLiteral("15")},
                     {QStringLiteral("{since}"), QStringLiteral("202601")},
                     {QStringLiteral("{planned}"),
                      QString::number(localSeconds(QDate(2026, 1, 1)))},
                     {QStringLiteral("{reopened}"), QStringLiteral("{first of previous month}")}},
        fundChecks()
            + update("exec UPDATE people SET pamId=9002.1, ..., rsText='maternity', "
                     "lastCalc=..., type=1, did=1, calendarID=5, bid={bid of 2} "
                     "WHERE pid=90021")
            + news() + balance() + correction() + supervisorInsteadOfAnother("people") + branch()
            + PassRows {queue("branches")} + calendar("branches") + newPlan() + reopeningByPlan()
            + PassRows {uidForReopening("people !@.uid")} + reopening("people @.uid"));
}

PassRows recordOfC()
{
    return record(
        wordsOf("C", "9003")
            + Words {{QStringLiteral("{uid}"), QStringLiteral("103")},
                     {QStringLiteral("{text}"),
                      QStringLiteral("9003.1 Novák Ján (S: 0, K: 0 from ) N-V: 1 Mar 2015 - ; "
                                     "ES: 0, RS:  -  '' TPP: 51  DOV: 0 NOC: 0")},
                     {QStringLiteral("{block}"), QStringLiteral("2")}},
        fundChecksOfAStranger()
            + addition("exec INSERT INTO people (...) VALUES('90031', '9003.1', ..., NULL, NULL, "
                       "'', 4, 1, 0, NULL) ON DUPLICATE KEY UPDATE ...")
            + pamList()
            + PassRows {preparedListing("@.blocks"),
                        listing("@.prepare @.list A.listed A.list",
                                "run :name=exportPam.1.selPeople, :value=5,90011,90031"),
                        listing("@.prepare @.list A.listed !A.list",
                                "run :name=exportPam.1.selPeople, :value=90011,90031"),
                        listing("@.prepare @.list !A.listed",
                                "run :name=exportPam.1.selPeople, :value=5,90031"),
                        listing("@.prepare !@.list",
                                "run :name=exportPam.1.selPeople, :value=90031")}
            + pamRow());
}

/// Two terminals, and two administrators.
PassRows branch1()
{
    return with(
        {{QStringLiteral("{bid}"), QStringLiteral("1")}},
        joining() + with({{QStringLiteral("{tid}"), QStringLiteral("31")}}, joiningTerminal())
            + with({{QStringLiteral("{tid}"), QStringLiteral("32")}}, joiningTerminal())
            + PassRows {message("1.terminals !31.people|!32.people",
                                "warning BranchesRepository::slotAddedPeopleToBranch() - "
                                "AddPeopleToTerms() FAILED!"),
                        administrators(),
                        call("1.underAdmins", "1.admins",
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
    return with({{QStringLiteral("{bid}"), QStringLiteral("2")}},
                joining()
                    + with({{QStringLiteral("{tid}"), QStringLiteral("33")}}, joiningTerminal())
                    + PassRows {message("2.terminals !33.people",
                                        "warning BranchesRepository::slotAddedPeopleToBranch() - "
                                        "AddPeopleToTerms() FAILED!"),
                                administrators()});
}

Outcome outcome(const char *when, std::initializer_list<const char *> values)
{
    QStringList texts;
    for (const char *value : values)
        texts.append(QString::fromLatin1(value));
    return {QString::fromLatin1(when), texts};
}

QVector<Outcome> changeTable()
{
    return {
        // No branch is known.
        outcome("A.insert !branches", {"+people A.bid: NULL"}),
        outcome("B.update !branches", {"+people B.bid: NULL"}),
        // Deliberate: a list that cannot be read counts as empty.
        outcome("A.listed !A.list", {"-PaM list 5"}),
        outcome("C.listed !C.list", {"-PaM list 5", "-PaM list A"}),
        // Without the reopening by the plan, the one after it finds what to do.
        outcome("B.reopened !B.planReopened",
                {"-atten B|2026-02-10|1", "+atten B|2026-02-10|-1", "-atten B|2026-03-10|1",
                 "+atten B|2026-03-10|-1"}),
        outcome("B.marked !B.planMarked", {"+people B.lastCalc: 2026-01-31", "+people B.calc: 0"}),
        // Deliberate: the transaction of a failed set is committed, once the reset has touched
        // rows.
        outcome("B.commit !B.set", {"-admins_people 6|B|1"}),
        // Only the uid 0 was queued.
        outcome("1.join !1.somebody", {"-brape 1|A|2026-03-17 12:00:00"}),
    };
}

QStringList valuesOf(const QVector<Outcome> &table, const ExpectedPass &pass)
{
    QStringList values;
    for (const Outcome &one : table) {
        if (pass.holdsAll(one.when))
            values += one.values;
    }
    return values;
}

/// What the terminal and its user lose that are not told.
QVector<Outcome> lossesOfTerminal(const QString &bid, const QString &tid, const QString &person)
{
    const QString joined = bid + QStringLiteral(".join ") + bid + QStringLiteral(".somebody ");
    const QStringList mark {QStringLiteral("-term %1|2").arg(tid),
                            QStringLiteral("+term %1|0").arg(tid)};
    return {{joined + QStringLiteral("!%1.people").arg(tid),
             {QStringLiteral("-people_term %1|%2").arg(tid, person)}},
            {joined + QStringLiteral("!%1.queue").arg(tid),
             {QStringLiteral("-term_sync %1|I|people_term|uid|%2|2026-03-17 12:00:00|2")
                  .arg(tid, person)}},
            {joined + QStringLiteral("!%1.mark").arg(tid), mark}};
}

/// Who was added, updated, planned or taken in counts as done from then on: what should have
/// followed does not come by itself any more.
QVector<Outcome> lossTable()
{
    return QVector<Outcome> {
               // PaM enrols nobody but new people.
               outcome("A.insert !A.listed", {"-PaM list A"}),
               outcome("A.insert !A.pamRow", {"-people_pam A|1"}),
               outcome("C.insert !C.listed", {"-PaM list C"}),
               outcome("C.insert !C.pamRow", {"-people_pam C|2"}),
               outcome("A.listed !A.list", {"-PaM list 5"}),
               outcome("C.listed !C.list", {"-PaM list 5", "-PaM list A"}),
               // The rows lack their branch, and are updated once more.
               outcome("A.insert !branches",
                       {"+people A.edited: 2026-03-17 12:00:00", "+people A.editor: 0",
                        "-people A.edited: NULL", "-people A.editor: NULL"}),
               outcome("B.news !branches", {"+term_sync 34|U|people|uid|B|2026-03-17 12:00:00|2"}),
               // A supervisor counts as set once the record was seen.
               outcome("A.insert !A.commit", {"-admins_people 6|A|1"}),
               outcome("people !B.commit",
                       {"-admins_people 5|B|0", "-admins_people 6|B|1", "+admins_people 5|B|1"}),
               outcome("B.commit !B.set", {"-admins_people 6|B|1"}),
               // The row is up to date, so that nothing is left to tell the terminals.
               outcome("B.update !B.news", {"-term_sync 34|U|people|uid|B|2026-03-17 12:00:00|2"}),
               outcome("B.update !B.call", {"-term 34|2", "+term 34|0"}),
               // An update that comes late is told to the terminal of the new branch as well.
               outcome("people !B.update 33.people",
                       {"+term_sync 33|U|people|uid|B|2026-03-17 12:00:00|2"}),
               // The plan stands, and is new to nobody.
               outcome("B.planned !B.months",
                       {"-groups_month B|202601|15", "-groups_month B|202602|15",
                        "-groups_month B|202603|15"}),
               outcome("B.planned !B.planReopened",
                       {"-atten B|2026-01-10|2", "+atten B|2026-01-10|1"}),
               outcome("B.planned !B.planMarked",
                       {"-people B.lastCalc: 2025-12-31", "+people B.lastCalc: 2026-01-31"}),
               // Members are not taken in again.
               outcome("1.join 1.somebody !1.underAdmins",
                       {"-admins_people 8|A|0", "-admins_people 9|A|0"}),
           }
    + lossesOfTerminal(QStringLiteral("1"), QStringLiteral("31"), QStringLiteral("A"))
        + lossesOfTerminal(QStringLiteral("1"), QStringLiteral("32"), QStringLiteral("A"))
        + lossesOfTerminal(QStringLiteral("2"), QStringLiteral("33"), QStringLiteral("B"));
}

} // namespace

PassRows serverTable()
{
    return passBegin() + recordOfA() + recordOfB() + recordOfC() + branch1() + branch2()
        + passEnd();
}

int numberOf(const QString &call)
{
    const int index = ExpectedPass(0, Fault(), serverTable()).calls().indexOf(call);
    if (index < 0)
        qFatal("no call is called '%s'", qPrintable(call));
    return index + 1;
}

QStringList changesOf(const ExpectedPass &pass)
{
    return valuesOf(changeTable(), pass);
}

QStringList lossesOf(const ExpectedPass &pass)
{
    QStringList losses = valuesOf(lossTable(), pass);
    losses.sort();
    return losses;
}

QStringList idleOutcomes(const QVector<Fault> &faults)
{
    QVector<Outcome> idle = changeTable() + lossTable();
    for (const Fault &fault : faults) {
        const ExpectedPass pass(0, fault, serverTable());
        const auto happens = [&](const Outcome &one) { return pass.holdsAll(one.when); };
        idle.erase(std::remove_if(idle.begin(), idle.end(), happens), idle.end());
    }
    QStringList texts;
    for (const Outcome &one : qAsConst(idle))
        texts.append(one.when);
    return texts;
}
