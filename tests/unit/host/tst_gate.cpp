// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The road of an export: what goes through, what is refused, and what lies where afterwards.
#include "support/gate/gatesite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

namespace {

const Release byHand {QStringLiteral("anna"), QStringLiteral("the branch is closed"), {}};

} // namespace

class tst_Gate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingDelivered_nothingHappens();
    void firstExport_goesThrough();
    void firstExport_isHeldWhereThatIsWished();
    void nextDay_isComparedWithTheLastGoodOne();
    void cutOffExport_isRefusedForItsLines();
    void errorInALine_isRefused();
    void refuseWords_decideWhatRefuses();
    void severalDeliveries_newestGoesThrough();
    void severalDeliveries_olderGoesThroughWhereTheNewestIsDamaged();
    void deliveryThatCannotBeRead_stays();
    void unwholeDelivery_waits_data();
    void unwholeDelivery_waits();
    void deliveryWrittenAnew_isNotRemoved();
    void linkThatIsDelivered_isRemovedAndNotItsFile();
    void anotherOneInTheLastMoment_stays();
    void killedWhileItRemoved_nothingIsLost_data();
    void killedWhileItRemoved_nothingIsLost();
};

void tst_Gate::nothingDelivered_nothingHappens()
{
    GateSite site;
    const GateResult result = site.run();
    QVERIFY(result.decided.isEmpty());
    QVERIFY(!result.hasRefused());
    QVERIFY(site.inPlace().isNull());
}

void tst_Gate::firstExport_goesThrough()
{
    GateSite site;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const GateResult result = site.run();
    QCOMPARE(result.decided.size(), 1);
    const GateRecord &record = result.decided.constFirst();
    QCOMPARE(record.outcome, GateRecord::Passed);
    QCOMPARE(record.comparedWith, QString());
    QCOMPARE(record.fates.lines(), content.count('\n'));
    QCOMPARE(site.inPlace(), content);
    QCOMPARE(site.archived(record), content);
    QVERIFY(!site.isDelivered());
    QCOMPARE(endingsOf(record, site.settings.archive),
             (QStringList {QStringLiteral(".check.html"), QStringLiteral(".check.json"),
                           QStringLiteral(".export.gz"), QStringLiteral(".gate.json")}));
}

void tst_Gate::firstExport_isHeldWhereThatIsWished()
{
    GateSite site;
    site.settings.holdsFirst = true;
    const QByteArray content = site.nextExport();
    site.deliver(content);
    const GateRecord held = site.run().decided.value(0);
    QCOMPARE(held.outcome, GateRecord::Refused);
    QCOMPARE(codesOf(held), QStringList {QStringLiteral("hold")});
    QVERIFY(site.inPlace().isNull());
    QCOMPARE(site.release({held.name, byHand}).decided.value(0).outcome, GateRecord::Passed);
    QCOMPARE(site.inPlace(), content);
}

void tst_Gate::nextDay_isComparedWithTheLastGoodOne()
{
    GateSite site;
    site.deliver(site.nextExport());
    const GateRecord first = site.run().decided.value(0);
    site.read();
    site.deliver(site.nextExport());
    const GateRecord second = site.run().decided.value(0);
    QCOMPARE(second.outcome, GateRecord::Passed);
    QCOMPARE(second.comparedWith, first.name);
    QCOMPARE(second.replaced, QString());
    QVERIFY(
        std::any_of(second.limits.cbegin(), second.limits.cend(), [](const LimitOutcome &outcome) {
            return outcome.limit.kind == QLatin1String("lost");
        }));
}

void tst_Gate::cutOffExport_isRefusedForItsLines()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    site.deliver(cutOff(site.nextExport(), 80));
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(record.outcome, GateRecord::Refused);
    QVERIFY(record.lost > 5);
    QVERIFY(codesOf(record).contains(QStringLiteral("limit:lost")));
}

void tst_Gate::errorInALine_isRefused()
{
    GateSite site;
    site.deliver(damaged(site.nextExport()));
    const GateRecord record = site.run().decided.value(0);
    QCOMPARE(record.outcome, GateRecord::Refused);
    QCOMPARE(record.reasons.size(), 1);
    QVERIFY2(record.reasons.constFirst().code.startsWith(QLatin1String("E-LINE")),
             qPrintable(record.reasons.constFirst().code));
    QVERIFY(!record.reasons.constFirst().remedy.isEmpty());
}

void tst_Gate::refuseWords_decideWhatRefuses()
{
    GateSite site;
    // Two people of one number: the plugin takes them for one.
    QByteArray content = site.nextExport();
    const QByteArrayList lines = content.split('\n');
    content += lines.at(1) + '\n';
    site.settings.judge.refuse = QStringList();
    site.deliver(content);
    const GateRecord passed = site.run().decided.value(0);
    QCOMPARE(passed.outcome, GateRecord::Passed);
    QVERIFY(!passed.findings.isEmpty());
    const QString code = passed.findings.constFirst().code;
    site.settings.judge.refuse = QStringList {code};
    content += lines.at(2) + '\n';
    site.deliver(content);
    const GateRecord refused = site.run().decided.value(0);
    QCOMPARE(refused.outcome, GateRecord::Refused);
    QCOMPARE(codesOf(refused), QStringList {code});
    QVERIFY(checkRefusals({QStringLiteral("warnin")}).text.contains(QStringLiteral("'warning'")));
    QVERIFY(!checkRefusals(standardRefusals()));
}

void tst_Gate::severalDeliveries_newestGoesThrough()
{
    GateSite site;
    site.deliver(site.nextExport(), QStringLiteral("one"));
    const QByteArray newest = site.nextExport();
    site.deliver(newest, QStringLiteral("two"));
    const GateResult result = site.run();
    QCOMPARE(result.decided.size(), 2);
    QCOMPARE(result.decided.at(0).outcome, GateRecord::Passed);
    QCOMPARE(result.decided.at(1).outcome, GateRecord::Superseded);
    QVERIFY(!result.hasRefused());
    QCOMPARE(site.inPlace(), newest);
    QVERIFY(!site.isDelivered(QStringLiteral("one")));
    QVERIFY(!site.archived(result.decided.at(1)).isEmpty());
}

void tst_Gate::severalDeliveries_olderGoesThroughWhereTheNewestIsDamaged()
{
    GateSite site;
    site.deliver(site.nextExport());
    site.run();
    const QByteArray sound = site.nextExport();
    site.deliver(sound, QStringLiteral("one"));
    site.deliver(cutOff(site.nextExport(), 30), QStringLiteral("two"));
    const GateResult result = site.run();
    QCOMPARE(result.decided.at(0).outcome, GateRecord::Refused);
    QCOMPARE(result.decided.at(1).outcome, GateRecord::Passed);
    QVERIFY(result.hasRefused());
    QCOMPARE(site.inPlace(), sound);
}

/// It opens, and has a size, but reading it fails.
void tst_Gate::deliveryThatCannotBeRead_stays()
{
    const QString broken = QStringLiteral("/sys/class/net/lo/speed");
    QFile file(broken);
    if (!file.open(QIODevice::ReadOnly) || file.size() == 0 || !file.read(1).isEmpty())
        QSKIP("this machine has no such file", );
    GateSite site;
    QVERIFY(QFile::link(broken,
                        QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data"))));
    Failure failure;
    site.run(&failure);
    QVERIFY2(failure.text.contains(QStringLiteral("cannot read '")), qPrintable(failure.text));
    QVERIFY(site.isDelivered());
    QVERIFY(site.records().isEmpty());
}

void tst_Gate::unwholeDelivery_waits_data()
{
    QTest::addColumn<int>("complete");
    QTest::addColumn<QString>("name");

    QTest::newRow("a name of a copying program")
        << int(Completeness::Rename) << QStringLiteral("ron.data.part");
    QTest::newRow("hidden") << int(Completeness::Rename) << QStringLiteral(".ron.data.x7");
    QTest::newRow("without its sign") << int(Completeness::Done) << QStringLiteral("ron.data");
    QTest::newRow("just written") << int(Completeness::Still) << QStringLiteral("ron.data");
}

void tst_Gate::unwholeDelivery_waits()
{
    QFETCH(int, complete);
    QFETCH(QString, name);
    GateSite site;
    site.settings.incoming.complete = static_cast<Completeness>(complete);
    site.settings.incoming.stillFor = 3600;
    site.deliver(site.nextExport(), name);
    QVERIFY(site.run().decided.isEmpty());
    QVERIFY(site.isDelivered(name));
    QVERIFY(site.inPlace().isNull());
    site.settings.incoming.stillFor = 0;
    QFile done(QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data.done")));
    QVERIFY(done.open(QIODevice::WriteOnly));
    if (name != QLatin1String("ron.data"))
        return;
    QCOMPARE(site.run().decided.size(), 1);
    QVERIFY(!site.isDelivered(name));
    QCOMPARE(done.exists(),
             complete != int(Completeness::Done) && complete != int(Completeness::Still));
}

void tst_Gate::linkThatIsDelivered_isRemovedAndNotItsFile()
{
    GateSite site;
    site.deliver(site.nextExport(), QStringLiteral("../real.data"));
    const QString link = QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data"));
    QVERIFY(QFile::link(QStringLiteral("../real.data"), link));
    QCOMPARE(site.run().decided.value(0).outcome, GateRecord::Passed);
    QVERIFY(!QFileInfo(link).isSymLink());
    QVERIFY(QFileInfo::exists(site.path(QStringLiteral("real.data"))));
}

/// Between the last look and the removal.
void tst_Gate::anotherOneInTheLastMoment_stays()
{
    GateSite site;
    site.deliver(site.nextExport());
    const Delivery old = deliveryOf(
        QDir(site.settings.incoming.folder).filePath(QStringLiteral("ron.data")));
    const QByteArray newer = site.nextExport() + '\n';
    site.deliver(newer);
    QVERIFY(!removeDelivery(old));
    QFile file(old.path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), newer);
    QCOMPARE(QDir(site.settings.incoming.folder)
                 .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::Hidden),
             QStringList {QStringLiteral("ron.data")});
}

void tst_Gate::killedWhileItRemoved_nothingIsLost_data()
{
    QTest::addColumn<bool>("isDecided");
    QTest::newRow("the one decided on") << true;
    QTest::newRow("another one that had come") << false;
}

/// What a gate that was killed has left in its hidden folder.
void tst_Gate::killedWhileItRemoved_nothingIsLost()
{
    QFETCH(bool, isDecided);
    GateSite site;
    const QDir incoming(site.settings.incoming.folder);
    const QByteArray first = site.nextExport();
    const QByteArray next = site.nextExport();
    const QString taken = QStringLiteral(".talvenhr-taken/ron.data");
    site.deliver(first);
    {
        Gate gate(site.settings);
        gate.setStepWatch([&](const char *step) {
            if (qstrcmp(step, "remove") == 0 && incoming.mkdir(QStringLiteral(".talvenhr-taken")))
                QFile::rename(incoming.filePath(QStringLiteral("ron.data")),
                              incoming.filePath(taken));
        });
        GateResult result;
        QVERIFY(!gate.run(&result));
    }
    QVERIFY(QFileInfo::exists(incoming.filePath(taken)));
    if (!isDecided)
        site.deliver(next, taken);
    const GateResult result = site.run();
    QCOMPARE(result.decided.size(), isDecided ? 0 : 1);
    QCOMPARE(site.inPlace(), isDecided ? first : next);
    QVERIFY(incoming.isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
}

void tst_Gate::deliveryWrittenAnew_isNotRemoved()
{
    GateSite site;
    site.deliver(site.nextExport());
    const QByteArray newer = site.nextExport();
    Gate gate(site.settings);
    gate.setStepWatch([&site, &newer](const char *step) {
        if (qstrcmp(step, "archive") == 0)
            site.deliver(newer);
    });
    GateResult result;
    QVERIFY(!gate.run(&result));
    QCOMPARE(result.decided.size(), 1);
    QVERIFY(site.isDelivered());
}

QTEST_GUILESS_MAIN(tst_Gate)
#include "tst_gate.moc"
