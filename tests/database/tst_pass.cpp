// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whole passes from a real export file into a real database, and what a lost server leaves.
#include "support/databasefixture.h"
#include "support/databaseworker.h"
#include "support/localseconds.h"
#include "support/patience.h"

#include <QFileInfo>
#include <QtTest>

namespace {

const char allPeople[] = "SELECT * FROM people ORDER BY uid";

/// Kills the server at the moment at which a certain line is logged, once in its life.
class ServerKiller
{
public:
    ServerKiller(PrivateServer &victim, const char *line) :
        server(victim),
        fatalLine(QString::fromLatin1(line))
    {
        current = this;
        previousHandler = qInstallMessageHandler(handleMessage);
    }
    ~ServerKiller()
    {
        qInstallMessageHandler(previousHandler);
        current = nullptr;
    }

private:
    static void handleMessage(QtMsgType type, const QMessageLogContext &context,
                              const QString &text)
    {
        current->previousHandler(type, context, text);
        if (text.startsWith(current->fatalLine) && current->server.isRunning())
            current->server.kill();
    }

    static ServerKiller *current;

    PrivateServer &server;
    const QString fatalLine;
    QtMessageHandler previousHandler;
};

ServerKiller *ServerKiller::current = nullptr;

/// What a pass says of persons and failures, without the other steps for a record.
QStringList takeOutcome(EventLog &log)
{
    return log.takeMatching({QStringLiteral("THRWorker::dbAddPerson("),
                             QStringLiteral("THRWorker::dbUpdatePerson("),
                             QStringLiteral("synchronization"), QStringLiteral("warning "),
                             QStringLiteral("critical ")});
}

} // namespace

class tst_Pass : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void firstPass_addsAndUpdates();
    void firstPass_updatesIdenticalPeopleToo();
    void secondPass_writesNothing();
    void changedPerson_aloneIsWritten();
    void forcedPass_clearsTheVariable();
    void forcedPass_clearsTheVariableWithoutAFile();
    void forcedPass_bringsChangedRowsBackIntoLine();
    void leavingPerson_getsAnEnd();
    void leavingPerson_whoIsUnknownStaysOut();
    void personThatComesBack_isRevived();
    void evidenceState_opensAndClosesAnInterval();
    void unusableLines_leaveNoTrace();
    void refusedPerson_stopsNobodyElse();
    void unknownBegin_staysTheSame();
    void testMode_writesNoPerson();
    void testMode_stillReopensAttendance();
    void recalculation_fromTheFirstOfThePreviousMonth();
    void readFile_isRemoved();
    void connection_isOpenDuringATickOnly();

    void peopleNotLoaded_dropsTheLoad_data();
    void peopleNotLoaded_dropsTheLoad();
    void serverKilledBetweenTicks();
    void serverKilledBeforeTheLoad();
    void serverKilledBeforeAWrite();

private:
    void prepare() override
    {
        // For what is written to last when the server is killed.
        database->execute(QStringLiteral("SET GLOBAL innodb_flush_log_at_trx_commit = 1"));
    }
    QStringList people();
    /// Who stands on the list of the PaM block, and the rows of all who are enrolled.
    QStringList enrolled();
    QString forceVariable();
};

void tst_Pass::init()
{
    database->clear();
    database->execute(QStringLiteral("INSERT INTO branches (bid, number) VALUES (70, 7), (80, 8)"));
    database->execute(QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.active', '1')"));
}

QStringList tst_Pass::people()
{
    return database->rows(
        QStringLiteral("SELECT pamId, name, surname, phone, status FROM people ORDER BY pid"));
}

QStringList tst_Pass::enrolled()
{
    return database->rows(
               QStringLiteral("SELECT value FROM vars WHERE name='exportPam.1.selPeople'"))
        + database->rows(QStringLiteral("SELECT pid, id FROM people_pam JOIN people USING(uid) "
                                        "ORDER BY pid"));
}

QString tst_Pass::forceVariable()
{
    return database->value(
        QStringLiteral("SELECT value FROM vars WHERE name='OQS.THRWorker.forceSync'"));
}

// What a pass writes

void tst_Pass::firstPass_addsAndUpdates()
{
    database->execute(
        QStringLiteral(
            "INSERT INTO people (pid, pamId, name, surname, phone, begin, calendarID) VALUES "
            "(10011, '1001.1', 'Ján', 'Novák', 'old', %1, 3), "
            "(10091, '1009.1', 'Eva', 'Iná', 'not in the file', %1, 3)")
            .arg(seconds(QDate(2015, 3, 1))));
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    f.writeExport({exportHeader(),
                   record().pid(1001, 1).phone(QStringLiteral("new")).calendar(3).line(),
                   record()
                       .pid(1002, 1)
                       .name(QStringLiteral("Ľubica"), QStringLiteral("Ťažká"))
                       .titles(QStringLiteral("Mgr."), QStringLiteral("PhD."))
                       .employed(QDate(2020, 2, 29), QDate(2050, 6, 30))
                       .calendar(5)
                       .tpp(53)
                       .line()});
    f.tick();
    QCOMPARE(takeOutcome(f.log),
             lines({"debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker::dbUpdatePerson(1001.1  Ján Novák  (T: new) "
                    "N-V: 1 Mar 2015 -  TPP: 11  K: 3  DOV: 0, S: 0)",
                    "debug THRWorker::dbAddPerson(1002.1 Mgr. Ľubica Ťažká PhD. (T: ) "
                    "N-V: 29 Feb 2020 - 30 Jun 2050 TPP: 53  K: 5  DOV: 0, S: 0)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)"}));
    QCOMPARE(people(),
             lines({"1001.1|Ján|Novák|new|1", "1002.1|Ľubica|Ťažká||1",
                    "1009.1|Eva|Iná|not in the file|1"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT title, title2, begin, end, rsBegin, type, did, "
                                           "bid, calendarID FROM people WHERE pid=10021")),
             QStringList {QStringLiteral("Mgr.|PhD.|%1|%2|NULL|4|1|NULL|5")
                              .arg(localSeconds(QDate(2020, 2, 29)))
                              .arg(localSeconds(QDate(2050, 6, 30), 23, 59, 59))});
    // Only who is new.
    QCOMPARE(enrolled(), lines({"10021", "10021|2"}));
}

void tst_Pass::firstPass_updatesIdenticalPeopleToo()
{
    const QStringList file {record().pid(1001, 1).line(), record().pid(1002, 1).line()};
    {
        DatabaseWorker f(*database);
        f.writeExport(file);
        f.tick();
        f.log.clear();
    }
    // A worker that was started anew has nothing to compare with.
    database->execute(QStringLiteral("UPDATE people SET edited=9"));
    DatabaseWorker f(*database);
    f.worker.setLogLevel(1);
    f.writeExport(file);
    f.tick();
    const QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.filter(QStringLiteral("THRWorker::dbUpdatePerson(")).size(), 2);
    QCOMPARE(outcome.filter(QStringLiteral("THRWorker::dbAddPerson(")).size(), 0);
    QCOMPARE(database->value(QStringLiteral("SELECT COUNT(*) FROM people WHERE edited=9")),
             QStringLiteral("0"));
}

void tst_Pass::secondPass_writesNothing()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.worker.setMes({{ushort(21), QStringLiteral("MD")}});
    f.writeExport({exportHeader(), record().pid(1001, 1).es(21).line(),
                   record().pid(1002, 1).employed(QDate()).line(),
                   record().pid(1003, 1).employed(QDate(2015, 3, 1), QDate(2050, 3, 27)).line(),
                   record().pid(1004, 1).relationState(4).line()});
    f.tick();
    QCOMPARE(people().size(), 3);
    // The first pass after that finds them in the database, and moves nothing either.
    for (const int pass : {2, 3}) {
        database->execute(QStringLiteral("UPDATE people SET edited=9"));
        const QStringList before = database->rows(QString::fromLatin1(allPeople));
        f.log.clear();
        f.worker.setLogLevel(1);
        f.tick();
        QCOMPARE(
            takeOutcome(f.log),
            (QStringList {
                QStringLiteral("debug THRWorker: BEGIN synchronization #%1 (force: NO)").arg(pass),
                QStringLiteral("debug THRWorker: END synchronization #%1 (waiting records: 0)")
                    .arg(pass)}));
        QCOMPARE(database->rows(QString::fromLatin1(allPeople)), before);
    }
}

void tst_Pass::changedPerson_aloneIsWritten()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    const RecordBuilder unchanged = record().pid(1001, 1);
    const RecordBuilder changing = record().pid(1002, 1);
    f.writeExport({unchanged.line(), changing.line()});
    f.tick();
    database->execute(QStringLiteral("UPDATE people SET edited=9"));
    f.log.clear();
    f.worker.setLogLevel(1);
    f.writeExport({unchanged.line(), RecordBuilder(changing).phone(QStringLiteral("new")).line()});
    f.tick();
    QCOMPARE(takeOutcome(f.log),
             lines({"debug THRWorker: BEGIN synchronization #2 (force: NO)",
                    "debug THRWorker::dbUpdatePerson(1002.1  Ján Novák  (T: new) "
                    "N-V: 1 Mar 2015 -  TPP: 11  K: 0  DOV: 0, S: 0)",
                    "debug THRWorker: END synchronization #2 (waiting records: 0)"}));
    QCOMPARE(people(), lines({"1001.1|Ján|Novák||1", "1002.1|Ján|Novák|new|1"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT edited=9, editor FROM people ORDER BY pid")),
             lines({"1|NULL", "0|0"}));
}

void tst_Pass::forcedPass_clearsTheVariable()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(100);
    f.writeExport({record().pid(1001, 1).line()});
    f.tick();
    f.tick();
    QCOMPARE(f.peer.syncCount, 1u);
    f.log.clear();
    database->force();
    f.worker.setLogLevel(1);
    f.tick();
    QCOMPARE(takeOutcome(f.log),
             lines({"debug THRWorker: BEGIN synchronization #2 (force: YES)",
                    "debug THRWorker: END synchronization #2 (waiting records: 0)"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT name, value FROM vars "
                                           "WHERE name NOT LIKE 'exportPam.%'")),
             lines({"OQS.THRWorker.forceSync|0"}));
    f.tick();
    QCOMPARE(f.peer.syncCount, 2u);
    f.log.clear();
}

void tst_Pass::forcedPass_clearsTheVariableWithoutAFile()
{
    DatabaseWorker f(*database);
    f.peer.tickCount = 1;
    f.worker.setImportFile(QStringLiteral("/nowhere/ron.data"));
    database->force();
    f.tick();
    QCOMPARE(f.peer.syncCount, 1u);
    QCOMPARE(forceVariable(), QStringLiteral("0"));
}

void tst_Pass::forcedPass_bringsChangedRowsBackIntoLine()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport(
        {record().pid(1001, 1).line(), record().pid(1002, 1).line(), record().pid(1003, 1).line()});
    f.tick();
    database->execute(QStringLiteral("UPDATE people SET name='Iný' WHERE pid=10011"));
    database->execute(QStringLiteral("UPDATE people SET status=0 WHERE pid=10031"));
    f.tick();
    // Unchanged in the file, so left alone.
    QCOMPARE(people(),
             lines({"1001.1|Iný|Novák||1", "1002.1|Ján|Novák||1", "1003.1|Ján|Novák||0"}));
    f.log.clear();
    database->force();
    f.worker.setLogLevel(1);
    f.tick();
    const QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.filter(QStringLiteral("THRWorker::dbUpdatePerson(1001.1 ")).size(), 1);
    QCOMPARE(outcome.filter(QStringLiteral("1002.1 ")).size(), 0);
    QCOMPARE(outcome.filter(QStringLiteral("THRWorker::dbAddPerson(1003.1 ")).size(), 1);
    QCOMPARE(people(),
             lines({"1001.1|Ján|Novák||1", "1002.1|Ján|Novák||1", "1003.1|Ján|Novák||1"}));
}

void tst_Pass::leavingPerson_getsAnEnd()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({record().pid(1001, 1).line()});
    f.tick();
    const QDate yesterday = today().addDays(-1);
    f.writeExport({record().pid(1001, 1).employed(QDate(2015, 3, 1), yesterday).line()});
    f.tick();
    // Only an end; the attendance system decides when the person becomes inactive.
    QCOMPARE(database->rows(QStringLiteral("SELECT end, status FROM people")),
             QStringList {QStringLiteral("%1|1").arg(localSeconds(yesterday, 23, 59, 59))});
    // Once out of the file the person stays as is.
    const QStringList before = database->rows(QString::fromLatin1(allPeople));
    f.writeExport({record().pid(1002, 1).line()});
    f.tick();
    QCOMPARE(database->rows(QStringLiteral("SELECT * FROM people WHERE pid=10011")), before);
    f.log.clear();
}

void tst_Pass::leavingPerson_whoIsUnknownStaysOut()
{
    DatabaseWorker f(*database);
    f.writeExport({record().pid(1001, 1).employed(QDate(2015, 3, 1), today().addDays(-1)).line(),
                   record().pid(1002, 1).employed(QDate(2015, 3, 1), today()).line(),
                   record().pid(1003, 1).relationState(4).line()});
    f.tick();
    QCOMPARE(people(), lines({"1002.1|Ján|Novák||1"}));
    QCOMPARE(f.peer.lastRecords.size(), 3);
    f.log.clear();
}

void tst_Pass::personThatComesBack_isRevived()
{
    database->execute(QStringLiteral(
        "INSERT INTO people SET uid=77, pid=10011, pamId='1001.1', name='Ján', surname='Starý', "
        "begin=1, end=2, rsBegin=3, rsEnd=4, rsText='RD', status=0, did=5, bid=80, calendarID=2, "
        "lastCalc=7, calc=8, created=9"));
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.worker.setDepartmentId(6);
    f.writeExport({record().pid(1001, 1).branch(7).calendar(3).line()});
    f.worker.setLogLevel(1);
    f.tick();
    const QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.filter(QStringLiteral("THRWorker::dbAddPerson(1001.1 ")).size(), 1);
    QCOMPARE(outcome.filter(QStringLiteral("THRWorker::dbUpdatePerson(")).size(), 0);
    QCOMPARE(
        database->rows(QStringLiteral("SELECT uid, name, surname, begin, end, rsBegin, rsEnd, "
                                      "rsText, status, did, created FROM people")),
        QStringList {
            QStringLiteral("77|Ján|Novák|%1|NULL|3|4|RD|1|1|9").arg(seconds(QDate(2015, 3, 1)))});
    // The row keeps its branch; its person joins the one of the file.
    QCOMPARE(database->rows(QStringLiteral("SELECT bid FROM people")), lines({"80"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT bid, uid FROM brape")), lines({"70|77"}));
    QCOMPARE(enrolled(), lines({"10011", "10011|1"}));
}

void tst_Pass::evidenceState_opensAndClosesAnInterval()
{
    const QDate begun = today().addDays(-40);
    const RecordBuilder employee = record().pid(1001, 1);
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.worker.setMes({{ushort(21), QStringLiteral("materská")}});
    const QString interval = QStringLiteral("SELECT rsBegin, rsEnd, rsText, lastCalc FROM people");

    f.writeExport({employee.line()});
    f.tick();
    QCOMPARE(database->rows(interval), lines({"NULL|NULL||0"}));
    // The state comes: an interval from today on, to be calculated from today on.
    f.writeExport({RecordBuilder(employee).es(21).line()});
    f.tick();
    QCOMPARE(database->rows(interval),
             QStringList {QStringLiteral("%1|NULL|materská|%2")
                              .arg(seconds(today()), seconds(today().addDays(-1)))});
    // Time goes by, and nothing changes.
    database->execute(
        QStringLiteral("UPDATE people SET rsBegin=%1, lastCalc=2000000000").arg(seconds(begun)));
    f.tick();
    database->force();
    f.tick();
    QCOMPARE(database->rows(interval),
             QStringList {QStringLiteral("%1|NULL|materská|2000000000").arg(seconds(begun))});
    // The state goes: the interval ends today and keeps its text.
    f.writeExport({employee.line()});
    f.tick();
    QCOMPARE(database->rows(interval),
             QStringList {QStringLiteral("%1|%2|materská|%3")
                              .arg(seconds(begun), seconds(today()), seconds(begun.addDays(-1)))});
    f.log.clear();
}

void tst_Pass::unusableLines_leaveNoTrace()
{
    DatabaseWorker f(*database);
    f.worker.setLogLevel(2);
    f.writeExport({exportHeader(), QString(), QStringLiteral("   "),
                   record().pid(1001, 1).line() + QStringLiteral("|one more"),
                   record().pid(0, 1).line(), record().pid(1002, 0).line(),
                   record().pid(1003, 1).name(QString(), QString()).line(),
                   record().pid(1004, 1).line()});
    f.tick();
    QVERIFY(f.log.contains(QStringLiteral("debug THRWorker::doSync() - stack count: 1")));
    const QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.filter(QStringLiteral("warning ")), QStringList());
    QCOMPARE(outcome.filter(QStringLiteral("critical ")), QStringList());
    QCOMPARE(people(), lines({"1004.1|Ján|Novák||1"}));
}

void tst_Pass::refusedPerson_stopsNobodyElse()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    const RecordBuilder refused = record().pid(1002, 1).name(QStringLiteral("Seán"),
                                                             QStringLiteral("O'Hara"));
    f.writeExport({record().pid(1001, 1).line(), refused.line(), record().pid(1003, 1).line()});
    f.tick();
    const QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.size(), 1);
    QVERIFY2(outcome.first().startsWith(
                 QStringLiteral("critical THRWorker::dbAddPerson(1002.1) - SQL ERROR: You have an "
                                "error in your SQL syntax; ")),
             qPrintable(outcome.first()));
    QCOMPARE(people(), lines({"1001.1|Ján|Novák||1", "1003.1|Ján|Novák||1"}));
    QCOMPARE(enrolled(), lines({"10011,10031", "10011|1", "10031|1"}));
    // It is remembered, and so not tried again.
    f.tick();
    QCOMPARE(takeOutcome(f.log), QStringList());
}

void tst_Pass::unknownBegin_staysTheSame()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({record().pid(1001, 1).employed(QDate()).line()});
    f.tick();
    QCOMPARE(database->value(QStringLiteral("SELECT begin FROM people")),
             seconds(QDate(2000, 1, 1)));
    // The row reads as the first of 2000, the file as nothing: a forced pass writes the same again.
    f.log.clear();
    database->force();
    f.worker.setLogLevel(1);
    f.tick();
    QCOMPARE(takeOutcome(f.log).filter(QStringLiteral("THRWorker::dbUpdatePerson(")).size(), 1);
    QCOMPARE(database->value(QStringLiteral("SELECT begin FROM people")),
             seconds(QDate(2000, 1, 1)));
}

void tst_Pass::testMode_writesNoPerson()
{
    database->execute(QStringLiteral("INSERT INTO people (pid, pamId, name, phone) VALUES "
                                     "(10011, '1001.1', 'Ján', 'old')"));
    const QStringList before = database->rows(QString::fromLatin1(allPeople));
    DatabaseWorker f(*database);
    f.worker.setTestMode(true);
    f.worker.setLogLevel(1);
    f.writeExport(
        {record().pid(1001, 1).phone(QStringLiteral("new")).line(), record().pid(1002, 1).line()});
    f.tick();
    QCOMPARE(f.log.takeMatching({QStringLiteral("not really ")}),
             lines({"warning THRWorker::dbUpdatePerson(1001.1 Novák Ján (S: 0, K: 0 from ) "
                    "N-V: 1 Mar 2015 - ; ES: 0, RS:  -  '' TPP: 11  DOV: 0 NOC: 0) - Testing mode "
                    "is active, person not really update!",
                    "warning THRWorker::dbAddPerson(1002.1) - Testing mode is active, "
                    "person not really add!",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 10021, pamSettingsID: 1) - "
                    "Testing mode is active, person not really add into PaM!"}));
    QCOMPARE(database->rows(QString::fromLatin1(allPeople)), before);
    QCOMPARE(enrolled(), QStringList());
}

// Recalculation; found uids last as long as the process, so each function has a uid and pid of its
// own

void tst_Pass::testMode_stillReopensAttendance()
{
    database->execute(QStringLiteral("INSERT INTO people (uid, pid, pamId, name, calendarID, "
                                     "lastCalc, calc) VALUES (2001, 20011, '2001.1', 'Ján', 3, "
                                     "2000000000, 8)"));
    database->execute(QStringLiteral("INSERT INTO atten (uid, `date`, ok) VALUES (2001, %1, 1)")
                          .arg(seconds(today())));
    DatabaseWorker f(*database);
    f.worker.setTestMode(true);
    f.writeExport({record().pid(2001, 1).calendar(4).line()});
    f.tick();
    QCOMPARE(database->rows(QStringLiteral("SELECT name, calendarID, lastCalc, calc FROM people")),
             QStringList {
                 QStringLiteral("Ján|3|%1|0").arg(seconds(firstOfPreviousMonth().addDays(-1)))});
    QCOMPARE(database->rows(QStringLiteral("SELECT ok FROM atten")), lines({"-1"}));
    f.log.clear();
}

void tst_Pass::recalculation_fromTheFirstOfThePreviousMonth()
{
    const QDate first = firstOfPreviousMonth();
    database->execute(QStringLiteral("INSERT INTO people (uid, pid, pamId, name, surname, begin, "
                                     "bid, calendarID, lastCalc, calc) VALUES "
                                     "(2002, 20021, '2002.1', 'Ján', 'Novák', %1, 70, 3, "
                                     "2000000000, 8), "
                                     "(2003, 20031, '2003.1', 'Ján', 'Novák', %1, 70, 3, "
                                     "2000000000, 8)")
                          .arg(seconds(QDate(2015, 3, 1))));
    database->execute(
        QStringLiteral("INSERT INTO atten (uid, `date`, `lock`, man, ok) VALUES "
                       "(2002, %1, 0, 0, 1), (2002, %2, 0, 0, 1), (2002, %3, 1, 0, 1), "
                       "(2002, %4, 0, 1, 1), (2002, %5, 0, 0, 1), (2003, %2, 0, 0, 1)")
            .arg(seconds(first.addDays(-1)), seconds(first), seconds(first.addDays(1)),
                 seconds(first.addDays(2)), seconds(today())));
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    const RecordBuilder moving = record().pid(2002, 1).calendar(3);
    const QString staying = record().pid(2003, 1).branch(7).calendar(3).line();
    f.writeExport({RecordBuilder(moving).branch(8).line(), staying});
    f.tick();
    QCOMPARE(database->rows(QStringLiteral("SELECT uid, bid, lastCalc, calc FROM people "
                                           "ORDER BY uid")),
             (QStringList {QStringLiteral("2002|80|%1|0").arg(seconds(first.addDays(-1))),
                           QStringLiteral("2003|70|2000000000|8")}));
    const QString attendance = QStringLiteral("SELECT uid, ok FROM atten ORDER BY uid, `date`");
    QCOMPARE(database->rows(attendance),
             lines({"2002|1", "2002|-1", "2002|1", "2002|1", "2002|-1", "2003|1"}));

    // It has been calculated, and stays so with the next pass.
    database->execute(QStringLiteral("UPDATE atten SET ok=1"));
    f.tick();
    database->force();
    f.tick();
    QVERIFY(!database->rows(attendance).join(QLatin1Char(' ')).contains(QStringLiteral("|-1")));
    f.log.clear();
}

// Around the pass

void tst_Pass::readFile_isRemoved()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.worker.setDeleteFile(true);
    const QString path = f.writeExport({record().pid(1001, 1).line()});
    f.tick();
    QVERIFY(!QFileInfo::exists(path));
    QCOMPARE(people(), lines({"1001.1|Ján|Novák||1"}));
    // Without a file nobody is touched.
    const QStringList before = database->rows(QString::fromLatin1(allPeople));
    f.log.clear();
    f.tick();
    QCOMPARE(f.log.takeMessages(), QStringList());
    QCOMPARE(database->rows(QString::fromLatin1(allPeople)), before);
}

void tst_Pass::connection_isOpenDuringATickOnly()
{
    DatabaseWorker f(*database);
    QCOMPARE(database->pluginSessions(), 1);
    f.tick();
    QVERIFY(!f.peer.db.isOpen());
    QTRY_COMPARE_WITH_TIMEOUT(database->pluginSessions(), 0, longestWait);
    f.tick();
    QVERIFY(!f.peer.db.isOpen());
    QTRY_COMPARE_WITH_TIMEOUT(database->pluginSessions(), 0, longestWait);
    f.log.clear();
}

// Failures

void tst_Pass::peopleNotLoaded_dropsTheLoad_data()
{
    QTest::addColumn<QString>("table");
    QTest::newRow("people") << QStringLiteral("people");
    QTest::newRow("branches") << QStringLiteral("branches");
}

void tst_Pass::peopleNotLoaded_dropsTheLoad()
{
    QFETCH(QString, table);
    DatabaseWorker f(*database);
    f.peer.tickCount = 1;
    f.worker.setDeleteFile(true);
    f.worker.setLogLevel(1);
    const QString path = f.writeExport({record().pid(1001, 1).line()});
    database->force();
    database->hideTable(table);
    f.tick();
    database->showTable(table);
    QCOMPARE(takeOutcome(f.log),
             (QStringList {
                 QStringLiteral("debug THRWorker: BEGIN synchronization #1 (force: YES)"),
                 QStringLiteral("critical THRWorker::dbLoadPeople() - SQL ERROR [1146]: Table "
                                "'attendance.%1' doesn't exist QMYSQL: Unable to execute query")
                     .arg(table),
                 QStringLiteral("critical THRWorker: load people from ORVDB failed - "
                                "synchronization terminated!"),
                 QStringLiteral("debug THRWorker: END synchronization #1 (waiting records: 0)")}));
    QVERIFY(f.peer.importedRecords.isEmpty());
    QVERIFY(f.peer.lastRecords.isEmpty());
    QCOMPARE(forceVariable(), QStringLiteral("0"));
    // The file is gone, and its content with it.
    QVERIFY(!QFileInfo::exists(path));
    database->force();
    f.tick();
    QCOMPARE(people(), QStringList());
    // The next file is read.
    f.writeExport({record().pid(1001, 1).line()});
    database->force();
    f.tick();
    QCOMPARE(people(), lines({"1001.1|Ján|Novák||1"}));
    f.log.clear();
}

void tst_Pass::serverKilledBetweenTicks()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.writeExport({record().pid(1001, 1).line()});
    f.tick();
    f.log.clear();
    database->server().kill();
    f.worker.setLogLevel(1);
    f.tick();
    QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.size(), 2);
    QVERIFY2(outcome.at(0).startsWith(QStringLiteral(
                 "critical THRWorker::dbCheckOpen() - SQL ERROR: Can't connect to ")),
             qPrintable(outcome.at(0)));
    QCOMPARE(outcome.at(1), QStringLiteral("warning THRWorker::checkSync() - database not open!"));
    QCOMPARE(f.peer.tickCount, 2u);
    QVERIFY(!f.peer.inProgress);

    database->restart();
    f.writeExport({record().pid(1001, 1).phone(QStringLiteral("new")).line()});
    f.tick();
    outcome = takeOutcome(f.log);
    QCOMPARE(outcome.size(), 3);
    QCOMPARE(outcome.at(0),
             QStringLiteral("debug THRWorker: BEGIN synchronization #2 (force: NO)"));
    QCOMPARE(people(), lines({"1001.1|Ján|Novák|new|1"}));
}

void tst_Pass::serverKilledBeforeTheLoad()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.worker.setLogLevel(1);
    f.writeExport({record().pid(1001, 1).line()});
    {
        const ServerKiller killer(database->server(), "THRWorker: BEGIN synchronization #1");
        f.tick();
    }
    const QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.size(), 4);
    // 2006 or 2013, as the loss is noticed while sending or while receiving.
    const QRegularExpression failure(QStringLiteral(
        "^critical THRWorker::dbLoadPeople\\(\\) - SQL ERROR \\[20(06|13)\\]: .*QMYSQL: "
        "Unable to execute query$"));
    QVERIFY2(failure.match(outcome.at(1)).hasMatch(), qPrintable(outcome.at(1)));
    QCOMPARE(outcome.at(2),
             QStringLiteral("critical THRWorker: load people from ORVDB failed - "
                            "synchronization terminated!"));
    QCOMPARE(outcome.at(3),
             QStringLiteral("debug THRWorker: END synchronization #1 (waiting records: 0)"));
    QVERIFY(!f.peer.inProgress);

    database->restart();
    f.tick();
    QCOMPARE(people(), lines({"1001.1|Ján|Novák||1"}));
    f.log.clear();
}

void tst_Pass::serverKilledBeforeAWrite()
{
    DatabaseWorker f(*database);
    f.worker.setSyncInterval(1);
    f.worker.setLogLevel(1);
    f.writeExport(
        {record().pid(1001, 1).line(), record().pid(1002, 1).line(), record().pid(1003, 1).line()});
    {
        const ServerKiller killer(database->server(), "THRWorker::dbAddPerson(1002.1 ");
        f.tick();
    }
    // The walk goes on to the end.
    QStringList outcome = takeOutcome(f.log);
    QCOMPARE(outcome.filter(QStringLiteral("debug THRWorker::dbAddPerson(")).size(), 3);
    QCOMPARE(outcome.filter(QStringLiteral("critical THRWorker::dbAddPerson(1001.1)")).size(), 0);
    QCOMPARE(outcome.filter(QStringLiteral("critical THRWorker::dbAddPerson(1002.1)")).size(), 1);
    QCOMPARE(outcome.filter(QStringLiteral("critical THRWorker::dbAddPerson(1003.1)")).size(), 1);
    QCOMPARE(outcome.last(),
             QStringLiteral("debug THRWorker: END synchronization #1 (waiting records: 0)"));
    QCOMPARE(f.peer.lastRecords.size(), 3);

    database->restart();
    QCOMPARE(people(), lines({"1001.1|Ján|Novák||1"}));
    // The file has nothing new to say of the others; a forced pass makes up for them.
    f.tick();
    QCOMPARE(people(), lines({"1001.1|Ján|Novák||1"}));
    database->force();
    f.tick();
    QCOMPARE(people(),
             lines({"1001.1|Ján|Novák||1", "1002.1|Ján|Novák||1", "1003.1|Ján|Novák||1"}));
    f.log.clear();
}

QTEST_GUILESS_MAIN(tst_Pass)
#include "tst_pass.moc"
