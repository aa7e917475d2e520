// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story's last chapters: what is written, what waits, what terminals are told.
#include "host/explain/storyparts.h"

#include "host/changes/personkinds.h"
#include "host/database/changetext.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

QString notDoneText(const NotDone &notDone, PersonalTexts texts)
{
    switch (notDone.what) {
    case NotDone::Branch:
        return Text::tr("The record waits, for no branch has its number. It is tried again when an "
                        "export brings the very same line, or in a forced pass.");
    case NotDone::Group:
        return Text::tr("There is no group plan, for no group of the branch carries the calendar.");
    case NotDone::LeaveNotAtRest:
        return Text::tr("Leave waits until attendance is at rest; each pass asks again.");
    case NotDone::LeaveCorrectedToday:
        return Text::tr("Leave waits until tomorrow, for there is a correction of today.");
    case NotDone::TestMode:
        return Text::tr("The plugin is in test mode and keeps the person's row back.");
    case NotDone::Refused:
        break;
    }
    const QString words = notDone.error.isEmpty() ? notDone.text : notDone.error;
    return texts == PersonalTexts::Hidden
        ? Text::tr("The database refused a statement.")
        : Text::tr("The database refused a statement: %1").arg(words);
}

/// Rows of nobody that this person is the reason for.
QVector<Change> allRows(const ExplainFacts &facts)
{
    const ChangedPerson *const changed = changedPerson(facts);
    return (changed ? changed->rows : QVector<Change>()) + facts.changes.others;
}

} // namespace

StoryChapter changesChapter(const ExplainFacts &facts)
{
    ChapterWriter chapter(QStringLiteral("changes"), Text::tr("What is written"));
    const QVector<PersonChanges> all = changeTexts(allRows(facts), facts.changes.names);
    for (const PersonChanges &person : all) {
        for (const QString &line : person.lines)
            chapter.say(line);
    }
    if (chapter.isEmpty())
        chapter.say(Text::tr("Nothing."));
    return chapter.result();
}

StoryChapter waitingChapter(const ExplainFacts &facts, const PersonBefore &before)
{
    ChapterWriter chapter(QStringLiteral("waiting"), Text::tr("What waits, or does not happen"));
    for (const PersonLine &line : facts.lines) {
        if (!line.isHeader && line.fate != LineFate::Taken)
            chapter.say(Text::tr("Line %1 comes to nothing until it is mended.").arg(line.number));
    }
    const ChangedPerson *const changed = changedPerson(facts);
    for (const NotDone &notDone : changed ? changed->notDone : QVector<NotDone>()) {
        const bool isOfNobody = notDone.what == NotDone::LeaveNotAtRest && !before.hasRow();
        chapter.sayOnce(
            isOfNobody ? Text::tr("Leave waits for a later pass, for there was no row of them.")
                       : notDoneText(notDone, facts.texts));
    }
    if (chapter.isEmpty())
        chapter.say(Text::tr("Nothing."));
    return chapter.result();
}

StoryChapter terminalsChapter(const ExplainFacts &facts, const PersonBefore &before)
{
    ChapterWriter chapter(QStringLiteral("terminals"), Text::tr("What terminals are told"));
    for (const Change &change : allRows(facts)) {
        if (change.table->name != QLatin1String("term_sync") || change.after.isEmpty())
            continue;
        const QString name = namedId(facts.changes.names, "tid",
                                     cellOf(change, change.after, QStringLiteral("tid")));
        const QString type = cellOf(change, change.after, QStringLiteral("type")).toString();
        chapter.say((type == QLatin1String("I") ? Text::tr("Terminal %1: to take them in.")
                                                : Text::tr("Terminal %1: their row has changed."))
                        .arg(name));
    }
    if (chapter.isEmpty())
        chapter.say(before.count(QStringLiteral("people_term")) == 0
                        ? Text::tr("Nothing; they were on no terminal.")
                        : Text::tr("Nothing."));
    return chapter.result();
}
