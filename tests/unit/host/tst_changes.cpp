// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// From two snapshots, and what was told between them, to what a pass has changed.
#include "host/company/life.h"
#include "support/eventlog.h"
#include "support/localseconds.h"
#include "support/passchanges.h"

#include <QtTest>

#include <algorithm>

class tst_Changes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kinds_haveNames();
    void kinds_areThoseOfTheRows_data();
    void kinds_areThoseOfTheRows();
    void pamList_isAboutThoseWhoJoin();
    void fields_areThoseOfARowThatStood();
    void leaveAndDays_areSummed();
    void withoutBranch_countsWhoLosesIt();
    void rowsOfNobody_standApart();
    void onlyNamesOfTheRows_comeAlong();

    void summary_countsPeopleAndRows_data();
    void summary_countsPeopleAndRows();
};

void tst_Changes::kinds_haveNames()
{
    QCOMPARE(changeKinds().size(), 17);
    for (const ChangeKind kind : changeKinds()) {
        ChangeKind found = ChangeKind::Added;
        QVERIFY(kindOfName(kindName(kind), &found));
        QCOMPARE(found, kind);
    }
    ChangeKind found = ChangeKind::Moved;
    QVERIFY(!kindOfName(QStringLiteral("Added"), &found));
}

void tst_Changes::kinds_areThoseOfTheRows_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("kinds");
    const char *const people = "people: uid|pid|pamId|surname|end|status|bid|created|edited|editor|"
                               "lastCalc|calc";
    const qint64 past = localSeconds(QDate(2026, 11, 21), 23, 59, 59);
    const qint64 soon = localSeconds(QDate(2026, 11, 22), 23, 59, 59);
    const qint64 later = localSeconds(QDate(2026, 12, 31), 23, 59, 59);
    const auto person = [](const QString &end, const char *rest) {
        return QStringLiteral("1|10011|1001.1|Malá|%1|%2").arg(end, QLatin1String(rest));
    };
    const auto at = [](qint64 moment) { return QString::number(moment); };
    const char *const usual = "1|5|10|20|0|30|40";
    const QString open = person(QStringLiteral("NULL"), usual);
    const auto row = [](const char *name, const char *table, const QString &before,
                        const QString &after, const char *kinds) {
        QTest::newRow(name) << QString::fromLatin1(table) << before << after
                            << QString::fromLatin1(kinds);
    };
    const auto ends = [&](const char *name, const QString &before, const QString &after,
                          const char *kinds) {
        row(name, people, person(before, usual), person(after, usual), kinds);
    };
    row("added", people, QString(), open, "added");
    row("added with an end", people, QString(), person(at(soon), usual), "added");
    row("gone", people, open, QString(), "");
    row("revived", people, person(at(past), "0|5|10|20|0|30|40"), person(at(later), usual),
        "revived");
    row("made inactive", people, open, person(QStringLiteral("NULL"), "0|5|10|20|0|30|40"),
        "updated");
    row("written again", people, open, person(QStringLiteral("NULL"), "1|5|10|21|0|30|40"), "");
    row("who wrote it", people, open, person(QStringLiteral("NULL"), "1|5|10|21|7|30|40"), "");
    row("mark moved", people, open, person(QStringLiteral("NULL"), "1|5|10|21|0|20|0"), "");
    row("moved", people, open, person(QStringLiteral("NULL"), "1|6|10|20|0|30|40"),
        "updated moved");
    row("branch lost", people, open, person(QStringLiteral("NULL"), "1|NULL|10|20|0|30|40"),
        "updated moved");
    ends("end set", QStringLiteral("NULL"), at(later), "updated ended");
    ends("end set in the past", QStringLiteral("NULL"), at(past), "updated ended");
    ends("0 is no end", QStringLiteral("0"), at(later), "updated ended");
    ends("end earlier", at(later), at(soon), "updated ended");
    ends("end passDay earlier", at(soon), at(past), "updated ended");
    ends("end later", at(soon), at(later), "updated");
    ends("end withdrawn", at(later), QStringLiteral("NULL"), "updated");
    ends("end withdrawn as 0", at(later), QStringLiteral("0"), "updated");
    ends("end gone by", at(past), at(past - 86400), "updated");

    const auto comesAndGoes = [&](const char *table, const char *cells, const char *kinds) {
        const QByteArray name(table);
        const QString text = QString::fromLatin1(cells);
        row((name + " comes").constData(), table, QString(), text, kinds);
        row((name + " goes").constData(), table, text, QString(), kinds);
    };
    comesAndGoes("brape: bid|uid|since", "5|1|10", "memberships");
    row("membership dated again", "brape: bid|uid|since", QStringLiteral("5|1|10"),
        QStringLiteral("5|1|20"), "");
    comesAndGoes("people_term: tid|uid", "3|1", "terminals");
    const char *const marks = "admins_people: aid|uid|request";
    comesAndGoes(marks, "4|1|0", "administrators");
    row("comes as supervisor", marks, QString(), QStringLiteral("4|1|1"),
        "administrators supervisors");
    row("loses the mark", marks, QStringLiteral("4|1|1"), QStringLiteral("4|1|0"), "supervisors");
    comesAndGoes("groups_plan: uid|since|gid", "1|202611|11", "plans");
    comesAndGoes("groups_month: uid|month|gid", "1|202611|11", "plans");
    row("other group", "groups_month: uid|month|gid", QStringLiteral("1|202611|11"),
        QStringLiteral("1|202611|12"), "plans");
    comesAndGoes("funds_move: uid|fid|day|type|value", "1|2|100|3|250", "leave");
    comesAndGoes("people_pam: uid|id", "1|2", "pam");
    row("other block", "people_pam: uid|id", QStringLiteral("1|1"), QStringLiteral("1|2"), "pam");
    const char *const days = "atten: uid|date|lock|man|ok";
    row("day opened", days, QStringLiteral("1|100|0|0|1"), QStringLiteral("1|100|0|0|-1"),
        "reopened");
    row("day calculated", days, QStringLiteral("1|100|0|0|-1"), QStringLiteral("1|100|0|0|1"), "");
    row("day entered", days, QStringLiteral("1|100|0|0|-1"), QStringLiteral("1|100|0|1|-1"), "");
    row("day begins", days, QString(), QStringLiteral("1|100|0|0|-1"), "");
    row("day locked", days, QStringLiteral("1|100|0|0|1"), QString(), "");
    const char *const queue = "term_sync: id|tid|type|ref_col|ref_id|created";
    row("notice", queue, QString(), QStringLiteral("9|3|U|uid|1|100"), "notices");
    row("notice fetched", queue, QStringLiteral("9|3|U|uid|1|100"), QString(), "");
}

void tst_Changes::kinds_areThoseOfTheRows()
{
    QFETCH(QString, table);
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, kinds);
    const auto snapshot = [&](const QString &row) {
        SnapshotBuilder builder;
        if (!table.startsWith(QLatin1String("people:")))
            builder = onePerson();
        return builder.with(table, row.isEmpty() ? QStringList() : QStringList(row));
    };
    // Both have the columns.
    const Changes changes = changesOf(snapshot(before), snapshot(after));
    QCOMPARE(changes.people.size(), 1);
    const ChangedPerson &person = changes.people.first();
    QCOMPARE(kindsText(person.kinds), kinds);
    QCOMPARE(person.person.uid, 1);
    QCOMPARE(person.pid, 10011);
    QCOMPARE(person.rows.size(), 1);
    for (const ChangeKind kind : changeKinds())
        QCOMPARE(changes.summary[kind], qint64(person.kinds.has(kind)));
}

void tst_Changes::pamList_isAboutThoseWhoJoin()
{
    const char *const vars = "vars: name|value";
    const Changes changes = changesOf(
        onePerson().with(vars, {"exportPam.1.selPeople|5,77,", "exportPam.1.active|10011"}),
        onePerson().with(vars, {"exportPam.1.selPeople|5,10011,88", "exportPam.1.active|1"}));
    QCOMPARE(changes.people.size(), 1);
    QCOMPARE(changes.people.first().person.pamId, QStringLiteral("1001.1"));
    QCOMPARE(kindsText(changes.people.first().kinds), QStringLiteral("pam"));
    QCOMPARE(countsText(changes.summary), QStringLiteral("pam 1"));
    QCOMPARE(changes.others.size(), 2);
    // Who was there before and after does not join.
    QCOMPARE(changesOf(onePerson().with(vars, {"exportPam.1.selPeople|10011,"}),
                       onePerson().with(vars, {"exportPam.1.selPeople|10011"}))
                 .people.size(),
             0);
}

void tst_Changes::fields_areThoseOfARowThatStood()
{
    const char *const people = "people: uid|pid|pamId|name|surname|phone|edited|status|lastCalc";
    const Changes changes = changesOf(
        SnapshotBuilder().with(people, {"1|10011|1001.1|Eva|Malá|NULL|10|1|90"}),
        SnapshotBuilder().with(
            people, {"1|10011|1001.1|Eva|Veľká|12|20|1|80", "2|10021|1002.1|Jan|Vlk||10|1|0"}));
    QCOMPARE(changes.people.size(), 2);
    QStringList texts;
    for (const ChangedField &field : changes.people.first().fields)
        texts.append(QStringLiteral("%1 %2>%3")
                         .arg(field.name, field.before.toString(), field.after.toString()));
    QCOMPARE(texts, lines({"surname Malá>Veľká", "phone >12", "lastCalc 90>80"}));
    QCOMPARE(changes.people.last().fields.size(), 0);
}

void tst_Changes::leaveAndDays_areSummed()
{
    const char *const moves = "funds_move: uid|fid|day|type|month|value";
    const char *const days = "atten: uid|date|ok";
    const qint64 first = localSeconds(QDate(2026, 10, 1));
    const auto day = [first](int uid, int number, int ok) {
        return QStringLiteral("%1|%2|%3").arg(uid).arg(first + number * 90000).arg(ok);
    };
    const QString table = QString::fromLatin1(days);
    const Changes changes = changesOf(
        SnapshotBuilder()
            .with(moves, {"1|2|100|3|1|250", "1|2|200|3|1|-50"})
            .with(table, {day(1, 0, 1), day(1, 1, 1), day(1, 2, -1), day(2, 0, 1)}),
        SnapshotBuilder()
            .with(moves, {"1|2|100|3|1|-100", "1|2|300|3|1|25", "2|2|300|3|1|-400"})
            .with(table, {day(1, 0, -1), day(1, 1, -1), day(1, 2, -1), day(2, 0, -1)}));
    QCOMPARE(changes.people.size(), 2);
    // -100 - 250, + 50, + 25
    QCOMPARE(changes.people.first().leave, -275);
    QCOMPARE(changes.people.first().reopenedDays, 2);
    QCOMPARE(changes.people.first().reopenedSince, QDate(2026, 10, 1));
    QCOMPARE(changes.totals.leave, qint64(675));
    QCOMPARE(changes.totals.reopenedDays, qint64(3));
}

void tst_Changes::withoutBranch_countsWhoLosesIt()
{
    const char *const people = "people: uid|pid|pamId|status|bid";
    const Changes changes = changesOf(
        SnapshotBuilder().with(people,
                               {"1|11|1.1|1|5", "2|21|2.1|1|5", "3|31|3.1|1|NULL", "4|41|4.1|0|5"}),
        SnapshotBuilder().with(people,
                               {"1|11|1.1|1|NULL", "2|21|2.1|1|6", "3|31|3.9|1|NULL",
                                "4|41|4.1|0|5", "5|51|5.1|1|NULL"}));
    QCOMPARE(countsText(changes.summary), QStringLiteral("added 1, updated 3, moved 2"));
    QCOMPARE(changes.totals.withoutBranch, 2);
    QCOMPARE(changes.totals.activePeople, 3);
}

void tst_Changes::rowsOfNobody_standApart()
{
    const Changes changes = changesOf(SnapshotBuilder()
                                          .with("term: tid|syn", {"3|0"})
                                          .with("vars: name|value", {"OQS.THRWorker.forceSync|1"}),
                                      SnapshotBuilder()
                                          .with("term: tid|syn", {"3|2"})
                                          .with("vars: name|value", {"OQS.THRWorker.forceSync|0"})
                                          .with("term_sync: id|tid|ref_col|ref_id", {"1|3|iid|8"}));
    QCOMPARE(changes.people.size(), 0);
    QCOMPARE(changes.others.size(), 3);
    QCOMPARE(countsText(changes.summary), QStringLiteral("notices 1"));
}

void tst_Changes::onlyNamesOfTheRows_comeAlong()
{
    const auto builder = [] {
        return onePerson()
            .named("bid", 5, "100 Riaditeľstvo")
            .named("bid", 6, "200 Výroba")
            .named("tid", 5, "Vrátnica");
    };
    const Changes changes = changesOf(builder(), builder().with("brape: bid|uid|since", {"5|1|1"}));
    QCOMPARE(changes.names.keys(), QList<QString>({QStringLiteral("bid")}));
    QCOMPARE(changes.names.value(QStringLiteral("bid")).keys(), QList<qlonglong>({5}));
}

/// What is looked for in messages would otherwise be missed in silence when a message changes.

void tst_Changes::summary_countsPeopleAndRows_data()
{
    QTest::addColumn<quint32>("seed");
    for (quint32 seed = 1; seed <= 20; ++seed)
        QTest::newRow(qPrintable(QString::number(seed))) << seed;
}

namespace {

/// What the attendance system holds of the company, in as much as it matters to the numbers.
Snapshot snapshotOf(const Company &company)
{
    QStringList people;
    QStringList members;
    QStringList marks;
    QStringList moves;
    QStringList days;
    QStringList queue;
    int uid = 0;
    for (const Employment &one : company.employments) {
        const QString id = QString::number(++uid);
        const QString end = one.end.isValid() ? lastSecond(one.end) : QStringLiteral("NULL");
        people.append(
            QStringList({id, QString::number(one.pid()),
                         QStringLiteral("%1.%2").arg(one.number).arg(one.ordinal), one.name,
                         one.surname, end, QString::number(one.runsOn(company.day)),
                         one.branch ? QString::number(one.branch) : QStringLiteral("NULL")})
                .join(QLatin1Char('|')));
        for (const uint branch : one.memberships)
            members.append(QStringLiteral("%1|%2").arg(branch).arg(id));
        if (one.supervisor != 0)
            marks.append(QStringLiteral("%1|%2|1").arg(one.supervisor).arg(id));
        moves.append(QStringLiteral("%1|2|1|3|%2").arg(id).arg(one.leave));
        days.append(QStringLiteral("%1|5|%2").arg(id).arg(one.evidenceState ? -1 : 1));
        queue.append(QStringLiteral("%1|3|uid|%2").arg(uid + one.leave * 100000).arg(id));
    }
    return SnapshotBuilder()
        .with(QStringLiteral("people: uid|pid|pamId|name|surname|end|status|bid"), people)
        .with(QStringLiteral("brape: bid|uid"), members)
        .with(QStringLiteral("admins_people: aid|uid|request"), marks)
        .with(QStringLiteral("funds_move: uid|fid|day|type|value"), moves)
        .with(QStringLiteral("atten: uid|date|ok"), days)
        .with(QStringLiteral("term_sync: id|tid|ref_col|ref_id"), queue);
}

} // namespace

void tst_Changes::summary_countsPeopleAndRows()
{
    QFETCH(quint32, seed);
    CompanyPlan plan;
    plan.people = 60;
    plan.seed = seed;
    plan.day = passDay;
    LifeRates rates;
    for (int *rate : {&rates.hired, &rates.endAnnounced, &rates.renamed, &rates.moved,
                      &rates.newSupervisor, &rates.fellIll, &rates.returned})
        *rate = 400;
    Life life(generatedCompany(plan), seed, rates);
    const Snapshot before = snapshotOf(life.company());
    for (int day = 0; day < 5; ++day)
        life.nextDay();
    const Snapshot after = snapshotOf(life.company());
    const Changes changes = changesOf(before, after);

    KindCounts counts;
    QVector<Change> rows = changes.others;
    for (const ChangedPerson &person : changes.people) {
        rows += person.rows;
        for (const ChangeKind kind : changeKinds())
            counts[kind] += kind != ChangeKind::Notices && person.kinds.has(kind);
    }
    for (const Change &row : qAsConst(rows))
        counts[ChangeKind::Notices] += row.before.isEmpty()
            && row.table->name == QLatin1String("term_sync");
    QCOMPARE(countsText(changes.summary), countsText(counts));
    QCOMPARE(rows.size(), difference(before, after).size());
    for (const ChangeKind kind : {ChangeKind::Added, ChangeKind::Updated, ChangeKind::Ended,
                                  ChangeKind::Memberships, ChangeKind::Leave, ChangeKind::Notices})
        QVERIFY2(counts[kind] > 0, qPrintable(kindName(kind)));
    // By the people's rows alone.
    const auto peopleAdded = std::count_if(rows.cbegin(), rows.cend(), [](const Change &row) {
        return row.table->isPeople() && row.before.isEmpty();
    });
    QCOMPARE(counts[ChangeKind::Added], qint64(peopleAdded));
}

QTEST_GUILESS_MAIN(tst_Changes)
#include "tst_changes.moc"
