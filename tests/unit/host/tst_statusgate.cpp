// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a status tells of the gate itself.
#include "host/report/jsonreport.h"
#include "host/report/textreport.h"
#include "host/status/checkline.h"
#include "host/status/folderstatus.h"
#include "host/status/metrics.h"
#include "host/status/statusreport.h"
#include "support/status/gatefolder.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSysInfo>
#include <QtTest>

class tst_StatusGate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void failedRun_isCriticalWhereItHoldsBack();
    void damagedFailure_isOneStill();
    void stoppedGate_isAWarningWithoutRecords();
    void gateAtWork_isNotStopped();
    void gateThatIsDead_isStopped();
    void noDeliveryAtAll_isLate();
    void deliveryThatWaits_isAWarning();
    void refusal_hasTheRemedyOfItsReason();
    void gateThatHasNotRun_missesNoFolders();
    void recordsThatCannotBeSeen_areNotNone();
    void nobodyWaits_onlyAfterAPass();
};

namespace {

QStringList concernTexts(const Status &status)
{
    QStringList texts;
    const QVector<Concern> concerns = concernsOf(status);
    for (const Concern &concern : concerns)
        texts.append(levelName(concern.level) + QLatin1Char(' ') + concern.text);
    return texts;
}

QString pageOf(const Status &status)
{
    return textReport(statusPage(status, PersonalTexts::Shown), 200);
}

void makeWork(const GateFolder &folder)
{
    QVERIFY(QDir(folder.path(QStringLiteral("state"))).mkdir(QStringLiteral("work")));
    folder.age(QStringLiteral("state/work"), 2);
}

} // namespace

void tst_StatusGate::failedRun_isCriticalWhereItHoldsBack()
{
    const GateFolder folder;
    folder.keep(folder.record(5, "a"));
    QCOMPARE(concernTexts(folder.status()), QStringList());
    QVERIFY(metricsText(folder.status()).contains("\ntalvenhr_gate_failed 0\n"));

    folder.write(QStringLiteral("incoming/ron.data"), "b");
    folder.write(QStringLiteral("incoming/ron.data.done"), "");
    folder.write(QStringLiteral("state/failed"),
                 "2026-11-22T02:00:07Z\nthe database \033[2J does not answer\n");
    const Status status = folder.status();
    const QString time = QDateTime({2026, 11, 22}, {2, 0, 7}, Qt::UTC)
                             .toLocalTime()
                             .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    const QString text = QStringLiteral("the gate failed on %1: the database \\x1b[2J does not "
                                        "answer; deliveries that wait: 1")
                             .arg(time);
    QCOMPARE(concernTexts(status), QStringList {QStringLiteral("CRITICAL ") + text});
    QVERIFY(checkLine(status).startsWith(QStringLiteral("TALVENHR CRITICAL - ") + text));
    QVERIFY2(pageOf(status).contains(text
                                     + QStringLiteral(". Do: mend what it names, and run "
                                                      "'talvenhr gate' again")),
             qPrintable(pageOf(status)));
    QVERIFY(metricsText(status).contains("\ntalvenhr_gate_failed 1\n"));
    QVERIFY(metricsText(status).contains("\ntalvenhr_deliveries_waiting 1\n"));
    const QJsonObject gate = QJsonDocument::fromJson(
                                 jsonReport(statusDocument(status, PersonalTexts::Shown)))
                                 .object()
                                 .value(QStringLiteral("gate"))
                                 .toObject();
    QCOMPARE(gate.value(QStringLiteral("failed")).toString(),
             QStringLiteral("2026-11-22T02:00:07Z"));
    QCOMPARE(gate.value(QStringLiteral("deliveries")).toInt(), 1);
    QVERIFY(gate.value(QStringLiteral("stopped")).isNull());

    // With nothing that waits it keeps no export from the plugin, but for one that cannot come.
    QVERIFY(QFile::remove(folder.path(QStringLiteral("incoming/ron.data"))));
    QCOMPARE(levelOf(concernsOf(folder.status())), Level::Warning);
    QVERIFY(QDir(folder.path(QStringLiteral("incoming"))).removeRecursively());
    QCOMPARE(levelOf(concernsOf(folder.status())), Level::Critical);
}

void tst_StatusGate::damagedFailure_isOneStill()
{
    const GateFolder folder;
    folder.write(QStringLiteral("state/failed"), "", 3);
    const Status status = folder.status();
    QCOMPARE(status.gate.failed, folder.now().addSecs(-3 * 3600));
    QCOMPARE(status.gate.failure, QStringLiteral("it gives no reason"));
    QCOMPARE(levelOf(concernsOf(status)), Level::Warning);
}

void tst_StatusGate::stoppedGate_isAWarningWithoutRecords()
{
    const GateFolder folder;
    makeWork(folder);
    QCOMPARE(concernTexts(folder.status()).constFirst(),
             QStringLiteral("WARNING the gate was stopped midway, 2 h 0 min ago; deliveries that "
                            "wait: 0"));
    QVERIFY(metricsText(folder.status()).contains("\ntalvenhr_gate_stopped 1\n"));

    // One that had begun to put an export in place is told once.
    folder.keep(folder.record(1, "a", GateRecord::Passing));
    const QStringList texts = concernTexts(folder.status());
    QCOMPARE(texts.filter(QStringLiteral("was stopped")).size(), 1);
    QVERIFY(texts.constFirst().contains(QStringLiteral("put an export in place")));
}

void tst_StatusGate::gateAtWork_isNotStopped()
{
    const GateFolder folder;
    folder.keep(folder.record(5, "a"));
    makeWork(folder);
    QLockFile lock(folder.path(QStringLiteral("state/lock")));
    QVERIFY(lock.tryLock(0));
    QVERIFY(folder.status().gate.isAtWork);
    QCOMPARE(concernTexts(folder.status()), QStringList());
    lock.unlock();
    QVERIFY(!folder.status().gate.isAtWork);
    QCOMPARE(concernTexts(folder.status()).size(), 1);
}

void tst_StatusGate::gateThatIsDead_isStopped()
{
    const GateFolder folder;
    makeWork(folder);
    const QByteArray here = QSysInfo::machineHostName().toUtf8();
    // No process has such a number.
    folder.write(QStringLiteral("state/lock"), "99999999\ntalvenhr\n" + here + '\n');
    QVERIFY(folder.status().gate.stopped.isValid());
    // Another program has the number by now.
    const QByteArray own = QByteArray::number(QCoreApplication::applicationPid());
    folder.write(QStringLiteral("state/lock"), own + "\ntalvenhr\n" + here + '\n');
    QVERIFY(folder.status().gate.stopped.isValid());
    // Nobody here knows.
    folder.write(QStringLiteral("state/lock"), "99999999\ntalvenhr\nelsewhere.invalid\n");
    QVERIFY(folder.status().gate.isAtWork);
}

/// As long as none has come, the gate's first run counts.
void tst_StatusGate::noDeliveryAtAll_isLate()
{
    const GateFolder folder;
    StatusSources sources = folder.sources();
    sources.lateAfter = 26 * 3600;
    QVERIFY(!readStatus(sources, folder.now()).isLate);
    const auto begin = [&folder](int hoursAgo) {
        const QDateTime time = folder.now().addSecs(-3600 * hoursAgo);
        folder.write(QStringLiteral("state/begun"), time.toString(Qt::ISODate).toUtf8() + '\n');
    };
    begin(25);
    QVERIFY(!readStatus(sources, folder.now()).isLate);
    begin(27);
    const Status status = readStatus(sources, folder.now());
    QVERIFY(status.isLate);
    QCOMPARE(concernTexts(status).constFirst(),
             QStringLiteral("CRITICAL no export has come yet, and one is late"));
    folder.keep(folder.record(1, "a"));
    QVERIFY(!readStatus(sources, folder.now()).isLate);
}

void tst_StatusGate::deliveryThatWaits_isAWarning()
{
    const GateFolder folder;
    folder.keep(folder.record(5, "a"));
    folder.write(QStringLiteral("incoming/ron.data"), "b", 100);
    folder.write(QStringLiteral("incoming/ron.data.part"), "b", 100);
    // Its last change counts, which nobody can set back.
    const QDateTime delivered = QFileInfo(folder.path(QStringLiteral("incoming/ron.data")))
                                    .metadataChangeTime();
    const auto after = [&folder, &delivered](qint64 hours, qint64 lateAfter) {
        StatusSources sources = folder.sources();
        sources.lateAfter = lateAfter * 3600;
        return concernTexts(readStatus(sources, delivered.addSecs(3600 * hours + 60)))
            .filter(QStringLiteral("WARNING deliveries that wait"));
    };
    QCOMPARE(after(23, 0), QStringList());
    QCOMPARE(after(24, 0),
             QStringList {QStringLiteral("WARNING deliveries that wait for the gate: 1, the oldest "
                                         "for 24 h 1 min")});
    QCOMPARE(after(24, 26), QStringList());
    QCOMPARE(after(3, 3).size(), 1);
    StatusSources others = folder.sources();
    others.pattern = QStringLiteral("*.csv");
    QCOMPARE(readStatus(others, folder.now()).gate.deliveries, 0);
}

void tst_StatusGate::refusal_hasTheRemedyOfItsReason()
{
    const GateFolder folder;
    GateRecord record = folder.record(2, "b", GateRecord::Refused);
    record.reasons = {{QStringLiteral("E-CODING"), QStringLiteral("it is not UTF-8"),
                       QStringLiteral("write it as UTF-8")}};
    const auto remedy = [&folder, &record] {
        folder.keep(record);
        return concernsOf(folder.status()).constFirst().remedy;
    };
    const QString release = QStringLiteral("see %1.txt in the folder of refused exports; 'talvenhr "
                                           "gate --release %1 --reason TEXT' lets it through as it "
                                           "is")
                                .arg(record.name);
    QCOMPARE(remedy(), QStringLiteral("write it as UTF-8; ") + release);

    record.reasons = {
        {QStringLiteral("limit:ended"), QStringLiteral("x"), QStringLiteral("look at them")},
        {QStringLiteral("limit:leave-days"), QStringLiteral("y"), QString()}};
    record.limits = {{{QStringLiteral("ended"), 10, false}, 10, 31},
                     {{QStringLiteral("added"), 10, false}, 10, 10},
                     {{QStringLiteral("leave-days"), 10, false}, 10, 10.25}};
    const QString raising = QStringLiteral("'talvenhr gate --allow ended=31 --allow leave-days=11 "
                                           "%1 --reason TEXT' allows that for this once")
                                .arg(record.name);
    const QString both = remedy();
    QVERIFY2(both.startsWith(QStringLiteral("look at them; see ")), qPrintable(both));
    QVERIFY2(both.contains(raising), qPrintable(both));
    QVERIFY(both.indexOf(raising) < both.indexOf(QStringLiteral("--release")));

    // A limit alone would not let it through.
    record.reasons.append({QStringLiteral("E-CODING"), QStringLiteral("z"), QString()});
    QVERIFY(!remedy().contains(QStringLiteral("--allow")));
    // People would be missing.
    record.reasons.append({QStringLiteral("E-FILE-CUT"), QStringLiteral("z"), QString()});
    QVERIFY(!remedy().contains(QStringLiteral("--release")));
}

void tst_StatusGate::gateThatHasNotRun_missesNoFolders()
{
    const GateFolder folder;
    for (const char *name : {"archive", "refused", "state"})
        QVERIFY(QDir(folder.path(QString())).rmdir(QLatin1String(name)));
    folder.write(QStringLiteral("incoming/ron.data"), "b");
    const QStringList one {QStringLiteral("UNKNOWN the gate has decided on nothing yet; "
                                          "deliveries that wait: 1")};
    QCOMPARE(concernTexts(folder.status()), one);
    QVERIFY(!pageOf(folder.status()).contains(QStringLiteral("name the folders")));

    // One that is gone later is missed.
    QVERIFY(QDir(folder.path(QString())).mkdir(QStringLiteral("archive")));
    QVERIFY(concernTexts(folder.status())
                .contains(QStringLiteral("UNKNOWN folder '%1': it is not there")
                              .arg(folder.path(QStringLiteral("refused")))));

    StatusSources none;
    none.place = folder.place();
    QCOMPARE(concernTexts(readStatus(none, folder.now())),
             QStringList {QStringLiteral("UNKNOWN nothing is known of any export or pass")});
}

void tst_StatusGate::recordsThatCannotBeSeen_areNotNone()
{
    const GateFolder folder;
    QVERIFY(folder.status().gate.isNew);
    folder.write(QStringLiteral("archive/1.gate.json"), "{");
    const QStringList texts = concernTexts(folder.status());
    QCOMPARE(texts.size(), 2);
    QCOMPARE(texts.constLast(), QStringLiteral("UNKNOWN nothing is known of any export or pass"));
}

void tst_StatusGate::nobodyWaits_onlyAfterAPass()
{
    const GateFolder folder;
    const QString unknown = QStringLiteral("Waiting      unknown\n");
    QVERIFY2(pageOf(folder.status()).contains(unknown), qPrintable(pageOf(folder.status())));
    folder.keep(folder.record(5, "a"));
    QVERIFY2(pageOf(folder.status()).contains(QStringLiteral("Waiting      nobody\n")),
             qPrintable(pageOf(folder.status())));
}

QTEST_GUILESS_MAIN(tst_StatusGate)
#include "tst_statusgate.moc"
