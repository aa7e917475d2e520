// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What can happen to somebody in a company.
#pragma once

#include <QDate>
#include <QString>

/// In the order in which they happen within a day.
enum class EventKind {
    Hired, ///< into a branch; nothing else happens to somebody on the first day
    Returned, ///< after an end, with a further relation
    LeftExport, ///< a month after the end
    Ended, ///< the first day after the last one
    EndAnnounced, ///< the last day is known from now on
    EndWithdrawn, ///< and no longer
    Renamed,
    Graduated,
    NewPhone,
    Moved, ///< to another branch
    NewCalendar,
    NewSupervisor,
    FellIll,
    WentOnParentalLeave,
    CameBack, ///< from a state
    LeaveTaken,
    LeaveGranted, ///< at New Year
};

const EventKind lastEventKind = EventKind::LeaveGranted;

/// As a word, such as "hired".
const char *eventName(EventKind kind);

/// Something that happened to one relation.
struct LifeEvent
{
    EventKind kind;
    QDate day;
    uint number = 0;
    uint ordinal = 0;
    QString before; ///< what changed, as the export had it; empty for nothing
    QString after;

    uint pid() const { return QStringLiteral("%1%2").arg(number).arg(ordinal).toUInt(); }
    /// A line for people: "4711.1 moved: 100 -> 120".
    QString text() const;
};
