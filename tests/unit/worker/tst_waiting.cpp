// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When branch and calendar of a record are brought into line, and which records wait for it.
#include "support/localseconds.h"
#include "support/workerfixture.h"

#include <QtTest>

#include <algorithm>
#include <limits>

namespace {

const char noBranch[] = "warning THRWorker: Branch '7' NOT FOUND for employee: '1234.1 Novák Ján "
                        "(S: 7, K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  "
                        "DOV: 0 NOC: 0'";
const char askingUid[] = "sql exec SELECT uid FROM people WHERE pid = 12341 LIMIT 1;";
const char askingMember[] = "sql exec SELECT COUNT(*) FROM brape WHERE bid = 70 AND "
                            "uid = (SELECT uid FROM people WHERE pid = 12341 LIMIT 1);";

RecordBuilder employee()
{
    return record().branch(7);
}

/// A worker to whose database the employee is known as the file states him, so that nothing is to
/// be done but branch and calendar. His uid is not known; nothing stands in the way of queueing it.
class Waiting : public WorkerFixture
{
public:
    /// The employee is known with these data; the last file said the same unless told otherwise.
    explicit Waiting(const EmployeeRecord &row = employee())
    {
        init();
        known(row);
        stated(row);
    }

    /// The last file said something else of the employee, in a field that the row does not hold.
    void statedOther() { stated(employee().balance(9)); }
    void branchAppears() { peer.branches.insert(7, 70); }
    void member() { answer("SELECT COUNT(*) FROM brape", 1); }
    using WorkerFixture::sync;
    QStringList sync() { return sync(employee()); }
    /// These records wait, and no others.
    bool waits(const QVector<EmployeeRecord> &records) const
    {
        const QVector<EmployeeRecord> waiting = peer.waitingRecords.toVector();
        return waiting.size() == records.size()
            && std::is_permutation(waiting.begin(), waiting.end(), records.begin());
    }
};

} // namespace

Q_DECLARE_METATYPE(EmployeeRecord)

class tst_Waiting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assignment_runsWhen_data();
    void assignment_runsWhen();
    void assignment_runsForNoBranchNumber_data() { assignment_runsWhen_data(); }
    void assignment_runsForNoBranchNumber();
    void assignment_runsOnlyForCurrent_data();
    void assignment_runsOnlyForCurrent();
    void assignment_runsInTestMode();
    void assignment_runsThoughTheAddFailed();
    void assignment_runsForEachLineOfAPerson();

    void failedRecord_waits();
    void failedRecord_waitsOnce();
    void failedForcedRecord_waits();
    void failedRecord_isAppendedInOrder();
    void memberWithoutCalendar_waitsForever();
    void succeededRecord_doesNotWait();

    void waitingRecord_isRetriedWhenItComesAgain();
    void waitingRecord_isNotRetriedByItself();
    void waitingRecord_isFoundOnlyIfWhollyEqual_data();
    void waitingRecord_isFoundOnlyIfWhollyEqual();
    void waitingRecord_withoutABalanceIsNeverFound();
    void waitingRecords_equalOnesAllGo();
    void changedPerson_leavesTheOldEntryForGood();
    void changedPerson_newRecordGoesItsOwnWay();
    void endedPerson_leavesTheOldEntryForGood();
    void waitingRecords_areReportedByThePass();
};

// When it runs

void tst_Waiting::assignment_runsWhen_data()
{
    QTest::addColumn<bool>("forced");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<bool>("waiting");
    for (int bits = 0; bits < 8; ++bits) {
        const QString name = QStringLiteral("%1%2%3").arg(
            (bits & 1) ? QStringLiteral("forced ") : QString(),
            (bits & 2) ? QStringLiteral("changed ") : QString(),
            (bits & 4) ? QStringLiteral("waiting") : QString());
        QTest::newRow(bits == 0 ? "none" : qPrintable(name.trimmed()))
            << ((bits & 1) != 0) << ((bits & 2) != 0) << ((bits & 4) != 0);
    }
}

void tst_Waiting::assignment_runsWhen()
{
    QFETCH(bool, forced);
    QFETCH(bool, changed);
    QFETCH(bool, waiting);
    Waiting f;
    f.branchAppears();
    f.peer.forceSync = forced;
    if (changed)
        f.statedOther();
    if (waiting)
        f.peer.waitingRecords = {employee()};
    const bool runs = forced || changed || waiting;
    QCOMPARE(f.sync(), runs ? lines({askingUid, askingMember}) : QStringList());
    QCOMPARE(f.peer.branchPeople.value(70), runs ? lines({"0"}) : QStringList());
    QVERIFY(f.waits({}));
}

void tst_Waiting::assignment_runsForNoBranchNumber()
{
    QFETCH(bool, forced);
    QFETCH(bool, changed);
    QFETCH(bool, waiting);
    Waiting f(record());
    f.worker.setLogLevel(3);
    f.peer.branches.insert(0, 70); // a branch whose number is none
    f.peer.forceSync = forced;
    if (changed)
        f.stated(record().balance(9));
    const QVector<EmployeeRecord> before = waiting ? QVector<EmployeeRecord> {record()}
                                                   : QVector<EmployeeRecord>();
    if (waiting)
        f.peer.waitingRecords = {record()};
    QCOMPARE(f.sync(record()).filter(QStringLiteral("doSyncRecord")).size(), 1);
    QCOMPARE(f.peer.branchPeople.size(), 0);
    QVERIFY(f.waits(before)); // neither added nor removed
}

void tst_Waiting::assignment_runsOnlyForCurrent_data()
{
    QTest::addColumn<EmployeeRecord>("given");
    QTest::addColumn<bool>("current");
    const QDate first(2015, 3, 1);
    QTest::newRow("no end") << employee().build() << true;
    QTest::newRow("ends tomorrow")
        << employee().employed(first, today().addDays(1)).build() << true;
    QTest::newRow("ends today") << employee().employed(first, today()).build() << true;
    QTest::newRow("ended yesterday")
        << employee().employed(first, today().addDays(-1)).build() << false;
    QTest::newRow("state 3") << employee().relationState(3).build() << true;
    QTest::newRow("state 4") << employee().relationState(4).build() << false;
}

void tst_Waiting::assignment_runsOnlyForCurrent()
{
    QFETCH(EmployeeRecord, given);
    QFETCH(bool, current);
    Waiting f(given);
    f.branchAppears();
    // Every reason at once.
    f.peer.forceSync = true;
    f.stated(employee().balance(9));
    f.peer.waitingRecords = {given};
    QCOMPARE(f.sync(given), current ? lines({askingUid, askingMember}) : QStringList());
    QVERIFY(f.waits(current ? QVector<EmployeeRecord>() : QVector<EmployeeRecord> {given}));
}

void tst_Waiting::assignment_runsInTestMode()
{
    Waiting f;
    f.worker.setTestMode(true);
    f.branchAppears();
    f.statedOther();
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QCOMPARE(f.peer.branchPeople.value(70), lines({"0"}));
}

void tst_Waiting::assignment_runsThoughTheAddFailed()
{
    WorkerFixture f;
    f.init();
    f.peer.branches.insert(7, 70);
    f.fail("INSERT INTO people ", "1064", "syntax");
    f.worker.doSyncRecord(employee());
    QStringList events = f.log.take();
    QVERIFY(events.takeFirst().startsWith(QStringLiteral("sql exec INSERT INTO people ")));
    QCOMPARE(events,
             lines({"critical THRWorker::dbAddPerson(1234.1) - SQL ERROR: syntax (scripted)",
                    askingUid, askingMember}));
}

void tst_Waiting::assignment_runsForEachLineOfAPerson()
{
    Waiting f;
    f.branchAppears();
    f.sync(employee().balance(1));
    f.sync(employee().balance(2));
    f.sync(employee().balance(2)); // says the same as the line before
    QCOMPARE(f.peer.branchPeople.value(70), lines({"0", "0"}));
}

// Who waits

void tst_Waiting::failedRecord_waits()
{
    Waiting f;
    f.statedOther();
    QCOMPARE(f.sync(), lines({noBranch}));
    QVERIFY(f.waits({employee()}));
}

void tst_Waiting::failedRecord_waitsOnce()
{
    Waiting f;
    f.statedOther();
    f.sync();
    QCOMPARE(f.sync(), lines({noBranch}));
    QVERIFY(f.waits({employee()}));
    f.peer.forceSync = true;
    QCOMPARE(f.sync(), lines({noBranch}));
    QVERIFY(f.waits({employee()}));
}

void tst_Waiting::failedForcedRecord_waits()
{
    Waiting f;
    f.peer.forceSync = true;
    QCOMPARE(f.sync(), lines({noBranch}));
    QVERIFY(f.waits({employee()}));
}

void tst_Waiting::failedRecord_isAppendedInOrder()
{
    Waiting f;
    const EmployeeRecord other = record().pid(99, 1).branch(8);
    f.peer.waitingRecords = {other};
    f.statedOther();
    QCOMPARE(f.sync(), lines({noBranch}));
    QVERIFY(f.waits({other, employee()}));
}

void tst_Waiting::memberWithoutCalendar_waitsForever()
{
    Waiting f;
    f.branchAppears();
    f.member();
    f.statedOther();
    for (int pass = 1; pass <= 3; ++pass) {
        // Nothing is needed, and yet it is asked for in every pass.
        QCOMPARE(f.sync(), lines({askingUid, askingMember}));
        QVERIFY(f.waits({employee()}));
        QVERIFY(f.peer.branchPeople.isEmpty());
    }
}

void tst_Waiting::succeededRecord_doesNotWait()
{
    Waiting f;
    f.branchAppears();
    f.statedOther();
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QVERIFY(f.waits({}));
    QCOMPARE(f.sync(), QStringList());
}

// What becomes of those who wait

void tst_Waiting::waitingRecord_isRetriedWhenItComesAgain()
{
    Waiting f;
    f.statedOther();
    f.sync();
    f.branchAppears();
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QCOMPARE(f.peer.branchPeople.value(70), lines({"0"}));
    QVERIFY(f.waits({}));
    QCOMPARE(f.sync(), QStringList());
}

void tst_Waiting::waitingRecord_isNotRetriedByItself()
{
    Waiting f;
    const EmployeeRecord other = record().pid(99, 1).branch(7);
    f.branchAppears();
    f.peer.waitingRecords = {other};
    f.peer.forceSync = true;
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QVERIFY(f.waits({other}));
    // Nor by a pass over a file that does not name it.
    f.peer.forceSync = false;
    f.peer.importedRecords = {employee()};
    f.worker.doSync();
    QVERIFY(f.waits({other}));
    QCOMPARE(f.log.take().filter(QStringLiteral("99")), QStringList());
}

void tst_Waiting::waitingRecord_isFoundOnlyIfWhollyEqual_data()
{
    QTest::addColumn<EmployeeRecord>("waiting");
    const QDate first(2015, 3, 1);
    const auto add = [](const char *field, const EmployeeRecord &waiting) {
        QTest::newRow(field) << waiting;
    };
    // Of the same pid.
    add("osobniCislo, poradoveCisloPP", employee().pid(123, 41));
    add("titul", employee().titles(QStringLiteral("Ing."), QString()));
    add("jmeno", employee().name(QStringLiteral("Jan"), QStringLiteral("Novák")));
    add("prijmeni", employee().name(QStringLiteral("Ján"), QStringLiteral("Nový")));
    add("titulZa", employee().titles(QString(), QStringLiteral("PhD.")));
    add("telefon", employee().phone(QStringLiteral("1")));
    add("datumNastupu", employee().employed(first.addDays(1)));
    add("datumVystupu", employee().employed(first, today()));
    add("stredisko", employee().branch(8));
    add("strediskoPopis", employee().branch(7, QStringLiteral("Sklad")));
    add("calendarID", employee().calendar(1));
    add("kalendarPlatnostOd", employee().calendar(0, first));
    add("typPracovnihoPomeru", employee().tpp(51));
    add("stavPracovnihoPomeru", employee().relationState(1));
    add("evidencniStav", employee().es(1));
    add("dovolenaZustatek", employee().balance(0.5));
    add("nadOsCis", employee().supervisor(1));
    add("rsBegin", employee().interval(first, QDate(), QString()));
    add("rsEnd", employee().interval(QDate(), first, QString()));
    add("rsText", employee().interval(QDate(), QDate(), QStringLiteral("RD")));
}

void tst_Waiting::waitingRecord_isFoundOnlyIfWhollyEqual()
{
    QFETCH(EmployeeRecord, waiting);
    Waiting f;
    f.branchAppears();
    f.peer.waitingRecords = {waiting};
    QCOMPARE(f.sync(), QStringList());
    QVERIFY(f.waits({waiting}));
}

void tst_Waiting::waitingRecord_withoutABalanceIsNeverFound()
{
    // What is no number equals nothing, itself included: changed in each pass, and one more entry.
    const EmployeeRecord given = employee().balance(std::numeric_limits<double>::quiet_NaN());
    Waiting f;
    for (int pass = 1; pass <= 3; ++pass) {
        QCOMPARE(f.sync(given).size(), 1);
        QCOMPARE(f.peer.waitingRecords.size(), pass);
    }
    f.branchAppears();
    QCOMPARE(f.sync(given), lines({askingUid, askingMember}));
    QCOMPARE(f.peer.waitingRecords.size(), 3);
}

void tst_Waiting::waitingRecords_equalOnesAllGo()
{
    Waiting f;
    const EmployeeRecord other = record().pid(99, 1).branch(7);
    const EmployeeRecord older = employee().balance(1);
    f.peer.waitingRecords = {employee(), other, employee(), older, employee()};
    QCOMPARE(f.sync(), lines({noBranch}));
    QCOMPARE(f.peer.waitingRecords.size(), 5);
    f.branchAppears();
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QVERIFY(f.waits({other, older}));
}

void tst_Waiting::changedPerson_leavesTheOldEntryForGood()
{
    Waiting f;
    const EmployeeRecord older = employee().balance(1);
    f.sync(older);
    QVERIFY(f.waits({older}));
    QCOMPARE(f.sync(), lines({noBranch}));
    QVERIFY(f.waits({older, employee()}));

    f.branchAppears();
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QVERIFY(f.waits({older}));
    f.peer.forceSync = true;
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QVERIFY(f.waits({older}));
    // Unless the person becomes again what he was.
    f.peer.forceSync = false;
    QCOMPARE(f.sync(older), lines({askingUid, askingMember}));
    QVERIFY(f.waits({}));
}

void tst_Waiting::changedPerson_newRecordGoesItsOwnWay()
{
    Waiting f;
    const EmployeeRecord older = employee().balance(1);
    f.sync(older);
    f.branchAppears();
    QCOMPARE(f.sync(), lines({askingUid, askingMember}));
    QVERIFY(f.waits({older}));
}

void tst_Waiting::endedPerson_leavesTheOldEntryForGood()
{
    Waiting f;
    f.statedOther();
    f.sync();
    f.branchAppears();
    const EmployeeRecord ended = employee().relationState(4);
    QCOMPARE(f.sync(ended), QStringList());
    QVERIFY(f.waits({employee()}));
}

void tst_Waiting::waitingRecords_areReportedByThePass()
{
    WorkerFixture f;
    f.init();
    f.worker.setSyncInterval(1);
    f.worker.setLogLevel(1);
    const QString end = QStringLiteral("END synchronization");
    f.writeExport(
        {employee().line(), record().pid(2, 1).branch(7).line(), record().pid(3, 1).line()});
    f.tick();
    QCOMPARE(f.log.takeMatching({end}),
             lines({"debug THRWorker: END synchronization #1 (waiting records: 2)"}));
    f.tick();
    QCOMPARE(f.log.takeMatching({end}),
             lines({"debug THRWorker: END synchronization #2 (waiting records: 2)"}));
    // The branch appears, for one of them too late.
    f.script.on(QStringLiteral("SELECT bid, number"))
        .withRows({QStringLiteral("bid"), QStringLiteral("number")}, {{70, 7}});
    f.writeExport({employee().line()});
    f.tick();
    QCOMPARE(f.log.takeMatching({end, QStringLiteral("INSERT INTO brape")}),
             lines({"sql exec INSERT INTO brape (bid, uid, since) SELECT 70 bid, uid, "
                    "UNIX_TIMESTAMP() since FROM people WHERE uid IN(0) "
                    "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()",
                    "debug THRWorker: END synchronization #3 (waiting records: 1)"}));
    f.log.clear();
}

QTEST_GUILESS_MAIN(tst_Waiting)
#include "tst_waiting.moc"
