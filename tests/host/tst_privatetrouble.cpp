// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A private server on a full disk, one that hangs or dies, and one that nobody waits for any more.
#include "host/server/leftprocess.h"
#include "host/server/privateserver.h"
#include "support/commands/smalldisk.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

class tst_PrivateTrouble : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void fullDisk_isNamedBeforeThereAreData_data();
    void fullDisk_isNamedBeforeThereAreData();
    void fullDisk_isNamedAtTheStart();
    void fullDisk_isNamedWhileFilling();
    void interruption_endsTheMakingOfData();
    void interruption_endsTheFilling();
    void deadServer_isSeenAtOnce();
    void hangingServer_isNamedWithPidAndLog();

private:
    QString path(const QString &name) const { return folder.filePath(name); }
    QString disk() const { return path(QStringLiteral("disk")); }
    void checkFullDisk();
    void useServerProgram(const QByteArray &script);

    const QByteArray programs = qgetenv("PATH");
    QTemporaryDir folder {QStringLiteral("/tmp/talven-XXXXXX")};
    // Made before any thread of the test library is there.
    const bool hasFolder = QDir().mkdir(disk());
    const SmallDisk smallDisk {disk(), 80 * 1024};
    QElapsedTimer clock;
    QString error;
};

void tst_PrivateTrouble::initTestCase()
{
    QVERIFY(folder.isValid() && hasFolder);
    QVERIFY2(smallDisk.failure().isEmpty(),
             qPrintable(QStringLiteral("this test needs the right to mount a disk in memory: ")
                        + smallDisk.failure()));
}

void tst_PrivateTrouble::init()
{
    qputenv("PATH", programs);
    QFile::remove(disk() + QStringLiteral("/filling"));
    clock.start();
}

/// It is told in time, and with what to do.
void tst_PrivateTrouble::checkFullDisk()
{
    QVERIFY2(error.contains(QStringLiteral("; make room on its disk and run again")),
             qPrintable(error));
    // The server would try again after a minute.
    QVERIFY2(clock.elapsed() < 55000, qPrintable(QString::number(clock.elapsed())));
}

void tst_PrivateTrouble::fullDisk_isNamedBeforeThereAreData_data()
{
    QTest::addColumn<int>("kilobytes");
    QTest::addColumn<QString>("text");
    const QString made = QStringLiteral("/none' could not be made: ");
    QTest::newRow("nothing") << 0 << "cannot write '";
    QTest::newRow("a marker") << 4 << "cannot lock the private database '";
    QTest::newRow("a lock") << 12 << made;
    QTest::newRow("some files") << 5 * 1024 << made;
    // Here the server would wait for room, once a minute.
    QTest::newRow("nearly all") << 42 * 1024 << made;
}

void tst_PrivateTrouble::fullDisk_isNamedBeforeThereAreData()
{
    QFETCH(int, kilobytes);
    QFETCH(QString, text);
    const QString place = disk() + QStringLiteral("/none");
    QVERIFY(smallDisk.fillUpTo(kilobytes));
    PrivateServer server(place);
    QVERIFY(!server.start(&error));
    QVERIFY2(error.contains(text), qPrintable(error));
    checkFullDisk();
    // Nothing of the attempt fills the disk further.
    QVERIFY(!QFileInfo::exists(place + QStringLiteral("/data")));
    QVERIFY(QDir(place).removeRecursively());
}

void tst_PrivateTrouble::fullDisk_isNamedAtTheStart()
{
    PrivateServer server(disk() + QStringLiteral("/db"));
    QVERIFY2(server.start(&error), qPrintable(error));
    server.stop();
    for (const int kilobytes : {0, 40, 12 * 1024 + 8}) {
        clock.start();
        QVERIFY(smallDisk.fillUpTo(kilobytes));
        QVERIFY(!server.start(&error));
        checkFullDisk();
        QVERIFY(QFile::remove(disk() + QStringLiteral("/filling")));
    }
    QVERIFY2(server.start(&error), qPrintable(error));
}

void tst_PrivateTrouble::fullDisk_isNamedWhileFilling()
{
    PrivateServer server(disk() + QStringLiteral("/db"));
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY2(server.createDatabase(QStringLiteral("filled"), &error), qPrintable(error));
    QVERIFY(smallDisk.fillUpTo(1024));
    QVERIFY(!server.execute(QStringLiteral("filled"),
                            QStringLiteral("CREATE TABLE t (x TEXT) ENGINE=Aria; INSERT INTO t "
                                           "SELECT REPEAT('x', 60000) FROM seq_1_to_1000"),
                            &error));
    checkFullDisk();
    QVERIFY(!server.isRunning());
}

void tst_PrivateTrouble::interruption_endsTheMakingOfData()
{
    const QString place = path(QStringLiteral("interrupted"));
    PrivateServer server(place);
    const QSignalSpy news(&server, SIGNAL(progress(QString)));
    server.setInterruption([&] { return !processesIn(place + QStringLiteral("/data")).isEmpty(); });
    QVERIFY(!server.start(&error));
    QVERIFY2(error.contains(QStringLiteral("interrupted; what was begun is made anew")),
             qPrintable(error));
    QCOMPARE(server.failureCode(), ExitInterrupted);
    QCOMPARE(news.value(0).value(0).toString(),
             QStringLiteral("making a private database in '%1'").arg(place));
    QVERIFY(processesIn(place + QStringLiteral("/data")).isEmpty());

    server.setInterruption({});
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY(server.isFirstUse());
}

void tst_PrivateTrouble::interruption_endsTheFilling()
{
    PrivateServer server(path(QStringLiteral("interrupted")));
    QVERIFY2(server.start(&error), qPrintable(error));
    const QSignalSpy news(&server, SIGNAL(progress(QString)));
    server.setInterruption([&] { return !news.isEmpty(); });
    QVERIFY(!server.execute(QString(), QStringLiteral("SELECT SLEEP(3600)"), &error));
    QVERIFY2(error.startsWith(QStringLiteral("interrupted")), qPrintable(error));
    QCOMPARE(server.failureCode(), ExitInterrupted);
    QCOMPARE(news.value(0).value(0).toString(),
             QStringLiteral("filling the private database in '%1'")
                 .arg(path(QStringLiteral("interrupted"))));
}

/// From now on this script is what runs in place of the server.
void tst_PrivateTrouble::useServerProgram(const QByteArray &script)
{
    const QString name = path(QStringLiteral("bin/mariadbd"));
    QVERIFY(QDir().mkpath(path(QStringLiteral("bin"))));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("#!/bin/sh\n" + script) > 0);
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv("PATH", QFile::encodeName(path(QStringLiteral("bin"))) + ':' + programs);
}

void tst_PrivateTrouble::deadServer_isSeenAtOnce()
{
    useServerProgram("exit 7\n");
    PrivateServer server(path(QStringLiteral("interrupted")));
    QVERIFY(!server.start(&error));
    QCOMPARE(error,
             QStringLiteral("the private server did not start: it gives no reason; its log is "
                            "'%1/server.log'")
                 .arg(path(QStringLiteral("interrupted"))));
    QCOMPARE(server.failureCode(), ExitDatabase);
}

void tst_PrivateTrouble::hangingServer_isNamedWithPidAndLog()
{
    useServerProgram("echo $$ looks for the lost key >&2\nexec sleep 60\n");
    PrivateServer server(path(QStringLiteral("interrupted")));
    const QSignalSpy news(&server, SIGNAL(progress(QString)));
    server.setPatience(3000);
    QVERIFY(!server.start(&error));
    const QString pid = error.section(QLatin1Char(' '), -6, -6);
    const QString log = path(QStringLiteral("interrupted/server.log"));
    QCOMPARE(error,
             QStringLiteral("the private server, process %1, has not answered for 3 s; its log "
                            "'%2' ends with: %1 looks for the lost key")
                 .arg(pid, log));
    QCOMPARE(news.value(0).value(0).toString(),
             QStringLiteral("waiting for the private server, process %1, to answer; its log is "
                            "'%2'")
                 .arg(pid, log));
    QVERIFY(!server.isRunning());
}

QTEST_GUILESS_MAIN(tst_PrivateTrouble)
#include "tst_privatetrouble.moc"
