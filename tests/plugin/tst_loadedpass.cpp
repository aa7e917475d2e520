// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library at work, as a server runs it: real timer, real database, several lives.
#include "plugin/serverinterface.h"
#include "support/eventlog.h"
#include "support/plugin/pluginenvironment.h"
#include "support/recordbuilder.h"
#include "support/testdatabase.h"

#include <QFile>
#include <QPluginLoader>
#include <QtTest>

#include <ctime>
#include <memory>

namespace {

const int longestWait = 30000; // milliseconds

const char peopleStatement[] = "SELECT pid, pamId, title, name, surname, title2, phone, type, "
                               "status, did, begin, end FROM people ORDER BY pid";

/// Seconds since the epoch of a local midnight.
long long midnight(int year, int month, int day)
{
    std::tm moment = {};
    moment.tm_year = year - 1900;
    moment.tm_mon = month - 1;
    moment.tm_mday = day;
    moment.tm_isdst = -1;
    return std::mktime(&moment);
}

} // namespace

class tst_LoadedPass : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
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
    void load();
    void start(quint8 logLevel) { start(logLevel, database->handle()); }
    void start(quint8 logLevel, const QSqlDatabase &handle);
    void writeExport(const QStringList &lines);
    QStringList passes(const QStringList &events) const;

    std::unique_ptr<TestDatabase> database;
    std::unique_ptr<EventLog> log;
    std::unique_ptr<PluginEnvironment> environment;
    QPluginLoader loader;
};

void tst_LoadedPass::initTestCase()
{
    loader.setFileName(QStringLiteral(TALVENHR_PLUGIN_FILE));
    loader.setLoadHints({}); // otherwise the library stays in memory when it is unloaded
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
}

void tst_LoadedPass::cleanupTestCase()
{
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
    database.reset();
}

void tst_LoadedPass::init()
{
    database->clear();
    database->execute(QStringLiteral("INSERT INTO vars VALUES ('exportPam.1.active', '1')"));
    log = std::make_unique<EventLog>();
    environment = std::make_unique<PluginEnvironment>();
    environment->writeIni(
        {QStringLiteral("enabled=true"), QStringLiteral("timerInterval=1"),
         QStringLiteral("departmentId=4"),
         QStringLiteral("importFile=") + environment->filePath(QStringLiteral("ron.data"))});
    load();
}

void tst_LoadedPass::cleanup()
{
    loader.unload(); // deletes the object as well
    QSqlDatabase::removeDatabase(QStringLiteral("OQS.attendance.TalvenHR"));
    environment.reset();
    log.reset();
}

void tst_LoadedPass::load()
{
    QVERIFY2(loader.load(), qPrintable(loader.errorString()));
}

/// The steps of a server, in its order.
void tst_LoadedPass::start(quint8 logLevel, const QSqlDatabase &handle)
{
    auto *const server = qobject_cast<ServerInterface *>(loader.instance());
    QVERIFY(server);
    server->setLogLevel(logLevel);
    server->setDatabase(handle);
    QVERIFY(server->start());
}

void tst_LoadedPass::writeExport(const QStringList &lines)
{
    QFile file(environment->filePath(QStringLiteral("ron.data")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (const QString &line : lines)
        file.write(line.toUtf8() + '\n');
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
    delete loader.instance();

    const QStringList events = log->take();
    QCOMPARE(passes(events).mid(0, 2),
             lines({"debug THRWorker: BEGIN synchronization #1 (force: NO)",
                    "debug THRWorker: END synchronization #1 (waiting records: 0)"}));
    QCOMPARE(events.filter(QStringLiteral("critical ")), QStringList());
    QCOMPARE(database->rows(QString::fromLatin1(peopleStatement)),
             (QStringList {
                 QStringLiteral("772|77.2||Žofia|Ťažká|||4|1|4|%1|NULL").arg(midnight(2020, 7, 1)),
                 QStringLiteral("12341|1234.1|Ing.|Ján|Novák|PhD.|0905 123|1|1|4|%1|NULL")
                     .arg(midnight(2015, 3, 1))}));
    // In file order, and each by his type of employment.
    QCOMPARE(database->rows(QStringLiteral("SELECT value FROM vars "
                                           "WHERE name='exportPam.1.selPeople'")),
             lines({"12341,772"}));
    QCOMPARE(database->rows(QStringLiteral("SELECT pid, id FROM people_pam JOIN people USING(uid) "
                                           "ORDER BY pid")),
             lines({"772|2", "12341|1"}));
    // Read, then removed.
    QVERIFY(!QFile::exists(environment->filePath(QStringLiteral("ron.data"))));
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
    delete loader.instance();

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
    QFile file(prepared);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(record().pid(5, 1).line().toUtf8() + '\n');
    file.close();
    const QString path = environment->filePath(QStringLiteral("ron.data"));
    environment->writeIni({QStringLiteral("enabled=true"), QStringLiteral("timerInterval=1"),
                           QStringLiteral("importFile=") + path,
                           QStringLiteral("syncCommand=\"cp %1 %2\"").arg(prepared, path),
                           QStringLiteral("syncCommandRun=2")});
    start(1);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    delete loader.instance();
    QCOMPARE(log->take().filter(QStringLiteral("runCommand")), QStringList());
    QCOMPARE(database->rows(QStringLiteral("SELECT pid FROM people")), lines({"51"}));
}

void tst_LoadedPass::pass_messagesCarryNeitherCategoryNorPlace()
{
    writeExport({exportHeader(), record().line(), QStringLiteral("not a record")});
    start(3);
    QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")), longestWait);
    delete loader.instance();
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
    delete loader.instance();
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
    delete loader.instance();
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
    start(1, handle);
    QTRY_VERIFY_WITH_TIMEOUT(
        log->contains(QStringLiteral("warning THRWorker::checkSync() - database not open!")),
        longestWait);
    QVERIFY(log->contains(QStringLiteral("critical THRWorker::dbCheckOpen() - SQL ERROR: ")));
    QVERIFY(!log->contains(QStringLiteral("BEGIN synchronization")));
    // The next tick tries again.
    QTRY_VERIFY_WITH_TIMEOUT(log->count(QStringLiteral("database not open!")) > 1, longestWait);
    delete loader.instance();
    QVERIFY(QFile::exists(environment->filePath(QStringLiteral("ron.data"))));
    log->clear();
}

void tst_LoadedPass::pass_inEveryLifeOfTheObject()
{
    for (uint life = 1; life <= 3; ++life) {
        writeExport({record().pid(life, 1).line()});
        start(1);
        QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")),
                                 longestWait);
        delete loader.instance();
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
        load();
        start(1);
        QTRY_VERIFY_WITH_TIMEOUT(log->contains(QStringLiteral("END synchronization #1")),
                                 longestWait);
        QVERIFY(loader.unload());
        const QStringList events = log->take();
        QCOMPARE(events.filter(QStringLiteral("critical ")), QStringList());
        QCOMPARE(events.filter(QStringLiteral("warning QSql")), QStringList());
        QCOMPARE(database->value(QStringLiteral("SELECT COUNT(*) FROM people")),
                 QString::number(life));
    }
}

QTEST_GUILESS_MAIN(tst_LoadedPass)
#include "tst_loadedpass.moc"
