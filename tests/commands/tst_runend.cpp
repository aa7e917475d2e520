// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run`: the ways in which it ends before its time.
#include "host/server/leftprocess.h"
#include "host/server/privateserver.h"
#include "support/commands/site.h"
#include "support/commands/talvenhrprocess.h"
#include "support/patience.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QtTest>

#include <csignal>

class tst_RunEnd : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void signalInMidPass_letsItFinish_data();
    void signalInMidPass_letsItFinish();
    void secondSignal_cutsAHangingCommand();
    void signalBetweenTicks_endsAtOnce();
    void timeoutInMidPass_letsItFinish();
    void timeoutInMidPass_cutsAHangingServer();
    void timeoutBeforeTheFirstTick();
    void timeoutWhileTheServerDoesNotAnswer();
    void signalWhileTheServerDoesNotAnswer();
    void signalWhileATickHangs_cutsIt();
    void killedPrivateServer_endsAtOnce();
    void killedPrivateServerInMidPass_tellsWhatIsLeft();
    void lostDatabase_endsAfterTheTick();
    void killedHost_leavesNoServerBehind();
    void signalWhileDataAreMade_endsAtOnce();
    void killedHost_leavesDataThatAreMadeAnew();
    void brokenOffLoading_isMadeAnew();

private:
    QStringList options(const QStringList &others) const;
    QString makeTemporaryFolder() const;
    /// Neither the server nor a temporary file, and the next run finds everything in order.
    void checkNothingIsLeft(qint64 server);
    QString databasePath() const { return site.path(QStringLiteral("db")); }
    qint64 serverPid() const;

    Site site;
    // What the log says on the way.
    const QString begin = QStringLiteral("BEGIN synchronization #1");
    const QString end = QStringLiteral("END synchronization #1");
    const QString started = QStringLiteral("THRWorker::start()");
};

/// With the private database of this test.
QStringList tst_RunEnd::options(const QStringList &others) const
{
    return site.runOptions(QStringList {QStringLiteral("--private-db"), databasePath()} + others);
}

QString tst_RunEnd::makeTemporaryFolder() const
{
    QDir().mkpath(site.path(QStringLiteral("tmp")));
    return site.path(QStringLiteral("tmp"));
}

void tst_RunEnd::checkNothingIsLeft(qint64 server)
{
    QTRY_VERIFY_WITH_TIMEOUT(::kill(static_cast<pid_t>(server), 0) != 0, longestWait);
    QCOMPARE(
        QDir(site.path(QStringLiteral("tmp"))).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
        QStringList());
    TalvenhrProcess program(options({QStringLiteral("--once")}));
    program.start();
    QVERIFY(program.waitForLine(begin));
    site.endPass();
    QCOMPARE(program.finish(), 0);
}

qint64 tst_RunEnd::serverPid() const
{
    return site.readFile(QStringLiteral("db/server.pid")).trimmed().toLongLong();
}

void tst_RunEnd::initTestCase()
{
    site.holdPasses();
}

void tst_RunEnd::signalInMidPass_letsItFinish_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void tst_RunEnd::signalInMidPass_letsItFinish()
{
    QFETCH(int, number);
    const QString first = QStringLiteral("talvenhr: waiting for the running pass to end");
    const QString again = QStringLiteral("talvenhr: still waiting for the running pass");
    TalvenhrProcess program(options({QStringLiteral("--passes"), QStringLiteral("9")}));
    program.start();
    QVERIFY(program.waitForLine(begin));

    // Meanwhile nobody else gets at the database.
    TalvenhrProcess second(options({}));
    QCOMPARE(second.finish(), 5);
    QCOMPARE(second.lines().count(), 1);
    QVERIFY(second.lastLine().contains(QStringLiteral("is in use by process")));

    // But for a client, which joins its server.
    TalvenhrProcess client({QStringLiteral("sql"), QStringLiteral("--private-db"), databasePath(),
                            QStringLiteral("--execute"), QStringLiteral("SELECT 5 AS five")});
    QCOMPARE(client.finish(), 0);
    QCOMPARE(client.output(), QStringLiteral("five\n5\n"));

    program.sendSignal(number);
    QVERIFY(program.waitForLine(first));
    program.sendSignal(number);
    QVERIFY(program.waitForLine(again));
    QCOMPARE(program.linesWith(end), QStringList());
    site.endPass();
    QCOMPARE(program.finish(), 1);
    QCOMPARE(program.linesWith(end).count(), 1);
    QCOMPARE(program.linesWith(QStringLiteral("BEGIN synchronization")).count(), 1);
    QVERIFY(program.lastLine().startsWith(QStringLiteral("talvenhr: 1 pass, 3 records, ")));
    QVERIFY(program.lastLine().endsWith(QStringLiteral("; ended by a signal before pass 2")));
}

void tst_RunEnd::secondSignal_cutsAHangingCommand()
{
    TalvenhrProcess program(options({QStringLiteral("--grace"), QStringLiteral("1")}));
    program.setEnvironment(QStringLiteral("TMPDIR"), makeTemporaryFolder());
    program.start();
    QVERIFY2(program.waitForLine(begin), qPrintable(program.lastLine()));
    const qint64 server = serverPid();
    program.sendSignal(SIGINT);
    QVERIFY(program.waitForLine(QStringLiteral("talvenhr: waiting for the running pass")));
    program.sendSignal(SIGINT);
    QVERIFY(program.waitForLine(QStringLiteral("still waiting for the running pass; it is cut")));
    QCOMPARE(program.finish(), 130);
    const QRegularExpression reason(
        QStringLiteral("ended by a second signal, the running pass was cut while waiting for "
                       "process (\\d+), which goes on: .*sh .*hold.sh$"));
    const QRegularExpressionMatch told = reason.match(program.lastLine());
    QVERIFY2(told.hasMatch(), qPrintable(program.lastLine()));
    QVERIFY(program.lastLine().startsWith(QStringLiteral("talvenhr: 0 passes, ")));
    QCOMPARE(::kill(static_cast<pid_t>(told.captured(1).toInt()), SIGKILL), 0);
    checkNothingIsLeft(server);
}

void tst_RunEnd::signalBetweenTicks_endsAtOnce()
{
    site.set({QStringLiteral("timerInterval=60")});
    TalvenhrProcess program(options({QStringLiteral("--once")}));
    program.start();
    QVERIFY(program.waitForLine(QStringLiteral("talvenhr: the first pass begins at ")));
    QCOMPARE(program.linesWith(QStringLiteral(", in 60 s, as timerInterval says")).count(), 1);
    program.sendSignal(SIGTERM);
    QCOMPARE(program.finish(), 1);
    QVERIFY(program.lastLine().startsWith(QStringLiteral("talvenhr: 0 passes, ")));
    QVERIFY(program.lastLine().endsWith(QStringLiteral("; ended by a signal before pass 1")));
    site.set({QStringLiteral("timerInterval=1")});
}

void tst_RunEnd::timeoutInMidPass_letsItFinish()
{
    TalvenhrProcess program(options({QStringLiteral("--timeout"), QStringLiteral("6")}));
    program.start();
    QVERIFY(program.waitForLine(QStringLiteral("talvenhr: timed out after 6 s")));
    QCOMPARE(program.linesWith(end), QStringList());
    site.endPass();
    QCOMPARE(program.finish(), 4);
    QCOMPARE(program.linesWith(end).count(), 1);
}

void tst_RunEnd::timeoutInMidPass_cutsAHangingServer()
{
    TalvenhrProcess program(options({QStringLiteral("--timeout"), QStringLiteral("8"),
                                     QStringLiteral("--grace"), QStringLiteral("1")}));
    program.setEnvironment(QStringLiteral("TMPDIR"), makeTemporaryFolder());
    program.start();
    QVERIFY2(program.waitForLine(begin), qPrintable(program.lastLine()));
    const qint64 server = serverPid();
    QCOMPARE(::kill(static_cast<pid_t>(server), SIGSTOP), 0);
    site.endPass();
    QCOMPARE(program.finish(), 4);
    QCOMPARE(program.linesWith(QStringLiteral("talvenhr: timed out after 8 s")).count(), 1);
    const QRegularExpression reason(
        QStringLiteral("timed out after 8 s, the running pass was cut while waiting for an answer "
                       "of the database to 'SELECT p.pid, p.pamId, .*…', asked at "
                       "20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d(Z|[+-]\\d\\d:\\d\\d); "
                       "the plugin's last message: THRWorker"));
    QVERIFY2(reason.match(program.lastLine()).hasMatch(), qPrintable(program.lastLine()));
    checkNothingIsLeft(server);
}

void tst_RunEnd::timeoutBeforeTheFirstTick()
{
    site.set({QStringLiteral("timerInterval=60")});
    TalvenhrProcess program(options({QStringLiteral("--timeout"), QStringLiteral("1")}));
    QCOMPARE(program.finish(), 4);
    QVERIFY(program.lastLine().startsWith(QStringLiteral("talvenhr: 0 passes, ")));
    site.set({QStringLiteral("timerInterval=1")});
}

void tst_RunEnd::timeoutWhileTheServerDoesNotAnswer()
{
    PrivateServer server(databasePath());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    QCOMPARE(::kill(static_cast<pid_t>(server.processId()), SIGSTOP), 0);
    TalvenhrProcess program(site.runOptions({QStringLiteral("--socket"), server.socketPath(),
                                             QStringLiteral("--timeout"), QStringLiteral("1")}));
    const int exitCode = program.finish();
    server.kill();
    QCOMPARE(exitCode, 4);
    QVERIFY2(program.lastLine().endsWith(QStringLiteral("; timed out after 1 s, while waiting for "
                                                        "an answer of the database")),
             qPrintable(program.lastLine()));
}

/// Nothing is at work yet, so that the signal ends the process itself.
void tst_RunEnd::signalWhileTheServerDoesNotAnswer()
{
    PrivateServer server(databasePath());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    Site odd;
    odd.set({QStringLiteral("importfile=x")}); // its warning tells that the program has come so far
    QCOMPARE(::kill(static_cast<pid_t>(server.processId()), SIGSTOP), 0);
    TalvenhrProcess program(odd.runOptions({QStringLiteral("--socket"), server.socketPath()}));
    program.start();
    const bool warned = program.waitForLine(QStringLiteral("talvenhr: warning: the key"));
    // A signal that comes before the connection is tried waits for the event loop.
    const auto hasEnded = [&program] {
        program.sendSignal(SIGTERM);
        return program.hasEnded();
    };
    const bool ended = QTest::qWaitFor(hasEnded, longestWait);
    server.kill();
    QVERIFY(warned);
    QVERIFY(ended);
}

void tst_RunEnd::signalWhileATickHangs_cutsIt()
{
    PrivateServer server(databasePath());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    TalvenhrProcess program(
        site.runOptions({QStringLiteral("--socket"), server.socketPath(), QStringLiteral("--grace"),
                         QStringLiteral("1"), QStringLiteral("--log-level"), QStringLiteral("2")}));
    program.start();
    QVERIFY(program.waitForLine(begin));
    site.endPass();
    QVERIFY(program.waitForLine(end));
    QCOMPARE(::kill(static_cast<pid_t>(server.processId()), SIGSTOP), 0);
    const bool ticks = program.waitForLine(QStringLiteral("THRWorker::checkSync(): #2"));
    program.sendSignal(SIGINT);
    const int exitCode = program.finish();
    server.kill();
    QVERIFY(ticks);
    QCOMPARE(exitCode, 130);
    QVERIFY2(program.lastLine().contains(QStringLiteral("; ended by a signal, while waiting for an "
                                                        "answer of the database to 'OPEN'")),
             qPrintable(program.lastLine()));
}

/// It does not wait for the next tick.
void tst_RunEnd::killedPrivateServer_endsAtOnce()
{
    site.set({QStringLiteral("timerInterval=3600")});
    TalvenhrProcess program(options({}));
    program.start();
    QVERIFY(program.waitForLine(started));
    QCOMPARE(::kill(static_cast<pid_t>(serverPid()), SIGKILL), 0);
    QCOMPARE(program.finish(), 3);
    QCOMPARE(program.linesWith(QStringLiteral("talvenhr: the private server was killed")).count(),
             1);
    site.set({QStringLiteral("timerInterval=1")});
}

void tst_RunEnd::killedPrivateServerInMidPass_tellsWhatIsLeft()
{
    TalvenhrProcess program(options({}));
    program.start();
    QVERIFY(program.waitForLine(begin));
    QCOMPARE(::kill(static_cast<pid_t>(serverPid()), SIGKILL), 0);
    QVERIFY(program.waitForLine(QStringLiteral("talvenhr: the private server was killed")));
    site.endPass();
    QCOMPARE(program.finish(), 3);
    QVERIFY2(program.lastLine().contains(
                 QStringLiteral("; from there on nobody was written, and the "
                                "person at work only in part. Its data are kept, "
                                "but the export may be gone")),
             qPrintable(program.lastLine()));
}

void tst_RunEnd::lostDatabase_endsAfterTheTick()
{
    // Not the program's own server, so it learns of its end from the plugin.
    PrivateServer server(databasePath());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    TalvenhrProcess program(site.runOptions({QStringLiteral("--socket"), server.socketPath(),
                                             QStringLiteral("--passes"), QStringLiteral("3")}));
    program.start();
    QVERIFY(program.waitForLine(started));
    server.kill();
    QCOMPARE(program.finish(), 3);
    QCOMPARE(
        program.linesWith(QStringLiteral("THRWorker::checkSync() - database not open!")).count(),
        1);
    QCOMPARE(program.linesWith(QStringLiteral("talvenhr: the database cannot be opened")).count(),
             1);
}

void tst_RunEnd::killedHost_leavesNoServerBehind()
{
#ifndef Q_OS_LINUX
    QSKIP("only Linux tells a child of its parent's end", );
#endif
    TalvenhrProcess program(options({}));
    // It gets no chance to tidy up behind itself.
    program.setEnvironment(QStringLiteral("TMPDIR"), site.dataDir());
    program.start();
    QVERIFY(program.waitForLine(started));
    const qint64 pid = serverPid();
    QVERIFY(pid > 0 && ::kill(static_cast<pid_t>(pid), 0) == 0);
    program.sendSignal(SIGKILL);
    QCOMPARE(program.finish(), -1);

    // The stale lock is nobody's, and the server makes room.
    PrivateServer server(databasePath());
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY(serverPid() != pid);
}

void tst_RunEnd::signalWhileDataAreMade_endsAtOnce()
{
    const QString place = site.path(QStringLiteral("interrupted"));
    TalvenhrProcess program(site.runOptions({QStringLiteral("--private-db"), place}));
    program.start();
    QVERIFY(program.waitForLine(QStringLiteral("talvenhr: making a private database in ")));
    program.sendSignal(SIGTERM);
    QCOMPARE(program.finish(), 130);
    QVERIFY2(program.lastLine().contains(QStringLiteral("could not be made: interrupted; what was "
                                                        "begun is made anew by the next run")),
             qPrintable(program.lastLine()));
    QVERIFY(!QFileInfo::exists(place + QStringLiteral("/data")));
}

void tst_RunEnd::killedHost_leavesDataThatAreMadeAnew()
{
    const QString place = site.path(QStringLiteral("unfinished"));
    const QString data = place + QStringLiteral("/data");
    TalvenhrProcess program(site.runOptions({QStringLiteral("--private-db"), place}));
    program.start();
    QVERIFY(program.waitForLine(QStringLiteral("talvenhr: making a private database in ")));
    QTRY_VERIFY_WITH_TIMEOUT(!processesIn(data).isEmpty(), longestWait);
    program.sendSignal(SIGKILL);
    QCOMPARE(program.finish(), -1);

    // Whoever still makes data for nobody makes room.
    PrivateServer server(place);
    QString error;
    QVERIFY2(server.start(&error), qPrintable(error));
    QVERIFY(server.isFirstUse());
}

void tst_RunEnd::brokenOffLoading_isMadeAnew()
{
    {
        PrivateServer server(databasePath());
        QString error;
        QVERIFY2(server.start(&error), qPrintable(error));
        QVERIFY2(server.execute(QStringLiteral("attendance"), QStringLiteral("DROP TABLE people"),
                                &error),
                 qPrintable(error));
    }
    site.writeFile(QStringLiteral("db/content.loading"), QString());
    TalvenhrProcess program(options({}));
    program.start();
    QVERIFY(program.waitForLine(QStringLiteral("new private database with the sample company")));
    QVERIFY(program.waitForLine(started));
    program.sendSignal(SIGTERM);
    QCOMPARE(program.finish(), 0);
    QVERIFY(!QFileInfo::exists(site.path(QStringLiteral("db/content.loading"))));
}

QTEST_GUILESS_MAIN(tst_RunEnd)
#include "tst_runend.moc"
