// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The chapters of a story, and what they have in common.
#pragma once

#include "host/explain/story.h"

struct PluginMessage;

/// Adds lines to a chapter.
class ChapterWriter
{
public:
    ChapterWriter(const QString &name, const QString &title);

    /// The statements stand behind the line.
    void say(const QString &text, const QStringList &statements = {});
    /// Unless it was said before.
    void sayOnce(const QString &text);
    /// What belongs to the line said last.
    void detail(const QString &text, const QStringList &statements = {});
    /// Statements of the line said last.
    void support(const QStringList &statements);
    bool isEmpty() const { return chapter.lines.isEmpty(); }
    StoryChapter result() const { return chapter; }

private:
    StoryChapter chapter;
};

/// The person's active row, or else an inactive one, among their rows before the pass.
class PersonBefore
{
public:
    explicit PersonBefore(const ExplainFacts &storyFacts);

    bool hasRow() const { return row != nullptr; }
    bool isActive() const;
    qlonglong uid() const { return cell(QStringLiteral("uid")).toLongLong(); }
    /// Of the row in `people`; not valid where there is no row or no such column.
    QVariant cell(const QString &column) const;
    /// The cell for a reader, "none" where it is NULL.
    QString shown(const QString &column) const;
    /// How many of their rows a table has.
    int count(const QString &table) const;
    /// The cells of one column in their rows of a table.
    QVector<QVariant> cells(const QString &table, const QString &column) const;

    /// Unlocked days whose `ok` is -1, and the first of them.
    int openDays = 0;
    QDate openSince;
    /// Unlocked days from today on whose `ok` is below -1.
    int futureDays = 0;

private:
    void countDays();

    const ExplainFacts &facts;
    const TableContent *people = nullptr;
    const TableRow *row = nullptr;
};

/// The name of what an id stands for, or "number 7".
QString namedId(const IdNames &names, const char *column, const QVariant &id);
/// "2026-11-22", or "none".
QString dateText(const QDate &date);
/// Without the signs of Markdown.
QString plainText(const char *markdown);
/// What is filled in stays out of it, but for numbers.
QString messageText(const PluginMessage *known, const QString &text, PersonalTexts texts);
/// The statement with the values bound to it; where texts are hidden, without those among the
/// values, and without all that stands between its first apostrophe and its last one.
QString statementText(const TraceStep &step, PersonalTexts texts);

StoryChapter exportChapter(const ExplainFacts &facts);
StoryChapter databaseChapter(const ExplainFacts &facts, const PersonBefore &before);
StoryChapter passChapter(const ExplainFacts &facts, const PersonBefore &before);
StoryChapter changesChapter(const ExplainFacts &facts);
StoryChapter waitingChapter(const ExplainFacts &facts, const PersonBefore &before);
StoryChapter terminalsChapter(const ExplainFacts &facts, const PersonBefore &before);

/// What the pass has changed of the person and for them; null if nothing is known of them.
const ChangedPerson *changedPerson(const ExplainFacts &facts);
/// Lines of the person that are taken.
QVector<PersonLine> takenLines(const ExplainFacts &facts);
