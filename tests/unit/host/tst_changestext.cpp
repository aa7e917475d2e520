// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes as people read them.
#include "host/changes/changestext.h"
#include "support/eventlog.h"
#include "support/localseconds.h"
#include "support/passchanges.h"

#include <QtTest>

class tst_ChangesText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void words_areThoseOfTheTrade_data();
    void words_areThoseOfTheTrade();
    void whatWasTold_standsBehind();
    void sameWords_standOnce();
    void page_hasWordsThenRows();
    void hostileTexts_breakNothing();
    void worst_comesFirst();
    void summary_tellsWhatOccurs();
    void summary_countsTheUncertain();
    void otherOutcome_standsBehind();
    void summary_fitsAScreen();
    void days_haveTwoPlaces();
};

void tst_ChangesText::words_areThoseOfTheTrade_data()
{
    QTest::addColumn<QString>("table");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<QStringList>("words");
    const auto row = [](const char *table, const QStringList &before, const QStringList &after,
                        std::initializer_list<const char *> words) {
        QTest::newRow(*words.begin())
            << QString::fromLatin1(table) << before << after << lines(words);
    };
    const QStringList none;
    const auto one = [](const QString &text) { return QStringList(text); };
    const char *const people = "people: uid|pid|pamId|surname|end|status|bid|edited|lastCalc";
    const QString known = QStringLiteral("1|10011|1001.1|Malá|NULL|1|5|10|90");
    row(people, none, one(known), {"added, in branch 100 Riaditeľstvo"});
    row(people, one(QStringLiteral("1|10011|1001.1|Malá|NULL|0|5|10|90")), one(known),
        {"active again", "status: 0 becomes 1"});
    row(people, one(known), one(QStringLiteral("1|10011|1001.1|Malá|NULL|1|6|11|80")),
        {"moves from branch 100 Riaditeľstvo to number 6"});
    row(people, one(known), one(QStringLiteral("1|10011|1001.1|Malá|NULL|1|NULL|10|90")),
        {"moves from branch 100 Riaditeľstvo to none"});
    row(people, one(known),
        one(QStringLiteral("1|10011|1001.1|Malá|%1|1|5|10|90")
                .arg(localSeconds(QDate(2026, 12, 31)))),
        {"employment ends: 2026-12-31", "end: NULL becomes 2026-12-31"});
    row(people, one(known), one(QStringLiteral("1|10011|1001.1|Veľká|NULL|1|5|10|90")),
        {"surname: Malá becomes Veľká"});
    row(people, one(known), none, {"removed; no pass does that"});
    const char *const members = "brape: bid|uid";
    row(members, one(QStringLiteral("5|1")), one(QStringLiteral("6|1")),
        {"no longer in branch 100 Riaditeľstvo", "member of branch number 6"});
    row("people_term: tid|uid", none, one(QStringLiteral("3|1")), {"on terminal Vrátnica"});
    row("people_term: tid|uid", one(QStringLiteral("3|1")), none,
        {"no longer on terminal Vrátnica"});
    const char *const marks = "admins_people: aid|uid|request";
    row(marks, none, one(QStringLiteral("4|1|1")),
        {"under administrator 9001", "supervisor: administrator 9001"});
    row(marks, one(QStringLiteral("4|1|1")), none,
        {"no longer under administrator 9001", "no longer the supervisor: administrator 9001"});
    row("groups_plan: uid|since|gid", none, one(QStringLiteral("1|202611|11")),
        {"group Kancelárie planned from month 2026-11 on"});
    row("groups_plan: uid|since|gid", one(QStringLiteral("1|0|11")), none,
        {"group Kancelárie, from month 0 on, no longer planned"});
    row("groups_month: uid|month|gid", none,
        {QStringLiteral("1|202611|11"), QStringLiteral("1|202612|11"),
         QStringLiteral("1|202701|11")},
        {"group of 3 months, 2026-11 to 2027-01, follows the plan"});
    row("funds_move: uid|fid|day|type|value", none, one(QStringLiteral("1|2|100|3|-125")),
        {"leave corrected by -1.25 days"});
    const qint64 day = localSeconds(QDate(2026, 10, 1));
    row("atten: uid|date|ok", one(QStringLiteral("1|%1|1").arg(day)),
        one(QStringLiteral("1|%1|-1").arg(day)),
        {"days to be calculated again: 1, since 2026-10-01"});
    row("people_pam: uid|id", none, one(QStringLiteral("1|2")), {"enrolled in PaM block 2"});
    row("people_pam: uid|id", one(QStringLiteral("1|2")), none, {"no longer enrolled in PaM"});
    row("term_sync: id|tid|ref_col|ref_id", none,
        {QStringLiteral("1|3|uid|1"), QStringLiteral("2|4|uid|1")}, {"notices to terminals: 2"});
}

void tst_ChangesText::words_areThoseOfTheTrade()
{
    QFETCH(QString, table);
    QFETCH(QStringList, before);
    QFETCH(QStringList, after);
    QFETCH(QStringList, words);
    const auto snapshot = [&](const QStringList &rows) {
        SnapshotBuilder builder;
        if (!table.startsWith(QLatin1String("people:")))
            builder = onePerson();
        return builder.with(table, rows)
            .named("bid", 5, "100 Riaditeľstvo")
            .named("tid", 3, "Vrátnica")
            .named("aid", 4, "9001")
            .named("gid", 11, "Kancelárie");
    };
    const Changes changes = changesOf(snapshot(before), snapshot(after));
    QCOMPARE(changes.people.size(), 1);
    QCOMPARE(personWords(changes.people.first(), changes.names), words);
}

void tst_ChangesText::whatWasTold_standsBehind()
{
    ChangedPerson person;
    for (const NotDone::What what : {NotDone::Branch, NotDone::Group, NotDone::LeaveNotAtRest,
                                     NotDone::LeaveCorrectedToday, NotDone::TestMode})
        person.notDone.append({what, QStringLiteral("words"), QString(), QString()});
    person.notDone.append({NotDone::Refused, QStringLiteral("words"), QString(), QString()});
    person.notDone.append(
        {NotDone::Refused, QString(), QStringLiteral("UPDATE x"), QStringLiteral("locked")});
    person.messages = {{true, QDateTime(), QStringLiteral("gone")},
                       {false, QDateTime(), QStringLiteral("odd")}};
    person.uncertain = lines({"leave may be at rest"});
    QCOMPARE(personWords(person, {}),
             lines({"not done: the record waits for its branch",
                    "not done: no group of the branch carries the calendar",
                    "not done: leave is left alone until attendance is calculated",
                    "not done: leave is left alone until tomorrow, for there is a correction of "
                    "today",
                    "not done: the plugin is in test mode",
                    "not done: the database refused a statement: words",
                    "not done: the database refused 'UPDATE x': locked", "error: gone",
                    "warning: odd", "uncertain: leave may be at rest"}));
}

void tst_ChangesText::sameWords_standOnce()
{
    ChangedPerson person;
    const auto refused = [](const char *statement) {
        return NotDone {NotDone::Refused, QString(), QString::fromLatin1(statement),
                        QStringLiteral("1064")};
    };
    person.notDone = {refused("a"),
                      refused("b"),
                      refused("a"),
                      {NotDone::Refused, QStringLiteral("SQL ERROR"), QString(), QString()},
                      {NotDone::Branch, QStringLiteral("no branch"), QString(), QString()}};
    person.messages = {{true, QDateTime(), QStringLiteral("lost")},
                       {true, QDateTime::currentDateTime(), QStringLiteral("lost")},
                       {true, QDateTime(), QStringLiteral("SQL ERROR")},
                       {false, QDateTime(), QStringLiteral("no branch")}};
    QCOMPARE(personWords(person, {}),
             QStringList({QStringLiteral("not done: the database refused 'a': 1064 (2 times)"),
                          QStringLiteral("not done: the database refused 'b': 1064"),
                          QStringLiteral("not done: the database refused a statement: SQL ERROR"),
                          QStringLiteral("not done: the record waits for its branch"),
                          QStringLiteral("error: lost (2 times)"),
                          QStringLiteral("warning: no branch")}));
}

void tst_ChangesText::page_hasWordsThenRows()
{
    const char *const marks = "admins_people: aid|uid|request";
    const Changes changes = changesOf(onePerson().with(marks, {"4|1|1"}).named("aid", 4, "9001"),
                                      onePerson().with(marks, {"4|1|0"}).named("aid", 4, "9001"));
    QCOMPARE(personText(changes.people.first(), changes.names, 80),
             QStringLiteral("1001.1 Eva Malá\n"
                            "  no longer the supervisor: administrator 9001\n"
                            "    admins_people aid 4 (9001): request 1 -> 0\n"));
    ChangedPerson unknown;
    unknown.pid = 70011;
    QCOMPARE(personText(unknown, {}, 80), QStringLiteral("pid 70011\n"));
    unknown.person.uid = 8;
    QCOMPARE(personText(unknown, {}, 80), QStringLiteral("uid 8\n"));
}

void tst_ChangesText::hostileTexts_breakNothing()
{
    const char *const people = "people: uid|pid|pamId|name|surname|status|phone";
    const QString hostile = QStringLiteral("\x1b[2J\nfoo' ").repeated(20);
    const QString row = QStringLiteral("1|10011|1001.1|Eva|%1|1|%2");
    const QString table = QString::fromLatin1(people);
    const Changes changes = changesOf(
        SnapshotBuilder().with(table, {row.arg(hostile, QStringLiteral("1"))}),
        SnapshotBuilder().with(table, {row.arg(hostile, hostile)}));
    const QString text = personText(changes.people.first(), changes.names, 60);
    QVERIFY(!text.contains(QChar(0x1b)));
    const QStringList all = text.split(QLatin1Char('\n'));
    for (const QString &line : all)
        QVERIFY2(line.size() <= 60, qPrintable(line));
}

void tst_ChangesText::worst_comesFirst()
{
    Changes changes;
    const auto add = [&changes](std::initializer_list<ChangeKind> kinds) {
        ChangedPerson person;
        for (const ChangeKind kind : kinds)
            person.kinds.add(kind);
        changes.people.append(person);
    };
    add({}); // 0
    add({ChangeKind::Updated}); // 1
    add({ChangeKind::Added, ChangeKind::Memberships}); // 2
    add({ChangeKind::Updated, ChangeKind::Ended}); // 3
    add({ChangeKind::Waiting}); // 4
    add({ChangeKind::Updated}); // 5
    changes.people.last().messages.append(PassMessage());
    add({ChangeKind::Added, ChangeKind::Errors}); // 6
    add({ChangeKind::Updated}); // 7
    QCOMPARE(worstFirst(changes), QVector<int>({6, 4, 5, 3, 2, 1, 7, 0}));
}

void tst_ChangesText::summary_tellsWhatOccurs()
{
    Changes changes;
    changes.header.when = QDateTime(passDay, QTime(12, 0));
    changes.header.lastPass = 1;
    QCOMPARE(
        summaryText(changes, 100),
        QStringLiteral("Changes of pass 1, at 2026-11-22 12:00:00. What others wrote meanwhile "
                       "stands here, too.\nThere was no export.\n  Nothing changes.\n"));
    changes.header.how = ChangesHeader::Rehearsed;
    changes.header.exported = {QStringLiteral("ron.data"), QString(64, QLatin1Char('a')), 10, 3};
    changes.summary[ChangeKind::Added] = 2;
    changes.summary[ChangeKind::Leave] = 3;
    changes.summary[ChangeKind::Ended] = 1;
    changes.totals.leave = 250;
    QCOMPARE(summaryText(changes, 100),
             QStringLiteral("Rehearsed at 2026-11-22 12:00:00: the first pass of a freshly "
                            "started server.\n"
                            "Export ron.data: 3 lines, SHA-256 aaaaaaaaaaaa…\n"
                            "  people whose employment ends: 1\n"
                            "  people added: 2\n"
                            "  people with leave corrected: 3, 2.50 days in all\n"));
}

void tst_ChangesText::summary_countsTheUncertain()
{
    Changes changes;
    changes.header.how = ChangesHeader::Rehearsed;
    changes.header.when = QDateTime(passDay, QTime(12, 0));
    changes.header.after = {ExportIdentity()};
    changes.people = {ChangedPerson(), ChangedPerson()};
    changes.people.last().uncertain = lines({"one", "other"});
    const QString begin = QStringLiteral("Rehearsed at 2026-11-22 12:00:00: the next pass of a "
                                         "server that has taken %1.\n");
    const QString end = QStringLiteral("There was no export.\n  Nothing changes.\n"
                                       "  people with whom the server may do otherwise: 1\n");
    QCOMPARE(summaryText(changes, 100), begin.arg(QStringLiteral("one export")) + end);
    changes.header.after.append(ExportIdentity());
    QCOMPARE(summaryText(changes, 100), begin.arg(QStringLiteral("2 exports")) + end);
}

void tst_ChangesText::otherOutcome_standsBehind()
{
    Changes changes = changesBetween(
        SnapshotBuilder().with("people: uid|pid|pamId|name|surname|status|phone",
                               {"1|10011|1001.1|Eva|Malá|1|old"}),
        SnapshotBuilder().with("people: uid|pid|pamId|name|surname|status|phone",
                               {"1|10011|1001.1|Eva|Malá|1|new"}),
        PassTold(), ChangesHeader());
    ChangedPerson person = changes.people.first();
    const QString rows = personText(person, {}, 80).section(QLatin1Char('\n'), -2);
    person.otherwise = person.rows;
    person.rows.clear();
    person.uncertain = lines({"why"});
    const QString text = personText(person, {}, 80);
    QVERIFY2(text.endsWith(QStringLiteral("  uncertain: why\n"
                                          "  if the server does otherwise, then also:\n")
                           + rows),
             qPrintable(text));
}

void tst_ChangesText::summary_fitsAScreen()
{
    Changes changes;
    changes.header.exported = {QString(300, QLatin1Char('x')), QStringLiteral("aa"), 1, 1};
    for (const ChangeKind kind : changeKinds())
        changes.summary[kind] = 1000000;
    const QStringList all = summaryText(changes, 80).split(QLatin1Char('\n'));
    QCOMPARE(all.size(), 20); // two, one for each kind, and behind the last line end
    for (const QString &line : all)
        QVERIFY2(line.size() <= 80, qPrintable(line));
}

void tst_ChangesText::days_haveTwoPlaces()
{
    QCOMPARE(correctionText(250), QStringLiteral("+2.50 days"));
    QCOMPARE(correctionText(-5), QStringLiteral("-0.05 days"));
    QCOMPARE(correctionText(0), QStringLiteral("+0.00 days"));
    QCOMPARE(daysText(250), QStringLiteral("2.50 days"));
    QCOMPARE(daysText(-250), QStringLiteral("-2.50 days"));
    QCOMPARE(monthText(202403), QStringLiteral("2024-03"));
    QCOMPARE(monthText(0), QStringLiteral("0"));
}

QTEST_GUILESS_MAIN(tst_ChangesText)
#include "tst_changestext.moc"
