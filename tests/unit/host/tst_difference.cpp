// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What lies between two snapshots, and the order in which it is told.
#include "host/database/difference.h"
#include "host/database/value.h"
#include "support/eventlog.h"
#include "support/snapshotbuilder.h"

#include <QDateTime>
#include <QtTest>

#include <limits>

namespace {

QString rowText(const TableRow &row)
{
    QStringList cells;
    for (const QVariant &cell : row)
        cells.append(cell.isNull() ? QStringLiteral("NULL") : cell.toString());
    return row.isEmpty() ? QStringLiteral("-") : cells.join(QLatin1Char('|'));
}

/// "PERSON TABLE: BEFORE > AFTER", with "-" where there is no row.
QStringList told(const Snapshot &before, const Snapshot &after, const SetAside &setAside = {})
{
    QStringList texts;
    const QVector<Change> changes = difference(before, after, setAside);
    for (const Change &change : changes)
        texts.append(QStringLiteral("%1 %2: %3 > %4")
                         .arg(change.person.uid)
                         .arg(change.table->name, rowText(change.before), rowText(change.after)));
    return texts;
}

} // namespace

class tst_Difference : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void values_keepTheirKind();
    void values_haveOneOrder();

    void rows_comeGoAndChange();
    void equalSnapshots_haveNoDifference();
    void cells_differByKindToo();
    void notices_belongToThePersonThatTheyName();
    void persons_areNamedAsLastSeen();
    void order_isByPersonThenTableThenKey();
    void columns_areFoundByName();
    void stamps_canBeSetAside();
    void generatedIds_canBeSetAside();
};

void tst_Difference::values_keepTheirKind()
{
    QCOMPARE(plainValue(QVariant(QVariant::String)), QVariant());
    QCOMPARE(plainValue(QVariant(QVariant::UInt)).userType(), int(QMetaType::UnknownType));
    QCOMPARE(plainValue(7u).userType(), int(QMetaType::LongLong));
    QCOMPARE(plainValue(QVariant::fromValue<char>(-3)).toLongLong(), -3);
    QCOMPARE(plainValue(std::numeric_limits<qulonglong>::max()).userType(),
             int(QMetaType::ULongLong));
    QCOMPARE(plainValue(QStringLiteral("7")).userType(), int(QMetaType::QString));
    QCOMPARE(plainValue(QString(QLatin1String(""))).userType(), int(QMetaType::QString));
    QCOMPARE(plainValue(1.5f), QVariant(1.5));
    QCOMPARE(plainValue(QDate(2026, 3, 1)), QVariant(QStringLiteral("2026-03-01")));
}

void tst_Difference::values_haveOneOrder()
{
    const qulonglong greatest = std::numeric_limits<qulonglong>::max();
    const QVector<QVariant> rising {QVariant(),
                                    -1LL,
                                    0LL,
                                    0.5,
                                    1LL,
                                    greatest - 1,
                                    greatest,
                                    QStringLiteral(""),
                                    QStringLiteral("1"),
                                    QStringLiteral("a"),
                                    QStringLiteral("Ľ"),
                                    QByteArray("1")};
    for (int i = 0; i < rising.size(); ++i) {
        for (int j = 0; j < rising.size(); ++j)
            QCOMPARE(compareValues(rising.at(i), rising.at(j)), i < j ? -1 : i > j ? 1 : 0);
    }
}

void tst_Difference::rows_comeGoAndChange()
{
    const Snapshot before = SnapshotBuilder().with("atten: uid|date|lock|ok",
                                                   {"1|10|0|1", "1|20|0|1", "1|30|0|1"});
    const Snapshot after = SnapshotBuilder().with("atten: uid|date|lock|ok",
                                                  {"1|40|0|0", "1|20|0|-1", "1|10|0|1"});
    QCOMPARE(
        told(before, after),
        lines({"1 atten: 1|20|0|1 > 1|20|0|-1", "1 atten: 1|30|0|1 > -", "1 atten: - > 1|40|0|0"}));
    QCOMPARE(
        told(after, before),
        lines({"1 atten: 1|20|0|-1 > 1|20|0|1", "1 atten: - > 1|30|0|1", "1 atten: 1|40|0|0 > -"}));
}

void tst_Difference::equalSnapshots_haveNoDifference()
{
    const Snapshot one = SnapshotBuilder()
                             .with("people: uid|pamId|phone", {"1|1001.1|NULL", "2|1002.1|"})
                             .with("vars: name|value", {"OQS.THRWorker.forceSync|0"});
    QCOMPARE(told(one, one), QStringList());
    QCOMPARE(told(Snapshot(), Snapshot()), QStringList());
}

void tst_Difference::cells_differByKindToo()
{
    const char *table = "people: uid|phone|bid";
    QCOMPARE(told(SnapshotBuilder().with(table, {"1|NULL|0"}),
                  SnapshotBuilder().with(table, {"1||NULL"})),
             lines({"1 people: 1|NULL|0 > 1||NULL"}));
    // Letters are not equal to others that the server takes for the same.
    QCOMPARE(told(SnapshotBuilder().with(table, {"1|Novák|0"}),
                  SnapshotBuilder().with(table, {"1|novak|0"}))
                 .size(),
             1);
}

void tst_Difference::notices_belongToThePersonThatTheyName()
{
    const Snapshot after = SnapshotBuilder()
                               .with("term_sync: id|tid|ref_col|ref_id",
                                     {"1|5|uid|7", "2|5|iid|7", "3|5|zid|7"})
                               .with("term: tid|syn", {"5|2"});
    QCOMPARE(told(SnapshotBuilder(), after),
             lines({"7 term_sync: - > 1|5|uid|7", "0 term: - > 5|2", "0 term_sync: - > 2|5|iid|7",
                    "0 term_sync: - > 3|5|zid|7"}));
}

void tst_Difference::persons_areNamedAsLastSeen()
{
    const char *table = "people: uid|pamId|name|surname";
    const Snapshot before = SnapshotBuilder().with(
        table, {"1|1001.1|Eva|Malá", "2|1002.1|Jan|Vlk", "3|NULL||Bez"});
    const Snapshot after = SnapshotBuilder()
                               .with(table, {"1|1001.1|Eva|Veľká", "3|NULL||Bez"})
                               .with("brape: bid|uid", {"9|3", "9|4"});
    const QVector<Change> changes = difference(before, after);
    QStringList persons;
    for (const Change &change : changes)
        persons.append(QStringLiteral("%1/%2").arg(change.person.pamId, change.person.name));
    QCOMPARE(persons, lines({"1001.1/Eva Veľká", "1002.1/Jan Vlk", "/Bez", "/"}));
}

void tst_Difference::order_isByPersonThenTableThenKey()
{
    const Snapshot after = SnapshotBuilder()
                               .with("people: uid|pamId", {"1|10010.1", "2|1001.10", "3|1001.2"})
                               .with("brape: bid|uid", {"7|1", "5|2", "4|2", "4|3", "1|9", "1|8"})
                               .with("people_pam: uid|id", {"2|1", "1|1"})
                               .with("vars: name|value", {"b|1", "a|1"});
    QCOMPARE(told(SnapshotBuilder().with("people: uid|pamId", {}), after),
             lines({"3 people: - > 3|1001.2", "3 brape: - > 4|3", "2 people: - > 2|1001.10",
                    "2 people_pam: - > 2|1", "2 brape: - > 4|2", "2 brape: - > 5|2",
                    "1 people: - > 1|10010.1", "1 people_pam: - > 1|1", "1 brape: - > 7|1",
                    "8 brape: - > 1|8", "9 brape: - > 1|9", "0 vars: - > a|1", "0 vars: - > b|1"}));
}

/// A difference between two databases of unequal age, say.
void tst_Difference::columns_areFoundByName()
{
    const Snapshot before = SnapshotBuilder().with("people_pam: id|uid|old", {"4|1|x", "5|2|x"});
    const Snapshot after = SnapshotBuilder().with("people_pam: uid|id|new", {"1|4|y", "2|6|y"});
    QCOMPARE(told(before, after), lines({"2 people_pam: 2|5|NULL > 2|6|y"}));
}

void tst_Difference::stamps_canBeSetAside()
{
    const Snapshot before = SnapshotBuilder()
                                .with("people: uid|begin|edited", {"1|100|100", "2|100|100"})
                                .with("brape: bid|uid|since", {"7|1|100"});
    const Snapshot after = SnapshotBuilder()
                               .with("people: uid|begin|edited", {"1|100|200", "2|200|200"})
                               .with("brape: bid|uid|since", {"7|1|200"});
    SetAside setAside;
    QCOMPARE(told(before, after, setAside).size(), 3);
    setAside.stamps = true;
    QCOMPARE(told(before, after, setAside), lines({"2 people: 2|100|100 > 2|200|200"}));
}

void tst_Difference::generatedIds_canBeSetAside()
{
    const char *table = "term_sync: id|tid|type|ref_col|ref_id|created";
    const Snapshot before = SnapshotBuilder().with(
        table, {"1|5|U|uid|7|100", "2|5|U|uid|7|100", "3|6|I|uid|7|100"});
    const Snapshot after = SnapshotBuilder().with(
        table, {"11|6|I|uid|7|100", "12|5|U|uid|7|100", "13|5|U|uid|8|100"});
    SetAside setAside;
    QCOMPARE(told(before, after, setAside).size(), 6);
    setAside.generatedIds = true;
    // Of two equal notices one is missing.
    QCOMPARE(told(before, after, setAside),
             lines({"7 term_sync: 2|5|U|uid|7|100 > -", "8 term_sync: - > 13|5|U|uid|8|100"}));
}

QTEST_GUILESS_MAIN(tst_Difference)
#include "tst_difference.moc"
