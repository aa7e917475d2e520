// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal reads, and the folder that its pass works in.
#include "host/database/connection.h"
#include "host/plugin/settingsfile.h"
#include "host/rehearsal/pretendedday.h"
#include "host/rehearsal/realnames.h"
#include "host/rehearsal/rehearsalinputs.h"
#include "host/rehearsal/rehearsalsite.h"
#include "host/server/privateserver.h"

#include <QSqlQuery>
#include <QtTest>

namespace {

void writeFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
}

} // namespace

class tst_Rehearsal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settings_ofTheRealPassStayOut_data();
    void settings_ofTheRealPassStayOut();
    void settings_thatCannotBeCopied_areRefused();
    void site_isForItsOwnerOnly();
    void site_failsWithoutAnExport();
    void names_areTheRealOnes();
    void names_stayWithoutAFolder();
    void inputs_areNamedBeforeAnythingIsCopied_data();
    void inputs_areNamedBeforeAnythingIsCopied();
    void export_isLookedAt();
    void days_areThoseOfTheServersClock();
    void day_comesBesideTheSettingsOfTheLogin();
};

void tst_Rehearsal::settings_ofTheRealPassStayOut_data()
{
    QTest::addColumn<QByteArray>("settings");
    const auto row = [](const char *name, const QByteArray &settings) {
        QTest::newRow(name) << settings;
    };
    row("nothing there", "");
    row("there", "deleteFile=true\nsyncCommandRun=2");
    row("twice", "deleteFile=true\nsyncCommandRun=2\ndeleteFile=true\nsyncCommandRun=2\n");
    row("with blanks", " deleteFile = true\n\t syncCommandRun\t=\t2 ");
    row("in [General]", "[General]\ndeleteFile=true\nsyncCommandRun=2");
    row("in [GENERAL]", "[MES]\n[GENERAL] ; all\ndeleteFile=true\nsyncCommandRun=2");
    row("in a group with blanks", "[MES]\n1=x\n [ general ] \ndeleteFile=true\nsyncCommandRun=2");
    row("escaped", "%64eleteFile=true\nsync%43ommand%52un=2\n");
    row("escaped as UTF-16", "%U0064eleteFile=true\n%U0073yncCommandRun=2\n");
    row("with a backslash", "delete\\x46ile=true\nsync\\x43ommandRun=2\n");
    row("on a line that goes on", "departmentId=1 \\\ndeleteFile=true\nsyncCommandRun=2\n");
    row("the value on the next line", "deleteFile=\\\ntrue\nsyncCommandRun=\\\n2\n");
    row("between quotes", "departmentId=\"1\ndeleteFile=true\"\nsyncCommandRun=2\n");
    row("ends of lines of old", "deleteFile=true\rsyncCommandRun=2\r");
    row("ends of lines of others", "deleteFile=true\r\nsyncCommandRun=2\r\n");
    row("mark of UTF-8", QByteArray("\xef\xbb\xbf").append("deleteFile=true\nsyncCommandRun=2\n"));
    row("behind a comment", "; a comment\n#another=1\ndeleteFile=true ; yes\nsyncCommandRun=2\n");
    row("a list", "deleteFile=true, true\nsyncCommandRun=2, 2\nimportFile=a, b\n");
    row("as a value of Qt", "deleteFile=@Variant(\\0\\0\\0\\x1\\x1)\nsyncCommandRun=2\n");
    row("in other groups, too", "[MES]\ndeleteFile=x\n[%General]\ndeleteFile=y\n[x]\nimportFile=z");
}

/// However they are written: the real export would go, the real command would run.
void tst_Rehearsal::settings_ofTheRealPassStayOut()
{
    QFETCH(QByteArray, settings);
    const QByteArray always
        = "\n[General]\nenabled=true\nimportFile=/real\nsyncCommand=rm -r \"/real\"\n"
          "[MES]\n21=Mate\xc5\x99sk\xc3\xa1; \"d\\\\o\"\n22=@x\n23=\xe1\x9a\n25=\xf0\x9f\x98\x80\n24=a, b\n";
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("TalvenHR.ini"));
    writeFile(path, settings + always);
    RehearsalSite site;
    const Failure failure = site.make(path, path);
    QVERIFY2(!failure, qPrintable(failure.text));
    const SettingsFile real(path);
    const SettingsFile rehearsed(site.settingsFile());
    QCOMPARE(rehearsed.toString(QStringLiteral("importFile")), site.exportFile());
    QCOMPARE(rehearsed.toBool(QStringLiteral("deleteFile")), false);
    QCOMPARE(rehearsed.toUInt(QStringLiteral("syncCommandRun")), 0U);
    QCOMPARE(rehearsed.toUInt(QStringLiteral("syncInterval")), 1U);
    QVERIFY(rehearsed.values().tickMilliseconds == 1000);
    for (const char *key : {"enabled", "syncCommand", "testMode", "departmentId"})
        QCOMPARE(rehearsed.value(QString::fromLatin1(key)), real.value(QString::fromLatin1(key)));
    QCOMPARE(rehearsed.stateTexts(), real.stateTexts());
    QVERIFY(!real.stateTexts().isEmpty());
}

/// A list of nothing, which cannot be written as one.
void tst_Rehearsal::settings_thatCannotBeCopied_areRefused()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("TalvenHR.ini"));
    writeFile(path, "enabled=true\ndepartmentId=@Variant(\\0\\0\\0\\xb\\0\\0\\0\\0)\n");
    const QString copy = folder.filePath(QStringLiteral("copy.ini"));
    const Failure failure = writeSettingsWith({}, path, copy);
    QCOMPARE(failure.text,
             QStringLiteral("the settings '%1' cannot be copied, so no pass was rehearsed: the "
                            "plugin would get another 'departmentId' from the copy; write this key "
                            "as a plain line KEY=VALUE")
                 .arg(path));
    QVERIFY(!QFile::exists(copy));
}

void tst_Rehearsal::site_isForItsOwnerOnly()
{
    QTemporaryDir folder;
    const QString settings = folder.filePath(QStringLiteral("TalvenHR.ini"));
    const QString data = folder.filePath(QStringLiteral("a;b, c.data"));
    for (const QString &path : {settings, data}) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("enabled=true\nimportFile=/x\n");
    }
    RehearsalSite site;
    const Failure failure = site.make(settings, data);
    QVERIFY2(!failure, qPrintable(failure.text));
    const auto others = QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther;
    QVERIFY(!(QFile::permissions(site.path()) & others));
    QVERIFY(!(QFile::permissions(site.exportFile()) & others));
    const QSettings written(site.path() + QStringLiteral("/TalvenHR.ini"), QSettings::IniFormat);
    QCOMPARE(written.value(QStringLiteral("importFile")).toString(), site.exportFile());
    QCOMPARE(written.value(QStringLiteral("enabled")).toString(), QStringLiteral("true"));
    QCOMPARE(written.value(QStringLiteral("deleteFile")).toString(), QStringLiteral("false"));
}

void tst_Rehearsal::site_failsWithoutAnExport()
{
    QTemporaryDir folder;
    const QString settings = folder.filePath(QStringLiteral("TalvenHR.ini"));
    writeFile(settings, "enabled=true\n");
    RehearsalSite site;
    const Failure failure = site.make(settings, QStringLiteral("/none/x.data"));
    QCOMPARE(failure.exitCode, ExitUsage);
    QCOMPARE(failure.text, QStringLiteral("there is no file '/none/x.data'"));
    const Failure place = RehearsalSite().make(settings, QStringLiteral("/tmp"));
    QCOMPARE(place.text, QStringLiteral("'/tmp' is a folder, not a file"));
    const Failure device = RehearsalSite().make(settings, QStringLiteral("/dev/zero"));
    QCOMPARE(device.text,
             QStringLiteral("'/dev/zero' is no regular file; the plugin reads no others"));
}

void tst_Rehearsal::names_areTheRealOnes()
{
    QTemporaryDir folder;
    const QString settings = folder.filePath(QStringLiteral("TalvenHR.ini"));
    const QString data = folder.filePath(QStringLiteral("copy.data"));
    writeFile(settings, "enabled=true\n");
    writeFile(data, "");
    RehearsalSite site;
    QVERIFY(!site.make(settings, data));
    RehearsalWishes wishes;
    wishes.settingsFile = QStringLiteral("/srv/TalvenHR.ini");
    wishes.exportFile = data;
    QCOMPARE(RealNames(site, wishes).exportFile(), data);
    wishes.exportName = QStringLiteral("/in/ron.data");
    const RealNames names(site, wishes);
    const QString text = QStringLiteral("%1, %2, %3/x")
                             .arg(site.exportFile(), site.settingsFile(), site.path());
    const QString real = QStringLiteral("/in/ron.data, /srv/TalvenHR.ini, /srv/x");
    QCOMPARE(names.in(text), real);
    Changes changes;
    changes.messages.append({true, QDateTime(), text});
    changes.people.resize(1);
    changes.people.first().messages.append({false, QDateTime(), text});
    changes.people.first().notDone.append({NotDone::Refused, text, QString(), QString()});
    names.putInto(&changes);
    QCOMPARE(changes.messages.first().text, real);
    QCOMPARE(changes.people.first().messages.first().text, real);
    QCOMPARE(changes.people.first().notDone.first().text, real);
    TraceSteps steps(1);
    steps.first().text = text;
    names.putInto(&steps);
    QCOMPARE(steps.first().text, real);
}

/// As on a full disk.
void tst_Rehearsal::names_stayWithoutAFolder()
{
    const QByteArray real = qgetenv("TMPDIR");
    qputenv("TMPDIR", "/no/such/folder");
    const RehearsalSite site;
    qputenv("TMPDIR", real);
    RehearsalWishes wishes;
    wishes.settingsFile = QStringLiteral("/srv/TalvenHR.ini");
    const QString text = QStringLiteral("no space left");
    QCOMPARE(RealNames(site, wishes).in(text), text);
}

void tst_Rehearsal::inputs_areNamedBeforeAnythingIsCopied_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QString>("exportFile");
    QTest::addColumn<QString>("fault");
    const auto row = [](const char *settings, const char *exportFile, const char *fault) {
        QTest::newRow(fault) << QByteArray(settings) << QString::fromLatin1(exportFile)
                             << QString::fromLatin1(fault);
    };
    row("importFile=x\n", "", "the plugin is disabled; set enabled=true in 'INI' [E-SET-DISABLED]");
    row("enabled=true\n", "",
        "'INI' does not say where the export lies; set importFile there, or name an export: "
        "talvenhr explain 4711.1 --export FILE");
    row("enabled=true\nimportFile=/none/x\n", "",
        "there is no export at '/none/x', the importFile of 'INI'; put one there, or name another: "
        "talvenhr explain 4711.1 --export FILE");
    row("enabled=true\nimportFile=/none/x\n", "/none/y",
        "there is no export '/none/y'; correct --export");
    row("enabled=true\nimportFile=/tmp\n", "",
        "the export '/tmp' is no regular file; the plugin reads no others");
}

void tst_Rehearsal::inputs_areNamedBeforeAnythingIsCopied()
{
    QFETCH(QByteArray, settings);
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("TalvenHR.ini")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(settings);
    file.close();
    RehearsalWishes wishes;
    wishes.pluginFile = QStringLiteral(TALVENHR_PLUGIN);
    wishes.settingsFile = file.fileName();
    QFETCH(QString, exportFile);
    wishes.exportFile = exportFile;
    const Failure failure = checkInputs(QStringLiteral("talvenhr explain 4711.1 --export FILE"),
                                        &wishes);
    QCOMPARE(int(failure.exitCode), int(ExitUsage));
    QTEST(QString(failure.text).replace(file.fileName(), QStringLiteral("INI")), "fault");

    wishes.pluginFile = QStringLiteral("/none/plugin.so");
    QVERIFY(checkInputs(QString(), &wishes).exitCode == ExitUsage);
}

void tst_Rehearsal::export_isLookedAt()
{
    QTemporaryDir folder;
    RehearsalWishes wishes;
    wishes.exportFile = folder.filePath(QStringLiteral("x.data"));
    ExportLook look;
    QCOMPARE(lookAtExport(wishes, &look).text,
             QStringLiteral("there is no file '%1'").arg(wishes.exportFile));
    QFile file(wishes.exportFile);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.flush();
    QVERIFY(!lookAtExport(wishes, &look));
    QCOMPARE(look.findings.size(), 1);
    QCOMPARE(look.findings.first().code, QStringLiteral("E-FILE-NOTHING"));
    QVERIFY(look.lines.empty());
    file.write("1001|1||Eva|Malá|||2020-01-01 00:00:00.000||100|Centrála|1|"
               "2024-01-01 00:00:00.000|11|0|0|5|0\n1002|1||Ja");
    file.close();
    QVERIFY(!lookAtExport(wishes, &look));
    QCOMPARE(look.findings.first().code, QStringLiteral("E-FILE-CUT"));
    QCOMPARE(int(look.lines.size()), 1);
    QCOMPARE(look.lines.front().pamId(), QStringLiteral("1001.1"));
}

void tst_Rehearsal::days_areThoseOfTheServersClock()
{
    QVERIFY(!canBePretended(QDate(1900, 1, 1)));
    QVERIFY(!canBePretended(QDate(1970, 1, 2)));
    QVERIFY(canBePretended(QDate(1970, 1, 3)));
    QVERIFY(canBePretended(QDate(2038, 1, 17)));
    QVERIFY(!canBePretended(QDate(2038, 1, 18)));
}

void tst_Rehearsal::day_comesBesideTheSettingsOfTheLogin()
{
    const QTemporaryDir folder(QStringLiteral("/tmp/talven-XXXXXX"));
    PrivateServer server(folder.filePath(QStringLiteral("db")));
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    const QString statements = QStringLiteral(
        "SET GLOBAL init_connect = 'SET lc_time_names = \"sk_SK\"'; "
        "CREATE USER somebody@localhost");
    QVERIFY2(server.execute(QString(), statements, &error), qPrintable(error));
    ConnectionParameters parameters;
    parameters.socket = server.socketPath();
    parameters.database = QStringLiteral("information_schema");
    parameters.user = QStringLiteral("root");
    const Failure failure = pretendDay(parameters, QDate(2027, 1, 1));
    QVERIFY2(!failure, qPrintable(failure.text));
    parameters.user = QStringLiteral("somebody");
    Connection connection(QStringLiteral("somebody"));
    const Failure refusal = connection.open(parameters);
    QVERIFY2(!refusal, qPrintable(refusal.text));
    QSqlQuery query(connection.handle());
    QVERIFY(query.exec(QStringLiteral("SELECT CURDATE(), @@lc_time_names")) && query.next());
    QCOMPARE(query.value(0).toDate(), QDate(2027, 1, 1));
    QCOMPARE(query.value(1).toString(), QStringLiteral("sk_SK"));
}

QTEST_GUILESS_MAIN(tst_Rehearsal)
#include "tst_rehearsal.moc"
