// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Triples of branch, attribute and section: statements, bound values, records and results.
#include "repository/branchesrepository.h"
#include "support/loglevels.h"
#include "support/repositoryfixture.h"
#include "support/testrows.h"

#include <QMetaMethod>
#include <QSharedPointer>
#include <QtTest>

namespace {

BasRecord triple(uint bid, uint attrid, uint secid)
{
    BasRecord bas;
    bas.bid = bid;
    bas.attrid = attrid;
    bas.secid = secid;
    return bas;
}

/// A repository with all slots.
class Fixture : public RepositoryFixture<BranchesRepository>
{
public:
    Fixture() :
        RepositoryFixture(true, true)
    { }
};

/// The two operations, each in the form for a record and in the form for keys.
struct Operation
{
    const char *name;
    bool (BranchesRepository::*record)(const BasRecord &);
    bool (BranchesRepository::*keys)(const QStringList &);
    const char *prepare;
};

const QVector<Operation> &operations()
{
    static const QVector<Operation> all {
        {"addBAS", &BranchesRepository::addBAS, &BranchesRepository::addBAS,
         "sql prepare INSERT INTO `bas` (bid, attrid, secid) VALUES(?, ?, ?) "
         "ON DUPLICATE KEY UPDATE bid=VALUES(bid);"},
        {"deleteBAS", &BranchesRepository::deleteBAS, &BranchesRepository::deleteBAS,
         "sql prepare DELETE FROM `bas` WHERE bid = ? AND attrid = ? AND secid = ?;"},
    };
    return all;
}

QString failure(const Operation &operation, const char *step, const char *text)
{
    return QStringLiteral("critical BranchesRepository::%1() - %2 failed, SQL ERROR: \"%3\"")
        .arg(str(operation.name), str(step), str(text));
}

} // namespace

class tst_Triples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void basRecord_startValues();
    void record_bindsTheValues_data() { addRows(operations()); }
    void record_bindsTheValues();
    void record_entryRecord_data() { addRows(operations()); }
    void record_entryRecord();
    void record_affectedRowsAreNotLookedAt_data() { addRows(operations()); }
    void record_affectedRowsAreNotLookedAt();
    void record_prepareFails_data() { addRows(operations()); }
    void record_prepareFails();
    void record_execFails_data() { addRows(operations()); }
    void record_execFails();
    void record_errorBesideSuccess_data() { addRows(operations()); }
    void record_errorBesideSuccess();
    void record_closedConnection_data() { addRows(operations()); }
    void record_closedConnection();
    void keys_runRowByRow_data() { addRows(operations()); }
    void keys_runRowByRow();
    void keys_entryRecord_data() { addRows(operations()); }
    void keys_entryRecord();
    void keys_emptyListRunsNothing_data() { addRows(operations()); }
    void keys_emptyListRunsNothing();
    void keys_prepareFails_data() { addRows(operations()); }
    void keys_prepareFails();
    void keys_execBatchFails_data() { addRows(operations()); }
    void keys_execBatchFails();
    void keys_errorBesideSuccess_data() { addRows(operations()); }
    void keys_errorBesideSuccess();
    void keys_closedConnection_data() { addRows(operations()); }
    void keys_closedConnection();
    void addBAS_malformedKeyBecomesZeros_data();
    void addBAS_malformedKeyBecomesZeros();
    void deleteBAS_malformedKeyBecomesZeros();
    void recordAndKeyFailWithDifferentWords();
    void triples_sendNoSignal();
};

void tst_Triples::basRecord_startValues()
{
    const BasRecord bas;
    QCOMPARE(bas.bid, 0u);
    QCOMPARE(bas.attrid, 0u);
    QCOMPARE(bas.secid, 0u);
}

void tst_Triples::record_bindsTheValues()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    QVERIFY((f.repo.*operation.record)(triple(1, 2, 4294967295u)));
    QVERIFY((f.repo.*operation.record)(BasRecord()));
    QCOMPARE(f.log.take(),
             (QStringList {str(operation.prepare), str("sql run 0=1, 1=2, 2=4294967295"),
                           str(operation.prepare), str("sql run 0=0, 1=0, 2=0")}));
}

void tst_Triples::record_entryRecord()
{
    const Operation &operation = currentRow(operations());
    for (const int level : {0, 1, 2}) {
        Fixture f;
        f.repo.logLevel = static_cast<quint8>(level);
        (f.repo.*operation.record)(triple(1, 2, 4294967295u));
        QCOMPARE(
            f.log.take(),
            atLevel(level,
                    QStringList {QStringLiteral("1 info BranchesRepository::%1(1-2-4294967295)")
                                     .arg(str(operation.name)),
                                 str(operation.prepare), str("sql run 0=1, 1=2, 2=4294967295")}));
    }
}

void tst_Triples::record_affectedRowsAreNotLookedAt()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.script.on(QStringLiteral("run")).withAffected(0);
    QVERIFY((f.repo.*operation.record)(triple(1, 2, 3)));
    QVERIFY((f.repo.*operation.keys)(lines({"1-2-3"})));
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_Triples::record_prepareFails()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.script.on(QStringLiteral("prepare"))
        .withError(QStringLiteral("1064"), QStringLiteral("no \"bas\", väzba"));
    QVERIFY(!(f.repo.*operation.record)(triple(1, 2, 3)));
    QCOMPARE(f.log.take(),
             (QStringList {str(operation.prepare),
                           failure(operation, "prepare", "no \\\"bas\\\", väzba (scripted)")}));
}

void tst_Triples::record_execFails()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.script.on(QStringLiteral("run")).withError(QStringLiteral("1"), QStringLiteral("full"));
    QVERIFY(!(f.repo.*operation.record)(triple(1, 2, 3)));
    QCOMPARE(f.log.take(),
             (QStringList {str(operation.prepare), str("sql run 0=1, 1=2, 2=3"),
                           failure(operation, "exec", "full (scripted)")}));
}

void tst_Triples::record_errorBesideSuccess()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.failBeside("run");
    QVERIFY((f.repo.*operation.record)(triple(1, 2, 3)));
    QCOMPARE(f.log.takeMessages(), QStringList {failure(operation, "exec", "beside (scripted)")});
}

void tst_Triples::record_closedConnection()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.close();
    QVERIFY(!(f.repo.*operation.record)(triple(1, 2, 3)));
    QCOMPARE(f.log.take(),
             (QStringList {str("warning QSqlQuery::prepare: database not open"),
                           failure(operation, "prepare", "")}));
}

void tst_Triples::keys_runRowByRow()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    QVERIFY((f.repo.*operation.keys)(lines({"1-2-3", "4294967295-5-6", "1-2-3"})));
    QCOMPARE(f.log.take(),
             (QStringList {str(operation.prepare), str("sql run 0=1, 1=2, 2=3"),
                           str("sql run 0=4294967295, 1=5, 2=6"), str("sql run 0=1, 1=2, 2=3")}));
}

void tst_Triples::keys_entryRecord()
{
    const Operation &operation = currentRow(operations());
    for (const int level : {0, 1, 2}) {
        Fixture f;
        f.repo.logLevel = static_cast<quint8>(level);
        (f.repo.*operation.keys)(lines({"1-2-3", "väzba"}));
        QCOMPARE(f.log.take(),
                 atLevel(level,
                         QStringList {QStringLiteral("1 info BranchesRepository::%1(1-2-3,väzba)")
                                          .arg(str(operation.name)),
                                      str(operation.prepare), str("sql run 0=1, 1=2, 2=3"),
                                      str("sql run 0=0, 1=0, 2=0")}));
    }
}

void tst_Triples::keys_emptyListRunsNothing()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    QVERIFY(!(f.repo.*operation.keys)(QStringList()));
    QCOMPARE(f.log.take(), QStringList());
    f.repo.logLevel = 1;
    QVERIFY(!(f.repo.*operation.keys)(QStringList()));
    QCOMPARE(
        f.log.take(),
        QStringList {QStringLiteral("info BranchesRepository::%1()").arg(str(operation.name))});
}

void tst_Triples::keys_prepareFails()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.script.on(QStringLiteral("prepare")).withError(QStringLiteral("1"), QStringLiteral("gone"));
    QVERIFY(!(f.repo.*operation.keys)(lines({"1-2-3"})));
    QCOMPARE(
        f.log.take(),
        (QStringList {str(operation.prepare), failure(operation, "prepare", "gone (scripted)")}));
}

void tst_Triples::keys_execBatchFails()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.script.on(QStringLiteral("run 0=4,"))
        .withError(QStringLiteral("1"), QStringLiteral("no \"row\""));
    QVERIFY(!(f.repo.*operation.keys)(lines({"1-2-3", "4-5-6", "7-8-9"})));
    // Ends with the row that failed; those before it stay.
    QCOMPARE(f.log.take(),
             (QStringList {str(operation.prepare), str("sql run 0=1, 1=2, 2=3"),
                           str("sql run 0=4, 1=5, 2=6"),
                           failure(operation, "execBatch", "no \\\"row\\\" (scripted)")}));
}

void tst_Triples::keys_errorBesideSuccess()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.failBeside("run");
    QVERIFY((f.repo.*operation.keys)(lines({"1-2-3"})));
    QCOMPARE(f.log.takeMessages(),
             QStringList {failure(operation, "execBatch", "beside (scripted)")});
}

void tst_Triples::keys_closedConnection()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.close();
    QVERIFY(!(f.repo.*operation.keys)(lines({"1-2-3"})));
    QCOMPARE(f.log.take(),
             (QStringList {str("warning QSqlQuery::prepare: database not open"),
                           failure(operation, "prepare", "")}));
}

void tst_Triples::addBAS_malformedKeyBecomesZeros_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("run");
    const QString zeros = str("sql run 0=0, 1=0, 2=0");
    QTest::newRow("two parts") << str("1-2") << zeros;
    QTest::newRow("four parts") << str("1-2-3-4") << zeros;
    QTest::newRow("empty last part is a part") << str("1-2-") << str("sql run 0=1, 1=2, 2=0");
    QTest::newRow("empty fourth part") << str("1-2-3-") << zeros;
    QTest::newRow("empty middle") << str("1--3") << str("sql run 0=1, 1=0, 2=3");
    QTest::newRow("only dashes") << str("--") << zeros;
    QTest::newRow("empty") << QString() << zeros;
    QTest::newRow("no numbers") << str("a-2-0x3") << str("sql run 0=0, 1=2, 2=0");
    QTest::newRow("too great") << str("1-4294967296-3") << str("sql run 0=1, 1=0, 2=3");
    QTest::newRow("other separator") << str("1,2,3") << zeros;
}

void tst_Triples::addBAS_malformedKeyBecomesZeros()
{
    QFETCH(QString, key);
    QFETCH(QString, run);
    Fixture f;
    QVERIFY(f.repo.addBAS(QStringList {key}));
    QCOMPARE(f.log.take(), (QStringList {str(operations().at(0).prepare), run}));
}

void tst_Triples::deleteBAS_malformedKeyBecomesZeros()
{
    Fixture f;
    QVERIFY(f.repo.deleteBAS(lines({"1-2", "1-2-3"})));
    QCOMPARE(f.log.take().mid(1), lines({"sql run 0=0, 1=0, 2=0", "sql run 0=1, 1=2, 2=3"}));
}

void tst_Triples::recordAndKeyFailWithDifferentWords()
{
    Fixture f;
    f.script.on(QStringLiteral("run")).withError(QStringLiteral("1"), QStringLiteral("full"));
    f.repo.addBAS(triple(1, 2, 3));
    f.repo.addBAS(lines({"1-2-3"}));
    f.repo.deleteBAS(triple(1, 2, 3));
    f.repo.deleteBAS(lines({"1-2-3"}));
    QCOMPARE(
        f.log.takeMessages(),
        lines(
            {"critical BranchesRepository::addBAS() - exec failed, SQL ERROR: \"full (scripted)\"",
             "critical BranchesRepository::addBAS() - execBatch failed, SQL ERROR: "
             "\"full (scripted)\"",
             "critical BranchesRepository::deleteBAS() - exec failed, SQL ERROR: "
             "\"full (scripted)\"",
             "critical BranchesRepository::deleteBAS() - execBatch failed, SQL ERROR: "
             "\"full (scripted)\""}));
}

void tst_Triples::triples_sendNoSignal()
{
    Fixture f;
    QVector<QSharedPointer<QSignalSpy>> spies;
    const QMetaObject *meta = f.repo.metaObject();
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Signal)
            spies.append(QSharedPointer<QSignalSpy>::create(&f.repo, method));
    }
    QCOMPARE(spies.size(), 8);
    f.script.on(QStringLiteral("run")).withAffected(1);
    QVERIFY(f.repo.addBAS(triple(1, 2, 3)));
    QVERIFY(f.repo.addBAS(lines({"1-2-3"})));
    QVERIFY(f.repo.deleteBAS(triple(1, 2, 3)));
    QVERIFY(f.repo.deleteBAS(lines({"1-2-3"})));
    for (const auto &spy : qAsConst(spies))
        QCOMPARE(spy->count(), 0);
    f.log.clear();
}

QTEST_GUILESS_MAIN(tst_Triples)
#include "tst_triples.moc"
