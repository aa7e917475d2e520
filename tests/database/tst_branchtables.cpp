// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Branches on the server: rows, memberships and what follows from them.
#include "repository/branchesrepository.h"
#include "support/databasefixture.h"

#include <QtTest>

#include <memory>

namespace {

BranchRecord named(const char *name, ushort bid = 0)
{
    BranchRecord branch;
    branch.name = str(name);
    branch.bid = bid;
    return branch;
}

} // namespace

class tst_BranchTables : public ConnectionFixture
{
    Q_OBJECT

private Q_SLOTS:
    void addBranch_zerosAreNull();
    void addBranch_emptyName();
    void addBranch_allColumns();
    void addBranch_apostropheFails();
    void updateBranch_changedRows();
    void updateBranch_emptyNameIsStored();
    void saveBranch_unchangedUpdateIsNoSuccess();
    void saveBranch_failedUpdateIsASuccess();
    void addPeopleToBranch_knownPeopleOnly();
    void addPeopleToBranch_repeatedWithinTheSameSecond();
    void addPeopleToBranch_repeatedLaterRefreshes();
    void addPeopleToBranch_reachesTerminalsAndAdministrators();
    void addPeopleToBranch_branchWithoutTerminalsAndAdministrators();
    void addPeopleToBranch_failedPropagationKeepsTheMembership();
    void delPeopleFromBranch_withoutSlots();
    void delPeopleFromBranch_leavesTerminalsAndAdministrators();
    void delPeopleFromBranch_keepsPeopleOfAnotherBranch();
    void addBranchToTerms_givesTheBranchsPeople();
    void delBranchFromTerms_detachesFromAnyBranch();
    void delBranchFromTerms_takesTheBranchsPeople();
    void addAdminsToBranch_givesTheBranchsPeople();
    void addAdminsToBranch_repeated();
    void delAdminsFromBranch_takesAllPeopleOfTheBranch();
    void sections_addAndDelete();
    void delSectionsFromBranch_triplesAloneAreNoSuccess();
    void readers_orderAndStatus();
    void AddPeopleToTerm_skipsWhatIsNoNumber();
    void deletePeopleFromTerm_emptyList();
    void deletePeopleFromTerm_noRow();
    void AddPeopleToAdmin_withoutValues();
    void addBAS_recordAndKey();
    void addBAS_batch();
    void deleteBAS_recordAndBatch();
    void triples_hiddenTable();

private:
    void begin() override;
    void end() override
    {
        repo.reset();
        bare.reset();
    }
    QStringList onTerms() { return rows("SELECT tid, uid FROM people_term ORDER BY tid, uid"); }
    QStringList underAdmins()
    {
        return rows("SELECT aid, uid FROM admins_people ORDER BY aid, uid");
    }
    QStringList members() { return rows("SELECT bid, uid FROM brape ORDER BY bid, uid"); }
    QStringList queue() { return rows("SELECT tid, type, ref_id FROM term_sync ORDER BY id"); }
    QStringList marks() { return rows("SELECT tid, syn FROM term WHERE syn <> 0 ORDER BY tid"); }
    QStringList triples() { return rows("SELECT * FROM bas ORDER BY bid, attrid, secid"); }

    std::unique_ptr<BranchesRepository> repo; ///< with all slots
    std::unique_ptr<BranchesRepository> bare; ///< without
};

void tst_BranchTables::begin()
{
    repo = std::make_unique<BranchesRepository>(nullptr, true, true);
    repo->setDb(handle);
    bare = std::make_unique<BranchesRepository>(nullptr, false, false);
    bare->setDb(handle);
    // Branch 5 has terminals 1 (off), 2 (in service), 3 (set up) and 4 (in service, takes no
    // persons), and administrators 51 and 52; branch 6 has terminal 7 and administrator 52.
    execute("INSERT INTO branches (bid, name) VALUES (5, 'five'), (6, 'six')");
    execute("INSERT INTO term (tid, bid, status, flags) VALUES (1, 5, 0, 2), "
            "(2, 5, 1, 2), (3, 5, 2, 2), (4, 5, 1, 1), (7, 6, 1, 2)");
    execute("INSERT INTO admins (aid) VALUES (51), (52), (53)");
    execute("INSERT INTO bradm (bid, aid) VALUES (5, 51), (5, 52), (6, 52)");
    execute("INSERT INTO people (uid, status) VALUES (11, 1), (12, 1), (13, 0)");
    execute("INSERT INTO sections (secid) VALUES (81), (82)");
}

void tst_BranchTables::addBranch_zerosAreNull()
{
    BranchRecord branch = named("Košice");
    branch.wh2e = 600;
    const ushort bid = bare->addBranch(branch);
    QVERIFY(bid > 6);
    QCOMPARE(database->rows(QStringLiteral("SELECT number, name, address, note, wh1b, wh1e, wh2b, "
                                           "wh2e, wh7b, wh7e, mgid FROM branches WHERE bid = %1")
                                .arg(bid)),
             lines({"NULL|Košice|||NULL|NULL|0|600|NULL|NULL|NULL"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addBranch_emptyName()
{
    QCOMPARE(bare->addBranch(named("")), ushort(0));
    QCOMPARE(rows("SELECT COUNT(*) FROM branches"), lines({"2"}));
    QCOMPARE(log->take(),
             lines({"warning BranchesRepository::addBranch() -  branch name can not be empty!"}));
}

void tst_BranchTables::addBranch_allColumns()
{
    BranchRecord branch = named("B");
    branch.number = 4294967295u;
    branch.address = str("Hlavná 1");
    branch.note = str("note");
    branch.wh1b = 11;
    branch.wh1e = 12;
    branch.wh2b = 21;
    branch.wh2e = 22;
    branch.wh3b = 31;
    branch.wh3e = 32;
    branch.wh4b = 41;
    branch.wh4e = 42;
    branch.wh5b = 51;
    branch.wh5e = 52;
    branch.wh6b = 61;
    branch.wh6e = 62;
    branch.wh7b = 71;
    branch.wh7e = 72;
    branch.mgid = 4294967294u;
    QVERIFY(bare->saveBranch(branch));
    QCOMPARE(rows("SELECT number, name, address, note, wh1b, wh1e, wh2b, wh2e, wh3b, wh3e, wh4b, "
                  "wh4e, wh5b, wh5e, wh6b, wh6e, wh7b, wh7e, mgid FROM branches WHERE name = 'B'"),
             lines({"4294967295|B|Hlavná 1|note|11|12|21|22|31|32|41|42|51|52|61|62|71|72|"
                    "4294967294"}));
    branch.bid = 5;
    branch.name = str("C");
    QCOMPARE(bare->updateBranch(branch), 1);
    QCOMPARE(rows("SELECT number, name, address, note, wh1b, wh1e, wh2b, wh2e, wh3b, wh3e, wh4b, "
                  "wh4e, wh5b, wh5e, wh6b, wh6e, wh7b, wh7e, mgid FROM branches WHERE bid = 5"),
             lines({"4294967295|C|Hlavná 1|note|11|12|21|22|31|32|41|42|51|52|61|62|71|72|"
                    "4294967294"}));
}

void tst_BranchTables::addBranch_apostropheFails()
{
    QCOMPARE(bare->addBranch(named("O'Brien")), ushort(0));
    QCOMPARE(rows("SELECT COUNT(*) FROM branches"), lines({"2"}));
    const QStringList events = log->take();
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first().startsWith(str("critical BranchesRepository::addBranch - ERROR: "
                                          "You have an error in your SQL syntax")));
}

void tst_BranchTables::updateBranch_changedRows()
{
    QCOMPARE(bare->updateBranch(named("new", 5)), 1);
    QCOMPARE(bare->updateBranch(named("new", 5)), 0);
    QCOMPARE(bare->updateBranch(named("new", 99)), 0);
    QCOMPARE(rows("SELECT bid, name FROM branches ORDER BY bid"), lines({"5|new", "6|six"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::updateBranch_emptyNameIsStored()
{
    QCOMPARE(bare->updateBranch(named("", 5)), 1);
    QCOMPARE(rows("SELECT bid, name FROM branches ORDER BY bid"), lines({"5|", "6|six"}));
}

void tst_BranchTables::saveBranch_unchangedUpdateIsNoSuccess()
{
    QVERIFY(bare->saveBranch(named("new", 5)));
    QVERIFY(!bare->saveBranch(named("new", 5)));
    QVERIFY(!bare->saveBranch(named("new", 99)));
}

void tst_BranchTables::saveBranch_failedUpdateIsASuccess()
{
    database->hideTable(str("branches"));
    const int updated = bare->updateBranch(named("new", 5));
    const bool saved = bare->saveBranch(named("new", 5));
    const bool addedNew = bare->saveBranch(named("new"));
    database->showTable(str("branches"));
    QCOMPARE(updated, -1);
    QVERIFY(saved);
    QVERIFY(!addedNew);
    const char failed[] = "critical BranchesRepository::updateBranch - ERROR: Table "
                          "'attendance.branches' doesn't exist QMYSQL: Unable to execute query";
    QCOMPARE(log->take(),
             lines({failed, failed,
                    "critical BranchesRepository::addBranch - ERROR: Table 'attendance.branches' "
                    "doesn't exist QMYSQL: Unable to execute query"}));
}

void tst_BranchTables::addPeopleToBranch_knownPeopleOnly()
{
    QVERIFY(bare->addPeopleToBranch(6, str("11,99,13")));
    QCOMPARE(rows("SELECT bid, uid, since FROM brape ORDER BY uid"),
             lines({"6|11|1700000000", "6|13|1700000000"}));
    QSignalSpy spy(bare.get(), &BranchesRepository::sigAddedPeopleToBranch);
    QVERIFY(!bare->addPeopleToBranch(6, str("98,99")));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(members(), lines({"6|11", "6|13"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addPeopleToBranch_repeatedWithinTheSameSecond()
{
    QVERIFY(bare->addPeopleToBranch(6, str("11")));
    QSignalSpy spy(bare.get(), &BranchesRepository::sigAddedPeopleToBranch);
    QVERIFY(!bare->addPeopleToBranch(6, str("11")));
    QCOMPARE(spy.count(), 0);
}

void tst_BranchTables::addPeopleToBranch_repeatedLaterRefreshes()
{
    QVERIFY(bare->addPeopleToBranch(6, str("11")));
    QSignalSpy spy(bare.get(), &BranchesRepository::sigAddedPeopleToBranch);
    setClock(1700000001);
    QVERIFY(bare->addPeopleToBranch(6, str("11")));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(rows("SELECT bid, uid, since FROM brape"), lines({"6|11|1700000001"}));
}

void tst_BranchTables::addPeopleToBranch_reachesTerminalsAndAdministrators()
{
    QVERIFY(repo->addPeopleToBranch(5, str("11,13")));
    QCOMPARE(members(), lines({"5|11", "5|13"}));
    // Not terminal 1. The inactive person is on the terminals, without a notice.
    QCOMPARE(onTerms(), lines({"2|11", "2|13", "3|11", "3|13", "4|11", "4|13"}));
    QCOMPARE(queue(), lines({"2|I|11", "3|I|11", "4|I|11"}));
    QCOMPARE(rows("SELECT DISTINCT type, ref, ref_col, ref_col2, ref_id2, created, flags "
                  "FROM term_sync"),
             lines({"I|people_term|uid|NULL|NULL|1700000000|2"}));
    // Terminal 3 is not in service; what terminal 4 takes is not asked.
    QCOMPARE(marks(), lines({"2|2", "4|2"}));
    QCOMPARE(underAdmins(), lines({"51|11", "51|13", "52|11", "52|13"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addPeopleToBranch_branchWithoutTerminalsAndAdministrators()
{
    QVERIFY(repo->addPeopleToBranch(9, str("11")));
    QCOMPARE(members(), lines({"9|11"}));
    QCOMPARE(onTerms() + queue() + marks() + underAdmins(), QStringList());
    QVERIFY(repo->slotAddedPeopleToBranch(9, str("11")));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addPeopleToBranch_failedPropagationKeepsTheMembership()
{
    database->hideTable(str("people_term"));
    database->hideTable(str("admins_people"));
    const bool joined = repo->addPeopleToBranch(6, str("11"));
    database->showTable(str("people_term"));
    database->showTable(str("admins_people"));
    QVERIFY(joined);
    QCOMPARE(members(), lines({"6|11"}));
    QCOMPARE(queue() + marks(), QStringList());
    QCOMPARE(log->take(),
             lines({"critical BranchesRepository::AddPeopleToTerm - ERROR: Table "
                    "'attendance.people_term' doesn't exist QMYSQL: Unable to execute query",
                    "warning BranchesRepository::slotAddedPeopleToBranch() - "
                    "AddPeopleToTerms() FAILED!",
                    "critical BranchesRepository::AddPeopleToAdmins - ERROR: Table "
                    "'attendance.admins_people' doesn't exist QMYSQL: Unable to execute query",
                    "warning BranchesRepository::slotAddedPeopleToBranch() - "
                    "AddPeopleToAdmins() FAILED!"}));
}

void tst_BranchTables::delPeopleFromBranch_withoutSlots()
{
    repo->addPeopleToBranch(5, str("11"));
    const QStringList before = onTerms() + queue() + underAdmins();
    QVERIFY(bare->delPeopleFromBranch(5, str("11")));
    QCOMPARE(members(), QStringList());
    QCOMPARE(onTerms() + queue() + underAdmins(), before);
    QVERIFY(!bare->delPeopleFromBranch(5, str("11")));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::delPeopleFromBranch_leavesTerminalsAndAdministrators()
{
    repo->addPeopleToBranch(5, str("11,12"));
    execute("DELETE FROM term_sync");
    execute("UPDATE term SET syn = 0");
    QVERIFY(repo->delPeopleFromBranch(5, str("11")));
    QCOMPARE(members(), lines({"5|12"}));
    QCOMPARE(onTerms(), lines({"2|12", "3|12", "4|12"}));
    QCOMPARE(queue(), lines({"2|D|11", "3|D|11", "4|D|11"}));
    QCOMPARE(marks(), lines({"2|2", "4|2"}));
    QCOMPARE(underAdmins(), lines({"51|12", "52|12"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::delPeopleFromBranch_keepsPeopleOfAnotherBranch()
{
    // Administrator 52 has branch 6 as well, and person 11 is there too.
    repo->addPeopleToBranch(5, str("11,12"));
    repo->addPeopleToBranch(6, str("11"));
    QVERIFY(repo->delPeopleFromBranch(5, str("11,12")));
    QCOMPARE(members(), lines({"6|11"}));
    QCOMPARE(underAdmins(), lines({"52|11"}));
    QCOMPARE(onTerms(), lines({"7|11"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addBranchToTerms_givesTheBranchsPeople()
{
    execute("INSERT INTO brape (bid, uid) VALUES (6, 11), (6, 12)");
    QVERIFY(repo->addBranchToTerms(6, str("1,4")));
    QCOMPARE(rows("SELECT tid, bid FROM term ORDER BY tid"),
             lines({"1|6", "2|5", "3|5", "4|6", "7|6"}));
    // Also the terminal that is off.
    QCOMPARE(onTerms(), lines({"1|11", "1|12", "4|11", "4|12"}));
    QCOMPARE(queue(), lines({"1|I|11", "1|I|12", "4|I|11", "4|I|12"}));
    QCOMPARE(marks(), lines({"4|2"}));
    // They are there already.
    QVERIFY(!repo->addBranchToTerms(6, str("1,4")));
    QCOMPARE(queue().size(), 4);
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::delBranchFromTerms_detachesFromAnyBranch()
{
    QVERIFY(bare->delBranchFromTerms(5, str("7")));
    QCOMPARE(rows("SELECT tid, bid FROM term ORDER BY tid"),
             lines({"1|5", "2|5", "3|5", "4|5", "7|NULL"}));
    QVERIFY(!bare->delBranchFromTerms(5, str("7")));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::delBranchFromTerms_takesTheBranchsPeople()
{
    execute("INSERT INTO brape (bid, uid) VALUES (5, 11)");
    execute("INSERT INTO people_term (tid, uid) VALUES (2, 11), (2, 12), (3, 11)");
    QVERIFY(repo->delBranchFromTerms(5, str("2")));
    QCOMPARE(onTerms(), lines({"2|12", "3|11"}));
    QCOMPARE(queue(), lines({"2|D|11"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addAdminsToBranch_givesTheBranchsPeople()
{
    execute("INSERT INTO brape (bid, uid) VALUES (6, 11), (6, 12)");
    QVERIFY(repo->addAdminsToBranch(6, str("53")));
    QCOMPARE(rows("SELECT bid, aid FROM bradm ORDER BY bid, aid"),
             lines({"5|51", "5|52", "6|52", "6|53"}));
    QCOMPARE(underAdmins(), lines({"53|11", "53|12"}));
    QCOMPARE(queue(), QStringList());
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addAdminsToBranch_repeated()
{
    // Nothing changes, so nothing follows.
    execute("INSERT INTO brape (bid, uid) VALUES (6, 11)");
    QVERIFY(!repo->addAdminsToBranch(6, str("52")));
    QVERIFY(!repo->addAdminsToBranch(6, str("99")));
    QCOMPARE(underAdmins(), QStringList());
    QCOMPARE(rows("SELECT COUNT(*) FROM bradm"), lines({"3"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::delAdminsFromBranch_takesAllPeopleOfTheBranch()
{
    // Administrator 52 has person 11 through branch 6 as well.
    repo->addPeopleToBranch(5, str("11,12"));
    repo->addPeopleToBranch(6, str("11"));
    QVERIFY(repo->delAdminsFromBranch(5, str("52")));
    QCOMPARE(rows("SELECT bid, aid FROM bradm ORDER BY bid, aid"), lines({"5|51", "6|52"}));
    QCOMPARE(underAdmins(), lines({"51|11", "51|12"}));
    QCOMPARE(members(), lines({"5|11", "5|12", "6|11"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::sections_addAndDelete()
{
    QVERIFY(repo->addSectionsToBranch(5, str("81,82,99")));
    QCOMPARE(rows("SELECT bid, secid FROM sec_branch ORDER BY secid"), lines({"5|81", "5|82"}));
    QVERIFY(!repo->addSectionsToBranch(5, str("81")));
    QVERIFY(repo->addSectionsToBranch(6, str("81")));
    execute("INSERT INTO bas (bid, attrid, secid) VALUES (5, 1, 81), (5, 2, 81), "
            "(5, 1, 82), (6, 1, 81)");
    QVERIFY(repo->delSectionsFromBranch(5, str("81")));
    QCOMPARE(rows("SELECT bid, secid FROM sec_branch ORDER BY bid"), lines({"5|82", "6|81"}));
    QCOMPARE(triples(), lines({"5|1|82", "6|1|81"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::delSectionsFromBranch_triplesAloneAreNoSuccess()
{
    execute("INSERT INTO bas (bid, attrid, secid) VALUES (5, 1, 81)");
    QSignalSpy spy(repo.get(), &BranchesRepository::sigDeletedSectionsFromBranch);
    QVERIFY(!repo->delSectionsFromBranch(5, str("81")));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(triples(), QStringList());
    // With the second statement failed, they are one.
    execute("INSERT INTO bas (bid, attrid, secid) VALUES (5, 1, 81)");
    database->hideTable(str("sec_branch"));
    const bool removed = repo->delSectionsFromBranch(5, str("81"));
    database->showTable(str("sec_branch"));
    QVERIFY(removed);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(triples(), QStringList());
    QCOMPARE(log->take(),
             lines({"critical BranchesRepository::delSectionsFromBranch [sec_branch] - ERROR: "
                    "Table 'attendance.sec_branch' doesn't exist QMYSQL: "
                    "Unable to execute query"}));
}

void tst_BranchTables::readers_orderAndStatus()
{
    execute("INSERT INTO brape (bid, uid) VALUES (5, 12), (5, 11), (6, 11)");
    QCOMPARE(repo->getTids4Branch(5), (QVector<uint> {2, 3, 4}));
    QCOMPARE(repo->getTids4Branch(9), QVector<uint>());
    QCOMPARE(repo->getAids4Branch(5), (QVector<uint> {51, 52}));
    QCOMPARE(repo->getUids4Branch(5), (QVector<uint> {11, 12}));
    QCOMPARE(repo->getAids4Uid(11), (QSet<uint> {51, 52}));
    QCOMPARE(repo->getAids4Uid(13), QSet<uint>());
}

void tst_BranchTables::AddPeopleToTerm_skipsWhatIsNoNumber()
{
    QVERIFY(repo->AddPeopleToTerm(2, lines({"0", "11"})));
    QCOMPARE(onTerms(), lines({"2|11"}));
    QCOMPARE(queue(), lines({"2|I|11"}));
    // A text that is no number is left out here, and breaks the notice.
    QVERIFY(repo->AddPeopleToTerm(3, lines({"x", "12"})));
    QCOMPARE(onTerms(), lines({"2|11", "3|12"}));
    QCOMPARE(queue(), lines({"2|I|11"}));
    const QStringList events = log->take();
    QCOMPARE(events.size(), 1);
    QVERIFY2(events.first().startsWith(str("critical TermSyncRepository::addTermSyncPeople() "
                                           "ERROR: Unknown column 'x'")),
             qPrintable(events.first()));
    QVERIFY(repo->AddPeopleToTerm(2, lines({"0", "x"})));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::deletePeopleFromTerm_emptyList()
{
    execute("INSERT INTO people_term (tid, uid) VALUES (2, 11)");
    QVERIFY(!repo->deletePeopleFromTerm(2, QStringList()));
    QCOMPARE(onTerms(), lines({"2|11"}));
    QCOMPARE(queue() + marks(), QStringList());
    const QStringList events = log->take();
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first().startsWith(str("critical BranchesRepository::deletePeopleFromTerm - "
                                          "ERROR: You have an error in your SQL syntax")));
}

void tst_BranchTables::deletePeopleFromTerm_noRow()
{
    QVERIFY(repo->deletePeopleFromTerm(2, lines({"11"})));
    QCOMPARE(queue(), lines({"2|D|11"}));
}

void tst_BranchTables::AddPeopleToAdmin_withoutValues()
{
    QVERIFY(!repo->AddPeopleToAdmin(51, lines({"0", "x"})));
    const QStringList events = log->take();
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first().startsWith(str("critical BranchesRepository::AddPeopleToAdmins - "
                                          "ERROR: You have an error in your SQL syntax")));
    // A row that is there already is none to fail, and keeps the mark of the supervisor.
    execute("INSERT INTO admins_people (aid, uid, request) VALUES (51, 11, 1)");
    QVERIFY(repo->AddPeopleToAdmin(51, lines({"11", "12"})));
    QCOMPARE(rows("SELECT aid, uid, request FROM admins_people ORDER BY uid"),
             lines({"51|11|1", "51|12|0"}));
}

void tst_BranchTables::addBAS_recordAndKey()
{
    BasRecord bas;
    bas.bid = 1;
    bas.attrid = 2;
    bas.secid = 4294967295u;
    QVERIFY(repo->addBAS(bas));
    QCOMPARE(triples(), lines({"1|2|4294967295"}));
    // The same again, both ways.
    QVERIFY(repo->addBAS(bas));
    QVERIFY(repo->addBAS(lines({"1-2-4294967295"})));
    QCOMPARE(triples(), lines({"1|2|4294967295"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::addBAS_batch()
{
    QVERIFY(!repo->addBAS(QStringList()));
    QCOMPARE(triples(), QStringList());
    QVERIFY(repo->addBAS(lines({"1-2", "3-4-5", "1-2-3", "3-4-5"})));
    QCOMPARE(triples(), lines({"0|0|0", "1|2|3", "3|4|5"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::deleteBAS_recordAndBatch()
{
    execute("INSERT INTO bas (bid, attrid, secid) VALUES (0, 0, 0), (1, 1, 1), "
            "(1, 1, 2), (1, 2, 1), (2, 1, 1)");
    BasRecord bas;
    bas.bid = 1;
    bas.attrid = 2;
    bas.secid = 1;
    QVERIFY(repo->deleteBAS(bas));
    QCOMPARE(triples(), lines({"0|0|0", "1|1|1", "1|1|2", "2|1|1"}));
    // No row is no failure.
    QVERIFY(repo->deleteBAS(bas));
    QVERIFY(repo->deleteBAS(lines({"1-1-1", "9-9-9", "1-1-1-1", "2-1-1"})));
    QCOMPARE(triples(), lines({"1|1|2"}));
    QVERIFY(!repo->deleteBAS(QStringList()));
    QCOMPARE(log->take(), QStringList());
}

void tst_BranchTables::triples_hiddenTable()
{
    database->hideTable(str("bas"));
    const bool record = repo->addBAS(BasRecord());
    const bool keys = repo->deleteBAS(lines({"1-2-3"}));
    database->showTable(str("bas"));
    QVERIFY(!record);
    QVERIFY(!keys);
    QCOMPARE(log->take(),
             lines({"critical BranchesRepository::addBAS() - prepare failed, SQL ERROR: "
                    "\"Table 'attendance.bas' doesn't exist QMYSQL3: "
                    "Unable to prepare statement\"",
                    "critical BranchesRepository::deleteBAS() - prepare failed, SQL ERROR: "
                    "\"Table 'attendance.bas' doesn't exist QMYSQL3: "
                    "Unable to prepare statement\""}));
}

QTEST_GUILESS_MAIN(tst_BranchTables)
#include "tst_branchtables.moc"
