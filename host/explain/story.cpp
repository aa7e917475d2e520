// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a pass does with one person, told in its order.
#include "host/explain/story.h"

#include "host/base/oneline.h"
#include "host/catalogue/messages.h"
#include "host/changes/personkinds.h"
#include "host/explain/storyparts.h"
#include "host/report/textreport.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

QString titleOf(const ExplainFacts &facts)
{
    const ChosenPerson &person = facts.person;
    QStringList keys {Text::tr("pid %1").arg(person.pid)};
    for (const qlonglong uid : person.uids)
        keys.append(Text::tr("uid %1").arg(uid));
    const QString who = QStringLiteral("%1 %2").arg(
        person.pamId.isEmpty() ? Text::tr("somebody without a number") : person.pamId, person.name);
    return oneLine(
        Text::tr("%1 (%2), taken by %3")
            .arg(who.trimmed(), keys.join(QStringLiteral(", ")), keyTitle(person.takenAs)));
}

bool waits(const ChangedPerson &person)
{
    for (const NotDone &notDone : person.notDone) {
        if (notDone.what == NotDone::Branch || notDone.what == NotDone::Group)
            return true;
    }
    return false;
}

/// Errors are of this person also where they name nobody: nobody else is on the copy.
bool hasErrors(const ExplainFacts &facts)
{
    return facts.changes.summary[ChangeKind::Errors] > 0;
}

bool hasDropped(const ExplainFacts &facts)
{
    for (const PersonLine &line : facts.lines) {
        if (!line.isHeader && line.fate != LineFate::Taken)
            return true;
    }
    return false;
}

QString verdictOf(const ExplainFacts &facts, const PersonBefore &before)
{
    const ChangedPerson *const changed = changedPerson(facts);
    const QString kinds = changed ? kindNames(changed->kinds).join(QStringLiteral(", "))
                                  : QString();
    if (hasErrors(facts))
        return Text::tr("The pass has errors about them.");
    if (takenLines(facts).isEmpty())
        return hasDropped(facts)
            ? Text::tr("Their line is dropped, so the pass leaves them alone.")
            : Text::tr("They are not in the export, so the pass leaves them alone.");
    if (changed && waits(*changed))
        return kinds.isEmpty() ? Text::tr("Something waits, and nothing changes.")
                               : Text::tr("Something waits; what changes: %1.").arg(kinds);
    if (!kinds.isEmpty())
        return Text::tr("What changes: %1.").arg(kinds);
    return before.isActive() ? Text::tr("Nothing changes for them.")
                             : Text::tr("They are left out of the database.");
}

/// The remedy of the first complaint that has one, the worst ones first.
QString messageRemedy(const ExplainFacts &facts)
{
    for (const QtMsgType type : {QtCriticalMsg, QtWarningMsg}) {
        for (const TraceStep &step : facts.steps) {
            const PluginMessage *const known = step.isMessage && step.type == type
                ? findMessage(type, step.text)
                : nullptr;
            if (known && known->remedy)
                return plainText(known->remedy);
        }
    }
    return QString();
}

QString nextOf(const ExplainFacts &facts, const PersonBefore &before)
{
    const QString remedy = messageRemedy(facts);
    if (!remedy.isEmpty())
        return remedy;
    if (hasDropped(facts) || takenLines(facts).isEmpty())
        return hasDropped(facts)
            ? Text::tr("Mend the line in the HR system.")
            : Text::tr("If they should be in the export, look into the HR system.");
    const ChangedPerson *const changed = changedPerson(facts);
    for (const NotDone &notDone : changed ? changed->notDone : QVector<NotDone>()) {
        if (notDone.what == NotDone::LeaveNotAtRest && before.hasRow())
            return Text::tr("If leave should be corrected: let attendance be calculated; a later "
                            "pass looks again.");
    }
    return Text::tr("There is nothing to do.");
}

} // namespace

Story tellStory(const ExplainFacts &facts)
{
    const PersonBefore before(facts);
    Story story;
    story.title = titleOf(facts);
    story.chapters = {exportChapter(facts),          databaseChapter(facts, before),
                      passChapter(facts, before),    changesChapter(facts),
                      waitingChapter(facts, before), terminalsChapter(facts, before)};
    story.verdict = verdictOf(facts, before);
    story.next = nextOf(facts, before);
    story.exitCode = hasErrors(facts) ? ExitErrors : ExitClean;
    return story;
}

QString storyText(const Story &story, bool withStatements, int width)
{
    const int step = 2;
    const auto line = [width](const QString &text, int indent) {
        return QString(indent, QLatin1Char(' '))
            + wrapped(text, width - indent - step, indent + step) + QLatin1Char('\n');
    };
    QString text = line(story.title, 0);
    for (const StoryChapter &chapter : story.chapters) {
        text += QLatin1Char('\n') + line(chapter.title, 0);
        for (const StoryLine &sentence : chapter.lines) {
            const int indent = sentence.isDetail ? 2 * step : step;
            text += line(sentence.text, indent);
            for (const QString &statement : withStatements ? sentence.statements : QStringList())
                text += line(QStringLiteral("> ") + oneLine(statement), indent + step);
        }
    }
    return text + QLatin1Char('\n') + line(story.verdict, 0) + line(story.next, 0);
}
