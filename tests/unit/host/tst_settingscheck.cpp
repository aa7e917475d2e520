// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings that mean something else than what stands there.
#include "host/plugin/settingscheck.h"
#include "host/plugin/settingsfile.h"

#include <QtTest>

class tst_SettingsCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void findings_data();
    void findings();
    void findings_textNamesTheMatter();
    void disabled_namesItsCause_data();
    void disabled_namesItsCause();
    void environment_countsWhereTheFileLacksAKey();
    void values_areThoseOfThePlugin();
    void check_refusesWhatCannotBeRead();

private:
    SettingsFile *settings(const QByteArray &content);

    QTemporaryDir folder;
    int files = 0;
    QScopedPointer<SettingsFile> file;
};

void tst_SettingsCheck::init()
{
    for (const char *name : {"ENABLED", "TIMERINTERVAL", "SYNCINTERVAL", "TESTMODE", "IMPORTFILE",
                             "DELETEFILE", "SYNCCOMMAND", "SYNCCOMMANDRUN", "DEPARTMENTID"})
        qunsetenv(name);
}

SettingsFile *tst_SettingsCheck::settings(const QByteArray &content)
{
    // Of one name and size, QSettings would take the file for the one before.
    QFile ini(folder.filePath(QStringLiteral("%1.ini").arg(++files)));
    if (!ini.open(QIODevice::WriteOnly) || ini.write(content) < 0)
        qFatal("cannot write the settings");
    ini.close();
    file.reset(new SettingsFile(ini.fileName()));
    return file.data();
}

void tst_SettingsCheck::findings_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("codes"); // each with what it is about
    const auto row = [](const char *name, const QByteArray &content, const char *codes) {
        QTest::newRow(name) << content << codes;
    };
    const auto enabled = [](const char *further) { return QByteArray("enabled=true\n") + further; };
    row("sound", enabled("importFile=/x\nsyncInterval=1\ndeleteFile=0\n[MES]\n21=a\n22="), "");
    row("sound group", "[General]\nenabled=true\n", "");
    row("unknown", enabled("importFil=/x"), "W-SET-UNKNOWN importFil");
    row("case", enabled("importfile=/x"), "W-SET-CASE importfile");
    row("group", enabled("[MES]\nimportFile=/x"), "W-SET-GROUP importFile");
    row("state", enabled("[MES]\nx=/x"), "W-SET-STATE MES/x");
    row("switch", "enabled=no\n", "W-SET-SWITCH enabled");
    row("switch of a kind", enabled("testMode=off\ndeleteFile=False"), "W-SET-SWITCH testMode");
    row("number", enabled("timerInterval=abc"), "W-SET-NUMBER timerInterval");
    row("fraction", enabled("timerInterval=0.5"), "W-SET-NUMBER timerInterval");
    row("wraps", enabled("timerInterval=4294968"), "W-SET-WRAP timerInterval");
    row("does not wrap", enabled("timerInterval=4294967"), "");
    row("33 bits", enabled("departmentId=4294967297"), "W-SET-WRAP departmentId");
    row("9 bits", enabled("syncCommandRun=256"), "W-SET-WRAP syncCommandRun");
    row("comma", enabled("syncCommand=/x a,b"), "W-SET-COMMA syncCommand");
    row("no export", enabled("importFile="), "W-SET-EXPORT importFile");
    row("command not found", enabled("syncCommand=/none/x --y\nsyncCommandRun=2"),
        "W-SET-COMMAND syncCommand");
    row("command not executable", enabled("syncCommand=\\\"/etc/passwd\\\" -a\nsyncCommandRun=1"),
        "W-SET-COMMAND syncCommand");
    row("no command", enabled("syncCommandRun=2"), "W-SET-COMMAND syncCommand");
    row("command of the search path", enabled("syncCommand=sh /x\nsyncCommandRun=2"), "");
    row("command with blanks and quotes",
        enabled("syncCommand=\\\"/tmp/a b\\\"\\\"\\\"c\\\" x\nsyncCommandRun=2"),
        "W-SET-COMMAND syncCommand");
    row("command that never runs", enabled("syncCommand=/none/x"), "");
    row("sync 0", enabled("syncInterval=0"), "E-SET-SYNC syncInterval");
    row("sync no number", enabled("syncInterval=often"),
        "W-SET-NUMBER syncInterval, E-SET-SYNC syncInterval");
    row("disabled", "enabled=false\n", "E-SET-DISABLED enabled");
    row("nothing", "", "E-SET-DISABLED enabled");
    row("Windows-1250", enabled("[MES]\n21=matersk\xe1"), "W-SET-ENCODING FILE");
    row("byte order mark", "\xef\xbb\xbf\x65nabled=true\n",
        "W-SET-BOM FILE, E-SET-DISABLED enabled");
    row("UTF-16", QByteArray("e\0n\0a\0b\0l\0e\0d\0=\x0031\0\n\0", 20),
        "W-SET-ENCODING FILE, E-SET-DISABLED enabled");
}

void tst_SettingsCheck::findings()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, codes);
    QStringList found;
    const QVector<Finding> findings = settingsFindings(*settings(content));
    for (const Finding &finding : findings) {
        QCOMPARE(finding.severity,
                 finding.code.startsWith(QLatin1Char('E')) ? Finding::Error : Finding::Warning);
        const QString about = finding.about == file->path() ? QStringLiteral("FILE")
                                                            : finding.about;
        found.append(finding.code + QLatin1Char(' ') + about);
    }
    QCOMPARE(found.join(QStringLiteral(", ")), codes);
}

void tst_SettingsCheck::findings_textNamesTheMatter()
{
    const QVector<Finding> findings = settingsFindings(
        *settings("enabled=no\nsyncCommand=sh\nsyncCommandRun=257\nimportFil=x\n"));
    QCOMPARE(findings.size(), 3);
    QCOMPARE(findingLine(findings.at(0)),
             QStringLiteral("the plugin does not know the key 'importFil' of '%1' (did you mean "
                            "'importFile'?); correct or remove it")
                 .arg(file->path()));
    QCOMPARE(findingLine(findings.at(1)),
             QStringLiteral("'enabled=no' is read as true, as is everything but 'false', '0' and "
                            "an empty value; write true or false"));
    QCOMPARE(findingLine(findings.at(2)),
             QStringLiteral("'syncCommandRun=257' is read as 1, its low 8 bits; write 0, 1 or 2"));
}

void tst_SettingsCheck::disabled_namesItsCause_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("remedy");
    QTest::newRow("none") << QByteArray("enabled=0") << "set enabled=true in '%1'";
    QTest::newRow("group") << QByteArray("[MES]\nenabled=true")
                           << "the key 'enabled' stands in the group [MES] of '%1', where the "
                              "plugin does not look for it; move it above all groups";
    QTest::newRow("case") << QByteArray("Enabled=true")
                          << "the key 'Enabled' of '%1' is ignored; write it 'enabled'";
    QTest::newRow("mark") << QByteArray("\xef\xbb\xbf\x65nabled=true")
                          << "'%1' begins with a byte order mark, so that its first key or group "
                             "is ignored; save it in UTF-8 without one";
}

void tst_SettingsCheck::disabled_namesItsCause()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, remedy);
    const Finding finding = settingsFindings(*settings(content)).constLast();
    QCOMPARE(finding.text, QStringLiteral("the plugin is disabled"));
    QCOMPARE(finding.remedy, remedy.arg(file->path()));
}

void tst_SettingsCheck::environment_countsWhereTheFileLacksAKey()
{
    qputenv("ENABLED", "yes");
    qputenv("SYNCINTERVAL", "0");
    const QVector<Finding> findings = settingsFindings(*settings("testMode=1\n"));
    QCOMPARE(findings.size(), 1);
    QCOMPARE(findings.first().code, QStringLiteral("E-SET-SYNC"));
}

void tst_SettingsCheck::values_areThoseOfThePlugin()
{
    const PluginSettings standard = settings("")->values();
    QCOMPARE(standard.syncInterval, 60u);
    QCOMPARE(standard.tickMilliseconds, 60000u);
    QCOMPARE(standard.testMode, false);
    QCOMPARE(standard.importFile, QDir::current().filePath(QStringLiteral("ron.data")));

    const PluginSettings set = settings("timerInterval=4294968\nsyncInterval=7\ntestMode=x\n"
                                        "importFile=/a/b\n")
                                   ->values();
    QCOMPARE(set.syncInterval, 7u);
    QCOMPARE(set.tickMilliseconds, 1000u); // 704 ms, and at least a second
    QCOMPARE(set.testMode, true);
    QCOMPARE(set.importFile, QStringLiteral("/a/b"));
}

void tst_SettingsCheck::check_refusesWhatCannotBeRead()
{
    QVERIFY(!settings("enabled=true\n")->check());
    QVERIFY(settings("enabled: true\n")->check().text.contains(QStringLiteral("not a valid INI")));
    const SettingsFile missing(folder.filePath(QStringLiteral("none/TalvenHR.ini")));
    QVERIFY(missing.check().text.startsWith(QStringLiteral("no TalvenHR.ini in '")));
    qputenv("ENABLED", "1");
    QVERIFY(!missing.check());
    const SettingsFile directory(folder.path());
    QVERIFY(directory.check().text.contains(QStringLiteral("cannot be read")));
}

QTEST_GUILESS_MAIN(tst_SettingsCheck)
#include "tst_settingscheck.moc"
