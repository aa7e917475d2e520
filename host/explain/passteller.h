// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story's chapter about the pass itself.
#pragma once

#include "host/catalogue/statements.h"
#include "host/explain/storyparts.h"

#include <optional>

struct PluginMessage;

/// Goes through what the pass has said and asked, and makes sentences of it. That of a matter comes
/// when the pass has told enough of it, and at the latest when it turns to the next record.
///
/// Made on the stack, and used once.
class PassTeller
{
public:
    PassTeller(const ExplainFacts &storyFacts, const PersonBefore &personBefore);

    StoryChapter tell();

private:
    /// What is known of the record that the pass is at.
    struct Record
    {
        bool isOpen = false; ///< there is one
        bool rowIsTold = false;
        bool isTried = false; ///< it was tried to add or update the person
        bool moveIsFree = true; ///< there is no correction of today
        std::optional<int> balance; ///< of the fund, not told yet
        QStringList balanceStatements;
        std::optional<QStringList> plan; ///< group, uid and month that were asked for
    };
    using Values = QStringList;

    // Messages (passteller.cpp)
    void message(const TraceStep &step);
    void complain(const PluginMessage *known, const TraceStep &step);
    void passBegins(const Values &values);
    void fundFound(const Values &values);
    void recordBegins(const Values &values);
    void moveChecked(const Values &values);
    void attendanceChecked(const Values &values);
    void balanceRead(const Values &values);
    void administratorFound(const Values &values);
    void branchBegins(const Values &values);
    void passEnds(const Values &values);
    void endRecord();
    void settleRow();
    void tellComparison();
    QStringList takeStatements();

    // Statements (passteller_calls.cpp)
    void call(const TraceStep &step);
    void personWritten(const ClassifiedStatement &statement, const TraceStep &step);
    void personAdded();
    void fieldsWritten();
    void newsQueued(int terminals);
    void correctionWritten(const ClassifiedStatement &statement);
    void daysReopened(const ClassifiedStatement &statement, int affected);
    void supervisorMarked(const ClassifiedStatement &statement, int affected);
    void branchAsked(const ClassifiedStatement &statement);
    void planSettled();
    void planWritten(const ClassifiedStatement &statement);
    void propagated(const ClassifiedStatement &statement, int affected);
    void pamWritten(const ClassifiedStatement &statement);
    QString namesIn(const char *column, const QString &pairs) const;

    const ExplainFacts &facts;
    const PersonBefore &before;
    const QVector<PersonLine> lines; ///< that are taken
    ChapterWriter chapter;
    Record record;
    int recordCount = 0;
    bool hasReopened = false; ///< days, for this record or one before it
    QStringList pending; ///< statements that no sentence has told yet
};
