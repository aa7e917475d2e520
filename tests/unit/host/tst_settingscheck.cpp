// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings that mean something else than what stands there.
#include "host/plugin/settingscheck.h"
#include "host/plugin/settingsfile.h"

#include <QtTest>

namespace {

/// The file's content after a remedy, as it was printed, has been followed.
QByteArray applied(const Finding &finding, const QByteArray &content)
{
    const QString remedy = finding.remedy;
    const int begin = remedy.indexOf(QLatin1String("the line: "));
    const QByteArray line = begin < 0 ? QByteArray("enabled=true")
                                      : remedy.mid(begin + 10).toUtf8();
    QList<QByteArray> lines = content.split('\n');
    if (remedy.contains(QLatin1String("remove the line: "))) {
        lines.removeAll(line);
        return lines.join('\n');
    }
    if (remedy.contains(QLatin1String("below a line [MES]"))) {
        lines.removeAll(line);
        return lines.join('\n') + "\n[MES]\n" + line;
    }
    const QByteArray key = line.left(line.indexOf('='));
    for (QByteArray &old : lines) {
        if (old == line)
            old.clear(); // moved from its group
        else if (old.left(old.indexOf('=')).toLower() == key.toLower())
            return content.left(content.indexOf(old)) + line
                + content.mid(content.indexOf(old) + old.size());
    }
    return line + '\n' + lines.join('\n');
}

QStringList codesOf(const QVector<Finding> &findings)
{
    QStringList codes;
    for (const Finding &finding : findings)
        codes.append(finding.code);
    return codes;
}

} // namespace

class tst_SettingsCheck : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void findings_data();
    void findings();
    void findings_textNamesTheMatter();
    void stateText_tellsItsHarm_data();
    void stateText_tellsItsHarm();
    void remedy_makesTheFindingGo_data();
    void remedy_makesTheFindingGo();
    void remedy_ofTheCommandsFile();
    void remedy_ofAPathWithAnApostrophe();
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
    row("sound", enabled("importFile=/x\nsyncInterval=1\ndeleteFile=0\n[MES]\n21=a\n22=\"b, c;\""),
        "");
    row("sound group", "[General]\nenabled=true\n", "");
    row("group of all letters", "[ GENERAL ] ; all\nenabled=true\nimportFile=/x;y\n",
        "W-SET-COMMENT importFile");
    row("unknown", enabled("importFil=/x"), "W-SET-UNKNOWN importFil");
    row("case", enabled("importfile=/x"), "W-SET-CASE importfile");
    row("hash", enabled("# importFile=/x"), "W-SET-HASH # importFile");
    row("twice", enabled("importFile=/x\nimportFile=/y"), "W-SET-TWICE importFile");
    row("twice alike", enabled("importFile=/x\nimportFile=/x"), "");
    row("twice in two groups", enabled("[MES]\n21=a\n22=b\n[MES]\n21=c"), "W-SET-TWICE MES/21");
    row("group", enabled("[MES]\nimportFile=/x"), "W-SET-GROUP importFile");
    row("state", enabled("[MES]\nx=/x"), "W-SET-STATE MES/x");
    row("state beyond 16 bits", enabled("[MES]\n65557=x"), "W-SET-STATE MES/65557");
    row("state without a text", enabled("[MES]\n22="), "N-SET-STATE MES/22");
    row("state with an apostrophe", enabled("[MES]\n22=a'b"), "W-SET-STATETEXT MES/22");
    row("state with a backslash at its end", enabled("[MES]\n22=a\\\\"), "W-SET-STATETEXT MES/22");
    row("state with a backslash inside", enabled("[MES]\n22=a\\\\b"), "W-SET-STATETEXT MES/22");
    row("state with a marker", enabled("[MES]\n22=a %1 b"), "W-SET-STATETEXT MES/22");
    row("state with a percent sign", enabled("[MES]\n22=50 % b"), "");
    row("state that runs as SQL", enabled("[MES]\n22=\"a', name=1 WHERE 1; -- \""),
        "W-SET-STATETEXT MES/22");
    row("state in a group in small letters", enabled("[mes]\n22=a"), "W-SET-STATEPLACE mes/22");
    row("state above the groups", enabled("22=a"), "W-SET-STATEPLACE 22");
    row("state with a comma", enabled("[MES]\n22=a, b"), "W-SET-COMMA 22");
    row("semicolon", enabled("importFile=/x;y"), "W-SET-COMMENT importFile");
    row("semicolon in quotes", enabled("importFile=\"/x;y\""), "");
    row("comment behind a number", enabled("syncInterval=5 ; ticks"), "");
    row("backslash", enabled("importFile=C:\\export"), "W-SET-BACKSLASH importFile");
    row("backslash that makes a line end", enabled("importFile=C:\\new"),
        "W-SET-BACKSLASH importFile");
    row("doubled backslash", enabled("importFile=C:\\\\new"), "");
    row("switch", "enabled=no\n", "W-SET-SWITCH enabled");
    row("switch of a kind", enabled("testMode=off\ndeleteFile=False"), "W-SET-SWITCH testMode");
    row("number", enabled("timerInterval=abc"), "W-SET-NUMBER timerInterval");
    row("fraction", enabled("timerInterval=0.5"), "W-SET-NUMBER timerInterval");
    row("wraps", enabled("timerInterval=4294968"), "W-SET-TIMER timerInterval");
    row("does not wrap", enabled("timerInterval=4294967"), "");
    row("33 bits", enabled("departmentId=4294967297"), "W-SET-WRAP departmentId");
    row("9 bits", enabled("syncCommandRun=256"), "W-SET-WRAP syncCommandRun");
    row("on every pass", enabled("syncCommand=sh\nsyncCommandRun=7"), "N-SET-RUN syncCommandRun");
    row("no department", enabled("departmentId=0"), "N-SET-DEPARTMENT departmentId");
    row("comma", enabled("syncCommand=/x a,b"), "W-SET-COMMA syncCommand");
    row("no export", enabled("importFile="), "W-SET-EXPORT importFile");
    row("command not found", enabled("syncCommand=/none/x --y\nsyncCommandRun=2"),
        "W-SET-COMMAND syncCommand");
    row("command not executable", enabled("syncCommand=\\\"/etc/passwd\\\" -a\nsyncCommandRun=1"),
        "W-SET-EXECUTE syncCommand");
    row("no command", enabled("syncCommandRun=2"), "W-SET-NOCOMMAND syncCommand");
    row("quotes that the reader takes", enabled("syncCommand=sh -c \"a b\"\nsyncCommandRun=2"),
        "W-SET-QUOTES syncCommand");
    row("quotes around all", enabled("syncCommand=\"sh a,b\"\nsyncCommandRun=2"), "");
    row("quotes with backslashes", enabled("syncCommand=sh -c \\\"a b\\\"\nsyncCommandRun=2"), "");
    row("single quotes", enabled("syncCommand=sh -c 'a b'\nsyncCommandRun=2"),
        "W-SET-QUOTES syncCommand");
    row("single quotes around two commands",
        enabled("syncCommand=sh -c 'a && b'\nsyncCommandRun=2"), "W-SET-QUOTES syncCommand");
    row("two commands", enabled("syncCommand=sh /x && sh /y\nsyncCommandRun=2"),
        "W-SET-SHELL syncCommand");
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
    row("UTF-16",
        QByteArray("\xff\xfe"
                   "e\0n\0a\0b\0l\0e\0d\0=\0001\0\n\0",
                   22),
        "W-SET-UTF16 FILE, E-SET-DISABLED enabled");
}

void tst_SettingsCheck::findings()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, codes);
    QStringList found;
    const QVector<Finding> findings = settingsFindings(*settings(content));
    for (const Finding &finding : findings) {
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
                            "'importFile'?); correct or remove the line: importFil=x")
                 .arg(file->path()));
    QCOMPARE(findingLine(findings.at(1)),
             QStringLiteral("'enabled=no' is read as true, as is everything but 'false', '0' and "
                            "an empty value; write the line: enabled=false"));
    QCOMPARE(
        findingLine(findings.at(2)),
        QStringLiteral("'syncCommandRun=257' is read as 1, for numbers go from 0 to 255; write "
                       "such a number, as in the line: syncCommandRun=2"));
}

void tst_SettingsCheck::stateText_tellsItsHarm_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("becomes"); // its begin
    QTest::addColumn<QString>("remedy"); // its end
    QTest::newRow("apostrophe") << QByteArray("22=a'b") << "no person in this state is added"
                                << "the line: 22=a’b";
    QTest::newRow("marker") << QByteArray("22=x %1 y") << "no person in this state is added"
                            << "the line: 22=x % 1 y";
    QTest::newRow("backslash") << QByteArray("22=a\\\\b")
                               << "people in this state get another text: "
                               << "the line: 22=a/b";
    QTest::newRow("SQL") << QByteArray("22=\"a', name=1 WHERE 1; -- \"")
                         << "for people in this state the server runs something else"
                         << "the line: 22=\"a’, name=1 WHERE 1; -- \"";
}

/// What the plugin's own code makes of it.
void tst_SettingsCheck::stateText_tellsItsHarm()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, becomes);
    QFETCH(QString, remedy);
    const Finding finding = settingsFindings(*settings("enabled=true\n[MES]\n" + line)).constLast();
    QVERIFY2(finding.becomes.startsWith(becomes), qPrintable(finding.becomes));
    QVERIFY2(finding.remedy.endsWith(remedy), qPrintable(finding.remedy));
}

void tst_SettingsCheck::remedy_makesTheFindingGo_data()
{
    findings_data();
}

/// Remedies that are a line to write, or a command of the shell.
void tst_SettingsCheck::remedy_makesTheFindingGo()
{
    QFETCH(QByteArray, content);
    const QVector<Finding> findings = settingsFindings(*settings(content));
    for (const Finding &finding : findings) {
        // What cannot be followed without knowing what was meant, or on a file of the system.
        if (finding.code == QLatin1String("W-SET-COMMAND")
            || finding.code == QLatin1String("W-SET-EXECUTE"))
            continue;
        // Its remedy is the whole line of what keeps the key from being read.
        if (finding.code == QLatin1String("E-SET-DISABLED") && findings.size() > 1)
            continue;
        QVector<Finding> left;
        const QString shell = finding.remedy.section(QStringLiteral(": "), -1);
        settings(content);
        if (shell.startsWith(QLatin1String("sed ")) || shell.startsWith(QLatin1String("iconv "))) {
            // The names of the files are alike but for their number.
            QString here = shell;
            here.replace(finding.about, file->path());
            QCOMPARE(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), here}), 0);
            left = settingsFindings(SettingsFile(file->path()));
        } else {
            left = settingsFindings(*settings(applied(finding, content)));
        }
        QVERIFY2(!codesOf(left).contains(finding.code), qPrintable(findingLine(finding)));
    }
}

void tst_SettingsCheck::remedy_ofTheCommandsFile()
{
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("a b")));
    QFile program(folder.filePath(QStringLiteral("a b/export")));
    QVERIFY(program.open(QIODevice::WriteOnly));
    program.close();
    const QByteArray run = "enabled=true\nsyncCommandRun=1\n";
    QVector<Finding> findings = settingsFindings(
        *settings(run + "syncCommand=" + program.fileName().toUtf8()));
    QCOMPARE(codesOf(findings), QStringList {QStringLiteral("W-SET-BLANK")});
    const QByteArray line = findings.first().remedy.section(QStringLiteral("line: "), 1).toUtf8();
    findings = settingsFindings(*settings(run + line));
    QCOMPARE(codesOf(findings), QStringList {QStringLiteral("W-SET-EXECUTE")});
    const QString shell = findings.first().remedy.section(QStringLiteral(": "), 1);
    QCOMPARE(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), shell}), 0);
    QCOMPARE(codesOf(settingsFindings(*settings(run + line))), QStringList());
}

void tst_SettingsCheck::remedy_ofAPathWithAnApostrophe()
{
    QVERIFY(QDir(folder.path()).mkpath(QStringLiteral("it's")));
    for (const QByteArray &content :
         {QByteArray("\xef\xbb\xbf\x65nabled=1"), QByteArray("enabled=1\n;\xe1")}) {
        QFile::remove(folder.filePath(QStringLiteral("it's/TalvenHR.ini")));
        QFile::rename(settings(content)->path(),
                      folder.filePath(QStringLiteral("it's/TalvenHR.ini")));
        const SettingsFile here(folder.filePath(QStringLiteral("it's/TalvenHR.ini")));
        const QString shell = settingsFindings(here).first().remedy.section(QStringLiteral(": "),
                                                                            -1);
        QCOMPARE(QProcess::execute(QStringLiteral("sh"), {QStringLiteral("-c"), shell}), 0);
        QCOMPARE(codesOf(settingsFindings(SettingsFile(here.path()))), QStringList());
    }
}

void tst_SettingsCheck::disabled_namesItsCause_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("remedy");
    QTest::newRow("none") << QByteArray("enabled=0") << "set enabled=true in '%1'";
    QTest::newRow("group")
        << QByteArray("[MES]\nenabled=true")
        << "the key 'enabled' stands in the group [MES] of '%1', where the "
           "plugin does not look for it; move above all groups the line: enabled=true";
    QTest::newRow("case")
        << QByteArray("Enabled=true")
        << "the key 'Enabled' of '%1' is ignored, for capitals count; replace it by "
           "the line: enabled=true";
    QTest::newRow("mark")
        << QByteArray("\xef\xbb\xbf\x65nabled=true")
        << "'%1' begins with a byte order mark, so that its first key or group "
           "is ignored; save it in UTF-8 without one: sed -i '1s/^\\xEF\\xBB\\xBF//' "
           "'%1'";
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
