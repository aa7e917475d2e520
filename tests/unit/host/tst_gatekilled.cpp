// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A gate that is killed, or whose disk is full, at any moment: nothing is lost, nothing is half,
// and the next gate ends what was begun.
#include "host/company/exportwriter.h"
#include "host/gate/gatefailure.h"
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Exports of two days, of which the second is about to be delivered.
struct Days
{
    QByteArray before;
    QByteArray now;
};

/// The exit status as waitpid() gives it.
int inChild(const std::function<void()> &work)
{
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(ExitClean);
    }
    int status = 0;
    return ::waitpid(child, &status, 0) == child ? status : -1;
}

/// Runs a gate in a process of its own, which may meet whatever the watch does to it. The exit
/// status as waitpid() gives it.
int runInChild(const GateSettings &settings, const std::function<void(const char *)> &watch)
{
    return inChild([&settings, &watch] {
        Gate gate(settings);
        gate.setStepWatch(watch);
        GateResult result;
        const Failure failure = gate.run(&result);
        ::_exit(failure ? failure.exitCode : result.hasRefused() ? ExitRefused : ExitClean);
    });
}

std::function<void(const char *)> killedAt(const QString &step)
{
    return [step](const char *reached) {
        if (step == QLatin1String(reached))
            ::kill(::getpid(), SIGKILL);
    };
}

/// What a gate has written beside the place.
void removePrepared(const GateSite &site)
{
    QDir place = QFileInfo(site.settings.place).dir();
    const QStringList hidden = place.entryList({QStringLiteral(".talvenhr-gate-*")},
                                               QDir::Files | QDir::Hidden);
    QCOMPARE(hidden.size(), 1);
    QVERIFY(place.remove(hidden.constFirst()));
}

void refuseToWriteBeyond(rlim_t bytes)
{
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit {bytes, bytes};
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

/// All steps of a road, in their order.
QStringList stepsOf(const GateSettings &settings)
{
    QStringList steps;
    Gate gate(settings);
    gate.setStepWatch([&steps](const char *step) { steps.append(QLatin1String(step)); });
    GateResult result;
    return gate.run(&result) ? QStringList() : steps;
}

} // namespace

class tst_GateKilled : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void killedAtAStep_isMended_data();
    void killedAtAStep_isMended();
    void preparedFileRemoved_isLookedAtAnew();
    void placeChanged_isLookedAtAnew();
    void preparedReleaseRemoved_leavesTheRefusedOne();
    void doneRemovedOnly_isEnded();
    void fullDisk_isMended_data();
    void fullDisk_isMended();
    void fullDisk_isToldWithItsFolder_data();
    void fullDisk_isToldWithItsFolder();
    void fullDisk_remembersThatItWasTold();

private:
    static void addSteps(bool isSound);
    static Days begin(GateSite *site, bool isSound);
    static void checkNothingIsHalf(const GateSite &site, const Days &days, bool isSound);
    static void checkAllIsMended(GateSite *site, const Days &days, bool isSound);
};

/// One export has gone through and lies there unread, the next one is delivered.
Days tst_GateKilled::begin(GateSite *site, bool isSound)
{
    Days days;
    days.before = site->nextExport();
    site->deliver(days.before);
    site->run();
    days.now = site->nextExport();
    if (!isSound)
        days.now.truncate(days.now.size() / 3);
    site->deliver(days.now);
    return days;
}

void tst_GateKilled::addSteps(bool isSound)
{
    GateSite site;
    begin(&site, isSound);
    const QStringList steps = stepsOf(site.settings);
    QVERIFY(steps.size() >= 6);
    for (const QString &step : steps)
        QTest::addRow("%s: %s", isSound ? "passes" : "is refused", qPrintable(step))
            << step << isSound;
}

/// The plugin finds one of the two sound exports whole, and the delivery is somewhere.
void tst_GateKilled::checkNothingIsHalf(const GateSite &site, const Days &days, bool isSound)
{
    const QByteArray placed = site.inPlace();
    QVERIFY(placed == days.before || (isSound && placed == days.now));
    bool isKept = site.isDelivered();
    const QVector<GateRecord> records = site.records();
    for (const GateRecord &record : records) {
        if (record.outcome == GateRecord::Passed && site.archived(record) == days.now)
            isKept = true;
        QFile refused(site.settings.refused + QLatin1Char('/') + record.name
                      + QStringLiteral(".export"));
        if (record.outcome == GateRecord::Refused && refused.open(QIODevice::ReadOnly)
            && refused.readAll() == days.now)
            isKept = true;
    }
    QVERIFY(isKept);
}

void tst_GateKilled::checkAllIsMended(GateSite *site, const Days &days, bool isSound)
{
    site->run();
    QCOMPARE(site->inPlace(), isSound ? days.now : days.before);
    QVERIFY(!site->isDelivered());
    const QVector<GateRecord> records = site->records();
    QCOMPARE(records.size(), 2);
    QCOMPARE(records.at(1).outcome, isSound ? GateRecord::Passed : GateRecord::Refused);
    QVERIFY(records.at(1).isTold);
    const QFileInfo place(site->settings.place);
    QCOMPARE(place.dir().entryList(QDir::Files | QDir::Hidden), QStringList {place.fileName()});
    // And once more: nothing is left to do.
    QVERIFY(site->run().decided.isEmpty());
}

void tst_GateKilled::killedAtAStep_isMended_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<bool>("isSound");
    addSteps(true);
    addSteps(false);
}

void tst_GateKilled::killedAtAStep_isMended()
{
    QFETCH(QString, step);
    QFETCH(bool, isSound);
    GateSite site;
    const Days days = begin(&site, isSound);
    QVERIFY(WIFSIGNALED(runInChild(site.settings, killedAt(step))));
    checkNothingIsHalf(site, days, isSound);
    checkAllIsMended(&site, days, isSound);
}

/// By somebody who tidies up; the record says that it was about to be put in place.
void tst_GateKilled::preparedFileRemoved_isLookedAtAnew()
{
    GateSite site;
    const Days days = begin(&site, true);
    QVERIFY(WIFSIGNALED(runInChild(site.settings, killedAt(QStringLiteral("put")))));
    removePrepared(site);
    const GateResult result = site.run();
    QCOMPARE(result.news.size(), 1);
    QVERIFY2(result.news.constFirst().contains(QStringLiteral("which is not in place")),
             qPrintable(result.news.constFirst()));
    QCOMPARE(result.decided.value(0).outcome, GateRecord::Passed);
    checkAllIsMended(&site, days, true);
}

void tst_GateKilled::placeChanged_isLookedAtAnew()
{
    GateSite site;
    const Days days = begin(&site, true);
    QVERIFY(WIFSIGNALED(runInChild(site.settings, killedAt(QStringLiteral("put")))));
    site.settings.place = site.path(QStringLiteral("elsewhere.data"));
    QCOMPARE(site.run().decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), days.now);
}

void tst_GateKilled::preparedReleaseRemoved_leavesTheRefusedOne()
{
    GateSite site;
    const QByteArray content = damaged(site.nextExport());
    site.deliver(content);
    const GateRecord refused = site.run().decided.value(0);
    const Release byHand {QStringLiteral("anna"), QStringLiteral("why"), {}};
    const int status = inChild([&site, &refused, &byHand] {
        Gate gate(site.settings);
        gate.setStepWatch(killedAt(QStringLiteral("put")));
        GateResult result;
        gate.release({refused.name, byHand}, &result);
    });
    QVERIFY(WIFSIGNALED(status));
    removePrepared(site);
    QCOMPARE(site.run().news.size(), 1);
    QCOMPARE(site.records().size(), 1);
    QVERIFY(site.inPlace().isNull());
    QCOMPARE(site.release({refused.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), content);
}

/// Another one of its name, half written, has to wait.
void tst_GateKilled::doneRemovedOnly_isEnded()
{
    GateSite site;
    site.settings.incoming.complete = Completeness::Done;
    const QString path = QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data"));
    const QByteArray content = site.nextExport();
    site.deliver(content);
    site.deliver("", QStringLiteral("ron.data.done"));
    QVERIFY(WIFSIGNALED(runInChild(site.settings, killedAt(QStringLiteral("remove")))));
    QVERIFY(QFile::remove(path + QStringLiteral(".done")));
    const GateResult result = site.run();
    QVERIFY(result.waiting.isEmpty());
    QCOMPARE(result.news.size(), 1);
    QVERIFY(!site.isDelivered());
    QCOMPARE(site.inPlace(), content);
    // The same file once more, from the same source.
    const QDateTime time = site.records().constFirst().fileTime;
    QTRY_VERIFY(QDateTime::currentDateTime() > site.records().constFirst().when);
    site.deliver(content);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(time, QFileDevice::FileModificationTime));
    file.close();
    QCOMPARE(site.run().waiting, QStringList {QStringLiteral("ron.data")});
    QVERIFY(site.isDelivered());
}

void tst_GateKilled::fullDisk_isMended_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<bool>("isSound");
    QTest::addColumn<int>("bytes");

    for (const bool isSound : {true, false}) {
        GateSite site;
        begin(&site, isSound);
        const QStringList steps = stepsOf(site.settings);
        for (const QString &step : steps) {
            for (const int bytes : {0, 500, 3000}) {
                QTest::addRow("%s: %s, %d bytes", isSound ? "passes" : "is refused",
                              qPrintable(step), bytes)
                    << step << isSound << bytes;
            }
        }
    }
}

void tst_GateKilled::fullDisk_isMended()
{
    QFETCH(QString, step);
    QFETCH(bool, isSound);
    QFETCH(int, bytes);
    GateSite site;
    const Days days = begin(&site, isSound);
    const int status = runInChild(site.settings, [&step, bytes](const char *reached) {
        if (step == QLatin1String(reached))
            refuseToWriteBeyond(static_cast<rlim_t>(bytes));
    });
    QVERIFY(WIFEXITED(status));
    checkNothingIsHalf(site, days, isSound);
    checkAllIsMended(&site, days, isSound);
}

void tst_GateKilled::fullDisk_isToldWithItsFolder_data()
{
    QTest::addColumn<QString>("step");
    QTest::addColumn<QString>("folder");
    const auto row = [](const char *step, const char *folder) {
        QTest::newRow(step) << QString::fromLatin1(step) << QString::fromLatin1(folder);
    };
    row("", "state"); // the lock
    row("take", "state/work");
    row("mend", "state/work");
    row("judge", "state/work");
    row("archive", "archive");
    row("prepare", "place");
    row("passing", "archive");
    row("passed", "archive");
    row("told", "archive");
}

/// Another one may be asked to make room.
void tst_GateKilled::fullDisk_isToldWithItsFolder()
{
    QFETCH(QString, step);
    QFETCH(QString, folder);
    GateSite site;
    begin(&site, true);
    int ends[2];
    QCOMPARE(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        if (step.isEmpty())
            refuseToWriteBeyond(0);
        Gate gate(site.settings);
        gate.setStepWatch([&step](const char *reached) {
            if (step == QLatin1String(reached))
                refuseToWriteBeyond(0);
        });
        GateResult result;
        const Failure failure = gate.run(&result);
        const QByteArray text = (failure.text + result.warnings.join(QLatin1Char('\n'))).toUtf8();
        const ssize_t written = ::write(ends[1], text.constData(),
                                        static_cast<size_t>(text.size()));
        ::_exit(written < 0 ? ExitInterrupted : failure.exitCode);
    }
    ::close(ends[1]);
    QFile told;
    QVERIFY(told.open(ends[0], QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    const QString text = QString::fromUtf8(told.readAll());
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY2(text.contains(site.path(folder)), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("File too large")), qPrintable(text));
    QCOMPARE(WEXITSTATUS(status), step == QLatin1String("told") ? ExitClean : ExitUsage);
}

/// Or the hook would run with every gate.
void tst_GateKilled::fullDisk_remembersThatItWasTold()
{
    const QTemporaryDir state;
    const QTemporaryDir told;
    const pid_t child = ::fork();
    if (child == 0) {
        refuseToWriteBeyond(0);
        const QString hook = QStringLiteral("mktemp -d '%1/XXXXXX'").arg(told.path());
        for (int run = 0; run < 2; ++run) {
            const Failure failure {ExitUsage, QStringLiteral("no space")};
            keepGateFailure(state.path(), failure);
            tellGateFailure(state.path(), QStringLiteral("sh -c \"%1\"").arg(hook), failure);
        }
        ::_exit(0);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QCOMPARE(QDir(told.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 1);
    QVERIFY(QFile::exists(state.filePath(QStringLiteral("failed"))));
    forgetGateFailure(state.path());
    QVERIFY(QDir(state.path()).isEmpty());
}

QTEST_GUILESS_MAIN(tst_GateKilled)
#include "tst_gatekilled.moc"
