// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company as its HR system and its attendance system know it on one day.
#include "host/company/company.h"

#include "host/company/newcomer.h"

#include <algorithm>
#include <iterator>

namespace {

const uint firstNumber = 1001;
const uint firstBranch = 100; // numbers go in tens
const int peopleToABranch = 40;
const int teamSize = 12;
const int teamsToADivision = 8;

const char *const towns[] = {"Žilina", "Brno",           "Martin",          "Ostrava",
                             "Košice", "Plzeň",          "Prešov",          "Olomouc",
                             "Trnava", "Hradec Králové", "Nitra",           "Liberec",
                             "Zvolen", "Jihlava",        "Banská Bystrica", "Poprad"};

/// Fills a company, part by part; each part draws behind the one before it.
class Founding
{
public:
    explicit Founding(const CompanyPlan &companyPlan) :
        plan(companyPlan),
        draw(companyPlan.seed)
    {
        company.day = plan.day;
    }

    Company found()
    {
        setUpBranches();
        setUpTerminals();
        employPeople();
        nameSupervisors();
        setUpAdministrators();
        return company;
    }

private:
    void setUpBranches();
    void setUpTerminals();
    void employPeople();
    void giveState(Employment *employment);
    void giveEnd(Employment *employment);
    Employment secondRelation(const Employment &first);
    Employment former(Employment employment);
    void nameSupervisors();
    void setUpAdministrators();
    QVector<QDate> drawnBegins(int count);
    QDate drawnDay(const QDate &from, const QDate &to);

    const CompanyPlan plan;
    Draw draw;
    Company company;
};

void Founding::setUpBranches()
{
    company.masterGroups = {{1, QStringLiteral("Kancelárie"), {1}},
                            {2, QStringLiteral("Prevádzky"), {1, 2, 3}},
                            {3, QStringLiteral("Predajne"), {1, 4}}};
    const int count = qMax(3, plan.people / peopleToABranch);
    const int townCount = static_cast<int>(std::size(towns));
    for (int i = 0; i < count; ++i) {
        const MasterGroup &group = company.masterGroups.at(i % company.masterGroups.size());
        const QString town = QString::fromUtf8(towns[i % townCount]);
        const QString which = i < townCount ? QString() : QString::number(i / townCount + 1);
        const QString name = QStringLiteral("%1 %2 %3").arg(group.name, town, which).trimmed();
        const uint index = static_cast<uint>(i);
        company.branches.append({index + 1, firstBranch + 10 * index, name, group.id});
    }
    company.branches.append(
        {static_cast<uint>(count) + 1, 0, QStringLiteral("Externí pracovníci"), 0});
}

/// One to three a branch. One in eight is off, one is set up, one takes no persons.
void Founding::setUpTerminals()
{
    const int flags[] = {2, 3, 66, 323};
    uint id = 0;
    for (const Branch &branch : qAsConst(company.branches)) {
        for (int i = branch.number == 0 ? 1 : 1 + draw.below(3); i > 0; --i) {
            const int fate = draw.below(8);
            const int status = fate == 0 ? 0 : fate == 1 ? 2 : 1;
            const int kinds = fate == 2 ? 65 : flags[draw.below(4)];
            company.terminals.append({++id, branch.number, status, kinds});
        }
    }
}

QDate Founding::drawnDay(const QDate &from, const QDate &to)
{
    return from.addDays(draw.below(static_cast<int>(from.daysTo(to)) + 1));
}

/// In their order. Thirty years back, the more the later; three in four on the first of a month.
QVector<QDate> Founding::drawnBegins(int count)
{
    QVector<QDate> begins;
    for (int i = 0; i < count; ++i) {
        const int daysAgo = 1 + draw.below(1 + draw.below(10957));
        const QDate begin = plan.day.addDays(-daysAgo);
        begins.append(draw.percent(75) ? begin.addDays(1 - begin.day()) : begin);
    }
    std::sort(begins.begin(), begins.end());
    return begins;
}

void Founding::employPeople()
{
    const int formerPeople = plan.people / 20;
    const QVector<QDate> begins = drawnBegins(plan.people + formerPeople);
    uint number = firstNumber - 1;
    int left = 0;
    for (int i = 0; i < begins.size(); ++i) {
        number += 1 + (draw.percent(20) ? static_cast<uint>(draw.below(5)) : 0);
        Employment employment = newcomer(company, number, begins.at(i), &draw);
        // Those who came first lead the others, so they are still there.
        const bool hasLeft = left < formerPeople && i % 20 == 19;
        left += hasLeft ? 1 : 0;
        if (hasLeft) {
            company.employments.append(former(employment));
            continue;
        }
        giveState(&employment);
        giveEnd(&employment);
        company.employments.append(employment);
        if (draw.percent(4))
            company.employments.append(secondRelation(employment));
    }
}

void Founding::giveState(Employment *employment)
{
    const int fate = draw.below(100);
    ushort state = NoState;
    if (fate < 3)
        state = Illness;
    else if (fate < 5)
        state = employment->woman ? Maternity : ParentalLeave;
    if (state == NoState)
        return;
    employment->evidenceState = state;
    employment->latestState = state;
    employment->stateBegin = drawnDay(qMax(employment->begin, plan.day.addDays(-60)),
                                      plan.day.addDays(-1));
}

/// Two in a hundred have a last day ahead of them, one has it behind.
void Founding::giveEnd(Employment *employment)
{
    const int fate = draw.below(100);
    if (fate < 2) {
        employment->end = plan.day.addDays(5 + draw.below(80));
    } else if (fate == 2 && employment->begin < plan.day.addDays(-daysInExportAfterTheEnd)) {
        employment->end = plan.day.addDays(-1 - draw.below(daysInExportAfterTheEnd));
        employment->relationState = 3;
    }
}

/// An agreement beside the main relation, as a rule in another branch.
Employment Founding::secondRelation(const Employment &first)
{
    Employment second = first;
    second.ordinal = 2;
    second.begin = drawnDay(first.begin, plan.day.addDays(-1));
    second.end = QDate();
    second.relationState = 1;
    settle(company, &second, &draw);
    second.type = draw.percent(50) ? 53 : 54;
    second.leave = 0;
    return second;
}

Employment Founding::former(Employment employment)
{
    const QDate latest = plan.day.addDays(-1 - daysInExportAfterTheEnd);
    employment.begin = qMin(employment.begin, latest);
    employment.calendarSince = qMin(employment.calendarSince, latest);
    employment.end = drawnDay(qMax(employment.begin, latest.addYears(-3)), latest);
    employment.relationState = 3;
    employment.inExport = false;
    return employment;
}

/// A tree: the company's head, the heads of divisions, of teams, and who leads nobody. Those who
/// lead came first, have an ordinary contract and stay.
void Founding::nameSupervisors()
{
    const int teams = qMax(1, plan.people / teamSize);
    const int divisions = qMax(1, teams / teamsToADivision);
    const int places[] = {1, divisions, teams};
    QVector<uint> leaders[3];
    for (Employment &employment : company.employments) {
        if (!employment.inExport || employment.ordinal != 1)
            continue;
        int level = 0;
        while (level < 3 && leaders[level].size() == places[level])
            ++level;
        employment.level = level;
        if (level == 3)
            continue;
        employment.type = 11;
        employment.end = QDate();
        employment.relationState = 1;
        leaders[level].append(employment.number);
    }
    uint last = 0;
    for (Employment &employment : company.employments) {
        if (employment.level == 0)
            continue;
        // Of all relations of a person it is the same: one leads to the top, two could run in a
        // circle.
        if (employment.ordinal != 1) {
            employment.supervisor = last;
            continue;
        }
        int above = employment.level - 1;
        while (leaders[above].isEmpty())
            --above;
        const QVector<uint> &choice = leaders[above];
        employment.supervisor = choice.at(draw.below(choice.size()));
        last = employment.supervisor;
    }
}

/// Whoever leads people is one; two more are no employees. Each branch has two.
void Founding::setUpAdministrators()
{
    uint id = 0;
    for (const Employment &employment : qAsConst(company.employments)) {
        if (employment.level < 3)
            company.administrators.append({++id,
                                           employment.number,
                                           employment.name + QLatin1Char(' ') + employment.surname,
                                           {}});
    }
    for (const char *name : {"Správca systému", "Mzdová účtáreň"})
        company.administrators.append({++id, 0, QString::fromUtf8(name), {}});
    QVector<Administrator> &all = company.administrators;
    for (const Branch &branch : qAsConst(company.branches)) {
        all.last().branches.append(branch.number);
        all[draw.below(all.size() - 1)].branches.append(branch.number);
    }
}

} // namespace

QString evidenceStateText(ushort state)
{
    for (const EvidenceState &known : evidenceStates) {
        if (known.state == state)
            return QString::fromUtf8(known.text);
    }
    return QString();
}

const Branch *Company::branchOf(uint number) const
{
    const auto found = std::find_if(
        branches.cbegin(), branches.cend(),
        [number](const Branch &branch) { return branch.number == number; });
    return number == 0 || found == branches.cend() ? nullptr : &*found;
}

const MasterGroup *Company::masterGroupOf(uint branchNumber) const
{
    const Branch *branch = branchOf(branchNumber);
    if (!branch)
        return nullptr;
    for (const MasterGroup &group : masterGroups) {
        if (group.id == branch->masterGroup)
            return &group;
    }
    return nullptr;
}

uint Company::groupOf(uint branchNumber, uint calendar) const
{
    const MasterGroup *group = masterGroupOf(branchNumber);
    return group && group->calendars.contains(calendar) ? group->groupOf(calendar) : 0;
}

Company generatedCompany(const CompanyPlan &plan)
{
    return Founding(plan).found();
}
