// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal comes to, and what people are told of it.
#include "host/changes/planhash.h"
#include "host/commands/missingpeople.h"
#include "host/commands/rehearsalpage.h"
#include "host/commands/rehearsaltext.h"
#include "host/rehearsal/plandifference.h"
#include "host/rehearsal/verdict.h"
#include "support/passchanges.h"

#include <QtTest>

namespace {

const QString members = QStringLiteral("brape: bid|uid|since");
const QString stamped = QStringLiteral("people: uid|pid|pamId|name|surname|status|edited");

QStringList texts(std::initializer_list<const char *> rows)
{
    QStringList all;
    for (const char *row : rows)
        all.append(QString::fromUtf8(row));
    return all;
}

/// A limit of which so much was found.
LimitOutcome outcome(const char *kind, double allowed, double found)
{
    return {{QString::fromLatin1(kind), static_cast<int>(allowed), false}, allowed, found};
}

Finding uselessExport()
{
    Finding finding;
    finding.code = QStringLiteral("E-FILE-NOTHING");
    finding.severity = Finding::Error;
    finding.text = QStringLiteral("the export has no usable line: it is empty");
    return finding;
}

/// The first person of two comes to a branch, the row of the second is only written again.
Changes someChanges()
{
    const auto people = [](int edited) {
        return QStringList({QStringLiteral("1|10011|1001.1|Eva|Malá|1|10"),
                            QStringLiteral("2|10021|1002.1|Jan|Vlk|1|%1").arg(edited)});
    };
    Changes changes = changesOf(
        SnapshotBuilder().with(stamped, people(10)),
        SnapshotBuilder().with(stamped, people(20)).with(members, texts({"5|1|10"})));
    changes.plan.hash = planHash(changes.header, changes.plan.change);
    return changes;
}

DigestLine lineOf(int line, uint number, uint pid)
{
    DigestLine digest;
    digest.line = line;
    digest.number = number;
    digest.ordinal = 1;
    digest.pid = pid;
    return digest;
}

KnownPerson known(uint pid, const char *pamId = "", const char *name = "")
{
    KnownPerson person;
    person.pid = pid;
    person.pamId = QString::fromLatin1(pamId);
    person.name = QString::fromUtf8(name);
    person.isActive = true;
    return person;
}

QString personOf(const char *meant, bool isBrief = false)
{
    const Changes changes = someChanges();
    RehearsalText text(changes, 100);
    text.addPerson(QString::fromLatin1(meant),
                   {known(10011, "1001.1", "Eva Malá"), known(10031, "1003.1", "Iva Nová"),
                    known(10041, "1004.1", "Oto Rak")},
                   {lineOf(2, 1001, 10011), lineOf(3, 1003, 10031), lineOf(4, 1005, 10051)},
                   isBrief);
    return text.result().simplified();
}

} // namespace

class tst_RehearsalText : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void verdict_isTheFirstThatHolds();
    void verdictLine_namesTheLimits();
    void people_whoseRowsAreWrittenAgainAreCounted();
    void page_tellsOfExportAndCopy();
    void person_isFound_data();
    void person_isFound();
    void missing_areActiveAndInNoLine();
    void html_hasTheLimitsOfTheDocument();
    void html_hasOneScaleOfBars();
    void plan_tellsWhatIsDifferent();
    void plan_tellsInWhom();
};

void tst_RehearsalText::verdict_isTheFirstThatHolds()
{
    Changes changes;
    QCOMPARE(int(verdictCode(changes, true)), int(ExitClean));
    QVERIFY(verdictLine(changes).startsWith(QStringLiteral("Nothing would change; ")));
    changes = someChanges();
    QCOMPARE(int(verdictCode(changes, false)), int(ExitClean));
    QCOMPARE(int(verdictCode(changes, true)), int(ExitChanged));
    QVERIFY(verdictLine(changes).startsWith(QStringLiteral("Within the limits; ")));
    changes.rehearsal.findings = {uselessExport()};
    QCOMPARE(int(verdictCode(changes, true)), int(ExitErrors));
    QVERIFY(verdictLine(changes).startsWith(QStringLiteral("The export has no usable line; ")));
    changes.summary[ChangeKind::Errors] = 1;
    QCOMPARE(int(verdictCode(changes, true)), int(ExitErrors));
    QVERIFY(verdictLine(changes).startsWith(QStringLiteral("The pass has errors; ")));
    QVERIFY(verdictLine(changes).endsWith(changes.plan.hash));
    changes.rehearsal.limits = {outcome("ended", 3, 3)};
    QCOMPARE(int(verdictCode(changes, true)), int(ExitErrors));
    changes.rehearsal.limits.append(outcome("missing", 3, 4));
    QCOMPARE(int(verdictCode(changes, true)), int(ExitRefused));
}

void tst_RehearsalText::verdictLine_namesTheLimits()
{
    Changes changes = someChanges();
    changes.rehearsal.limits = {outcome("ended", 3, 3), outcome("missing", 3, 40),
                                outcome("leave-days-each", 60, 62.5)};
    QCOMPARE(verdictLine(changes),
             QStringLiteral("Refused, limits exceeded: missing (40, limit 3), leave-days-each "
                            "(62.5, limit 60); people who change: 1, errors: 0"));
}

void tst_RehearsalText::people_whoseRowsAreWrittenAgainAreCounted()
{
    const Changes changes = someChanges();
    QCOMPARE(changes.people.size(), 2);
    QCOMPARE(tellingPeople(changes), 1);
    RehearsalText text(changes, 100);
    text.addPage();
    QVERIFY(text.result().contains(QStringLiteral("\n1001.1 Eva Malá\n")));
    QVERIFY(!text.result().contains(QStringLiteral("1002.1")));
    QVERIFY(
        text.result().contains(QStringLiteral("\npeople whose rows are only written again: 1")));
}

void tst_RehearsalText::page_tellsOfExportAndCopy()
{
    Changes changes = someChanges();
    changes.rehearsal.findings = {uselessExport()};
    changes.rehearsal.leftOut = QStringList(QStringLiteral("There is no trigger."));
    changes.rehearsal.limits = {outcome("missing", 3, 40)};
    RehearsalText text(changes, 200);
    text.addPage();
    for (const char *line :
         {"\nthe export has no usable line: it is empty [E-FILE-NOTHING]\n",
          "\nThere is no trigger.\n",
          "\nLimit: missing: 40, and the limit is 3; to let it through this once: --allow "
          "missing=40.\n"})
        QVERIFY2(text.result().contains(QString::fromLatin1(line)), line);
}

void tst_RehearsalText::person_isFound_data()
{
    QTest::addColumn<QString>("meant");
    QTest::addColumn<QString>("text");
    const QString changed = QStringLiteral("1001.1 Eva Malá: memberships");
    QTest::newRow("number and ordinal") << "1001.1" << changed;
    QTest::newRow("number") << "1001" << changed;
    QTest::newRow("pid") << "10011" << changed;
    QTest::newRow("in both") << "1003"
                             << "Nothing changes for 1003.1 Iva Nová, who stands in line 3 of the "
                                "export and in the database.";
    QTest::newRow("in the database") << "1004.1"
                                     << "Nothing changes for 1004.1 Oto Rak, who stands in the "
                                        "database, and in no line of the export.";
    QTest::newRow("in the export") << "10051"
                                   << "Nothing changes for 10051, who stands in line 4 of the "
                                      "export, and not in the database.";
    QTest::newRow("nobody") << "100"
                            << "Nobody in the export or in the database is 100; a person is named "
                               "by a number such as 4711.1 or 4711, or by the pid.";
}

void tst_RehearsalText::person_isFound()
{
    QFETCH(QString, meant);
    QTEST(personOf(meant.toLatin1().constData(), true), "text");
    QCOMPARE(personOf("1001").left(48),
             QStringLiteral("1001.1 Eva Malá member of branch number 5 + brap"));
}

void tst_RehearsalText::missing_areActiveAndInNoLine()
{
    const QDate today(2026, 11, 22);
    const auto ended = [](uint pid, const QDate &end) {
        KnownPerson person = known(pid);
        person.end = QDateTime(end, QTime(23, 59, 59)).toSecsSinceEpoch();
        return person;
    };
    QVector<KnownPerson> people {known(10011), known(10021), known(0)};
    QCOMPARE(missingPeople(people, {lineOf(2, 1001, 10011)}, today), 1);
    QCOMPARE(missingPeople(people, {}, today), 2);
    people = {known(10031), ended(10041, today), ended(10051, today.addDays(-1))};
    QCOMPARE(missingPeople(people, {}, today), 2);
    people.first().isActive = false;
    QCOMPARE(missingPeople(people, {}, today), 1);
    // The plugin goes by the pamId.
    people = {known(77)};
    people.first().key = 10011;
    QCOMPARE(missingPeople(people, {lineOf(2, 1001, 10011)}, today), 0);
}

void tst_RehearsalText::html_hasTheLimitsOfTheDocument()
{
    Changes changes = someChanges();
    changes.rehearsal.limits = {outcome("memberships", 0, 1), outcome("missing", 3, 2),
                                outcome("ended", 4, 0)};
    const QVariantHash values = rehearsalHtmlValues(changes);
    QStringList rows;
    const QVariantList kinds = values.value(QStringLiteral("kinds")).toList();
    for (const QVariant &kind : kinds) {
        const QVariantHash row = kind.toHash();
        rows.append(QStringLiteral("%1 %2 %3 %4 %5%")
                        .arg(row.value(QStringLiteral("name")).toString(),
                             row.value(QStringLiteral("count")).toString(),
                             row.value(QStringLiteral("limit")).toString(),
                             row.value(QStringLiteral("exceeded")).toString(),
                             row.value(QStringLiteral("share")).toString()));
    }
    QCOMPARE(rows,
             QStringList({QStringLiteral("ended 0 4 false 0%"),
                          QStringLiteral("memberships 1 0 true 100%"),
                          QStringLiteral("missing 2 3 false 66%")}));
    QCOMPARE(values.value(QStringLiteral("people")).toList().size(), 1);
    QCOMPARE(values.value(QStringLiteral("silent")).toInt(), 1);
    QCOMPARE(values.value(QStringLiteral("plan")).toString(), QString());
    changes.rehearsal.limits.clear();
    QCOMPARE(rehearsalHtmlValues(changes).value(QStringLiteral("plan")).toString(),
             changes.plan.hash);
}

/// What has a limit fills its bar at the limit, and what has none with all people.
void tst_RehearsalText::html_hasOneScaleOfBars()
{
    Changes changes = someChanges();
    changes.summary = KindCounts();
    changes.summary[ChangeKind::Ended] = 3;
    changes.summary[ChangeKind::Leave] = 5;
    changes.summary[ChangeKind::Notices] = 21;
    changes.totals.activePeople = 20;
    changes.rehearsal.limits = {outcome("ended", 3, 3), outcome("missing", 2, 1)};
    QStringList bars;
    const QVariantHash values = rehearsalHtmlValues(changes);
    const QVariantList kinds = values.value(QStringLiteral("kinds")).toList();
    for (const QVariant &kind : kinds)
        bars.append(
            QStringLiteral("%1 %2").arg(kind.toHash().value(QStringLiteral("name")).toString(),
                                        kind.toHash().value(QStringLiteral("share")).toString()));
    QCOMPARE(bars,
             QStringList({QStringLiteral("ended 100"), QStringLiteral("leave 25"),
                          QStringLiteral("notices 100"), QStringLiteral("missing 50")}));
    QCOMPARE(values.value(QStringLiteral("activePeople")).toInt(), 20);
}

void tst_RehearsalText::plan_tellsWhatIsDifferent()
{
    const Changes now = someChanges();
    ChangesHeader before = now.header;
    before.state = QStringLiteral("x");
    before.exported.digest = QStringLiteral("y");
    QCOMPARE(planDifference(planHash(before, QString(64, QLatin1Char('0'))), now),
             QStringList({QStringLiteral("Not as it was when it was planned: the export, the "
                                         "database."),
                          QStringLiteral("would change now: 1001.1 Eva Malá: memberships")}));
}

void tst_RehearsalText::plan_tellsInWhom()
{
    QStringList rows;
    QStringList names;
    for (int uid = 1; uid <= 12; ++uid) {
        rows.append(QStringLiteral("5|%1|10").arg(uid));
        names.append(QStringLiteral("%1|%2|%3.1|A|B|1").arg(uid).arg(10000 + uid).arg(uid + 10));
    }
    const SnapshotBuilder before = SnapshotBuilder().with(QString::fromLatin1(somebody), names);
    const auto changesTo = [&](const QStringList &memberships) {
        Changes changes = changesOf(before,
                                    SnapshotBuilder()
                                        .with(QString::fromLatin1(somebody), names)
                                        .with(members, memberships));
        changes.plan.hash = planHash(changes.header, changes.plan.change);
        return changes;
    };
    const Changes planned = changesTo(texts({"5|1|10", "5|2|10"}));
    const QStringList same {QStringLiteral("All that is read is as it was.")};
    QCOMPARE(planDifference(planned, changesTo(texts({"5|1|99", "5|2|99"}))), same);
    QCOMPARE(planDifference(planned, changesTo(texts({"5|1|10", "6|3|10"}))),
             same
                 + QStringList({QStringLiteral("12.1 A B: planned: memberships; now: nothing"),
                                QStringLiteral("13.1 A B: planned: nothing; now: memberships")}));
    const QStringList many = planDifference(Changes(), changesTo(rows));
    QCOMPARE(many.size(), 12);
    QCOMPARE(many.last(), QStringLiteral("and 2 more people"));
}

QTEST_GUILESS_MAIN(tst_RehearsalText)
#include "tst_rehearsaltext.moc"
