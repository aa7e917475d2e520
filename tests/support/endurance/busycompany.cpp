// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company that lives from export to export, and the rows that it owes by then.
#include "support/endurance/busycompany.h"

#include "host/company/companyrows.h"
#include "host/company/exportwriter.h"

#include <algorithm>

namespace {

const int mostPeople = 60;

Company companyOf(quint32 seed, int people)
{
    CompanyPlan plan;
    plan.people = people;
    plan.seed = seed;
    plan.day = QDate::currentDate();
    return generatedCompany(plan);
}

/// Every fifth person changes in something, on the average. Nobody leaves: the days of this life
/// are all one and the same for the plugin.
LifeRates ratesFor(BusyCompany::Changes changes)
{
    LifeRates rates;
    rates.returned = rates.endAnnounced = rates.endWithdrawn = 0;
    rates.fellIll = rates.wentOnParentalLeave = rates.cameBack = 0;
    rates.newCalendar = 0;
    rates.leaveTaken = rates.newSupervisor = rates.newPhone = 650;
    rates.renamed = 400;
    rates.moved = changes == BusyCompany::EverythingChanges ? 300 : 0;
    rates.hired = changes == BusyCompany::EverythingChanges ? 25 : 0;
    rates.mostPeople = mostPeople;
    return rates;
}

/// Whether the row of the person changes by it.
bool isOfTheRow(EventKind kind)
{
    return kind == EventKind::Renamed || kind == EventKind::Graduated || kind == EventKind::NewPhone
        || kind == EventKind::Moved || kind == EventKind::NewCalendar;
}

QString joined(const QVector<uint> &numbers)
{
    QStringList texts;
    for (const uint number : numbers)
        texts.append(QString::number(number));
    return texts.isEmpty() ? QStringLiteral("NULL") : texts.join(QLatin1Char(','));
}

} // namespace

BusyCompany::BusyCompany(TestDatabase &companyDatabase, quint32 seed, int people) :
    database(companyDatabase),
    life(companyOf(seed, people), seed)
{
    database.clear();
    for (const QString &statement : structureRows(life.company()))
        database.execute(statement);
    for (const Employment &employment : life.company().employments) {
        if (employment.runsOn(life.company().day))
            join(employment.pid(), employment.branch);
    }
}

/// A new member lands on the terminals of the branch, unless they have been there before: nobody
/// ever leaves one.
void BusyCompany::join(uint pid, uint branch)
{
    if (memberships[pid].contains(branch))
        return;
    memberships[pid].insert(branch);
    notices += toldOfNew(branch);
}

int BusyCompany::toldOfNew(uint branch) const
{
    const QVector<Terminal> &all = life.company().terminals;
    return static_cast<int>(std::count_if(all.cbegin(), all.cend(), [&](const Terminal &terminal) {
        return terminal.branch == branch && terminal.isToldOfNew();
    }));
}

int BusyCompany::toldOfChanged(const QSet<uint> &branches) const
{
    const QVector<Terminal> &all = life.company().terminals;
    return static_cast<int>(std::count_if(all.cbegin(), all.cend(), [&](const Terminal &terminal) {
        return branches.contains(terminal.branch) && terminal.isToldOfChanged();
    }));
}

QStringList BusyCompany::nextExport(Changes changes)
{
    if (!isFirst) {
        life.setRates(ratesFor(changes));
        takeIn(life.nextDay());
    }
    isFirst = false;
    return sameExport();
}

/// The terminals on which somebody is by now are told once, whatever has changed.
void BusyCompany::takeIn(const QVector<LifeEvent> &events)
{
    QSet<uint> changed;
    for (const LifeEvent &event : events) {
        if (isOfTheRow(event.kind))
            changed.insert(event.pid());
    }
    for (const uint pid : qAsConst(changed))
        notices += toldOfChanged(memberships.value(pid));
    for (const LifeEvent &event : events) {
        if (event.kind == EventKind::Hired || event.kind == EventKind::Moved)
            join(event.pid(), event.after.toUInt());
    }
}

QStringList BusyCompany::sameExport() const
{
    return QString::fromUtf8(exportText(life.company()).trimmed()).split(QLatin1Char('\n'));
}

QStringList BusyCompany::rows()
{
    return database.rows(QStringLiteral(
        "SELECT p.pid, p.surname, p.phone, b.number, "
        "(SELECT GROUP_CONCAT(number ORDER BY number) FROM brape JOIN branches USING(bid) "
        "WHERE uid = p.uid), "
        "(SELECT GROUP_CONCAT(tid ORDER BY tid) FROM people_term WHERE uid = p.uid), "
        "(SELECT GROUP_CONCAT(personalNumber) FROM admins_people JOIN admins USING(aid) "
        "WHERE uid = p.uid AND request = 1) "
        "FROM people p LEFT JOIN branches b USING(bid) ORDER BY p.pid"));
}

QStringList BusyCompany::owedRows() const
{
    QMap<uint, QString> owed;
    for (const Employment &employment : life.company().employments) {
        if (memberships.contains(employment.pid()))
            owed.insert(employment.pid(), owedRow(employment));
    }
    return owed.values();
}

QString BusyCompany::owedRow(const Employment &employment) const
{
    const uint pid = employment.pid();
    const QSet<uint> branches = memberships.value(pid);
    QVector<uint> numbers(branches.cbegin(), branches.cend());
    std::sort(numbers.begin(), numbers.end());
    QVector<uint> tids;
    for (const Terminal &terminal : life.company().terminals) {
        if (branches.contains(terminal.branch) && terminal.isToldOfNew())
            tids.append(terminal.id);
    }
    return QStringList {QString::number(pid),
                        employment.surname,
                        employment.phone,
                        QString::number(employment.branch),
                        joined(numbers),
                        joined(tids),
                        employment.hasMark() ? QString::number(employment.supervisor)
                                             : QStringLiteral("NULL")}
        .join(QLatin1Char('|'));
}

int BusyCompany::queuedNotices()
{
    return database.value(QStringLiteral("SELECT COUNT(*) FROM term_sync")).toInt();
}
