// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library at work, as a server runs it: real timer, real database, several lives.
#include "support/databasefixture.h"
#include "support/localseconds.h"
#include "support/patience.h"
#include "support/plugin/pluginenvironment.h"
#include "support/plugin/pluginlibrary.h"
#include "support/recordbuilder.h"
#include "support/textfile.h"

#include <QFile>
#include <QtTest>

#include <memory>

namespace {

const char peopleStatement[] = "SELECT pid, pamId, title, name, surname, title2, phone, type, "
                               "status, did, begin, end FROM people ORDER BY pid";

} // namespace

class tst_LoadedPass : public DatabaseFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void pass_writesThePeopleOfTheExport();
    void pass_carriesPeopleToTheirBranch();
    void pass_runsTheExportCommandFirst();
    void pass_messagesCarryNeitherCategoryNorPlace();
    void pass_forcedFromOutside();
    void pass_inTestModeWritesNothing();
    void pass_databaseThatIsAway();
    void pass_inEveryLifeOfTheObject();
    void pass_inEveryLifeOfTheLibrary();

private:
    void start(quint8 logLevel) { library.start(logLevel, database->handle()); }
    void writeExport(const QStringList &lines) { writeLines(exportPath(), lines); }
    QString exportPath() const { return environment->filePath(QStringLiteral("ron.data")); }
    QStringList passes(const QStringList &events) const;

    std::unique_ptr<EventLog> log;
    std::unique_ptr<PluginEnvironment> environment;
    PluginLibrary library;
};

void tst_LoadedPass::init()
{
    database->clear();
    database->execute(QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.active', '1')"));
    log = std::make_unique<EventLog>();
    environment = std::make_unique<PluginEnvironment>();
    environment->writeIni({QStringLiteral("enabled=true"), QStringLiteral("timerInterval=1"),
                           QStringLiteral("departmentId=4"),
                           QStringLiteral("importFile=") + exportPath()});
    library.load();
}

void tst_LoadedPass::cleanup()
{
    library.unload(); // deletes the object as well
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
    environment.reset();
    log.reset();
}

QStringList tst_LoadedPass::passes(const QStringList &events) const
{
    return events.filter(QStringLiteral(" synchronization #"));
}

void tst_LoadedPass::pass_writesThePeopleOfTheExport()
{
    writeExport({exportHeader(),
                 record()
                     .pid(1234, 1)
                     .titles(QStringLiteral("Ing."), QStringLiteral("PhD."))
                     .phone(QStringLiteral("0905 123"))
                     .line(),
                 QStringLiteral("not a record"),
                 record()
                     .pid(77, 2)
                     .name(QStringLiteral("Žofia"), QStringLiteral("Ťažká"))
                     .employed(QDate(2020, 7, 1))
                     .tpp(51)
                     .line()});
    start(1);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    delete library.object();

    const QStringList events = log->take();
    QCOMPARE(passes(events).mid(0, 2),
             lines({"debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)"}));
    QCOMPARE(events.filter(QStringLiteral("critical ")), QStringList());
    QCOMPARE(
        database->rows(QString::fromLatin1(peopleStatement)),
        (QStringList {
            QStringLiteral("772|77.2||Žofia|Ťažká|||4|1|4|%1|NULL").arg(seconds(QDate(2020, 7, 1))),
            QStringLiteral("12341|1234.1|Ing.|Ján|Novák|PhD.|0905 123|1|1|4|%1|NULL")
                .arg(seconds(QDate(2015, 3, 1)))}));
    // In file order, and each by his type of employment.
    QCOMPARE(database->rows(QStringLiteral("SELECT value FROM vars "
                                           "WHERE name='exportPam.1.selPeople'")),
             lines({"12341,772"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid, id FROM people_pam JOIN people USING(uid) "
                                           "ORDER BY pid")),
             lines({"772|2", "12341|1"}));
    // Read, then removed.
    QVERIFY(!QFile::exists(exportPath()));
}

void tst_LoadedPass::pass_carriesPeopleToTheirBranch()
{
    database->execute(QStringLiteral("INSERT INTO branches (bid, number, mgid) VALUES (70, 7, 1)"));
    database->execute(QStringLiteral("INSERT INTO mastergroups (mgid) VALUES (1)"));
    database->execute(
        QStringLiteral("INSERT INTO groups (gid, parent, calendarID) VALUES (11, 1, 3)"));
    database->execute(
        QStringLiteral("INSERT INTO term (tid, bid, status, flags) VALUES (3, 70, 1, 2)"));
    database->execute(QStringLiteral("INSERT INTO bradm (bid, aid) VALUES (70, 4)"));
    writeExport(
        {exportHeader(), record().pid(8801, 1).branch(7).calendar(3, QDate(2023, 10, 2)).line()});
    start(1);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    delete library.object();

    const QStringList events = log->take();
    QCOMPARE(events.filter(QStringLiteral("critical ")), QStringList());
    QCOMPARE(events.filter(QStringLiteral("warning ")), QStringList());
    QCOMPARE(
        events.filter(QStringLiteral("info BranchesRepository::addPeopleToBranch(70, ")).size(), 1);
    const QString uid = database->value(QStringLiteral("SELECT uid FROM people WHERE pid=88011"));
    QCOMPARE(database->rows(QStringLiteral("SELECT bid, uid FROM brape")),
             QStringList {QStringLiteral("70|") + uid});
    QCOMPARE(database->rows(QStringLiteral("SELECT tid, uid FROM people_term")),
             QStringList {QStringLiteral("3|") + uid});
    QCOMPARE(database->rows(QStringLiteral("SELECT aid, uid FROM admins_people")),
             QStringList {QStringLiteral("4|") + uid});
    QCOMPARE(database->rows(QStringLiteral("SELECT tid, type, ref, ref_id FROM term_sync")),
             QStringList {QStringLiteral("3|I|people_term|") + uid});
    QCOMPARE(database->rows(QStringLiteral("SELECT gid, uid, since FROM groups_plan")),
             QStringList {QStringLiteral("11|") + uid + QStringLiteral("|202310")});
}

void tst_LoadedPass::pass_runsTheExportCommandFirst()
{
    const QString prepared = environment->filePath(QStringLiteral("prepared"));
    writeLines(prepared, {record().pid(5, 1).line()});
    environment->writeIni({QStringLiteral("enabled=true"), QStringLiteral("timerInterval=1"),
                           QStringLiteral("importFile=") + exportPath(),
                           QStringLiteral("syncCommand=\"cp %1 %2\"").arg(prepared, exportPath()),
                           QStringLiteral("syncCommandRun=2")});
    start(1);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    delete library.object();
    QCOMPARE(log->take().filter(QStringLiteral("runCommand")), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT pid FROM people")), lines({"51"}));
}

void tst_LoadedPass::pass_messagesCarryNeitherCategoryNorPlace()
{
    writeExport({exportHeader(), record().line(), QStringLiteral("not a record")});
    start(3);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    delete library.object();
    const QStringList events = log->take();
    // Of all levels and of every part.
    QVERIFY(!events.filter(QStringLiteral("debug TalvenHR::")).isEmpty());
    QVERIFY(!events.filter(QStringLiteral("debug EnviroSettings::")).isEmpty());
    QVERIFY(!events.filter(QStringLiteral("debug THRWorker::checkSync(): #1")).isEmpty());
    QVERIFY(!events.filter(QStringLiteral("info THRWorker::")).isEmpty());
    QVERIFY(!events.filter(QStringLiteral("warning THRWorker::parseLine()")).isEmpty());
    QCOMPARE(events.filter(QStringLiteral("[with context]")), QStringList());
}

void tst_LoadedPass::pass_forcedFromOutside()
{
    start(1);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    QCOMPARE(database->rows(QStringLiteral("SELECT pid FROM people")), QStringList());

    writeExport({record().pid(1234, 1).line()});
    database->force();
    QTRY_COMPARE_WITH_TIMEOUT(database->value(QStringLiteral(
                                  "SELECT value FROM vars WHERE name = 'OQS.THRWorker.forceSync'")),
                              QStringLiteral("0"), longestWait);
    delete library.object();
    QCOMPARE(passes(log->take()),
             lines({"debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)",
                    "debug THRWorker: BEGIN synchronization #2 (force: YES)",
                    "debug THRWorker: END synchronization #2 (waiting records: 0)"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid FROM people")), lines({"12341"}));
}

void tst_LoadedPass::pass_inTestModeWritesNothing()
{
    environment->setVariable("TESTMODE", "1");
    writeExport({record().line()});
    start(1);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    delete library.object();
    QCOMPARE(log->take().filter(QStringLiteral("warning ")),
             lines({"warning THRWorker::dbAddPerson(1234.1) - Testing mode is active, "
                    "person not really add!",
                    "warning THRWorker::dbAddPersonIntoPam(pid: 12341, pamSettingsID: 1) - "
                    "Testing mode is active, person not really add into PaM!"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid FROM people")), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT uid FROM people_pam")), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT name FROM vars")),
             lines({"exportPam.1.active"}));
}

void tst_LoadedPass::pass_databaseThatIsAway()
{
    writeExport({record().line()});
    QSqlDatabase handle = database->handle();
    handle.setConnectOptions(QStringLiteral("UNIX_SOCKET=/nowhere/socket"));
    library.start(1, handle);
    QTRY_VERIFY_WITH_TIMEOUT(
        log->contains(QStringLiteral("warning THRWorker::checkSync() - database not open!")),
        longestWait);
    QVERIFY(log->contains(QStringLiteral("critical THRWorker::dbCheckOpen() - SQL ERROR: ")));
    QVERIFY(!log->contains(QStringLiteral("BEGIN synchronization")));
    // The next tick tries again.
    QTRY_VERIFY_WITH_TIMEOUT(log->count(QStringLiteral("database not open!")) > 1, longestWait);
    delete library.object();
    QVERIFY(QFile::exists(exportPath()));
    log->clear();
}

void tst_LoadedPass::pass_inEveryLifeOfTheObject()
{
    for (uint life = 1; life <= 3; ++life) {
        writeExport({record().pid(life, 1).line()});
        start(1);
        QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")),
                                 longestWait);
        delete library.object();
        const QStringList events = log->take();
        QCOMPARE(events.filter(QStringLiteral("critical ")), QStringList());
        QCOMPARE(events.filter(QStringLiteral("warning QSql")), QStringList());
        QCOMPARE(database->value(QStringLiteral("SELECT COUNT(*) FROM people")),
                 QString::number(life));
    }
}

void tst_LoadedPass::pass_inEveryLifeOfTheLibrary()
{
    for (uint life = 1; life <= 3; ++life) {
        writeExport({record().pid(life, 1).line()});
        library.load();
        start(1);
        QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")),
                                 longestWait);
        QVERIFY(library.unload());
        const QStringList events = log->take();
        QCOMPARE(events.filter(QStringLiteral("critical ")), QStringList());
        QCOMPARE(events.filter(QStringLiteral("warning QSql")), QStringList());
        QCOMPARE(database->value(QStringLiteral("SELECT COUNT(*) FROM people")),
                 QString::number(life));
    }
}

QTEST_GUILESS_MAIN(tst_LoadedPass)
#include "tst_loadedpass.moc"
