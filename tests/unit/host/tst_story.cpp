// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass does with one person, as it is told.
#include "host/explain/storyparts.h"
#include "support/eventlog.h"
#include "support/localseconds.h"
#include "support/passchanges.h"

#include <QtTest>

namespace {

/// A pass in the making.
class Steps
{
public:
    Steps &say(const char *text, QtMsgType type = QtDebugMsg)
    {
        TraceStep step;
        step.type = type;
        step.text = str(text);
        steps.append(step);
        return *this;
    }

    Steps &ask(const QString &statement, int affected = -1)
    {
        TraceStep step;
        step.isMessage = false;
        step.text = statement;
        step.affected = affected;
        steps.append(step);
        return *this;
    }

    Steps &begin(bool forced = false)
    {
        say(forced ? "THRWorker: BEGIN synchronization #1 (force: YES)"
                   : "THRWorker: BEGIN synchronization #1 (force: NO)");
        return say("THRWorker::checkDovolenkaFond(): fid=2", QtInfoMsg)
            .say("THRWorker::doSyncRecord(1001.1 x)");
    }

    Steps &leave(const char *move, const char *rest)
    {
        say(qPrintable(str("THRWorker::dbCheckFundMove(pid: 10011): ") + str(move)), QtInfoMsg);
        return say(qPrintable(str("THRWorker::dbCheckAttendance(pid: 10011): ") + str(rest)),
                   QtInfoMsg);
    }

    operator TraceSteps() const { return steps; }

private:
    TraceSteps steps;
};

PersonLine lineOf(const char *name)
{
    PersonLine line;
    line.number = 7;
    line.pid = 10011;
    line.record.osobniCislo = 1001;
    line.record.poradoveCisloPP = 1;
    line.record.jmeno = str(name);
    line.record.prijmeni = str("Malá");
    line.record.datumNastupu = QDate(2015, 3, 1);
    line.record.stredisko = 100;
    line.record.dovolenaZustatek = 12.5;
    line.cells = lines({"1001", "1", "", name, "Malá"});
    return line;
}

ExplainFacts factsOf(const Snapshot &before, const Snapshot &after, const TraceSteps &steps,
                     const PassTold &told = {})
{
    ExplainFacts facts;
    facts.person.pid = 10011;
    facts.person.pamId = str("1001.1");
    facts.exportName = str("ron.data");
    facts.lines = {lineOf("Eva")};
    facts.before = before;
    facts.changes = changesOf(before, after, told);
    facts.steps = steps;
    facts.today = passDay;
    for (const TableRow &row : before.find(str("people"))->rows)
        facts.person.uids.append(row.first().toLongLong());
    return facts;
}

/// The lines of a chapter, what belongs to one of them with blanks in front.
QStringList told(const Story &story, const char *name)
{
    QStringList texts;
    for (const StoryChapter &chapter : story.chapters) {
        if (chapter.name != str(name))
            continue;
        for (const StoryLine &line : chapter.lines)
            texts.append((line.isDetail ? str("  ") : QString()) + line.text);
    }
    return texts;
}

/// Behind each row that is written, and each that is not.
const char *const compared
    = "  compared are, with the row: number, titles, name, phone, first and last day, calendar, "
      "branch, begin, end and text of the evidence state; with the line before: evidence state and "
      "type";

QString update()
{
    return str("UPDATE people SET pamId=1001.1, title='', name='Eva', surname='Malá', title2='', "
               "phone='', begin=5, end=NULL, edited=UNIX_TIMESTAMP(), editor=0, rsBegin=NULL, "
               "rsEnd=NULL, rsText='', type=1, did=1, calendarID=1, bid=1  WHERE pid=10011");
}

} // namespace

class tst_Story : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void page_tellsAllInItsOrder();
    void leaveLeftAlone_hasItsReason_data();
    void leaveLeftAlone_hasItsReason();
    void balance_isSettled_data();
    void balance_isSettled();
    void whoIsNotWritten_isTold_data();
    void whoIsNotWritten_isTold();
    void waitingRecord_hasItsRemedy();
    void inactiveRow_comesBack();
    void newMember_isPropagated();
    void error_isTheVerdict();
    void droppedLine_isTold();
    void nobodyInTheExport_isLeftAlone();
    void hiddenNames_areNowhere();
};

void tst_Story::page_tellsAllInItsOrder()
{
    const char *const people = "people: uid|pid|pamId|name|surname|status|phone|bid|lastCalc";
    const SnapshotBuilder before = SnapshotBuilder()
                                       .with(people, {"1|10011|1001.1|Eva|Malá|1|5|1|0"})
                                       .with("people_term: tid|uid", {"3|1"})
                                       .named("bid", 1, "100 Riaditeľstvo")
                                       .named("tid", 3, "Vrátnica");
    const SnapshotBuilder after = SnapshotBuilder()
                                      .with(people, {"1|10011|1001.1|Eva|Malá|1|7|NULL|0"})
                                      .with("people_term: tid|uid", {"3|1"})
                                      .with("term_sync: id|tid|type|ref_col|ref_id",
                                            {"1|3|U|uid|1"})
                                      .named("bid", 1, "100 Riaditeľstvo")
                                      .named("tid", 3, "Vrátnica");
    const TraceSteps steps
        = Steps()
              .begin()
              .leave("OK - non exists", "OK")
              .say("THRWorker::dbUpdatePerson(1001.1 x)")
              .ask(update(), 1)
              .ask(str("INSERT INTO `term_sync` (tid, type, ref, ref_col, ref_id, created, flags) "
                       "SELECT `tid` tid, 'U' type, 'people' ref, 'uid' ref_col, 1 ref_id, "
                       "UNIX_TIMESTAMP() created, 2 flags FROM people_term JOIN term USING(tid) "
                       "WHERE status = 1 AND uid = 1 AND (flags & 2);"),
                   1)
              .say("THRWorker::loadFundStatusAndMove3(pid: 10011): 1250, load OK: YES", QtInfoMsg)
              .say("THRWorker: END synchronization #1 (waiting records: 0)");
    const Story story = tellStory(factsOf(before, after, steps));
    QCOMPARE(
        storyText(story, false, 100).split(QLatin1Char('\n')),
        lines(
            {"1001.1 (pid 10011, uid 1), taken by pamId",
             "",
             "The export",
             "  Line 7 of ron.data is taken: 1001.1 Eva Malá",
             "    first day 2015-03-01, last day none, branch 100, calendar 0, type 0, state 0, evidence state",
             "      0, leave 12.5, supervisor 0",
             "",
             "The database before the pass",
             "  Their row has the uid 1 and is active: 1001.1 Eva Malá",
             "    first day none, last day none, branch 100 Riaditeľstvo, calendar none, "
             "calculated up to 0",
             "    member of branches: none; on terminals: Vrátnica",
             "    under administrators: none; supervisor: none",
             "    group plan: none",
             "    attendance: 0 unlocked days, all of them calculated",
             "",
             "The pass",
             "  The first pass of a freshly started server, which remembers no export: each "
             "line is new to it.",
             "  Leave may be looked at: there is no correction of today, and attendance is "
             "at rest.",
             "  Their row is written.",
             "    compared are, with the row: number, titles, name, phone, first and last day, "
             "calendar, branch,",
             "      begin, end and text of the evidence state; with the line before: evidence state "
             "and type",
             "    phone: 5 becomes 7",
             "    branch: 100 Riaditeľstvo becomes none",
             "  The terminals that they are on are told of it: 1.",
             "  The leave fund holds 12.50 days, of moves before this month and of "
             "corrections, as the line",
             "    says: nothing is corrected.",
             "",
             "What is written",
             "  people: phone 5 -> 7",
             "  people: bid 1 (100 Riaditeľstvo) -> NULL",
             "  + term_sync id 1, tid 3 (Vrátnica), type 'U'",
             "",
             "What waits, or does not happen",
             "  Nothing.",
             "",
             "What terminals are told",
             "  Terminal Vrátnica: their row has changed.",
             "",
             "What changes: updated, moved, notices.",
             "There is nothing to do.",
             ""}));
    QVERIFY(storyText(story, true, 500).contains(str("\n    > ") + update()));
    QCOMPARE(story.exitCode, ExitClean);
}

void tst_Story::leaveLeftAlone_hasItsReason_data()
{
    QTest::addColumn<QString>("move");
    QTest::addColumn<QStringList>("days"); ///< day, ok, lock
    QTest::addColumn<QString>("calc");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *reason, const char *move, const QStringList &days,
                        const QString &calc) {
        QTest::newRow(reason) << str(move) << days << calc << str(reason);
    };
    const auto day = [](int monthDay, int mark, int lock) {
        return QStringLiteral("1|%1|%2|%3")
            .arg(localSeconds(QDate(2026, 11, monthDay)))
            .arg(mark)
            .arg(lock);
    };
    const QString moment = QString::number(localSeconds(passDay, 11, 55, 1));
    const QString none = str("0");
    row("there is a correction of today already", "exists", {}, none);
    row("2 days since 2026-11-01 are not calculated yet", "OK - non exists",
        {day(1, -1, 0), day(2, -1, 0), day(3, 1, 0), day(4, -1, 1)}, moment);
    row("1 days from today on are not calculated yet", "OK - non exists",
        {day(21, -2, 0), day(22, -2, 0)}, none);
    row("the last calculation was at 2026-11-22 11:55:01, and the plugin keeps a quarter of an hour "
        "away from one",
        "OK - non exists", {day(1, 1, 0)}, moment);
    row("attendance is not at rest", "OK - non exists", {}, none);
    row("there is a correction of today already; 1 days since 2026-11-02 are not calculated yet",
        "exists", {day(2, -1, 0)}, none);
}

void tst_Story::leaveLeftAlone_hasItsReason()
{
    QFETCH(QString, move);
    QFETCH(QStringList, days);
    QFETCH(QString, calc);
    QFETCH(QString, reason);
    const SnapshotBuilder before = SnapshotBuilder()
                                       .with(str("people: uid|pid|pamId|status|calc"),
                                             {str("1|10011|1001.1|1|") + calc})
                                       .with(str("atten: uid|date|ok|lock"), days);
    const bool isMoveOnly = reason == str("there is a correction of today already");
    const Steps steps = Steps().begin().leave(qPrintable(move), isMoveOnly ? "OK" : "NO OK");
    const QStringList pass = told(tellStory(factsOf(before, before, steps)), "pass");
    QCOMPARE(pass.value(1), QStringLiteral("Leave is left alone: %1.").arg(reason));
}

void tst_Story::balance_isSettled_data()
{
    QTest::addColumn<int>("balance");
    QTest::addColumn<int>("correction");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("short") << 1000 << 250
                           << "The leave fund holds 10.00 days, of moves before this month and of "
                              "corrections, and the line says 12.50 days: a correction of 2.50 "
                              "days is written for today.";
    QTest::newRow("below zero") << -50 << -5
                                << "The leave fund holds -0.50 days, of moves before this month "
                                   "and of corrections, and the line says -0.55 days: a correction "
                                   "of -0.05 days is written for today.";
    QTest::newRow("in line") << 1250 << 0
                             << "The leave fund holds 12.50 days, of moves before this month and "
                                "of corrections, as the line says: nothing is corrected.";
}

void tst_Story::balance_isSettled()
{
    QFETCH(int, balance);
    QFETCH(int, correction);
    Steps steps = Steps().begin().leave("OK - non exists", "OK");
    steps.say("THRWorker::dbUpdatePerson(1001.1 x)").ask(update(), 0);
    steps.say(
        qPrintable(QStringLiteral("THRWorker::loadFundStatusAndMove3(pid: 10011): %1, load OK: YES")
                       .arg(balance)),
        QtInfoMsg);
    if (correction != 0)
        steps.ask(QStringLiteral("INSERT INTO funds_move (type, day, month, value, fid, uid) "
                                 "VALUES(3, 5, monthFromTimestamp(5), %1, 2, 1) "
                                 "ON DUPLICATE KEY UPDATE value=VALUES(value)")
                      .arg(correction),
                  1);
    const Snapshot both = onePerson();
    const QStringList pass = told(tellStory(factsOf(both, both, steps)), "pass");
    QTEST(pass.last(), "sentence");
    QCOMPARE(pass.value(2),
             str("Their row is written with what it holds already: nothing has changed, and no "
                 "terminal is told."));
}

void tst_Story::whoIsNotWritten_isTold_data()
{
    QTest::addColumn<QString>("row");
    QTest::addColumn<QDate>("lastDay");
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("known") << "1|10011|1001.1|Eva|Malá|1" << QDate() << 1
                           << "Their row is not written: nothing that the plugin compares differs "
                              "from it.";
    const QString nobody = str("Nobody is added, for only somebody who is employed today would be: "
                               "%1.");
    QTest::newRow("gone by") << QString() << QDate(2026, 11, 21) << 1
                             << nobody.arg(str("its last day is 2026-11-21"));
    QTest::newRow("ended") << "1|10011|1001.1|Eva|Malá|0" << QDate(2026, 11, 22) << 4
                           << nobody.arg(str("its state is 4"));
}

void tst_Story::whoIsNotWritten_isTold()
{
    QFETCH(QString, row);
    QFETCH(QDate, lastDay);
    QFETCH(int, state);
    const SnapshotBuilder both = SnapshotBuilder().with(
        str(somebody), row.isEmpty() ? QStringList() : QStringList(row));
    ExplainFacts facts = factsOf(both, both, Steps().begin());
    facts.lines[0].record.datumVystupu = lastDay;
    facts.lines[0].record.stavPracovnihoPomeru = static_cast<ushort>(state);
    QTEST(told(tellStory(facts), "pass").value(1), "sentence");
}

void tst_Story::waitingRecord_hasItsRemedy()
{
    const char *const text = "THRWorker: Branch '99' NOT FOUND for employee: '1001.1 Malá Eva'";
    PassTold said;
    PassNotes notes;
    notes.message(QtDebugMsg, str("THRWorker: BEGIN synchronization #1 (force: YES)"));
    notes.message(QtWarningMsg, str(text));
    notes.message(QtDebugMsg, str("THRWorker: END synchronization #1 (waiting records: 1)"));
    said = notes.take();
    const Snapshot both = onePerson();
    const Story story = tellStory(factsOf(both, both,
                                          Steps()
                                              .begin(true)
                                              .say("THRWorker::dbUpdatePerson(1001.1 x)")
                                              .ask(update(), 1)
                                              .say(text, QtWarningMsg)
                                              .say("THRWorker: END synchronization #1 (waiting "
                                                   "records: 1)"),
                                          said));
    QCOMPARE(
        told(story, "pass"),
        lines({"A forced pass of a freshly started server, which remembers no export: each "
               "line is new to it.",
               "Their row is written.", compared,
               "  no column differs: after a start everybody is written once",
               "Warning: THRWorker: Branch '99' NOT FOUND for employee: '1001.1 Malá Eva'",
               "  No branch has the number. The record waits. By itself it would make the "
               "person a member, but leave people.bid empty. Make the branch or enter the "
               "number, then force a pass.",
               "Records of theirs that wait for branch and calendar at the end of the pass: 1."}));
    QVERIFY(told(story, "waiting").first().startsWith(str("The record waits, for no branch ")));
    QCOMPARE(story.verdict, str("Something waits; what changes: waiting."));
    QCOMPARE(story.next, str("Make the branch or enter the number, then force a pass."));
    QCOMPARE(story.exitCode, ExitClean);
}

void tst_Story::inactiveRow_comesBack()
{
    const SnapshotBuilder before = SnapshotBuilder().with(somebody, {"1|10011|1001.1|Eva|Malá|0"});
    const QString add = str(
        "INSERT INTO people (pid, pamId, title, name, surname, title2, phone, begin, end, created, "
        "rsBegin, rsEnd, rsText, type, did, calendarID, bid) VALUES('10011', '1001.1', '', 'Eva', "
        "'Malá', '', '', 5, NULL, UNIX_TIMESTAMP(), NULL, NULL, '', 1, 1, 0, NULL) ON DUPLICATE "
        "KEY UPDATE pamId=VALUES(pamId), title=VALUES(title), name=VALUES(name), "
        "surname=VALUES(surname), title2=VALUES(title2), phone=VALUES(phone), "
        "begin=VALUES(begin), end=VALUES(end), edited=VALUES(created), status=1, "
        "type=VALUES(type), did=1");
    const Story story = tellStory(factsOf(
        before, onePerson(), Steps().begin().say("THRWorker::dbAddPerson(1001.1 x)").ask(add, 2)));
    QVERIFY(told(story, "database").first().contains(str("is inactive (status 0)")));
    QCOMPARE(told(story, "pass").value(1),
             str("There is no active row, so they are added, and their inactive row becomes active "
                 "again."));
    QCOMPARE(story.verdict, str("What changes: revived."));
}

void tst_Story::newMember_isPropagated()
{
    const SnapshotBuilder both = SnapshotBuilder(onePerson())
                                     .named("bid", 5, "100 Riaditeľstvo")
                                     .named("gid", 11, "Kancelárie")
                                     .named("tid", 3, "Vrátnica")
                                     .named("aid", 4, "9001");
    const TraceSteps steps
        = Steps()
              .begin()
              .say("THRWorker::dbUpdatePerson(1001.1 x)")
              .ask(update(), 0)
              .ask(str("SELECT COUNT(*) FROM brape WHERE bid = 5 AND uid = (SELECT uid FROM people "
                       "WHERE pid = 10011 LIMIT 1);"))
              .ask(str("SELECT COUNT(*) FROM groups_plan WHERE gid = 11 AND uid = 1 AND since = "
                       "202611;"))
              .ask(str("UPDATE atten SET ok = -1 WHERE `lock` =0 AND `man`=0 AND `date` >= ")
                       + QString::number(localSeconds(QDate(2026, 10, 1))) + str(" AND uid =1"),
                   3)
              .say("THRWorker: END synchronization #1 (waiting records: 0)")
              .ask(str("INSERT INTO brape (bid, uid, since) SELECT 5 bid, uid, UNIX_TIMESTAMP() "
                       "since FROM people WHERE uid IN(1) ON DUPLICATE KEY UPDATE "
                       "since=UNIX_TIMESTAMP()"),
                   1)
              .ask(str("INSERT INTO people_term (tid, uid) VALUES (3, 1) ON DUPLICATE KEY UPDATE "
                       "tid=VALUES(tid);"),
                   1)
              .ask(str("INSERT INTO admins_people (aid, uid) VALUES (4, 1) ON DUPLICATE KEY UPDATE "
                       "uid=VALUES(uid);"),
                   1);
    const QStringList pass = told(tellStory(factsOf(both, both, steps)), "pass");
    QCOMPARE(pass.mid(2, 3),
             lines({"They are no member of branch 100 Riaditeľstvo yet, and become one at the end "
                    "of the pass.",
                    "The group plan stands already: Kancelárie from month 2026-11 on.",
                    "Attendance since 2026-10-01 is to be calculated again: 3 days."}));
    QCOMPARE(pass.mid(6),
             lines({"They become a member of branch 100 Riaditeľstvo.", "  on terminals: Vrátnica",
                    "  under administrators: 9001"}));
}

void tst_Story::error_isTheVerdict()
{
    const Snapshot both = onePerson();
    const char *const text = "THRWorker::dbUpdatePerson(1001.1) - SQL ERROR: near 'Malá'";
    ExplainFacts facts = factsOf(
        both, both,
        Steps().begin().say("THRWorker::dbUpdatePerson(1001.1 x)").say(text, QtCriticalMsg));
    facts.changes.summary[ChangeKind::Errors] = 1;
    const Story story = tellStory(facts);
    QCOMPARE(told(story, "pass").mid(1),
             lines({"Error: THRWorker::dbUpdatePerson(1001.1) - SQL ERROR: near 'Malá'",
                    "  The statement that updates the person failed. The row stays as it was. Look "
                    "for an apostrophe; afterwards force a pass."}));
    QCOMPARE(story.verdict, str("The pass has errors about them."));
    QCOMPARE(story.exitCode, ExitErrors);
}

void tst_Story::droppedLine_isTold()
{
    const Snapshot both = onePerson();
    ExplainFacts facts = factsOf(both, both,
                                 Steps().say("THRWorker: BEGIN synchronization #1 "
                                             "(force: NO)"));
    facts.lines[0].fate = LineFate::NoName;
    facts.findings = {{&findingKind("E-LINE-NAME"), 7, 0, {}, {}},
                      {&findingKind("E-LINE-NAME"), 8, 0, {}, {}}};
    const Story story = tellStory(facts);
    const QStringList exported = told(story, "export");
    QCOMPARE(exported.size(), 2);
    QCOMPARE(exported.first(), str("Line 7 of ron.data is dropped: nothing is made of it."));
    QVERIFY(exported.last().startsWith(str("  error: ")));
    QVERIFY(exported.last().endsWith(str("[E-LINE-NAME]")));
    QCOMPARE(story.verdict, str("Their line is dropped, so the pass leaves them alone."));
    QCOMPARE(story.next, str("Mend the line in the HR system."));
}

void tst_Story::nobodyInTheExport_isLeftAlone()
{
    const Snapshot both = onePerson();
    ExplainFacts facts = factsOf(both, both, {});
    facts.lines.clear();
    const Story story = tellStory(facts);
    QCOMPARE(told(story, "export"), lines({"No line of ron.data is about them."}));
    QVERIFY(told(story, "pass").first().startsWith(str("No record is about them, so nothing ")));
    QCOMPARE(story.verdict, str("They are not in the export, so the pass leaves them alone."));
}

void tst_Story::hiddenNames_areNowhere()
{
    const SnapshotBuilder after = SnapshotBuilder().with(somebody, {"1|10011|1001.1|Zoe|Veľká|1"});
    ExplainFacts facts = factsOf(
        onePerson(), after,
        Steps()
            .begin()
            .say("THRWorker::dbUpdatePerson(1001.1 x)")
            .ask(update(), 1)
            .say("THRWorker: Branch '99' NOT FOUND for employee: '1001.1 Malá Eva'", QtWarningMsg)
            .say("Malá", QtWarningMsg));
    facts.person.name = str("Eva Malá");
    hideNames(&facts);
    const QString text = storyText(tellStory(facts), true, 200);
    for (const char *name : {"Eva", "Malá", "Zoe", "Veľká"})
        QVERIFY2(!text.contains(str(name)), qPrintable(text));
    for (const char *part : {"1001.1 …", "name: … becomes …", "Branch '99' NOT FOUND", "'1001.1 …'",
                             "SET pamId=1001.1, title='…'", "leave 12.5"})
        QVERIFY2(text.contains(str(part)), qPrintable(text + str(part)));
    TraceStep step;
    step.text = str("SELECT 'Eva', ?, ?, ?");
    step.values = {str("Malá"), 7.0, QVariant()};
    QCOMPARE(statementText(step, PersonalTexts::Hidden),
             str("SELECT '…', ?, ?, ? with …, 7, NULL"));
    QCOMPARE(statementText(step, PersonalTexts::Shown),
             str("SELECT 'Eva', ?, ?, ? with Malá, 7, NULL"));
}

QTEST_GUILESS_MAIN(tst_Story)
#include "tst_story.moc"
