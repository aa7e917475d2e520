// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A company as its HR system and its attendance system know it on one day.
#pragma once

#include <QDate>
#include <QString>
#include <QVector>

/// One employment relation. Most of it is a line of the export, in the same order.
struct Employment
{
    uint number = 0; ///< of the person
    uint ordinal = 1; ///< of the relation, among those of the person
    QString titleBefore;
    QString name;
    QString surname;
    QString titleAfter;
    QString phone;
    QDate begin; ///< first day
    QDate end; ///< last day, invalid while none is known
    uint branch = 0; ///< number, 0 for none
    uint calendar = 0; ///< 0 for none
    QDate calendarSince;
    ushort type = 11;
    ushort relationState = 1;
    ushort evidenceState = 0;
    int leave = 0; ///< hundredths of a day
    uint supervisor = 0; ///< number of a person, 0 for none

    // What no line says.
    bool woman = false;
    int level = 3; ///< 0 heads the company, 1 a division, 2 a team, 3 nobody
    bool inExport = true; ///< those who left long ago are no longer in it
    QVector<uint> memberships; ///< numbers of all branches so far; nobody ever leaves one
    QDate stateBegin; ///< of the latest evidence state other than 0
    QDate stateEnd; ///< the day on which that was over
    ushort latestState = 0;

    /// The last day, if one is known, has not gone by.
    bool runsOn(const QDate &day) const { return !end.isValid() || end >= day; }
    /// The supervisor's mark is kept for these types only.
    bool hasMark() const { return supervisor != 0 && (type == 11 || type == 65); }
    /// Both numbers joined to the key of table `people`.
    uint pid() const { return QStringLiteral("%1%2").arg(number).arg(ordinal).toUInt(); }
};

/// Branches of one kind, with a group for each of their calendars.
struct MasterGroup
{
    uint id = 0;
    QString name;
    QVector<uint> calendars;

    /// The id of the group that carries the calendar.
    uint groupOf(uint calendar) const { return 10 * id + calendar; }
};

struct Branch
{
    uint id = 0;
    uint number = 0; ///< cost centre; 0 for a branch that no line can name
    QString name;
    uint masterGroup = 0; ///< id, 0 for none
};

struct Terminal
{
    uint id = 0;
    uint branch = 0; ///< number, 0 for none
    int status = 1; ///< 0 off, 1 in service, 2 set up
    int flags = 2; ///< kinds of things that it takes; 2 persons

    bool isToldOfNew() const { return status > 0; }
    bool isToldOfChanged() const { return status == 1 && (flags & 2) != 0; }
};

struct Administrator
{
    uint id = 0;
    uint number = 0; ///< of the person, 0 for somebody who is no employee
    QString name;
    QVector<uint> branches; ///< numbers
};

/// So many days after their last one people are still in the export.
const int daysInExportAfterTheEnd = 30;

/// A text for an evidence state, as the plugin's settings have it.
struct EvidenceState
{
    ushort state;
    const char *text; ///< UTF-8
};

enum : ushort {
    NoState = 0,
    Maternity = 21,
    ParentalLeave = 22,
    Illness = 41,
};

const EvidenceState evidenceStates[] = {
    {Maternity, "materská dovolenka"},
    {ParentalLeave, "rodičovská dovolenka"},
    {Illness, "dočasná pracovná neschopnosť"},
};

/// The text of an evidence state; empty for one that has none.
QString evidenceStateText(ushort state);

/// A value: generated, or made by hand of the same parts.
struct Company
{
    QDate day;
    QVector<MasterGroup> masterGroups;
    QVector<Branch> branches;
    QVector<Terminal> terminals;
    QVector<Administrator> administrators;
    QVector<Employment> employments; ///< in the order of the export

    /// Null for a number that no branch has.
    const Branch *branchOf(uint number) const;
    /// That of the branch; null if there is none.
    const MasterGroup *masterGroupOf(uint branchNumber) const;
    /// The id of the group that carries the calendar in the branch, 0 for none.
    uint groupOf(uint branchNumber, uint calendar) const;
};

/// What a generated company is to be like.
struct CompanyPlan
{
    int people = 200; ///< employed ones; some have a second relation, others have left already
    quint32 seed = 1;
    QDate day; ///< on which it is seen
};

/// A sound company: whoever is named as supervisor is in it, and so is each branch and calendar.
/// The same plan gives the same company on every machine.
Company generatedCompany(const CompanyPlan &plan);
