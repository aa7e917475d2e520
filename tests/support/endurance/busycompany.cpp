// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company whose people change from export to export, and the rows that it owes by then.
#include "support/endurance/busycompany.h"

#include "support/recordbuilder.h"

#include <algorithm>
#include <vector>

namespace {

/// A terminal of a branch. One that is off is told nothing, one that is only set up is told who is
/// new and not who has changed, and so is one that takes no persons.
struct Terminal
{
    uint tid;
    uint branch; ///< number
    int status; ///< 0 off, 1 in service, 2 set up
    int flags; ///< 2 persons

    bool isToldOfNew() const { return status > 0; }
    bool isToldOfChanged() const { return status == 1 && (flags & 2) != 0; }
};

const std::vector<Terminal> &terminals()
{
    static const std::vector<Terminal> all {{1, 7, 1, 2}, {2, 7, 1, 1}, {3, 8, 2, 2},
                                            {4, 8, 1, 3}, {5, 8, 1, 2}, {6, 9, 0, 2}};
    return all;
}

const std::vector<uint> branchNumbers {7, 8, 9};
const std::vector<uint> supervisorNumbers {9001, 9002, 9003};
const uint firstNumber = 1001;
const int mostPeople = 60;
const int branchKey = 10; // a branch's bid is its number times this

int toldOfNew(uint branch)
{
    return static_cast<int>(
        std::count_if(terminals().begin(), terminals().end(), [branch](const Terminal &terminal) {
            return terminal.branch == branch && terminal.isToldOfNew();
        }));
}

int toldOfChanged(const QSet<uint> &branches)
{
    return static_cast<int>(std::count_if(
        terminals().begin(), terminals().end(), [&branches](const Terminal &terminal) {
            return branches.contains(terminal.branch) && terminal.isToldOfChanged();
        }));
}

QString joined(QVector<uint> numbers)
{
    std::sort(numbers.begin(), numbers.end());
    QStringList texts;
    for (const uint number : qAsConst(numbers))
        texts.append(QString::number(number));
    return texts.join(QLatin1Char(','));
}

} // namespace

BusyCompany::BusyCompany(TestDatabase &companyDatabase, unsigned seed, int people) :
    database(companyDatabase),
    random(seed),
    lastNumber(firstNumber - 1)
{
    database.clear();
    database.execute(QStringLiteral("INSERT INTO mastergroups (mgid) VALUES (1)"));
    database.execute(
        QStringLiteral("INSERT INTO groups (gid, parent, calendarID) VALUES (11, 1, 1)"));
    for (const uint number : branchNumbers)
        database.execute(QStringLiteral("INSERT INTO branches (bid, number, mgid) "
                                        "VALUES (%1, %2, 1)")
                             .arg(number * branchKey)
                             .arg(number));
    for (const Terminal &terminal : terminals())
        database.execute(QStringLiteral("INSERT INTO term (tid, bid, status, flags) "
                                        "VALUES (%1, %2, %3, %4)")
                             .arg(terminal.tid)
                             .arg(terminal.branch * branchKey)
                             .arg(terminal.status)
                             .arg(terminal.flags));
    for (const uint number : supervisorNumbers)
        database.execute(
            QStringLiteral("INSERT INTO admins (personalNumber) VALUES (%1)").arg(number));
    database.execute(QStringLiteral("INSERT INTO funds (fid, iid, unit) VALUES (2, 3, 2)"));
    database.execute(QStringLiteral("INSERT INTO vars (name, value) VALUES "
                                    "('exportPam.1.active', '1')"));
    for (int i = 0; i < people; ++i)
        takeOn();
}

int BusyCompany::below(int limit)
{
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

uint BusyCompany::otherBranch(uint branch)
{
    uint other = branch;
    while (other == branch)
        other = branchNumbers.at(
            static_cast<size_t>(below(static_cast<int>(branchNumbers.size()))));
    return other;
}

/// A new person lands on the terminals of his branch.
void BusyCompany::takeOn()
{
    ++lastNumber;
    Employee employee;
    employee.surname = QStringLiteral("Nová%1").arg(lastNumber);
    employee.phone = QStringLiteral("0905 %1").arg(below(1000000));
    employee.branch = otherBranch(0);
    employee.supervisor = supervisorNumbers.front();
    employee.balance = below(40) * 0.5;
    employee.memberships.insert(employee.branch);
    notices += toldOfNew(employee.branch);
    employees.insert(lastNumber, employee);
}

/// Every fifth person changes in something, on the average.
QStringList BusyCompany::nextExport(Changes changes)
{
    for (auto it = employees.begin(); it != employees.end(); ++it) {
        if (it.key() <= exportedUpTo && below(5) == 0)
            change(*it, changes);
    }
    if (changes == EverythingChanges && employees.size() < mostPeople && below(10) == 0)
        takeOn();
    exportedUpTo = lastNumber;

    return sameExport();
}

QStringList BusyCompany::sameExport() const
{
    QStringList lines {exportHeader()};
    for (auto it = employees.cbegin(); it != employees.cend(); ++it)
        lines.append(line(it.key(), *it));
    return lines;
}

/// What the row of the person holds, or only what it does not hold.
void BusyCompany::change(Employee &employee, Changes changes)
{
    switch (below(3)) {
    case 0:
        employee.balance += 0.5;
        return;
    case 1:
        employee.supervisor = supervisorNumbers.at(
            static_cast<size_t>(below(static_cast<int>(supervisorNumbers.size()))));
        return;
    default:
        changeRow(employee, changes);
    }
}

/// The terminals on which the person is by now are told once, whatever has changed. Who joins a
/// branch lands on its terminals, unless he has been there before: nobody ever leaves one.
void BusyCompany::changeRow(Employee &employee, Changes changes)
{
    notices += toldOfChanged(employee.memberships);
    employee.phone = QStringLiteral("%1 0905").arg(++lastPhone);
    if (below(2) == 0)
        employee.surname = QStringLiteral("Ťažká%1").arg(below(1000));
    if (changes == NobodyMoves || below(4) != 0)
        return;
    employee.branch = otherBranch(employee.branch);
    if (!employee.memberships.contains(employee.branch)) {
        employee.memberships.insert(employee.branch);
        notices += toldOfNew(employee.branch);
    }
}

QString BusyCompany::line(uint number, const Employee &employee) const
{
    return record()
        .pid(number, 1)
        .name(QStringLiteral("Ľubica"), employee.surname)
        .phone(employee.phone)
        .branch(employee.branch)
        .calendar(1, QDate(2024, 2, 1))
        .balance(employee.balance)
        .supervisor(employee.supervisor)
        .line();
}

QStringList BusyCompany::rows()
{
    return database.rows(QStringLiteral(
        "SELECT p.pid, p.surname, p.phone, b.number, "
        "(SELECT GROUP_CONCAT(bid DIV 10 ORDER BY bid) FROM brape WHERE uid = p.uid), "
        "(SELECT GROUP_CONCAT(tid ORDER BY tid) FROM people_term WHERE uid = p.uid), "
        "(SELECT GROUP_CONCAT(personalNumber) FROM admins_people JOIN admins USING(aid) "
        "WHERE uid = p.uid AND request = 1) "
        "FROM people p LEFT JOIN branches b USING(bid) ORDER BY p.pid"));
}

QStringList BusyCompany::owedRows() const
{
    QStringList rows;
    for (auto it = employees.cbegin(); it != employees.cend(); ++it) {
        QVector<uint> tids;
        for (const Terminal &terminal : terminals()) {
            if (it->memberships.contains(terminal.branch) && terminal.isToldOfNew())
                tids.append(terminal.tid);
        }
        rows.append(QStringList {
            QString::number(it.key()) + QLatin1Char('1'), it->surname, it->phone,
            QString::number(it->branch), joined(it->memberships.values().toVector()),
            tids.isEmpty() ? QStringLiteral("NULL") : joined(tids), QString::number(it->supervisor)}
                        .join(QLatin1Char('|')));
    }
    return rows;
}

int BusyCompany::queuedNotices()
{
    return database.value(QStringLiteral("SELECT COUNT(*) FROM term_sync")).toInt();
}
