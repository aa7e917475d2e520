// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The private server: its folder, its life and its end.
#include "host/server/privateserver.h"
#include "support/patience.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

class tst_PrivateServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void firstUse_makesFolderForItsOwnerOnly();
    void databaseFiles_keepTheGivenOrderOfParts();
    void loadFiles_stopsAtTheFirstFaultAndNamesIt();
    void restart_keepsTheData();
    void kill_isNotADeath();
    void died_tellsOfAnUnwantedEnd();
    void start_refusesAFolderInUse();
    void joined_staysUntilAllHaveGone();
    void start_refusesAForeignFolder();
    void start_refusesAFile();
    void start_makesUnfinishedDataAnew();
    void start_putsTheSocketElsewhereIfThePathIsLong();
    void start_takesAnEmptyFolder();
    void start_tellsOfAServerThatDoesNotStart();

private:
    QString path(const QString &name) const { return folder.filePath(name); }
    QString databasePath() const { return path(QStringLiteral("db")); }
    void writeFile(const QString &name, const QByteArray &text) const;

    QTemporaryDir folder {QStringLiteral("/tmp/talven-XXXXXX")};
    QString error;
};

void tst_PrivateServer::writeFile(const QString &name, const QByteArray &text) const
{
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), static_cast<qint64>(text.size()));
}

void tst_PrivateServer::initTestCase()
{
    QVERIFY(folder.isValid());
}

void tst_PrivateServer::firstUse_makesFolderForItsOwnerOnly()
{
    PrivateServer server(databasePath());
    QVERIFY(!server.isRunning());
    QVERIFY(!QFileInfo::exists(databasePath()));

    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY(server.isRunning());
    QVERIFY(server.isFirstUse());
    QCOMPARE(QFileInfo(databasePath()).permissions()
                 & (QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
                    | QFile::WriteOther | QFile::ExeOther),
             QFile::Permissions());
    QCOMPARE(server.socketPath(), databasePath() + QStringLiteral("/server.sock"));
    QVERIFY2(server.createDatabase(QStringLiteral("kept"), &error), qPrintable(error));
    QVERIFY2(
        server.execute(QStringLiteral("kept"), QStringLiteral("CREATE TABLE t (i INT)"), &error),
        qPrintable(error));
}

void tst_PrivateServer::databaseFiles_keepTheGivenOrderOfParts()
{
    for (const char *name :
         {"files/b/2.sql", "files/b/10.sql", "files/b/note.txt", "files/a/1.sql"})
        writeFile(QLatin1String(name), "SELECT 1;");
    const QStringList files = databaseFiles(
        path(QStringLiteral("files")),
        {QStringLiteral("b"), QStringLiteral("missing"), QStringLiteral("a")});
    const QStringList expected {path(QStringLiteral("files/b/10.sql")),
                                path(QStringLiteral("files/b/2.sql")),
                                path(QStringLiteral("files/a/1.sql"))};
    QCOMPARE(files, expected);
}

void tst_PrivateServer::loadFiles_stopsAtTheFirstFaultAndNamesIt()
{
    writeFile(QStringLiteral("1.sql"), "CREATE TABLE first (i INT);");
    writeFile(QStringLiteral("2.sql"), "SELECT 1;\nSELECT kaput;\nCREATE TABLE second (i INT);");
    writeFile(QStringLiteral("3.sql"), "CREATE TABLE third (i INT);");
    const QStringList files {path(QStringLiteral("1.sql")), path(QStringLiteral("2.sql")),
                             path(QStringLiteral("3.sql"))};

    PrivateServer server(databasePath());
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY2(server.createDatabase(QStringLiteral("faulty"), &error), qPrintable(error));
    QVERIFY(!server.loadFiles(QStringLiteral("faulty"), files, &error));
    QVERIFY2(error.contains(QStringLiteral("2.sql': ERROR 1054")), qPrintable(error));
    QVERIFY2(error.contains(QStringLiteral("at line 2")), qPrintable(error));
    // Only the table from before the fault is there.
    QVERIFY2(
        server.execute(QStringLiteral("faulty"), QStringLiteral("SELECT * FROM first"), &error),
        qPrintable(error));
    QVERIFY(
        !server.execute(QStringLiteral("faulty"), QStringLiteral("SELECT * FROM second"), &error));
    QVERIFY(
        !server.execute(QStringLiteral("faulty"), QStringLiteral("SELECT * FROM third"), &error));

    QVERIFY(
        !server.loadFiles(QStringLiteral("faulty"), {path(QStringLiteral("none.sql"))}, &error));
    QVERIFY2(error.contains(QStringLiteral("cannot read")), qPrintable(error));
}

void tst_PrivateServer::restart_keepsTheData()
{
    PrivateServer server(databasePath());
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY(!server.isFirstUse());
    const QString insert = QStringLiteral("INSERT INTO t VALUES (1)");
    QVERIFY2(server.execute(QStringLiteral("kept"), insert, &error), qPrintable(error));
    server.stop();
    QVERIFY(!server.isRunning());
    QVERIFY(!server.execute(QStringLiteral("kept"), insert, &error));
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY2(server.execute(QStringLiteral("kept"), insert, &error), qPrintable(error));
}

void tst_PrivateServer::kill_isNotADeath()
{
    PrivateServer server(databasePath());
    const QSignalSpy deaths(&server, SIGNAL(died(QString)));
    QVERIFY2(server.start(&error), qPrintable(error));
    server.kill();
    QVERIFY(!server.isRunning());
    QVERIFY2(server.start(&error), qPrintable(error));
    server.stop();
    QCoreApplication::processEvents();
    QCOMPARE(deaths.count(), 0);
}

void tst_PrivateServer::died_tellsOfAnUnwantedEnd()
{
    PrivateServer server(databasePath());
    const QSignalSpy deaths(&server, SIGNAL(died(QString)));
    QVERIFY2(server.start(&error), qPrintable(error));
    QFile pidFile(path(QStringLiteral("db/server.pid")));
    QVERIFY(pidFile.open(QIODevice::ReadOnly));
    QCOMPARE(::kill(pidFile.readAll().trimmed().toInt(), SIGKILL), 0);

    QTRY_COMPARE_WITH_TIMEOUT(deaths.count(), 1, longestWait);
    QCOMPARE(deaths.first().first().toString(),
             QStringLiteral("the private server was killed or crashed"));
    QVERIFY(!server.isRunning());
    QVERIFY2(server.start(&error), qPrintable(error));
}

void tst_PrivateServer::start_refusesAFolderInUse()
{
    PrivateServer server(databasePath());
    QVERIFY2(server.start(&error), qPrintable(error));
    PrivateServer second(databasePath());
    QVERIFY(!second.start(&error));
    const QString holder = QStringLiteral("the private database '%1' is in use by process %2 "
                                          "(tst_privateserver) since %3")
                               .arg(databasePath())
                               .arg(QCoreApplication::applicationPid())
                               .arg(QDate::currentDate().toString(Qt::ISODate));
    QVERIFY2(error.startsWith(holder), qPrintable(error));
    QCOMPARE(second.failureCode(), ExitRefused);
    server.stop();
    QVERIFY2(second.start(&error), qPrintable(error));
}

void tst_PrivateServer::joined_staysUntilAllHaveGone()
{
    PrivateServer holder(databasePath());
    QVERIFY2(holder.start(&error), qPrintable(error));
    PrivateServer joiner(databasePath());
    QVERIFY2(joiner.startOrJoin(&error), qPrintable(error));
    QCOMPARE(joiner.socketPath(), holder.socketPath());
    QVERIFY(!joiner.isRunning());

    int asked = 0;
    holder.setInterruption([&] {
        if (++asked == 3)
            joiner.stop();
        return false;
    });
    holder.waitForJoiners();
    QCOMPARE(asked, 3);
    QVERIFY(holder.isRunning());

    // Now nobody joins any more; who comes waits for the end, and takes the folder then.
    PrivateServer next(databasePath());
    next.setInterruption([&] {
        holder.stop();
        return false;
    });
    QVERIFY2(next.startOrJoin(&error), qPrintable(error));
    QVERIFY(next.isRunning());
}

void tst_PrivateServer::start_refusesAForeignFolder()
{
    writeFile(QStringLiteral("foreign/diary.txt"), "private");
    PrivateServer server(path(QStringLiteral("foreign")));
    QVERIFY(!server.start(&error));
    QVERIFY2(error.contains(QStringLiteral("holds other files and no private database")),
             qPrintable(error));
    QCOMPARE(QDir(path(QStringLiteral("foreign")))
                 .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList(QStringLiteral("diary.txt")));
}

void tst_PrivateServer::start_refusesAFile()
{
    writeFile(QStringLiteral("file"), "text");
    PrivateServer server(path(QStringLiteral("file")));
    QVERIFY(!server.start(&error));
    QVERIFY2(error.contains(QStringLiteral("is not a folder")), qPrintable(error));
}

void tst_PrivateServer::start_makesUnfinishedDataAnew()
{
    // What is left when the making of the data is broken off.
    QVERIFY(QFile::remove(path(QStringLiteral("db/data.complete"))));
    QVERIFY(QFile::remove(path(QStringLiteral("db/data/ibdata1"))));
    PrivateServer server(databasePath());
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY(server.isFirstUse());
    QVERIFY2(server.createDatabase(QStringLiteral("kept"), &error), qPrintable(error));
}

void tst_PrivateServer::start_putsTheSocketElsewhereIfThePathIsLong()
{
    // The data of the test before, under a longer name.
    const QString longPath = path(QString(100, QLatin1Char('x')));
    QVERIFY(QFile::rename(databasePath(), longPath));
    QString socketFolder;
    {
        PrivateServer server(longPath);
        QVERIFY2(server.start(&error), qPrintable(error));
        QVERIFY(!server.isFirstUse());
        QVERIFY(QFile::encodeName(server.socketPath()).size() < 108);
        socketFolder = QFileInfo(server.socketPath()).path();
        QVERIFY(socketFolder != longPath);
        QCOMPARE(QFileInfo(socketFolder).permissions()
                     & (QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther),
                 QFile::Permissions());
        QVERIFY2(server.execute(QStringLiteral("kept"), QStringLiteral("SELECT 1"), &error),
                 qPrintable(error));
    }
    // The way to the socket ends with its host, also if that is killed.
    QVERIFY(socketFolder.startsWith(
        QStringLiteral("/proc/%1/").arg(QCoreApplication::applicationPid())));
    QVERIFY(!QFileInfo::exists(socketFolder));
}

void tst_PrivateServer::start_takesAnEmptyFolder()
{
    const QString empty = path(QStringLiteral("empty"));
    QVERIFY(QDir().mkdir(empty));
    PrivateServer server(empty);
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY(server.isFirstUse());
    QVERIFY(!(QFileInfo(empty).permissions() & (QFile::ReadGroup | QFile::ReadOther)));
}

void tst_PrivateServer::start_tellsOfAServerThatDoesNotStart()
{
    const QString folderPath = path(QStringLiteral("empty"));
    PrivateServer server(folderPath);
    const QSignalSpy deaths(&server, SIGNAL(died(QString)));
    server.setServerOptions({QStringLiteral("--no-such-option")});
    QVERIFY(!server.start(&error));
    QCOMPARE(error,
             QStringLiteral("the private server did not start: %1: unknown option "
                            "'--no-such-option'; its log is '%2/server.log'")
                 .arg(QStandardPaths::findExecutable(QStringLiteral("mariadbd"),
                                                     {QStringLiteral("/usr/sbin")}),
                      folderPath));
    QCOMPARE(deaths.count(), 0);

    server.setServerOptions({});
    QVERIFY2(server.start(&error), qPrintable(error));
}

QTEST_GUILESS_MAIN(tst_PrivateServer)
#include "tst_privateserver.moc"
