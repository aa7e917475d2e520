// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that a pass may run, and no others.
#pragma once

#include <QString>

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
    PutUnderAdmins
};

/// Which statement this is. A text of the export may stand where the statement has a text; with
/// `markersInTexts` also where the statement of a person has a number, for texts are not protected
/// from what fills them later.
PassStatement classify(const QString &statement, bool markersInTexts);

/// The one statement that is prepared.
bool isPreparedStatement(const QString &statement);
