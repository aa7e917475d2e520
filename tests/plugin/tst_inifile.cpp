// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin object's INI file: found or missing, enabling or disabling the plugin.
#include "environment/directories.h"
#include "environment/envirosettings.h"
#include "support/plugin/pluginfixture.h"

#include <QDir>
#include <QtTest>

class tst_IniFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructor_makesTheDataDirectory();
    void constructor_findsTheIniFileWithoutAWord();
    void constructor_warnsOfAMissingIniFile();
    void constructor_warnsOfAnIniFileThatIsADirectory();
    void constructor_goesOnWithoutADataDirectory();
    void start_withoutIniFileIsDisabled();
    void start_environmentIsThatOfConstruction();
    void start_disabledByTheFileInSpiteOfTheEnvironment();
    void start_disabledPluginNeverReadsTheKeyAgain();
    void init_byNameOnADisabledPlugin();
    void enabled_data();
    void enabled();
    void getVerInfo_isTheSameForADisabledPlugin();
    void getVerInfo_takesTheVersionOfASubclass();
};

void tst_IniFile::constructor_makesTheDataDirectory()
{
    PluginFixture f;
    QVERIFY(!QFileInfo::exists(f.environment.dataDirectory()));
    f.create(0);
    QVERIFY(QFileInfo(f.environment.dataDirectory()).isDir());
    QCOMPARE(currentDataDir, f.environment.dataDirectory());
    // The INI file itself is not made.
    QCOMPARE(QDir(f.environment.dataDirectory()).entryList(QDir::Files), QStringList());
    f.log.clear();
}

void tst_IniFile::constructor_findsTheIniFileWithoutAWord()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.create(0);
    // No key is read before the first start.
    QCOMPARE(f.log.take(), QStringList());
    QCOMPARE(f.peer().settings->fileName(), f.environment.iniPath());
    QCOMPARE(f.peer().settings->format(), QSettings::IniFormat);
    QVERIFY(!f.peer().settings->parent());
    QCOMPARE(f.peer().settings->prefix(), QString());
}

void tst_IniFile::constructor_warnsOfAMissingIniFile()
{
    PluginFixture f;
    f.create(0);
    QCOMPARE(f.log.take(),
             QStringList {QStringLiteral("warning TalvenHR: INI file not found on: \"")
                          + f.environment.dataDirectory() + QStringLiteral("/TalvenHR.ini\"")});
    QVERIFY(f.peer().settings);
}

void tst_IniFile::constructor_warnsOfAnIniFileThatIsADirectory()
{
    PluginFixture f;
    QVERIFY(QDir().mkpath(f.environment.iniPath()));
    f.create(0);
    QCOMPARE(f.log.take(),
             QStringList {QStringLiteral("warning TalvenHR: INI file not found on: \"")
                          + f.environment.dataDirectory() + QStringLiteral("/TalvenHR.ini\"")});
    QVERIFY(f.plugin->start());
    QCOMPARE(f.log.take(),
             lines({"debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "warning TalvenHR is DISABLED"}));
}

void tst_IniFile::constructor_goesOnWithoutADataDirectory()
{
    PluginFixture f;
    const QString path = f.environment.filePath(QStringLiteral("file"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    f.environment.setDataDirectory(path + QStringLiteral("/data"));
    f.create(0);
    QCOMPARE(f.log.take(),
             (QStringList {
                 QStringLiteral("critical Directory '%1/data' is not created!").arg(path),
                 QStringLiteral("critical Directory '%1/data' is not writable!").arg(path),
                 QStringLiteral("warning TalvenHR: INI file not found on: \"%1/data/TalvenHR.ini\"")
                     .arg(path)}));
    QVERIFY(f.plugin->start());
    f.log.clear();
}

void tst_IniFile::start_withoutIniFileIsDisabled()
{
    PluginFixture f;
    f.create(1);
    QCOMPARE(f.log.take(),
             QStringList {QStringLiteral("warning TalvenHR: INI file not found on: \"%1\"")
                              .arg(f.environment.iniPath())});
    QVERIFY(f.plugin->start());
    QCOMPARE(f.log.take(),
             lines({"debug Start TalvenHR..", "debug TalvenHR::init()",
                    "debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "warning TalvenHR is DISABLED"}));
    QCOMPARE(f.peer().enabled, false);
    QCOMPARE(f.peer().initialised, false);
    QVERIFY(!f.peer().worker);
    QVERIFY(!f.peer().workerThread.isRunning());
    QVERIFY(!QSqlDatabase::contains(QStringLiteral("OQS.scripted.TalvenHR")));

    f.plugin->stop();
    f.plugin->pause();
    f.plugin->resume();
    QVERIFY(f.plugin->start());
    QCOMPARE(f.log.take(),
             lines({"debug Stop TalvenHR..", "debug Pause TalvenHR..", "debug Resume TalvenHR..",
                    "debug Start TalvenHR.."}));
    QVERIFY(!f.peer().worker);

    f.plugin->setLogLevel(0);
    f.plugin->stop();
    f.plugin->pause();
    f.plugin->resume();
    QVERIFY(f.plugin->start());
    QCOMPARE(f.log.take(), QStringList());
}

void tst_IniFile::start_environmentIsThatOfConstruction()
{
    PluginFixture f;
    f.create(0);
    f.environment.setVariable("ENABLED", "1");
    QVERIFY(f.plugin->start());
    QCOMPARE(f.peer().enabled, false);
    f.log.clear();
}

void tst_IniFile::start_disabledByTheFileInSpiteOfTheEnvironment()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=false")});
    f.environment.setVariable("ENABLED", "1");
    f.create(0);
    QVERIFY(f.plugin->start());
    QCOMPARE(f.log.take(),
             lines({"debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "warning TalvenHR is DISABLED"}));
    QVERIFY(!f.peer().worker);
}

void tst_IniFile::start_disabledPluginNeverReadsTheKeyAgain()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=false")});
    f.create(0);
    QVERIFY(f.plugin->start());
    f.log.clear();
    f.environment.writeIni({QStringLiteral("enabled=true")});
    f.peer().settings->sync();
    QVERIFY(f.plugin->start());
    QCOMPARE(f.log.take(), QStringList());
    QVERIFY(!f.peer().worker);
}

void tst_IniFile::init_byNameOnADisabledPlugin()
{
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=0")});
    f.create(1);
    bool initialised = true;
    QVERIFY(QMetaObject::invokeMethod(f.plugin.get(), "init", Qt::DirectConnection,
                                      Q_RETURN_ARG(bool, initialised)));
    QVERIFY(!initialised);
    QCOMPARE(f.log.take(),
             lines({"debug TalvenHR::init()",
                    "debug EnviroSettings::value() - key: 'enabled', environment key: ENABLED",
                    "warning TalvenHR is DISABLED"}));
}

void tst_IniFile::enabled_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("runs");
    QTest::newRow("true") << QStringLiteral("true") << true;
    QTest::newRow("1") << QStringLiteral("1") << true;
    QTest::newRow("any other text") << QStringLiteral("yes") << true;
    QTest::newRow("false") << QStringLiteral("false") << false;
    QTest::newRow("False") << QStringLiteral("False") << false;
    QTest::newRow("0") << QStringLiteral("0") << false;
    QTest::newRow("empty") << QString() << false;
}

void tst_IniFile::enabled()
{
    QFETCH(QString, value);
    QFETCH(bool, runs);
    PluginFixture f;
    f.environment.writeIni({QStringLiteral("enabled=") + value});
    f.create(0);
    QVERIFY(f.plugin->start());
    QCOMPARE(f.peer().enabled, runs);
    QCOMPARE(f.peer().initialised, runs);
    QCOMPARE(f.peer().worker != nullptr, runs);
    QCOMPARE(f.log.contains(QStringLiteral("warning TalvenHR is DISABLED")), !runs);
    f.log.clear();
}

void tst_IniFile::getVerInfo_isTheSameForADisabledPlugin()
{
    QMap<QString, QString> report;
    {
        PluginFixture f;
        f.createRunning(0);
        report = f.plugin->getVerInfo();
    }
    PluginFixture f;
    f.create(0);
    QCOMPARE(f.plugin->getVerInfo(), report);
    QVERIFY(f.plugin->start());
    QCOMPARE(f.plugin->getVerInfo(), report);
    f.log.clear();
}

void tst_IniFile::getVerInfo_takesTheVersionOfASubclass()
{
    class Descendant : public TalvenHR
    {
    public:
        QString getVersion() const override { return QStringLiteral("2.0"); }
    };

    PluginFixture f;
    f.environment.writeIni({});
    const Descendant plugin;
    QCOMPARE(plugin.getVerInfo().value(QStringLiteral("VER")), QStringLiteral("2.0"));
}

QTEST_GUILESS_MAIN(tst_IniFile)
#include "tst_inifile.moc"
