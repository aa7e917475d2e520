// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Each kind of damage is refused for its own reason, and sound days of living companies never.
//
// Environment: TALVENHR_DAYS, how many sound days (default: 100).
#include "host/company/damage.h"
#include "host/company/exportwriter.h"
#include "support/gate/gatesite.h"

#include <QtTest>

#include <algorithm>
#include <memory>

class tst_GateDamage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void wholeFiles_areRefusedByDefault();
    void damage_isRefusedForItsOwnReason_data();
    void damage_isRefusedForItsOwnReason();
    void warnings_passAndAreReported();
    void fileCutAtATenth_isRefused_data();
    void fileCutAtATenth_isRefused();
    void yesterdaysFile_isRefused();
    void lastYearsFile_isRefused();
    void soundDays_areNeverRefused();

private:
    GateRecord decided(const QByteArray &content, const QString &name = QStringLiteral("ron.data"));

    std::unique_ptr<GateSite> site; ///< one good export has gone through
    QByteArray good;
    QByteArray today; ///< the sound export of the next day
};

namespace {

/// Nothing in the file shows these, and most do no harm: what is left is told by the database.
const QStringList unseen {QStringLiteral("comment-signs"),
                          QStringLiteral("double-quote"),
                          QStringLiteral("backtick"),
                          QStringLiteral("header-missing"),
                          QStringLiteral("blank-name"),
                          QStringLiteral("text-too-long"),
                          QStringLiteral("number-and-ordinal-exchanged")};

/// The reason for which a gate refuses what is owed this finding.
QString reasonFor(const QString &finding)
{
    return finding == QLatin1String("W-AGAINST-LOST") ? QStringLiteral("limit:lost") : finding;
}

/// Nobody has to ask for it.
bool isRefusedByDefault(const QString &finding)
{
    return finding.startsWith(QLatin1String("E-")) || standardRefusals().contains(finding)
        || reasonFor(finding) != finding;
}

bool hasFinding(const GateRecord &record, const QString &code)
{
    return std::any_of(record.findings.cbegin(), record.findings.cend(),
                       [&code](const FindingCount &found) { return found.code == code; });
}

} // namespace

void tst_GateDamage::initTestCase()
{
    site = std::make_unique<GateSite>();
    good = site->nextExport();
    site->deliver(good);
    QCOMPARE(site->run().decided.value(0).outcome, GateRecord::Passed);
    today = site->nextExport();
}

void tst_GateDamage::cleanupTestCase()
{
    site.reset();
}

/// Decided by the gate that has let the good one through.
GateRecord tst_GateDamage::decided(const QByteArray &content, const QString &name)
{
    site->deliver(content, name);
    return site->run().decided.value(0);
}

void tst_GateDamage::wholeFiles_areRefusedByDefault()
{
    for (const char *name :
         {"cut-after-one-tenth", "cut-after-nine-tenths", "cut-at-tenth", "cut-at-line-end",
          "block-of-another-file", "test-system", "files-joined", "header-in-middle",
          "columns-exchanged", "branch-missing", "supervisors-emptied", "balances-all-zero",
          "ends-all-set", "every-second-line-missing", "another-column",
          "header-of-another-release", "header-translated", "one-branch-for-all"})
        QVERIFY2(isRefusedByDefault(damaged(today, QLatin1String(name), 1).finding), name);
    int count = 0;
    const QStringList names = damageNames();
    for (const QString &name : names)
        count += isRefusedByDefault(damaged(today, name, 1).finding) ? 1 : 0;
    QVERIFY2(count >= 140, qPrintable(QString::number(count)));
}

void tst_GateDamage::damage_isRefusedForItsOwnReason_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = damageNames();
    for (const QString &name : names) {
        if (!unseen.contains(name))
            QTest::newRow(qPrintable(name)) << name;
    }
}

void tst_GateDamage::damage_isRefusedForItsOwnReason()
{
    QFETCH(QString, name);
    const DamagedExport hurt = damaged(today, name, 3);
    site->settings.judge.refuse = standardRefusals();
    if (!isRefusedByDefault(hurt.finding))
        site->settings.judge.refuse.append(hurt.finding);
    const GateRecord record = decided(hurt.text);
    site->settings.judge.refuse = standardRefusals();
    QCOMPARE(record.outcome, GateRecord::Refused);
    const QStringList codes = codesOf(record);
    QVERIFY2(codes.contains(reasonFor(hurt.finding)),
             qPrintable(hurt.finding + QStringLiteral(", but: ") + codes.join(QLatin1Char(' '))));
    QCOMPARE(site->inPlace(), good);
    QVERIFY(!site->isDelivered());
}

/// Day after day with another flaw, none of which shows in a comparison.
void tst_GateDamage::warnings_passAndAreReported()
{
    GateSite living(2);
    living.deliver(living.nextExport());
    QCOMPARE(living.run().decided.value(0).outcome, GateRecord::Passed);
    QStringList passed;
    const QStringList names = damageNames();
    for (const QString &name : names) {
        const DamagedExport hurt = damaged(exportText(living.company()), name, 5);
        if (unseen.contains(name) || isRefusedByDefault(hurt.finding)
            || passed.contains(hurt.finding))
            continue;
        living.deliver(hurt.text);
        const GateRecord record = living.run().decided.value(0);
        QVERIFY2(record.outcome == GateRecord::Passed,
                 qPrintable(name + QLatin1Char(' ') + codesOf(record).join(QLatin1Char(' '))));
        QVERIFY2(hasFinding(record, hurt.finding), qPrintable(name));
        QCOMPARE(living.read(), hurt.text);
        passed.append(hurt.finding);
        living.nextExport();
    }
    QVERIFY(passed.size() >= 10);
}

void tst_GateDamage::fileCutAtATenth_isRefused_data()
{
    QTest::addColumn<int>("tenths");
    for (int tenths = 0; tenths < 10; ++tenths)
        QTest::addRow("%d", tenths) << tenths;
}

/// Wherever that is, and at the end of the line before.
void tst_GateDamage::fileCutAtATenth_isRefused()
{
    QFETCH(int, tenths);
    const QByteArray cut = today.left(today.size() * tenths / 10);
    const QStringList reasons = codesOf(decided(cut));
    const QString expected = tenths == 0 ? QStringLiteral("E-FILE-NOTHING")
                                         : QStringLiteral("limit:lost");
    QVERIFY2(reasons.contains(expected), qPrintable(reasons.join(QLatin1Char(' '))));
    if (tenths == 0)
        return;
    const QByteArray whole = cut.left(cut.lastIndexOf('\n') + 1);
    const GateRecord atLineEnd = decided(whole);
    QCOMPARE(atLineEnd.outcome, GateRecord::Refused);
    QVERIFY(codesOf(atLineEnd).contains(expected));
    QCOMPARE(site->inPlace(), good);
}

void tst_GateDamage::yesterdaysFile_isRefused()
{
    GateSite dated;
    const QByteArray yesterday = dated.nextExport();
    const QString name = QStringLiteral("ron-20261121.data");
    dated.deliver(yesterday, name);
    QCOMPARE(dated.run().decided.value(0).outcome, GateRecord::Passed);
    const QByteArray now = dated.nextExport();
    dated.deliver(now, QStringLiteral("ron-20261122.data"));
    QCOMPARE(dated.run().decided.value(0).outcome, GateRecord::Passed);

    // The same bytes, whatever they are called; others, by the date in their name.
    dated.deliver(yesterday, QStringLiteral("ron-20261123.data"));
    QCOMPARE(codesOf(dated.run().decided.value(0)), QStringList {QStringLiteral("seen")});
    dated.deliver(QByteArray(yesterday).replace('\n', "\r\n"), name);
    QCOMPARE(codesOf(dated.run().decided.value(0)), QStringList {QStringLiteral("older")});
    QCOMPARE(dated.inPlace(), now);
}

/// One that this gate has never seen, copied anew.
void tst_GateDamage::lastYearsFile_isRefused()
{
    GateSite living;
    const QByteArray lastYear = living.nextExport();
    for (int day = 0; day < 364; ++day)
        living.nextExport();
    const QByteArray now = living.nextExport();
    living.deliver(now);
    QCOMPARE(living.run().decided.value(0).outcome, GateRecord::Passed);
    living.deliver(lastYear);
    const QStringList reasons = codesOf(living.run().decided.value(0));
    QVERIFY2(reasons.contains(QStringLiteral("limit:lost")),
             qPrintable(reasons.join(QLatin1Char(' '))));
    QCOMPARE(living.inPlace(), now);
}

/// A day on which nothing happens to anybody gives the file of the day before, which is refused:
/// the gate cannot know that it is a new one.
void tst_GateDamage::soundDays_areNeverRefused()
{
    const int days = qEnvironmentVariableIsSet("TALVENHR_DAYS")
        ? qEnvironmentVariableIntValue("TALVENHR_DAYS")
        : 100;
    const int daysOfACompany = 20;
    for (int day = 0; day < days; day += daysOfACompany) {
        const quint32 seed = 100 + static_cast<quint32>(day);
        GateSite living(seed);
        QByteArray before;
        for (int i = 0; i < daysOfACompany; ++i) {
            const QByteArray content = living.nextExport();
            living.deliver(content);
            const GateRecord record = living.run().decided.value(0);
            const QStringList expected = content == before ? QStringList {QStringLiteral("seen")}
                                                           : QStringList();
            QVERIFY2(codesOf(record) == expected,
                     qPrintable(QStringLiteral("seed %1, day %2: %3")
                                    .arg(seed)
                                    .arg(i)
                                    .arg(codesOf(record).join(QLatin1Char(' ')))));
            if (content != before)
                QCOMPARE(living.read(), content);
            before = content;
        }
    }
}

QTEST_GUILESS_MAIN(tst_GateDamage)
#include "tst_gatedamage.moc"
