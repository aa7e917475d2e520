// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a private server: what it takes, whose it is, who is still in it.
#include "host/server/folderowner.h"
#include "host/server/leftprocess.h"
#include "host/server/privatefolder.h"
#include "support/patience.h"
#include "support/unprivileged.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

class tst_PrivateFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void take_refusesATooLongPath();
    void take_namesTheOwnerOfAClosedFolder();
    void take_keepsRootOutOfTheFolderOfAnother();
    void take_namesTheOwnerOfAFile();
    void take_namesTheOwnerAboveAMissingFolder();
    void take_releasesWhatItCannotUse();
    void take_waitsForWhoStillMakesData();
    void take_endsAServerThatCannotBeToldTo();
    void isKnown_saysWhyNot_data();
    void isKnown_saysWhyNot();
    void socketPath_isPlain_data();
    void socketPath_isPlain();

private:
    QString path(const QString &name) const { return folder.filePath(name); }

    QTemporaryDir folder {QStringLiteral("/tmp/talven-XXXXXX")};
    const bool isRoot = ::geteuid() == 0;
    const uid_t somebody = 65534;
    QString error;
};

void tst_PrivateFolder::initTestCase()
{
    QVERIFY(folder.isValid());
    // Within reach of others, whom some tests become.
    QCOMPARE(::chmod(QFile::encodeName(folder.path()).constData(), 0755), 0);
}

void tst_PrivateFolder::take_refusesATooLongPath()
{
    const QString longest = path(QStringLiteral("%1/%2").arg(QString(200, QLatin1Char('x')),
                                                             QString(199, QLatin1Char('y'))));
    PrivateFolder known(longest.left(400));
    QVERIFY2(known.take(&error), qPrintable(error));
    PrivateFolder tooLong(longest.left(401));
    QVERIFY(!tooLong.take(&error));
    QVERIFY2(error.contains(QStringLiteral("is 401 bytes long")), qPrintable(error));
}

void tst_PrivateFolder::take_namesTheOwnerOfAClosedFolder()
{
    const QString closed = isRoot ? path(QStringLiteral("closed")) : QStringLiteral("/root");
    QVERIFY(!isRoot || ::mkdir(QFile::encodeName(closed).constData(), 0700) == 0);
    const Unprivileged user;
    QVERIFY(user.isBound());
    QVERIFY(!PrivateFolder(closed).take(&error));
    QVERIFY2(error.startsWith(QStringLiteral("'%1' belongs to root, ").arg(closed)),
             qPrintable(error));
    QVERIFY2(error.contains(QStringLiteral("you are ") + currentUser()), qPrintable(error));

    QVERIFY(!PrivateFolder(closed).isKnown(&error));
    QVERIFY2(error.startsWith(QStringLiteral("cannot look into '%1'").arg(closed))
                 && error.endsWith(QStringLiteral("; '%1' belongs to root").arg(closed)),
             qPrintable(error));
}

void tst_PrivateFolder::take_keepsRootOutOfTheFolderOfAnother()
{
    if (!isRoot)
        QSKIP("only root can give a folder away", );
    const QString theirs = path(QStringLiteral("theirs"));
    QVERIFY(QDir().mkdir(theirs));
    QCOMPARE(::chown(QFile::encodeName(theirs).constData(), somebody, somebody), 0);
    QVERIFY(!PrivateFolder(theirs).take(&error));
    QVERIFY2(error.startsWith(QStringLiteral("'%1' belongs to nobody, ").arg(theirs)),
             qPrintable(error));
    QVERIFY(QDir(theirs).isEmpty());
}

void tst_PrivateFolder::take_namesTheOwnerOfAFile()
{
    if (!isRoot)
        QSKIP("only root can give a file away", );
    PrivateFolder mixed(path(QStringLiteral("mixed")));
    QVERIFY2(mixed.take(&error), qPrintable(error));
    mixed.release();
    QVERIFY(QDir().mkpath(mixed.dataPath() + QStringLiteral("/mysql")));
    const QString file = mixed.dataPath() + QStringLiteral("/mysql/db.MAD");
    QVERIFY(QFile(file).open(QIODevice::WriteOnly));
    QVERIFY2(mixed.take(&error), qPrintable(error));
    mixed.release();
    QCOMPARE(::chown(QFile::encodeName(file).constData(), 4711, 4711), 0);
    QVERIFY(!mixed.take(&error));
    QVERIFY2(error.startsWith(QStringLiteral("'%1' belongs to user 4711, ").arg(file)),
             qPrintable(error));
    QVERIFY2(error.endsWith(QStringLiteral("chown -R root '%1'").arg(mixed.name())),
             qPrintable(error));
}

void tst_PrivateFolder::take_namesTheOwnerAboveAMissingFolder()
{
    const Unprivileged user;
    QVERIFY(user.isBound());
    QVERIFY(!PrivateFolder(QStringLiteral("/usr/talvenhr-no/db")).take(&error));
    QCOMPARE(error,
             QStringLiteral("cannot make the folder '/usr/talvenhr-no/db': Permission denied; "
                            "'/usr' belongs to root"));
}

void tst_PrivateFolder::take_releasesWhatItCannotUse()
{
    PrivateFolder first(path(QStringLiteral("used")));
    QVERIFY2(first.take(&error), qPrintable(error));
    first.release();
    // With a folder in its place, the note about the socket cannot be written.
    QVERIFY(QFile::remove(path(QStringLiteral("used/server.socket"))));
    QVERIFY(QDir().mkdir(path(QStringLiteral("used/server.socket"))));
    QVERIFY(!first.take(&error));
    QVERIFY2(error.contains(QStringLiteral("cannot write")), qPrintable(error));
    QVERIFY(QDir().rmdir(path(QStringLiteral("used/server.socket"))));
    PrivateFolder second(first.name());
    QVERIFY2(second.take(&error), qPrintable(error));
}

void tst_PrivateFolder::take_waitsForWhoStillMakesData()
{
    PrivateFolder left(path(QStringLiteral("left")));
    QVERIFY(QDir().mkpath(left.dataPath()));
    QVERIFY(processesIn(left.dataPath()).isEmpty());
    QVERIFY(processesIn(path(QStringLiteral("missing"))).isEmpty());
    QProcess maker;
    maker.setWorkingDirectory(left.dataPath());
    maker.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("read line"), QStringLiteral("--bootstrap")});
    QVERIFY(maker.waitForStarted(longestWait));
    QCOMPARE(processesIn(left.dataPath()), QVector<qint64> {maker.processId()});
    QVERIFY(isMakingData(maker.processId()));
    QVERIFY(!isMakingData(QCoreApplication::applicationPid()));

    QVERIFY(QFile(left.name() + QStringLiteral("/talvenhr-private-db")).open(QIODevice::WriteOnly));
    QVERIFY2(left.take(&error), qPrintable(error));
    QVERIFY(maker.waitForFinished(longestWait));
    QCOMPARE(maker.exitStatus(), QProcess::CrashExit);
}

void tst_PrivateFolder::take_endsAServerThatCannotBeToldTo()
{
    PrivateFolder left(path(QStringLiteral("stuck")));
    QVERIFY(QDir().mkpath(left.dataPath()));
    QProcess stuck;
    stuck.setWorkingDirectory(left.dataPath());
    stuck.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("trap '' TERM; echo set; read line")});
    QVERIFY(stuck.waitForReadyRead(longestWait));
    QVERIFY(QFile(left.name() + QStringLiteral("/talvenhr-private-db")).open(QIODevice::WriteOnly));
    QVERIFY2(left.take(&error), qPrintable(error));
    QVERIFY(stuck.waitForFinished(longestWait));
    QCOMPARE(stuck.exitStatus(), QProcess::CrashExit);
}

void tst_PrivateFolder::isKnown_saysWhyNot_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("text");
    QTest::newRow("missing") << "none"
                             << "there is no private database in '%1'; 'talvenhr run' "
                                "makes one";
    QTest::newRow("empty") << "empty"
                           << "there is no private database in '%1'; 'talvenhr run' "
                              "makes one";
    QTest::newRow("file") << "file"
                          << "'%1' is not a folder";
    QTest::newRow("others") << "others"
                            << "'%1' holds other files and no private database; name "
                               "the folder of one with --private-db";
}

void tst_PrivateFolder::isKnown_saysWhyNot()
{
    QFETCH(QString, name);
    QFETCH(QString, text);
    QDir().mkpath(path(QStringLiteral("empty")));
    QDir().mkpath(path(QStringLiteral("others/diary")));
    QVERIFY(QFile(path(QStringLiteral("file"))).open(QIODevice::WriteOnly));
    QVERIFY(!PrivateFolder(path(name)).isKnown(&error));
    QCOMPARE(error, text.arg(path(name)));
}

void tst_PrivateFolder::socketPath_isPlain_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("plain");
    QTest::newRow("word") << "socket" << true;
    QTest::newRow("blank") << "so cket" << true;
    QTest::newRow("quote") << "so'c\"ket" << true;
    QTest::newRow("letters") << "žľúť" << true;
    QTest::newRow("two blanks") << "so  cket" << false;
    QTest::newRow("end of an option") << "so;cket" << false;
    QTest::newRow("long") << QString(100, QLatin1Char('x')) << false;
}

void tst_PrivateFolder::socketPath_isPlain()
{
    QFETCH(QString, name);
    QFETCH(bool, plain);
    PrivateFolder taken(path(name));
    QVERIFY2(taken.take(&error), qPrintable(error));
    const QString socket = taken.socketPath();
    QCOMPARE(socket == path(name) + QStringLiteral("/server.sock"), plain);
    QFile note(path(name) + QStringLiteral("/server.socket"));
    QVERIFY(note.open(QIODevice::ReadOnly));
    QCOMPARE(QFile::decodeName(note.readAll()), socket);
    // The way leads into the folder, until it is released.
    const QFileInfo seen(QFileInfo(socket).path() + QStringLiteral("/talvenhr-private-db"));
    QVERIFY(seen.exists());
    taken.release();
    QCOMPARE(QFileInfo::exists(seen.filePath()), plain);
}

QTEST_GUILESS_MAIN(tst_PrivateFolder)
#include "tst_privatefolder.moc"
