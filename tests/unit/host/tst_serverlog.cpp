// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The line of a server's log that tells why it failed.
#include "host/server/serverlog.h"

#include <QTemporaryFile>
#include <QtTest>

class tst_ServerLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decisiveLine_isTheFirstComplaint_data();
    void decisiveLine_isTheFirstComplaint();
    void withRemedy_knowsAFullDisk_data();
    void withRemedy_knowsAFullDisk();
    void waitsForSpace_onlyWhileItWaits();
    void section_holdsWhatCameLater();
};

void tst_ServerLog::decisiveLine_isTheFirstComplaint_data()
{
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<QString>("line");
    const QByteArray ending = "2026-11-22  8:31:13 0 [ERROR] Unknown/unsupported storage engine: "
                              "InnoDB\n2026-11-22  8:31:13 0 [ERROR] Aborting\n";
    const QByteArray advice
        = "\nInstallation of system tables failed!  Examine the logs in\n./data for more.\n"
          "Please check all of the above before submitting a bug report\n";

    QTest::newRow("nothing") << QByteArray() << QString();
    QTest::newRow("all well") << QByteArray("2026-11-22  8:31:16 0 [Note] mariadbd: ready for "
                                            "connections.\nVersion: '10.11'  port: 0\n")
                              << QString();
    QTest::newRow("no room for a file")
        << "Installing MariaDB/MySQL system tables in './data' ...\n"
           "2026-11-22  8:31:13 0 [ERROR] InnoDB: preallocating 12582912 bytes for file "
           "./ibdata1 failed with error 28\n"
            + ending + advice
        << QStringLiteral("InnoDB: preallocating 12582912 bytes for file ./ibdata1 failed with "
                          "error 28 (No space left on device)");
    QTest::newRow("no room for a row")
        << QByteArray("2026-11-22  8:32:01 1 [Warning] mariadbd: Disk is full writing "
                      "'./mysql/help_topic.MAD' (Errcode: 28 \"No space left on device\"). "
                      "Waiting for someone to free space... (Expect up to 60 secs delay)\n")
        << QStringLiteral("mariadbd: Disk is full writing './mysql/help_topic.MAD' (Errcode: 28 "
                          "\"No space left on device\")");
    QTest::newRow("no room for a table")
        << "ERROR: 3  Error writing file './sys/x.frm~' (Errcode: 28 \"No space left on "
           "device\")\n"
            + ending + advice
        << QStringLiteral("ERROR: 3 Error writing file './sys/x.frm~' (Errcode: 28 \"No space "
                          "left on device\")");
    QTest::newRow("option") << "2026-11-22  8:34:21 0 [Warning] Could not increase number\n"
                               "2026-11-22  8:34:21 0 [ERROR] mariadbd: unknown option '--no'\n"
            + ending << QStringLiteral("mariadbd: unknown option '--no'");
    QTest::newRow("before the log is open")
        << "2026-11-22  8:34:21 0 [Warning] Can't create test file '/x/y'\n"
           "mariadbd: Can't change dir to '/x/' (Errcode: 13 \"Permission denied\")\n"
            + ending
        << QStringLiteral("mariadbd: Can't change dir to '/x/' (Errcode: 13 \"Permission "
                          "denied\")");
    QTest::newRow("number of the system")
        << QByteArray("2026-11-22  8:34:22 0 [ERROR] InnoDB: Operating system error number 13 in "
                      "a file operation.\n")
        << QStringLiteral("InnoDB: Operating system error number 13 in a file operation. "
                          "(Permission denied)");
    QTest::newRow("number of the server's own")
        << QByteArray("2026-11-22  8:34:22 0 [ERROR] InnoDB: Cannot open './a.ibd' OS error: 81\n")
        << QStringLiteral("InnoDB: Cannot open './a.ibd' OS error: 81");
    QTest::newRow("crash") << QByteArray("*** stack smashing detected ***: terminated\n"
                                         "261122  8:32:22 [ERROR] mariadbd got signal 6 ;\n"
                                         "To report this bug, see https://example.org\n")
                           << QStringLiteral("mariadbd got signal 6 ;");
    QTest::newRow("script") << "Installing MariaDB/MySQL system tables in './data' ...\n"
                               "\nSegmentation fault\n"
            + advice << QStringLiteral("Segmentation fault");
    QTest::newRow("only advice") << advice << QString();
}

void tst_ServerLog::decisiveLine_isTheFirstComplaint()
{
    QFETCH(QByteArray, log);
    QTEST(decisiveLine(log), "line");
}

void tst_ServerLog::withRemedy_knowsAFullDisk_data()
{
    QTest::addColumn<QString>("complaint");
    QTest::addColumn<bool>("space");
    QTest::newRow("error 28") << decisiveLine("2026-11-22  8:31:13 0 [ERROR] failed with error 28")
                              << true;
    QTest::newRow("table") << QStringLiteral("ERROR 1005 (HY000) at line 7: Can't create table "
                                             "`a`.`b` (errno: 135 \"No more room in record "
                                             "file\")")
                           << true;
    QTest::newRow("quota") << QStringLiteral("cannot write: Disk quota exceeded") << true;
    QTest::newRow("rights") << QStringLiteral("cannot write: Permission denied") << false;
}

void tst_ServerLog::withRemedy_knowsAFullDisk()
{
    QFETCH(QString, complaint);
    QFETCH(bool, space);
    QCOMPARE(withRemedy(complaint),
             space ? complaint + QStringLiteral("; make room on its disk and run again")
                   : complaint);
}

void tst_ServerLog::waitsForSpace_onlyWhileItWaits()
{
    QVERIFY(waitsForSpace("[Warning] Disk is full writing 'x'. Waiting for someone to free "
                          "space...\n"));
    QVERIFY(!waitsForSpace("[ERROR] Disk is full writing 'x'\n"));
    QVERIFY(!waitsForSpace("[Note] ready for connections\n"));
}

void tst_ServerLog::section_holdsWhatCameLater()
{
    QTemporaryFile log;
    QVERIFY(log.open());
    const LogSection whole(log.fileName());
    log.write("first\n");
    log.flush();
    const LogSection later(log.fileName());
    QCOMPARE(later.text(), QByteArray());
    log.write("second\n");
    log.flush();
    QCOMPARE(later.text(), QByteArray("second\n"));
    QCOMPARE(whole.text(), QByteArray("first\nsecond\n"));
    QCOMPARE(LogSection(QStringLiteral("/no/such/log")).text(), QByteArray());
}

QTEST_GUILESS_MAIN(tst_ServerLog)
#include "tst_serverlog.moc"
