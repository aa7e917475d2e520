// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal reads, and the folder that its pass works in.
#include "host/database/connection.h"
#include "host/rehearsal/pretendedday.h"
#include "host/rehearsal/rehearsalinputs.h"
#include "host/rehearsal/rehearsalsite.h"
#include "host/server/privateserver.h"

#include <QSqlQuery>
#include <QtTest>

class tst_Rehearsal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settings_keepAllButTheseKeys_data();
    void settings_keepAllButTheseKeys();
    void site_isForItsOwnerOnly();
    void site_failsWithoutAnExport();
    void inputs_areNamedBeforeAnythingIsCopied_data();
    void inputs_areNamedBeforeAnythingIsCopied();
    void export_isLookedAt();
    void days_areThoseOfTheServersClock();
    void day_comesBesideTheSettingsOfTheLogin();
};

void tst_Rehearsal::settings_keepAllButTheseKeys_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("nothing there")
        << QByteArray("enabled=true\n") << QByteArray("deleteFile=false\nenabled=true\n\n");
    QTest::newRow("there") << QByteArray("deleteFile=true\nenabled=true")
                           << QByteArray("deleteFile=false\nenabled=true\n");
    QTest::newRow("with blanks") << QByteArray(" deleteFile = true")
                                 << QByteArray("deleteFile=false\n");
    QTest::newRow("in [General]") << QByteArray("[General]\ndeleteFile=true")
                                  << QByteArray("deleteFile=false\n[General]\n");
    QTest::newRow("in [GENERAL]") << QByteArray("[MES]\n[GENERAL] ; all\ndeleteFile=true")
                                  << QByteArray("deleteFile=false\n[MES]\n[GENERAL] ; all\n");
    QTest::newRow("of another group") << QByteArray("[MES]\ndeleteFile=x")
                                      << QByteArray("deleteFile=false\n[MES]\ndeleteFile=x\n");
    QTest::newRow("mark of UTF-8")
        << QByteArray("\xef\xbb\xbftestMode=true\n")
        << QByteArray("\xef\xbb\xbf").append("deleteFile=false\ntestMode=true\n\n");
    QTest::newRow("another encoding")
        << QByteArray("[MES]\n21=\xe1\x9a") << QByteArray("deleteFile=false\n[MES]\n21=\xe1\x9a\n");
}

void tst_Rehearsal::settings_keepAllButTheseKeys()
{
    QFETCH(QByteArray, before);
    QTEST(settingsWith(before, {QStringLiteral("deleteFile=false")}), "after");
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
    RehearsalSite site;
    const Failure failure = site.make(QCoreApplication::applicationFilePath(),
                                      QStringLiteral("/none/x.data"));
    QCOMPARE(failure.exitCode, ExitUsage);
    QVERIFY(failure.text.startsWith(QStringLiteral("cannot read '/none/x.data': ")));
    const Failure folder = site.make(QStringLiteral("/dev/zero"), QStringLiteral("/tmp"));
    QCOMPARE(folder.text,
             QStringLiteral("'/dev/zero' is no regular file; the plugin reads no others"));
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
        "talvenhr rehearse --export FILE");
    row("enabled=true\nimportFile=/none/x\n", "",
        "there is no export at '/none/x', the importFile of 'INI'; put one there, or name another: "
        "talvenhr rehearse --export FILE");
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
    const Failure failure = checkInputs(&wishes);
    QCOMPARE(int(failure.exitCode), int(ExitUsage));
    QTEST(QString(failure.text).replace(file.fileName(), QStringLiteral("INI")), "fault");

    wishes.pluginFile = QStringLiteral("/none/plugin.so");
    QVERIFY(checkInputs(&wishes).exitCode == ExitUsage);
}

void tst_Rehearsal::export_isLookedAt()
{
    QTemporaryDir folder;
    RehearsalWishes wishes;
    wishes.exportFile = folder.filePath(QStringLiteral("x.data"));
    ExportLook look;
    QVERIFY(lookAtExport(wishes, &look)
                .text.startsWith(
                    QStringLiteral("the export '%1' cannot be read: ").arg(wishes.exportFile)));
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
