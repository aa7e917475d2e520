// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the gate tells people about a refusal, and which ways on it names.
#include "host/gate/exportjudge.h"
#include "host/gate/gatetexts.h"

#include <QtTest>

namespace {

const QString raised = QStringLiteral("  talvenhr gate --allow ended=31 --allow leave-days=11 "
                                      "20261122T124002Z-0123456789ab --reason \"why\"\n");
const QString released = QStringLiteral(
    "  talvenhr gate --release 20261122T124002Z-0123456789ab --reason \"why\"\n");

/// Refused for two limits.
GateRecord refusal()
{
    GateRecord record;
    record.name = QStringLiteral("20261122T124002Z-0123456789ab");
    record.exported.name = QStringLiteral("ron.data");
    record.when = QDateTime(QDate(2026, 11, 22), QTime(12, 40, 2), Qt::UTC);
    record.fileTime = record.when.addSecs(-60);
    record.reasons = {{QStringLiteral("limit:ended"), QStringLiteral("x"), QString()},
                      {QStringLiteral("limit:leave-days"), QStringLiteral("y"), QString()}};
    record.limits = {{{QStringLiteral("ended"), 10, false}, 10, 31},
                     {{QStringLiteral("added"), 10, false}, 10, 10},
                     {{QStringLiteral("leave-days"), 10, false}, 10, 10.25}};
    return record;
}

QString textOf(const GateRecord &record, const GateRecord *since = nullptr)
{
    return refusalText(record, QStringLiteral("/none"), since);
}

} // namespace

class tst_GateTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void limitsAlone_areRaisedFirst();
    void differences_areAllowedByTheirCode();
    void otherReasons_takeARelease();
    void exportThatMissesPeople_hasNoWayOn_data();
    void exportThatMissesPeople_hasNoWayOn();
    void nothingNew_saysThatAllIsWell();
    void comparison_isNamedWithItsTime();
    void releasedSince_isNoMeasure();
};

void tst_GateTexts::limitsAlone_areRaisedFirst()
{
    const QString text = textOf(refusal());
    QVERIFY2(text.contains(raised), qPrintable(text));
    QVERIFY2(text.endsWith(released), qPrintable(text));
    QVERIFY(!text.contains(QStringLiteral("compared with the last good export")));
}

void tst_GateTexts::differences_areAllowedByTheirCode()
{
    GateRecord record = refusal();
    record.reasons = {{QStringLiteral("W-AGAINST-EMPTY"), QStringLiteral("no titles"), QString()}};
    record.limits.clear();
    QCOMPARE(allowOptions(record), QStringLiteral(" --allow W-AGAINST-EMPTY"));
    QCOMPARE(decisionLine(record, QString()),
             QStringLiteral("refused: ron.data (%1): no titles; if that is right: talvenhr gate "
                            "--allow W-AGAINST-EMPTY %1 --reason \"why\"")
                 .arg(record.name));
    for (const char *code : {"W-AGAINST-NONE", "E-CODING", "error", ""})
        QVERIFY2(!isOfComparison(QString::fromLatin1(code)), code);
}

void tst_GateTexts::otherReasons_takeARelease()
{
    GateRecord record = refusal();
    record.reasons.append({QStringLiteral("E-CODING"), QStringLiteral("z"), QString()});
    QVERIFY(!textOf(record).contains(QStringLiteral("--allow")));
    QVERIFY(textOf(record).endsWith(released));
}

void tst_GateTexts::exportThatMissesPeople_hasNoWayOn_data()
{
    QTest::addColumn<QString>("code");
    QTest::newRow("cut off") << QStringLiteral("E-FILE-CUT");
    QTest::newRow("no usable line") << QStringLiteral("E-FILE-NOTHING");
}

void tst_GateTexts::exportThatMissesPeople_hasNoWayOn()
{
    QFETCH(QString, code);
    GateRecord record = refusal();
    record.reasons.append({code, QStringLiteral("z"), QString()});
    const QString text = textOf(record);
    QVERIFY2(!text.contains(QStringLiteral("--release")), qPrintable(text));
    QVERIFY(!text.contains(QStringLiteral("--allow")));
    QVERIFY(text.contains(QStringLiteral("Ask for a whole export")));
}

void tst_GateTexts::nothingNew_saysThatAllIsWell()
{
    GateRecord record = refusal();
    record.isNothingNew = true;
    record.reasons = {{QStringLiteral("seen"), QStringLiteral("the same bytes"), QString()}};
    QCOMPARE(decisionLine(record, QString()),
             QStringLiteral("nothing new: ron.data (%1): the same bytes").arg(record.name));
    const QString text = textOf(record);
    QVERIFY2(
        text.startsWith(QStringLiteral("The export 'ron.data' of 2026-11-22T13:39:02+01:00 brought "
                                       "nothing new on 2026-11-22T13:40:02+01:00. ")),
        qPrintable(text));
    QVERIFY2(text.endsWith(QStringLiteral("To have the plugin read it once more:\n") + released),
             qPrintable(text));
    record.isNothingNew = false;
    QVERIFY(decisionLine(record, QString()).startsWith(QStringLiteral("refused: ")));
}

void tst_GateTexts::comparison_isNamedWithItsTime()
{
    GateRecord record = refusal();
    record.comparedWith = QStringLiteral("20261121T124002Z-ba9876543210");
    record.comparedWhen = record.when.addDays(-1);
    const QString text = textOf(record);
    QVERIFY2(text.contains(QStringLiteral("compared with the last good export, which went through "
                                          "on 2026-11-21T13:40:02+01:00 "
                                          "(20261121T124002Z-ba9876543210).")),
             qPrintable(text));
    QVERIFY(!text.contains(QStringLiteral("no measure")));
}

void tst_GateTexts::releasedSince_isNoMeasure()
{
    GateRecord record = refusal();
    record.comparedWith = QStringLiteral("20261120T124002Z-ba9876543210");
    record.comparedWhen = record.when.addDays(-2);
    GateRecord since;
    since.name = QStringLiteral("20261121T124002Z-111111111111");
    since.when = record.when.addDays(-1);
    since.release = Release {QStringLiteral("anna"), QStringLiteral("payroll"), {}};
    const QString text = textOf(record, &since);
    QVERIFY2(
        text.contains(QStringLiteral("on 2026-11-21T13:40:02+01:00 (20261121T124002Z-111111111111),"
                                     " is no measure: anna had let it through as it was, with "
                                     "the reason \"payroll\".")),
        qPrintable(text));
}

QTEST_GUILESS_MAIN(tst_GateTexts)
#include "tst_gatetexts.moc"
