// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass does with one person, told in its order.
#pragma once

#include "host/base/failure.h"
#include "host/changes/changes.h"
#include "host/changes/passtrace.h"
#include "host/copy/copyfacts.h"
#include "host/explain/personlines.h"
#include "host/exportcheck/exportfinding.h"

#include <QDate>
#include <QStringList>

/// A sentence, and what stands behind it.
struct StoryLine
{
    QString text; ///< one line, if the terminal is wide enough
    bool isDetail = false; ///< of the line before
    QStringList statements; ///< with which the plugin has asked or written it
};

struct StoryChapter
{
    QString name; ///< for machines
    QString title; ///< for people
    QVector<StoryLine> lines;
};

/// A plain value.
struct Story
{
    QString title; ///< who it is, and what the word was taken for
    QVector<StoryChapter> chapters;
    QString verdict;
    QString next; ///< what to do now
    ExitCode exitCode = ExitClean;
};

/// All that is known of a rehearsal of one person; a plain value.
struct ExplainFacts
{
    ChosenPerson person;
    QString exportName; ///< the file, without its folder
    QVector<PersonLine> lines; ///< theirs, and the header
    ExportFindings findings; ///< about these lines
    Snapshot before; ///< what the copy held
    Changes changes; ///< what the pass has made of it
    TraceSteps steps; ///< what it has said and asked
    CopyFacts copied;
    QDate today; ///< of the pass
    PersonalTexts texts = PersonalTexts::Shown;
};

/// The story. Each of its sentences comes from a line, a row, a message or a statement; nothing is
/// decided here.
Story tellStory(const ExplainFacts &facts);

/// Puts an ellipsis in place of each text of the person, so that only numbers and dates are left.
void hideNames(ExplainFacts *facts);

/// The story in lines of at most `width` characters; with the statements where they are wanted.
QString storyText(const Story &story, bool withStatements, int width);
