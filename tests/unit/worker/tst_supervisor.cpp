// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The supervisor of an employee: statements, transaction, log lines and results.
#include "support/loglevels.h"
#include "support/workerfixture.h"

#include <QtTest>

namespace {

// The administrator 9 has the personal number 77, the person is uid 42.
const char asking[] = "sql exec SELECT aid FROM admins WHERE personalNumber = 77";
const char resetting[] = "sql exec UPDATE admins_people SET request =0 WHERE uid=42 AND aid != 9";
const char setting[] = "sql exec INSERT INTO admins_people (aid, uid, request) VALUES(9, 42, 1) "
                       "ON DUPLICATE KEY UPDATE request=1";

const char adminFailure[] = "critical THRWorker::dbGetAidByOsCis() - SQL ERROR [1205]: "
                            "lock wait (scripted)\n"
                            " SQL: SELECT aid FROM admins WHERE personalNumber = 77";
const char personFailure[] = "critical THRWorker::dbGetUidByPid() - SQL ERROR [1205]: "
                             "lock wait (scripted)";
const char resetFailure[] = "critical THRWorker::dbResetAdminPeopleRequest() - SQL ERROR [1205]: "
                            "lock wait (scripted)\n"
                            " SQL: UPDATE admins_people SET request =0 WHERE uid=42 AND aid != 9";
const char setFailure[] = "critical THRWorker::dbSetAdminPeopleRequest() - SQL ERROR [1205]: "
                          "lock wait (scripted)\n"
                          " SQL: INSERT INTO admins_people (aid, uid, request) VALUES(9, 42, 1) "
                          "ON DUPLICATE KEY UPDATE request=1";

const char noAdmin[] = "warning THRWorker - admin s osobnym cislom 77 nebol najdeny!";
const char notMarked[] = "warning THRWorker::processNadOsCis() - (Re)Set Admin People Request "
                         "FAilED!";

// The cache of uids lasts as long as the process: each function and row that comes this far has a
// person of its own.

QString askingUid(uint pid)
{
    return QStringLiteral("sql exec SELECT uid FROM people WHERE pid = %1 LIMIT 1;").arg(pid);
}

QString noPerson(uint pid)
{
    return QStringLiteral("warning THRWorker - zamestnanec s osobnym cislom %1 nebol najdeny!")
        .arg(pid);
}

/// Administrator and person are asked for, then comes the rest.
QStringList afterAsking(uint pid, const QStringList &rest)
{
    return lines({asking}) << askingUid(pid) << rest;
}

EmployeeRecord supervised(uint osobniCislo)
{
    return record().pid(osobniCislo, 1).supervisor(77);
}

/// Administrator and person are there; one other administrator loses the mark.
class Supervisor : public WorkerFixture
{
public:
    Supervisor()
    {
        answer("SELECT aid", 9);
        answer("SELECT uid", 42);
        script.on(QStringLiteral("UPDATE admins_people")).withAffected(1);
        script.on(QStringLiteral("INSERT INTO admins_people")).withAffected(1);
    }

    /// Rows that a driver would tell of come with the failure: they must not count.
    void fail(const char *call)
    {
        script.on(QString::fromLatin1(call))
            .withRows({QStringLiteral("id")}, {{9}})
            .withAffected(1)
            .withError(QStringLiteral("1205"), QStringLiteral("lock wait"));
    }
};

} // namespace

class tst_Supervisor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void processNadOsCis_levels_data() { addLevels(); }
    void processNadOsCis_levels();
    void processNadOsCis_noneNamedTouchesNothing_data() { addLevels(); }
    void processNadOsCis_noneNamedTouchesNothing();
    void processNadOsCis_unknownAdministratorTouchesNothing();
    void processNadOsCis_failedSearchForTheAdministratorTouchesNothing();
    void processNadOsCis_unknownPersonIsNamedByPid();
    void processNadOsCis_failedSearchForThePersonTouchesNothing();
    void processNadOsCis_knownUidIsNotAskedAgain();
    void processNadOsCis_unchangedSupervisorIsCommitted();
    void processNadOsCis_failedResetIsRolledBack();
    void processNadOsCis_failedSetAfterAnEmptyResetIsRolledBack();
    void processNadOsCis_failedSetAfterAResetIsCommitted();
    void processNadOsCis_theSumDecides_data();
    void processNadOsCis_theSumDecides();
    void processNadOsCis_failedBeginIsNotLookedAt();
    void processNadOsCis_failedCommitIsNotLookedAt();
    void processNadOsCis_failedRollbackIsNotLookedAt();
    void processNadOsCis_writesInTestMode();

    void doSyncRecord_goesOnWhateverBecameOfTheSupervisor_data();
    void doSyncRecord_goesOnWhateverBecameOfTheSupervisor();

    void dbGetAidByOsCis_trace_data() { addLevels(); }
    void dbGetAidByOsCis_trace();
    void dbGetAidByOsCis_result_data();
    void dbGetAidByOsCis_result();
    void dbGetAidByOsCis_failure_data() { addLevels(); }
    void dbGetAidByOsCis_failure();

    void dbResetAdminPeopleRequest_trace_data() { addLevels(); }
    void dbResetAdminPeopleRequest_trace();
    void dbResetAdminPeopleRequest_result_data();
    void dbResetAdminPeopleRequest_result();
    void dbResetAdminPeopleRequest_failure_data() { addLevels(); }
    void dbResetAdminPeopleRequest_failure();

    void dbSetAdminPeopleRequest_trace_data() { addLevels(); }
    void dbSetAdminPeopleRequest_trace();
    void dbSetAdminPeopleRequest_result_data();
    void dbSetAdminPeopleRequest_result();
    void dbSetAdminPeopleRequest_failure_data() { addLevels(); }
    void dbSetAdminPeopleRequest_failure();
};

// One employee

void tst_Supervisor::processNadOsCis_levels()
{
    QFETCH(int, level);
    const uint number = 88000 + static_cast<uint>(level);
    const uint pid = number * 10 + 1;
    Supervisor f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.processNadOsCis(supervised(number));
    QCOMPARE(
        f.log.take(),
        atLevel(
            level,
            QStringList {
                QStringLiteral("1 debug THRWorker::processNadOsCis(%1.1, NOC: 77)").arg(number),
                QStringLiteral("2 debug THRWorker::dbGetAidByOsCis(uid: 77)"), str(asking),
                QStringLiteral("1 debug THRWorker::dbGetAidByOsCis(uid: 77): 9"),
                QStringLiteral("2 debug THRWorker::dbGetUidByPid(%1)").arg(pid), askingUid(pid)}
                + lines({"sql begin",
                         "2 debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42)", resetting,
                         "2 debug THRWorker::dbResetAdminPeopleRequest - query 'UPDATE "
                         "admins_people SET request =0 WHERE uid=42 AND aid != 9' - affected "
                         "rows: 1",
                         "1 debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42) - "
                         "affected: 1",
                         "2 debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42)", setting,
                         "2 debug THRWorker - query 'INSERT INTO admins_people (aid, uid, "
                         "request) VALUES(9, 42, 1) ON DUPLICATE KEY UPDATE request=1' - "
                         "affected rows: 1",
                         "1 debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42) - "
                         "affected: 1",
                         "sql commit"})));
}

void tst_Supervisor::processNadOsCis_noneNamedTouchesNothing()
{
    QFETCH(int, level);
    Supervisor f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    f.worker.processNadOsCis(record().pid(88010, 1).supervisor(0));
    QCOMPARE(f.log.take(), atLevel(level, {"1 debug THRWorker::processNadOsCis(88010.1, NOC: 0)"}));
}

void tst_Supervisor::processNadOsCis_unknownAdministratorTouchesNothing()
{
    Supervisor f;
    f.script.on(QStringLiteral("SELECT aid")).withRows({QStringLiteral("aid")}, {});
    f.worker.processNadOsCis(supervised(88011));
    QCOMPARE(f.log.take(), lines({asking, noAdmin}));

    f.worker.setLogLevel(1);
    f.worker.processNadOsCis(record().pid(88011, 1).supervisor(4294967295u));
    QCOMPARE(f.log.take(),
             lines({"debug THRWorker::processNadOsCis(88011.1, NOC: 4294967295)",
                    "sql exec SELECT aid FROM admins WHERE personalNumber = 4294967295",
                    "debug THRWorker::dbGetAidByOsCis(uid: 4294967295): 0",
                    "warning THRWorker - admin s osobnym cislom 4294967295 nebol najdeny!"}));
}

void tst_Supervisor::processNadOsCis_failedSearchForTheAdministratorTouchesNothing()
{
    Supervisor f;
    f.fail("SELECT aid");
    f.worker.processNadOsCis(supervised(88012));
    QCOMPARE(f.log.take(), lines({asking, adminFailure, noAdmin}));
}

void tst_Supervisor::processNadOsCis_unknownPersonIsNamedByPid()
{
    Supervisor f;
    f.script.on(QStringLiteral("SELECT uid")).withRows({QStringLiteral("uid")}, {});
    f.worker.processNadOsCis(record().pid(88013, 20).supervisor(77));
    QCOMPARE(f.log.take(),
             lines({asking, "sql exec SELECT uid FROM people WHERE pid = 8801320 LIMIT 1;",
                    "warning THRWorker - zamestnanec s osobnym cislom 8801320 nebol najdeny!"}));
}

void tst_Supervisor::processNadOsCis_failedSearchForThePersonTouchesNothing()
{
    Supervisor f;
    f.fail("SELECT uid");
    f.worker.processNadOsCis(supervised(88014));
    QCOMPARE(f.log.take(), afterAsking(880141, lines({personFailure})) << noPerson(880141));
}

void tst_Supervisor::processNadOsCis_knownUidIsNotAskedAgain()
{
    Supervisor f;
    f.worker.processNadOsCis(supervised(88015));
    f.log.clear();
    f.fail("SELECT uid");
    f.worker.processNadOsCis(supervised(88015));
    QCOMPARE(f.log.take(), lines({asking, "sql begin", resetting, setting, "sql commit"}));
}

void tst_Supervisor::processNadOsCis_unchangedSupervisorIsCommitted()
{
    Supervisor f;
    f.script.on(QStringLiteral("admins_people")).withAffected(0);
    f.worker.processNadOsCis(supervised(88016));
    QCOMPARE(f.log.take(),
             afterAsking(880161, lines({"sql begin", resetting, setting, "sql commit"})));
}

void tst_Supervisor::processNadOsCis_failedResetIsRolledBack()
{
    Supervisor f;
    f.fail("UPDATE admins_people");
    f.worker.processNadOsCis(supervised(88017));
    QCOMPARE(f.log.take(),
             afterAsking(880171,
                         lines({"sql begin", resetting, resetFailure, "sql rollback", notMarked})));
}

void tst_Supervisor::processNadOsCis_failedSetAfterAnEmptyResetIsRolledBack()
{
    Supervisor f;
    f.script.on(QStringLiteral("UPDATE admins_people")).withAffected(0);
    f.fail("INSERT INTO admins_people");
    f.worker.processNadOsCis(supervised(88018));
    QCOMPARE(f.log.take(),
             afterAsking(
                 880181,
                 lines({"sql begin", resetting, setting, setFailure, "sql rollback", notMarked})));
}

void tst_Supervisor::processNadOsCis_failedSetAfterAResetIsCommitted()
{
    Supervisor f;
    f.fail("INSERT INTO admins_people");
    f.worker.processNadOsCis(supervised(88019));
    QCOMPARE(
        f.log.take(),
        afterAsking(880191, lines({"sql begin", resetting, setting, setFailure, "sql commit"})));
}

void tst_Supervisor::processNadOsCis_theSumDecides_data()
{
    QTest::addColumn<uint>("osobniCislo");
    QTest::addColumn<int>("reset");
    QTest::addColumn<int>("set");
    QTest::addColumn<QStringList>("fromTheReset");
    const QStringList committed = lines({resetting, setting, "sql commit"});
    const QStringList rolledBack = lines({resetting, setting, "sql rollback", notMarked});
    QTest::newRow("nothing changed") << 88021u << 0 << 0 << committed;
    QTest::newRow("the first supervisor") << 88022u << 0 << 1 << committed;
    QTest::newRow("the mark set in a row") << 88023u << 0 << 2 << committed;
    QTest::newRow("the others' marks taken") << 88024u << 3 << 0 << committed;
    QTest::newRow("rows of the set unknown, of the reset none") << 88025u << 0 << -1 << rolledBack;
    QTest::newRow("rows of the set unknown, of the reset one") << 88026u << 1 << -1 << committed;
    QTest::newRow("rows of the reset unknown")
        << 88027u << -1 << 2 << lines({resetting, "sql rollback", notMarked});
}

void tst_Supervisor::processNadOsCis_theSumDecides()
{
    QFETCH(uint, osobniCislo);
    QFETCH(int, reset);
    QFETCH(int, set);
    QFETCH(QStringList, fromTheReset);
    Supervisor f;
    f.script.on(QStringLiteral("UPDATE admins_people")).withAffected(reset);
    f.script.on(QStringLiteral("INSERT INTO admins_people")).withAffected(set);
    f.worker.processNadOsCis(supervised(osobniCislo));
    QCOMPARE(f.log.take(), afterAsking(osobniCislo * 10 + 1, lines({"sql begin"}) << fromTheReset));
}

void tst_Supervisor::processNadOsCis_failedBeginIsNotLookedAt()
{
    Supervisor f;
    f.fail("begin");
    f.worker.processNadOsCis(supervised(88030));
    QCOMPARE(f.log.take(),
             afterAsking(880301, lines({"sql begin", resetting, setting, "sql commit"})));
}

void tst_Supervisor::processNadOsCis_failedCommitIsNotLookedAt()
{
    Supervisor f;
    f.fail("commit");
    f.worker.processNadOsCis(supervised(88031));
    QCOMPARE(f.log.take(),
             afterAsking(880311, lines({"sql begin", resetting, setting, "sql commit"})));
}

void tst_Supervisor::processNadOsCis_failedRollbackIsNotLookedAt()
{
    Supervisor f;
    f.fail("UPDATE admins_people");
    f.fail("rollback");
    f.worker.processNadOsCis(supervised(88032));
    QCOMPARE(f.log.take(),
             afterAsking(880321,
                         lines({"sql begin", resetting, resetFailure, "sql rollback", notMarked})));
}

void tst_Supervisor::processNadOsCis_writesInTestMode()
{
    Supervisor f;
    f.worker.setTestMode(true);
    f.worker.processNadOsCis(supervised(88033));
    QCOMPARE(f.log.take(),
             afterAsking(880331, lines({"sql begin", resetting, setting, "sql commit"})));

    f.worker.setLogLevel(1);
    f.worker.processNadOsCis(supervised(88033));
    QCOMPARE(
        f.log.take(),
        lines({"debug THRWorker::processNadOsCis(88033.1, NOC: 77)", asking,
               "debug THRWorker::dbGetAidByOsCis(uid: 77): 9", "sql begin", resetting,
               "debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42) - affected: 1", setting,
               "debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42) - affected: 1",
               "sql commit"}));
}

// What the record's other steps learn of it

void tst_Supervisor::doSyncRecord_goesOnWhateverBecameOfTheSupervisor_data()
{
    QTest::addColumn<uint>("osobniCislo");
    QTest::addColumn<QString>("failing");
    QTest::addColumn<QStringList>("events");
    QTest::newRow("marked") << 88041u << QString()
                            << (afterAsking(
                                   880411, lines({"sql begin", resetting, setting, "sql commit"})));
    QTest::newRow("administrator")
        << 88042u << QStringLiteral("SELECT aid") << lines({asking, adminFailure, noAdmin});
    QTest::newRow("person") << 88043u << QStringLiteral("SELECT uid")
                            << (afterAsking(880431, lines({personFailure})) << noPerson(880431));
    QTest::newRow("reset") << 88044u << QStringLiteral("UPDATE admins_people")
                           << (afterAsking(880441,
                                           lines({"sql begin", resetting, resetFailure,
                                                  "sql rollback", notMarked})));
    QTest::newRow("set") << 88045u << QStringLiteral("INSERT INTO admins_people")
                         << (afterAsking(880451,
                                         lines({"sql begin", resetting, setting, setFailure,
                                                "sql commit"})));
}

void tst_Supervisor::doSyncRecord_goesOnWhateverBecameOfTheSupervisor()
{
    QFETCH(uint, osobniCislo);
    QFETCH(QString, failing);
    QFETCH(QStringList, events);
    Supervisor f;
    if (!failing.isEmpty())
        f.fail(qPrintable(failing));
    const EmployeeRecord given = RecordBuilder().pid(osobniCislo, 1).supervisor(77).branch(7);
    const uint pid = given.pid();
    f.peer.dbPeople.insert(pid, given);
    f.peer.lastRecords.insert(pid, RecordBuilder().pid(osobniCislo, 1).supervisor(5).branch(7));

    // The branch's turn comes after the supervisor's.
    const QString noBranch
        = QStringLiteral("warning THRWorker: Branch '7' NOT FOUND for employee: '%1.1 Novák Ján "
                         "(S: 7, K: 0 from ) N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  "
                         "DOV: 0 NOC: 77'")
              .arg(osobniCislo);
    f.worker.doSyncRecord(given);
    QCOMPARE(f.log.take(), events << noBranch);
    QCOMPARE(f.peer.lastRecords.value(pid).nadOsCis, 77u);
    // Nobody tries again, though the file states the same.
    f.worker.doSyncRecord(given);
    QCOMPARE(f.log.take(), QStringList {noBranch});
}

// Finding the administrator

void tst_Supervisor::dbGetAidByOsCis_trace()
{
    QFETCH(int, level);
    Supervisor f;
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.worker.dbGetAidByOsCis(77), 9u);
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbGetAidByOsCis(uid: 77)", asking,
                      "1 debug THRWorker::dbGetAidByOsCis(uid: 77): 9"}));
}

void tst_Supervisor::dbGetAidByOsCis_result_data()
{
    QTest::addColumn<QVariantList>("aids");
    QTest::addColumn<QString>("result");
    QTest::newRow("none") << QVariantList() << QStringLiteral("0");
    QTest::newRow("the first of two") << QVariantList {9, 8} << QStringLiteral("9");
    QTest::newRow("unsigned") << QVariantList {4294967295u} << QStringLiteral("4294967295");
    QTest::newRow("nothing in the row") << QVariantList {QVariant()} << QStringLiteral("0");
}

void tst_Supervisor::dbGetAidByOsCis_result()
{
    QFETCH(QVariantList, aids);
    QFETCH(QString, result);
    Supervisor f;
    QVector<QVariantList> rows;
    for (const QVariant &aid : qAsConst(aids))
        rows.append(QVariantList {aid});
    f.script.on(QStringLiteral("SELECT aid")).withRows({QStringLiteral("aid")}, rows);
    f.worker.setLogLevel(1);
    QCOMPARE(f.worker.dbGetAidByOsCis(4294967294u), result.toUInt());
    QCOMPARE(f.log.take(),
             (QStringList {QStringLiteral("sql exec SELECT aid FROM admins WHERE personalNumber = "
                                          "4294967294"),
                           QStringLiteral("debug THRWorker::dbGetAidByOsCis(uid: 4294967294): ")
                               + result}));
}

void tst_Supervisor::dbGetAidByOsCis_failure()
{
    QFETCH(int, level);
    Supervisor f;
    f.fail("SELECT aid");
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.worker.dbGetAidByOsCis(77), 0u);
    QCOMPARE(f.log.take(),
             atLevel(level,
                     {"2 debug THRWorker::dbGetAidByOsCis(uid: 77)", asking, adminFailure,
                      "1 debug THRWorker::dbGetAidByOsCis(uid: 77): 0"}));
}

// Clearing the mark

void tst_Supervisor::dbResetAdminPeopleRequest_trace()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.script.on(QStringLiteral("UPDATE")).withAffected(3);
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.worker.dbResetAdminPeopleRequest(9, 42), 3);
    QCOMPARE(
        f.log.take(),
        atLevel(
            level,
            {"2 debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42)", resetting,
             "2 debug THRWorker::dbResetAdminPeopleRequest - query 'UPDATE admins_people SET request =0 "
             "WHERE uid=42 AND aid != 9' - affected rows: 3",
             "1 debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42) - affected: 3"}));
}

void tst_Supervisor::dbResetAdminPeopleRequest_result_data()
{
    QTest::addColumn<int>("affected");
    QTest::newRow("none") << 0;
    QTest::newRow("two") << 2;
    QTest::newRow("unknown") << -1;
}

void tst_Supervisor::dbResetAdminPeopleRequest_result()
{
    QFETCH(int, affected);
    WorkerFixture f;
    f.script.on(QStringLiteral("UPDATE")).withAffected(affected);
    f.worker.setLogLevel(1);
    QCOMPARE(f.worker.dbResetAdminPeopleRequest(4294967295u, 4294967294u), affected);
    QCOMPARE(
        f.log.take(),
        (QStringList {QStringLiteral("sql exec UPDATE admins_people SET request =0 WHERE "
                                     "uid=4294967294 AND aid != 4294967295"),
                      QStringLiteral("debug THRWorker::dbResetAdminPeopleRequest(aid: 4294967295, "
                                     "uid: 4294967294) - affected: %1")
                          .arg(affected)}));
}

void tst_Supervisor::dbResetAdminPeopleRequest_failure()
{
    QFETCH(int, level);
    Supervisor f;
    f.fail("UPDATE admins_people");
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.worker.dbResetAdminPeopleRequest(9, 42), -1);
    QCOMPARE(
        f.log.take(),
        atLevel(level,
                {"2 debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42)", resetting,
                 resetFailure,
                 "1 debug THRWorker::dbResetAdminPeopleRequest(aid: 9, uid: 42) - affected: -1"}));
}

// Setting the mark

void tst_Supervisor::dbSetAdminPeopleRequest_trace()
{
    QFETCH(int, level);
    WorkerFixture f;
    f.script.on(QStringLiteral("INSERT")).withAffected(2);
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.worker.dbSetAdminPeopleRequest(9, 42), 2);
    QCOMPARE(
        f.log.take(),
        atLevel(
            level,
            {"2 debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42)", setting,
             "2 debug THRWorker - query 'INSERT INTO admins_people (aid, uid, request) VALUES(9, 42, 1) "
             "ON DUPLICATE KEY UPDATE request=1' - affected rows: 2",
             "1 debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42) - affected: 2"}));
}

void tst_Supervisor::dbSetAdminPeopleRequest_result_data()
{
    QTest::addColumn<int>("affected");
    QTest::newRow("unchanged row") << 0;
    QTest::newRow("new row") << 1;
    QTest::newRow("changed row") << 2;
    QTest::newRow("unknown") << -1;
}

void tst_Supervisor::dbSetAdminPeopleRequest_result()
{
    QFETCH(int, affected);
    WorkerFixture f;
    f.script.on(QStringLiteral("INSERT")).withAffected(affected);
    f.worker.setLogLevel(1);
    QCOMPARE(f.worker.dbSetAdminPeopleRequest(4294967295u, 4294967294u), affected);
    QCOMPARE(
        f.log.take(),
        (QStringList {QStringLiteral("sql exec INSERT INTO admins_people (aid, uid, request) "
                                     "VALUES(4294967295, 4294967294, 1) ON DUPLICATE KEY UPDATE "
                                     "request=1"),
                      QStringLiteral("debug THRWorker::dbSetAdminPeopleRequest(aid: 4294967295, "
                                     "uid: 4294967294) - affected: %1")
                          .arg(affected)}));
}

void tst_Supervisor::dbSetAdminPeopleRequest_failure()
{
    QFETCH(int, level);
    Supervisor f;
    f.fail("INSERT INTO admins_people");
    f.worker.setLogLevel(static_cast<quint8>(level));
    QCOMPARE(f.worker.dbSetAdminPeopleRequest(9, 42), -1);
    QCOMPARE(
        f.log.take(),
        atLevel(level,
                {"2 debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42)", setting, setFailure,
                 "1 debug THRWorker::dbSetAdminPeopleRequest(aid: 9, uid: 42) - affected: -1"}));
}

QTEST_GUILESS_MAIN(tst_Supervisor)
#include "tst_supervisor.moc"
