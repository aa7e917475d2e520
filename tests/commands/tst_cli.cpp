// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The program `talvenhr` up to the moment when the plugin would begin to work.
#include "host/base/oneline.h"
#include "host/server/privateserver.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"
#include "support/patience.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QtTest>

namespace {

QStringList words(const char *line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '), QString::SkipEmptyParts);
}

/// One line, of the program's own.
void checkFailure(TalvenhrProcess &program, int exitCode, const QString &text)
{
    QCOMPARE(program.finish(), exitCode);
    QCOMPARE(program.output(), QString());
    QCOMPARE(program.lines().count(), 1);
    const QString line = program.lines().first();
    QVERIFY2(line.startsWith(QStringLiteral("talvenhr: ")), qPrintable(line));
    QVERIFY2(line.contains(text), qPrintable(line));
}

} // namespace

class tst_Cli : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void help_data();
    void help();
    void version();
    void info_isReadable();
    void info_json();
    void usageErrors_data();
    void usageErrors();
    void pluginErrors_data();
    void pluginErrors();
    void settingsErrors_data();
    void settingsErrors();
    void settingsFromTheEnvironmentNeedNoFile();
    void databaseErrors_data();
    void databaseErrors();
    void failuresOfAnExistingServer();
    void jsonFormatHoldsForFailures();
    void lostOutput_isAnError_data();
    void lostOutput_isAnError();
    void oneLine_showsControlCharacters();
};

void tst_Cli::help_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("usage");
    QTest::newRow("program") << "--help"
                             << "Usage: talvenhr COMMAND [options]";
    QTest::newRow("short") << "-h"
                           << "Usage: talvenhr COMMAND [options]";
    QTest::newRow("help") << "help"
                          << "Usage: talvenhr COMMAND [options]";
    QTest::newRow("help of a command") << "help run"
                                       << "Usage: talvenhr run [options]";
    QTest::newRow("config") << "config --help"
                            << "Usage: talvenhr config [options]";
    QTest::newRow("run") << "run --help"
                         << "Usage: talvenhr run [options]";
    QTest::newRow("run, with other options") << "run --once -h"
                                             << "Usage: talvenhr run [options]";
    QTest::newRow("sql") << "sql --help"
                         << "Usage: talvenhr sql [options]";
    QTest::newRow("info") << "info --help"
                          << "Usage: talvenhr info [options]";
}

void tst_Cli::help()
{
    QFETCH(QString, arguments);
    QFETCH(QString, usage);
    TalvenhrProcess program(arguments.split(QLatin1Char(' ')));
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.lines(), QStringList());
    const QStringList lines = program.output().split(QLatin1Char('\n'));
    QCOMPARE(lines.first(), usage);
    QVERIFY(lines.contains(QStringLiteral("Exit codes:")));
    for (const QString &line : lines)
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void tst_Cli::version()
{
    TalvenhrProcess program({QStringLiteral("--version")});
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.output(), QStringLiteral("talvenhr " TALVENHR_VERSION "\n"));
}

void tst_Cli::info_isReadable()
{
    TalvenhrProcess program({QStringLiteral("info")});
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.lines(), QStringList());
    const QString text = program.output();
    for (const char *line :
         {"Class             TalvenHR\n", "Interface (IID)   com.kestra-lk.oqs.ServerInterface\n",
          "Version           1.6.0\n", "Type              PLG.TH\n",
          "Database version  20.11.26\n"})
        QVERIFY2(text.contains(QLatin1String(line)), qPrintable(text));
}

void tst_Cli::info_json()
{
    TalvenhrProcess program({QStringLiteral("info"), QStringLiteral("--json"),
                             QStringLiteral("--plugin"), TalvenhrProcess::pluginPath()});
    QCOMPARE(program.finish(), 0);
    QCOMPARE(program.lines(), QStringList());
    const QJsonObject report = QJsonDocument::fromJson(program.output().toUtf8()).object();
    QCOMPARE(report.value(QStringLiteral("file")).toString(), TalvenhrProcess::pluginPath());
    QCOMPARE(report.value(QStringLiteral("IID")).toString(),
             QStringLiteral("com.kestra-lk.oqs.ServerInterface"));
    QCOMPARE(report.value(QStringLiteral("className")).toString(), QStringLiteral("TalvenHR"));
    QVERIFY(report.value(QStringLiteral("debug")).isBool());
    QVERIFY(report.value(QStringLiteral("qtVersion")).toString().startsWith(QStringLiteral("5.")));
    const QJsonObject verInfo = report.value(QStringLiteral("verInfo")).toObject();
    QCOMPARE(verInfo.keys(), words("BUILD ORVDB VER phoryType"));
    QCOMPARE(verInfo.value(QStringLiteral("VER")).toString(), QStringLiteral("1.6.0"));
}

void tst_Cli::usageErrors_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *arguments, const char *text) {
        QTest::newRow(*arguments ? arguments : "nothing") << arguments << text;
    };
    row("", "no command given");
    row("walk", "unknown command 'walk'; see");
    row("rum", "unknown command 'rum' (did you mean 'run'?)");
    row("help rum", "unknown command 'rum' (did you mean 'run'?)");
    row("--walk", "unknown option '--walk'");
    row("info --walk", "unknown option '--walk'");
    row("info walk", "unexpected argument 'walk'");
    row("sql --private-db=", "--private-db takes a folder");
    row("sql --walk", "unknown option '--walk'");
    row("run --walk", "unknown option '--walk'");
    row("run walk", "unexpected argument 'walk'");
    row("run --pases 2", "unknown option '--pases' (did you mean 'passes'?)");
    row("config --config /none", "the configuration '/none' cannot be read: No such file");
    row("config --config /usr", "the configuration '/usr' cannot be read: it is a folder");
    row("run --plugin", "missing value after '--plugin'");
    row("run --data-dir=", "--data-dir takes a folder");
    row("run --private-db=", "--private-db takes a folder");
    row("run --passes 0", "--passes takes a number from 1 to 1000000, not '0'");
    row("run --passes two", "--passes takes a number from 1 to 1000000, not 'two'");
    row("run --once --passes 2", "--once and --passes exclude each other");
    row("run --timeout 0", "--timeout takes a number");
    row("run --port 65536", "--port takes a number from 1 to 65535, not '65536'");
    row("run --log-level 4", "--log-level takes a number from 0 to 3, not '4'");
    row("run --log-level -1", "--log-level takes a number from 0 to 3, not '-1'");
    row("run --log-format xml", "--log-format takes 'text' or 'json', not 'xml'");
    row("run --private-db d --host h", "--private-db and --host exclude each other");
    row("run --private-db d --driver QMYSQL", "--private-db and --driver exclude each other");
    row("run --driver QPSQL --socket s", "--socket goes with the driver QMYSQL only");
    row("run --password-file /none", "the password file '/none' cannot be read");
}

void tst_Cli::usageErrors()
{
    QFETCH(QString, arguments);
    QFETCH(QString, text);
    TalvenhrProcess program(arguments.split(QLatin1Char(' '), QString::SkipEmptyParts));
    checkFailure(program, 2, text);
}

void tst_Cli::pluginErrors_data()
{
    QTest::addColumn<QString>("plugin");
    QTest::addColumn<QString>("text");
    QTest::newRow("missing") << "/none.so"
                             << "no plugin at '/none.so'";
    QTest::newRow("no plugin") << TalvenhrProcess::path() << "is not a Qt plugin";
    QTest::newRow("other kind") << QLibraryInfo::location(QLibraryInfo::PluginsPath)
            + QStringLiteral("/sqldrivers/libqsqlmysql.so")
                                << "is no plugin for the attendance server";
}

void tst_Cli::pluginErrors()
{
    QFETCH(QString, plugin);
    QFETCH(QString, text);
    const Site site;
    const QStringList option {QStringLiteral("--plugin"), plugin};
    TalvenhrProcess run(site.runOptions(option));
    checkFailure(run, 2, text);
    TalvenhrProcess info(QStringList(QStringLiteral("info")) + option);
    checkFailure(info, 2, text);
}

void tst_Cli::settingsErrors_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("text");
    QTest::newRow("no file") << QString() << "no TalvenHR.ini in '%1'";
    QTest::newRow("folder") << "folder"
                            << "the settings '%1/TalvenHR.ini' cannot be read";
    QTest::newRow("disabled") << "enabled=false"
                              << "set enabled=true in '%1/TalvenHR.ini'";
    QTest::newRow("no pass") << "syncInterval=0"
                             << "syncInterval is 0, and the second tick divides by it";
}

void tst_Cli::settingsErrors()
{
    QFETCH(QString, setting);
    QFETCH(QString, text);
    Site site;
    const QString ini = site.path(QStringLiteral("TalvenHR.ini"));
    if (setting.contains(QLatin1Char('=')))
        site.set({setting});
    else
        QVERIFY(QFile::remove(ini));
    if (setting == QLatin1String("folder"))
        QVERIFY(QDir().mkdir(ini));

    TalvenhrProcess program(site.runOptions({}));
    checkFailure(program, 2, text.contains(QLatin1String("%1")) ? text.arg(site.dataDir()) : text);
}

void tst_Cli::settingsFromTheEnvironmentNeedNoFile()
{
    const Site site;
    QVERIFY(QFile::remove(site.path(QStringLiteral("TalvenHR.ini"))));
    TalvenhrProcess program(site.runOptions({QStringLiteral("--socket"), QStringLiteral("/none")}));
    program.setEnvironment(QStringLiteral("ENABLED"), QStringLiteral("1"));
    // On to the database, that is.
    checkFailure(program, 3, QStringLiteral("cannot open database"));
}

void tst_Cli::databaseErrors_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<QString>("text");
    QTest::newRow("driver") << "--driver QNONE"
                            << "the database driver 'QNONE' is not installed";
    QTest::newRow("socket") << "--socket /none"
                            << "cannot open database 'attendance' on /none as user 'talvenhr'";
    QTest::newRow("host") << "--host 127.0.0.1 --port 9 --database d --user u"
                          << "cannot open database 'd' on 127.0.0.1:9 as user 'u'";
    QTest::newRow("port beside the socket")
        << "--host localhost --port 9"
        << "port 9 is not used: for that port, name 127.0.0.1 as the host";
    QTest::newRow("foreign folder") << "--private-db /usr"
                                    << "'/usr' holds other files and no private database";
    QTest::newRow("file") << "--private-db /dev/null"
                          << "'/dev/null' is not a folder";
}

void tst_Cli::databaseErrors()
{
    QFETCH(QString, options);
    QFETCH(QString, text);
    const Site site;
    TalvenhrProcess program(site.runOptions(options.split(QLatin1Char(' '))));
    checkFailure(program, 3, text);
}

void tst_Cli::failuresOfAnExistingServer()
{
    const Site site;
    PrivateServer server(site.path(QStringLiteral("db")));
    server.setServerOptions(quickServerOptions());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    const QString preparation = QStringLiteral("CREATE DATABASE attendance; USE attendance;"
                                               "CREATE TABLE vars (i INT);"
                                               "CREATE USER talvenhr@localhost;"
                                               "GRANT SELECT ON vars TO talvenhr@localhost;");
    QVERIFY2(server.execute(QString(), preparation, &error), qPrintable(error));
    const QStringList socket {QStringLiteral("--socket"), server.socketPath()};

    TalvenhrProcess refused(site.runOptions(socket + words("--user nobody")));
    checkFailure(refused, 3, QStringLiteral("Access denied for user 'nobody'@'localhost'"));
    TalvenhrProcess password(site.runOptions(socket));
    password.setEnvironment(QStringLiteral("TALVENHR_PASSWORD"), QStringLiteral("secret"));
    checkFailure(password, 3, QStringLiteral("(using password: YES); check"));
    TalvenhrProcess blank(site.runOptions(socket));
    blank.setEnvironment(QStringLiteral("TALVENHR_PASSWORD"), QStringLiteral("secret "));
    checkFailure(blank, 3, QStringLiteral("the password begins or ends with a blank"));
    TalvenhrProcess database(site.runOptions(socket + words("--user root --database none")));
    checkFailure(database, 3, QStringLiteral("Unknown database 'none'"));
    TalvenhrProcess table(site.runOptions(socket + words("--user root")));
    checkFailure(table, 3, QStringLiteral("table 'people' of database 'attendance'"));
    TalvenhrProcess right(site.runOptions(socket));
    checkFailure(right, 3, QStringLiteral("may user 'talvenhr' read it?"));

    QVERIFY2(server.execute(QStringLiteral("attendance"),
                            QStringLiteral("CREATE TABLE people (i INT);"
                                           "CREATE TABLE branches (i INT);"
                                           "CREATE TABLE atten (i INT);"
                                           "GRANT SELECT ON * TO talvenhr@localhost;"),
                            &error),
             qPrintable(error));
    TalvenhrProcess force(site.runOptions(socket + words("--force")));
    checkFailure(force, 3, QStringLiteral("the pass cannot be forced"));
}

void tst_Cli::jsonFormatHoldsForFailures()
{
    const Site site;
    TalvenhrProcess program(
        site.runOptions(words("--log-format json --passes 1 --timeout 5 --socket /none")));
    QCOMPARE(program.finish(), 3);
    QCOMPARE(program.lines().count(), 1);
    const QJsonObject line = QJsonDocument::fromJson(program.lines().first().toUtf8()).object();
    QCOMPARE(line.keys(), words("level text time"));
    QCOMPARE(line.value(QStringLiteral("level")).toString(), QStringLiteral("critical"));
    QVERIFY(
        line.value(QStringLiteral("text")).toString().startsWith(QStringLiteral("cannot open")));
}

void tst_Cli::lostOutput_isAnError_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char *arguments :
         {"info", "info --json", "config", "help run", "--man", "--version"})
        QTest::newRow(arguments) << arguments;
}

void tst_Cli::lostOutput_isAnError()
{
    QFETCH(QString, arguments);
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(TalvenhrProcess::path(), arguments.split(QLatin1Char(' ')));
    QVERIFY(process.waitForFinished(longestWait));
    QCOMPARE(process.exitCode(), 1);
    QCOMPARE(process.readAllStandardError(),
             QByteArray("talvenhr: standard output cannot be written: No space left on device\n"));
}

void tst_Cli::oneLine_showsControlCharacters()
{
    QCOMPARE(oneLine(QStringLiteral("a\nb\tc\rd\x1b[31m\u009b\u007fŽ")),
             QStringLiteral("a\\nb\\tc\\rd\\x1b[31m\\x9b\\x7fŽ"));
    QCOMPARE(oneLine(QStringLiteral("exe\u202egnp\u2069\u200f\u2013")),
             QStringLiteral("exe\\u202egnp\\u2069\\u200f\u2013"));
}

QTEST_GUILESS_MAIN(tst_Cli)
#include "tst_cli.moc"
