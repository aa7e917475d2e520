// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of a company's people.
#include "host/company/companyrows.h"
#include "host/company/sqlrows.h"

#include <QHash>

#include <algorithm>

namespace {

const uint leaveFund = 2;
const int daysThatWait = 3;

/// The last second of the day.
QString endOrNull(const QDate &date)
{
    return date.isValid() ? sqlNumber(midnight(date.addDays(1)) - 1) : QStringLiteral("NULL");
}

QDate firstOfMonth(const QDate &date)
{
    return QDate(date.year(), date.month(), 1);
}

uint personType(ushort type)
{
    return type == 11 || type == 65 ? 1 : type == 51 || type == 53 || type == 54 ? 4 : 0;
}

uint pamSettings(ushort type)
{
    return personType(type) == 4 ? 2 : personType(type);
}

/// The people of a company by the parts of it to which their rows refer.
class PeopleWriter
{
public:
    PeopleWriter(const Company &ofCompany, const PeopleDepth &rowDepth) :
        company(ofCompany),
        depth(rowDepth)
    {
        for (const Branch &branch : company.branches) {
            if (branch.number != 0)
                bids.insert(branch.number, branch.id);
        }
        for (const Terminal &terminal : company.terminals) {
            if (terminal.isToldOfNew() && terminal.branch != 0)
                tids[terminal.branch].append(terminal.id);
        }
        for (const Administrator &administrator : company.administrators) {
            if (administrator.number != 0)
                aids.insert(administrator.number, administrator.id);
            for (const uint branch : administrator.branches)
                branchAids[branch].append(administrator.id);
        }
    }

    QStringList write()
    {
        uint uid = 0;
        for (const Employment &employment : company.employments) {
            ++uid;
            addPerson(uid, employment);
            addMemberships(uid, employment);
            addLeave(uid, employment);
            const uint gid = company.groupOf(employment.branch, employment.calendar);
            if (gid != 0)
                plans.add({sqlNumber(uid), sqlMonth(employment.calendarSince), sqlNumber(gid)});
        }
        return people.take() + pam.take() + members.take() + onTerminals.take() + underAdmins.take()
            + plans.take() + moves.take() + QStringList {pamList()};
    }

private:
    void addPerson(uint uid, const Employment &employment);
    void addMemberships(uint uid, const Employment &employment);
    void addLeave(uint uid, const Employment &employment);
    void addMove(uint uid, int type, const QDate &day, int value);
    QString pamList() const;

    const Company &company;
    const PeopleDepth depth;
    QHash<uint, uint> bids;
    QHash<uint, QVector<uint>> tids; ///< by the branch's number
    QHash<uint, uint> aids; ///< by personal number
    QHash<uint, QVector<uint>> branchAids; ///< by the branch's number
    QStringList listed; ///< pids
    SqlRows people {QStringLiteral(
        "people (uid, pid, pamId, title, name, surname, title2, phone, begin, end, rsBegin, rsEnd, "
        "rsText, type, status, did, bid, calendarID, lastCalc, created)")};
    SqlRows pam {QStringLiteral("people_pam (uid, id)")};
    SqlRows members {QStringLiteral("brape (bid, uid, since)")};
    SqlRows onTerminals {QStringLiteral("people_term (tid, uid)")};
    SqlRows underAdmins {QStringLiteral("admins_people (aid, uid, request)")};
    SqlRows plans {QStringLiteral("groups_plan (uid, since, gid)")};
    SqlRows moves {QStringLiteral("funds_move (uid, fid, type, day, month, value)")};
};

void PeopleWriter::addPerson(uint uid, const Employment &employment)
{
    const QDate lastCalculated = depth.today.addDays(-1);
    people.add(
        {sqlNumber(uid),
         sqlNumber(employment.pid()),
         QStringLiteral("'%1.%2'").arg(employment.number).arg(employment.ordinal),
         sqlText(employment.titleBefore),
         sqlText(employment.name),
         sqlText(employment.surname),
         sqlText(employment.titleAfter),
         sqlText(employment.phone),
         sqlNumber(midnight(employment.begin)),
         endOrNull(employment.end),
         sqlMidnightOrNull(employment.stateBegin),
         sqlMidnightOrNull(employment.stateEnd),
         sqlText(evidenceStateText(employment.latestState)),
         sqlNumber(personType(employment.type)),
         employment.inExport ? QStringLiteral("1") : QStringLiteral("0"),
         QStringLiteral("1"),
         sqlNumberOrNull(bids.value(employment.branch)),
         sqlNumber(employment.calendar),
         sqlNumber(midnight(employment.runsOn(lastCalculated) ? lastCalculated : employment.end)),
         sqlNumber(midnight(employment.begin))});
    if (const uint settings = pamSettings(employment.type))
        pam.add({sqlNumber(uid), sqlNumber(settings)});
    listed.append(sqlNumber(employment.pid()));
}

void PeopleWriter::addMemberships(uint uid, const Employment &employment)
{
    QHash<uint, bool> requests; // by administrator
    for (const uint branch : employment.memberships) {
        members.add(
            {sqlNumber(bids.value(branch)), sqlNumber(uid), sqlNumber(midnight(employment.begin))});
        for (const uint tid : tids.value(branch))
            onTerminals.add({sqlNumber(tid), sqlNumber(uid)});
        for (const uint aid : branchAids.value(branch))
            requests.insert(aid, false);
    }
    const uint supervisor = employment.hasMark() ? aids.value(employment.supervisor) : 0;
    if (supervisor != 0)
        requests.insert(supervisor, true);
    QVector<uint> order = requests.keys().toVector();
    std::sort(order.begin(), order.end());
    for (const uint aid : qAsConst(order))
        underAdmins.add({sqlNumber(aid), sqlNumber(uid), sqlNumber(requests.value(aid) ? 1 : 0)});
}

void PeopleWriter::addMove(uint uid, int type, const QDate &day, int value)
{
    if (value != 0)
        moves.add({sqlNumber(uid), sqlNumber(leaveFund), sqlNumber(type), sqlNumber(midnight(day)),
                   sqlMonth(day), sqlNumber(value)});
}

/// The entitlement of the year and what was taken of it last month. Whoever came later has one
/// correction. Moves of this month other than corrections would not count.
void PeopleWriter::addLeave(uint uid, const Employment &employment)
{
    const QDate lastMonth = firstOfMonth(depth.today).addMonths(-1);
    if (employment.begin >= lastMonth) {
        addMove(uid, 3, depth.today.addDays(-1), employment.leave);
        return;
    }
    const int entitlement = qMax(2500, employment.leave);
    addMove(uid, 1, qMax(employment.begin, QDate(lastMonth.year(), 1, 1)), entitlement);
    addMove(uid, 2, lastMonth.addDays(9), employment.leave - entitlement);
}

QString PeopleWriter::pamList() const
{
    return QStringLiteral("UPDATE vars SET value = '%1' WHERE name = 'exportPam.1.selPeople'")
        .arg(listed.join(QLatin1Char(',')));
}

QVector<QDate> workingDays(const PeopleDepth &depth)
{
    QVector<QDate> days;
    for (int back = depth.attendanceDays; back > 0; --back) {
        const QDate day = depth.today.addDays(-back);
        if (day.dayOfWeek() < Qt::Saturday)
            days.append(day);
    }
    return days;
}

QString listOf(const QStringList &values)
{
    return QStringLiteral("VALUES (%1)").arg(values.join(QStringLiteral("), (")));
}

/// Made by the server from the people's own rows: there are many of them.
QString attendanceRows(const QVector<QDate> &days, const QDate &today)
{
    QStringList midnights;
    for (const QDate &day : days)
        midnights.append(sqlNumber(midnight(day)));
    return QStringLiteral("INSERT INTO atten (uid, `date`, `lock`, man, ok)\n"
                          "WITH days (day) AS (%1)\n"
                          "SELECT uid, day, day < %2, (uid * 31 + day DIV 86400) % 97 = 0,\n"
                          "       IF(uid % 50 = 7 AND day >= %3, -1, 1)\n"
                          "  FROM people JOIN days\n"
                          " WHERE status = 1 AND day >= begin AND (end IS NULL OR day < end)\n"
                          "   AND (rsBegin IS NULL OR day < rsBegin OR day >= rsEnd)\n"
                          " ORDER BY uid, day")
        .arg(listOf(midnights), sqlNumber(midnight(firstOfMonth(today).addMonths(-1))),
             sqlNumber(midnight(today.addDays(-daysThatWait))));
}

/// The months of the attendance, as far as a plan reaches.
QString monthRows(const QVector<QDate> &days)
{
    QStringList months;
    for (const QDate &day : days) {
        if (months.isEmpty() || months.constLast() != sqlMonth(day))
            months.append(sqlMonth(day));
    }
    return QStringLiteral("INSERT INTO groups_month (uid, month, gid)\n"
                          "WITH months (month) AS (%1)\n"
                          "SELECT uid, month, gid FROM groups_plan JOIN months "
                          "WHERE month >= since ORDER BY uid, month")
        .arg(listOf(months));
}

} // namespace

QStringList peopleRows(const Company &company, const PeopleDepth &depth)
{
    QStringList statements = PeopleWriter(company, depth).write();
    const QVector<QDate> days = workingDays(depth);
    if (!days.isEmpty())
        statements += QStringList {attendanceRows(days, depth.today), monthRows(days)};
    return statements;
}
