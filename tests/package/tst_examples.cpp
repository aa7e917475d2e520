// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Programs of somebody else's, built with the installed package, at work.
#include "support/commands/site.h"
#include "support/package/installation.h"
#include "support/testdatabase.h"

#include <QProcess>
#include <QtTest>

#include <memory>

class tst_Examples : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void openBranch_opensABranch();
    void smallHost_runsAPass();
    void smallHost_findsTheSettingsOfTheEnvironment();
    void smallHost_knowsThatThereIsNoPass_data();
    void smallHost_knowsThatThereIsNoPass();
    void smallHost_refusesWhatIsNoPlugin_data();
    void smallHost_refusesWhatIsNoPlugin();

private:
    QStringList hostArguments(const QString &dataFolder) const;
    int runHost(const QStringList &arguments,
                const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());

    std::unique_ptr<Installation> installation;
    std::unique_ptr<TestDatabase> database;
    QString build;
    QString said; ///< by the last host, on standard error
};

void tst_Examples::initTestCase()
{
    database = std::make_unique<TestDatabase>(TestDatabase::Sample);
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    installation = std::make_unique<Installation>();
    build = installation->buildExamples();
}

void tst_Examples::cleanupTestCase()
{
    database.reset();
}

void tst_Examples::openBranch_opensABranch()
{
    const QString told = outputOf(build + QStringLiteral("/open_branch"),
                                  {database->server().socketPath(), database->databaseName(),
                                   QStringLiteral("talvenhr"), QStringLiteral("500"),
                                   QStringLiteral("Nová pobočka"), QStringLiteral("8"),
                                   QStringLiteral("2,4"), QStringLiteral("1,13,99")});
    const QString bid = database->value(
        QStringLiteral("SELECT bid FROM branches WHERE number = 500"));
    const QString month = QDate::currentDate().toString(QStringLiteral("yyyyMM"));
    QCOMPARE(told,
             QStringLiteral("Branch 500 has bid %1, 1 terminals in service, 2 administrators, "
                            "2 people, from month %2 on.\n")
                 .arg(bid, month));

    // Person 99 is unknown and no member; what follows takes the list as it was given, and only the
    // notice to the terminal looks again.
    QCOMPARE(database->rows(
                 QStringLiteral("SELECT uid FROM brape WHERE bid = %1 ORDER BY uid").arg(bid)),
             (QStringList {QStringLiteral("1"), QStringLiteral("13")}));
    QCOMPARE(
        database->rows(QStringLiteral("SELECT uid FROM people_term WHERE tid = 8 ORDER BY uid")),
        (QStringList {QStringLiteral("1"), QStringLiteral("13"), QStringLiteral("99")}));
    QCOMPARE(
        database->rows(QStringLiteral(
            "SELECT aid, uid FROM admins_people WHERE uid = 13 AND aid IN (2, 4) ORDER BY aid")),
        (QStringList {QStringLiteral("2|13"), QStringLiteral("4|13")}));
    QCOMPARE(
        database->rows(QStringLiteral("SELECT type, ref, ref_id, flags FROM term_sync "
                                      "WHERE tid = 8 ORDER BY ref_id")),
        (QStringList {QStringLiteral("I|people_term|1|2"), QStringLiteral("I|people_term|13|2")}));
    QCOMPARE(database->value(QStringLiteral("SELECT syn FROM term WHERE tid = 8")),
             QStringLiteral("2"));
}

/// Also where debug lines are switched off.
void tst_Examples::smallHost_runsAPass()
{
    const Site site;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("*.debug=false"));
    QCOMPARE(runHost(hostArguments(site.dataDir()), environment), 0);
    QVERIFY2(said.contains(QStringLiteral("THRWorker: END synchronization #1 ")), qPrintable(said));
    QVERIFY2(!said.contains(QStringLiteral("synchronization #2")), qPrintable(said));
    QCOMPARE(database->rows(QStringLiteral("SELECT name FROM people WHERE pid IN (70011, 70021) "
                                           "ORDER BY pid")),
             (QStringList {QStringLiteral("Dáša"), QStringLiteral("Jiří")}));
}

/// A folder of settings that takes no rights of an administrator.
void tst_Examples::smallHost_findsTheSettingsOfTheEnvironment()
{
    const Site site;
    QVERIFY(QDir(site.dataDir()).mkpath(QStringLiteral("xdg/KESTRA-LK")));
    QString key = build + QStringLiteral("/host");
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    site.writeFile(QStringLiteral("xdg/KESTRA-LK/ORV.conf"),
                   QStringLiteral("[dataDirs]\n%1=%2").arg(key, site.path(QStringLiteral("made"))));
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_DIRS"), site.path(QStringLiteral("xdg")));

    // The folder is made when the plugin is; it has no settings yet.
    QCOMPARE(runHost(hostArguments(QString()), environment), 1);
    const QString iniFile = site.path(QStringLiteral("made/TalvenHR.ini"));
    QVERIFY2(said.contains(QStringLiteral("TalvenHR: INI file not found on: \"%1\"").arg(iniFile)),
             qPrintable(said));
    QVERIFY(QFile::copy(site.path(QStringLiteral("TalvenHR.ini")), iniFile));
    QCOMPARE(runHost(hostArguments(QString()), environment), 0);
}

void tst_Examples::smallHost_knowsThatThereIsNoPass_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("socket");
    QTest::addColumn<QString>("reason");
    QTest::newRow("disabled") << false << database->server().socketPath()
                              << QStringLiteral("TalvenHR is DISABLED\n");
    QTest::newRow("no database") << true << installation->path(QStringLiteral("none"))
                                 << QStringLiteral("checkSync() - database not open!\n");
}

void tst_Examples::smallHost_knowsThatThereIsNoPass()
{
    QFETCH(bool, enabled);
    QFETCH(QString, socket);
    QFETCH(QString, reason);
    Site site;
    if (!enabled)
        site.set({QStringLiteral("enabled=false")});
    QStringList arguments = hostArguments(site.dataDir());
    arguments[1] = socket;
    QCOMPARE(runHost(arguments), 1);
    QVERIFY2(said.contains(reason), qPrintable(said));
    QVERIFY2(!said.contains(QStringLiteral("synchronization #")), qPrintable(said));
}

void tst_Examples::smallHost_refusesWhatIsNoPlugin_data()
{
    QTest::addColumn<QString>("file");
    QTest::newRow("no file") << installation->path(QStringLiteral("none.so"));
    QTest::newRow("no plugin") << installation->program();
    QTest::newRow("another plugin") << QLibraryInfo::location(QLibraryInfo::PluginsPath)
            + QStringLiteral("/sqldrivers/libqsqlmysql.so");
}

void tst_Examples::smallHost_refusesWhatIsNoPlugin()
{
    QFETCH(QString, file);
    const Site site;
    QCOMPARE(runHost(hostArguments(site.dataDir()) + QStringList {file}), 2);
    QVERIFY2(said.contains(QStringLiteral("'%1' is no plugin for a host.").arg(file)),
             qPrintable(said));
}

/// On the sample company, with the plugin that is installed.
QStringList tst_Examples::hostArguments(const QString &dataFolder) const
{
    return {dataFolder, database->server().socketPath(), database->databaseName(),
            QStringLiteral("talvenhr")};
}

/// The exit code.
int tst_Examples::runHost(const QStringList &arguments, const QProcessEnvironment &environment)
{
    QProcess host;
    host.setProcessEnvironment(environment);
    host.start(build + QStringLiteral("/host/small_host"), arguments);
    host.waitForFinished(-1);
    said = QString::fromUtf8(host.readAllStandardError());
    return host.exitStatus() == QProcess::NormalExit ? host.exitCode() : -1;
}

QTEST_GUILESS_MAIN(tst_Examples)
#include "tst_examples.moc"
