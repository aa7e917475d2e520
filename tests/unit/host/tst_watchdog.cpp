// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What runs when something else hangs, and what it can see.
#include "host/base/childprocesses.h"
#include "host/base/watchdog.h"
#include "support/patience.h"

#include <QProcess>
#include <QtTest>

#include <atomic>

class tst_Watchdog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void action_runsWhileTheOwnerHangs();
    void disarm_callsItOff();
    void arm_takesThePlaceOfTheActionBefore();
    void runningChildren_areNamed();
};

void tst_Watchdog::action_runsWhileTheOwnerHangs()
{
    QSemaphore ran;
    Watchdog watchdog;
    watchdog.arm(1, [&ran] { ran.release(); });
    ran.acquire(); // without an event loop
    watchdog.disarm();
}

void tst_Watchdog::disarm_callsItOff()
{
    std::atomic<bool> ran {false};
    Watchdog watchdog;
    watchdog.disarm(); // nothing to call off
    watchdog.arm(3600 * 1000, [&ran] { ran = true; });
    watchdog.disarm();
    QVERIFY(!ran);
}

void tst_Watchdog::arm_takesThePlaceOfTheActionBefore()
{
    std::atomic<bool> first {false};
    QSemaphore second;
    Watchdog watchdog;
    watchdog.arm(3600 * 1000, [&first] { first = true; });
    watchdog.arm(1, [&second] { second.release(); });
    second.acquire();
    QVERIFY(!first);
}

void tst_Watchdog::runningChildren_areNamed()
{
#ifndef Q_OS_LINUX
    QSKIP("only Linux tells", );
#endif
    QCOMPARE(runningChildren().size(), 0);
    QProcess child;
    child.start(QStringLiteral("/bin/sleep"), {QStringLiteral("60")});
    QVERIFY(child.waitForStarted(longestWait));
    const QVector<RunningChild> children = runningChildren();
    QCOMPARE(children.size(), 1);
    QCOMPARE(children.first().pid, child.processId());
    QVERIFY(children.first().command.endsWith(QStringLiteral("sleep 60")));
    child.kill();
    QVERIFY(child.waitForFinished(longestWait));
    QCOMPARE(runningChildren().size(), 0);
}

QTEST_APPLESS_MAIN(tst_Watchdog)
#include "tst_watchdog.moc"
