// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What two passes must have in common to be the same plan.
#include "host/changes/planhash.h"
#include "support/passchanges.h"

#include <QtTest>

namespace {

/// What a pass does for somebody new, who gets this uid at this moment.
Snapshot afterHiring(int uid, int moment, int notice, int gid = 11)
{
    const auto row = [=](const char *text) {
        return QStringList(QString::fromUtf8(text).arg(uid).arg(moment));
    };
    return SnapshotBuilder()
        .with(QStringLiteral("brape: uid|bid|since"), row("%1|5|%2"))
        .with(QStringLiteral("groups_plan: uid|since|gid"),
              {QStringLiteral("%1|202611|%2").arg(uid).arg(gid)})
        .with(QStringLiteral("people_term: uid|tid"),
              {QString::number(uid) + QStringLiteral("|3"),
               QString::number(uid) + QStringLiteral("|4")})
        .with(QStringLiteral("term_sync: id|tid|ref_col|ref_id|created"),
              {QStringLiteral("%1|3|uid|%2|%3").arg(notice).arg(uid).arg(moment),
               QStringLiteral("%1|4|uid|%2|%3").arg(notice + 1).arg(uid).arg(moment)})
        .with(QStringLiteral("people: uid|pid|pamId|name|surname|status|created|calc"),
              {QStringLiteral("%1|70011|7001.1|Iva|Nová|1|%2|%2").arg(uid).arg(moment)});
}

Snapshot beforeHiring()
{
    return SnapshotBuilder().with("people: uid|pid|pamId|name|surname|status|created|calc", {});
}

QString hashOf(const Snapshot &before, const Snapshot &after)
{
    return changesOf(before, after).plan.change;
}

} // namespace

class tst_PlanHash : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plan_leavesOutIdsAndMoments();
    void plan_seesAllElse_data();
    void plan_seesAllElse();
    void plan_tellsInWhomTwoPassesDiffer();
    void plan_hashesWhatWasRead();
    void plan_tellsWhatWasReadOtherwise();
    void state_isThatOfAllRows();
};

void tst_PlanHash::plan_leavesOutIdsAndMoments()
{
    const QString hash = hashOf(beforeHiring(), afterHiring(7, 100, 1));
    QCOMPARE(hash.size(), 64);
    QCOMPARE(hashOf(beforeHiring(), afterHiring(8, 200, 50)), hash);
    QVERIFY(hashOf(beforeHiring(), afterHiring(7, 100, 1, 12)) != hash);
    // The order in which the server numbers what is new is no part of it.
    const char *const queue = "term_sync: id|tid|ref_col|ref_id|created";
    QCOMPARE(hashOf(onePerson(), onePerson().with(queue, {"1|3|uid|1|10", "2|4|uid|1|10"})),
             hashOf(onePerson(), onePerson().with(queue, {"6|4|uid|1|20", "7|3|uid|1|20"})));
    // A row that was only written again does nothing.
    const char *const stamped = "people: uid|pid|pamId|status|edited";
    QCOMPARE(hashOf(SnapshotBuilder().with(stamped, {"1|11|1.1|1|5"}),
                    SnapshotBuilder().with(stamped, {"1|11|1.1|1|6"})),
             hashOf(Snapshot(), Snapshot()));
}

void tst_PlanHash::plan_seesAllElse_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("one");
    QTest::addColumn<QString>("other");
    const auto row = [](const char *name, const char *table, const char *one, const char *other) {
        QTest::newRow(name) << QString::fromLatin1(table) << QString::fromUtf8(one)
                            << QString::fromUtf8(other);
    };
    row("another cell", "brape: bid|uid", "5|1", "6|1");
    row("another person", "brape: bid|uid", "5|1", "5|2");
    row("NULL and empty", "people_pam: uid|id|note", "1|1|NULL", "1|1|");
    row("texts run together", "people_pam: uid|a|b", "1|x|yz", "1|xy|z");
    row("nobody's", "term: tid|syn", "1|2", "1|3");
}

void tst_PlanHash::plan_seesAllElse()
{
    QFETCH(QString, table);
    QFETCH(QString, one);
    QFETCH(QString, other);
    const auto with = [&table](const QStringList &rows) {
        return SnapshotBuilder()
            .with(somebody, {"1|10011|1001.1|Eva|Malá|1", "2|10021|1002.1|Jan|Vlk|1"})
            .with(table, rows);
    };
    const QString hash = hashOf(with({}), with({one}));
    QVERIFY(hashOf(with({}), with({other})) != hash);
    QVERIFY(hashOf(with({other}), with({one})) != hash);
    QVERIFY(hashOf(with({one}), with({})) != hash);
}

void tst_PlanHash::plan_tellsInWhomTwoPassesDiffer()
{
    const auto after = [](const char *of1, const char *of2) {
        return changesOf(
            SnapshotBuilder().with(somebody,
                                   {"1|10011|1001.1|Eva|Malá|1", "2|10021|1002.1|Jan|Vlk|1"}),
            SnapshotBuilder()
                .with(somebody, {"1|10011|1001.1|Eva|Malá|1", "2|10021|1002.1|Jan|Vlk|1"})
                .with("brape: bid|uid|since", {of1, of2}));
    };
    const Changes one = after("5|1|10", "5|2|10");
    const Changes other = after("5|1|20", "6|2|10");
    QCOMPARE(changeHash(one.people.at(0).rows), changeHash(other.people.at(0).rows));
    QVERIFY(changeHash(one.people.at(1).rows) != changeHash(other.people.at(1).rows));
}

void tst_PlanHash::plan_hashesWhatWasRead()
{
    ChangesHeader header;
    header.exported.digest = QStringLiteral("a");
    header.settings = QStringLiteral("b");
    header.plugin = QStringLiteral("1.6.0");
    header.state = QStringLiteral("c");
    const QString read = readHash(header);
    QCOMPARE(read.size(), 64);
    ChangesHeader other = header;
    other.when = QDateTime::currentDateTime();
    QCOMPARE(readHash(other), read);
    for (QString *part : {&other.exported.digest, &other.settings, &other.plugin, &other.state}) {
        const QString kept = *part;
        *part = QStringLiteral("x");
        QVERIFY(readHash(other) != read);
        *part = kept;
    }
    const Changes changes = changesBetween(onePerson(), onePerson(), {}, header, read);
    QCOMPARE(changes.plan.read, read);
    QCOMPARE(changes.plan.hash, planHash(changes.header, changes.plan.change));
    QVERIFY(changesOf(onePerson(), onePerson()).plan.hash.isEmpty());
}

void tst_PlanHash::plan_tellsWhatWasReadOtherwise()
{
    const QString change(64, QLatin1Char('c'));
    ChangesHeader header;
    const QString plan = planHash(header, change);
    QVERIFY(isPlanHash(plan));
    QVERIFY(!isPlanHash(plan + QLatin1Char('\n')));
    QVERIFY(!isPlanHash(plan.left(48)));
    QVERIFY(!isPlanHash(QString()));
    QVERIFY(isSameChange(plan, change));
    QCOMPARE(differentParts(plan, plan), QVector<PlanPart>());
    header.settings = QStringLiteral("b");
    header.state = QStringLiteral("c");
    const QString other = planHash(header, change);
    QVERIFY(isSameChange(other, change));
    QCOMPARE(differentParts(plan, other), QVector<PlanPart>({PlanPart::Settings, PlanPart::State}));
    header.exported.digest = QStringLiteral("d");
    header.plugin = QStringLiteral("e");
    QCOMPARE(differentParts(other, planHash(header, change)),
             QVector<PlanPart>({PlanPart::Export, PlanPart::Plugin}));
}

void tst_PlanHash::state_isThatOfAllRows()
{
    const auto digest = [](const char *row) {
        return stateDigest(SnapshotBuilder().with("brape: bid|uid|since", {row}));
    };
    QCOMPARE(digest("5|1|10"), digest("5|1|10"));
    QVERIFY(digest("5|1|10") != digest("5|1|11"));
    QVERIFY(digest("5|1|NULL") != digest("5|1|"));
    QVERIFY(stateDigest(SnapshotBuilder().with("brape: bid|uid", {})) != stateDigest(Snapshot()));
}

QTEST_GUILESS_MAIN(tst_PlanHash)
#include "tst_planhash.moc"
