// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the plugin runs as its export command finds the server above it.
//
// With "--probe PLUGIN FILE" the program itself is that command: it writes what it finds to the
// file.
#include "host/gate/pluginserver.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"

#include <QFile>
#include <QtTest>

class tst_RunningServer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exportCommand_findsItsServer();
    void probeOfNobody_findsNone();
};

namespace {

const QString probeWord = QStringLiteral("--probe");

/// The start of the server above this process, in seconds since the epoch, and the arguments that
/// it was started with, a line each.
int probe(const QString &plugin, const QString &path)
{
    const std::optional<PluginServer> server = pluginServerAbove(plugin);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return 1;
    if (!server)
        return 0;
    QFile arguments(QStringLiteral("/proc/%1/cmdline").arg(server->pid));
    if (!arguments.open(QIODevice::ReadOnly))
        return 1;
    file.write(QByteArray::number(server->since.toSecsSinceEpoch()) + '\n'
               + arguments.readAll().replace('\0', '\n'));
    return 0;
}

QString probeCommand(const QString &file)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(QCoreApplication::applicationFilePath(), probeWord, TalvenhrProcess::pluginPath(),
             file);
}

} // namespace

/// Through a shell, as many export commands are run.
void tst_RunningServer::exportCommand_findsItsServer()
{
    Site site;
    site.writeFile(QStringLiteral("export.sh"),
                   probeCommand(site.path(QStringLiteral("found"))) + QStringLiteral("\ntrue\n"));
    site.set({QStringLiteral("syncCommand=sh ") + site.path(QStringLiteral("export.sh")),
              QStringLiteral("syncCommandRun=2")});
    const qint64 before = QDateTime::currentSecsSinceEpoch();
    TalvenhrProcess server(
        site.runOptions({QStringLiteral("--once"), QStringLiteral("--private-db"),
                         site.path(QStringLiteral("db"))}));
    QVERIFY2(server.finish() == 0, qPrintable(server.lines().join(QLatin1Char('\n'))));
    const qint64 after = QDateTime::currentSecsSinceEpoch();

    const QStringList found = site.readFile(QStringLiteral("found")).split(QLatin1Char('\n'));
    QCOMPARE(found.value(1), TalvenhrProcess::path());
    QCOMPARE(found.value(2), QStringLiteral("run"));
    // The machine's own start is known to the second only.
    const qint64 since = found.value(0).toLongLong();
    QVERIFY2(since >= before - 2 && since <= after + 2,
             qPrintable(QStringLiteral("%1 <= %2 <= %3").arg(before).arg(since).arg(after)));
}

/// By hand or by a timer there is no server.
void tst_RunningServer::probeOfNobody_findsNone()
{
    const Site site;
    const QString file = site.path(QStringLiteral("found"));
    QCOMPARE(QProcess::execute(probeCommand(file)), 0);
    QVERIFY(QFile::exists(file));
    QCOMPARE(site.readFile(QStringLiteral("found")), QString());
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == probeWord)
        return probe(arguments.value(2), arguments.value(3));
    tst_RunningServer test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_runningserver.moc"
