// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that a pass of the plugin runs, and no others.
#pragma once

#include "host/catalogue/namedpeople.h"

#include <QString>
#include <QVariant>

#include <vector>

/// In the order in which a pass comes to them.
enum class PassStatement {
    Unknown,
    ForceFlag,
    People,
    Branches,
    LeaveFund,
    CorrectionsOfToday,
    Calculated,
    OpenDays,
    Balance,
    Corrections,
    WriteCorrection,
    AddPerson,
    UpdatePerson,
    PamBlocks,
    PamList,
    WritePamList,
    PersonForPam,
    EnrolInPam,
    UidByPid,
    PersonForTerminals,
    QueueNews,
    CallUpdateTermsSync,
    ReopenDays,
    MoveMark,
    AdminByNumber,
    TakeSupervisorMarks,
    GiveSupervisorMark,
    InBranch,
    GroupByCalendar,
    InGroupsPlan,
    AddGroupsPlan,
    UpdateMonths,
    AddToBranch,
    TermsOfBranch,
    PutOnTerm,
    NoticeToTerm,
    MarkTerm,
    AdminsOfBranch,
    PutUnderAdmins,
    ClearForceFlag,
    /// Prepared, and not yet told whether it writes the PaM list or the force flag.
    WriteVariable
};

/// A table and what a statement needs there ("SELECT", "INSERT", "UPDATE"), or a stored routine and
/// "EXECUTE".
struct StatementNeed
{
    QString object;
    QStringList rights;
};

enum class StatementAccess {
    Reads,
    Writes,
    Calls ///< a stored routine, which writes
};

/// What is known of a statement beforehand.
struct StatementFacts
{
    PassStatement statement = PassStatement::Unknown;
    StatementAccess access = StatementAccess::Reads;
    std::vector<StatementNeed> needs; ///< the tables and routines that it concerns
    NamingPlace named; ///< which of its values names people
};

/// What a text is.
struct ClassifiedStatement
{
    PassStatement statement = PassStatement::Unknown;
    /// At the places of its form; what is bound, where values are bound.
    QStringList values;
    /// False where a number stands out of its place: a text of the export held a marker such as
    /// "%1", and what should have filled later places has moved. Only adding and updating a person
    /// does that; whom they are about stands in front of all texts.
    bool inPlace = true;
};

/// Which statement the text is; Unknown for any other. A text of the export may hold anything. To a
/// prepared statement belong the values that were bound to it, in the order of their places. For
/// any thread.
ClassifiedStatement classifyStatement(const QString &text, const QVariantList &bound = {});

/// Whom the statement is about, as the plugin means it: also where a text of the export has turned
/// the statement into another one.
NamedPeople peopleIn(const ClassifiedStatement &statement);

/// Nothing but the default for Unknown.
const StatementFacts &factsOf(PassStatement statement);

/// The facts of all statements but Unknown, each once.
const std::vector<StatementFacts> &allStatements();
