// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What passes should have written, and have not.
#include "host/status/losses.h"
#include "support/passchanges.h"

#include <QtTest>

class tst_Losses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cells_areLostWhileTheyAreAsBefore_data();
    void cells_areLostWhileTheyAreAsBefore();
    void rows_areLostWithTheirRemedies_data();
    void rows_areLostWithTheirRemedies();
    void newcomer_isKnownByTheNumber();
    void newcomer_isLostWithAll();
    void person_whoIsGoneSince_isNotLost();
    void laterExport_saysWhatIsWanted();
    void settledExport_settlesItsOwnRows();
    void settledExport_ofSomebodyNewSettlesAll();
    void doubtsAndNames_areThoseOfTheMissingRows();
    void correction_ofALaterDayCounts();
    void whatIsFetchedOrCalculated_isNotLookedAt();
    void uncertainPeople_areToldAsSuch();
};

namespace {

const char *const row = "people: uid|pid|pamId|surname|bid|type|lastCalc";

RehearsedExport rehearsed(const Snapshot &before, const Snapshot &after,
                          const char *record = "20261122T120000Z-1")
{
    return {QLatin1String(record), changesOf(before, after)};
}

Snapshot eva(const char *cells)
{
    return SnapshotBuilder().with(QLatin1String(row),
                                  {QStringLiteral("1|10011|1001.1|") + QString::fromUtf8(cells)});
}

/// Eva, with a row of another table; without one for an empty text.
Snapshot evaWith(const QString &table, const QString &cells)
{
    SnapshotBuilder builder;
    builder.with(row, {"1|10011|1001.1|Malá|5|1|0"});
    if (!cells.isEmpty())
        builder.with(table, {cells});
    return builder;
}

/// "1001.1: force restart (updated)", a line each.
QString lostText(const QVector<LostPerson> &people)
{
    QStringList lines;
    for (const LostPerson &lost : people) {
        QStringList remedies;
        for (const Remedy remedy : lost.remedies)
            remedies.append(remedyName(remedy));
        lines.append(QStringLiteral("%1: %2 (%3)")
                         .arg(lost.person.pamId, remedies.join(QLatin1Char(' ')),
                              kindsText(lost.missing.kinds)));
    }
    return lines.join(QLatin1Char('\n'));
}

} // namespace

void tst_Losses::cells_areLostWhileTheyAreAsBefore_data()
{
    QTest::addColumn<QString>("now");
    QTest::addColumn<QString>("lost");
    QTest::newRow("as before") << "Malá|5|1|7"
                               << "1001.1: force (updated moved)";
    QTest::newRow("half of it") << "Malá|6|1|7"
                                << "1001.1: force (updated)";
    QTest::newRow("all done") << "Nová|6|1|7"
                              << "";
    QTest::newRow("done, and calculated since") << "Nová|6|1|99"
                                                << "";
    QTest::newRow("changed by others since") << "Iná|9|1|7"
                                             << "";
    QTest::newRow("one cell changed by others") << "Malá|9|1|7"
                                                << "1001.1: force (updated)";
}

void tst_Losses::cells_areLostWhileTheyAreAsBefore()
{
    QFETCH(QString, now);
    QFETCH(QString, lost);
    const RehearsedExport exported = rehearsed(eva("Malá|5|1|7"), eva("Nová|6|1|3"));
    const Snapshot current = SnapshotBuilder().with(QLatin1String(row),
                                                    {QStringLiteral("1|10011|1001.1|") + now});
    QCOMPARE(lostText(lostPeople({exported}, current)), lost);
}

void tst_Losses::rows_areLostWithTheirRemedies_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("remedy");
    const auto add = [](const char *table, const char *before, const char *after,
                        const char *remedy) {
        QTest::newRow(
            qPrintable(QStringLiteral("%1, %2").arg(QLatin1String(table), QLatin1String(after))))
            << QString::fromLatin1(table) << QString::fromLatin1(before)
            << QString::fromLatin1(after) << QString::fromLatin1(remedy);
    };
    add("brape: bid|uid|since", "", "6|1|5", "force (memberships)");
    add("brape: bid|uid", "5|1", "", "force (memberships)");
    add("people_term: tid|uid", "", "3|1", "rejoin (terminals)");
    add("admins_people: aid|uid", "", "8|1", "rejoin (administrators)");
    add("admins_people: aid|uid|request", "8|1|0", "8|1|1", "restart (supervisors)");
    add("groups_plan: uid|since|gid", "", "1|202611|4", "force (plans)");
    add("groups_month: uid|month|gid", "", "1|202611|4", "replan (plans)");
    add("funds_move: uid|fid|day|type|value", "", "1|2|100|3|50", "force (leave)");
    add("people_pam: uid|id", "", "1|1", "by-hand (pam)");
}

void tst_Losses::rows_areLostWithTheirRemedies()
{
    QFETCH(QString, table);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, remedy);
    const Snapshot was = evaWith(table, before);
    const Snapshot wanted = evaWith(table, after);
    const QVector<RehearsedExport> exports {rehearsed(was, wanted)};
    QCOMPARE(lostText(lostPeople(exports, was)), QStringLiteral("1001.1: ") + remedy);
    QCOMPARE(lostText(lostPeople(exports, wanted)), QString());
}

/// The copy has given them another uid than the database.
void tst_Losses::newcomer_isKnownByTheNumber()
{
    const RehearsedExport exported = rehearsed(
        SnapshotBuilder(),
        SnapshotBuilder().with(row, {"9|10011|1001.1|Malá|5|1|0"}).with("brape: bid|uid", {"5|9"}));
    const Snapshot now = SnapshotBuilder()
                             .with(row, {"4|10011|1001.1|Malá|5|1|0", "9|777|77.7|Iná|5|1|0"})
                             .with("brape: bid|uid", {"5|4"});
    QCOMPARE(lostText(lostPeople({exported}, now)), QString());

    const Snapshot half = SnapshotBuilder().with(
        row, {"4|10011|1001.1|Malá|5|1|0", "9|777|77.7|Iná|5|1|0"});
    const QVector<LostPerson> lost = lostPeople({exported}, half);
    QCOMPARE(lostText(lost), QStringLiteral("1001.1: force (memberships)"));
    QCOMPARE(lost.constFirst().person.uid, Q_INT64_C(4));
}

void tst_Losses::newcomer_isLostWithAll()
{
    const RehearsedExport exported = rehearsed(SnapshotBuilder(),
                                               SnapshotBuilder()
                                                   .with(row, {"9|10011|1001.1|Malá|5|1|0"})
                                                   .with("people_pam: uid|id", {"9|1"})
                                                   .with("people_term: tid|uid", {"3|9"}));
    const QVector<LostPerson> lost = lostPeople({exported}, SnapshotBuilder());
    QCOMPARE(lostText(lost), QStringLiteral("1001.1: force (added terminals pam)"));
    QCOMPARE(lost.constFirst().missing.rows.size(), 3);
    QCOMPARE(lost.constFirst().record, QStringLiteral("20261122T120000Z-1"));
}

void tst_Losses::person_whoIsGoneSince_isNotLost()
{
    const RehearsedExport exported = rehearsed(
        evaWith(QString(), QString()),
        evaWith(QStringLiteral("brape: bid|uid"), QStringLiteral("6|1")));
    QCOMPARE(lostText(lostPeople({exported}, SnapshotBuilder())), QString());
}

/// The second export was rehearsed on a database that lacks the first one's changes.
void tst_Losses::laterExport_saysWhatIsWanted()
{
    const QVector<RehearsedExport> exports {
        rehearsed(eva("Malá|5|1|0"), eva("Nová|6|1|0"), "20261121T120000Z-1"),
        rehearsed(eva("Malá|5|1|0"), eva("Malá|7|1|0"), "20261122T120000Z-1")};
    const QVector<LostPerson> lost = lostPeople(exports, eva("Malá|7|1|0"));
    QCOMPARE(lostText(lost), QStringLiteral("1001.1: force (updated)"));
    const QVector<ChangedField> fields = lost.constFirst().missing.fields;
    QCOMPARE(fields.size(), 1);
    QCOMPARE(fields.constFirst().name, QStringLiteral("surname"));
    QCOMPARE(fields.constFirst().after.toString(), QStringLiteral("Nová"));
    QCOMPARE(lostText(lostPeople(exports, eva("Nová|6|1|0"))),
             QStringLiteral("1001.1: force (updated moved)"));
    QCOMPARE(lostText(lostPeople(exports, eva("Nová|7|1|0"))), QString());
    QCOMPARE(
        lostText(lostPeople({rehearsed(eva("Malá|5|1|0"), eva("Malá|5|4|0"))}, eva("Malá|5|1|0"))),
        QStringLiteral("1001.1: restart (updated)"));
}

/// Two passes are lost; the second one was taken back.
void tst_Losses::settledExport_settlesItsOwnRows()
{
    const QString brape = QStringLiteral("brape: bid|uid");
    const Snapshot now = evaWith(QString(), QString());
    QVector<RehearsedExport> exports {
        rehearsed(now, evaWith(brape, QStringLiteral("6|1")), "20261121T120000Z-1"),
        rehearsed(now, eva("Nová|5|1|0"), "20261122T120000Z-1")};
    QCOMPARE(lostText(lostPeople(exports, now)),
             QStringLiteral("1001.1: force (updated memberships)"));
    exports[1].isSettled = true;
    const QVector<LostPerson> left = lostPeople(exports, now);
    QCOMPARE(lostText(left), QStringLiteral("1001.1: force (memberships)"));
    QCOMPARE(left.constFirst().record, QStringLiteral("20261121T120000Z-1"));
    exports[0].isSettled = true;
    QCOMPARE(lostText(lostPeople(exports, now)), QString());

    // What comes after a settled one is looked for.
    exports.append(rehearsed(now, eva("Iná|5|1|0"), "20261123T120000Z-1"));
    QCOMPARE(lostText(lostPeople(exports, now)), QStringLiteral("1001.1: force (updated)"));
    // The older of two that want something of the same row says nothing any more.
    exports[2].isSettled = true;
    exports[1].isSettled = false;
    QCOMPARE(lostText(lostPeople(exports, now)), QString());
}

void tst_Losses::settledExport_ofSomebodyNewSettlesAll()
{
    const Snapshot added = SnapshotBuilder()
                               .with(row, {"9|10011|1001.1|Malá|5|1|0"})
                               .with("people_term: tid|uid", {"3|9"});
    QVector<RehearsedExport> exports {rehearsed(SnapshotBuilder(), added),
                                      rehearsed(SnapshotBuilder(), added)};
    exports[1].isSettled = true;
    QCOMPARE(lostText(lostPeople(exports, SnapshotBuilder())), QString());
}

void tst_Losses::doubtsAndNames_areThoseOfTheMissingRows()
{
    const QString brape = QStringLiteral("brape: bid|uid");
    QVector<RehearsedExport> exports {
        rehearsed(evaWith(brape, QString()), evaWith(brape, QStringLiteral("6|1"))),
        rehearsed(eva("Malá|5|1|0"), eva("Nová|5|1|0"))};
    exports[0].changes.people[0].uncertain = QStringList {QStringLiteral("twice in the export")};
    exports[0].changes.names[QStringLiteral("bid")].insert(6, QStringLiteral("Depo"));
    const QVector<LostPerson> half = lostPeople(exports, eva("Nová|5|1|0"));
    QCOMPARE(half.constFirst().uncertain, QStringList {QStringLiteral("twice in the export")});
    QCOMPARE(half.constFirst().names.value(QStringLiteral("bid")).value(6), QStringLiteral("Depo"));
    const QVector<LostPerson> other = lostPeople(exports, evaWith(brape, QStringLiteral("6|1")));
    QCOMPARE(lostText(other), QStringLiteral("1001.1: force (updated)"));
    QCOMPARE(other.constFirst().uncertain, QStringList());
}

/// The pass ran past midnight.
void tst_Losses::correction_ofALaterDayCounts()
{
    const QString moves = QStringLiteral("funds_move: uid|fid|day|type|value");
    const QVector<RehearsedExport> exports {
        rehearsed(evaWith(moves, QString()), evaWith(moves, QStringLiteral("1|2|100|3|50")))};
    QCOMPARE(lostPeople(exports, evaWith(moves, QStringLiteral("1|2|101|3|50"))).size(), 0);
    QCOMPARE(lostPeople(exports, evaWith(moves, QStringLiteral("1|2|99|3|50"))).size(), 1);
    QCOMPARE(lostPeople(exports, evaWith(moves, QStringLiteral("1|3|101|3|50"))).size(), 1);
    QCOMPARE(lostPeople(exports, evaWith(moves, QStringLiteral("1|2|101|4|50"))).size(), 1);
}

void tst_Losses::whatIsFetchedOrCalculated_isNotLookedAt()
{
    const Snapshot before = SnapshotBuilder()
                                .with(row, {"1|10011|1001.1|Malá|5|1|9"})
                                .with("atten: uid|date|ok", {"1|100|1"});
    const Snapshot after = SnapshotBuilder()
                               .with(row, {"1|10011|1001.1|Malá|5|1|3"})
                               .with("atten: uid|date|ok", {"1|100|-1"})
                               .with("term_sync: id|ref_col|ref_id", {"7|uid|1"});
    QCOMPARE(lostText(lostPeople({rehearsed(before, after)}, before)), QString());
}

void tst_Losses::uncertainPeople_areToldAsSuch()
{
    RehearsedExport exported = rehearsed(eva("Malá|5|1|0"), eva("Nová|5|1|0"));
    exported.changes.people[0].uncertain = QStringList {QStringLiteral("twice in the export")};
    const QVector<LostPerson> lost = lostPeople({exported}, eva("Malá|5|1|0"));
    QCOMPARE(lost.size(), 1);
    QCOMPARE(lost.constFirst().uncertain, QStringList {QStringLiteral("twice in the export")});
}

QTEST_GUILESS_MAIN(tst_Losses)
#include "tst_losses.moc"
