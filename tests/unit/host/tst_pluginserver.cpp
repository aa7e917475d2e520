// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The server above a process is found by the plugin in its memory.
#include "host/gate/pluginserver.h"
#include "support/plugin/pluginlibrary.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <functional>
#include <memory>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

class tst_PluginServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void process_isNoServerOfItsOwn();
    void server_isFoundByItsChildren();
    void server_isFoundWhenItsFileWasReplaced();
    void otherLibrary_isNoPlugin();
    void nearestServer_isTold();
    void start_isThatOfTheProcess();
    void maps_areRead_data();
    void maps_areRead();

private:
    void addProcess(int pid, const QByteArray &name, int parent, qint64 ticks,
                    const QByteArray &maps) const;
    void write(const QString &name, const QByteArray &bytes) const;
    QString path(const char *name) const { return folder->filePath(QLatin1String(name)); }

    std::unique_ptr<QTemporaryDir> folder;
};

namespace {

const char plugin[] = "/srv/plugins/libTalvenHR.so";

QByteArray codeOf(const QByteArray &file, const QByteArray &place = "08:01 77")
{
    return "7f0000000000-7f0000001000 r--p 00000000 " + place + "      " + file
        + "\n7f0000001000-7f0000002000 r-xp 00001000 " + place + "      " + file + '\n';
}

/// What a child of this process comes to: 1 for yes.
int inChild(const std::function<bool()> &question)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(question() ? 1 : 0);
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

void tst_PluginServer::init()
{
    folder = std::make_unique<QTemporaryDir>();
    QVERIFY(folder->isValid());
}

void tst_PluginServer::write(const QString &name, const QByteArray &bytes) const
{
    QDir().mkpath(QFileInfo(folder->filePath(name)).path());
    QFile file(folder->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), static_cast<qint64>(bytes.size()));
}

/// A process of a machine that has started at noon of the first of March.
void tst_PluginServer::addProcess(int pid, const QByteArray &name, int parent, qint64 ticks,
                                  const QByteArray &maps) const
{
    const QByteArray between = " 1 1 0 -1 4194560 1 2 3 4 5 6 7 8 20 0 1 0 ";
    write(QStringLiteral("%1/stat").arg(pid),
          QByteArray::number(pid) + " (" + name + ") S " + QByteArray::number(parent) + between
              + QByteArray::number(ticks) + " 1000 200\n");
    write(QStringLiteral("%1/maps").arg(pid), maps);
    write(QStringLiteral("stat"), "cpu  1 2 3\nbtime 1772362800\nprocesses 9\n");
}

void tst_PluginServer::process_isNoServerOfItsOwn()
{
    PluginLibrary library;
    library.load();
    QVERIFY(PluginLibrary::isMapped());
    QVERIFY(!pluginServerAbove(PluginLibrary::file()));
}

void tst_PluginServer::server_isFoundByItsChildren()
{
    const qint64 server = QCoreApplication::applicationPid();
    const auto isFound = [server] {
        const auto found = pluginServerAbove(::getpid(), PluginLibrary::file());
        return found && found->pid == server && found->since.isValid()
            && found->since <= QDateTime::currentDateTime().addSecs(1);
    };
    QCOMPARE(inChild(isFound), 0);
    PluginLibrary library;
    library.load();
    QCOMPARE(inChild(isFound), 1);
    QVERIFY(library.unload());
    QCOMPARE(inChild(isFound), 0);
}

void tst_PluginServer::server_isFoundWhenItsFileWasReplaced()
{
    const QString file = path("lib.so");
    QVERIFY(QFile::copy(PluginLibrary::file(), file));
    QPluginLoader loader(file);
    loader.setLoadHints({});
    QVERIFY2(loader.load(), qPrintable(loader.errorString()));
    const auto isFound = [&file] { return pluginServerAbove(::getpid(), file).has_value(); };
    QCOMPARE(inChild(isFound), 1);
    // As a package puts it there.
    QVERIFY(QFile::copy(PluginLibrary::file(), path("new")));
    QVERIFY(QFile::remove(file));
    QCOMPARE(inChild(isFound), 1);
    QVERIFY(QFile::rename(path("new"), file));
    QCOMPARE(inChild(isFound), 1);
    // Settings may name a link.
    QVERIFY(QFile::link(file, path("link.so")));
    QCOMPARE(inChild([this] { return pluginServerAbove(::getpid(), path("link.so")).has_value(); }),
             1);
    loader.unload();
}

void tst_PluginServer::otherLibrary_isNoPlugin()
{
    PluginLibrary library;
    library.load();
    QVERIFY(QFile::copy(PluginLibrary::file(), path("other.so")));
    QCOMPARE(
        inChild([this] { return pluginServerAbove(::getpid(), path("other.so")).has_value(); }), 0);
}

void tst_PluginServer::nearestServer_isTold()
{
    addProcess(1, "init", 0, 1, codeOf("/sbin/init"));
    addProcess(10, "server", 1, 100, codeOf(plugin));
    addProcess(20, "server", 10, 200, codeOf(plugin));
    addProcess(30, "sh", 20, 300, codeOf("/bin/sh"));
    addProcess(40, "talvenhr", 30, 400, codeOf(plugin));
    const QString file = QLatin1String(plugin);
    const auto serverOf = [&](int pid) {
        const auto found = pluginServerAbove(pid, file, folder->path());
        return found ? found->pid : 0;
    };
    QCOMPARE(serverOf(40), 20);
    QCOMPARE(serverOf(30), 20);
    QCOMPARE(serverOf(20), 10);
    QCOMPARE(serverOf(10), 0);
    QCOMPARE(serverOf(99), 0);
}

void tst_PluginServer::start_isThatOfTheProcess()
{
    const qint64 ticks = ::sysconf(_SC_CLK_TCK);
    addProcess(10, "a (b) 1 2 3 4", 1, 90 * ticks, codeOf(plugin));
    addProcess(20, "gate", 10, 95 * ticks, {});
    const auto found = pluginServerAbove(20, QLatin1String(plugin), folder->path());
    QVERIFY(found);
    QCOMPARE(found->since.toUTC(), QDateTime::fromSecsSinceEpoch(1772362800 + 90, Qt::UTC));
}

void tst_PluginServer::maps_areRead_data()
{
    QTest::addColumn<QByteArray>("maps");
    QTest::addColumn<bool>("isServer");
    QTest::newRow("by path") << codeOf("[heap]") + codeOf(plugin) << true;
    QTest::newRow("deleted") << codeOf(QByteArray(plugin) + " (deleted)") << true;
    QTest::newRow("longer name") << codeOf(QByteArray(plugin) + ".bak") << false;
    QTest::newRow("shorter name") << codeOf("/plugins/libTalvenHR.so") << false;
    QTest::newRow("only looked at")
        << "7f0000000000-7f0000001000 r--p 00000000 08:01 77      " + QByteArray(plugin) + '\n'
        << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("no file") << QByteArray("7f0000000000-7f0000001000 r-xp 00000000 00:00 0 \n")
                             << false;
}

void tst_PluginServer::maps_areRead()
{
    QFETCH(QByteArray, maps);
    QFETCH(bool, isServer);
    addProcess(10, "server", 1, 1, maps);
    addProcess(20, "gate", 10, 2, {});
    QCOMPARE(pluginServerAbove(20, QLatin1String(plugin), folder->path()).has_value(), isServer);
    // The same file by another path: as a server in a container sees it.
    write(QStringLiteral("real.so"), "x");
    struct stat file;
    QCOMPARE(::stat(QFile::encodeName(path("real.so")).constData(), &file), 0);
    const QByteArray place = QStringLiteral("%1:%2 %3")
                                 .arg(major(file.st_dev), 2, 16, QLatin1Char('0'))
                                 .arg(minor(file.st_dev), 2, 16, QLatin1Char('0'))
                                 .arg(file.st_ino)
                                 .toLatin1();
    addProcess(10, "server", 1, 1, maps + codeOf("/elsewhere/lib.so", place));
    QVERIFY(pluginServerAbove(20, path("real.so"), folder->path()).has_value());
}

QTEST_GUILESS_MAIN(tst_PluginServer)
#include "tst_pluginserver.moc"
