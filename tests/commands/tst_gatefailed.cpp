// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A gate that cannot do its work: who learns of it, and how often.
#include "support/commands/gateconsole.h"
#include "support/commands/jsonschema.h"
#include "support/commands/talvenhrprocess.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>

class tst_GateFailed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void hook_runsOnceUntilAGateHasWorked();
    void endBeforeTheBegin_isKnownToo_data();
    void endBeforeTheBegin_isKnownToo();
    void foldersThatNobodyKnows_areNoReasonForSilence();
    void hookThatFails_isAWarning();
    void personAtTheKeyboard_isNoFailure();
    void foldersOfAKilledRun_goWithTheNextGate();

private:
    /// Lines of talvenhr.conf: a hook that keeps what it is told, and figures.
    QStringList hookAndFigures() const;
    QStringList told() const;
    int run(const QStringList &others = {}) const;
    bool isKept() const { return QFile::exists(site->path(QStringLiteral("state/failed"))); }

    QScopedPointer<GateConsole> site;
};

void tst_GateFailed::init()
{
    site.reset(new GateConsole);
    site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3));
}

QStringList tst_GateFailed::hookAndFigures() const
{
    return {QStringLiteral("[hooks]"),
            QStringLiteral("failed=sh -c \"cat >>'%1'\"").arg(site->path(QStringLiteral("told"))),
            QStringLiteral("[metrics]"), QStringLiteral("file=talvenhr.prom")};
}

QStringList tst_GateFailed::told() const
{
    return site->readFile(QStringLiteral("told")).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

int tst_GateFailed::run(const QStringList &others) const
{
    TalvenhrProcess program(site->gate(others));
    return program.finish();
}

void tst_GateFailed::hook_runsOnceUntilAGateHasWorked()
{
    const QStringList broken = hookAndFigures()
        + QStringList {QStringLiteral("[database]"), QStringLiteral("socket=none.sock")};
    for (int outage = 1; outage <= 2; ++outage) {
        site->configure(broken);
        site->deliver(GateConsole::exportOf(QStringLiteral("A"), 3 + outage));
        QCOMPARE(run(), 3);
        QCOMPARE(run(), 3);
        QCOMPARE(told().size(), outage);
        QVERIFY(isKept());
        site->configure(hookAndFigures());
        QCOMPARE(run(), 0);
        QVERIFY(!isKept());
    }
    QCOMPARE(schemaFault(told().constFirst().toUtf8(), QStringLiteral("gatefailure")), QString());
    const QJsonObject failure = QJsonDocument::fromJson(told().constFirst().toUtf8()).object();
    QCOMPARE(failure.value(QStringLiteral("exitCode")).toInt(), 3);
    QVERIFY(failure.value(QStringLiteral("text"))
                .toString()
                .startsWith(QStringLiteral("cannot open database 'attendance' on ")));
    QCOMPARE(QDir(site->path(QStringLiteral("state")))
                 .entryList({QStringLiteral("failed*")}, QDir::Files),
             QStringList());
}

void tst_GateFailed::endBeforeTheBegin_isKnownToo_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QString>("reason");
    QTest::newRow("password file")
        << QStringList {QStringLiteral("[database]"), QStringLiteral("password-file=none")}
        << QStringLiteral("the password file '");
    QTest::newRow("value") << QStringList {QStringLiteral("[gate]"),
                                           QStringLiteral("late-after=26h")}
                           << QStringLiteral("not '26h'");
    QTest::newRow("unknown key") << QStringList {QStringLiteral("[plugin]"),
                                                 QStringLiteral("colour=none")}
                                 << QStringLiteral("unknown key 'colour'");
}

/// Also by the very first gate, which has no state yet.
void tst_GateFailed::endBeforeTheBegin_isKnownToo()
{
    QFETCH(QStringList, lines);
    QFETCH(QString, reason);
    site->configure(hookAndFigures() + lines);
    for (int i = 0; i < 2; ++i) {
        TalvenhrProcess program(site->gate());
        QCOMPARE(program.finish(), 2);
        QVERIFY2(program.lastLine().contains(reason), qPrintable(program.lastLine()));
    }
    QVERIFY(site->readFile(QStringLiteral("state/failed")).contains(reason));
    QCOMPARE(told().size(), 1);
    QVERIFY(told().constFirst().contains(reason));
    QVERIFY(site->readFile(QStringLiteral("talvenhr.prom"))
                .contains(QStringLiteral("\ntalvenhr_gate_failed 1\n")));
    site->configure(hookAndFigures());
    TalvenhrProcess check({QStringLiteral("status"), QStringLiteral("--check"),
                           QStringLiteral("--config"),
                           site->path(QStringLiteral("talvenhr.conf"))});
    QCOMPARE(check.finish(), 2);
    QVERIFY2(check.output().startsWith(QStringLiteral("TALVENHR CRITICAL - the gate failed on ")),
             qPrintable(check.output()));
    QCOMPARE(run(), 0);
    QVERIFY(!isKept());
    QVERIFY(site->readFile(QStringLiteral("talvenhr.prom"))
                .contains(QStringLiteral("\ntalvenhr_gate_failed 0\n")));
}

/// Nothing can be kept then, so the hook runs each time.
void tst_GateFailed::foldersThatNobodyKnows_areNoReasonForSilence()
{
    QFile file(site->path(QStringLiteral("talvenhr.conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[gate]\nincomings=incoming\n" + hookAndFigures().join(QLatin1Char('\n')).toUtf8()
               + '\n');
    file.close();
    for (int i = 1; i <= 2; ++i) {
        QCOMPARE(run(), 2);
        QCOMPARE(told().size(), i);
        QVERIFY(told().constLast().contains(QStringLiteral("incomings")));
    }
}

void tst_GateFailed::hookThatFails_isAWarning()
{
    site->configure({QStringLiteral("place=nowhere/ron.data"), QStringLiteral("[hooks]"),
                     QStringLiteral("failed=sh -c \"echo queue is full >&2; exit 75\"")});
    TalvenhrProcess program(site->gate());
    QCOMPARE(program.finish(), 2);
    QVERIFY2(program.output().contains(QStringLiteral("exit code 75: queue is full")),
             qPrintable(program.output()));
}

/// They see it, and nothing waits for it.
void tst_GateFailed::personAtTheKeyboard_isNoFailure()
{
    site->configure(hookAndFigures());
    QCOMPARE(run(), 0);
    QCOMPARE(run({QStringLiteral("--release"), QStringLiteral("none")}), 2);
    QCOMPARE(run({QStringLiteral("--release"), QStringLiteral("none"), QStringLiteral("--reason"),
                  QStringLiteral("why")}),
             2);
    QCOMPARE(run({QStringLiteral("--relese"), QStringLiteral("none")}), 2);
    QVERIFY(!isKept());
    QCOMPARE(told(), QStringList());
}

/// Also those of the process that ran the plugin.
void tst_GateFailed::foldersOfAKilledRun_goWithTheNextGate()
{
    const QTemporaryDir scratch;
    const auto left = [&scratch] {
        return QDir(scratch.path()).entryList({QStringLiteral("talvenhr-*")}, QDir::Dirs);
    };
    TalvenhrProcess killed(
        site->runOptions({QStringLiteral("--private-db"), site->path(QStringLiteral("db"))}));
    killed.setEnvironment(QStringLiteral("TMPDIR"), scratch.path());
    killed.start();
    const auto isLocked = [&] {
        return QFile::exists(scratch.filePath(left().value(0) + QStringLiteral("/scratch.lock")));
    };
    QTRY_VERIFY_WITH_TIMEOUT(isLocked(), longestWait);
    killed.sendSignal(SIGKILL);
    QCOMPARE(killed.finish(), -1);
    QVERIFY(!left().isEmpty());
    TalvenhrProcess gate(site->gate());
    gate.setEnvironment(QStringLiteral("TMPDIR"), scratch.path());
    QCOMPARE(gate.finish(), 0);
    QCOMPARE(left(), QStringList());
}

QTEST_GUILESS_MAIN(tst_GateFailed)
#include "tst_gatefailed.moc"
