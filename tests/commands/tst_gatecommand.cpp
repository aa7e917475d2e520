// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr gate` as its users run it: by hand, and as the export command of a plugin.
#include "host/gate/gaterecord.h"
#include "support/commands/gateconsole.h"
#include "support/commands/jsonschema.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QtTest>

#include <algorithm>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// The command lines of all processes in which the text stands.
QStringList processesNaming(const QString &text)
{
    QStringList lines;
    const QStringList pids = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString &pid : pids) {
        QFile file(QStringLiteral("/proc/%1/cmdline").arg(pid));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QString line = QString::fromLocal8Bit(file.readAll().replace('\0', ' '));
        if (line.contains(text))
            lines.append(line);
    }
    return lines;
}

/// A database that takes a connection, and never says a word.
class SilentServer
{
public:
    explicit SilentServer(const QString &path) :
        handle(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        const QByteArray name = QFile::encodeName(path);
        std::copy(name.cbegin(), name.cend(), address.sun_path);
        listening = ::bind(handle, reinterpret_cast<const sockaddr *>(&address), sizeof(address))
                == 0
            && ::listen(handle, 5) == 0;
    }
    ~SilentServer() { ::close(handle); }
    SilentServer(const SilentServer &) = delete;
    SilentServer &operator=(const SilentServer &) = delete;

    bool isListening() const { return listening; }

private:
    const int handle;
    bool listening = false;
};

} // namespace

class tst_GateCommand : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void soundExport_comesInPlace();
    void damagedExport_isRefusedWithItsReasons();
    void record_isWhatTheSchemaSays();
    void figuresAndSite_followEachRun();
    void release_takesAReason();
    void timeLimit_endsTheGate();
    void timeLimit_leavesNoServer();
    void exportCommandOfThePlugin_holdsBackADamagedExport();
    void exportCommandOfThePlugin_takesFileAndEnvironment();
    void rehearsedExport_isRefusedBeyondALimit();

private:
    QScopedPointer<GateConsole> site;
};

void tst_GateCommand::init()
{
    site.reset(new GateConsole);
}

void tst_GateCommand::soundExport_comesInPlace()
{
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 0);
    QVERIFY(program.output().startsWith(QStringLiteral("passed: ron.data (")));
    QCOMPARE(program.output().count(QLatin1Char('\n')), 1);
    QCOMPARE(program.lines(), QStringList());
    QCOMPARE(site->readFile(QStringLiteral("ron.data")).trimmed(),
             GateConsole::exportOf(QStringLiteral("A"), 3).trimmed());
    TalvenhrProcess again(site->gate());
    QCOMPARE(again.finish(), 0);
    QCOMPARE(again.output(), QString());
}

void tst_GateCommand::damagedExport_isRefusedWithItsReasons()
{
    site->deliver(GateConsole::exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 5);
    QVERIFY(program.output().startsWith(QStringLiteral("refused: ron.data (")));
    QVERIFY(!site->isInPlace());
    const QString text = site->readFile(
        QStringLiteral("refused/%1.txt").arg(site->refusedNames().value(0)));
    QVERIFY2(text.contains(QStringLiteral("[E-TEXT-FAILS]")), qPrintable(text));
    QVERIFY(text.contains(QStringLiteral(".rejects.txt")));
    // The apostrophe can be mended.
    site->configure({QStringLiteral("[mend]"), QStringLiteral("apostrophe=yes")});
    site->deliver(GateConsole::exportOf(QStringLiteral("O'"), 4));
    TalvenhrProcess mended(site->gate());
    QCOMPARE(mended.finish(), 0);
    QVERIFY(mended.output().contains(QStringLiteral("cells mended: ")));
    QVERIFY(site->readFile(QStringLiteral("ron.data")).contains(QStringLiteral("O\u2019")));
}

void tst_GateCommand::record_isWhatTheSchemaSays()
{
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess passed(site->gate({QStringLiteral("--json")}));
    QCOMPARE(passed.finish(), 0);
    QCOMPARE(schemaFault(passed.output().toUtf8(), QStringLiteral("gate")), QString());
    site->deliver(GateConsole::exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess refused(site->gate({QStringLiteral("--json")}));
    QCOMPARE(refused.finish(), 5);
    QCOMPARE(schemaFault(refused.output().toUtf8(), QStringLiteral("gate")), QString());
    TalvenhrProcess released(site->gate({QStringLiteral("--json"), QStringLiteral("--release"),
                                         site->refusedNames().value(0), QStringLiteral("--reason"),
                                         QStringLiteral("why")}));
    QCOMPARE(released.finish(), 0);
    QCOMPARE(schemaFault(released.output().toUtf8(), QStringLiteral("gate")), QString());
}

/// What is wrong with them holds back no export.
void tst_GateCommand::figuresAndSite_followEachRun()
{
    site->configure({QStringLiteral("[metrics]"), QStringLiteral("file=figures/talvenhr.prom"),
                     QStringLiteral("[status]"), QStringLiteral("html=www")});
    QVERIFY(QDir(site->dataDir()).mkdir(QStringLiteral("figures")));
    site->deliver(GateConsole::exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess refusing(site->gate());
    QCOMPARE(refusing.finish(), 5);
    QVERIFY(site->readFile(QStringLiteral("figures/talvenhr.prom"))
                .contains(QStringLiteral("\ntalvenhr_last_export_refused 1\n")));
    const QString name = site->refusedNames().value(0);
    QVERIFY(QFile::exists(site->path(QStringLiteral("www/%1.html").arg(name))));
    QVERIFY(site->readFile(QStringLiteral("www/index.html")).contains(name));

    QVERIFY(QDir(site->path(QStringLiteral("figures"))).removeRecursively());
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess passing(site->gate());
    QCOMPARE(passing.finish(), 0);
    QVERIFY(site->isInPlace());
    QVERIFY2(passing.output().contains(QStringLiteral("\nwarning: ")),
             qPrintable(passing.output()));
}

void tst_GateCommand::release_takesAReason()
{
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 60));
    QCOMPARE(TalvenhrProcess(site->gate()).finish(), 0);
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 40));
    QCOMPARE(TalvenhrProcess(site->gate()).finish(), 5);
    const QString name = site->refusedNames().value(0);
    TalvenhrProcess without(site->gate({QStringLiteral("--release"), name}));
    QCOMPARE(without.finish(), 2);
    QVERIFY(without.lastLine().contains(QStringLiteral("--reason is missing")));
    TalvenhrProcess allowed(
        site->gate({QStringLiteral("--allow"), QStringLiteral("lost=20"),
                    QStringLiteral("--reason"), QStringLiteral("closed"), name}));
    allowed.setEnvironment(QStringLiteral("SUDO_USER"), QStringLiteral("eva"));
    QCOMPARE(allowed.finish(), 0);
    QVERIFY2(allowed.output().contains(
                 QRegularExpression(QStringLiteral("let through by eva \\(as [^)]+\\): closed"))),
             qPrintable(allowed.output()));
    QCOMPARE(site->readFile(QStringLiteral("ron.data")).trimmed(),
             GateConsole::exportOf(QStringLiteral("A"), 40).trimmed());
}

void tst_GateCommand::timeLimit_endsTheGate()
{
    const SilentServer server(site->path(QStringLiteral("silent.sock")));
    QVERIFY(server.isListening());
    site->configure(
        {QStringLiteral("time-limit=1"), QStringLiteral("[database]"),
         QStringLiteral("socket=silent.sock"), QStringLiteral("[hooks]"),
         QStringLiteral("failed=sh -c \"cat >'%1'\"").arg(site->path(QStringLiteral("told")))});
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 4);
    QVERIFY(program.lastLine().contains(QStringLiteral("not done after 1 s")));
    QVERIFY(!site->isInPlace());
    QVERIFY(QFile::exists(site->path(QStringLiteral("incoming/ron.data"))));
    QVERIFY(site->readFile(QStringLiteral("state/failed"))
                .contains(QStringLiteral("not done after 1 s")));
    QVERIFY(site->readFile(QStringLiteral("told")).contains(QStringLiteral("\"exitCode\":4")));
    site->configure({});
    TalvenhrProcess next(site->gate());
    QCOMPARE(next.finish(), 0);
    QVERIFY(site->isInPlace());
    QVERIFY(!QFile::exists(site->path(QStringLiteral("state/failed"))));
}

/// Only the folder of the copy, until the next gate, which need not rehearse.
void tst_GateCommand::timeLimit_leavesNoServer()
{
    const QTemporaryDir scratch;
    const QStringList database {QStringLiteral("--private-db"), site->path(QStringLiteral("db"))};
    TalvenhrProcess(site->runOptions(QStringList {QStringLiteral("--once")} + database)).finish();
    QVERIFY(QDir().mkpath(site->path(QStringLiteral("bin"))));
    const QString stub = QStringLiteral("bin/mariadbd");
    site->writeFile(stub,
                    QStringLiteral("#!/bin/sh\ncase $* in *talvenhr-scratch-*) trap '' TERM; "
                                   "echo $$ > '%1'; exec sleep 600;; esac\nPATH=${PATH#*:}\n"
                                   "exec mariadbd \"$@\"\n")
                        .arg(site->path(QStringLiteral("pid"))));
    QVERIFY(QFile::setPermissions(site->path(stub), QFile::ReadOwner | QFile::ExeOwner));
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    const auto pid = [this] { return site->readFile(QStringLiteral("pid")).trimmed(); };
    // On a slow machine it takes longer until the copy's server is begun.
    for (int seconds = 6; pid().isEmpty() && seconds < 200; seconds *= 2) {
        TalvenhrProcess limited(site->gate(
            database + QStringList {QStringLiteral("--time-limit"), QString::number(seconds)}));
        limited.setEnvironment(QStringLiteral("TMPDIR"), scratch.path());
        limited.setEnvironment(QStringLiteral("PATH"),
                               site->path(QStringLiteral("bin:")) + qEnvironmentVariable("PATH"));
        QVERIFY2(limited.finish() == 4, qPrintable(limited.lastLine()));
        QTRY_COMPARE_WITH_TIMEOUT(processesNaming(scratch.path()), QStringList(), longestWait);
        QTRY_COMPARE_WITH_TIMEOUT(processesNaming(site->dataDir()), QStringList(), longestWait);
    }
    QVERIFY(!pid().isEmpty());
    QTRY_VERIFY_WITH_TIMEOUT(!QFileInfo::exists(QStringLiteral("/proc/%1/exe").arg(pid())),
                             longestWait);
    const QDir left(scratch.path());
    const auto leftFolders = [&left] {
        return left.entryList({QStringLiteral("talvenhr-*")}, QDir::Dirs);
    };
    QVERIFY(!leftFolders().isEmpty());
    TalvenhrProcess next(
        site->gate(QStringList {QStringLiteral("--rehearse"), QStringLiteral("no")} + database));
    next.setEnvironment(QStringLiteral("TMPDIR"), scratch.path());
    QVERIFY2(next.finish() == 0, qPrintable(next.lastLine() + next.output()));
    QCOMPARE(leftFolders(), QStringList());
}

void tst_GateCommand::exportCommandOfThePlugin_holdsBackADamagedExport()
{
    const QStringList command = QStringList {TalvenhrProcess::path()} + site->gate();
    site->set({QStringLiteral("syncCommandRun=2"),
               QStringLiteral("syncCommand=\"%1\"").arg(command.join(QLatin1Char(' ')))});
    site->deliver(GateConsole::exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess refused(
        site->runOptions({QStringLiteral("--once"), QStringLiteral("--private-db"),
                          site->path(QStringLiteral("db"))}));
    QVERIFY(refused.finish() != 0);
    QCOMPARE(refused.linesWith(QStringLiteral("exit with code: 5")).size(), 1);
    QVERIFY2(!refused.linesWith(QStringLiteral("talvenhr: no export file at")).isEmpty(),
             qPrintable(refused.lines().join(QLatin1Char('\n'))));
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
    TalvenhrProcess passed(
        site->runOptions({QStringLiteral("--once"), QStringLiteral("--private-db"),
                          site->path(QStringLiteral("db"))}));
    QCOMPARE(passed.finish(), 0);
    QVERIFY2(passed.lastLine().contains(QStringLiteral("3 persons added")),
             qPrintable(passed.lastLine()));
    QVERIFY(!site->isInPlace());
}

/// As a server has it: a file where it is looked for, and variables besides.
void tst_GateCommand::exportCommandOfThePlugin_takesFileAndEnvironment()
{
    const QString home = site->path(QStringLiteral("home"));
    QVERIFY(QDir().mkpath(home + QStringLiteral("/.config/talvenhr")));
    site->writeFile(QStringLiteral("home/.config/talvenhr/talvenhr.conf"),
                    QStringLiteral("[plugin]\ndata-dir=%1\n[gate]\nincoming=%1/nowhere\n"
                                   "complete=rename\n[mend]\napostrophe=yes\n")
                        .arg(site->dataDir()));
    site->set({QStringLiteral("syncCommandRun=2"),
               QStringLiteral("syncCommand=%1 gate").arg(TalvenhrProcess::path())});
    site->deliver(GateConsole::exportOf(QStringLiteral("O'"), 3));
    TalvenhrProcess server(
        site->runOptions({QStringLiteral("--once"), QStringLiteral("--private-db"),
                          site->path(QStringLiteral("db")), QStringLiteral("--config"),
                          QStringLiteral("/dev/null")}),
        home);
    server.setEnvironment(QStringLiteral("TALVENHR_INCOMING"),
                          site->path(QStringLiteral("incoming")));
    server.setEnvironment(QStringLiteral("TALVENHR_STATE"), site->path(QStringLiteral("mine")));
    QVERIFY2(server.finish() == 0, qPrintable(server.lines().join(QLatin1Char('\n'))));
    QVERIFY2(server.lastLine().contains(QStringLiteral("3 persons added")),
             qPrintable(server.lastLine()));
    QVERIFY(QFile::exists(site->path(QStringLiteral("mine/begun"))));
    QVERIFY(!QFile::exists(site->path(QStringLiteral("incoming/ron.data"))));
    const QVector<GateRecord> records = readGateRecords(site->path(QStringLiteral("archive")));
    QCOMPARE(records.size(), 1);
    QCOMPARE(records.constFirst().mendedCells, 3);
}

void tst_GateCommand::rehearsedExport_isRefusedBeyondALimit()
{
    const QStringList database {QStringLiteral("--private-db"), site->path(QStringLiteral("db"))};
    site->deliver(GateConsole::exportOf(QStringLiteral("B"), 1));
    QCOMPARE(TalvenhrProcess(site->gate()).finish(), 0);
    QCOMPARE(TalvenhrProcess(site->runOptions(QStringList {QStringLiteral("--once")} + database))
                 .finish(),
             0);
    site->configure({QStringLiteral("[limits]"), QStringLiteral("added=2"),
                     QStringLiteral("gained=9"), QStringLiteral("updated=9"),
                     QStringLiteral("changed:surname=9"), QStringLiteral("missing=99")});
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 4));
    TalvenhrProcess program(site->gate(database));
    QVERIFY2(program.finish() == 5, qPrintable(program.lastLine() + program.output()));
    const QString name = site->refusedNames().value(0);
    QVERIFY2(program.output().contains(QStringLiteral("added: 3, and the limit is 2")),
             qPrintable(program.output()));
    QVERIFY(QFile::exists(site->path(QStringLiteral("refused/%1.rehearsal.html").arg(name))));
    QVERIFY(QFile::exists(site->path(QStringLiteral("refused/%1.changes.json").arg(name))));
    TalvenhrProcess allowed(site->gate(
        database
        + QStringList {QStringLiteral("--allow"), QStringLiteral("added=3"),
                       QStringLiteral("--reason"), QStringLiteral("a new branch"), name}));
    QCOMPARE(allowed.finish(), 0);
    QVERIFY(allowed.output().contains(QStringLiteral(", added 3, ")));
}

QTEST_GUILESS_MAIN(tst_GateCommand)
#include "tst_gatecommand.moc"
