// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The walk over the records of a pass, and the memberships that it has queued.
#include "repository/branchesrepository.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

const char loadBranches[] = "sql exec SELECT bid, number FROM branches WHERE number IS NOT NULL;";

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
    void doSync_aFailedRecordStopsNothing();
    void doSync_loadsTheBranchesBeforeTheFirstRecord();
    void doSync_goesOnWithoutBranches();
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
                    "warning THRWorker::dbAddPerson(1.1) - Testing mode is active, "
                    "person not really add!",
                    "warning THRWorker::dbAddPerson(2.1) - Testing mode is active, "
                    "person not really add!"}));
    QVERIFY(f.peer.importedRecords.isEmpty());
}

void tst_DoSync::doSync_aFailedRecordStopsNothing()
{
    WorkerFixture f;
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
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withError(QStringLiteral("1146"), QStringLiteral("no such table"));
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

void tst_DoSync::doSync_callsOnceForEachBranch()
{
    WorkerFixture f;
    f.init();
    f.peer.branchPeople = {{70u, lines({"5", "3", "5"})}, {80u, lines({"4"})}};
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    QStringList events = f.log.take();
    QCOMPARE(events.takeFirst(), QString::fromLatin1(loadBranches));
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
    f.script.on(QStringLiteral("exec SELECT uid FROM people WHERE pid = 990311 "))
        .withRows({QStringLiteral("uid")}, {{31}});
    f.script.on(QStringLiteral("exec SELECT uid FROM people WHERE pid = 990321 "))
        .withRows({QStringLiteral("uid")}, {{32}});
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
    QCOMPARE(f.log.take(), lines({loadBranches}));
}

void tst_DoSync::doSync_skipsEmptyLists()
{
    WorkerFixture f;
    f.init();
    f.peer.branchesRepo->logLevel = 1;
    f.peer.branchPeople.insert(70, QStringList());
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    QCOMPARE(f.log.take(), lines({loadBranches}));
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
             lines({loadBranches, "info BranchesRepository::addPeopleToBranch(70, '5')"})
                 << addingToBranch(70, "5"));
    // Nothing is left of this one, and a branch of 0 is refused.
    f.peer.importedRecords = {record().relationState(4)};
    f.peer.branchPeople.insert(65536u, lines({"5"}));
    f.worker.doSync();
    QCOMPARE(f.log.take(),
             lines({loadBranches, "info BranchesRepository::addPeopleToBranch(0, '5')"}));
    QVERIFY(f.peer.branchPeople.isEmpty());
}

void tst_DoSync::doSync_failedMembershipIsNotLookedAt()
{
    WorkerFixture f;
    f.init();
    f.script.on(QStringLiteral("INSERT INTO brape"))
        .withError(QStringLiteral("1205"), QStringLiteral("lock wait"));
    f.peer.branchPeople = {{70u, lines({"5"})}, {80u, lines({"4"})}};
    f.peer.importedRecords = {record().relationState(4)};
    f.worker.doSync();
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(QStringLiteral("INSERT INTO brape")).size(), 2);
    QCOMPARE(events.filter(QStringLiteral("critical ")),
             lines({"critical BranchesRepository::addPeopleToBranch - ERROR: lock wait (scripted)",
                    "critical BranchesRepository::addPeopleToBranch - ERROR: lock wait "
                    "(scripted)"}));
    QCOMPARE(events.size(), 5);
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
