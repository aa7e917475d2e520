// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The queue of the terminals on the server: queued rows and marked terminals.
#include "repository/termsyncrepository.h"
#include "support/databasefixture.h"

#include <QtTest>

#include <memory>

namespace {

const QChar added = QLatin1Char('I');
const QChar deleted = QLatin1Char('D');
const QChar updated = QLatin1Char('U');

} // namespace

class tst_TermSyncTables : public ConnectionFixture
{
    Q_OBJECT

private Q_SLOTS:
    void setTermSyn_marksOnceAndOnlyInService();
    void setTermSyn_keepsOtherBits();
    void addTermSyncPeople_queuesActivePeopleOnly();
    void addTermSyncPeople_terminalOutOfService();
    void addTermSyncPeople_emptyList();
    void addTermSyncPeople_noPersonMarksAllTheSame();
    void addTermSyncPeople_hiddenQueue();
    void addTermSyncPerson_everyTerminalInServiceThatTakesPersons();
    void addTermSyncPerson_failedQueueDoesNotMark();
    void addTermSyncPerson_oneTerminal();
    void addTermSyncInter_everyTerminalInServiceThatTakesIntervals();
    void addTermSyncInter_marksAlsoAfterAFailedInsert();
    void addTermSyncInter_noTerminals();
    void addTermSyncInter_oneTerminal();
    void addTermSyncInterList_knownIntervalsOnly();
    void addTermSyncTimezone_marksMoreThanItQueues();
    void addTermSyncTimezone_connectionServesOn();
    void addTermSyncPZT_deletedStaysOnOneTerminal();
    void addTermSyncPZT_addedReachesTheZone();
    void addColorGroupsToTermSync_everyTerminalInServiceThatTakesThem();
    void addColorGroupsToTermSync_failedQueueMarksAllTheSame();
    void addColorGroup_onePerson();
    void addColorGroup_activePeopleOfAList();
    void apostropheFails();

private:
    void begin() override;
    void end() override { repo.reset(); }
    QStringList queue();
    QStringList marks();

    std::unique_ptr<TermSyncRepository> repo;
};

void tst_TermSyncTables::begin()
{
    repo = std::make_unique<TermSyncRepository>(nullptr);
    repo->setDb(handle);
    // 1 to 4 take all kinds: off, in service, set up, in service; 5 is in service and takes none.
    execute("INSERT INTO term (tid, status, flags, syn) VALUES (1, 0, 323, 0), "
            "(2, 1, 323, 0), (3, 2, 323, 0), (4, 1, 323, 8), (5, 1, 4, 0)");
    execute("INSERT INTO people (uid, status) VALUES (11, 1), (12, 0), (13, 1)");
    execute("INSERT INTO people_term (tid, uid) VALUES (1, 11), (2, 11), (3, 11), "
            "(5, 11), (4, 13)");
    execute("INSERT INTO inters (iid) VALUES (21), (22)");
    execute("INSERT INTO inters_term (tid, iid) VALUES (1, 21), (2, 21), (3, 21), "
            "(4, 21), (5, 21), (3, 22)");
    execute("INSERT INTO pzt (zid, tid, uid) VALUES (31, 1, 11), (31, 2, 11), "
            "(31, 2, 13), (31, 3, 11), (31, 5, 11), (32, 4, 11)");
}

QStringList tst_TermSyncTables::queue()
{
    return rows("SELECT tid, type, ref, ref_col, ref_id, ref_col2, ref_id2, created, "
                "flags FROM term_sync ORDER BY id");
}

/// "tid|syn" of the terminals that are marked.
QStringList tst_TermSyncTables::marks()
{
    return rows("SELECT tid, syn FROM term WHERE syn <> 0 AND syn <> 8 "
                "ORDER BY tid");
}

void tst_TermSyncTables::setTermSyn_marksOnceAndOnlyInService()
{
    QVERIFY(repo->setTermSyn(2, 2));
    QVERIFY(!repo->setTermSyn(2, 2));
    QVERIFY(repo->setTermSyn(2, 3));
    // Off, set up, unknown.
    QVERIFY(!repo->setTermSyn(1, 2));
    QVERIFY(!repo->setTermSyn(3, 2));
    QVERIFY(!repo->setTermSyn(99, 2));
    // What it takes is not asked.
    QVERIFY(repo->setTermSyn(5, 2));
    QCOMPARE(marks(), lines({"2|3", "5|2"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::setTermSyn_keepsOtherBits()
{
    QVERIFY(repo->setTermSyn(4, 2));
    QVERIFY(repo->setTermSyn(4, 256));
    QCOMPARE(marks(), lines({"4|266"}));
}

void tst_TermSyncTables::addTermSyncPeople_queuesActivePeopleOnly()
{
    repo->addTermSyncPeople(2, lines({"11", "12", "13", "99"}), added);
    QCOMPARE(queue(),
             lines({"2|I|people_term|uid|11|NULL|NULL|1700000000|2",
                    "2|I|people_term|uid|13|NULL|NULL|1700000000|2"}));
    QCOMPARE(marks(), lines({"2|2"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncPeople_terminalOutOfService()
{
    repo->addTermSyncPeople(1, lines({"11"}), deleted);
    QCOMPARE(queue(), lines({"1|D|people_term|uid|11|NULL|NULL|1700000000|2"}));
    QCOMPARE(marks(), QStringList());
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncPeople_emptyList()
{
    repo->addTermSyncPeople(2, QStringList(), added);
    QCOMPARE(queue(), QStringList());
    QCOMPARE(marks(), QStringList());
    const QStringList events = log->take();
    QCOMPARE(events.size(), 1);
    QVERIFY2(events.first().startsWith(str("critical TermSyncRepository::addTermSyncPeople() "
                                           "ERROR: You have an error in your SQL syntax")),
             qPrintable(events.first()));
}

void tst_TermSyncTables::addTermSyncPeople_noPersonMarksAllTheSame()
{
    repo->addTermSyncPeople(2, lines({"12", "0"}), added);
    QCOMPARE(queue(), QStringList());
    QCOMPARE(marks(), lines({"2|2"}));
}

void tst_TermSyncTables::addTermSyncPeople_hiddenQueue()
{
    database->hideTable(str("term_sync"));
    repo->addTermSyncPeople(2, lines({"11"}), added);
    database->showTable(str("term_sync"));
    QCOMPARE(marks(), QStringList());
    QCOMPARE(log->take(),
             lines({"critical TermSyncRepository::addTermSyncPeople() ERROR: "
                    "Table 'attendance.term_sync' doesn't exist QMYSQL: "
                    "Unable to execute query"}));
}

void tst_TermSyncTables::addTermSyncPerson_everyTerminalInServiceThatTakesPersons()
{
    execute("INSERT INTO people_term (tid, uid) VALUES (4, 11)");
    repo->addTermSyncPerson(11, updated, str("people"));
    QCOMPARE(queue(),
             lines({"2|U|people|uid|11|NULL|NULL|1700000000|2",
                    "4|U|people|uid|11|NULL|NULL|1700000000|2"}));
    QCOMPARE(marks(), lines({"2|2", "4|10"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncPerson_failedQueueDoesNotMark()
{
    database->hideTable(str("term_sync"));
    repo->addTermSyncPerson(11, updated, str("people"));
    database->showTable(str("term_sync"));
    QCOMPARE(marks(), QStringList());
    QCOMPARE(log->take(),
             lines({"critical TermSyncRepository::addTermSyncPerson() ERROR: "
                    "Table 'attendance.term_sync' doesn't exist QMYSQL: "
                    "Unable to execute query"}));
}

void tst_TermSyncTables::addTermSyncPerson_oneTerminal()
{
    // Neither the person's state nor what the terminal takes is asked.
    repo->addTermSyncPerson(5, 12, deleted, str("people"));
    repo->addTermSyncPerson(3, 99, added, str("people"));
    QCOMPARE(queue(),
             lines({"5|D|people|uid|12|NULL|NULL|1700000000|2",
                    "3|I|people|uid|99|NULL|NULL|1700000000|2"}));
    QCOMPARE(marks(), lines({"5|2"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncInter_everyTerminalInServiceThatTakesIntervals()
{
    repo->addTermSyncInter(21, updated, str("inters"));
    QCOMPARE(queue(),
             lines({"2|U|inters|iid|21|NULL|NULL|1700000000|1",
                    "4|U|inters|iid|21|NULL|NULL|1700000000|1"}));
    QCOMPARE(marks(), lines({"2|1", "4|9"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncInter_marksAlsoAfterAFailedInsert()
{
    database->hideTable(str("term_sync"));
    repo->addTermSyncInter(21, updated, str("inters"));
    database->showTable(str("term_sync"));
    QCOMPARE(marks(), lines({"2|1", "4|9"}));
    QCOMPARE(log->take(),
             lines({"critical TermSyncRepository::addTermSyncInter() ERROR: "
                    "Table 'attendance.term_sync' doesn't exist QMYSQL: "
                    "Unable to execute query"}));
}

void tst_TermSyncTables::addTermSyncInter_noTerminals()
{
    // Only on a terminal that is set up but not in service.
    repo->addTermSyncInter(22, updated, str("inters"));
    QCOMPARE(queue(), QStringList());
    QCOMPARE(marks(), QStringList());
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncInter_oneTerminal()
{
    repo->addTermSyncInter(2, 99, added, str("inters_term"));
    QCOMPARE(queue(), lines({"2|I|inters_term|iid|99|NULL|NULL|1700000000|1"}));
    QCOMPARE(marks(), lines({"2|1"}));
}

void tst_TermSyncTables::addTermSyncInterList_knownIntervalsOnly()
{
    repo->addTermSyncInterList(2, lines({"22", "99", "21"}), deleted);
    QCOMPARE(queue(),
             lines({"2|D|inters_term|iid|21|NULL|NULL|1700000000|1",
                    "2|D|inters_term|iid|22|NULL|NULL|1700000000|1"}));
    QCOMPARE(marks(), lines({"2|1"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncTimezone_marksMoreThanItQueues()
{
    // Terminal 2 holds two people of the zone; 3 is set up; 1 is off; 5 takes no zones.
    repo->addTermSyncTimezone(31, updated, str("zones"));
    QCOMPARE(queue(), lines({"2|U|zones|zid|31|NULL|NULL|1700000000|64"}));
    QCOMPARE(marks(), lines({"2|64", "3|64"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncTimezone_connectionServesOn()
{
    // After a text of several statements, the same and others.
    repo->addTermSyncTimezone(31, updated, str("zones"));
    repo->addTermSyncTimezone(32, updated, str("zones"));
    QVERIFY(repo->setTermSyn(2, 1));
    QCOMPARE(queue(),
             lines({"2|U|zones|zid|31|NULL|NULL|1700000000|64",
                    "4|U|zones|zid|32|NULL|NULL|1700000000|64"}));
    QCOMPARE(marks(), lines({"2|65", "3|64", "4|72"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncPZT_deletedStaysOnOneTerminal()
{
    // Whatever its state and what it takes.
    repo->addTermSyncPZT(11, 31, 1, deleted, str("pzt"));
    repo->addTermSyncPZT(11, 31, 5, updated, str("pzt"));
    QCOMPARE(queue(),
             lines({"1|D|pzt|zid|31|uid|11|1700000000|64", "5|U|pzt|zid|31|uid|11|1700000000|64"}));
    QCOMPARE(marks(), lines({"1|64", "5|64"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addTermSyncPZT_addedReachesTheZone()
{
    repo->addTermSyncPZT(13, 31, 4, added, str("pzt"));
    QCOMPARE(
        queue(),
        lines({"4|I|pzt|zid|31|uid|13|1700000000|64", "2|I|zones|zid|31|NULL|NULL|1700000000|64"}));
    QCOMPARE(marks(), lines({"2|64", "3|64", "4|72"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addColorGroupsToTermSync_everyTerminalInServiceThatTakesThem()
{
    repo->addColorGroupsToTermSync();
    QCOMPARE(queue(),
             lines({"2|U|vars|colorGroups|0|NULL|NULL|1700000000|256",
                    "4|U|vars|colorGroups|0|NULL|NULL|1700000000|256"}));
    QCOMPARE(marks(), lines({"2|256", "4|264"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::addColorGroupsToTermSync_failedQueueMarksAllTheSame()
{
    database->hideTable(str("term_sync"));
    repo->addColorGroupsToTermSync();
    database->showTable(str("term_sync"));
    QCOMPARE(marks(), lines({"2|256", "4|264"}));
    QCOMPARE(log->take(),
             lines({"critical TermSyncRepository::addColorGroupsToTermSync() - "
                    "INSERT INTO `term_sync` FAILED! ERROR: Table 'attendance.term_sync' doesn't "
                    "exist QMYSQL: Unable to execute query"}));
}

void tst_TermSyncTables::addColorGroup_onePerson()
{
    repo->addColorGroup(2, 12);
    repo->addColorGroup(1, 11);
    QCOMPARE(queue(),
             lines({"2|U|people_term|uid|12|NULL|NULL|1700000000|256",
                    "1|U|people_term|uid|11|NULL|NULL|1700000000|256"}));
    QCOMPARE(marks(), lines({"2|256"}));
}

void tst_TermSyncTables::addColorGroup_activePeopleOfAList()
{
    repo->addColorGroup(2, lines({"11", "12", "13"}));
    QCOMPARE(queue(),
             lines({"2|U|people_term|uid|11|NULL|NULL|1700000000|256",
                    "2|U|people_term|uid|13|NULL|NULL|1700000000|256"}));
    QCOMPARE(marks(), lines({"2|256"}));
    QCOMPARE(log->take(), QStringList());
}

void tst_TermSyncTables::apostropheFails()
{
    repo->addTermSyncPerson(2, 11, added, str("O'Brien"));
    QCOMPARE(queue(), QStringList());
    QCOMPARE(marks(), QStringList());
    const QStringList events = log->take();
    QCOMPARE(events.size(), 1);
    QVERIFY(events.first().startsWith(str("critical TermSyncRepository::addTermSyncPerson() "
                                          "ERROR: You have an error in your SQL syntax")));
}

QTEST_GUILESS_MAIN(tst_TermSyncTables)
#include "tst_termsynctables.moc"
