// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The generated company and its life.
#include "host/company/exportwriter.h"
#include "host/company/life.h"
#include "host/company/names.h"

#include <QCryptographicHash>
#include <QHash>
#include <QSet>
#include <QtTest>

class tst_Company : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void draw_isTheSameEverywhere();
    void draw_isEven();
    void surnames_haveFormsForWomen_data();
    void surnames_haveFormsForWomen();
    void company_isTheSameForASeed();
    void company_hasWhatRealOnesHave();
    void company_isSound();
    void supervisors_areATree();
    void export_has18CellsALine();
    void export_ofAHandmadeRelation();
    void life_isTheSameForASeed();
    void life_bringsEachKindOfEvent();
    void life_tellsWhatTheExportShows();
    void life_keepsTheCompanySound();

private:
    static Company company(int people, quint32 seed = 1);
    static void checkSoundness(const Company &company);
};

namespace {

QString digest(const QByteArray &text)
{
    return QString::fromLatin1(
        QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex().left(16));
}

/// The lines of an export by their first two cells.
QMap<QByteArray, QList<QByteArray>> linesOf(const Company &company)
{
    QMap<QByteArray, QList<QByteArray>> lines;
    for (const QByteArray &line : exportText(company).split('\n').mid(1)) {
        const QList<QByteArray> cells = line.split('|');
        if (cells.size() > 1)
            lines.insert(cells.at(0) + '.' + cells.at(1), cells);
    }
    return lines;
}

} // namespace

Company tst_Company::company(int people, quint32 seed)
{
    CompanyPlan plan;
    plan.people = people;
    plan.seed = seed;
    plan.day = QDate(2026, 3, 17);
    return generatedCompany(plan);
}

void tst_Company::draw_isTheSameEverywhere()
{
    Draw draw(5489);
    QCOMPARE(draw.below(1000), 814); // 3499211612 of 2^32
    QCOMPARE(draw.below(1), 0);
    QCOMPARE(draw.below(10), 9); // 3890346734 of 2^32
}

void tst_Company::draw_isEven()
{
    Draw draw(1);
    QVector<int> counts(7);
    for (int i = 0; i < 70000; ++i)
        ++counts[draw.below(7)];
    for (const int count : qAsConst(counts))
        QVERIFY(count > 9600 && count < 10400);
}

void tst_Company::surnames_haveFormsForWomen_data()
{
    QTest::addColumn<QString>("man");
    QTest::addColumn<QString>("woman");

    const char *const forms[][2] = {
        {"Novák", "Nováková"},    {"Novotný", "Novotná"}, {"Krejčí", "Krejčí"},
        {"Svoboda", "Svobodová"}, {"Hájek", "Hájková"},   {"Němec", "Němcová"},
        {"Šimko", "Šimková"},     {"Tóth", "Tóthová"},    {"Osolsobě", "Osolsobě"},
    };
    for (const auto &form : forms)
        QTest::newRow(form[0]) << QString::fromUtf8(form[0]) << QString::fromUtf8(form[1]);
}

void tst_Company::surnames_haveFormsForWomen()
{
    QFETCH(QString, man);
    QTEST(feminine(man), "woman");
}

void tst_Company::company_isTheSameForASeed()
{
    QCOMPARE(digest(exportText(company(300))), QStringLiteral("c13ea47a6ce1d40d"));
    QVERIFY(exportText(company(300)) != exportText(company(300, 2)));
}

/// Shares of a thousand people, with room for chance.
void tst_Company::company_hasWhatRealOnesHave()
{
    int women = 0, titled = 0, hyphenated = 0, ill = 0, former = 0, second = 0, ending = 0;
    QHash<QString, int> surnames;
    const Company all = company(1000);
    for (const Employment &employment : all.employments) {
        women += employment.woman ? 1 : 0;
        titled += employment.titleBefore.isEmpty() ? 0 : 1;
        hyphenated += employment.surname.contains(QLatin1Char('-')) ? 1 : 0;
        ill += employment.evidenceState != NoState ? 1 : 0;
        former += employment.inExport ? 0 : 1;
        second += employment.ordinal == 2 ? 1 : 0;
        ending += employment.inExport && employment.end.isValid() ? 1 : 0;
        ++surnames[employment.surname];
    }
    QVERIFY(women > 430 && women < 560);
    QVERIFY(titled > 200 && titled < 320);
    QVERIFY(hyphenated > 8 && hyphenated < 40);
    QVERIFY(ill > 25 && ill < 90);
    QCOMPARE(former, 50);
    QVERIFY(second > 20 && second < 70);
    QVERIFY(ending > 10 && ending < 60);
    QVERIFY(surnames.value(QStringLiteral("Novák")) > 15);
    QVERIFY(surnames.value(QStringLiteral("Novák")) < 60);
    QVERIFY(surnames.contains(QStringLiteral("Černá")));

    QSet<int> statuses;
    bool withoutPersons = false;
    for (const Terminal &terminal : all.terminals) {
        statuses.insert(terminal.status);
        withoutPersons |= (terminal.flags & 2) == 0;
    }
    QCOMPARE(statuses, (QSet<int> {0, 1, 2}));
    QVERIFY(withoutPersons);
    QCOMPARE(all.administrators.constLast().number, 0U);
}

/// Whatever is named is there, no two keys are the same, and days have their order.
void tst_Company::checkSoundness(const Company &company)
{
    QSet<uint> pids;
    QSet<uint> people;
    for (const Employment &employment : company.employments)
        people.insert(employment.number);
    for (const Employment &employment : company.employments) {
        QVERIFY(!pids.contains(employment.pid()));
        pids.insert(employment.pid());
        QVERIFY(company.groupOf(employment.branch, employment.calendar) != 0);
        QVERIFY(employment.memberships.contains(employment.branch));
        QVERIFY(employment.supervisor == 0 || people.contains(employment.supervisor));
        QVERIFY(employment.supervisor != employment.number);
        QVERIFY(!employment.end.isValid() || employment.end >= employment.begin);
        QVERIFY(employment.begin <= company.day);
        QVERIFY(employment.calendarSince.isValid());
        QVERIFY(!employment.name.isEmpty() && !employment.surname.isEmpty());
        QCOMPARE(employment.inExport,
                 employment.runsOn(company.day.addDays(-daysInExportAfterTheEnd)));
        QCOMPARE(employment.relationState == 3, !employment.runsOn(company.day));
    }
}

void tst_Company::company_isSound()
{
    for (quint32 seed = 1; seed <= 20; ++seed)
        checkSoundness(company(60, seed));
    checkSoundness(company(1));
}

/// Everybody comes to the same head, and nobody in a circle.
void tst_Company::supervisors_areATree()
{
    QHash<uint, uint> supervisors;
    const Company all = company(500);
    for (const Employment &employment : all.employments) {
        QVERIFY(supervisors.value(employment.number, employment.supervisor)
                == employment.supervisor);
        supervisors.insert(employment.number, employment.supervisor);
    }
    QCOMPARE(supervisors.values().count(0), 1);
    for (uint person : supervisors.keys()) {
        int steps = 0;
        while (supervisors.value(person) != 0 && ++steps < 10)
            person = supervisors.value(person);
        QVERIFY(steps <= 3);
    }
}

void tst_Company::export_has18CellsALine()
{
    const QList<QByteArray> lines = exportText(company(200)).split('\n');
    QCOMPARE(lines.constLast(), QByteArray());
    for (const QByteArray &line : lines.mid(0, lines.size() - 1))
        QCOMPARE(line.count('|'), 17);
    QCOMPARE(lines.first(), headerLine());
}

void tst_Company::export_ofAHandmadeRelation()
{
    Employment employment;
    employment.number = 4711;
    employment.titleBefore = QStringLiteral("Ing.");
    employment.name = QStringLiteral("Ľubica");
    employment.surname = QStringLiteral("Nováková");
    employment.begin = QDate(2024, 2, 1);
    employment.branch = 100;
    employment.leave = -1205;
    employment.supervisor = 1001;
    const Branch branch {1, 100, QStringLiteral("Riaditeľstvo"), 1};
    QCOMPARE(
        exportLine(employment, &branch),
        QByteArray("4711|1|Ing.|Ľubica|Nováková|||2024-02-01 00:00:00.000||100|Riaditeľstvo|0||"
                   "11|1|0|-12.05|1001"));
    QVERIFY(exportLine(employment, nullptr).contains("|100||0|"));
}

void tst_Company::life_isTheSameForASeed()
{
    Life life(company(100), 7);
    QByteArray events;
    for (int day = 0; day < 100; ++day) {
        for (const LifeEvent &event : life.nextDay())
            events += event.text().toUtf8() + '\n';
    }
    QCOMPARE(digest(events), QStringLiteral("58ea1af34add8954"));
    QCOMPARE(digest(exportText(life.company())), QStringLiteral("7971f9db4a450b4a"));
    QCOMPARE(life.company().day, QDate(2026, 3, 17).addDays(100));
}

void tst_Company::life_bringsEachKindOfEvent()
{
    Life life(company(300), 1);
    QHash<int, int> kinds;
    for (int day = 0; day < 300; ++day) {
        for (const LifeEvent &event : life.nextDay()) {
            ++kinds[static_cast<int>(event.kind)];
            QCOMPARE(event.day, life.company().day);
        }
    }
    for (int kind = 0; kind <= static_cast<int>(lastEventKind); ++kind)
        QVERIFY2(kinds.value(kind) > 0, eventName(static_cast<EventKind>(kind)));
}

/// Lines of whom nothing was told stay as they were; the others do not.
void tst_Company::life_tellsWhatTheExportShows()
{
    Life life(company(200), 3);
    for (int day = 0; day < 60; ++day) {
        const auto before = linesOf(life.company());
        QSet<QByteArray> told;
        for (const LifeEvent &event : life.nextDay())
            told.insert(QByteArray::number(event.number) + '.' + QByteArray::number(event.ordinal));
        const auto after = linesOf(life.company());
        QSet<QByteArray> changed;
        for (const QByteArray &person : before.keys() + after.keys()) {
            if (before.value(person) != after.value(person))
                changed.insert(person);
        }
        QCOMPARE(told, changed);
    }
}

void tst_Company::life_keepsTheCompanySound()
{
    for (quint32 seed = 1; seed <= 5; ++seed) {
        Life life(company(80, seed), seed);
        for (int day = 0; day < 200; ++day)
            life.nextDay();
        checkSoundness(life.company());
    }
}

QTEST_GUILESS_MAIN(tst_Company)
#include "tst_company.moc"
