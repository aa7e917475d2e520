// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A pass in which any one call of the database fails, or some from any one on, or all.
#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"
#include "support/catalogue/knownevents.h"
#include "support/faults/expectedpass.h"
#include "support/localseconds.h"
#include "support/workerfixture.h"

#include <QRegularExpression>
#include <QtTest>

#include <algorithm>

namespace {

const uint firstNumber = 9001;
/// The pid of somebody whom the database held in a pass before.
const uint goneBefore = 1;
const uint people = 9;

/// How many calls fail in a row.
const QVector<int> outages {2, 3, 10};
const int toTheEnd = 1000;

/// What the table calls the person: A for 1.
QString letter(uint person)
{
    return QStringLiteral("ABCDEFGHI").mid(static_cast<int>(person) - 1, 1);
}

/// A worker that has not ticked yet and the company of passTable() around it.
///
/// Found uids last as long as the process, so each company has people of its own: a number of the
/// table stands for that number behind the company's own, such as 10479001 for 9001.
class Company : public WorkerFixture
{
public:
    explicit Company(int level) :
        company(++companies)
    {
        init();
        peer.db.close();
        peer.logLevel = static_cast<quint8>(level);
        peer.branchesRepo->logLevel = peer.logLevel;
        peer.groupsPlanRepo->logLevel = peer.logLevel;
        peer.syncInterval = 1;
        peer.mes.insert(5, QStringLiteral("maternity"));
        answerAboutSettings();
        answerAboutPeople();
        answerAboutBranches();
        writeExportOfAll();
        // Of a pass before: only the people stay when they cannot be read again.
        peer.branches = {{10, 1}, {20, 2}};
        peer.dbPeople.insert(goneBefore, EmployeeRecord());
        const EmployeeRecord g = numbered(7).branch(20).calendar(6);
        const EmployeeRecord i = numbered(9).branch(20);
        peer.lastRecords = {{g.pid(), g}, {i.pid(), i}};
        peer.waitingRecords.append(i);
        callsBefore = script.callCount();
        log.clear();
    }

    void strike(Fault fault)
    {
        script.failCalls(callsBefore + fault.first, callsBefore + fault.last);
    }
    void heal() { script.failCall(0); }
    int callCount() const { return script.callCount() - callsBefore; }

    /// The events of a pass as the table tells them.
    QStringList take()
    {
        QStringList told;
        all = log.take();
        for (const QString &event : qAsConst(all)) {
            if ((!event.startsWith(QLatin1String("debug "))
                 && !event.startsWith(QLatin1String("info ")))
                || event.startsWith(QLatin1String("debug THRWorker::doSyncRecord("))
                || event.startsWith(QLatin1String("debug THRWorker: ")))
                told.append(event);
        }
        return told;
    }

    /// All events of the pass that take() gave last.
    const QStringList &allEvents() const { return all; }

    /// Texts of the table with the numbers of this company.
    QStringList own(QStringList texts) const
    {
        return texts.replaceInStrings(QRegularExpression(QStringLiteral("\\b900([1-9])")),
                                      QString::number(company) + QStringLiteral("900\\1"));
    }
    QString own(const QString &text) const { return own(QStringList {text}).first(); }

    uint number(uint person) const
    {
        return own(QString::number(firstNumber - 1 + person)).toUInt();
    }

private:
    RecordBuilder numbered(uint person) const { return record().pid(number(person), 1); }

    ScriptedAnswer &on(const char *text) { return script.on(own(QString::fromUtf8(text))); }

    ScriptedAnswer &answer(const char *text, const QVector<QVariantList> &rows)
    {
        QStringList columns;
        for (int i = 0; i < rows.first().size(); ++i)
            columns.append(QStringLiteral("column%1").arg(i));
        return on(text).withRows(columns, rows);
    }

    void answerAboutSettings()
    {
        on("FROM vars WHERE name='OQS.THRWorker.forceSync'")
            .withRows({QStringLiteral("value")}, {{QStringLiteral("1")}});
        listInPam(own(QStringLiteral("5,90021")));
    }

    void answerAboutPeople()
    {
        QVector<QVariantList> rows;
        for (uint person = 4; person <= people; ++person) {
            const uint calendarID = person == 5 ? 4 : person == 7 ? 6 : 0;
            const uint branch = person == 7 || person == 9 ? 20 : 10;
            rows.append({number(person) * 10 + 1, QStringLiteral("%1.1").arg(number(person)),
                         QString(), QStringLiteral("Ján"), QStringLiteral("Novák"), QString(),
                         QString(), localSeconds(QDate(2015, 3, 1)), 0, 0, 0, QString(), calendarID,
                         branch});
        }
        answer("SELECT p.pid, p.pamId", rows);
        for (uint person = 1; person <= people; ++person) {
            const uint pid = number(person) * 10 + 1;
            const QVector<QVariantList> uid {{100 + person}};
            answer(qPrintable(QStringLiteral("exec SELECT uid FROM people WHERE pid=%1").arg(pid)),
                   uid);
            answer(
                qPrintable(QStringLiteral("exec SELECT uid FROM people WHERE pid = %1").arg(pid)),
                uid);
            if (person > 3)
                answer(qPrintable(QStringLiteral("FROM people p WHERE pid = %1").arg(pid)),
                       {{100 + person, 0, 0}});
        }
        on("INSERT INTO people (").withInsertId(101).withAffected(1);
        on("INSERT INTO people_pam ").withAffected(1);
        on("UPDATE people SET pamId").withAffected(1);
        on("UPDATE people SET pamId=9005.1").withAffected(0);

        answer("SELECT fid FROM funds", {{7}});
        answer("SELECT COUNT(*) FROM funds_move", {{0}});
        answer("exec SELECT COUNT(*) FROM atten", {{0}});
        answer("  AND fm.fid = 7 AND p.pid = 90041", {{1000}});
        answer("()) AND fm.fid = 7 AND p.pid = 90041", {{50}});
        answer("  AND fm.fid = 7 AND p.pid = 90061", {{1200}});
        answer("()) AND fm.fid = 7 AND p.pid = 90061", {{-200}});
        answer("AND fm.fid = 7 AND p.pid = 90081", {{QVariant()}});
        on("INSERT INTO funds_move").withAffected(1);

        answer("SELECT aid FROM admins WHERE", {{6}});
        on("UPDATE admins_people SET request =0").withAffected(1);
        on("UPDATE admins_people SET request =0 WHERE uid=106").withAffected(0);
        on("INSERT INTO admins_people (aid, uid, request)").withAffected(1);
    }

    void answerAboutBranches()
    {
        answer("SELECT bid, number FROM branches", {{1, 10}, {2, 20}});
        answer("SELECT COUNT(*) FROM brape", {{0}});
        answer("(SELECT uid FROM people WHERE pid = 90051 LIMIT 1", {{1}});
        answer("(SELECT uid FROM people WHERE pid = 90071 LIMIT 1", {{1}});
        answer("bid = 1 AND g.calendarID = 3", {{13}});
        answer("bid = 1 AND g.calendarID = 4", {{14}});
        answer("bid = 2 AND g.calendarID = 5", {{15}});
        answer("bid = 2 AND g.calendarID = 6", {{16}});
        answer("SELECT COUNT(*) FROM groups_plan", {{0}});
        answer("gid = 15 AND uid = 104 AND since = 202103", {{1}});
        answer("gid = 16 AND uid = 107 AND since = 0", {{1}});
        on("INSERT INTO groups_plan").withAffected(1);
        // These rows are there.
        on("INSERT INTO groups_plan (gid, uid, since) VALUES(15, 104, 202103)").withAffected(0);
        on("INSERT INTO groups_plan (gid, uid, since) VALUES(16, 107, 0)").withAffected(0);
        on("INSERT INTO brape").withAffected(1);
        on("FROM people WHERE uid IN(0)").withAffected(0);
        answer("FROM term WHERE status > 0 AND bid = 1", {{31}, {32}});
        answer("FROM term WHERE status > 0 AND bid = 2", {{33}});
        answer("SELECT aid FROM bradm WHERE bid = 1", {{8}, {9}});
    }

    void writeExportOfAll()
    {
        const QDate past(2021, 3, 1);
        const QString phone = QStringLiteral("111");
        writeExport({exportHeader(), numbered(1).branch(10).calendar(3, past).supervisor(55).line(),
                     numbered(2).tpp(51).supervisor(55).line(),
                     numbered(3).branch(10).relationState(4).line(),
                     numbered(4)
                         .phone(phone)
                         .branch(20)
                         .calendar(5, past)
                         .es(5)
                         .balance(12.5)
                         .supervisor(56)
                         .line(),
                     numbered(5).branch(10).calendar(4, QDate(2099, 3, 1)).tpp(54).line(),
                     numbered(6)
                         .employed(QDate(2015, 3, 1), QDate(2020, 12, 31))
                         .branch(10)
                         .tpp(65)
                         .balance(10)
                         .supervisor(57)
                         .line(),
                     numbered(7).branch(20).calendar(6).line(),
                     numbered(8).branch(10).balance(-2).line(), numbered(9).branch(20).line()});
    }

    static int companies;
    const int company;
    QStringList all;
    int callsBefore = 0;
};

int Company::companies = 1000;

/// Whether the text is the pattern, in which "..." stands for anything.
bool matches(const QString &text, const QString &pattern)
{
    const QStringList parts = pattern.split(QStringLiteral("..."));
    if (parts.size() == 1)
        return text == pattern;
    if (!text.startsWith(parts.first()) || !text.endsWith(parts.last()))
        return false;
    int from = parts.first().size();
    for (int i = 1; i + 1 < parts.size(); ++i) {
        const int found = text.indexOf(parts.at(i), from);
        if (found < 0)
            return false;
        from = found + parts.at(i).size();
    }
    return from + parts.last().size() <= text.size();
}

/// Whom the call of the table is about: the person whose letter its id begins with, or those in its
/// lists.
NamedPeople peopleOf(const QString &id, const QString &text, NamedPeople::Key key,
                     const Company &company)
{
    NamedPeople named {key, {}};
    const int person = QStringLiteral(".ABCDEFGHI").indexOf(id.at(0));
    if (person > 0) {
        const uint number = static_cast<uint>(person);
        named.ids = {key == NamedPeople::Pid ? company.number(number) * 10 + 1 : 100 + number};
        return named;
    }
    const bool pairs = text.contains(QLatin1String(" VALUES ("));
    auto uids = QRegularExpression(pairs ? QStringLiteral("\\(\\d+, (\\d+)\\)")
                                         : QStringLiteral("(?:IN\\(|,) ?(\\d+)(?=,|\\))"))
                    .globalMatch(text);
    while (uids.hasNext())
        named.ids.append(uids.next().captured(1).toUInt());
    return named;
}

/// Where the events leave the patterns, in words; empty where they nowhere do.
QString firstDifference(const QStringList &events, const QStringList &patterns)
{
    for (int i = 0; i < qMax(events.size(), patterns.size()); ++i) {
        if (i < qMin(events.size(), patterns.size()) && matches(events.at(i), patterns.at(i)))
            continue;
        return QStringLiteral("event %1 is '%2' instead of '%3', after '%4'")
            .arg(QString::number(i), events.value(i), patterns.value(i), events.value(i - 1));
    }
    return QString();
}

} // namespace

Q_DECLARE_METATYPE(Fault)

class tst_FaultSweep : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void table_hasNoIdleRow();
    void matches_takesDotsForAnything();
    void pass_withoutAFaultIsTheTable_data();
    void pass_withoutAFaultIsTheTable();
    void catalogue_hasThePersonOfEachCall();
    void pass_withOneFailingCallOwesWhatTheTableTells_data();
    void pass_withOneFailingCallOwesWhatTheTableTells();
    void pass_withSomeFailingCallsOwesWhatTheTableTells_data();
    void pass_withSomeFailingCallsOwesWhatTheTableTells();
    void pass_withAllLaterCallsFailingOwesWhatTheTableTells_data();
    void pass_withAllLaterCallsFailingOwesWhatTheTableTells();

private:
    static void addColumns();
    static void addFaults(const QVector<int> &levels, int length);
    static void runPass();
    static void compareMembers(const Company &company, const ExpectedPass &expected);
    static void runNextPass(Company &company);
};

void tst_FaultSweep::initTestCase()
{
    // Branches get their people in the order of a hash: the table has branch 1 first.
    qSetGlobalQHashSeed(0);
}

/// Each message of the table is owed at some fault or other: what could never come would say
/// nothing of the plugin.
void tst_FaultSweep::table_hasNoIdleRow()
{
    QSet<int> reached;
    const int calls = ExpectedPass(0, {}).calls().size();
    QCOMPARE(calls, 135); // docs/testing.md names it
    for (int i = 1; i <= calls; ++i) {
        for (const int length : QVector<int> {1, toTheEnd} + outages)
            reached += ExpectedPass(0, {i, i + length - 1}).rows();
    }
    const PassRows table = passTable();
    QStringList idle;
    for (int i = 0; i < table.size(); ++i) {
        if (!reached.contains(i))
            idle.append(table.at(i).id + QLatin1Char(' ') + table.at(i).text);
    }
    QCOMPARE(idle, QStringList());
}

void tst_FaultSweep::matches_takesDotsForAnything()
{
    const QString text = QStringLiteral("one two three");
    QVERIFY(matches(text, QStringLiteral("one two three")));
    QVERIFY(matches(text, QStringLiteral("one...three")));
    QVERIFY(matches(text, QStringLiteral("one ...t...e")));
    QVERIFY(matches(text, QStringLiteral("one two three...")));
    QVERIFY(!matches(text, QStringLiteral("one two")));
    QVERIFY(!matches(text, QStringLiteral("one...two")));
    QVERIFY(!matches(text, QStringLiteral("two...three")));
    QVERIFY(!matches(text, QStringLiteral("one...four...three")));
    QVERIFY(!matches(text, QStringLiteral("one three...three")));
    QVERIFY(!matches(text, QStringLiteral("one two three...three")));
}

void tst_FaultSweep::pass_withoutAFaultIsTheTable_data()
{
    QTest::addColumn<int>("level");
    for (const int level : {0, 1, 2, 3})
        QTest::addRow("level %d", level) << level;
}

void tst_FaultSweep::pass_withoutAFaultIsTheTable()
{
    QFETCH(int, level);
    Company company(level);
    company.tick();
    const ExpectedPass expected(level, {});
    QCOMPARE(company.callCount(), expected.calls().size());
    const QStringList events = company.take();
    QCOMPARE(firstDifference(events, company.own(expected.events())), QString());
    QCOMPARE(strangers(company.allEvents(), level), QStringList());
    // Nobody has any reason to complain.
    QCOMPARE(complaints(events), QStringList());
    compareMembers(company, expected);
}

void tst_FaultSweep::catalogue_hasThePersonOfEachCall()
{
    Company company(0);
    company.tick();
    const QStringList calls = ExpectedPass(0, {}).calls();
    const QStringList events = company.take();
    QCOMPARE(events.size(), calls.size());
    KnownEvents known;
    QSet<QString> aboutNobody;
    for (int i = 0; i < calls.size(); ++i) {
        if (!KnownEvents::isStatement(events.at(i)))
            continue;
        const NamedPeople named = peopleIn(known.statement(events.at(i)));
        if (named.key == NamedPeople::Nobody)
            aboutNobody.insert(calls.at(i).section(QLatin1Char('.'), -1));
        else
            QCOMPARE(named, peopleOf(calls.at(i), events.at(i), named.key, company));
    }
    const QStringList expected = lines({"force", "people", "branches", "fund", "blocks", "list",
                                        "prepare", "admin", "group", "terminals", "mark", "admins",
                                        "cleared"});
    QCOMPARE(aboutNobody, QSet<QString>(expected.begin(), expected.end()));
}

void tst_FaultSweep::addColumns()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<Fault>("fault");
}

void tst_FaultSweep::addFaults(const QVector<int> &levels, int length)
{
    const QStringList calls = ExpectedPass(0, {}).calls();
    for (const int level : levels) {
        for (int i = 0; i < calls.size(); ++i) {
            QTest::addRow("level %d, %d from call %d: %s", level, length, i + 1,
                          qPrintable(calls.at(i)))
                << level << Fault {i + 1, i + length};
        }
    }
}

void tst_FaultSweep::pass_withOneFailingCallOwesWhatTheTableTells_data()
{
    addColumns();
    addFaults({0, 1, 3}, 1);
}

void tst_FaultSweep::pass_withOneFailingCallOwesWhatTheTableTells()
{
    runPass();
}

/// A database that is away for a while.
void tst_FaultSweep::pass_withSomeFailingCallsOwesWhatTheTableTells_data()
{
    addColumns();
    for (const int length : outages)
        addFaults({3}, length);
}

void tst_FaultSweep::pass_withSomeFailingCallsOwesWhatTheTableTells()
{
    runPass();
}

/// A database that does not come back.
void tst_FaultSweep::pass_withAllLaterCallsFailingOwesWhatTheTableTells_data()
{
    addColumns();
    addFaults({0, 1, 3}, toTheEnd);
}

void tst_FaultSweep::pass_withAllLaterCallsFailingOwesWhatTheTableTells()
{
    runPass();
}

void tst_FaultSweep::runPass()
{
    QFETCH(int, level);
    QFETCH(Fault, fault);
    Company company(level);
    company.strike(fault);
    company.tick();
    const ExpectedPass expected(level, fault);
    QCOMPARE(firstDifference(company.take(), company.own(expected.events())), QString());
    QCOMPARE(strangers(company.allEvents(), level), QStringList());
    compareMembers(company, expected);
    if (!QTest::currentTestFailed())
        runNextPass(company);
}

/// A failed record is remembered like any other; only fundRetry and the waiting records tell.
void tst_FaultSweep::compareMembers(const Company &company, const ExpectedPass &expected)
{
    const WorkerPeer &peer = company.peer;
    QVERIFY(!peer.inProgress);
    QVERIFY(!peer.db.isOpen());
    QVERIFY(peer.importedRecords.isEmpty());
    QVERIFY(peer.branchPeople.isEmpty());
    QCOMPARE(peer.forceSync, expected.holds(QStringLiteral("force")));

    const bool synchronised = expected.holds(QStringLiteral("people"));
    QCOMPARE(peer.dbPeople.contains(goneBefore), !synchronised);
    for (uint person = 1; person <= people; ++person) {
        const uint pid = company.number(person) * 10 + 1;
        QCOMPARE(peer.lastRecords.contains(pid), synchronised || person == 7 || person == 9);
        QCOMPARE(peer.dbPeople.contains(pid), synchronised && person > 3);
        QCOMPARE(peer.fundRetry.contains(pid), expected.holds(QStringLiteral("fund")));
        QCOMPARE(peer.fundRetry.value(pid),
                 expected.holds(QStringLiteral("fund"))
                     && !expected.holds(letter(person) + QStringLiteral(".atRest")));
    }
    QStringList waiting;
    for (const EmployeeRecord &record : peer.waitingRecords.toVector())
        waiting.append(letter(record.osobniCislo - company.number(1) + 1));
    std::sort(waiting.begin(), waiting.end()); // the one that waited before stands first
    QCOMPARE(waiting, expected.waiting());
}

/// Once the database is well again, nothing is left to complain about, and nobody waits.
void tst_FaultSweep::runNextPass(Company &company)
{
    company.heal();
    company.tick();
    const QStringList events = company.take();
    QCOMPARE(complaints(events), QStringList());
    QCOMPARE(events.mid(events.size() - 2),
             lines({"sql run :name=OQS.THRWorker.forceSync, :value=0", "sql close"}));
    const int level = company.peer.logLevel;
    QCOMPARE(events.filter(QStringLiteral("doSyncRecord(")).size(),
             level > 2 ? static_cast<int>(people) : 0);
    QCOMPARE(events.filter(QStringLiteral(" (waiting records: 0)")).size(), level > 0 ? 1 : 0);
    QVERIFY(company.peer.waitingRecords.isEmpty());
    QVERIFY(!company.peer.inProgress);
}

QTEST_GUILESS_MAIN(tst_FaultSweep)
#include "tst_faultsweep.moc"
