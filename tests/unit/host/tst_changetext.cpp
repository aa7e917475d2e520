// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Changes as lines for a reader.
#include "host/database/changetext.h"
#include "support/eventlog.h"
#include "support/localseconds.h"
#include "support/snapshotbuilder.h"

#include <QtTest>

namespace {

/// Each line with the person before it.
QStringList told(const Snapshot &before, const Snapshot &after)
{
    QStringList result;
    const QVector<PersonChanges> texts = changeTexts(difference(before, after), after.names);
    for (const PersonChanges &text : texts) {
        for (const QString &line : text.lines)
            result.append(text.person + QStringLiteral(": ") + line);
    }
    return result;
}

QByteArray with(const char *text, qint64 seconds)
{
    return QString::fromUtf8(text).arg(seconds).toUtf8();
}

} // namespace

class tst_ChangeText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changedCells_haveALineEach();
    void rowsThatComeOrGo_haveOneLine();
    void neighbouringRows_thatChangeAlikeShareALine();
    void persons_areNumberNameOrUid();
    void moments_areLocal();
    void moments_thatAreNone();
    void ids_haveTheirNames();
    void lists_sayWhoIsGainedAndLost();
    void hostileTexts_stayWithinTheirLine();
};

void tst_ChangeText::changedCells_haveALineEach()
{
    const char *people = "people: uid|pamId|name|surname|phone|bid";
    const char *atten = "atten: uid|date|ok";
    const qint64 day = localSeconds(QDate(2024, 3, 15));
    QCOMPARE(told(SnapshotBuilder()
                      .with(people, {"3|1003.1|Jiří|Dvořáček|NULL|2"})
                      .with(atten, {with("3|%1|1", day).constData()}),
                  SnapshotBuilder()
                      .with(people, {"3|1003.1|Jiří|Dvořák||NULL"})
                      .with(atten, {with("3|%1|-1", day).constData()})),
             lines({"1003.1 Jiří Dvořák: people: surname 'Dvořáček' -> 'Dvořák'",
                    "1003.1 Jiří Dvořák: people: phone NULL -> ''",
                    "1003.1 Jiří Dvořák: people: bid 2 -> NULL",
                    "1003.1 Jiří Dvořák: atten date 2024-03-15: ok 1 -> -1"}));
}

void tst_ChangeText::rowsThatComeOrGo_haveOneLine()
{
    const char *marks = "admins_people: aid|uid|request";
    const Snapshot before = SnapshotBuilder().with(marks, {"4|7|1"});
    const Snapshot after = SnapshotBuilder()
                               .with(marks, {})
                               .with("people: uid|pamId|name|surname|title|bid",
                                     {"8|1008.1|Eva|Malá||NULL"})
                               .with("people_pam: uid|id", {"8|2"})
                               .with("term_sync: id|tid|ref_col|ref_id", {"1|5|uid|8", "2|5|iid|8"})
                               .with("term: tid|syn|flags", {"5|0|2"});
    QCOMPARE(
        told(before, after),
        lines({"1008.1 Eva Malá: + people uid 8, pamId '1008.1', name 'Eva', surname 'Malá'",
               "1008.1 Eva Malá: + people_pam id 2", "1008.1 Eva Malá: + term_sync id 1, tid 5",
               "uid 7: - admins_people aid 4, request 1", "nobody: + term tid 5, syn 0, flags 2",
               "nobody: + term_sync id 2, tid 5, ref_col 'iid', ref_id 8"}));
}

void tst_ChangeText::neighbouringRows_thatChangeAlikeShareALine()
{
    const char *months = "groups_month: uid|month|gid";
    QCOMPARE(told(SnapshotBuilder().with(months,
                                         {"8|202401|1", "8|202402|1", "8|202403|1", "8|202404|5",
                                          "8|202405|1", "9|202401|1", "9|202402|1"}),
                  SnapshotBuilder()
                      .with(months,
                            {"8|202401|2", "8|202402|2", "8|202403|2", "8|202404|2", "8|202405|2"})
                      .named("gid", 2, "Zmeny")),
             lines({"uid 8: groups_month month 202401 to 202403, 3 rows: gid 1 -> 2 (Zmeny)",
                    "uid 8: groups_month month 202404: gid 5 -> 2 (Zmeny)",
                    "uid 8: groups_month month 202405: gid 1 -> 2 (Zmeny)",
                    "uid 9: - groups_month month 202401, gid 1",
                    "uid 9: - groups_month month 202402, gid 1"}));
    // Rows that only one column does not tell apart have lines of their own.
    const char *moves = "funds_move: uid|fid|day|type|value";
    QCOMPARE(told(SnapshotBuilder().with(moves, {"8|2|0|3|10", "8|3|0|3|10"}),
                  SnapshotBuilder().with(moves, {"8|2|0|3|20", "8|3|0|3|20"}))
                 .size(),
             2);
}

void tst_ChangeText::persons_areNumberNameOrUid()
{
    const Snapshot after = SnapshotBuilder()
                               .with("people: uid|pamId|name|surname",
                                     {"1|1001.1||", "2|NULL|Jan|Vlk", "3|1003.1|Eva|Malá"})
                               .with("vars: name|value", {"x|1"});
    QStringList persons;
    const QVector<PersonChanges> texts = changeTexts(difference(SnapshotBuilder(), after), {});
    for (const PersonChanges &text : texts)
        persons.append(text.person);
    QCOMPARE(persons, lines({"1001.1", "1003.1 Eva Malá", "uid 2 Jan Vlk", "nobody"}));
}

void tst_ChangeText::moments_areLocal()
{
    const QDate day(2024, 3, 31); // clocks go forward in Europe
    const Snapshot after = SnapshotBuilder()
                               .with("brape: bid|uid|since",
                                     {with("1|9|%1", localSeconds(day, 12)).constData()})
                               .with("funds_move: uid|fid|day|type|value",
                                     {with("9|2|%1|3|-50", localSeconds(day)).constData()});
    QCOMPARE(told(SnapshotBuilder(), after),
             lines({"uid 9: + brape bid 1, since 2024-03-31 12:00:00",
                    "uid 9: + funds_move fid 2, day 2024-03-31, type 3, value -50"}));
}

void tst_ChangeText::moments_thatAreNone()
{
    const TouchedTable &people = touchedTables().first();
    const auto text = [&people](const char *column, const QVariant &value) {
        return cellText(people, QString::fromLatin1(column), value);
    };
    QCOMPARE(text("calc", 0LL), QStringLiteral("0"));
    QCOMPARE(text("end", QVariant()), QStringLiteral("NULL"));
    QCOMPARE(text("end", 9223372036854775807LL), QStringLiteral("9223372036854775807"));
    QCOMPARE(text("end", QStringLiteral("soon")), QStringLiteral("soon"));
    // Not a moment.
    QCOMPARE(text("pid", 1711839600LL), QStringLiteral("1711839600"));
}

void tst_ChangeText::ids_haveTheirNames()
{
    const char *plan = "groups_plan: uid|since|gid";
    QCOMPARE(told(SnapshotBuilder().with(plan, {"9|202403|22"}),
                  SnapshotBuilder()
                      .with(plan, {"9|202403|23"})
                      .with("brape: bid|uid", {"2|9", "3|9"})
                      .named("bid", 2, "200 Výroba Žilina")
                      .named("gid", 22, "Dve\nzmeny")),
             lines({"uid 9: + brape bid 2 (200 Výroba Žilina)", "uid 9: + brape bid 3",
                    "uid 9: groups_plan since 202403: gid 22 (Dve\\nzmeny) -> 23"}));
}

void tst_ChangeText::lists_sayWhoIsGainedAndLost()
{
    const char *vars = "vars: name|value";
    QCOMPARE(
        told(SnapshotBuilder().with(vars, {"both|5,7", "first|", "force|a", "order|1,2"}),
             SnapshotBuilder().with(vars, {"both|7,,8,9", "first|1,2", "force|b", "order|2,1"})),
        lines({"nobody: vars name 'both': value gained 8, 9",
               "nobody: vars name 'both': value lost 5",
               "nobody: vars name 'first': value gained 1, 2",
               "nobody: vars name 'force': value 'a' -> 'b'",
               "nobody: vars name 'order': value '1,2' -> '2,1'"}));
    // Only a variable holds such a list.
    const char *people = "people: uid|phone";
    QCOMPARE(
        told(SnapshotBuilder().with(people, {"1|1,2"}), SnapshotBuilder().with(people, {"1|1,3"})),
        lines({"uid 1: people: phone '1,2' -> '1,3'"}));
}

void tst_ChangeText::hostileTexts_stayWithinTheirLine()
{
    const char *people = "people: uid|pamId|name|surname";
    QCOMPARE(told(SnapshotBuilder().with(people, {"1|1001.1|Jan|O'Hara"}),
                  SnapshotBuilder().with(people, {"1|1001.1|Jan|a\nb\x1b[31m' -> '\\"})),
             lines({"1001.1 Jan a\\nb\\x1b[31m' -> '\\: people: surname 'O\\'Hara' -> "
                    "'a\\nb\\x1b[31m\\' -> \\'\\\\'"}));
}

QTEST_GUILESS_MAIN(tst_ChangeText)
#include "tst_changetext.moc"
