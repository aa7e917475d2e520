// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Branches and their memberships: statements, records, results and signals.
#include "repository/branchesrepository.h"
#include "repository/termsyncrepository.h"
#include "support/loglevels.h"
#include "support/repositoryfixture.h"
#include "support/testrows.h"

#include <QMetaMethod>
#include <QtTest>

namespace {

/// A repository without slots; its signals land in the log as "signal NAME BID LIST".
class Fixture : public RepositoryFixture<BranchesRepository>
{
public:
    Fixture() :
        RepositoryFixture(false, false)
    {
        using Repo = BranchesRepository;
        note(&Repo::sigAddedPeopleToBranch, "sigAddedPeopleToBranch");
        note(&Repo::sigDeletedPeopleFromBranch, "sigDeletedPeopleFromBranch");
        note(&Repo::sigAddedBranchToTerms, "sigAddedBranchToTerms");
        note(&Repo::sigDeletedBranchFromTerms, "sigDeletedBranchFromTerms");
        note(&Repo::sigAddedAdminsToBranch, "sigAddedAdminsToBranch");
        note(&Repo::sigDeletedAdminsFromBranch, "sigDeletedAdminsFromBranch");
        note(&Repo::sigAddedSectionsToBranch, "sigAddedSectionsToBranch");
        note(&Repo::sigDeletedSectionsFromBranch, "sigDeletedSectionsFromBranch");
    }

private:
    template <typename Signal>
    void note(Signal signal, const char *name)
    {
        QObject::connect(&repo, signal, &repo, [name](ushort bid, const QString &ids) {
            EventLog::record(QStringLiteral("signal %1 %2 '%3'").arg(str(name)).arg(bid).arg(ids));
            return false;
        });
    }
};

const char notOpen[] = "warning QSqlQuery::exec: database not open";

/// One of the operations that change a membership by one statement, called with 5 and "7,8".
struct Membership
{
    const char *name;
    bool (BranchesRepository::*run)(ushort, const QString &);
    const char *statement;
    const char *signal;
};

const QVector<Membership> &memberships()
{
    static const QVector<Membership> all {
        {"addPeopleToBranch", &BranchesRepository::addPeopleToBranch,
         "INSERT INTO brape (bid, uid, since) SELECT 5 bid, uid, UNIX_TIMESTAMP() since "
         "FROM people WHERE uid IN(7,8) ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()",
         "sigAddedPeopleToBranch"},
        {"delPeopleFromBranch", &BranchesRepository::delPeopleFromBranch,
         "DELETE FROM brape WHERE bid = 5 AND uid IN(7,8)", "sigDeletedPeopleFromBranch"},
        {"addBranchToTerms", &BranchesRepository::addBranchToTerms,
         "UPDATE term SET bid = 5 WHERE tid IN(7,8)", "sigAddedBranchToTerms"},
        {"delBranchFromTerms", &BranchesRepository::delBranchFromTerms,
         "UPDATE term SET bid = NULL WHERE tid IN(7,8)", "sigDeletedBranchFromTerms"},
        {"addAdminsToBranch", &BranchesRepository::addAdminsToBranch,
         "INSERT INTO bradm (bid, aid) SELECT 5 bid, aid FROM admins WHERE aid IN(7,8) "
         "ON DUPLICATE KEY UPDATE bid=5",
         "sigAddedAdminsToBranch"},
        {"delAdminsFromBranch", &BranchesRepository::delAdminsFromBranch,
         "DELETE FROM bradm WHERE bid = 5 AND aid IN(7,8)", "sigDeletedAdminsFromBranch"},
        {"addSectionsToBranch", &BranchesRepository::addSectionsToBranch,
         "INSERT INTO sec_branch (secid, bid) SELECT secid, 5 bid FROM sections "
         "WHERE secid IN(7,8) ON DUPLICATE KEY UPDATE bid=5",
         "sigAddedSectionsToBranch"},
    };
    return all;
}

/// As memberships(), with the operation of two statements.
const QVector<Membership> &allMemberships()
{
    static const QVector<Membership> all = QVector<Membership>(memberships())
        << Membership {"delSectionsFromBranch", &BranchesRepository::delSectionsFromBranch, nullptr,
                       "sigDeletedSectionsFromBranch"};
    return all;
}

QString exec(const char *statement)
{
    return QStringLiteral("sql exec ") + str(statement);
}

QString error(const Membership &operation, const char *text)
{
    return QStringLiteral("critical BranchesRepository::%1 - ERROR: %2")
        .arg(str(operation.name), str(text));
}

QString signalled(const Membership &operation)
{
    return QStringLiteral("signal %1 5 '7,8'").arg(str(operation.signal));
}

const char deleteTriples[] = "sql exec DELETE FROM bas WHERE bid = 5 AND secid IN(7,8)";
const char deleteSections[] = "sql exec DELETE FROM sec_branch WHERE bid = 5 AND secid IN(7,8)";

/// No number is like another.
BranchRecord fullBranch()
{
    BranchRecord branch;
    branch.bid = 65535;
    branch.number = 4294967295u;
    branch.name = QStringLiteral("Košice");
    branch.address = QStringLiteral("Hlavná 1, 040 01");
    branch.note = QStringLiteral("note");
    branch.wh1b = 101;
    branch.wh1e = 102;
    branch.wh2b = 201;
    branch.wh2e = 202;
    branch.wh3b = 301;
    branch.wh3e = 302;
    branch.wh4b = 401;
    branch.wh4e = 402;
    branch.wh5b = 501;
    branch.wh5e = 502;
    branch.wh6b = 601;
    branch.wh6e = 602;
    branch.wh7b = 701;
    branch.wh7e = 65535;
    branch.mgid = 4294967294u;
    return branch;
}

BranchRecord named(const char *name, ushort bid = 0)
{
    BranchRecord branch;
    branch.name = str(name);
    branch.bid = bid;
    return branch;
}

const char insertNamed[]
    = "sql exec INSERT INTO `branches` (`number`, `name`, `address`, `note`, `wh1b`, `wh1e`, "
      "`wh2b`, `wh2e`, `wh3b`, `wh3e`, `wh4b`, `wh4e`, `wh5b`, `wh5e`, `wh6b`, `wh6e`, `wh7b`, "
      "`wh7e`, `mgid`) VALUES (NULL, 'A', '', '', NULL, NULL, NULL, NULL, NULL, NULL, NULL, NULL, "
      "NULL, NULL, NULL, NULL, NULL, NULL, NULL);";
const char updateNamed[]
    = "sql exec UPDATE `branches` SET `name`='A', `address`='', `note`='', `wh1b`=NULL, "
      "`wh1e`=NULL, `wh2b`=NULL, `wh2e`=NULL, `wh3b`=NULL, `wh3e`=NULL, `wh4b`=NULL, `wh4e`=NULL, "
      "`wh5b`=NULL, `wh5e`=NULL, `wh6b`=NULL, `wh6e`=NULL, `wh7b`=NULL, `wh7e`=NULL,"
      "`number` = NULL, `mgid`= NULL WHERE bid = 9";

} // namespace

class tst_Branches : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject();
    void constructor_ownsTheTerminalQueue();
    void branchRecord_startValues();
    void setDb_reachesTheTerminalQueue();
    void destruction_leavesTheConnectionOpen();
    void addBranch_statement();
    void addBranch_emptyNameRunsNothing();
    void addBranch_zerosAreNull();
    void addBranch_insertIds_data();
    void addBranch_insertIds();
    void addBranch_sqlError();
    void addBranch_closedConnection();
    void addBranch_errorBesideSuccessIsNotLookedAt();
    void workingHours_nullOnlyTogether();
    void textsAreNeitherEscapedNorProtected();
    void updateBranch_statement();
    void updateBranch_emptyNameAndBidZeroAreWritten();
    void updateBranch_result_data();
    void updateBranch_result();
    void updateBranch_sqlError();
    void updateBranch_errorBesideSuccess();
    void updateBranch_closedConnection();
    void saveBranch_addsWithoutBid_data();
    void saveBranch_addsWithoutBid();
    void saveBranch_updatesWithBid_data();
    void saveBranch_updatesWithBid();
    void saveBranch_failedUpdateIsASuccess();
    void saveBranch_emptyName();
    void branches_haveNoEntryRecord();
    void reservedBranchOperation_isAlwaysFalse();
    void membership_statementThenSignal_data() { addRows(memberships()); }
    void membership_statementThenSignal();
    void membership_entryRecord_data() { addRows(memberships()); }
    void membership_entryRecord();
    void membership_withoutBidOrListRunsNothing_data() { addRows(allMemberships()); }
    void membership_withoutBidOrListRunsNothing();
    void membership_noRowChanged_data() { addRows(memberships()); }
    void membership_noRowChanged();
    void membership_sqlError_data() { addRows(memberships()); }
    void membership_sqlError();
    void membership_errorBesideAChangedRow_data() { addRows(memberships()); }
    void membership_errorBesideAChangedRow();
    void membership_closedConnectionIsSilent_data() { addRows(memberships()); }
    void membership_closedConnectionIsSilent();
    void membership_listStandsAsGiven();
    void addPeopleToBranch_failedPropagationDoesNotCount();
    void delBranchFromTerms_bidIsNotInTheStatement();
    void delSectionsFromBranch_clearsTriplesFirst();
    void delSectionsFromBranch_entryRecord();
    void delSectionsFromBranch_secondResultCountsUnlessItFails_data();
    void delSectionsFromBranch_secondResultCountsUnlessItFails();
    void delSectionsFromBranch_errorRecords();
    void delSectionsFromBranch_errorsBesideChangedRows();
    void delSectionsFromBranch_closedConnectionIsSilent();
};

void tst_Branches::metaObject()
{
    const QMetaObject &meta = BranchesRepository::staticMetaObject;
    QCOMPARE(meta.className(), "BranchesRepository");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.propertyCount() - meta.propertyOffset(), 0);
    QCOMPARE(meta.enumeratorCount() - meta.enumeratorOffset(), 0);
    QCOMPARE(meta.classInfoCount() - meta.classInfoOffset(), 0);
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        QCOMPARE(method.access(), QMetaMethod::Public);
        methods.append((method.methodType() == QMetaMethod::Signal ? str("signal ") : str("slot "))
                       + str(method.typeName()) + QLatin1Char(' ')
                       + str(method.methodSignature().constData()) + QLatin1Char(' ')
                       + str(method.parameterNames().join(',').constData()));
    }
    QCOMPARE(methods,
             lines({"signal bool sigAddedPeopleToBranch(ushort,QString) bid,uids",
                    "signal bool sigDeletedPeopleFromBranch(ushort,QString) bid,uids",
                    "signal bool sigAddedBranchToTerms(ushort,QString) bid,tids",
                    "signal bool sigDeletedBranchFromTerms(ushort,QString) bid,tids",
                    "signal bool sigAddedAdminsToBranch(ushort,QString) bid,aids",
                    "signal bool sigDeletedAdminsFromBranch(ushort,QString) bid,aids",
                    "signal void sigAddedSectionsToBranch(ushort,QString) bid,secids",
                    "signal void sigDeletedSectionsFromBranch(ushort,QString) bid,secids",
                    "slot bool slotAddedPeopleToBranch(ushort,QString) bid,uids",
                    "slot bool slotDeletedPeopleFromBranch(ushort,QString) bid,uids",
                    "slot bool slotAddedBranchToTerms(ushort,QString) bid,tids",
                    "slot bool slotDeletedBranchFromTerms(ushort,QString) bid,tids",
                    "slot bool slotAddedAdminsToBranch(ushort,QString) bid,aids",
                    "slot bool slotDeletedAdminsFromBranch(ushort,QString) bid,aids"}));
}

void tst_Branches::constructor_ownsTheTerminalQueue()
{
    QObject parent;
    auto *repo = new BranchesRepository(&parent, true, true);
    QCOMPARE(repo->parent(), &parent);
    QCOMPARE(repo->logLevel, quint8(0));
    QCOMPARE(repo->children().size(), 1);
    const QPointer<QObject> queue = repo->children().first();
    QVERIFY(qobject_cast<TermSyncRepository *>(queue));
    delete repo;
    QVERIFY(!queue);
}

void tst_Branches::branchRecord_startValues()
{
    const BranchRecord branch;
    QCOMPARE(branch.bid, ushort(0));
    QCOMPARE(branch.number, 0u);
    QVERIFY(branch.name.isEmpty());
    QCOMPARE(branch.wh1b, ushort(0));
    QCOMPARE(branch.wh7e, ushort(0));
    QCOMPARE(branch.mgid, 0u);
}

void tst_Branches::setDb_reachesTheTerminalQueue()
{
    Fixture f;
    f.repo.setDb(f.script.handle());
    QVERIFY(!f.repo.AddPeopleToTerm(7, lines({"11"})));
    QCOMPARE(f.log.take(),
             lines({notOpen, "critical BranchesRepository::AddPeopleToTerm - ERROR: "}));
    f.repo.setDb(f.db);
    QVERIFY(f.repo.AddPeopleToTerm(7, lines({"11"})));
    // Three statements, the last two by the queue.
    const QStringList events = f.log.take();
    QCOMPARE(events.size(), 3);
    QCOMPARE(events.filter(str("sql exec ")).size(), 3);
}

void tst_Branches::destruction_leavesTheConnectionOpen()
{
    EventLog log;
    ScriptedDatabase script;
    QSqlDatabase db = script.handle();
    db.open();
    {
        BranchesRepository repo(nullptr, true, true);
        repo.setDb(db);
    }
    QVERIFY(db.isOpen());
    QCOMPARE(log.take(), lines({"sql open"}));
}

void tst_Branches::addBranch_statement()
{
    Fixture f;
    f.script.on(QStringLiteral("INSERT")).withInsertId(12);
    const BranchRecord branch = fullBranch();
    QCOMPARE(f.repo.addBranch(branch), ushort(12));
    QCOMPARE(
        f.log.take(),
        lines({"sql exec INSERT INTO `branches` (`number`, `name`, `address`, `note`, `wh1b`, "
               "`wh1e`, `wh2b`, `wh2e`, `wh3b`, `wh3e`, `wh4b`, `wh4e`, `wh5b`, `wh5e`, `wh6b`, "
               "`wh6e`, `wh7b`, `wh7e`, `mgid`) VALUES (4294967295, 'Košice', 'Hlavná 1, 040 01', "
               "'note', 101, 102, 201, 202, 301, 302, 401, 402, 501, 502, 601, 602, 701, 65535, "
               "4294967294);"}));
    // The record keeps its bid.
    QCOMPARE(branch.bid, ushort(65535));
}

void tst_Branches::addBranch_emptyNameRunsNothing()
{
    Fixture f;
    BranchRecord branch = fullBranch();
    branch.name.clear();
    QCOMPARE(f.repo.addBranch(branch), ushort(0));
    QCOMPARE(f.log.take(),
             lines({"warning BranchesRepository::addBranch() -  branch name can not be empty!"}));
}

void tst_Branches::addBranch_zerosAreNull()
{
    Fixture f;
    f.repo.addBranch(named("A"));
    QCOMPARE(f.log.take(), lines({insertNamed}));
}

void tst_Branches::addBranch_insertIds_data()
{
    QTest::addColumn<QVariant>("id");
    QTest::addColumn<int>("bid");
    QTest::newRow("none") << QVariant() << 0;
    QTest::newRow("no number") << QVariant(QStringLiteral("x")) << 0;
    QTest::newRow("negative") << QVariant(-1) << 0;
    QTest::newRow("0") << QVariant(0) << 0;
    QTest::newRow("1") << QVariant(1) << 1;
    QTest::newRow("text") << QVariant(QStringLiteral("17")) << 17;
    QTest::newRow("greatest") << QVariant(65535) << 65535;
    QTest::newRow("cut to 16 bits: nothing is left") << QVariant(65536) << 0;
    QTest::newRow("cut to 16 bits") << QVariant(65541) << 5;
    QTest::newRow("beyond a signed number") << QVariant(2147483653u) << 0;
}

void tst_Branches::addBranch_insertIds()
{
    QFETCH(QVariant, id);
    QFETCH(int, bid);
    Fixture f;
    f.script.on(QStringLiteral("INSERT")).withInsertId(id).withAffected(1);
    QCOMPARE(int(f.repo.addBranch(named("A"))), bid);
    // A missing id is no failure to the log.
    QCOMPARE(f.log.take(), lines({insertNamed}));
}

void tst_Branches::addBranch_sqlError()
{
    Fixture f;
    f.fail("INSERT");
    QCOMPARE(f.repo.addBranch(named("A")), ushort(0));
    QCOMPARE(f.log.take(),
             lines({insertNamed,
                    "critical BranchesRepository::addBranch - ERROR: syntax, väzba (scripted)"}));
}

void tst_Branches::addBranch_closedConnection()
{
    Fixture f;
    f.close();
    QCOMPARE(f.repo.addBranch(named("A")), ushort(0));
    QCOMPARE(f.log.take(), lines({notOpen, "critical BranchesRepository::addBranch - ERROR: "}));
}

void tst_Branches::addBranch_errorBesideSuccessIsNotLookedAt()
{
    Fixture f;
    f.script.on(QStringLiteral("INSERT"))
        .withInsertId(3)
        .withErrorBeside(QStringLiteral("1"), QStringLiteral("beside"));
    QCOMPARE(f.repo.addBranch(named("A")), ushort(3));
    QCOMPARE(f.log.take(), lines({insertNamed}));
}

void tst_Branches::workingHours_nullOnlyTogether()
{
    Fixture f;
    BranchRecord branch = named("A", 9);
    branch.wh1e = 600;
    branch.wh2b = 480;
    branch.wh7e = 1;
    f.repo.addBranch(branch);
    f.repo.updateBranch(branch);
    QCOMPARE(
        f.log.take(),
        lines({"sql exec INSERT INTO `branches` (`number`, `name`, `address`, `note`, `wh1b`, "
               "`wh1e`, `wh2b`, `wh2e`, `wh3b`, `wh3e`, `wh4b`, `wh4e`, `wh5b`, `wh5e`, `wh6b`, "
               "`wh6e`, `wh7b`, `wh7e`, `mgid`) VALUES (NULL, 'A', '', '', 0, 600, 480, 0, NULL, "
               "NULL, NULL, NULL, NULL, NULL, NULL, NULL, 0, 1, NULL);",
               "sql exec UPDATE `branches` SET `name`='A', `address`='', `note`='', `wh1b`=0, "
               "`wh1e`=600, `wh2b`=480, `wh2e`=0, `wh3b`=NULL, `wh3e`=NULL, `wh4b`=NULL, "
               "`wh4e`=NULL, `wh5b`=NULL, `wh5e`=NULL, `wh6b`=NULL, `wh6e`=NULL, `wh7b`=0, "
               "`wh7e`=1,`number` = NULL, `mgid`= NULL WHERE bid = 9"}));
}

void tst_Branches::textsAreNeitherEscapedNorProtected()
{
    Fixture f;
    BranchRecord branch = fullBranch();
    branch.bid = 9;
    branch.number = 7;
    branch.mgid = 8;
    branch.wh7e = 702;
    branch.name = QStringLiteral("O'Brien %2 %5");
    branch.address = QStringLiteral("%1 \\");
    branch.note = QStringLiteral("%19");

    // The three texts do not fill each other. What is left in them is filled by the hours, the
    // least number first, so that the values move along, and the last markers stay.
    f.repo.addBranch(branch);
    QCOMPARE(
        f.log.take(),
        lines({"sql exec INSERT INTO `branches` (`number`, `name`, `address`, `note`, `wh1b`, "
               "`wh1e`, `wh2b`, `wh2e`, `wh3b`, `wh3e`, `wh4b`, `wh4e`, `wh5b`, `wh5e`, `wh6b`, "
               "`wh6e`, `wh7b`, `wh7e`, `mgid`) VALUES (7, 'O'Brien 102 201', '101 \\', '%19', "
               "201, 202, 301, 302, 401, 402, 501, 502, 601, 602, 701, 702, 8, %18, %19);"}));

    branch.name = QStringLiteral("%4%20");
    branch.address = QStringLiteral("a");
    branch.note = QStringLiteral("'%18");
    f.repo.updateBranch(branch);
    QCOMPARE(f.log.take(),
             lines({"sql exec UPDATE `branches` SET `name`='1019', `address`='a', `note`=''7', "
                    "`wh1b`=101, `wh1e`=102, `wh2b`=201, `wh2e`=202, `wh3b`=301, `wh3e`=302, "
                    "`wh4b`=401, `wh4e`=402, `wh5b`=501, `wh5e`=502, `wh6b`=601, `wh6e`=602, "
                    "`wh7b`=701, `wh7e`=702,`number` = 7, `mgid`= 8 WHERE bid = 9"}));
}

void tst_Branches::updateBranch_statement()
{
    Fixture f;
    f.repo.updateBranch(fullBranch());
    QCOMPARE(f.log.take(),
             lines({"sql exec UPDATE `branches` SET `name`='Košice', `address`='Hlavná 1, 040 01', "
                    "`note`='note', `wh1b`=101, `wh1e`=102, `wh2b`=201, `wh2e`=202, `wh3b`=301, "
                    "`wh3e`=302, `wh4b`=401, `wh4e`=402, `wh5b`=501, `wh5e`=502, `wh6b`=601, "
                    "`wh6e`=602, `wh7b`=701, `wh7e`=65535,`number` = 4294967295, "
                    "`mgid`= 4294967294 WHERE bid = 65535"}));
}

void tst_Branches::updateBranch_emptyNameAndBidZeroAreWritten()
{
    Fixture f;
    f.script.on(QStringLiteral("UPDATE")).withAffected(1);
    QCOMPARE(f.repo.updateBranch(BranchRecord()), 1);
    QCOMPARE(
        f.log.take(),
        lines({"sql exec UPDATE `branches` SET `name`='', `address`='', `note`='', `wh1b`=NULL, "
               "`wh1e`=NULL, `wh2b`=NULL, `wh2e`=NULL, `wh3b`=NULL, `wh3e`=NULL, `wh4b`=NULL, "
               "`wh4e`=NULL, `wh5b`=NULL, `wh5e`=NULL, `wh6b`=NULL, `wh6e`=NULL, `wh7b`=NULL, "
               "`wh7e`=NULL,`number` = NULL, `mgid`= NULL WHERE bid = 0"}));
}

void tst_Branches::updateBranch_result_data()
{
    QTest::addColumn<int>("affected");
    QTest::addColumn<int>("result");
    QTest::newRow("unknown") << -1 << 0;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("one") << 1 << 1;
    QTest::newRow("three") << 3 << 3;
}

void tst_Branches::updateBranch_result()
{
    QFETCH(int, affected);
    QFETCH(int, result);
    Fixture f;
    f.script.on(QStringLiteral("UPDATE")).withAffected(affected);
    QCOMPARE(f.repo.updateBranch(named("A", 9)), result);
    QCOMPARE(f.log.take(), lines({updateNamed}));
}

void tst_Branches::updateBranch_sqlError()
{
    Fixture f;
    f.fail("UPDATE");
    QCOMPARE(f.repo.updateBranch(named("A", 9)), -1);
    QCOMPARE(
        f.log.take(),
        lines({updateNamed,
               "critical BranchesRepository::updateBranch - ERROR: syntax, väzba (scripted)"}));
}

void tst_Branches::updateBranch_errorBesideSuccess()
{
    Fixture f;
    f.script.on(QStringLiteral("UPDATE"))
        .withAffected(1)
        .withErrorBeside(QStringLiteral("1"), QStringLiteral("beside"));
    QCOMPARE(f.repo.updateBranch(named("A", 9)), -1);
    QCOMPARE(f.log.take(), lines({updateNamed}));
}

void tst_Branches::updateBranch_closedConnection()
{
    Fixture f;
    f.close();
    // Fails without an error.
    QCOMPARE(f.repo.updateBranch(named("A", 9)), 0);
    QCOMPARE(f.log.take(), lines({notOpen, "critical BranchesRepository::updateBranch - ERROR: "}));
    QVERIFY(!f.repo.saveBranch(named("A", 9)));
    f.log.clear();
}

void tst_Branches::saveBranch_addsWithoutBid_data()
{
    QTest::addColumn<QVariant>("id");
    QTest::addColumn<bool>("saved");
    QTest::newRow("no id") << QVariant() << false;
    QTest::newRow("id") << QVariant(4) << true;
}

void tst_Branches::saveBranch_addsWithoutBid()
{
    QFETCH(QVariant, id);
    QFETCH(bool, saved);
    Fixture f;
    f.script.on(QStringLiteral("INSERT")).withInsertId(id);
    QCOMPARE(f.repo.saveBranch(named("A")), saved);
    QCOMPARE(f.log.take(), lines({insertNamed}));
}

void tst_Branches::saveBranch_updatesWithBid_data()
{
    QTest::addColumn<int>("affected");
    QTest::addColumn<bool>("saved");
    QTest::newRow("no row") << 0 << false;
    QTest::newRow("row") << 1 << true;
}

void tst_Branches::saveBranch_updatesWithBid()
{
    QFETCH(int, affected);
    QFETCH(bool, saved);
    Fixture f;
    f.script.on(QStringLiteral("UPDATE")).withAffected(affected);
    QCOMPARE(f.repo.saveBranch(named("A", 9)), saved);
    QCOMPARE(f.log.take(), lines({updateNamed}));
}

void tst_Branches::saveBranch_failedUpdateIsASuccess()
{
    Fixture f;
    f.fail("UPDATE");
    QVERIFY(f.repo.saveBranch(named("A", 9)));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical BranchesRepository::updateBranch - ERROR: "
                    "syntax, väzba (scripted)"}));
    // A failed insert is none.
    f.fail("INSERT");
    QVERIFY(!f.repo.saveBranch(named("A")));
    f.log.clear();
}

void tst_Branches::saveBranch_emptyName()
{
    Fixture f;
    QVERIFY(!f.repo.saveBranch(BranchRecord()));
    QCOMPARE(f.log.take(),
             lines({"warning BranchesRepository::addBranch() -  branch name can not be empty!"}));
}

void tst_Branches::branches_haveNoEntryRecord()
{
    Fixture f;
    f.repo.logLevel = 3;
    f.repo.addBranch(named("A"));
    f.repo.updateBranch(named("A", 9));
    f.repo.saveBranch(named("A", 9));
    QCOMPARE(f.log.take(), lines({insertNamed, updateNamed, updateNamed}));
}

void tst_Branches::reservedBranchOperation_isAlwaysFalse()
{
    Fixture f;
    f.repo.logLevel = 3;
    QVERIFY(!f.repo.reservedBranchOperation(0));
    QVERIFY(!f.repo.reservedBranchOperation(1));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Branches::membership_statementThenSignal()
{
    const Membership &operation = currentRow(memberships());
    for (const int affected : {1, 2}) {
        Fixture f;
        f.script.on(QStringLiteral("exec")).withAffected(affected);
        QVERIFY((f.repo.*operation.run)(5, str("7,8")));
        QCOMPARE(f.log.take(), (QStringList {exec(operation.statement), signalled(operation)}));
    }
}

void tst_Branches::membership_entryRecord()
{
    const Membership &operation = currentRow(memberships());
    for (const int level : {0, 1, 2, 255}) {
        Fixture f;
        f.repo.logLevel = static_cast<quint8>(level);
        (f.repo.*operation.run)(5, str("7,8"));
        QCOMPARE(f.log.take(),
                 atLevel(level,
                         QStringList {QStringLiteral("1 info BranchesRepository::%1(5, '7,8')")
                                          .arg(str(operation.name)),
                                      exec(operation.statement)}));
    }
}

void tst_Branches::membership_withoutBidOrListRunsNothing()
{
    const Membership &operation = currentRow(allMemberships());
    Fixture f;
    f.script.on(QStringLiteral("exec")).withAffected(1);
    QVERIFY(!(f.repo.*operation.run)(0, str("7,8")));
    QVERIFY(!(f.repo.*operation.run)(5, QString()));
    QCOMPARE(f.log.take(), QStringList());
    f.repo.logLevel = 1;
    QVERIFY(!(f.repo.*operation.run)(0, str("väzba")));
    QVERIFY(!(f.repo.*operation.run)(65535, str("")));
    const QString name = str(operation.name);
    QCOMPARE(f.log.take(),
             (QStringList {QStringLiteral("info BranchesRepository::%1(0, 'väzba')").arg(name),
                           QStringLiteral("info BranchesRepository::%1(65535, '')").arg(name)}));
}

void tst_Branches::membership_noRowChanged()
{
    const Membership &operation = currentRow(memberships());
    for (const int affected : {0, -1}) {
        Fixture f;
        f.script.on(QStringLiteral("exec")).withAffected(affected);
        QVERIFY(!(f.repo.*operation.run)(5, str("7,8")));
        QCOMPARE(f.log.take(), QStringList {exec(operation.statement)});
    }
}

void tst_Branches::membership_sqlError()
{
    const Membership &operation = currentRow(memberships());
    Fixture f;
    f.script.on(QStringLiteral("exec"))
        .withAffected(1)
        .withError(QStringLiteral("1064"), QStringLiteral("syntax, väzba"));
    QVERIFY(!(f.repo.*operation.run)(5, str("7,8")));
    QCOMPARE(
        f.log.take(),
        (QStringList {exec(operation.statement), error(operation, "syntax, väzba (scripted)")}));
}

void tst_Branches::membership_errorBesideAChangedRow()
{
    const Membership &operation = currentRow(memberships());
    Fixture f;
    f.script.on(QStringLiteral("exec"))
        .withAffected(1)
        .withErrorBeside(QStringLiteral("1"), QStringLiteral("beside"));
    QVERIFY((f.repo.*operation.run)(5, str("7,8")));
    QCOMPARE(f.log.take(),
             (QStringList {exec(operation.statement), error(operation, "beside (scripted)"),
                           signalled(operation)}));
}

void tst_Branches::membership_closedConnectionIsSilent()
{
    const Membership &operation = currentRow(memberships());
    Fixture f;
    f.close();
    QVERIFY(!(f.repo.*operation.run)(5, str("7,8")));
    QCOMPARE(f.log.take(), lines({notOpen}));
}

void tst_Branches::membership_listStandsAsGiven()
{
    Fixture f;
    f.script.on(QStringLiteral("exec")).withAffected(1);
    f.repo.delPeopleFromBranch(65535, QStringLiteral(" 1,,x'%1 %2"));
    QCOMPARE(f.log.take(),
             lines({"sql exec DELETE FROM brape WHERE bid = 65535 AND uid IN( 1,,x'%1 %2)",
                    "signal sigDeletedPeopleFromBranch 65535 ' 1,,x'%1 %2'"}));
}

void tst_Branches::addPeopleToBranch_failedPropagationDoesNotCount()
{
    EventLog log;
    ScriptedDatabase script;
    QSqlDatabase db = script.handle();
    db.open();
    BranchesRepository repo(nullptr, true, false);
    repo.setDb(db);
    script.on(QStringLiteral("INSERT INTO brape")).withAffected(1);
    script.on(QStringLiteral("SELECT aid")).withRows(lines({"aid"}), {{3}});
    script.on(QStringLiteral("admins_people"))
        .withError(QStringLiteral("1"), QStringLiteral("broken"));
    QVERIFY(repo.addPeopleToBranch(5, str("7")));
    QCOMPARE(log.takeMessages(),
             lines({"critical BranchesRepository::AddPeopleToAdmins - ERROR: broken (scripted)",
                    "warning BranchesRepository::slotAddedPeopleToBranch() - "
                    "AddPeopleToAdmins() FAILED!"}));
}

void tst_Branches::delBranchFromTerms_bidIsNotInTheStatement()
{
    Fixture f;
    f.repo.delBranchFromTerms(6, QStringLiteral("7"));
    QCOMPARE(f.log.take(), lines({"sql exec UPDATE term SET bid = NULL WHERE tid IN(7)"}));
}

void tst_Branches::delSectionsFromBranch_clearsTriplesFirst()
{
    Fixture f;
    f.script.on(QStringLiteral("exec")).withAffected(1);
    QVERIFY(f.repo.delSectionsFromBranch(5, str("7,8")));
    QCOMPARE(f.log.take(),
             lines({deleteTriples, deleteSections, "signal sigDeletedSectionsFromBranch 5 '7,8'"}));
}

void tst_Branches::delSectionsFromBranch_entryRecord()
{
    Fixture f;
    f.repo.delSectionsFromBranch(5, str("7,8"));
    QCOMPARE(f.log.take(), lines({deleteTriples, deleteSections}));
    f.repo.logLevel = 1;
    f.repo.delSectionsFromBranch(5, str("7,8"));
    QCOMPARE(f.log.take(),
             lines({"info BranchesRepository::delSectionsFromBranch(5, '7,8')", deleteTriples,
                    deleteSections}));
}

void tst_Branches::delSectionsFromBranch_secondResultCountsUnlessItFails_data()
{
    // -1 stands for a failure.
    QTest::addColumn<int>("triples");
    QTest::addColumn<int>("sections");
    QTest::addColumn<bool>("result");
    QTest::newRow("none, none") << 0 << 0 << false;
    QTest::newRow("none, one") << 0 << 1 << true;
    QTest::newRow("one, none") << 1 << 0 << false;
    QTest::newRow("one, one") << 1 << 1 << true;
    QTest::newRow("failed, none") << -1 << 0 << false;
    QTest::newRow("failed, one") << -1 << 1 << true;
    QTest::newRow("none, failed") << 0 << -1 << false;
    QTest::newRow("one, failed") << 1 << -1 << true;
    QTest::newRow("failed, failed") << -1 << -1 << false;
}

void tst_Branches::delSectionsFromBranch_secondResultCountsUnlessItFails()
{
    QFETCH(int, triples);
    QFETCH(int, sections);
    QFETCH(bool, result);
    Fixture f;
    ScriptedAnswer &first = f.script.on(QStringLiteral("FROM bas ")).withAffected(qAbs(triples));
    ScriptedAnswer &second = f.script.on(QStringLiteral("FROM sec_branch "))
                                 .withAffected(qAbs(sections));
    QStringList expected = lines({deleteTriples});
    if (triples < 0) {
        first.withError(QStringLiteral("1"), QStringLiteral("first"));
        expected.append(str("critical BranchesRepository::delSectionsFromBranch [bas] - ERROR: "
                            "first (scripted)"));
    }
    expected.append(str(deleteSections));
    if (sections < 0) {
        second.withError(QStringLiteral("1"), QStringLiteral("second"));
        expected.append(str("critical BranchesRepository::delSectionsFromBranch [sec_branch] - "
                            "ERROR: second (scripted)"));
    }
    if (result)
        expected.append(str("signal sigDeletedSectionsFromBranch 5 '7,8'"));
    QCOMPARE(f.repo.delSectionsFromBranch(5, str("7,8")), result);
    QCOMPARE(f.log.take(), expected);
}

void tst_Branches::delSectionsFromBranch_errorRecords()
{
    Fixture f;
    f.fail("DELETE");
    QVERIFY(!f.repo.delSectionsFromBranch(5, str("7,8")));
    QCOMPARE(f.log.takeMessages(),
             lines({"critical BranchesRepository::delSectionsFromBranch [bas] - ERROR: "
                    "syntax, väzba (scripted)",
                    "critical BranchesRepository::delSectionsFromBranch [sec_branch] - ERROR: "
                    "syntax, väzba (scripted)"}));
}

void tst_Branches::delSectionsFromBranch_errorsBesideChangedRows()
{
    Fixture f;
    f.script.on(QStringLiteral("DELETE"))
        .withAffected(1)
        .withErrorBeside(QStringLiteral("1"), QStringLiteral("beside"));
    QVERIFY(f.repo.delSectionsFromBranch(5, str("7,8")));
    QCOMPARE(
        f.log.take(),
        lines(
            {deleteTriples,
             "critical BranchesRepository::delSectionsFromBranch [bas] - ERROR: beside (scripted)",
             deleteSections,
             "critical BranchesRepository::delSectionsFromBranch [sec_branch] - ERROR: "
             "beside (scripted)",
             "signal sigDeletedSectionsFromBranch 5 '7,8'"}));
}

void tst_Branches::delSectionsFromBranch_closedConnectionIsSilent()
{
    Fixture f;
    f.close();
    QVERIFY(!f.repo.delSectionsFromBranch(5, str("7,8")));
    QCOMPARE(f.log.take(), lines({notOpen, notOpen}));
}

QTEST_GUILESS_MAIN(tst_Branches)
#include "tst_branches.moc"
