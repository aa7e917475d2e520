// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the command line knows of the plugin's messages: their levels, and what they tell.
#include "host/catalogue/messagegate.h"
#include "host/plugin/passwatch.h"

#include <QtTest>

namespace {

void row(QtMsgType type, int gate, const char *text)
{
    QTest::addRow("%d %s", gate, text) << static_cast<int>(type) << text << gate;
}

void addPersonRows()
{
    // PaM
    row(QtDebugMsg, 2, "THRWorker::addPersonIntoPam(10011)");
    row(QtDebugMsg, 1, "THRWorker::dbAddPersonIntoPam(pid: 10011, pamSettingsID: 1)");
    row(QtWarningMsg, 1,
        "THRWorker::dbAddPersonIntoPam(pid: 1, pamSettingsID: 1) - Testing mode is active, person "
        "not really add into PaM!");
    row(QtWarningMsg, 1,
        "THRWorker::dbAddPersonIntoPam(pid: 1, pamSettingsID: 1) - Unique person ID "
        "([people].uid) not found!");
    row(QtWarningMsg, 0, "THRWorker::dbAddPerson(1001.1) - addPersonIntoPam() FAILED!");
    row(QtWarningMsg, 0, "THRWorker::doSyncRecord(1001.1 ) - dbAddPersonIntoPam(10011, 1) FAILED!");
    // Branch and calendar
    row(QtDebugMsg, 2, "THRWorker::dbLoadBranches()");
    row(QtDebugMsg, 3, "THRWorker::doSyncBranchAndCalendar(1001.1)");
    row(QtDebugMsg, 2, "THRWorker::dbCheckPersonInBranch(10011, 1)");
    row(QtDebugMsg, 2, "THRWorker::getGroupIdByCalendar(B: 1, C: 1)");
    row(QtDebugMsg, 2, "THRWorker::dbCheckGroupsPlan(1, 1, 202310)");
    row(QtWarningMsg, 0, "THRWorker: Branch '9' NOT FOUND for employee: '1001.1 '");
}

void addFundAndSupervisorRows()
{
    // Leave fund
    row(QtDebugMsg, 2, "THRWorker::checkDovolenkaFond()");
    row(QtInfoMsg, 1, "THRWorker::checkDovolenkaFond(): fid=3");
    row(QtDebugMsg, 2, "THRWorker::dbCheckFundMove(pid: 10011)");
    row(QtInfoMsg, 1, "THRWorker::dbCheckFundMove(pid: 10011): exists");
    row(QtDebugMsg, 2, "THRWorker::dbCheckAttendance(pid: 10011)");
    row(QtInfoMsg, 1, "THRWorker::dbCheckAttendance(pid: 10011): NO OK");
    row(QtDebugMsg, 2, "THRWorker::loadFundStatusAndMove3(pid: 10011)");
    row(QtInfoMsg, 1, "THRWorker::loadFundStatusAndMove3(pid: 10011): 1250, load OK: YES");
    row(QtDebugMsg, 1, "THRWorker::writeFundMove3(uid: 1, value: -50)");
    row(QtWarningMsg, 0,
        "THRWorker::doSyncRecord() - loadFundStatusAndMove3(): not loaded correctly!");
    // Supervisor
    row(QtDebugMsg, 1, "THRWorker::processNadOsCis(1001.1, NOC: 1002)");
    row(QtDebugMsg, 2, "THRWorker::dbGetAidByOsCis(uid: 1002)");
    row(QtDebugMsg, 1, "THRWorker::dbGetAidByOsCis(uid: 1002): 2");
    row(QtDebugMsg, 2, "THRWorker::dbResetAdminPeopleRequest(aid: 2, uid: 1)");
    row(QtDebugMsg, 2,
        "THRWorker::dbResetAdminPeopleRequest - query 'UPDATE admins_people SET request =0 "
        "WHERE uid=1 AND aid != 2' - affected rows: 0");
    row(QtDebugMsg, 1, "THRWorker::dbResetAdminPeopleRequest(aid: 2, uid: 1) - affected: 0");
    row(QtDebugMsg, 2, "THRWorker::dbSetAdminPeopleRequest(aid: 2, uid: 1)");
    row(QtDebugMsg, 2, "THRWorker - query 'INSERT INTO admins_people' - affected rows: 1");
    row(QtDebugMsg, 1, "THRWorker::dbSetAdminPeopleRequest(aid: 2, uid: 1) - affected: -1");
    row(QtWarningMsg, 0, "THRWorker - admin s osobnym cislom 1002 nebol najdeny!");
}

void addRepositoryRows()
{
    // Terminals, branches, plans
    row(QtDebugMsg, 2, "THRWorker::addTermSyncPerson(10011, U, people)");
    row(QtWarningMsg, 0, "THRWorker::addTermSyncPerson(10011) - uid NOT selected from DB!");
    row(QtInfoMsg, 1, "BranchesRepository::addPeopleToBranch(1, '14,15')");
    row(QtInfoMsg, 1, "BranchesRepository::getTids4Branch(1)");
    row(QtInfoMsg, 1, "BranchesRepository::addBAS(1-2-3)");
    row(QtDebugMsg, 2, "GroupsPlanRepo::add(G: 1, U: 1, S: 202310)");
    row(QtDebugMsg, 2, "GroupsPlanRepo::del(G: 1, U: 1, S: 202310)");
    row(QtDebugMsg, 2, "GroupsPlanRepo::updateGroupsMonth(1, 202310)");
}

void see(PassWatch *watch, QtMsgType type, const QStringList &texts)
{
    for (const QString &text : texts)
        watch->see(type, text);
}

} // namespace

class tst_Messages : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gates_data();
    void gates();
    void settingsKeysAreHiddenBelowLevel2();
    void passWatch_followsAPass();
    void passWatch_countsOnlyPersonsThatWereWritten();
    void passWatch_recognisesWhatEndsARun();
};

void tst_Messages::gates_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("gate");
    addPersonRows();
    addFundAndSupervisorRows();
    addRepositoryRows();
    // Whatever the table does not know
    row(QtDebugMsg, 1, "something new");
    row(QtWarningMsg, 0, "something odd");
    row(QtCriticalMsg, 0, "THRWorker::parseLine('");
}

void tst_Messages::gates()
{
    QFETCH(int, type);
    QFETCH(QString, text);
    QFETCH(int, gate);
    QCOMPARE(messageGate(static_cast<QtMsgType>(type), text), gate);
}

void tst_Messages::settingsKeysAreHiddenBelowLevel2()
{
    const QString line = QStringLiteral(
        "EnviroSettings::value() - key: 'enabled', environment key: ENABLED");
    QCOMPARE(messageGate(QtDebugMsg, line), 0);
    QVERIFY(!isShown(QtDebugMsg, line, 0));
    QVERIFY(!isShown(QtDebugMsg, line, 1));
    QVERIFY(isShown(QtDebugMsg, line, 2));
}

void tst_Messages::passWatch_followsAPass()
{
    PassWatch watch;
    QVERIFY(!watch.isPassRunning());
    QCOMPARE(watch.see(QtDebugMsg, QStringLiteral("THRWorker::dbCheckOpen()")), PassWatch::Nothing);
    QCOMPARE(
        watch.see(QtDebugMsg, QStringLiteral("THRWorker: BEGIN synchronization #1 (force: NO)")),
        PassWatch::Nothing);
    QVERIFY(watch.isPassRunning());
    see(&watch, QtDebugMsg, {QStringLiteral("THRWorker::doSync() - stack count: 120")});
    QCOMPARE(watch.recordsOfPass(), 120);
    QCOMPARE(watch.see(QtDebugMsg, QStringLiteral("THRWorker::doSyncRecord(1001.1 X)")),
             PassWatch::RecordBegan);
    QCOMPARE(watch.recordsBegun(), 1);
    // Not a record, but what became of one.
    QCOMPARE(watch.see(QtWarningMsg,
                       QStringLiteral("THRWorker::doSyncRecord() - funds_move not writed")),
             PassWatch::Nothing);
    QCOMPARE(watch.figures().passes, 0);
    QCOMPARE(watch.see(QtDebugMsg,
                       QStringLiteral("THRWorker: END synchronization #1 (waiting records: 7)")),
             PassWatch::PassEnded);
    QVERIFY(!watch.isPassRunning());
    // Closing the connection speaks the words of opening it, which do not count before the end.
    const QString closing = QStringLiteral("THRWorker::dbCheckOpen()");
    QCOMPARE(watch.see(QtDebugMsg, closing), PassWatch::PassOver);
    QCOMPARE(watch.see(QtDebugMsg, closing), PassWatch::Nothing);
    QCOMPARE(watch.figures().passes, 1);
    QCOMPARE(watch.figures().records, 120);
    QCOMPARE(watch.figures().waiting, 7);

    QCOMPARE(watch.tickOfPass().number, 0U);
    see(&watch, QtDebugMsg,
        {QStringLiteral("THRWorker::checkSync(): #4294967290"),
         QStringLiteral("THRWorker: BEGIN synchronization #2 (force: NO)"),
         QStringLiteral("THRWorker::doSync() - stack count: 3"),
         QStringLiteral("THRWorker: END synchronization #2 (waiting records: 0)")});
    QCOMPARE(watch.recordsBegun(), 0);
    QCOMPARE(watch.figures().records, 123);
    QCOMPARE(watch.figures().waiting, 0);
    see(&watch, QtDebugMsg, {QStringLiteral("THRWorker::checkSync(): #4294967291")});
    QCOMPARE(watch.tickOfPass().number, 4294967290U);
    QVERIFY(watch.tickOfPass().moment <= QDateTime::currentDateTime());
}

void tst_Messages::passWatch_countsOnlyPersonsThatWereWritten()
{
    PassWatch watch;
    see(&watch, QtDebugMsg,
        {QStringLiteral("THRWorker::dbAddPerson(1.1 A)"),
         QStringLiteral("THRWorker::dbAddPersonIntoPam(pid: 11, pamSettingsID: 1)"),
         QStringLiteral("THRWorker::dbAddPerson(2.1 B)"),
         QStringLiteral("THRWorker::dbAddPerson(3.1 C)"),
         QStringLiteral("THRWorker::dbUpdatePerson(4.1 D)"),
         QStringLiteral("THRWorker::dbUpdatePerson(5.1 E)"),
         QStringLiteral("THRWorker::dbUpdatePerson(6.1 F)")});
    QCOMPARE(watch.figures().added, 3);
    QCOMPARE(watch.figures().updated, 3);
    see(&watch, QtCriticalMsg,
        {QStringLiteral("THRWorker::dbAddPerson(2.1) - SQL ERROR: syntax"),
         QStringLiteral("THRWorker::dbUpdatePerson(5.1) - SQL ERROR: syntax"),
         QStringLiteral("THRWorker::dbLoadPeople() - SQL ERROR [1]: syntax")});
    see(&watch, QtWarningMsg,
        {QStringLiteral("THRWorker::dbAddPerson(3.1) - Testing mode is active, person not really "
                        "add!"),
         QStringLiteral("THRWorker::dbUpdatePerson(6.1 F) - Testing mode is active, person not "
                        "really update!"),
         QStringLiteral("THRWorker::dbAddPerson(1.1) - addPersonIntoPam() FAILED!")});
    QCOMPARE(watch.figures().added, 1);
    QCOMPARE(watch.figures().updated, 1);
}

void tst_Messages::passWatch_recognisesWhatEndsARun()
{
    PassWatch watch;
    QCOMPARE(watch.see(QtWarningMsg, QStringLiteral("TalvenHR is DISABLED")),
             PassWatch::PluginDisabled);
    QCOMPARE(watch.see(QtWarningMsg, QStringLiteral("THRWorker::checkSync() - database not open!")),
             PassWatch::DatabaseNotOpen);
}

QTEST_GUILESS_MAIN(tst_Messages)
#include "tst_messages.moc"
