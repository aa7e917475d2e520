// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The walk over the records of a pass, and the memberships that it has queued.
#include "repository/branchesrepository.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

const char loadBranches[] = "sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;";

const char findFund[] = "sql exec SELECT fid FROM funds WHERE iid = 3 AND unit=2;";

QString addingToBranch(uint bid, const char *uids)
{
    return QStringLiteral("sql exec INSERT INTO brape (bid, uid, since) SELECT %1 bid, uid, "
                          "UNIX_TIMESTAMP() since FROM people WHERE uid IN(%2) "
                          "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()")
        .arg(bid)
        .arg(QString::fromLatin1(uids));
}

} // namespace

class tst_DoSync : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void doSync_worksInFileOrder();
    void doSync_countsTheRecordsFromLevel2();
    void doSync_aRecordLeavesTheVectorBeforeItIsWorkedOn();
    void doSync_aFailedRecordStopsNothing();
    void doSync_loadsTheBranchesBeforeTheFirstRecord();
    void doSync_goesOnWithoutBranches();
    void doSync_looksForTheFundOnceBeforeTheFirstRecord();
    void doSync_theFundThatItFindsHoldsForTheFirstRecord();
    void doSync_goesOnWithoutAFund();
    void doSync_callsOnceForEachBranch();
    void doSync_collectsOverAllRecords();
    void doSync_skipsEmptyLists();
    void doSync_cutsTheBranchTo16Bits();
    void doSync_failedMembershipIsNotLookedAt();
    void doSync_withoutRecordsKeepsTheQueue();
    void doSync_withoutRecordsIsSilent();
};

void tst_DoSync::doSync_worksInFileOrder()
{
    WorkerFixture f;
    f.worker.setLogLevel(2);
    f.worker.setTestMode(true);
    f.peer.importedRecords = {record().pid(3, 1), record().pid(1, 1), record().pid(2, 1)};
    f.worker.doSync();
    QCOMPARE(f.log.takeMatching({QStringLiteral("stack count"), QStringLiteral("Testing mode")}),
             lines({"debug THRWorker::doSync() - stack count: 3",
                    "warning THRWorker::dbAddPerson(3.1) - Testing mode is active, "
                    "person not really add!",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 31, pamSettingsID: 1) - "
                    "Testing mode is active, person not really add into PaM!",
                    "warning THRWorker::dbAddPerson(1.1) - Testing mode is active, "
                    "person not really add!",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 11, pamSettingsID: 1) - "
                    "Testing mode is active, person not really add into PaM!",
                    "warning THRWorker::dbAddPerson(2.1) - Testing mode is active, "
                    "person not really add!",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 21, pamSettingsID: 1) - "
                    "Testing mode is active, person not really add into PaM!"}));
    QVERIFY(f.peer.importedRecords.isEmpty());
}

void tst_DoSync::doSync_countsTheRecordsFromLevel2()
{
    WorkerFixture f;
    for (const quint8 level : {quint8(1), quint8(2)}) {
        f.worker.setLogLevel(level);
        f.listInPam(QStringLiteral("11"));
        f.peer.importedRecords = {record().pid(1, 1)};
        f.worker.doSync();
        QCOMPARE(f.log.takeMatching({QStringLiteral("stack count")}).size(), level - 1);
    }
}

void tst_DoSync::doSync_aRecordLeavesTheVectorBeforeItIsWorkedOn()
{
    WorkerFixture f;
    f.listInPam(QStringLiteral("11,21"));
    QVector<int> left;
    f.script.on(QStringLiteral("INSERT INTO people ")).doing([&] {
        left.append(f.peer.importedRecords.size());
    });
    f.peer.importedRecords = {record().pid(1, 1), record().pid(2, 1)};
    f.worker.doSync();
    QCOMPARE(left, (QVector<int> {1, 0}));
    f.log.clear();
}

void tst_DoSync::doSync_aFailedRecordStopsNothing()
{
    WorkerFixture f;
    f.listInPam(QStringLiteral("21"));
    f.script.on(QStringLiteral("INSERT INTO people"), 1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax"));
    f.peer.importedRecords = {record().pid(1, 1), record().pid(2, 1)};
    f.worker.doSync();
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO people")).size(), 2);
    QCOMPARE(events.filter(QStringLiteral("critical")),
             lines({"critical THRWorker::dbAddPerson(1.1) - SQL ERROR: syntax (scripted)"}));
    QVERIFY(f.peer.importedRecords.isEmpty());
}

void tst_DoSync::doSync_loadsTheBranchesBeforeTheFirstRecord()
{
    WorkerFixture f;
    f.init();
    f.worker.setLogLevel(2);
    f.listInPam(QStringLiteral("11,21"));
    f.peer.branches.insert(9, 90);
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withRows({QStringLiteral("bid"), QStringLiteral("number")}, {{70, 7}});
    f.peer.importedRecords = {record().pid(1, 1).branch(7), record().pid(2, 1).branch(9)};
    f.worker.doSync();
    const QStringList events = f.log.take();
    QCOMPARE(events.mid(0, 3),
             lines({"debug THRWorker::doSync() - stack count: 2",
                    "debug THRWorker::dbLoadBranches()", loadBranches}));
    // Once a pass, and before the person store asks for a branch.
    QCOMPARE(events.filter(QString::fromLatin1(loadBranches)).size(), 1);
    const QStringList added = events.filter(QStringLiteral("INSERT INTO people "));
    QCOMPARE(added.size(), 2);
    QVERIFY(added.at(0).contains(QStringLiteral(", NULL, NULL, '', 1, 1, 0, 70) ON DUPLICATE")));
    QVERIFY(added.at(1).contains(QStringLiteral(", NULL, NULL, '', 1, 1, 0, NULL) ON DUPLICATE")));
}

void tst_DoSync::doSync_goesOnWithoutBranches()
{
    WorkerFixture f;
    f.init();
    f.listInPam(QStringLiteral("11,21"));
    f.fail("SELECT bid, number", "1146", "no such table");
    f.peer.branches.insert(7, 70);
    f.peer.importedRecords = {record().pid(1, 1).branch(7), record().pid(2, 1)};
    f.worker.doSync();
    const QStringList events = f.log.take();
    QCOMPARE(events.mid(0, 2),
             lines({loadBranches,
                    "critical THRWorker::dbLoadBranches() - SQL ERROR [1146]: "
                    "no such table (scripted)"}));
    const QStringList added = events.filter(QStringLiteral("INSERT INTO people "));
    QCOMPARE(added.size(), 2);
    QVERIFY(added.at(0).contains(QStringLiteral(", NULL, NULL, '', 1, 1, 0, NULL) ON DUPLICATE")));
    QCOMPARE(events.filter(QStringLiteral("warning ")),
             lines({"warning THRWorker: Branch '7' NOT FOUND for employee: '1.1 Novák Ján (S: 7, "
                    "K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0'"}));
    QCOMPARE(f.peer.waitingRecords.size(), 1);
}

void tst_DoSync::doSync_looksForTheFundOnceBeforeTheFirstRecord()
{
    WorkerFixture f;
    f.init();
    f.worker.setLogLevel(3);
    f.peer.importedRecords = {record().pid(1, 1).relationState(4),
                              record().pid(2, 1).relationState(4)};
    f.worker.doSync();
    QCOMPARE(
        f.log.take(),
        lines({"debug THRWorker::doSync() - stack count: 2", "debug THRWorker::dbLoadBranches()",
               loadBranches, "debug THRWorker::checkDovolenkaFond()", findFund,
               "info THRWorker::checkDovolenkaFond(): fid=0",
               "debug THRWorker::doSyncRecord(1.1 Novák Ján (S: 0, K: 0 from ) N-V: 1 Mar "
               "2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0)",
               "debug THRWorker::doSyncRecord(2.1 Novák Ján (S: 0, K: 0 from ) N-V: 1 Mar "
               "2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0)"}));
    // Without a fund nobody's balance is looked at, nor remembered.
    QCOMPARE(f.peer.fundId, quint16(0));
    QVERIFY(f.peer.fundRetry.isEmpty());
    // Once in each pass.
    f.worker.setLogLevel(0);
    f.peer.importedRecords = {record().pid(1, 1).relationState(4)};
    f.worker.doSync();
    QCOMPARE(f.log.take(), lines({loadBranches, findFund}));
}

void tst_DoSync::doSync_theFundThatItFindsHoldsForTheFirstRecord()
{
    WorkerFixture f;
    f.init();
    f.answer("SELECT fid FROM funds", 6);
    f.peer.importedRecords = {record().pid(1, 1).relationState(4),
                              record().pid(2, 1).relationState(4)};
    f.worker.doSync();
    const auto checking = [](uint pid) {
        return QStringList {
            QStringLiteral("sql exec SELECT COUNT(*) FROM funds_move WHERE type=3 AND "
                           "day = midnightFromTs(UNIX_TIMESTAMP()) AND fid = 6 AND "
                           "uid=(SELECT uid FROM people WHERE pid = %1);")
                .arg(pid),
            QStringLiteral("sql exec SELECT p.uid, calc, (SELECT COUNT(*) FROM atten a WHERE "
                           "a.uid = p.uid AND !a.lock AND a.ok = -1) uncalc FROM people p "
                           "WHERE pid = %1")
                .arg(pid)};
    };
    QCOMPARE(f.log.take(), lines({loadBranches, findFund}) + checking(11) + checking(21));
    QCOMPARE(f.peer.fundId, quint16(6));
    QCOMPARE(f.peer.fundRetry, (QHash<uint, bool> {{11u, true}, {21u, true}}));
}

void tst_DoSync::doSync_goesOnWithoutAFund()
{
    WorkerFixture f;
    f.init();
    f.fail("SELECT fid FROM funds", "1146", "no such table");
    f.listInPam(QStringLiteral("11"));
    f.peer.importedRecords = {record().pid(1, 1)};
    f.worker.doSync();
    const QStringList events = f.log.take();
    QCOMPARE(events.mid(0, 3),
             lines({loadBranches, findFund,
                    "critical THRWorker::checkDovolenkaFond() - SQL ERROR [1146]: "
                    "no such table (scripted)"}));
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO people ")).size(), 1);
    QCOMPARE(events.filter(QStringLiteral("funds_move")), QStringList());
    QVERIFY(f.peer.importedRecords.isEmpty());
}

void tst_DoSync::doSync_callsOnceForEachBranch()
{
    WorkerFixture f;
    f.init();
    f.peer.branchPeople = {{70u, lines({"5", "3", "5"})}, {80u, lines({"4"})}};
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    QStringList events = f.log.take();
    QCOMPARE(events.mid(0, 2), lines({loadBranches, findFund}));
    events = events.mid(2);
    // The order of the branches is that of the hash.
    events.sort();
    QCOMPARE(events, (QStringList {addingToBranch(70, "5,3,5"), addingToBranch(80, "4")}));
    QVERIFY(f.peer.branchPeople.isEmpty());
}

void tst_DoSync::doSync_collectsOverAllRecords()
{
    WorkerFixture f;
    f.init();
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withRows({QStringLiteral("bid"), QStringLiteral("number")}, {{70, 7}});
    // Found uids last as long as the process.
    f.answer("exec SELECT uid FROM people WHERE pid = 990311 ", 31);
    f.answer("exec SELECT uid FROM people WHERE pid = 990321 ", 32);
    f.listInPam(QStringLiteral("990311,990321"));
    f.peer.importedRecords = {record().pid(99032, 1).branch(7), record().pid(99031, 1).branch(7)};
    f.worker.doSync();
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO brape")),
             QStringList {addingToBranch(70, "32,31")});
    // After the last record.
    QCOMPARE(events.last(), addingToBranch(70, "32,31"));
    QVERIFY(f.peer.branchPeople.isEmpty());
    // What failed to change a row is not queued again.
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    QCOMPARE(f.log.take(), lines({loadBranches, findFund}));
}

void tst_DoSync::doSync_skipsEmptyLists()
{
    WorkerFixture f;
    f.init();
    f.peer.branchesRepo->logLevel = 1;
    f.peer.branchPeople.insert(70, QStringList());
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    QCOMPARE(f.log.take(), lines({loadBranches, findFund}));
    QVERIFY(f.peer.branchPeople.isEmpty());
}

void tst_DoSync::doSync_cutsTheBranchTo16Bits()
{
    WorkerFixture f;
    f.init();
    f.peer.branchesRepo->logLevel = 1;
    f.peer.importedRecords = {record().relationState(4)};
    f.peer.branchPeople.insert(65536u + 70u, lines({"5"}));
    f.worker.doSync();
    QCOMPARE(f.log.take(),
             lines({loadBranches, findFund, "info BranchesRepository::addPeopleToBranch(70, '5')"})
                 << addingToBranch(70, "5"));
    // Nothing is left of this one, and a branch of 0 is refused.
    f.peer.importedRecords = {record().relationState(4)};
    f.peer.branchPeople.insert(65536u, lines({"5"}));
    f.worker.doSync();
    QCOMPARE(f.log.take(),
             lines({loadBranches, findFund, "info BranchesRepository::addPeopleToBranch(0, '5')"}));
    QVERIFY(f.peer.branchPeople.isEmpty());
}

void tst_DoSync::doSync_failedMembershipIsNotLookedAt()
{
    WorkerFixture f;
    f.init();
    f.fail("INSERT INTO brape");
    f.peer.branchPeople = {{70u, lines({"5"})}, {80u, lines({"4"})}};
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO brape")).size(), 2);
    QCOMPARE(events.filter(QStringLiteral("critical ")),
             lines({"critical BranchesRepository::addPeopleToBranch - ERROR: lock wait (scripted)",
                    "critical BranchesRepository::addPeopleToBranch - ERROR: lock wait "
                    "(scripted)"}));
    QCOMPARE(events.size(), 6);
    QVERIFY(f.peer.branchPeople.isEmpty());
}

void tst_DoSync::doSync_withoutRecordsKeepsTheQueue()
{
    WorkerFixture f;
    f.init();
    f.peer.branchPeople.insert(70, lines({"5"}));
    f.worker.doSync();
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(f.peer.branchPeople.value(70), lines({"5"}));
}

void tst_DoSync::doSync_withoutRecordsIsSilent()
{
    WorkerFixture f;
    f.worker.setLogLevel(3);
    f.worker.doSync();
    QCOMPARE(f.log.take(), QStringList());
}

QTEST_GUILESS_MAIN(tst_DoSync)
#include "tst_dosync.moc"
