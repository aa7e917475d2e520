// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The queue of the terminals: statements, error records and their order.
#include "repository/termsyncrepository.h"
#include "support/repositoryfixture.h"
#include "support/testrows.h"

#include <QtTest>

namespace {

using Fixture = RepositoryFixture<TermSyncRepository>;

const char notOpen[] = "warning QSqlQuery::exec: database not open";

/// A call and all that it does: the statement that queues, its error record without the error text,
/// what follows, the last statement, its error record.
struct Operation
{
    const char *name;
    void (*run)(TermSyncRepository &repo);
    const char *queueing;
    const char *queueingError;
    bool goesOn; ///< also after a failed queueing
    QStringList between;
    const char *marking;
    const char *markingError;
    int closedCalls; ///< statements that are tried on a closed connection
};

const QVector<Operation> &operations()
{
    static const QVector<Operation> all {
        {"addTermSyncPeople, added",
         [](TermSyncRepository &repo) {
             repo.addTermSyncPeople(7, lines({"11", "12", "x"}), QLatin1Char('I'));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT 7 tid, "
         "'I' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
         "2 flags FROM people WHERE status = 1 AND uid IN(11, 12, x);",
         "critical TermSyncRepository::addTermSyncPeople() ERROR: ", false, QStringList(),
         "Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 7",
         "critical TermSyncRepository::setTermSyn() ERROR: ", 2},
        {"addTermSyncPeople, deleted",
         [](TermSyncRepository &repo) {
             repo.addTermSyncPeople(4294967295u, lines({"4294967295"}), QLatin1Char('D'));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "SELECT 4294967295 tid, "
         "'D' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
         "2 flags FROM people WHERE status = 1 AND uid IN(4294967295);",
         "critical TermSyncRepository::addTermSyncPeople() ERROR: ", false, QStringList(),
         "Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 4294967295",
         "critical TermSyncRepository::setTermSyn() ERROR: ", 2},
        {"addTermSyncPerson, all terminals",
         [](TermSyncRepository &repo) {
             repo.addTermSyncPerson(11, QLatin1Char('U'), QStringLiteral("people"));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, 11 ref_id, UNIX_TIMESTAMP() "
         "created, 2 flags FROM people_term JOIN term USING(tid) WHERE status = 1 AND uid = 11 "
         "AND (flags & 2);",
         "critical TermSyncRepository::addTermSyncPerson() ERROR: ", false, QStringList(),
         "CALL updateTermsSync(11, 2);",
         "critical TermSyncRepository::addTermSyncPerson() - updateTermsSync() FAILED! ERROR: ", 2},
        {"addTermSyncPerson, one terminal",
         [](TermSyncRepository &repo) {
             repo.addTermSyncPerson(7, 11, QLatin1Char('U'), QStringLiteral("people"));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "VALUES(7, 'U', 'people', 'uid', 11, UNIX_TIMESTAMP(), 2)",
         "critical TermSyncRepository::addTermSyncPerson() ERROR: ", false, QStringList(),
         "Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 7",
         "critical TermSyncRepository::setTermSyn() ERROR: ", 2},
        {"addTermSyncInter, all terminals",
         [](TermSyncRepository &repo) {
             repo.addTermSyncInter(3, QLatin1Char('U'), QStringLiteral("inters"));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "SELECT `tid` tid, 'U' type, 'inters' ref, 'iid' ref_col, 3 ref_id, UNIX_TIMESTAMP() "
         "created, 1 flags FROM inters_term JOIN term USING(tid) WHERE status = 1 AND iid = 3 "
         "AND (flags & 1);",
         "critical TermSyncRepository::addTermSyncInter() ERROR: ", true,
         lines({"sql exec SELECT it.tid FROM inters_term it JOIN term t ON it.tid = t.tid "
                "WHERE t.status = 1 AND iid = 3 AND (t.flags & 1)"}),
         "UPDATE `term` SET `syn` = (`syn` | 1 ) WHERE `tid` IN (7,8)",
         "critical TermSyncRepository::addTermSyncInter() - updateTermsSync() FAILED! ERROR: ", 2},
        {"addTermSyncInter, one terminal",
         [](TermSyncRepository &repo) {
             repo.addTermSyncInter(7, 3, QLatin1Char('I'), QStringLiteral("inters_term"));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "VALUES(7, 'I', 'inters_term', 'iid', 3, UNIX_TIMESTAMP(), 1)",
         "critical TermSyncRepository::addTermSyncInter() ERROR: ", false, QStringList(),
         "Update `term` SET syn = syn | 1 WHERE status = 1 AND tid = 7",
         "critical TermSyncRepository::setTermSyn() ERROR: ", 2},
        {"addTermSyncInterList",
         [](TermSyncRepository &repo) {
             repo.addTermSyncInterList(7, lines({"3", "4"}), QLatin1Char('D'));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT 7 tid, "
         "'D' type, 'inters_term' ref, 'iid' ref_col, `iid` ref_id, UNIX_TIMESTAMP() created, "
         "1 flags FROM inters WHERE iid IN(3, 4);",
         "critical TermSyncRepository::addTermSyncPeople() ERROR: ", false, QStringList(),
         "Update `term` SET syn = syn | 1 WHERE status = 1 AND tid = 7",
         "critical TermSyncRepository::setTermSyn() ERROR: ", 2},
        {"addTermSyncTimezone",
         [](TermSyncRepository &repo) {
             repo.addTermSyncTimezone(5, QLatin1Char('U'), QStringLiteral("zones"));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "SELECT `tid` tid, 'U' type, 'zones' ref, 'zid' ref_col, 5 ref_id, UNIX_TIMESTAMP() "
         "created, 64 flags FROM pzt JOIN term t USING(tid) WHERE zid = 5 AND t.status = 1 "
         "AND (t.flags & 64) GROUP BY t.tid;",
         "critical TermSyncRepository::addTermSyncTimezone() ERROR: ", false, QStringList(),
         "DROP TEMPORARY TABLE IF EXISTS tmptbl_updateTermsSyncTZ;"
         "CREATE TEMPORARY TABLE tmptbl_updateTermsSyncTZ AS (SELECT DISTINCT t.tid FROM pzt "
         "JOIN term t USING(tid) WHERE zid = 5 AND (t.status > 0) AND (t.flags & 64));"
         "UPDATE `term` SET `syn` = (`syn` | 64 ) WHERE `tid` IN "
         "(SELECT tid FROM tmptbl_updateTermsSyncTZ);"
         "DROP TEMPORARY TABLE IF EXISTS tmptbl_updateTermsSyncTZ;",
         "critical TermSyncRepository::addTermSyncTimezone() - update terminals FAILED! ERROR: ",
         2},
        {"addTermSyncPZT, deleted",
         [](TermSyncRepository &repo) {
             repo.addTermSyncPZT(11, 5, 7, QLatin1Char('D'), QStringLiteral("pzt"));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, ref_col2, ref_id2, created, "
         "flags) VALUES(7, 'D', 'pzt', 'zid', 5, 'uid', 11, UNIX_TIMESTAMP(), 64)",
         "critical TermSyncRepository::addTermSyncPZT() ERROR: ", false, QStringList(),
         "UPDATE `term` SET `syn` = (`syn` | 64 ) WHERE `tid` = 7",
         "critical TermSyncRepository::addTermSyncPZT() - update terminals FAILED! ERROR: ", 2},
        {"addTermSyncPZT, added",
         [](TermSyncRepository &repo) {
             repo.addTermSyncPZT(11, 5, 7, QLatin1Char('I'), QStringLiteral("pzt"));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, ref_col2, ref_id2, created, "
         "flags) VALUES(7, 'I', 'pzt', 'zid', 5, 'uid', 11, UNIX_TIMESTAMP(), 64)",
         "critical TermSyncRepository::addTermSyncPZT() ERROR: ", false,
         lines({"sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                "flags) SELECT `tid` tid, 'I' type, 'zones' ref, 'zid' ref_col, 5 ref_id, "
                "UNIX_TIMESTAMP() created, 64 flags FROM pzt JOIN term t USING(tid) WHERE zid = 5 "
                "AND t.status = 1 AND (t.flags & 64) GROUP BY t.tid;",
                "sql exec DROP TEMPORARY TABLE IF EXISTS tmptbl_updateTermsSyncTZ;"
                "CREATE TEMPORARY TABLE tmptbl_updateTermsSyncTZ AS (SELECT DISTINCT t.tid "
                "FROM pzt JOIN term t USING(tid) WHERE zid = 5 AND (t.status > 0) AND "
                "(t.flags & 64));UPDATE `term` SET `syn` = (`syn` | 64 ) WHERE `tid` IN "
                "(SELECT tid FROM tmptbl_updateTermsSyncTZ);"
                "DROP TEMPORARY TABLE IF EXISTS tmptbl_updateTermsSyncTZ;"}),
         "UPDATE `term` SET `syn` = (`syn` | 64 ) WHERE `tid` = 7",
         "critical TermSyncRepository::addTermSyncPZT() - update terminals FAILED! ERROR: ", 4},
        {"addColorGroupsToTermSync",
         [](TermSyncRepository &repo) { repo.addColorGroupsToTermSync(); },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT tid, "
         "'U' type, 'vars' ref, 'colorGroups' ref_col, 0 ref_id, UNIX_TIMESTAMP() created, "
         "256 flags FROM term t WHERE t.status = 1 AND (t.flags & 256);",
         "critical TermSyncRepository::addColorGroupsToTermSync() - "
         "INSERT INTO `term_sync` FAILED! ERROR: ",
         true, QStringList(),
         "Update `term` SET syn = syn | 256 WHERE status = 1 AND (flags & 256);",
         "critical TermSyncRepository::addColorGroupsToTermSync() - Update `term` FAILED! ERROR: ",
         2},
        {"addColorGroup, one person", [](TermSyncRepository &repo) { repo.addColorGroup(7, 11); },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
         "VALUES(7, 'U', 'people_term', 'uid', 11, UNIX_TIMESTAMP(), 256)",
         "critical TermSyncRepository::addColorGroup() ERROR: ", false, QStringList(),
         "Update `term` SET syn = syn | 256 WHERE status = 1 AND tid = 7",
         "critical TermSyncRepository::setTermSyn() ERROR: ", 2},
        {"addColorGroup, list",
         [](TermSyncRepository &repo) {
             repo.addColorGroup(7, lines({"11", "12"}));
         },
         "INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT 7 tid, "
         "'U' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
         "256 flags FROM people WHERE status = 1 AND uid IN(11, 12);",
         "critical TermSyncRepository::addColorGroup() - INSERT INTO `term_sync` FAILED! ERROR: ",
         false, QStringList(), "Update `term` SET syn = syn | 256 WHERE status = 1 AND tid = 7",
         "critical TermSyncRepository::setTermSyn() ERROR: ", 2},
    };
    return all;
}

void twoTerminals(ScriptedDatabase &script)
{
    script.on(QStringLiteral("SELECT it.tid")).withRows(lines({"tid"}), {{7}, {8}});
}

QString exec(const char *statement)
{
    return QStringLiteral("sql exec ") + str(statement);
}

} // namespace

class tst_TermSync : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void constructor_takesAParent();
    void operations_queueThenMark_data() { addRows(operations()); }
    void operations_queueThenMark();
    void operations_queueingFails_data() { addRows(operations()); }
    void operations_queueingFails();
    void operations_markingFails_data() { addRows(operations()); }
    void operations_markingFails();
    void operations_lastErrorDecidesNotTheResult_data() { addRows(operations()); }
    void operations_lastErrorDecidesNotTheResult();
    void operations_closedConnectionIsSilent_data() { addRows(operations()); }
    void operations_closedConnectionIsSilent();
    void operations_withoutADatabase_data() { addRows(operations()); }
    void operations_withoutADatabase();
    void setDb_replacesTheHandle();
    void setTermSyn_statement_data();
    void setTermSyn_statement();
    void setTermSyn_result_data();
    void setTermSyn_result();
    void setTermSyn_sqlError();
    void setTermSyn_errorBesideARow();
    void addTermSyncPeople_emptyListRunsAndFails();
    void addTermSyncPeople_resultOfTheMarkingIsNotLookedAt();
    void addTermSyncPeople_joinsWithCommaAndBlank();
    void addTermSyncInter_marksAlsoAfterAFailedInsert();
    void addTermSyncInter_namesTheRoutineItDoesNotCall();
    void addTermSyncInter_noTerminalsNoUpdate();
    void addTermSyncInter_failedSelection();
    void addTermSyncInter_bothFail();
    void addTermSyncInterList_reportsUnderThePeoplesName();
    void addTermSyncTimezone_marksMoreThanItQueues();
    void addTermSyncPZT_typesThatReachTheZone_data();
    void addTermSyncPZT_typesThatReachTheZone();
    void addTermSyncPZT_goesOnWhenTheZoneFails();
    void addColorGroupsToTermSync_bothFail();
    void textsStandAsGiven();
    void textsAreNotProtectedFromLaterValues();
};

void tst_TermSync::metaObject()
{
    const QMetaObject &meta = TermSyncRepository::staticMetaObject;
    QCOMPARE(meta.className(), "TermSyncRepository");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 0);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 0);
    QCOMPARE(meta.classInfoCount() - meta.classInfoOffset(), 0);
}

void tst_TermSync::constructor_takesAParent()
{
    QObject parent;
    auto *repo = new TermSyncRepository(&parent);
    QCOMPARE(repo->parent(), &parent);
    QCOMPARE(parent.children(), QObjectList {repo});
}

void tst_TermSync::operations_queueThenMark()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    twoTerminals(f.script);
    operation.run(f.repo);
    QCOMPARE(f.log.take(),
             (QStringList {exec(operation.queueing)} + operation.between
              + QStringList {exec(operation.marking)}));
}

void tst_TermSync::operations_queueingFails()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    twoTerminals(f.script);
    f.fail(operation.queueing);
    operation.run(f.repo);
    QStringList expected {exec(operation.queueing),
                          str(operation.queueingError) + str("syntax, väzba (scripted)")};
    if (operation.goesOn)
        expected += operation.between + QStringList {exec(operation.marking)};
    QCOMPARE(f.log.take(), expected);
}

void tst_TermSync::operations_markingFails()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    twoTerminals(f.script);
    f.fail(operation.marking);
    operation.run(f.repo);
    QCOMPARE(f.log.take(),
             (QStringList {exec(operation.queueing)} + operation.between
              + QStringList {exec(operation.marking),
                             str(operation.markingError) + str("syntax, väzba (scripted)")}));
}

void tst_TermSync::operations_lastErrorDecidesNotTheResult()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    twoTerminals(f.script);
    // The statements succeed.
    f.failBeside(operation.queueing);
    f.failBeside(operation.marking);
    operation.run(f.repo);
    QStringList expected {exec(operation.queueing),
                          str(operation.queueingError) + str("beside (scripted)")};
    if (operation.goesOn) {
        expected += operation.between
            + QStringList {exec(operation.marking),
                           str(operation.markingError) + str("beside (scripted)")};
    }
    QCOMPARE(f.log.take(), expected);
}

void tst_TermSync::operations_closedConnectionIsSilent()
{
    const Operation &operation = currentRow(operations());
    Fixture f;
    f.close();
    operation.run(f.repo);
    QStringList expected;
    for (int i = 0; i < operation.closedCalls; ++i)
        expected.append(str(notOpen));
    QCOMPARE(f.log.take(), expected);
}

void tst_TermSync::operations_withoutADatabase()
{
    const Operation &operation = currentRow(operations());
    EventLog log;
    TermSyncRepository repo(nullptr);
    operation.run(repo);
    // Here there is an error to report: Qt's own driver that is none.
    QStringList expected {str(operation.queueingError)
                          + str("Driver not loaded Driver not loaded")};
    if (operation.goesOn) {
        expected.append(str(operation.markingError) + str("Driver not loaded Driver not loaded"));
    }
    QCOMPARE(log.take().filter(str("critical ")), expected);
}

void tst_TermSync::setDb_replacesTheHandle()
{
    Fixture f;
    const QSqlDatabase closed = f.script.handle();
    f.repo.setDb(closed);
    QVERIFY(f.db.isOpen());
    QVERIFY(!f.repo.setTermSyn(7, 2));
    QCOMPARE(f.log.take(), lines({notOpen}));
    f.repo.setDb(f.db);
    f.repo.setTermSyn(7, 2);
    QCOMPARE(f.log.take(),
             lines({"sql exec Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 7"}));
}

void tst_TermSync::setTermSyn_statement_data()
{
    QTest::addColumn<uint>("tid");
    QTest::addColumn<int>("bits");
    QTest::addColumn<QString>("statement");
    QTest::newRow("zero") << 0u << 0
                          << str("sql exec Update `term` SET syn = syn | 0 WHERE status = 1 AND "
                                 "tid = 0");
    QTest::newRow("two bits") << 7u << 66
                              << str("sql exec Update `term` SET syn = syn | 66 WHERE status = 1 "
                                     "AND tid = 7");
    QTest::newRow("greatest") << 4294967295u << 65535
                              << str("sql exec Update `term` SET syn = syn | 65535 WHERE "
                                     "status = 1 AND tid = 4294967295");
}

void tst_TermSync::setTermSyn_statement()
{
    QFETCH(uint, tid);
    QFETCH(int, bits);
    QFETCH(QString, statement);
    Fixture f;
    f.repo.setTermSyn(tid, static_cast<ushort>(bits));
    QCOMPARE(f.log.take(), QStringList {statement});
}

void tst_TermSync::setTermSyn_result_data()
{
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("result");
    QTest::newRow("unknown") << -1 << false;
    QTest::newRow("none") << 0 << false;
    QTest::newRow("one") << 1 << true;
    QTest::newRow("two") << 2 << true;
}

void tst_TermSync::setTermSyn_result()
{
    QFETCH(int, affected);
    QFETCH(bool, result);
    Fixture f;
    f.script.on(QStringLiteral("Update `term`")).withAffected(affected);
    QCOMPARE(f.repo.setTermSyn(7, 2), result);
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_TermSync::setTermSyn_sqlError()
{
    Fixture f;
    f.fail("Update `term`");
    QVERIFY(!f.repo.setTermSyn(7, 2));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical TermSyncRepository::setTermSyn() ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_TermSync::setTermSyn_errorBesideARow()
{
    Fixture f;
    f.script.on(QStringLiteral("Update `term`"))
        .withAffected(1)
        .withErrorBeside(QStringLiteral("1"), QStringLiteral("beside"));
    QVERIFY(f.repo.setTermSyn(7, 2));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical TermSyncRepository::setTermSyn() ERROR: beside (scripted)"}));
}

void tst_TermSync::addTermSyncPeople_emptyListRunsAndFails()
{
    Fixture f;
    f.fail("IN()");
    f.repo.addTermSyncPeople(7, QStringList(), QLatin1Char('I'));
    QCOMPARE(f.log.take(),
             lines({"sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                    "flags) SELECT 7 tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` "
                    "ref_id, UNIX_TIMESTAMP() created, 2 flags FROM people WHERE status = 1 AND "
                    "uid IN();",
                    "critical TermSyncRepository::addTermSyncPeople() ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_TermSync::addTermSyncPeople_resultOfTheMarkingIsNotLookedAt()
{
    Fixture f;
    // No row is marked: nothing is said and nothing is repeated.
    f.script.on(QStringLiteral("Update `term`")).withAffected(0);
    f.repo.addTermSyncPeople(7, lines({"11"}), QLatin1Char('I'));
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_TermSync::addTermSyncPeople_joinsWithCommaAndBlank()
{
    Fixture f;
    f.repo.addTermSyncPeople(7, lines({"1", "", " 2", "0"}), QLatin1Char('D'));
    QCOMPARE(f.log.take().value(0),
             str("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                 "flags) SELECT 7 tid, 'D' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, "
                 "UNIX_TIMESTAMP() created, 2 flags FROM people WHERE status = 1 AND "
                 "uid IN(1, ,  2, 0);"));
}

void tst_TermSync::addTermSyncInter_marksAlsoAfterAFailedInsert()
{
    Fixture f;
    twoTerminals(f.script);
    f.fail("INSERT INTO `term_sync`");
    f.repo.addTermSyncInter(3, QLatin1Char('U'), QStringLiteral("inters"));
    QCOMPARE(f.log.take().mid(1),
             lines({"critical TermSyncRepository::addTermSyncInter() ERROR: "
                    "syntax, väzba (scripted)",
                    "sql exec SELECT it.tid FROM inters_term it JOIN term t ON it.tid = t.tid "
                    "WHERE t.status = 1 AND iid = 3 AND (t.flags & 1)",
                    "sql exec UPDATE `term` SET `syn` = (`syn` | 1 ) WHERE `tid` IN (7,8)"}));
}

void tst_TermSync::addTermSyncInter_namesTheRoutineItDoesNotCall()
{
    Fixture f;
    twoTerminals(f.script);
    f.fail("UPDATE `term`");
    f.repo.addTermSyncInter(3, QLatin1Char('U'), QStringLiteral("inters"));
    const QStringList events = f.log.take();
    QCOMPARE(events.filter(str("CALL")), QStringList());
    QCOMPARE(events.last(),
             str("critical TermSyncRepository::addTermSyncInter() - updateTermsSync() FAILED! "
                 "ERROR: syntax, väzba (scripted)"));
}

void tst_TermSync::addTermSyncInter_noTerminalsNoUpdate()
{
    Fixture f;
    f.script.on(QStringLiteral("SELECT it.tid")).withRows(lines({"tid"}), {});
    f.repo.addTermSyncInter(3, QLatin1Char('U'), QStringLiteral("inters"));
    QCOMPARE(f.log.take().mid(1),
             lines({"sql exec SELECT it.tid FROM inters_term it JOIN term t ON it.tid = t.tid "
                    "WHERE t.status = 1 AND iid = 3 AND (t.flags & 1)"}));
}

void tst_TermSync::addTermSyncInter_failedSelection()
{
    Fixture f;
    f.fail("SELECT it.tid");
    f.repo.addTermSyncInter(3, QLatin1Char('U'), QStringLiteral("inters"));
    QCOMPARE(f.log.take().mid(1),
             lines({"sql exec SELECT it.tid FROM inters_term it JOIN term t ON it.tid = t.tid "
                    "WHERE t.status = 1 AND iid = 3 AND (t.flags & 1)",
                    "critical TermSyncRepository::addTermSyncInter() - updateTermsSync() FAILED! "
                    "ERROR: syntax, väzba (scripted)"}));
}

void tst_TermSync::addTermSyncInter_bothFail()
{
    Fixture f;
    f.fail("term");
    f.repo.addTermSyncInter(3, QLatin1Char('U'), QStringLiteral("inters"));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical TermSyncRepository::addTermSyncInter() ERROR: "
                    "syntax, väzba (scripted)",
                    "critical TermSyncRepository::addTermSyncInter() - updateTermsSync() FAILED! "
                    "ERROR: syntax, väzba (scripted)"}));
}

void tst_TermSync::addTermSyncInterList_reportsUnderThePeoplesName()
{
    Fixture f;
    f.fail("IN()");
    f.repo.addTermSyncInterList(7, QStringList(), QLatin1Char('I'));
    QCOMPARE(f.log.take(),
             lines({"sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                    "flags) SELECT 7 tid, 'I' type, 'inters_term' ref, 'iid' ref_col, `iid` "
                    "ref_id, UNIX_TIMESTAMP() created, 1 flags FROM inters WHERE iid IN();",
                    "critical TermSyncRepository::addTermSyncPeople() ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_TermSync::addTermSyncTimezone_marksMoreThanItQueues()
{
    Fixture f;
    f.repo.addTermSyncTimezone(5, QLatin1Char('I'), QStringLiteral("zones"));
    const QStringList statements = f.log.takeStatements();
    QCOMPARE(statements.size(), 2);
    QVERIFY(statements.at(0).contains(str(" AND t.status = 1 AND ")));
    QVERIFY(statements.at(1).contains(str(" AND (t.status > 0) AND ")));
}

void tst_TermSync::addTermSyncPZT_typesThatReachTheZone_data()
{
    QTest::addColumn<QChar>("type");
    QTest::addColumn<int>("statements");
    QTest::newRow("I") << QChar(QLatin1Char('I')) << 4;
    QTest::newRow("i") << QChar(QLatin1Char('i')) << 2;
    QTest::newRow("U") << QChar(QLatin1Char('U')) << 2;
    QTest::newRow("D") << QChar(QLatin1Char('D')) << 2;
}

void tst_TermSync::addTermSyncPZT_typesThatReachTheZone()
{
    QFETCH(QChar, type);
    QFETCH(int, statements);
    Fixture f;
    f.repo.addTermSyncPZT(11, 5, 7, type, QStringLiteral("pzt"));
    QCOMPARE(f.log.takeStatements().size(), statements);
}

void tst_TermSync::addTermSyncPZT_goesOnWhenTheZoneFails()
{
    Fixture f;
    f.fail("FROM pzt");
    f.repo.addTermSyncPZT(11, 5, 7, QLatin1Char('I'), QStringLiteral("pzt"));
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 4);
    QCOMPARE(events.at(2),
             str("critical TermSyncRepository::addTermSyncTimezone() ERROR: "
                 "syntax, väzba (scripted)"));
    QCOMPARE(events.at(3), str("sql exec UPDATE `term` SET `syn` = (`syn` | 64 ) WHERE `tid` = 7"));
}

void tst_TermSync::addColorGroupsToTermSync_bothFail()
{
    Fixture f;
    f.fail("term");
    f.repo.addColorGroupsToTermSync();
    QCOMPARE(f.log.takeMessages(),
             lines({"critical TermSyncRepository::addColorGroupsToTermSync() - "
                    "INSERT INTO `term_sync` FAILED! ERROR: syntax, väzba (scripted)",
                    "critical TermSyncRepository::addColorGroupsToTermSync() - "
                    "Update `term` FAILED! ERROR: syntax, väzba (scripted)"}));
}

void tst_TermSync::textsStandAsGiven()
{
    Fixture f;
    f.repo.addTermSyncPerson(7, 11, QLatin1Char('\''), QStringLiteral("O'Brien \\"));
    QCOMPARE(f.log.take().value(0),
             str("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                 "flags) VALUES(7, ''', 'O'Brien \\', 'uid', 11, UNIX_TIMESTAMP(), 2)"));
    f.repo.addTermSyncInter(3, QLatin1Char('U'), QString());
    QCOMPARE(f.log.take().value(0),
             str("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                 "flags) SELECT `tid` tid, 'U' type, '' ref, 'iid' ref_col, 3 ref_id, "
                 "UNIX_TIMESTAMP() created, 1 flags FROM inters_term JOIN term USING(tid) "
                 "WHERE status = 1 AND iid = 3 AND (flags & 1);"));
}

void tst_TermSync::textsAreNotProtectedFromLaterValues()
{
    Fixture f;
    f.repo.addTermSyncPerson(7, 11, QLatin1Char('U'), QStringLiteral("p%4"));
    QCOMPARE(f.log.take().value(0),
             str("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                 "flags) VALUES(7, 'U', 'p11', 'uid', 11, UNIX_TIMESTAMP(), 2)"));
    f.repo.addTermSyncPZT(11, 5, 7, QLatin1Char('D'), QStringLiteral("%4-%5"));
    QCOMPARE(f.log.take().value(0),
             str("sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, ref_col2, "
                 "ref_id2, created, flags) VALUES(7, 'D', '5-11', 'zid', 5, 'uid', 11, "
                 "UNIX_TIMESTAMP(), 64)"));
}

QTEST_GUILESS_MAIN(tst_TermSync)
#include "tst_termsync.moc"
