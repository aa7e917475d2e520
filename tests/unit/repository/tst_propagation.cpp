// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a change of membership means for terminals and administrators: statements, records, results.
#include "repository/branchesrepository.h"
#include "support/loglevels.h"
#include "support/patience.h"
#include "support/repositoryfixture.h"
#include "support/testrows.h"

#include <QThread>
#include <QtTest>

#include <algorithm>
#include <functional>

namespace {

/// A repository with slots as told.
class Fixture : public RepositoryFixture<BranchesRepository>
{
public:
    explicit Fixture(bool connectAdded = true, bool connectDeleted = true) :
        RepositoryFixture(connectAdded, connectDeleted)
    { }

    /// One column of rows for the statements that contain the text.
    void answer(const char *text, const QVector<QVariantList> &rows)
    {
        script.on(str(text)).withRows(lines({"id"}), rows);
    }
};

const char notOpen[] = "warning QSqlQuery::exec: database not open";

const char selectTerms[] = "sql exec SELECT tid FROM term WHERE status > 0 AND bid = 5";
const char selectAdmins[] = "sql exec SELECT aid FROM bradm WHERE bid = 5";
const char selectPeople[] = "sql exec SELECT uid FROM brape WHERE bid = 5";

// Persons 11 and 12 on and off terminals 7 and 8, and under administrators 3 and 4.
const char onTerm7[] = "sql exec INSERT INTO people_term (tid, uid) VALUES (7, 11),(7, 12) "
                       "ON DUPLICATE KEY UPDATE tid=VALUES(tid);";
const char onTerm8[] = "sql exec INSERT INTO people_term (tid, uid) VALUES (8, 11),(8, 12) "
                       "ON DUPLICATE KEY UPDATE tid=VALUES(tid);";
const char offTerm7[] = "sql exec DELETE FROM people_term WHERE tid=7  AND uid IN(11,12);";
const char offTerm8[] = "sql exec DELETE FROM people_term WHERE tid=8  AND uid IN(11,12);";
const char addedOn7[]
    = "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT "
      "7 tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
      "2 flags FROM people WHERE status = 1 AND uid IN(11, 12);";
const char addedOn8[]
    = "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT "
      "8 tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
      "2 flags FROM people WHERE status = 1 AND uid IN(11, 12);";
const char deletedOn7[]
    = "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT "
      "7 tid, 'D' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
      "2 flags FROM people WHERE status = 1 AND uid IN(11, 12);";
const char deletedOn8[]
    = "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) SELECT "
      "8 tid, 'D' type, 'people_term' ref, 'uid' ref_col, `uid` ref_id, UNIX_TIMESTAMP() created, "
      "2 flags FROM people WHERE status = 1 AND uid IN(11, 12);";
const char mark7[] = "sql exec Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 7";
const char mark8[] = "sql exec Update `term` SET syn = syn | 2 WHERE status = 1 AND tid = 8";
const char under3[] = "sql exec INSERT INTO admins_people (aid, uid) VALUES (3, 11),(3, 12) "
                      "ON DUPLICATE KEY UPDATE uid=VALUES(uid);";
const char under4[] = "sql exec INSERT INTO admins_people (aid, uid) VALUES (4, 11),(4, 12) "
                      "ON DUPLICATE KEY UPDATE uid=VALUES(uid);";
const char underBoth[] = "sql exec INSERT INTO admins_people (aid, uid) VALUES (3, 11),(3, 12),"
                         "(4, 11),(4, 12) ON DUPLICATE KEY UPDATE uid=VALUES(uid);";
const char off3[] = "sql exec DELETE FROM admins_people WHERE aid=3  AND uid IN(11,12);";
const char off4[] = "sql exec DELETE FROM admins_people WHERE aid=4  AND uid IN(11,12);";

const char addTermFailed[]
    = "critical BranchesRepository::AddPeopleToTerm - ERROR: syntax, väzba (scripted)";
const char addAdminsFailed[]
    = "critical BranchesRepository::AddPeopleToAdmins - ERROR: syntax, väzba (scripted)";
const char deleteTermFailed[]
    = "critical BranchesRepository::deletePeopleFromTerm - ERROR: syntax, väzba (scripted)";
const char deleteAdminFailed[]
    = "critical BranchesRepository::deletePeopleFromAdmin - ERROR: syntax, väzba (scripted)";
const char termsWarning[]
    = "warning BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToTerms() FAILED!";
const char adminsWarning[]
    = "warning BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToAdmins() FAILED!";

QStringList people()
{
    return lines({"11", "12"});
}

/// A branch with terminals 7 and 8, administrators 3 and 4, persons 11 and 12.
void fullBranch(Fixture &f)
{
    f.answer("SELECT tid FROM term", {{7}, {8}});
    f.answer("SELECT aid FROM bradm", {{3}, {4}});
    f.answer("SELECT uid FROM brape", {{11}, {12}});
}

using Slot = bool (BranchesRepository::*)(ushort, QString);

/// A slot that gives the people of the branch to what the list names (or takes them away): called
/// with 5 and "LIST" for the full branch.
struct PeopleSlot
{
    const char *name;
    Slot run;
    const char *ids;
    QStringList first; ///< what happens for the first id of the list
    QStringList second;
    const char *failing; ///< a part of the statement of the first id
    const char *failure;
    QStringList entries; ///< records between the reading and the statements, at a level
};

const QVector<PeopleSlot> &peopleSlots()
{
    static const QVector<PeopleSlot> all {
        {"slotAddedBranchToTerms", &BranchesRepository::slotAddedBranchToTerms, "7,8",
         lines({onTerm7, addedOn7, mark7}), lines({onTerm8, addedOn8, mark8}),
         "people_term (tid, uid) VALUES (7", addTermFailed, QStringList()},
        {"slotDeletedBranchFromTerms", &BranchesRepository::slotDeletedBranchFromTerms, "7,8",
         lines({offTerm7, deletedOn7, mark7}), lines({offTerm8, deletedOn8, mark8}),
         "FROM people_term WHERE tid=7 ", deleteTermFailed,
         lines({"info BranchesRepository::deletePeopleFromTerm(7, '11,12')",
                "info BranchesRepository::deletePeopleFromTerm(8, '11,12')"})},
        {"slotAddedAdminsToBranch", &BranchesRepository::slotAddedAdminsToBranch, "3,4",
         lines({under3}), lines({under4}), "admins_people (aid, uid) VALUES (3", addAdminsFailed,
         QStringList()},
        {"slotDeletedAdminsFromBranch", &BranchesRepository::slotDeletedAdminsFromBranch, "3,4",
         lines({off3}), lines({off4}), "FROM admins_people WHERE aid=3 ", deleteAdminFailed,
         lines({"info BranchesRepository::deletePeopleFromAdmin(3, '11,12')",
                "info BranchesRepository::deletePeopleFromAdmin(4, '11,12')"})},
    };
    return all;
}

/// A reader, called with 5 (getAids4Uid() with a person of that id).
struct Reader
{
    const char *name;
    QList<uint> (*run)(BranchesRepository &repo);
    const char *statement;
    const char *failure;
};

const QVector<Reader> &readers()
{
    static const QVector<Reader> all {
        {"getTids4Branch", [](BranchesRepository &r) { return r.getTids4Branch(5).toList(); },
         selectTerms, "critical BranchesRepository::getTids4Branch - ERROR: "},
        {"getAids4Branch", [](BranchesRepository &r) { return r.getAids4Branch(5).toList(); },
         selectAdmins, "critical BranchesRepository::getAids4Branch - ERROR: "},
        {"getUids4Branch", [](BranchesRepository &r) { return r.getUids4Branch(5).toList(); },
         selectPeople, "critical BranchesRepository::getUids4Branch - ERROR: "},
        {"getAids4Uid",
         [](BranchesRepository &r) {
             QList<uint> aids = r.getAids4Uid(5).values();
             // In the order of the test's rows.
             std::sort(aids.begin(), aids.end(), std::greater<uint>());
             return aids;
         },
         "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 5",
         "critical BranchesRepository::getAids4Branch - ERROR: "},
    };
    return all;
}

} // namespace

class tst_Propagation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructor_connectsAsTold_data();
    void constructor_connectsAsTold();
    void signals_yieldWhatTheSlotReturned();
    void signals_yieldFalseWithoutSlot();
    void signals_queuedForAnotherThread();
    void signals_allSixAreQueued();
    void delPeopleFromBranch_withoutSlotsChangesTheBranchOnly();
    void addPeopleToBranch_wholeChain();
    void addPeopleToBranch_wholeChainWithEntryRecords();
    void addPeopleToBranch_branchWithoutTerminalsAndAdministrators();
    void delPeopleFromBranch_wholeChainWithEntryRecords();
    void slotAddedPeopleToBranch_withoutBranchOrPeople_data();
    void slotAddedPeopleToBranch_withoutBranchOrPeople();
    void slotAddedPeopleToBranch_dropsEmptyParts();
    void slotAddedPeopleToBranch_goesOnAfterFailures_data();
    void slotAddedPeopleToBranch_goesOnAfterFailures();
    void slotAddedPeopleToBranch_failedReadersAreASuccess();
    void slotDeletedPeopleFromBranch_withoutBranchOrPeople();
    void slotDeletedPeopleFromBranch_speaksTheWordsOfTheAddedPath();
    void peopleSlots_oneAfterTheOther_data() { addRows(peopleSlots()); }
    void peopleSlots_oneAfterTheOther();
    void peopleSlots_entryRecords_data() { addRows(peopleSlots()); }
    void peopleSlots_entryRecords();
    void peopleSlots_withoutPeopleAreASuccess_data() { addRows(peopleSlots()); }
    void peopleSlots_withoutPeopleAreASuccess();
    void peopleSlots_skipWhatIsNoNumber_data() { addRows(peopleSlots()); }
    void peopleSlots_skipWhatIsNoNumber();
    void peopleSlots_goOnAfterAFailure_data() { addRows(peopleSlots()); }
    void peopleSlots_goOnAfterAFailure();
    void peopleSlots_failedReaderIsASuccess_data() { addRows(peopleSlots()); }
    void peopleSlots_failedReaderIsASuccess();
    void slotAddedAdminsToBranch_cutsTheIdAfterTheCheck();
    void slotDeletedAdminsFromBranch_cutsTheIdAfterTheCheck();
    void readers_rowsInTheirOrder_data() { addRows(readers()); }
    void readers_rowsInTheirOrder();
    void readers_entryRecord_data() { addRows(readers()); }
    void readers_entryRecord();
    void readers_sqlError_data() { addRows(readers()); }
    void readers_sqlError();
    void readers_closedConnection_data() { addRows(readers()); }
    void readers_closedConnection();
    void getAids4Uid_failsUnderAnotherName();
    void AddPeopleToTerm_statementThenNotice();
    void AddPeopleToTerm_noticeNamesSkippedTextsToo();
    void AddPeopleToTerm_onlySkippedTextsRunNothing();
    void AddPeopleToTerm_failureSendsNoNotice();
    void AddPeopleToTerm_failedNoticeIsNotLookedAt();
    void AddPeopleToTerms_everyTerminal();
    void deletePeopleFromTerm_statementThenNotice();
    void deletePeopleFromTerm_emptyListRunsAndFails();
    void deletePeopleFromTerm_checksNoText();
    void deletePeopleFromTerms_everyTerminal();
    void AddPeopleToAdmin_statement();
    void AddPeopleToAdmin_runsWithoutValues();
    void AddPeopleToAdmins_oneStatementByAdministrator();
    void AddPeopleToAdmins_nothingToWrite();
    void AddPeopleToAdmins_sqlError();
    void deletePeopleFromAdmin_list();
    void deletePeopleFromAdmin_onePerson();
    void deletePeopleFromAdmins_keepsPeopleOfAnotherBranch();
    void deletePeopleFromAdmins_skipsNoText();
    void deletePeopleFromAdmins_goesOnAfterAFailure();
    void deletePeopleFromAdmins_failedReaderDeletes();
    void additions_haveNoEntryRecord();
    void closedConnection_eachStatementFails();
};

void tst_Propagation::constructor_connectsAsTold_data()
{
    QTest::addColumn<bool>("added");
    QTest::addColumn<bool>("deleted");
    QTest::newRow("none") << false << false;
    QTest::newRow("added, as the worker") << true << false;
    QTest::newRow("deleted") << false << true;
    QTest::newRow("both") << true << true;
}

void tst_Propagation::constructor_connectsAsTold()
{
    QFETCH(bool, added);
    QFETCH(bool, deleted);
    Fixture f(added, deleted);
    f.repo.logLevel = 1;
    Q_EMIT f.repo.sigAddedPeopleToBranch(0, str("a"));
    Q_EMIT f.repo.sigAddedBranchToTerms(5, str("b"));
    Q_EMIT f.repo.sigAddedAdminsToBranch(5, str("c"));
    Q_EMIT f.repo.sigDeletedPeopleFromBranch(0, str("d"));
    Q_EMIT f.repo.sigDeletedBranchFromTerms(5, str("e"));
    Q_EMIT f.repo.sigDeletedAdminsFromBranch(5, str("f"));
    Q_EMIT f.repo.sigAddedSectionsToBranch(5, str("g"));
    Q_EMIT f.repo.sigDeletedSectionsFromBranch(5, str("h"));
    QStringList expected;
    if (added) {
        expected += lines({"info BranchesRepository::slotAddedPeopleToBranch(0, 'a')",
                           "info BranchesRepository::slotAddedBranchToTerms(5, 'b')",
                           "info BranchesRepository::slotAddedAdminsToBranch(5, 'c')"});
    }
    if (deleted) {
        expected += lines({"info BranchesRepository::slotDeletedPeopleFromBranch(0, 'd')",
                           "info BranchesRepository::slotDeletedBranchFromTerms(5, 'e')",
                           "info BranchesRepository::slotDeletedAdminsFromBranch(5, 'f')"});
    }
    // Each slot once.
    QCOMPARE(f.log.takeMatching({str("::slot")}), expected);
}

void tst_Propagation::signals_yieldWhatTheSlotReturned()
{
    Fixture f;
    QVERIFY(f.repo.sigAddedPeopleToBranch(5, str("11")));
    QVERIFY(!f.repo.sigAddedPeopleToBranch(0, str("11")));
    QVERIFY(f.repo.sigDeletedPeopleFromBranch(5, str("11")));
    QVERIFY(!f.repo.sigDeletedPeopleFromBranch(5, QString()));
    QVERIFY(f.repo.sigAddedBranchToTerms(5, str("7")));
    QVERIFY(f.repo.sigDeletedBranchFromTerms(5, str("7")));
    QVERIFY(f.repo.sigAddedAdminsToBranch(5, str("3")));
    QVERIFY(f.repo.sigDeletedAdminsFromBranch(5, str("3")));
    QCOMPARE(f.log.takeMessages(), QStringList());
}

void tst_Propagation::signals_yieldFalseWithoutSlot()
{
    Fixture f(false, false);
    QVERIFY(!f.repo.sigAddedPeopleToBranch(5, str("11")));
    QVERIFY(!f.repo.sigDeletedPeopleFromBranch(5, str("11")));
    QVERIFY(!f.repo.sigAddedBranchToTerms(5, str("7")));
    QVERIFY(!f.repo.sigDeletedBranchFromTerms(5, str("7")));
    QVERIFY(!f.repo.sigAddedAdminsToBranch(5, str("3")));
    QVERIFY(!f.repo.sigDeletedAdminsFromBranch(5, str("3")));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Propagation::signals_queuedForAnotherThread()
{
    Fixture f;
    fullBranch(f);
    f.repo.logLevel = 1;
    f.script.on(QStringLiteral("INSERT INTO brape")).withAffected(1);
    QThread thread;
    f.repo.moveToThread(&thread);

    // The thread has no event loop yet: the slot waits, and the signal cannot tell its result.
    QVERIFY(!f.repo.sigAddedPeopleToBranch(5, str("11,12")));
    QVERIFY(f.repo.addPeopleToBranch(5, str("11,12")));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::addPeopleToBranch(5, '11,12')",
                    "sql exec INSERT INTO brape (bid, uid, since) SELECT 5 bid, uid, "
                    "UNIX_TIMESTAMP() since FROM people WHERE uid IN(11,12) "
                    "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()"}));

    thread.start();
    QTRY_COMPARE_WITH_TIMEOUT(f.log.count(str(underBoth)), 2, longestWait);
    QVERIFY(f.log.threadOf(str("::slotAddedPeopleToBranch(5, '11,12')")));
    QVERIFY(f.log.threadOf(str("::slotAddedPeopleToBranch(5, '11,12')"))
            != QThread::currentThreadId());
    QVERIFY(f.log.threadOf(str(underBoth)) != QThread::currentThreadId());
    thread.quit();
    QVERIFY(thread.wait());
    const QStringList once = lines({"info BranchesRepository::slotAddedPeopleToBranch(5, '11,12')",
                                    "info BranchesRepository::getTids4Branch(5)", selectTerms,
                                    onTerm7, addedOn7, mark7, onTerm8, addedOn8, mark8,
                                    "info BranchesRepository::getAids4Branch(5)", selectAdmins,
                                    underBoth});
    QCOMPARE(f.log.take(), once + once);
}

void tst_Propagation::signals_allSixAreQueued()
{
    Fixture f;
    f.repo.logLevel = 1;
    QThread thread;
    f.repo.moveToThread(&thread);
    QVERIFY(!f.repo.sigAddedPeopleToBranch(5, str("a")));
    QVERIFY(!f.repo.sigDeletedPeopleFromBranch(5, str("b")));
    QVERIFY(!f.repo.sigAddedBranchToTerms(5, str("c")));
    QVERIFY(!f.repo.sigDeletedBranchFromTerms(5, str("d")));
    QVERIFY(!f.repo.sigAddedAdminsToBranch(5, str("e")));
    QVERIFY(!f.repo.sigDeletedAdminsFromBranch(5, str("f")));
    QCOMPARE(f.log.take(), QStringList());

    thread.start();
    QTRY_COMPARE_WITH_TIMEOUT(f.log.count(str("::slot")), 6, longestWait);
    thread.quit();
    QVERIFY(thread.wait());
    QCOMPARE(f.log.takeMatching({str("::slot")}),
             lines({"info BranchesRepository::slotAddedPeopleToBranch(5, 'a')",
                    "info BranchesRepository::slotDeletedPeopleFromBranch(5, 'b')",
                    "info BranchesRepository::slotAddedBranchToTerms(5, 'c')",
                    "info BranchesRepository::slotDeletedBranchFromTerms(5, 'd')",
                    "info BranchesRepository::slotAddedAdminsToBranch(5, 'e')",
                    "info BranchesRepository::slotDeletedAdminsFromBranch(5, 'f')"}));
}

void tst_Propagation::delPeopleFromBranch_withoutSlotsChangesTheBranchOnly()
{
    Fixture f(true, false);
    fullBranch(f);
    f.script.on(QStringLiteral("DELETE")).withAffected(1);
    QVERIFY(f.repo.delPeopleFromBranch(5, str("11,12")));
    QCOMPARE(f.log.take(), lines({"sql exec DELETE FROM brape WHERE bid = 5 AND uid IN(11,12)"}));
    QVERIFY(!f.repo.sigDeletedPeopleFromBranch(5, str("11,12")));
}

void tst_Propagation::addPeopleToBranch_wholeChain()
{
    Fixture f(true, false);
    fullBranch(f);
    f.script.on(QStringLiteral("INSERT INTO brape")).withAffected(2);
    QVERIFY(f.repo.addPeopleToBranch(5, str("11,12")));
    QCOMPARE(f.log.take(),
             lines({"sql exec INSERT INTO brape (bid, uid, since) SELECT 5 bid, uid, "
                    "UNIX_TIMESTAMP() since FROM people WHERE uid IN(11,12) "
                    "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()",
                    selectTerms, onTerm7, addedOn7, mark7, onTerm8, addedOn8, mark8, selectAdmins,
                    underBoth}));
}

void tst_Propagation::addPeopleToBranch_wholeChainWithEntryRecords()
{
    Fixture f(true, false);
    fullBranch(f);
    f.repo.logLevel = 1;
    f.script.on(QStringLiteral("INSERT INTO brape")).withAffected(2);
    QVERIFY(f.repo.addPeopleToBranch(5, str("11,12")));
    QCOMPARE(f.log.takeMessages(),
             lines({"info BranchesRepository::addPeopleToBranch(5, '11,12')",
                    "info BranchesRepository::slotAddedPeopleToBranch(5, '11,12')",
                    "info BranchesRepository::getTids4Branch(5)",
                    "info BranchesRepository::getAids4Branch(5)"}));
}

void tst_Propagation::addPeopleToBranch_branchWithoutTerminalsAndAdministrators()
{
    Fixture f(true, false);
    f.script.on(QStringLiteral("INSERT INTO brape")).withAffected(1);
    QVERIFY(f.repo.addPeopleToBranch(5, str("11")));
    QCOMPARE(f.log.take().mid(1), lines({selectTerms, selectAdmins}));
    QVERIFY(f.repo.slotAddedPeopleToBranch(5, str("11")));
    f.log.clear();
}

void tst_Propagation::delPeopleFromBranch_wholeChainWithEntryRecords()
{
    Fixture f(false, true);
    fullBranch(f);
    // Administrator 4 has person 12 through another branch.
    f.answer("brape USING(bid) WHERE uid = 12", {{4}});
    f.answer("brape USING(bid) WHERE uid = 11", {});
    f.repo.logLevel = 1;
    f.script.on(QStringLiteral("DELETE FROM brape")).withAffected(2);
    QVERIFY(f.repo.delPeopleFromBranch(5, str("11,12")));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::delPeopleFromBranch(5, '11,12')",
                    "sql exec DELETE FROM brape WHERE bid = 5 AND uid IN(11,12)",
                    "info BranchesRepository::slotDeletedPeopleFromBranch(5, '11,12')",
                    "info BranchesRepository::deletePeopleFromTerms(5, '11,12')",
                    "info BranchesRepository::getTids4Branch(5)",
                    selectTerms,
                    "info BranchesRepository::deletePeopleFromTerm(7, '11,12')",
                    offTerm7,
                    deletedOn7,
                    mark7,
                    "info BranchesRepository::deletePeopleFromTerm(8, '11,12')",
                    offTerm8,
                    deletedOn8,
                    mark8,
                    "info BranchesRepository::deletePeopleFromAdmins(5, '11,12')",
                    "info BranchesRepository::getAids4Branch(5)",
                    selectAdmins,
                    "info BranchesRepository::getAids4Uid(11)",
                    "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 11",
                    "info BranchesRepository::deletePeopleFromAdmin(aid: 3, uid: 11)",
                    "sql exec DELETE FROM admins_people WHERE aid=3  AND uid=11;",
                    "info BranchesRepository::deletePeopleFromAdmin(aid: 4, uid: 11)",
                    "sql exec DELETE FROM admins_people WHERE aid=4  AND uid=11;",
                    "info BranchesRepository::getAids4Uid(12)",
                    "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 12",
                    "info BranchesRepository::deletePeopleFromAdmin(aid: 3, uid: 12)",
                    "sql exec DELETE FROM admins_people WHERE aid=3  AND uid=12;"}));
}

void tst_Propagation::slotAddedPeopleToBranch_withoutBranchOrPeople_data()
{
    QTest::addColumn<int>("bid");
    QTest::addColumn<QString>("uids");
    QTest::newRow("no branch") << 0 << str("11");
    QTest::newRow("no list") << 5 << QString();
    QTest::newRow("only commas") << 5 << str(",,");
}

void tst_Propagation::slotAddedPeopleToBranch_withoutBranchOrPeople()
{
    QFETCH(int, bid);
    QFETCH(QString, uids);
    Fixture f;
    QVERIFY(!f.repo.slotAddedPeopleToBranch(static_cast<ushort>(bid), uids));
    QVERIFY(!f.repo.slotDeletedPeopleFromBranch(static_cast<ushort>(bid), uids));
    QCOMPARE(f.log.take(), QStringList());
    f.repo.logLevel = 1;
    QVERIFY(!f.repo.slotAddedPeopleToBranch(static_cast<ushort>(bid), uids));
    QCOMPARE(
        f.log.take(),
        QStringList {QStringLiteral("info BranchesRepository::slotAddedPeopleToBranch(%1, '%2')")
                         .arg(bid)
                         .arg(uids)});
}

void tst_Propagation::slotAddedPeopleToBranch_dropsEmptyParts()
{
    Fixture f;
    fullBranch(f);
    QVERIFY(f.repo.slotAddedPeopleToBranch(5, str(",11,,12,")));
    QCOMPARE(f.log.take(),
             lines({selectTerms, onTerm7, addedOn7, mark7, onTerm8, addedOn8, mark8, selectAdmins,
                    underBoth}));
}

void tst_Propagation::slotAddedPeopleToBranch_goesOnAfterFailures_data()
{
    QTest::addColumn<bool>("termsFail");
    QTest::addColumn<bool>("adminsFail");
    QTest::newRow("none") << false << false;
    QTest::newRow("terminals") << true << false;
    QTest::newRow("administrators") << false << true;
    QTest::newRow("both") << true << true;
}

void tst_Propagation::slotAddedPeopleToBranch_goesOnAfterFailures()
{
    QFETCH(bool, termsFail);
    QFETCH(bool, adminsFail);
    Fixture f;
    fullBranch(f);
    QStringList expected = lines({selectTerms, onTerm7});
    if (termsFail) {
        f.fail("people_term (tid, uid) VALUES (7");
        expected += lines({addTermFailed, onTerm8, addedOn8, mark8, termsWarning});
    } else {
        expected += lines({addedOn7, mark7, onTerm8, addedOn8, mark8});
    }
    expected += lines({selectAdmins, underBoth});
    if (adminsFail) {
        f.fail("INTO admins_people");
        expected += lines({addAdminsFailed, adminsWarning});
    }
    QCOMPARE(f.repo.slotAddedPeopleToBranch(5, str("11,12")), !termsFail && !adminsFail);
    QCOMPARE(f.log.take(), expected);
}

void tst_Propagation::slotAddedPeopleToBranch_failedReadersAreASuccess()
{
    Fixture f;
    f.fail("SELECT");
    QVERIFY(f.repo.slotAddedPeopleToBranch(5, str("11,12")));
    QCOMPARE(f.log.take(),
             lines({selectTerms,
                    "critical BranchesRepository::getTids4Branch - ERROR: syntax, väzba (scripted)",
                    selectAdmins,
                    "critical BranchesRepository::getAids4Branch - ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_Propagation::slotDeletedPeopleFromBranch_withoutBranchOrPeople()
{
    Fixture f;
    f.repo.logLevel = 1;
    QVERIFY(!f.repo.slotDeletedPeopleFromBranch(0, str("11")));
    QVERIFY(!f.repo.slotDeletedPeopleFromBranch(5, str(",")));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::slotDeletedPeopleFromBranch(0, '11')",
                    "info BranchesRepository::slotDeletedPeopleFromBranch(5, ',')"}));
}

void tst_Propagation::slotDeletedPeopleFromBranch_speaksTheWordsOfTheAddedPath()
{
    Fixture f;
    fullBranch(f);
    f.answer("USING(bid)", {});
    f.fail("DELETE FROM people_term");
    QVERIFY(!f.repo.slotDeletedPeopleFromBranch(5, str("11,12")));
    QCOMPARE(f.log.takeMessages(), lines({deleteTermFailed, deleteTermFailed, termsWarning}));
    f.fail("DELETE FROM admins_people");
    QVERIFY(!f.repo.slotDeletedPeopleFromBranch(5, str("11")));
    QCOMPARE(f.log.takeMessages(),
             lines({deleteTermFailed, deleteTermFailed, termsWarning, deleteAdminFailed,
                    deleteAdminFailed, adminsWarning}));
    f.script.on(QStringLiteral("DELETE FROM people_term"));
    QVERIFY(!f.repo.slotDeletedPeopleFromBranch(5, str("11")));
    QCOMPARE(f.log.takeMessages(), lines({deleteAdminFailed, deleteAdminFailed, adminsWarning}));
}

void tst_Propagation::peopleSlots_oneAfterTheOther()
{
    const PeopleSlot &slot = currentRow(peopleSlots());
    Fixture f;
    fullBranch(f);
    QVERIFY((f.repo.*slot.run)(5, str(slot.ids)));
    QCOMPARE(f.log.take(), (lines({selectPeople}) + slot.first + slot.second));
}

void tst_Propagation::peopleSlots_entryRecords()
{
    const PeopleSlot &slot = currentRow(peopleSlots());
    Fixture f;
    fullBranch(f);
    f.repo.logLevel = 1;
    QVERIFY((f.repo.*slot.run)(5, str(slot.ids)));
    QCOMPARE(f.log.takeMessages(),
             (QStringList {QStringLiteral("info BranchesRepository::%1(5, '%2')")
                               .arg(str(slot.name), str(slot.ids)),
                           str("info BranchesRepository::getUids4Branch(5)")}
              + slot.entries));
}

void tst_Propagation::peopleSlots_withoutPeopleAreASuccess()
{
    const PeopleSlot &slot = currentRow(peopleSlots());
    Fixture f;
    QVERIFY((f.repo.*slot.run)(5, str(slot.ids)));
    QCOMPARE(f.log.take(), lines({selectPeople}));
    // Neither is a branch of 0 refused, nor an empty list.
    QVERIFY((f.repo.*slot.run)(0, str(slot.ids)));
    QCOMPARE(f.log.take(), lines({"sql exec SELECT uid FROM brape WHERE bid = 0"}));
    fullBranch(f);
    QVERIFY((f.repo.*slot.run)(5, QString()));
    QCOMPARE(f.log.take(), lines({selectPeople}));
}

void tst_Propagation::peopleSlots_skipWhatIsNoNumber()
{
    const PeopleSlot &slot = currentRow(peopleSlots());
    Fixture f;
    fullBranch(f);
    const QString ids = str(slot.ids);
    QVERIFY((f.repo.*slot.run)(5, QStringLiteral("0,,x,%1,-1,4294967296,0x1").arg(ids)));
    QCOMPARE(f.log.take(), (lines({selectPeople}) + slot.first + slot.second));
}

void tst_Propagation::peopleSlots_goOnAfterAFailure()
{
    const PeopleSlot &slot = currentRow(peopleSlots());
    Fixture f;
    fullBranch(f);
    f.fail(slot.failing);
    QVERIFY(!(f.repo.*slot.run)(5, str(slot.ids)));
    QCOMPARE(f.log.take(),
             (lines({selectPeople}) + slot.first.mid(0, 1) + lines({slot.failure}) + slot.second));
}

void tst_Propagation::peopleSlots_failedReaderIsASuccess()
{
    const PeopleSlot &slot = currentRow(peopleSlots());
    Fixture f;
    f.fail("SELECT");
    QVERIFY((f.repo.*slot.run)(5, str(slot.ids)));
    QCOMPARE(f.log.take(),
             lines({selectPeople,
                    "critical BranchesRepository::getUids4Branch - ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_Propagation::slotAddedAdminsToBranch_cutsTheIdAfterTheCheck()
{
    Fixture f;
    fullBranch(f);
    // 65539 is 3 in 16 bits, and 65536 is 0.
    QVERIFY(f.repo.slotAddedAdminsToBranch(5, str("65539,65536")));
    QCOMPARE(f.log.take(),
             lines({selectPeople, under3,
                    "sql exec INSERT INTO admins_people (aid, uid) VALUES (0, 11),(0, 12) "
                    "ON DUPLICATE KEY UPDATE uid=VALUES(uid);"}));
}

void tst_Propagation::slotDeletedAdminsFromBranch_cutsTheIdAfterTheCheck()
{
    Fixture f;
    fullBranch(f);
    QVERIFY(f.repo.slotDeletedAdminsFromBranch(5, str("65539,65536")));
    QCOMPARE(f.log.take(),
             lines({selectPeople, off3,
                    "sql exec DELETE FROM admins_people WHERE aid=0  AND uid IN(11,12);"}));
}

void tst_Propagation::readers_rowsInTheirOrder()
{
    const Reader &reader = currentRow(readers());
    Fixture f;
    f.answer("SELECT", {{4294967295u}, {8}, {7}, {str("5")}, {QVariant()}});
    QCOMPARE(reader.run(f.repo), (QList<uint> {4294967295u, 8, 7, 5, 0}));
    QCOMPARE(f.log.take(), lines({reader.statement}));
    f.answer("SELECT", {});
    QCOMPARE(reader.run(f.repo), QList<uint>());
    f.log.clear();
}

void tst_Propagation::readers_entryRecord()
{
    const Reader &reader = currentRow(readers());
    for (const int level : {0, 1, 2}) {
        Fixture f;
        f.repo.logLevel = static_cast<quint8>(level);
        reader.run(f.repo);
        QCOMPARE(
            f.log.take(),
            atLevel(level,
                    QStringList {
                        QStringLiteral("1 info BranchesRepository::%1(5)").arg(str(reader.name)),
                        str(reader.statement)}));
    }
}

void tst_Propagation::readers_sqlError()
{
    const Reader &reader = currentRow(readers());
    Fixture f;
    f.script.on(QStringLiteral("SELECT"))
        .withRows(lines({"id"}), {{7}})
        .withError(QStringLiteral("1"), QStringLiteral("syntax, väzba"));
    QCOMPARE(reader.run(f.repo), QList<uint>());
    QCOMPARE(f.log.take(),
             (QStringList {str(reader.statement),
                           str(reader.failure) + str("syntax, väzba (scripted)")}));
}

void tst_Propagation::readers_closedConnection()
{
    const Reader &reader = currentRow(readers());
    Fixture f;
    f.close();
    QCOMPARE(reader.run(f.repo), QList<uint>());
    QCOMPARE(f.log.take(), lines({notOpen, reader.failure}));
}

void tst_Propagation::getAids4Uid_failsUnderAnotherName()
{
    Fixture f;
    f.fail("USING(bid)");
    QVERIFY(f.repo.getAids4Uid(11).isEmpty());
    QCOMPARE(f.log.take(),
             lines({"sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 11",
                    "critical BranchesRepository::getAids4Branch - ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_Propagation::AddPeopleToTerm_statementThenNotice()
{
    Fixture f;
    QVERIFY(f.repo.AddPeopleToTerm(7, people()));
    QCOMPARE(f.log.take(), lines({onTerm7, addedOn7, mark7}));
    QVERIFY(f.repo.AddPeopleToTerm(4294967295u, lines({"4294967295"})));
    QCOMPARE(f.log.take().value(0),
             str("sql exec INSERT INTO people_term (tid, uid) VALUES (4294967295, 4294967295) "
                 "ON DUPLICATE KEY UPDATE tid=VALUES(tid);"));
}

void tst_Propagation::AddPeopleToTerm_noticeNamesSkippedTextsToo()
{
    Fixture f;
    QVERIFY(f.repo.AddPeopleToTerm(7, lines({"0", "011", "x", "", "12"})));
    // The text stands as it is given, not as the number that it is.
    QCOMPARE(f.log.take(),
             lines({"sql exec INSERT INTO people_term (tid, uid) VALUES (7, 011),(7, 12) "
                    "ON DUPLICATE KEY UPDATE tid=VALUES(tid);",
                    "sql exec INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, "
                    "flags) SELECT 7 tid, 'I' type, 'people_term' ref, 'uid' ref_col, `uid` "
                    "ref_id, UNIX_TIMESTAMP() created, 2 flags FROM people WHERE status = 1 AND "
                    "uid IN(0, 011, x, , 12);",
                    mark7}));
}

void tst_Propagation::AddPeopleToTerm_onlySkippedTextsRunNothing()
{
    Fixture f;
    QVERIFY(f.repo.AddPeopleToTerm(7, lines({"0", "x", ""})));
    QVERIFY(f.repo.AddPeopleToTerm(7, QStringList()));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Propagation::AddPeopleToTerm_failureSendsNoNotice()
{
    Fixture f;
    f.fail("people_term (tid, uid)");
    QVERIFY(!f.repo.AddPeopleToTerm(7, people()));
    QCOMPARE(f.log.take(), lines({onTerm7, addTermFailed}));
}

void tst_Propagation::AddPeopleToTerm_failedNoticeIsNotLookedAt()
{
    Fixture f;
    f.fail("term_sync");
    QVERIFY(f.repo.AddPeopleToTerm(7, people()));
    QVERIFY(f.repo.deletePeopleFromTerm(7, people()));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical TermSyncRepository::addTermSyncPeople() ERROR: "
                    "syntax, väzba (scripted)",
                    "critical TermSyncRepository::addTermSyncPeople() ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_Propagation::AddPeopleToTerms_everyTerminal()
{
    Fixture f;
    fullBranch(f);
    QVERIFY(f.repo.AddPeopleToTerms(5, people()));
    QCOMPARE(f.log.take(),
             lines({selectTerms, onTerm7, addedOn7, mark7, onTerm8, addedOn8, mark8}));
    f.fail("VALUES (7");
    QVERIFY(!f.repo.AddPeopleToTerms(5, people()));
    QCOMPARE(f.log.take(), lines({selectTerms, onTerm7, addTermFailed, onTerm8, addedOn8, mark8}));
    f.answer("SELECT tid FROM term", {});
    QVERIFY(f.repo.AddPeopleToTerms(5, people()));
    QCOMPARE(f.log.take(), lines({selectTerms}));
}

void tst_Propagation::deletePeopleFromTerm_statementThenNotice()
{
    Fixture f;
    f.repo.logLevel = 1;
    // Also when no row was there.
    f.script.on(QStringLiteral("DELETE")).withAffected(0);
    QVERIFY(f.repo.deletePeopleFromTerm(7, people()));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::deletePeopleFromTerm(7, '11,12')", offTerm7,
                    deletedOn7, mark7}));
}

void tst_Propagation::deletePeopleFromTerm_emptyListRunsAndFails()
{
    Fixture f;
    f.fail("IN()");
    QVERIFY(!f.repo.deletePeopleFromTerm(7, QStringList()));
    QCOMPARE(
        f.log.take(),
        lines({"sql exec DELETE FROM people_term WHERE tid=7  AND uid IN();", deleteTermFailed}));
}

void tst_Propagation::deletePeopleFromTerm_checksNoText()
{
    Fixture f;
    QVERIFY(f.repo.deletePeopleFromTerm(7, lines({"0", "x", "11"})));
    QCOMPARE(f.log.take().value(0),
             str("sql exec DELETE FROM people_term WHERE tid=7  AND uid IN(0,x,11);"));
}

void tst_Propagation::deletePeopleFromTerms_everyTerminal()
{
    Fixture f;
    fullBranch(f);
    QVERIFY(f.repo.deletePeopleFromTerms(5, people()));
    QCOMPARE(f.log.take(),
             lines({selectTerms, offTerm7, deletedOn7, mark7, offTerm8, deletedOn8, mark8}));
    f.fail("tid=7 ");
    QVERIFY(!f.repo.deletePeopleFromTerms(5, people()));
    QCOMPARE(f.log.take(),
             lines({selectTerms, offTerm7, deleteTermFailed, offTerm8, deletedOn8, mark8}));
    f.answer("SELECT tid FROM term", {});
    QVERIFY(f.repo.deletePeopleFromTerms(5, people()));
    QCOMPARE(f.log.take(), lines({selectTerms}));
}

void tst_Propagation::AddPeopleToAdmin_statement()
{
    Fixture f;
    QVERIFY(f.repo.AddPeopleToAdmin(3, lines({"0", "11", "x", "12"})));
    QVERIFY(f.repo.AddPeopleToAdmin(65535, lines({" 11"})));
    QCOMPARE(f.log.take(),
             lines({under3,
                    "sql exec INSERT INTO admins_people (aid, uid) VALUES (65535,  11) "
                    "ON DUPLICATE KEY UPDATE uid=VALUES(uid);"}));
}

void tst_Propagation::AddPeopleToAdmin_runsWithoutValues()
{
    Fixture f;
    f.fail("VALUES  ON");
    QVERIFY(!f.repo.AddPeopleToAdmin(3, lines({"0", "x"})));
    QCOMPARE(f.log.take(),
             lines({"sql exec INSERT INTO admins_people (aid, uid) VALUES  "
                    "ON DUPLICATE KEY UPDATE uid=VALUES(uid);",
                    "critical BranchesRepository::AddPeopleToAdmins - ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_Propagation::AddPeopleToAdmins_oneStatementByAdministrator()
{
    Fixture f;
    fullBranch(f);
    QVERIFY(f.repo.AddPeopleToAdmins(5, lines({"11", "0", "x", "12"})));
    QCOMPARE(f.log.take(), lines({selectAdmins, underBoth}));
    // Not cut to 16 bits.
    f.answer("SELECT aid FROM bradm", {{65539}});
    QVERIFY(f.repo.AddPeopleToAdmins(5, lines({"11"})));
    QCOMPARE(f.log.take().value(1),
             str("sql exec INSERT INTO admins_people (aid, uid) VALUES (65539, 11) "
                 "ON DUPLICATE KEY UPDATE uid=VALUES(uid);"));
}

void tst_Propagation::AddPeopleToAdmins_nothingToWrite()
{
    Fixture f;
    QVERIFY(f.repo.AddPeopleToAdmins(5, people()));
    fullBranch(f);
    QVERIFY(f.repo.AddPeopleToAdmins(5, lines({"0", "x"})));
    QVERIFY(f.repo.AddPeopleToAdmins(5, QStringList()));
    QCOMPARE(f.log.take(), lines({selectAdmins, selectAdmins, selectAdmins}));
}

void tst_Propagation::AddPeopleToAdmins_sqlError()
{
    Fixture f;
    fullBranch(f);
    f.fail("INTO admins_people");
    QVERIFY(!f.repo.AddPeopleToAdmins(5, people()));
    QCOMPARE(f.log.take(), lines({selectAdmins, underBoth, addAdminsFailed}));
}

void tst_Propagation::deletePeopleFromAdmin_list()
{
    Fixture f;
    f.repo.logLevel = 1;
    f.script.on(QStringLiteral("DELETE")).withAffected(0);
    QVERIFY(f.repo.deletePeopleFromAdmin(3, people()));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::deletePeopleFromAdmin(3, '11,12')", off3}));
    f.repo.logLevel = 0;
    f.fail("DELETE");
    QVERIFY(!f.repo.deletePeopleFromAdmin(3, QStringList()));
    QCOMPARE(f.log.take(),
             lines({"sql exec DELETE FROM admins_people WHERE aid=3  AND uid IN();",
                    deleteAdminFailed}));
}

void tst_Propagation::deletePeopleFromAdmin_onePerson()
{
    const char statement[] = "sql exec DELETE FROM admins_people WHERE aid=65535  AND "
                             "uid=4294967295;";
    Fixture f;
    f.repo.logLevel = 1;
    f.script.on(QStringLiteral("DELETE")).withAffected(0);
    QVERIFY(f.repo.deletePeopleFromAdmin(65535, 4294967295u));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::deletePeopleFromAdmin(aid: 65535, uid: 4294967295)",
                    statement}));
    f.repo.logLevel = 0;
    f.fail("DELETE");
    QVERIFY(!f.repo.deletePeopleFromAdmin(65535, 4294967295u));
    QCOMPARE(f.log.take(), lines({statement, deleteAdminFailed}));
}

void tst_Propagation::deletePeopleFromAdmins_keepsPeopleOfAnotherBranch()
{
    Fixture f;
    fullBranch(f);
    f.answer("USING(bid) WHERE uid = 11", {{3}, {9}});
    f.answer("USING(bid) WHERE uid = 12", {{4}, {3}});
    QVERIFY(f.repo.deletePeopleFromAdmins(5, people()));
    QCOMPARE(f.log.take(),
             lines({selectAdmins,
                    "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 11",
                    "sql exec DELETE FROM admins_people WHERE aid=4  AND uid=11;",
                    "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) "
                    "WHERE uid = 12"}));
}

void tst_Propagation::deletePeopleFromAdmins_skipsNoText()
{
    Fixture f;
    // The set is asked for the whole id, and the deletion gets 16 bits of it.
    f.answer("SELECT aid FROM bradm", {{65539}});
    f.answer("USING(bid)", {{3}});
    QVERIFY(f.repo.deletePeopleFromAdmins(5, lines({"x", "0"})));
    QCOMPARE(f.log.take(),
             lines({selectAdmins,
                    "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 0",
                    "sql exec DELETE FROM admins_people WHERE aid=3  AND uid=0;",
                    "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 0",
                    "sql exec DELETE FROM admins_people WHERE aid=3  AND uid=0;"}));
}

void tst_Propagation::deletePeopleFromAdmins_goesOnAfterAFailure()
{
    Fixture f;
    fullBranch(f);
    f.answer("USING(bid)", {});
    f.fail("aid=3  AND uid=11;");
    QVERIFY(!f.repo.deletePeopleFromAdmins(5, people()));
    QCOMPARE(
        f.log.takeMatching({str("DELETE"), str("critical")}),
        lines({"sql exec DELETE FROM admins_people WHERE aid=3  AND uid=11;", deleteAdminFailed,
               "sql exec DELETE FROM admins_people WHERE aid=4  AND uid=11;",
               "sql exec DELETE FROM admins_people WHERE aid=3  AND uid=12;",
               "sql exec DELETE FROM admins_people WHERE aid=4  AND uid=12;"}));
}

void tst_Propagation::deletePeopleFromAdmins_failedReaderDeletes()
{
    Fixture f;
    fullBranch(f);
    // An empty answer: nobody seems to have the person through another branch.
    f.fail("USING(bid)");
    QVERIFY(f.repo.deletePeopleFromAdmins(5, lines({"11"})));
    QCOMPARE(f.log.take(),
             lines({selectAdmins,
                    "sql exec SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = 11",
                    "critical BranchesRepository::getAids4Branch - ERROR: syntax, väzba (scripted)",
                    "sql exec DELETE FROM admins_people WHERE aid=3  AND uid=11;",
                    "sql exec DELETE FROM admins_people WHERE aid=4  AND uid=11;"}));
}

void tst_Propagation::additions_haveNoEntryRecord()
{
    Fixture f;
    fullBranch(f);
    f.repo.logLevel = 255;
    f.repo.AddPeopleToTerm(7, people());
    f.repo.AddPeopleToAdmin(3, people());
    QCOMPARE(f.log.takeMessages(), QStringList());
    f.repo.AddPeopleToTerms(5, people());
    f.repo.AddPeopleToAdmins(5, people());
    QCOMPARE(f.log.takeMessages(),
             lines({"info BranchesRepository::getTids4Branch(5)",
                    "info BranchesRepository::getAids4Branch(5)"}));
}

void tst_Propagation::closedConnection_eachStatementFails()
{
    Fixture f;
    f.close();
    QVERIFY(!f.repo.AddPeopleToTerm(7, people()));
    QVERIFY(!f.repo.deletePeopleFromTerm(7, people()));
    QVERIFY(!f.repo.AddPeopleToAdmin(3, people()));
    QVERIFY(!f.repo.deletePeopleFromAdmin(3, people()));
    QVERIFY(!f.repo.deletePeopleFromAdmin(3, 11));
    // The result of the statement is asked, not its error, which is empty.
    QCOMPARE(f.log.take(),
             lines({notOpen, "critical BranchesRepository::AddPeopleToTerm - ERROR: ", notOpen,
                    "critical BranchesRepository::deletePeopleFromTerm - ERROR: ", notOpen,
                    "critical BranchesRepository::AddPeopleToAdmins - ERROR: ", notOpen,
                    "critical BranchesRepository::deletePeopleFromAdmin - ERROR: ", notOpen,
                    "critical BranchesRepository::deletePeopleFromAdmin - ERROR: "}));
}

QTEST_GUILESS_MAIN(tst_Propagation)
#include "tst_propagation.moc"
