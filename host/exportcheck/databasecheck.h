// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// An export against the attendance database.
#pragma once

#include "host/base/failure.h"
#include "host/exportcheck/exportfinding.h"
#include "host/exportcheck/statementtrial.h"

#include <QHash>
#include <QMap>
#include <QSet>

struct ExportLine;
class QSqlDatabase;

/// How many people of an export the database has, and how.
struct DatabaseCounts
{
    int added = 0; ///< current people whom it does not have
    int revived = 0; ///< current people whose row is inactive
    int updated = 0; ///< people whose row differs
    int ended = 0; ///< among these, people whose last day has gone by or is new
    int same = 0;
    int leftOut = 0; ///< ended people whom it does not have
};

/// Reads what it needs of the database once, and then looks at line after line.
///
/// Used on the thread of the handle.
class DatabaseCheck
{
public:
    /// Reads branches, groups, administrators, people and widths of columns. Only reads. Fails with
    /// the server's words.
    Failure load(const QSqlDatabase &database);

    /// A line that was taken.
    void take(const ExportLine &line, int lineNumber);
    /// Of all lines taken, those across lines by the number that they are about.
    ExportFindings findings() const;
    const DatabaseCounts &counts() const { return people; }
    /// Whether a backslash escapes in the sessions of this login.
    EscapeMode escapes() const { return escapeMode; }
    /// What the texts do in the statement that the person is due: they are updated, or added if the
    /// database does not have them, or nothing is written about somebody who has ended.
    QVector<TextTrial> effectsOf(const EmployeeRecord &record, StatementTrial *trial) const;

private:
    struct Person
    {
        bool isActive = false;
        uint texts = 0; ///< a hash of title, name, surname, title behind, phone
        QDate begin;
        QDate end;
        uint calendar = 0;
        uint branch = 0; ///< number
    };
    using Lines = QVector<int>;

    Failure loadNumbers(const QSqlDatabase &database);
    Failure loadPeople(const QSqlDatabase &database);
    Failure loadWidths(const QSqlDatabase &database);
    void count(const ExportLine &line);
    void lookAtWidths(const ExportLine &line, int lineNumber);

    QHash<uint, int> branchCounts; ///< how many branches have a number
    QSet<QPair<uint, uint>> calendars; ///< branch number and calendar that a group carries
    QHash<uint, int> adminCounts;
    QHash<uint, Person> known; ///< by pid
    QHash<int, int> widths; ///< letters, by column of the export from 1 on
    bool isStrict = true; ///< the session refuses texts that are too long
    EscapeMode escapeMode = EscapeMode::Either;

    QMap<uint, Lines> withoutBranch;
    QMap<uint, Lines> withSeveralBranches;
    QMap<QPair<uint, uint>, Lines> withoutGroup;
    QMap<uint, Lines> withoutAdmin;
    QMap<uint, Lines> withSeveralAdmins;
    ExportFindings ofLines;
    DatabaseCounts people;
};
