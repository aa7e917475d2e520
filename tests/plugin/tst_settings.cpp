// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the plugin object makes of its INI file and of the environment.
#include "environment/envirosettings.h"
#include "support/plugin/pluginfixture.h"

#include <QTimer>
#include <QtTest>

namespace {

/// The worker's settings as "KEY VALUE", in the order in which they are handed over.
QStringList received(const WorkerPeer &worker)
{
    const auto boolean = [](bool value) {
        return value ? QStringLiteral("true") : QStringLiteral("false");
    };
    return {QStringLiteral("timerInterval %1").arg(worker.timerInterval),
            QStringLiteral("syncInterval %1").arg(worker.syncInterval),
            QStringLiteral("testMode %1").arg(boolean(worker.testMode)),
            QStringLiteral("importFile ") + worker.importFile,
            QStringLiteral("deleteFile %1").arg(boolean(worker.deleteFile)),
            QStringLiteral("syncCommand ") + worker.syncCommand,
            QStringLiteral("syncCommandRun %1").arg(worker.syncCommandRun),
            QStringLiteral("departmentId %1").arg(worker.departmentId)};
}

/// What the worker receives when no key stands anywhere, but for the one setting given.
QStringList defaultsBut(const QString &setting)
{
    QStringList settings = lines({"timerInterval 60000", "syncInterval 60", "testMode false",
                                  "importFile ", "deleteFile true", "syncCommand ",
                                  "syncCommandRun 0", "departmentId 1"});
    const QString key = setting.section(QLatin1Char(' '), 0, 0);
    for (QString &known : settings) {
        if (known.section(QLatin1Char(' '), 0, 0) == key)
            known = setting;
    }
    return settings;
}

/// The worker of a plugin on the settings that stand receives the defaults but for this one.
void startAndCompare(PluginFixture &f, const QString &setting)
{
    f.create(0);
    QVERIFY(f.plugin->start());
    QCOMPARE(received(f.worker()), defaultsBut(setting));
}

} // namespace

class tst_Settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void start_readsTheKeysInOrder();
    void start_levelZeroKeepsOnlyTheLinesOfTheKeys();
    void start_secondReadsNoKey();
    void start_withoutIniFileButEnabledByTheEnvironment();
    void keys_defaults();
    void keys_file_data();
    void keys_file();
    void keys_environment_data();
    void keys_environment();
    void keys_fileWinsOverTheEnvironment_data();
    void keys_fileWinsOverTheEnvironment();
    void keys_badNumbers_data();
    void keys_badNumbers();
    void keys_emptyTextIsAValue_data();
    void keys_emptyTextIsAValue();
    void keys_inAGroupAreNotRead();
    void timerInterval_data();
    void timerInterval();
    void timerInterval_reachesTheTimer_data();
    void timerInterval_reachesTheTimer();
    void syncCommandRun_data();
    void syncCommandRun();
    void stateTexts_data();
    void stateTexts();
    void stateTexts_nullText();
    void stateTexts_environmentSuppliesNone();
    void stateTexts_endOfTheGroup();
};

void tst_Settings::start_readsTheKeysInOrder()
{
    PluginFixture f;
    f.environment.writeIni(
        lines({"departmentId=3", "enabled=true", "[MES]", "7=later", "21=MD", "07=earlier"}));
    f.create(1);
    QVERIFY(f.plugin->start());
    f.onWorkerThread();
    QCOMPARE(
        f.log.take(),
        lines({"debug Start TalvenHR..", "debug TalvenHR::init()",
               "debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
               "debug EnviroSettings::value() - key: 'timerInterval', "
               "environment key: TIMERINTERVAL",
               "debug EnviroSettings::value() - key: 'syncInterval', environment key: SYNCINTERVAL",
               "debug THRWorker::setOrvDb(OQS.scripted.TalvenHR)",
               "debug EnviroSettings::value() - key: 'testMode', environment key: TESTMODE",
               "debug EnviroSettings::value() - key: 'importFile', environment key: IMPORTFILE",
               "debug EnviroSettings::value() - key: 'deleteFile', environment key: DELETEFILE",
               "debug EnviroSettings::value() - key: 'syncCommand', environment key: SYNCCOMMAND",
               "debug EnviroSettings::value() - key: 'syncCommandRun', "
               "environment key: SYNCCOMMANDRUN",
               "debug EnviroSettings::value() - key: 'departmentId', environment key: DEPARTMENTID",
               "debug EnviroSettings::value() - key: 'MES/07', environment key: MES_07",
               "debug EnviroSettings::value() - key: 'MES/21', environment key: MES_21",
               "debug EnviroSettings::value() - key: 'MES/7', environment key: MES_7",
               "debug THRWorker::setMes() count: 2)", "debug THRWorker::start()",
               "debug THRWorker::init()"}));
}

void tst_Settings::start_levelZeroKeepsOnlyTheLinesOfTheKeys()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.create(0);
    QVERIFY(f.plugin->start());
    f.onWorkerThread();
    QCOMPARE(
        f.log.take(),
        lines({"debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
               "debug EnviroSettings::value() - key: 'timerInterval', "
               "environment key: TIMERINTERVAL",
               "debug EnviroSettings::value() - key: 'syncInterval', environment key: SYNCINTERVAL",
               "debug EnviroSettings::value() - key: 'testMode', environment key: TESTMODE",
               "debug EnviroSettings::value() - key: 'importFile', environment key: IMPORTFILE",
               "debug EnviroSettings::value() - key: 'deleteFile', environment key: DELETEFILE",
               "debug EnviroSettings::value() - key: 'syncCommand', environment key: SYNCCOMMAND",
               "debug EnviroSettings::value() - key: 'syncCommandRun', "
               "environment key: SYNCCOMMANDRUN",
               "debug EnviroSettings::value() - key: 'departmentId', "
               "environment key: DEPARTMENTID"}));
}

void tst_Settings::start_secondReadsNoKey()
{
    PluginFixture f;
    f.createRunning(0);
    f.restart([&f] { QVERIFY(f.plugin->start()); });
    QVERIFY(!f.log.contains(QStringLiteral("EnviroSettings::value()")));
    f.log.clear();
}

void tst_Settings::start_withoutIniFileButEnabledByTheEnvironment()
{
    PluginFixture f;
    f.environment.setVariable("ENABLED", "1");
    f.environment.setVariable("SYNCINTERVAL", "5");
    f.create(0);
    QCOMPARE(f.log.take(),
             QStringList {QStringLiteral("warning TalvenHR: INI file not found on: \"%1\"")
                              .arg(f.environment.iniPath())});
    QVERIFY(f.plugin->start());
    QCOMPARE(f.peer().enabled, true);
    QCOMPARE(f.peer().initialised, true);
    QVERIFY(f.peer().workerThread.isRunning());
    QCOMPARE(received(f.worker()), defaultsBut(QStringLiteral("syncInterval 5")));
    QVERIFY(f.worker().mes.isEmpty());
    QVERIFY(!f.log.contains(QStringLiteral("DISABLED")));
    f.log.clear();
}

void tst_Settings::keys_defaults()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    startAndCompare(f, QString());
    QVERIFY(f.worker().mes.isEmpty());
    f.log.clear();
}

void tst_Settings::keys_file_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("setting");
    QTest::newRow("timerInterval")
        << QStringLiteral("timerInterval=7") << QStringLiteral("timerInterval 7000");
    QTest::newRow("syncInterval") << QStringLiteral("syncInterval=61")
                                  << QStringLiteral("syncInterval 61");
    QTest::newRow("syncInterval of 0")
        << QStringLiteral("syncInterval=0") << QStringLiteral("syncInterval 0");
    QTest::newRow("testMode") << QStringLiteral("testMode=true") << QStringLiteral("testMode true");
    QTest::newRow("importFile") << QStringLiteral("importFile=/dáta/ročný export.data")
                                << QStringLiteral("importFile /dáta/ročný export.data");
    QTest::newRow("deleteFile") << QStringLiteral("deleteFile=false")
                                << QStringLiteral("deleteFile false");
    QTest::newRow("deleteFile of 0")
        << QStringLiteral("deleteFile=0") << QStringLiteral("deleteFile false");
    QTest::newRow("syncCommand") << QStringLiteral("syncCommand=vývoz --deň")
                                 << QStringLiteral("syncCommand vývoz --deň");
    QTest::newRow("syncCommandRun")
        << QStringLiteral("syncCommandRun=2") << QStringLiteral("syncCommandRun 2");
    QTest::newRow("departmentId") << QStringLiteral("departmentId=4294967295")
                                  << QStringLiteral("departmentId 4294967295");
    QTest::newRow("departmentId of 0")
        << QStringLiteral("departmentId=0") << QStringLiteral("departmentId 0");
}

void tst_Settings::keys_file()
{
    QFETCH(QString, line);
    QFETCH(QString, setting);
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true"), line});
    startAndCompare(f, setting);
    f.log.clear();
}

void tst_Settings::keys_environment_data()
{
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("setting");
    const auto row = [](const char *variable, const char *value, const QString &setting) {
        QTest::newRow(variable) << QByteArray(variable) << QByteArray(value) << setting;
    };
    row("TIMERINTERVAL", "7", QStringLiteral("timerInterval 7000"));
    row("SYNCINTERVAL", "61", QStringLiteral("syncInterval 61"));
    row("TESTMODE", "1", QStringLiteral("testMode true"));
    row("IMPORTFILE", "/env/ron.data", QStringLiteral("importFile /env/ron.data"));
    row("DELETEFILE", "false", QStringLiteral("deleteFile false"));
    row("SYNCCOMMAND", "export now", QStringLiteral("syncCommand export now"));
    row("SYNCCOMMANDRUN", "1", QStringLiteral("syncCommandRun 1"));
    row("DEPARTMENTID", "9", QStringLiteral("departmentId 9"));
}

void tst_Settings::keys_environment()
{
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, value);
    QFETCH(QString, setting);
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.environment.setVariable(variable, value);
    startAndCompare(f, setting);
    f.log.clear();
}

void tst_Settings::keys_fileWinsOverTheEnvironment_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QString>("setting");
    const auto row = [](const char *line, const char *variable, const char *value,
                        const char *setting) {
        QTest::newRow(variable) << QString::fromLatin1(line) << QByteArray(variable)
                                << QByteArray(value) << QString::fromLatin1(setting);
    };
    row("timerInterval=7", "TIMERINTERVAL", "8", "timerInterval 7000");
    row("syncInterval=61", "SYNCINTERVAL", "62", "syncInterval 61");
    row("testMode=true", "TESTMODE", "0", "testMode true");
    row("importFile=/file", "IMPORTFILE", "/env", "importFile /file");
    row("deleteFile=false", "DELETEFILE", "1", "deleteFile false");
    row("syncCommand=file", "SYNCCOMMAND", "env", "syncCommand file");
    row("syncCommandRun=2", "SYNCCOMMANDRUN", "1", "syncCommandRun 2");
    row("departmentId=8", "DEPARTMENTID", "9", "departmentId 8");
}

void tst_Settings::keys_fileWinsOverTheEnvironment()
{
    QFETCH(QString, line);
    QFETCH(QByteArray, variable);
    QFETCH(QByteArray, value);
    QFETCH(QString, setting);
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true"), line});
    f.environment.setVariable(variable, value);
    startAndCompare(f, setting);
    f.log.clear();
}

void tst_Settings::keys_badNumbers_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("setting");
    const auto row = [](const char *line, const char *setting) {
        QTest::newRow(line) << QString::fromLatin1(line) << QString::fromLatin1(setting);
    };
    row("timerInterval=often", "timerInterval 1000");
    row("timerInterval=-5", "timerInterval 1000");
    row("timerInterval=5 s", "timerInterval 1000");
    row("syncInterval=often", "syncInterval 0");
    row("syncInterval=-1", "syncInterval 0");
    row("syncCommandRun=always", "syncCommandRun 0");
    row("departmentId=HR", "departmentId 0");
    row("departmentId=1.5", "departmentId 0");
}

void tst_Settings::keys_badNumbers()
{
    QFETCH(QString, line);
    QFETCH(QString, setting);
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true"), line});
    startAndCompare(f, setting);
    // Nobody hears of it.
    QVERIFY(!f.log.contains(QStringLiteral("warning ")));
    QVERIFY(!f.log.contains(QStringLiteral("critical ")));
    f.log.clear();
}

void tst_Settings::keys_emptyTextIsAValue_data()
{
    QTest::addColumn<bool>("inFile");
    QTest::newRow("empty in the file") << true;
    QTest::newRow("empty variable") << false;
}

void tst_Settings::keys_emptyTextIsAValue()
{
    QFETCH(bool, inFile);
    PluginFixture f;
    if (inFile) {
        f.environment.writeIni(
            lines({"enabled=true", "timerInterval=", "deleteFile=", "departmentId="}));
        f.environment.setVariable("DEPARTMENTID", "9");
    } else {
        f.environment.writeIni({QStringLiteral("enabled=true")});
        f.environment.setVariable("TIMERINTERVAL", "");
        f.environment.setVariable("DELETEFILE", "");
        f.environment.setVariable("DEPARTMENTID", "");
    }
    f.create(0);
    QVERIFY(f.plugin->start());
    QCOMPARE(f.worker().timerInterval, 1000u);
    QCOMPARE(f.worker().deleteFile, false);
    QCOMPARE(f.worker().departmentId, 0u);
    f.log.clear();
}

void tst_Settings::keys_inAGroupAreNotRead()
{
    PluginFixture f;
    f.environment.writeIni(
        lines({"enabled=true", "[TalvenHR]", "timerInterval=7", "[MES]", "departmentId=8"}));
    startAndCompare(f, QString());
    f.log.clear();
}

void tst_Settings::timerInterval_data()
{
    QTest::addColumn<QString>("seconds");
    QTest::addColumn<uint>("milliseconds");
    QTest::newRow("0") << QStringLiteral("0") << 1000u;
    QTest::newRow("1") << QStringLiteral("1") << 1000u;
    QTest::newRow("2") << QStringLiteral("2") << 2000u;
    QTest::newRow("the last that does not wrap") << QStringLiteral("4294967") << 4294967000u;
    // 4294968000 - 4294967296 = 704, which is raised.
    QTest::newRow("wraps below the shortest") << QStringLiteral("4294968") << 1000u;
    QTest::newRow("wraps") << QStringLiteral("4294969") << 1704u;
    QTest::newRow("wraps to nothing") << QStringLiteral("536870912") << 1000u;
}

void tst_Settings::timerInterval()
{
    QFETCH(QString, seconds);
    QFETCH(uint, milliseconds);
    PluginFixture f;
    f.environment.writeIni(
        {QStringLiteral("enabled=true"), QStringLiteral("timerInterval=") + seconds});
    f.create(0);
    QVERIFY(f.plugin->start());
    QCOMPARE(f.worker().timerInterval, milliseconds);
    f.destroy();
    f.log.clear();
}

void tst_Settings::timerInterval_reachesTheTimer_data()
{
    QTest::addColumn<QString>("seconds");
    QTest::addColumn<int>("milliseconds");
    QTest::newRow("0") << QStringLiteral("0") << 1000;
    QTest::newRow("1") << QStringLiteral("1") << 1000;
    QTest::newRow("7") << QStringLiteral("7") << 7000;
}

void tst_Settings::timerInterval_reachesTheTimer()
{
    QFETCH(QString, seconds);
    QFETCH(int, milliseconds);
    PluginFixture f;
    f.createRunning(0, {QStringLiteral("timerInterval=") + seconds});
    QCOMPARE(f.worker().timer->interval(), milliseconds);
    QVERIFY(f.worker().timer->isActive());
    f.destroy();
    f.log.clear();
}

void tst_Settings::syncCommandRun_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("when");
    QTest::newRow("0") << QStringLiteral("0") << 0;
    QTest::newRow("1") << QStringLiteral("1") << 1;
    QTest::newRow("2") << QStringLiteral("2") << 2;
    QTest::newRow("255") << QStringLiteral("255") << 255;
    QTest::newRow("256") << QStringLiteral("256") << 0;
    QTest::newRow("257") << QStringLiteral("257") << 1;
    QTest::newRow("65538") << QStringLiteral("65538") << 2;
}

void tst_Settings::syncCommandRun()
{
    QFETCH(QString, value);
    QFETCH(int, when);
    PluginFixture f;
    f.environment.writeIni(
        {QStringLiteral("enabled=true"), QStringLiteral("syncCommandRun=") + value});
    f.create(0);
    QVERIFY(f.plugin->start());
    QCOMPARE(int(f.worker().syncCommandRun), when);
    f.log.clear();
}

void tst_Settings::stateTexts_data()
{
    using Texts = QMap<int, QString>;
    QTest::addColumn<QStringList>("iniLines");
    QTest::addColumn<Texts>("texts");
    QTest::newRow("none") << QStringList() << Texts();
    QTest::newRow("letters beyond ASCII")
        << QStringList {QStringLiteral("21=materská dovolenka"), QStringLiteral("22=ošetrovanie")}
        << Texts {{21, QStringLiteral("materská dovolenka")}, {22, QStringLiteral("ošetrovanie")}};
    QTest::newRow("the later key of a code wins")
        << lines({"7=later", "07=earlier"}) << Texts {{7, QStringLiteral("later")}};
    QTest::newRow("order of keys, not of lines")
        << lines({"7=later", "007=earliest", "07=earlier"}) << Texts {{7, QStringLiteral("later")}};
    QTest::newRow("65535") << lines({"65535=the last"})
                           << Texts {{65535, QStringLiteral("the last")}};
    QTest::newRow("65536 is 0") << lines({"0=zero", "65536=beyond"})
                                << Texts {{0, QStringLiteral("beyond")}};
    QTest::newRow("65557 is 21") << lines({"65557=beyond", "21=MD"})
                                 << Texts {{21, QStringLiteral("beyond")}};
    QTest::newRow("no number is 0")
        << lines({"0=zero", "MD=word"}) << Texts {{0, QStringLiteral("word")}};
    QTest::newRow("all on code 0")
        << lines({"zzz=last", "65536=beyond", "0=zero"}) << Texts {{0, QStringLiteral("last")}};
    QTest::newRow("negative") << lines({"-21=minus"}) << Texts {{0, QStringLiteral("minus")}};
    QTest::newRow("base 10 only") << lines({"0x15=hexadecimal"})
                                  << Texts {{0, QStringLiteral("hexadecimal")}};
    QTest::newRow("below the group")
        << lines({"sub\\7=deeper"}) << Texts {{0, QStringLiteral("deeper")}};
    QTest::newRow("empty text is kept") << lines({"21="}) << Texts {{21, QString()}};
    QTest::newRow("up to the first NUL")
        << lines({"21=before\\0 after"}) << Texts {{21, QStringLiteral("before")}};
}

void tst_Settings::stateTexts()
{
    using Texts = QMap<int, QString>;
    QFETCH(QStringList, iniLines);
    QFETCH(Texts, texts);
    PluginFixture f;
    f.createRunning(0, QStringList {QStringLiteral("[MES]")} + iniLines);
    Texts mes;
    for (auto it = f.worker().mes.cbegin(); it != f.worker().mes.cend(); ++it)
        mes.insert(it.key(), it.value());
    QCOMPARE(mes, texts);
}

void tst_Settings::stateTexts_nullText()
{
    PluginFixture f;
    // An unquoted comma makes a list, which has no form as a byte array.
    f.createRunning(0, lines({"[MES]", "21=MD, RD", "22=\"MD, RD\""}));
    QVERIFY(f.worker().mes.contains(21));
    QVERIFY(f.worker().mes.value(21).isNull());
    QCOMPARE(f.worker().mes.value(22), QStringLiteral("MD, RD"));
}

void tst_Settings::stateTexts_environmentSuppliesNone()
{
    PluginFixture f;
    // The group is walked by the keys of the file, and there the file wins, be its text empty.
    f.environment.setVariable("MES_21", "from the environment");
    f.environment.setVariable("MES_22", "from the environment");
    f.environment.setVariable("MES_23", "from the environment");
    f.createRunning(0, lines({"[MES]", "21=MD", "22="}));
    QCOMPARE(f.worker().mes.size(), 2);
    QCOMPARE(f.worker().mes.value(21), QStringLiteral("MD"));
    QVERIFY(f.worker().mes.contains(22));
    QCOMPARE(f.worker().mes.value(22), QString());
}

void tst_Settings::stateTexts_endOfTheGroup()
{
    PluginFixture f;
    f.createRunning(0, lines({"[MES]", "21=MD"}));
    QCOMPARE(f.peer().settings->group(), QString());
}

QTEST_GUILESS_MAIN(tst_Settings)
#include "tst_settings.moc"
