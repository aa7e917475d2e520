// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What happens to the people of a company, day by day.
#include "host/company/life.h"

#include "host/company/names.h"
#include "host/company/newcomer.h"

namespace {

const int everybody = 10000; // of ten thousand

QString dateText(const QDate &date)
{
    return date.toString(Qt::ISODate);
}

} // namespace

Life::Life(const Company &firstDay, quint32 seed, const LifeRates &lifeRates) :
    now(firstDay),
    draw(seed),
    rates(lifeRates)
{
    for (const Employment &employment : qAsConst(now.employments)) {
        lastNumber = qMax(lastNumber, employment.number);
        if (employment.level < 3)
            leaders[employment.level].append(employment.number);
    }
}

QVector<LifeEvent> Life::nextDay()
{
    now.day = now.day.addDays(1);
    events.clear();
    const bool isNewYear = now.day.dayOfYear() == 1;
    hire();
    happen(rates.returned, &Life::returnAgain);
    happen(everybody, &Life::leaveExport);
    happen(everybody, &Life::end);
    happen(rates.endAnnounced, &Life::announceEnd);
    happen(rates.endWithdrawn, &Life::withdrawEnd);
    happen(rates.renamed, &Life::rename);
    happen(rates.graduated, &Life::graduate);
    happen(rates.newPhone, &Life::changePhone);
    happen(rates.moved, &Life::move);
    happen(rates.newCalendar, &Life::changeCalendar);
    happen(rates.newSupervisor, &Life::changeSupervisor);
    happen(rates.fellIll, &Life::fallIll);
    happen(rates.wentOnParentalLeave, &Life::goOnParentalLeave);
    happen(rates.cameBack, &Life::comeBack);
    happen(rates.leaveTaken, &Life::takeLeave);
    happen(isNewYear ? everybody : 0, &Life::grantLeave);
    return events;
}

/// Draws for each relation that there is by now, also for those to which it cannot happen.
void Life::happen(int rate, Change change)
{
    const int count = now.employments.size();
    for (int i = 0; i < count; ++i) {
        if (rate == everybody || draw.perTenThousand(rate))
            (this->*change)(now.employments[i]);
    }
}

void Life::tell(EventKind kind, const Employment &employment, const QString &before,
                const QString &after)
{
    events.append({kind, now.day, employment.number, employment.ordinal, before, after});
}

/// Since a day before today: nothing happens to somebody on the first day.
bool Life::isAtWork(const Employment &employment) const
{
    return employment.inExport && employment.runsOn(now.day) && employment.begin < now.day;
}

bool Life::isEmployed(uint number) const
{
    for (const Employment &employment : now.employments) {
        if (employment.number == number && employment.inExport && employment.runsOn(now.day))
            return true;
    }
    return false;
}

uint Life::drawnSupervisor(const Employment &employment)
{
    int above = employment.level - 1;
    while (above > 0 && leaders[above].isEmpty())
        --above;
    if (above < 0 || leaders[above].isEmpty())
        return 0;
    return leaders[above].at(draw.below(leaders[above].size()));
}

void Life::hire()
{
    const int count = now.employments.size();
    for (int i = 0; i < count && now.employments.size() < rates.mostPeople; ++i) {
        if (!draw.perTenThousand(rates.hired))
            continue;
        Employment employment = newcomer(now, ++lastNumber, now.day, &draw);
        employment.supervisor = drawnSupervisor(employment);
        now.employments.append(employment);
        tell(EventKind::Hired, employment, QString(), QString::number(employment.branch));
    }
}

/// The new relation goes by the next ordinal and begins today; the old one stays what it was.
void Life::returnAgain(Employment &employment)
{
    if (employment.runsOn(now.day) || isEmployed(employment.number))
        return;
    Employment relation = employment;
    for (const Employment &other : qAsConst(now.employments)) {
        if (other.number == relation.number)
            relation.ordinal = qMax(relation.ordinal, other.ordinal + 1);
    }
    relation.begin = now.day;
    relation.end = QDate();
    relation.relationState = 1;
    relation.evidenceState = NoState;
    relation.latestState = NoState;
    relation.stateBegin = QDate();
    relation.stateEnd = QDate();
    relation.inExport = true;
    settle(now, &relation, &draw);
    now.employments.append(relation);
    tell(EventKind::Returned, relation, QString(), QString::number(relation.branch));
}

void Life::leaveExport(Employment &employment)
{
    if (!employment.inExport || employment.runsOn(now.day.addDays(-daysInExportAfterTheEnd)))
        return;
    employment.inExport = false;
    tell(EventKind::LeftExport, employment, QString(), QString());
}

void Life::end(Employment &employment)
{
    if (employment.runsOn(now.day) || employment.relationState == 3)
        return;
    employment.relationState = 3;
    tell(EventKind::Ended, employment, QStringLiteral("1"), QStringLiteral("3"));
}

void Life::announceEnd(Employment &employment)
{
    if (!isAtWork(employment) || employment.end.isValid() || employment.level < 3)
        return;
    employment.end = now.day.addDays(draw.below(60));
    tell(EventKind::EndAnnounced, employment, QString(), dateText(employment.end));
}

void Life::withdrawEnd(Employment &employment)
{
    if (!isAtWork(employment) || !employment.end.isValid())
        return;
    tell(EventKind::EndWithdrawn, employment, dateText(employment.end), QString());
    employment.end = QDate();
}

/// By marriage: one in five women keeps her name beside the new one. All relations of the person
/// that the export has bear it.
void Life::rename(Employment &employment)
{
    if (!isAtWork(employment) || !employment.woman)
        return;
    const QString before = employment.surname;
    const QString married = feminine(drawSurname(draw));
    const QString first = before.section(QLatin1Char('-'), 0, 0);
    const QString after = draw.percent(20) ? first + QLatin1Char('-') + married : married;
    if (married == first)
        return;
    for (Employment &relation : now.employments) {
        if (relation.number != employment.number || !relation.inExport || relation.surname == after)
            continue;
        tell(EventKind::Renamed, relation, relation.surname, after);
        relation.surname = after;
    }
}

void Life::graduate(Employment &employment)
{
    if (!isAtWork(employment) || !employment.titleBefore.isEmpty())
        return;
    employment.titleBefore = draw.percent(50) ? QStringLiteral("Ing.") : QStringLiteral("Mgr.");
    tell(EventKind::Graduated, employment, QString(), employment.titleBefore);
}

void Life::changePhone(Employment &employment)
{
    if (!isAtWork(employment))
        return;
    const QString after = drawPhone(draw);
    for (Employment &relation : now.employments) {
        if (relation.number != employment.number || !relation.inExport || relation.phone == after)
            continue;
        tell(EventKind::NewPhone, relation, relation.phone, after);
        relation.phone = after;
    }
}

void Life::move(Employment &employment)
{
    const Branch &branch = now.branches.at(draw.below(now.branches.size()));
    if (!isAtWork(employment) || branch.number == 0 || branch.number == employment.branch)
        return;
    tell(EventKind::Moved, employment, QString::number(employment.branch),
         QString::number(branch.number));
    employment.branch = branch.number;
    if (!employment.memberships.contains(branch.number))
        employment.memberships.append(branch.number);
    // Not every branch has every calendar.
    if (now.groupOf(branch.number, employment.calendar) == 0)
        setCalendar(employment, now.masterGroupOf(branch.number)->calendars.first());
}

void Life::changeCalendar(Employment &employment)
{
    const MasterGroup *group = now.masterGroupOf(employment.branch);
    if (!isAtWork(employment) || !group)
        return;
    const uint calendar = group->calendars.at(draw.below(group->calendars.size()));
    if (calendar != employment.calendar)
        setCalendar(employment, calendar);
}

/// From the first of the month on.
void Life::setCalendar(Employment &employment, uint calendar)
{
    tell(EventKind::NewCalendar, employment, QString::number(employment.calendar),
         QString::number(calendar));
    employment.calendar = calendar;
    employment.calendarSince = QDate(now.day.year(), now.day.month(), 1);
}

void Life::changeSupervisor(Employment &employment)
{
    const uint supervisor = drawnSupervisor(employment);
    // A further relation of somebody who leads others could make a circle.
    if (!isAtWork(employment) || employment.ordinal != 1 || supervisor == 0
        || supervisor == employment.supervisor)
        return;
    tell(EventKind::NewSupervisor, employment, QString::number(employment.supervisor),
         QString::number(supervisor));
    employment.supervisor = supervisor;
}

void Life::beginState(EventKind kind, Employment &employment, ushort state)
{
    if (!isAtWork(employment) || employment.evidenceState != NoState)
        return;
    employment.evidenceState = state;
    employment.latestState = state;
    employment.stateBegin = now.day;
    employment.stateEnd = QDate();
    tell(kind, employment, QStringLiteral("0"), QString::number(state));
}

void Life::fallIll(Employment &employment)
{
    beginState(EventKind::FellIll, employment, Illness);
}

void Life::goOnParentalLeave(Employment &employment)
{
    beginState(EventKind::WentOnParentalLeave, employment,
               employment.woman ? Maternity : ParentalLeave);
}

/// Not on the day on which it began: no export would have told of it.
void Life::comeBack(Employment &employment)
{
    if (!isAtWork(employment) || employment.evidenceState == NoState
        || employment.stateBegin == now.day)
        return;
    tell(EventKind::CameBack, employment, QString::number(employment.evidenceState),
         QStringLiteral("0"));
    employment.evidenceState = NoState;
    employment.stateEnd = now.day;
}

/// Seldom more than there is.
void Life::takeLeave(Employment &employment)
{
    if (!isAtWork(employment) || employment.evidenceState != NoState
        || (employment.leave < 100 && !draw.percent(10)))
        return;
    const int before = employment.leave;
    employment.leave -= draw.percent(30) ? 50 : 100;
    tell(EventKind::LeaveTaken, employment, QString::number(before),
         QString::number(employment.leave));
}

void Life::grantLeave(Employment &employment)
{
    if (!isAtWork(employment))
        return;
    const int before = employment.leave;
    employment.leave += 2500;
    tell(EventKind::LeaveGranted, employment, QString::number(before),
         QString::number(employment.leave));
}
