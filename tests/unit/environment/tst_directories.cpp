// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The data and log directories: where they are looked for, made and complained about.
#include "environment/directories.h"
#include "support/eventlog.h"
#include "support/unprivileged.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

namespace {

/// A machine of its own: system-wide settings and standard locations in a folder that all may
/// enter.
struct Fixture
{
    Fixture()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, path("etc"));
        qputenv("XDG_DATA_HOME", QFile::encodeName(path("home")));
        qputenv("XDG_DATA_DIRS",
                QFile::encodeName(path("first") + QLatin1Char(':') + path("second")));
        if (chmod(qPrintable(folder.path()), 0777) != 0)
            qFatal("cannot open %s to all", qPrintable(folder.path()));
        currentDataDir = QStringLiteral("untouched");
        currentLogsDir = QStringLiteral("untouched");
    }

    QString path(const char *name) const { return folder.filePath(QString::fromUtf8(name)); }

    /// The system-wide settings of the attendance system.
    void configure(const QString &content)
    {
        const QString file = path("etc/KESTRA-LK/ORV.conf");
        QDir().mkpath(QFileInfo(file).path());
        QFile conf(file);
        if (!conf.open(QIODevice::WriteOnly) || conf.write(content.toUtf8()) < 0)
            qFatal("cannot write %s", qPrintable(file));
    }

    /// As configure(), one entry, its key escaped by Qt.
    void store(const QString &key, const QString &directory)
    {
        QSettings writer(QSettings::SystemScope, QStringLiteral("KESTRA-LK"),
                         QStringLiteral("ORV"));
        writer.setValue(QStringLiteral("dataDirs/") + key, directory);
    }

    EventLog log;
    QTemporaryDir folder;
};

QString notCreated(const QString &path)
{
    return QStringLiteral("critical Directory '") + path + QStringLiteral("' is not created!");
}

QString notWritable(const QString &path)
{
    return QStringLiteral("critical Directory '") + path + QStringLiteral("' is not writable!");
}

QString optApp()
{
    return QStringLiteral("/opt/app");
}

} // namespace

class tst_Directories : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void ensureDir_existing();
    void ensureDir_existingIsLeftAlone();
    void ensureDir_makesTheWholePath();
    void ensureDir_relativePathIsMadeBelowItself();
    void ensureDir_notCreated();
    void ensureDir_notWritable();
    void ensureDir_belowWhatIsNotWritable();
    void ensureDir_emptyPath();
    void dataDir_takesTheConfiguredOne();
    void dataDir_emptyKeyMeansTheApplicationsDirectory();
    void dataDir_slashesMakeNoGroups();
    void dataDir_nativeSeparators();
    void dataDir_ignoresTheUsersSettings();
    void dataDir_ignoresTheEnvironment();
    void dataDir_takesTheSecondStandardLocation();
    void dataDir_emptyEntryIsNone_data();
    void dataDir_emptyEntryIsNone();
    void dataDir_writableLocationWhereThereIsNoSecond();
    void dataDir_verifies_data();
    void dataDir_verifies();
    void dataDir_failedVerifyReturnsThePathAllTheSame();
    void logsDir_makesLogsBelowTheDataDirectory();
    void logsDir_verifiesTheLogsAlone();
};

void tst_Directories::initTestCase()
{
    // Before the first call.
    QCOMPARE(currentDataDir, QStringLiteral("data"));
    QCOMPARE(currentLogsDir, QStringLiteral("logs"));
    QCoreApplication::setOrganizationName(QStringLiteral("Maker"));
    QCoreApplication::setApplicationName(QStringLiteral("Server"));
}

void tst_Directories::ensureDir_existing()
{
    Fixture f;
    ensureDir(f.folder.path());
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        ensureDir(f.folder.path());
    }
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::ensureDir_existingIsLeftAlone()
{
    Fixture f;
    // A file is there and can be written to: nothing is made of it and nothing said.
    QFile file(f.path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    ensureDir(f.path("file"));
    QVERIFY(QFileInfo(f.path("file")).isFile());

    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(f.folder.path()));
    QVERIFY(QDir().mkpath(QStringLiteral("a/b")));
    ensureDir(QStringLiteral("a/b"));
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(!QFileInfo::exists(f.path("a/b/a")));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::ensureDir_makesTheWholePath()
{
    Fixture f;
    ensureDir(f.path("a/b/c"));
    QVERIFY(QFileInfo(f.path("a/b/c")).isDir());
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        ensureDir(f.path("d/e"));
    }
    QVERIFY(QFileInfo(f.path("d/e")).isDir());
    // What was just made is not taken for missing.
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::ensureDir_relativePathIsMadeBelowItself()
{
    Fixture f;
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(f.folder.path()));
    ensureDir(QStringLiteral("a/b"));
    QVERIFY(QDir::setCurrent(before));
    QVERIFY(QFileInfo(f.path("a/b/a/b")).isDir());
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::ensureDir_notCreated()
{
    Fixture f;
    QFile file(f.path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString path = f.path("file/below");
    ensureDir(path);
    QCOMPARE(f.log.take(), (QStringList {notCreated(path), notWritable(path)}));
    QVERIFY(!QFileInfo::exists(path));
}

void tst_Directories::ensureDir_notWritable()
{
    Fixture f;
    const QString path = f.path("locked");
    QCOMPARE(mkdir(qPrintable(path), 0555), 0);
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        ensureDir(path);
    }
    QCOMPARE(f.log.take(), QStringList {notWritable(path)});
}

void tst_Directories::ensureDir_belowWhatIsNotWritable()
{
    Fixture f;
    QCOMPARE(mkdir(qPrintable(f.path("locked")), 0555), 0);
    const QString path = f.path("locked/below");
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        ensureDir(path);
    }
    QCOMPARE(f.log.take(), (QStringList {notCreated(path), notWritable(path)}));
    QVERIFY(!QFileInfo::exists(path));
}

void tst_Directories::ensureDir_emptyPath()
{
    Fixture f;
    ensureDir(QString());
    QCOMPARE(
        f.log.take().filter(QStringLiteral("critical")),
        lines({"critical Directory '' is not created!", "critical Directory '' is not writable!"}));
}

void tst_Directories::dataDir_takesTheConfiguredOne()
{
    Fixture f;
    f.configure(QStringLiteral("[General]\n%7Copt%7Capp=%1\n"
                               "[dataDirs]\n%7Copt%7Capp=%2\n%7Copt%7Cother=%3\n")
                    .arg(f.path("not this"), f.path("srv/data"), f.path("srv/other")));
    QCOMPARE(dataDir(false, optApp()), f.path("srv/data"));
    QCOMPARE(currentDataDir, f.path("srv/data"));
    QCOMPARE(currentLogsDir, QStringLiteral("untouched"));
    QCOMPARE(dataDir(false, QStringLiteral("/opt/other")), f.path("srv/other"));
    QCOMPARE(currentDataDir, f.path("srv/other"));
    // A key is taken as it is, in its own letters.
    QCOMPARE(dataDir(false, QStringLiteral("/opt/APP")), f.path("first/Maker/Server"));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::dataDir_emptyKeyMeansTheApplicationsDirectory()
{
    Fixture f;
    QString key = QCoreApplication::applicationDirPath();
    QVERIFY(key.startsWith(QLatin1Char('/')));
    key.replace(QLatin1Char('/'), QLatin1Char('|'));
    f.store(key, f.path("srv/data"));
    QCOMPARE(dataDir(false, QString()), f.path("srv/data"));
    QCOMPARE(currentDataDir, f.path("srv/data"));
}

void tst_Directories::dataDir_slashesMakeNoGroups()
{
    Fixture f;
    // Where opt/app would be looked for if it were a group and a key.
    f.configure(QStringLiteral("[dataDirs]\nopt\\app=") + f.path("srv/grouped")
                + QLatin1Char('\n'));
    QCOMPARE(dataDir(false, QStringLiteral("opt/app")), f.path("first/Maker/Server"));
    QCOMPARE(dataDir(false, optApp()), f.path("first/Maker/Server"));
}

void tst_Directories::dataDir_nativeSeparators()
{
    Fixture f;
    f.store(QStringLiteral("|opt|app"), QDir::toNativeSeparators(f.path("srv/the data")));
    QCOMPARE(dataDir(false, optApp()), f.path("srv/the data"));
}

void tst_Directories::dataDir_ignoresTheUsersSettings()
{
    Fixture f;
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, f.path("user"));
    {
        QSettings writer(QSettings::UserScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
        writer.setValue(QStringLiteral("dataDirs/|opt|app"), f.path("srv/data"));
    }
    QVERIFY(QFileInfo::exists(f.path("user/KESTRA-LK/ORV.conf")));
    QCOMPARE(dataDir(false, optApp()), f.path("first/Maker/Server"));
}

void tst_Directories::dataDir_ignoresTheEnvironment()
{
    Fixture f;
    qputenv("DATADIRS_|OPT|APP", QFile::encodeName(f.path("srv/data")));
    const QString directory = dataDir(false, optApp());
    qunsetenv("DATADIRS_|OPT|APP");
    QCOMPARE(directory, f.path("first/Maker/Server"));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::dataDir_takesTheSecondStandardLocation()
{
    Fixture f;
    // Of home, first and second; that it is not there does not matter.
    QCOMPARE(dataDir(false, optApp()), f.path("first/Maker/Server"));
    QCOMPARE(currentDataDir, f.path("first/Maker/Server"));
    QVERIFY(!QFileInfo::exists(f.path("first")));
}

void tst_Directories::dataDir_emptyEntryIsNone_data()
{
    QTest::addColumn<QString>("entry");
    QTest::newRow("empty") << QString();
    QTest::newRow("list") << QStringLiteral("/nowhere/a, /nowhere/b");
}

void tst_Directories::dataDir_emptyEntryIsNone()
{
    QFETCH(QString, entry);
    Fixture f;
    f.configure(QStringLiteral("[dataDirs]\n%7Copt%7Capp=") + entry + QLatin1Char('\n'));
    QCOMPARE(dataDir(false, optApp()), f.path("first/Maker/Server"));
}

void tst_Directories::dataDir_writableLocationWhereThereIsNoSecond()
{
    Fixture f;
    // Qt leaves out what is not absolute.
    qputenv("XDG_DATA_DIRS", "relative");
    QCOMPARE(dataDir(false, optApp()), f.path("home/Maker/Server"));
    QCOMPARE(currentDataDir, f.path("home/Maker/Server"));
}

void tst_Directories::dataDir_verifies_data()
{
    QTest::addColumn<bool>("verify");
    QTest::newRow("verified") << true;
    QTest::newRow("not verified") << false;
}

void tst_Directories::dataDir_verifies()
{
    QFETCH(bool, verify);
    Fixture f;
    f.configure(QStringLiteral("[dataDirs]\n%7Copt%7Capp=") + f.path("srv/data")
                + QLatin1Char('\n'));
    QCOMPARE(dataDir(verify, optApp()), f.path("srv/data"));
    QCOMPARE(QFileInfo::exists(f.path("srv/data")), verify);
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::dataDir_failedVerifyReturnsThePathAllTheSame()
{
    Fixture f;
    QFile file(f.path("file"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString path = f.path("file/data");
    f.configure(QStringLiteral("[dataDirs]\n%7Copt%7Capp=") + path + QLatin1Char('\n'));
    QCOMPARE(dataDir(false, optApp()), path);
    QCOMPARE(f.log.take(), QStringList());
    currentDataDir.clear();
    QCOMPARE(dataDir(true, optApp()), path);
    QCOMPARE(f.log.take(), (QStringList {notCreated(path), notWritable(path)}));
    QCOMPARE(currentDataDir, path);
}

void tst_Directories::logsDir_makesLogsBelowTheDataDirectory()
{
    Fixture f;
    f.configure(QStringLiteral("[dataDirs]\n%7Copt%7Capp=") + f.path("srv/data")
                + QLatin1Char('\n'));
    QCOMPARE(logsDir(optApp()), f.path("srv/data/logs"));
    QVERIFY(QFileInfo(f.path("srv/data/logs")).isDir());
    QCOMPARE(currentDataDir, f.path("srv/data"));
    QCOMPARE(currentLogsDir, f.path("srv/data/logs"));
    QCOMPARE(f.log.take(), QStringList());
    // Once more, now that it is there.
    QCOMPARE(logsDir(optApp()), f.path("srv/data/logs"));
    QCOMPARE(f.log.take(), QStringList());
}

void tst_Directories::logsDir_verifiesTheLogsAlone()
{
    Fixture f;
    const QString data = f.path("locked");
    QCOMPARE(mkdir(qPrintable(data), 0555), 0);
    const QString logs = data + QStringLiteral("/logs");
    f.configure(QStringLiteral("[dataDirs]\n%7Copt%7Capp=") + data + QLatin1Char('\n'));
    QString directory;
    {
        const Unprivileged unprivileged;
        QVERIFY(unprivileged.isBound());
        directory = logsDir(optApp());
    }
    QCOMPARE(directory, logs);
    // Not a word of the data directory, though it is not writable either.
    QCOMPARE(f.log.take(), (QStringList {notCreated(logs), notWritable(logs)}));
    QCOMPARE(currentDataDir, data);
    QCOMPARE(currentLogsDir, logs);
}

QTEST_GUILESS_MAIN(tst_Directories)
#include "tst_directories.moc"
