// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder that a rehearsed pass works in.
#include "host/rehearsal/rehearsalsite.h"

#include <QtTest>

class tst_Rehearsal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settings_keepAllButTheseKeys_data();
    void settings_keepAllButTheseKeys();
    void site_isForItsOwnerOnly();
    void site_failsWithoutAnExport();
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

QTEST_GUILESS_MAIN(tst_Rehearsal)
#include "tst_rehearsal.moc"
