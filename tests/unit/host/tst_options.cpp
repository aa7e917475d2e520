// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The values of options: command line, environment, talvenhr.conf, default, in this order.
#include "host/cli/databaseoptions.h"
#include "host/cli/options.h"
#include "host/cli/pluginoptions.h"

#include <QtTest>

namespace {

/// A command with all shared options, one argument, and a switch.
Command walkCommand()
{
    Command command;
    command.name = QStringLiteral("walk");
    command.arguments = {{QStringLiteral("FILE"), QStringLiteral("where to")}};
    command.groups = {
        pluginOptions(),
        databaseOptions(),
        {QStringLiteral("Own"), {{QStringLiteral("fast"), QString(), QStringLiteral("faster")}}}};
    return command;
}

} // namespace

class tst_Options : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void value_hasItsOrigin_data();
    void value_hasItsOrigin();
    void value_emptyVariableIsNone();
    void value_relativePathCountsFromTheFile();
    void number_namesThePlaceOfWhatIsWrong();
    void parse_wrongUse_data();
    void parse_wrongUse();
    void configuration_isTakenAsItStands();
    void configuration_wrongLines_data();
    void configuration_wrongLines();
    void configuration_knowsTheSettingsOfOtherCommands();
    void database_privateOnTheCommandLineGoesFirst();
    void database_serverOfTheFileIsUsed();
    void database_passwordLeavesTheEnvironment();

private:
    /// Writes talvenhr.conf and names it by the environment.
    QString configure(const char *lines);
    static void load(Options *options, const QStringList &arguments);

    QTemporaryDir folder;
};

void tst_Options::cleanup()
{
    for (const char *name : {"CONFIG", "HOST", "PORT", "USER", "PASSWORD"})
        qunsetenv(QByteArray("TALVENHR_").append(name).constData());
    // Nothing of the machine's may count.
    qputenv("XDG_CONFIG_HOME", folder.filePath(QStringLiteral("none")).toLocal8Bit());
}

QString tst_Options::configure(const char *lines)
{
    const QString path = folder.filePath(QStringLiteral("talvenhr.conf"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(lines) < 0)
        qFatal("cannot write %s", qPrintable(path));
    qputenv("TALVENHR_CONFIG", path.toLocal8Bit());
    return path;
}

void tst_Options::load(Options *options, const QStringList &arguments)
{
    const Failure wrongUse = options->parse(QStringList {QStringLiteral("file")} + arguments);
    QVERIFY2(!wrongUse, qPrintable(wrongUse.text));
    const Failure wrongFile = options->readConfiguration();
    QVERIFY2(!wrongFile, qPrintable(wrongFile.text));
}

void tst_Options::value_hasItsOrigin_data()
{
    QTest::addColumn<bool>("onCommandLine");
    QTest::addColumn<bool>("inEnvironment");
    QTest::addColumn<bool>("inFile");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("origin");
    const auto row = [](bool line, bool environment, bool file, const char *value, int origin) {
        QTest::addRow("%d %d %d", line, environment, file)
            << line << environment << file << value << origin;
    };
    row(false, false, false, "talvenhr", Options::Default);
    row(false, false, true, "of the file", Options::File);
    row(false, true, true, "of the environment", Options::Environment);
    row(true, true, true, "of the line", Options::CommandLine);
    row(true, false, false, "of the line", Options::CommandLine);
}

void tst_Options::value_hasItsOrigin()
{
    QFETCH(bool, onCommandLine);
    QFETCH(bool, inEnvironment);
    QFETCH(bool, inFile);
    QFETCH(QString, value);
    QFETCH(int, origin);
    if (inFile)
        configure("[database]\nuser = of the file \n");
    if (inEnvironment)
        qputenv("TALVENHR_USER", "of the environment");
    Options options(walkCommand(), settingsOf(walkCommand()));
    load(&options,
         onCommandLine ? QStringList {QStringLiteral("--user"), QStringLiteral("of the line")}
                       : QStringList());
    const QString user = QStringLiteral("user");
    QCOMPARE(options.value(user), value);
    QCOMPARE(static_cast<int>(options.origin(user)), origin);
    QCOMPARE(options.isSet(user), onCommandLine);
    QCOMPARE(options.isGiven(user), origin != Options::Default);
}

void tst_Options::value_emptyVariableIsNone()
{
    qputenv("TALVENHR_USER", "");
    Options options(walkCommand(), {});
    load(&options, {});
    QCOMPARE(options.value(QStringLiteral("user")), QStringLiteral("talvenhr"));
}

void tst_Options::value_relativePathCountsFromTheFile()
{
    configure("[plugin]\ndata-dir=data\nfile=/lib/p.so\n[database]\nhost=data\n");
    Options options(walkCommand(), settingsOf(walkCommand()));
    load(&options, {});
    QCOMPARE(options.value(QStringLiteral("data-dir")), folder.filePath(QStringLiteral("data")));
    QCOMPARE(options.value(QStringLiteral("plugin")), QStringLiteral("/lib/p.so"));
    QCOMPARE(options.value(QStringLiteral("host")), QStringLiteral("data"));
}

void tst_Options::number_namesThePlaceOfWhatIsWrong()
{
    const QString path = configure("# a port\n[database]\nport=many");
    const QString port = QStringLiteral("port");
    const QString rest = QStringLiteral(" takes a number from 1 to 9, not 'many'; see 'talvenhr "
                                        "walk --help'");
    int number = 5;
    Options inFile(walkCommand(), settingsOf(walkCommand()));
    load(&inFile, {});
    QCOMPARE(inFile.number(port, 1, 9, &number).text,
             QStringLiteral("'port' in %1, line 3,").arg(path) + rest);
    qputenv("TALVENHR_PORT", "many");
    QCOMPARE(inFile.number(port, 1, 9, &number).text, QStringLiteral("TALVENHR_PORT") + rest);
    Options onLine(walkCommand(), settingsOf(walkCommand()));
    load(&onLine, {QStringLiteral("--port=many")});
    QCOMPARE(onLine.number(port, 1, 9, &number).text, QStringLiteral("--port") + rest);
    QCOMPARE(number, 5);
    qputenv("TALVENHR_PORT", "9");
    QVERIFY(!inFile.number(port, 1, 9, &number));
    QCOMPARE(number, 9);
}

void tst_Options::parse_wrongUse_data()
{
    QTest::addColumn<QString>("arguments");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *arguments, const char *text) {
        QTest::newRow(arguments) << arguments << text;
    };
    row("", "FILE is missing: where to");
    row("one two", "unexpected argument 'two'");
    row("one --fats", "unknown option '--fats' (did you mean 'fast'?)");
    row("one --walrus", "unknown option '--walrus'");
    row("one --user", "missing value after '--user'");
}

void tst_Options::parse_wrongUse()
{
    QFETCH(QString, arguments);
    QFETCH(QString, text);
    Options options(walkCommand(), {});
    const Failure failure = options.parse(arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    QCOMPARE(failure.exitCode, ExitUsage);
    QCOMPARE(failure.text, text + QStringLiteral("; see 'talvenhr walk --help'"));
}

void tst_Options::configuration_isTakenAsItStands()
{
    configure("\xef\xbb\xbf[database]\r\n; a comment\r\n\r\n"
              "  connect-options = A=1;B=\"x, y\" \\n \r\nhost=\r\n");
    Options options(walkCommand(), settingsOf(walkCommand()));
    load(&options, {});
    QCOMPARE(options.value(QStringLiteral("connect-options")),
             QStringLiteral("A=1;B=\"x, y\" \\n"));
    QCOMPARE(options.origin(QStringLiteral("host")), Options::File);
}

void tst_Options::configuration_wrongLines_data()
{
    QTest::addColumn<QByteArray>("lines");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *lines, const char *text) {
        QTest::newRow(text) << QByteArray(lines) << text;
    };
    row("\n[databse]", "line 2: unknown section [databse] (did you mean 'database'?)");
    row("[database]\nhots=x", "line 2: unknown key 'hots' in [database] (did you mean 'host'?)");
    row("[plugin]\nhost=x", "line 2: unknown key 'host' in [plugin]");
    row("host=x", "line 1: the key 'host' stands below no section");
    row("[database]\nhost", "line 2: neither a section nor KEY=VALUE: 'host'");
    row("[database]\nhost=x\nhost=y",
        "line 3: the key 'host' in [database] stands in line 2 "
        "already");
}

void tst_Options::configuration_wrongLines()
{
    QFETCH(QByteArray, lines);
    QFETCH(QString, text);
    const QString path = configure(lines.constData());
    Options options(walkCommand(), settingsOf(walkCommand()));
    QVERIFY(!options.parse({QStringLiteral("file")}));
    const Failure failure = options.readConfiguration();
    QCOMPARE(failure.exitCode, ExitUsage);
    QCOMPARE(failure.text, path + QStringLiteral(", ") + text);
}

void tst_Options::configuration_knowsTheSettingsOfOtherCommands()
{
    configure("[database]\nhost=h\n");
    Command info;
    info.name = QStringLiteral("info");
    Options options(info, settingsOf(QVector<Command> {info, walkCommand()}));
    QVERIFY(!options.parse({}));
    QVERIFY(!options.readConfiguration());
    QCOMPARE(options.value(QStringLiteral("host")), QStringLiteral("h"));
}

void tst_Options::database_privateOnTheCommandLineGoesFirst()
{
    configure("[database]\nhost=h\n");
    Options options(walkCommand(), settingsOf(walkCommand()));
    load(&options, {QStringLiteral("--private-db"), QStringLiteral("dir")});
    DatabaseChoice choice;
    QVERIFY(!readDatabaseOptions(options, &choice));
    QCOMPARE(choice.privateFolder, QStringLiteral("dir"));
    QVERIFY(!choice.isDefault);
}

void tst_Options::database_serverOfTheFileIsUsed()
{
    configure("[database]\nhost=h\nport=7\n");
    Options options(walkCommand(), settingsOf(walkCommand()));
    load(&options, {QStringLiteral("--user=u")});
    DatabaseChoice choice;
    QVERIFY(!readDatabaseOptions(options, &choice));
    QCOMPARE(choice.privateFolder, QString());
    QCOMPARE(choice.connection.host, QStringLiteral("h"));
    QCOMPARE(choice.connection.port, 7);
    QCOMPARE(choice.connection.user, QStringLiteral("u"));
    QCOMPARE(choice.connection.database, QStringLiteral("attendance"));
}

void tst_Options::database_passwordLeavesTheEnvironment()
{
    qputenv("TALVENHR_PASSWORD", "secret");
    Options options(walkCommand(), settingsOf(walkCommand()));
    load(&options, {QStringLiteral("--user=u")});
    DatabaseChoice choice;
    QVERIFY(!readDatabaseOptions(options, &choice));
    QCOMPARE(choice.connection.password, QStringLiteral("secret"));
    QVERIFY(!qEnvironmentVariableIsSet("TALVENHR_PASSWORD"));
}

QTEST_GUILESS_MAIN(tst_Options)
#include "tst_options.moc"
