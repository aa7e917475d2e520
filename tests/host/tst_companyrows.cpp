// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of a company: what the plugin finds in them, and what it makes of them day by day.
#include "host/company/companyrows.h"
#include "host/company/exportwriter.h"
#include "host/company/life.h"
#include "support/contentdifference.h"
#include "support/databaseworker.h"
#include "support/localseconds.h"
#include "support/machineclock.h"

#include <QtTest>

#include <memory>

namespace {

const QDate firstDay(2026, 1, 19);
const int days = 25;

struct TableQuery
{
    const char *what;
    const char *statement;
};

/// What an export decides, person by person.
const TableQuery queries[] = {
    {"people",
     "SELECT pid, pamId, title, name, surname, title2, phone, begin, end, rsBegin, rsEnd, rsText, "
     "type, status, did, bid, calendarID FROM people ORDER BY pid"},
    {"branches", "SELECT pid, b.bid FROM brape b JOIN people USING (uid) ORDER BY 1, 2"},
    {"terminals", "SELECT pid, tid FROM people_term JOIN people USING (uid) ORDER BY 1, 2"},
    {"supervisors",
     "SELECT pid, aid FROM admins_people JOIN people USING (uid) WHERE request = 1 ORDER BY 1"},
    {"PaM", "SELECT pid, id FROM people_pam JOIN people USING (uid) ORDER BY 1"},
    {"latest plans",
     "SELECT pid, since, g.gid FROM groups_plan g JOIN people USING (uid) WHERE since = "
     "(SELECT MAX(since) FROM groups_plan h WHERE h.uid = g.uid) ORDER BY 1"},
};

QStringList nightOf(const QDate &day)
{
    return nightStatements(QString::number(localSeconds(day)));
}

/// In a month most people see something happen.
LifeRates busyRates()
{
    LifeRates rates;
    rates.hired = rates.endAnnounced = rates.newCalendar = rates.newSupervisor = 60;
    rates.returned = rates.endWithdrawn = rates.fellIll = 200;
    rates.renamed = rates.graduated = rates.newPhone = rates.moved = 80;
    rates.wentOnParentalLeave = 40;
    return rates;
}

} // namespace

class tst_CompanyRows : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void rows_loadWithoutWarnings();
    void rows_ofAHandmadeCompany();
    void attendance_isThere();
    void firstPass_changesNothingThatAnExportDecides();
    void daysOfLife_endWithTheRowsOfTheLastDay();

private:
    void load(const Company &company);
    void setDay(const QDate &day);
    static void setUp(DatabaseWorker *worker);
    void pass(DatabaseWorker *worker, const Company &company);
    QStringList rows(const char *statement);
    QStringList content();
    QStringList listedInPam();
    /// The leave of everybody who was not taken on today.
    QStringList leave(const QDate &today);

    std::unique_ptr<MachineClock> clock;
    std::unique_ptr<TestDatabase> database;
    Company company;
};

void tst_CompanyRows::initTestCase()
{
    clock = std::make_unique<MachineClock>(QDateTime(firstDay, QTime(12, 0)));
    database = std::make_unique<TestDatabase>();
    QVERIFY2(database->error().isEmpty(), qPrintable(database->error()));
    CompanyPlan plan;
    plan.people = 50;
    plan.day = firstDay;
    company = generatedCompany(plan);
}

void tst_CompanyRows::cleanupTestCase()
{
    database.reset();
    clock.reset();
}

void tst_CompanyRows::init()
{
    setDay(firstDay);
    load(company);
}

void tst_CompanyRows::setDay(const QDate &day)
{
    clock->set(QDateTime(day, QTime(12, 0)));
    database->setClock(localSeconds(day, 12));
}

/// In place of all that there is. The worker remembers uids as long as the process lives.
void tst_CompanyRows::load(const Company &ofDay)
{
    database->clear();
    database->execute(QStringLiteral("ALTER TABLE people AUTO_INCREMENT = 1"));
    for (const QString &statement : structureRows(ofDay) + peopleRows(ofDay, {ofDay.day, 60})) {
        database->execute(statement);
        QCOMPARE(database->value(QStringLiteral("SELECT @@warning_count")), QStringLiteral("0"));
    }
}

/// A pass on every tick, and a text for each state.
void tst_CompanyRows::setUp(DatabaseWorker *worker)
{
    QHash<ushort, QString> texts;
    for (const EvidenceState &known : evidenceStates)
        texts.insert(known.state, evidenceStateText(known.state));
    worker->worker.setMes(texts);
    worker->worker.setSyncInterval(1);
}

void tst_CompanyRows::pass(DatabaseWorker *worker, const Company &ofDay)
{
    worker->writeExport(QString::fromUtf8(exportText(ofDay)).split(QLatin1Char('\n')));
    worker->tick();
    QCOMPARE(worker->log.take().filter(QRegularExpression(QStringLiteral("^(warning|critical) "))),
             QStringList());
}

QStringList tst_CompanyRows::rows(const char *statement)
{
    return database->rows(QString::fromLatin1(statement));
}

/// Each row behind the name of its kind.
QStringList tst_CompanyRows::content()
{
    QStringList all;
    for (const TableQuery &query : queries) {
        for (const QString &row : rows(query.statement))
            all.append(QLatin1String(query.what) + QLatin1Char(' ') + row);
    }
    for (const QString &pid : listedInPam())
        all.append(QStringLiteral("PaM list ") + pid);
    return all;
}

QStringList tst_CompanyRows::listedInPam()
{
    QStringList pids = database
                           ->value(QStringLiteral("SELECT value FROM vars "
                                                  "WHERE name = 'exportPam.1.selPeople'"))
                           .split(QLatin1Char(','));
    pids.sort();
    return pids;
}

QStringList tst_CompanyRows::leave(const QDate &today)
{
    return database->rows(
        QStringLiteral("SELECT pid, COALESCE(SUM(value), 0) FROM people LEFT JOIN funds_move "
                       "USING (uid) WHERE begin < %1 GROUP BY pid ORDER BY pid")
            .arg(localSeconds(today)));
}

void tst_CompanyRows::rows_loadWithoutWarnings()
{
    QCOMPARE(rows("SELECT COUNT(*) FROM people"),
             QStringList(QString::number(company.employments.size())));
    QCOMPARE(rows("SELECT COUNT(*) FROM people WHERE bid IS NULL"),
             QStringList(QStringLiteral("0")));
    QVERIFY(rows("SELECT COUNT(*) FROM term WHERE bid IS NULL")
            != QStringList(QStringLiteral("0")));
    QCOMPARE(rows("SELECT COUNT(*) FROM groups"), QStringList(QStringLiteral("6")));
    for (const QString &statement : nightOf(firstDay))
        database->execute(statement);
    QCOMPARE(rows("SELECT COUNT(*) FROM atten WHERE ok < 0"), QStringList(QStringLiteral("0")));
}

/// Texts that need care, and a relation that has next to nothing.
void tst_CompanyRows::rows_ofAHandmadeCompany()
{
    Company small;
    small.day = firstDay;
    Employment employment;
    employment.number = 7;
    employment.name = QStringLiteral("D'Arc\\");
    employment.begin = QDate(2020, 5, 1);
    employment.type = 51;
    small.employments = {employment};
    load(small);
    QCOMPARE(rows("SELECT pid, name, end, type, bid FROM people"),
             QStringList(QStringLiteral("71|D'Arc\\|NULL|4|NULL")));
    QCOMPARE(rows("SELECT id FROM people_pam"), QStringList(QStringLiteral("2")));
    QCOMPARE(rows("SELECT COUNT(*) FROM brape"), QStringList(QStringLiteral("0")));
    QCOMPARE(listedInPam(), QStringList(QStringLiteral("71")));
}

/// Sixty days back, without Saturdays and Sundays; locked up to the end of November.
void tst_CompanyRows::attendance_isThere()
{
    QCOMPARE(rows("SELECT MIN(DATE(FROM_UNIXTIME(date))), MAX(DATE(FROM_UNIXTIME(date))), "
                  "COUNT(DISTINCT date) FROM atten"),
             QStringList(QStringLiteral("2025-11-20|2026-01-16|42")));
    QCOMPARE(rows("SELECT MAX(DATE(FROM_UNIXTIME(date))) FROM atten WHERE `lock`"),
             QStringList(QStringLiteral("2025-11-28")));
    QCOMPARE(rows("SELECT COUNT(DISTINCT uid), COUNT(DISTINCT date) FROM atten WHERE ok < 0"),
             QStringList(QStringLiteral("2|1")));
    QVERIFY(rows("SELECT COUNT(*) FROM atten WHERE man") != QStringList(QStringLiteral("0")));
    QCOMPARE(rows("SELECT DISTINCT month FROM groups_month"),
             (QStringList {QStringLiteral("202511"), QStringLiteral("202512"),
                           QStringLiteral("202601")}));
}

/// It writes all people once more, tells their terminals, and reopens their attendance.
void tst_CompanyRows::firstPass_changesNothingThatAnExportDecides()
{
    const QStringList before = content();
    const QStringList moves = rows("SELECT * FROM funds_move ORDER BY uid, day, type");
    const QStringList administrators = rows("SELECT * FROM admins_people ORDER BY uid, aid");
    DatabaseWorker worker(*database);
    setUp(&worker);
    pass(&worker, company);
    QCOMPARE(contentDifference(before, content()), QStringList());
    QCOMPARE(rows("SELECT * FROM funds_move ORDER BY uid, day, type"), moves);
    QCOMPARE(rows("SELECT * FROM admins_people ORDER BY uid, aid"), administrators);
    QVERIFY(rows("SELECT COUNT(*) FROM term_sync") != QStringList(QStringLiteral("0")));
    QVERIFY(rows("SELECT COUNT(*) FROM atten WHERE ok < 0 AND NOT `lock`")
            != QStringList(QStringLiteral("0")));
}

void tst_CompanyRows::daysOfLife_endWithTheRowsOfTheLastDay()
{
    Life life(company, 5, busyRates());
    DatabaseWorker worker(*database);
    setUp(&worker);
    pass(&worker, company);
    QSet<int> kinds;
    for (int i = 0; i < days; ++i) {
        for (const QString &statement : nightOf(life.company().day))
            database->execute(statement);
        for (const LifeEvent &event : life.nextDay())
            kinds.insert(static_cast<int>(event.kind));
        setDay(life.company().day);
        pass(&worker, life.company());
    }
    for (const QString &statement : nightOf(life.company().day))
        database->execute(statement);
    QVERIFY(kinds.size() >= 15); // nobody leaves the export so soon, and it is no New Year

    const QStringList lived = content();
    const QStringList livedLeave = leave(life.company().day);
    load(life.company());
    QCOMPARE(contentDifference(lived, content()), QStringList());
    QCOMPARE(livedLeave, leave(life.company().day));
}

QTEST_GUILESS_MAIN(tst_CompanyRows)
#include "tst_companyrows.moc"
