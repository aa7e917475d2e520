// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story's chapter about the pass itself: what the plugin says.
#include "host/explain/passteller.h"

#include "host/catalogue/messages.h"
#include "host/changes/changestext.h"

#include <QCoreApplication>
#include <QDateTime>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

/// Why somebody is not added: what the line says that may end a person.
QString endText(const EmployeeRecord &line, const QDate &today)
{
    QStringList reasons;
    if (line.datumVystupu.isValid() && line.datumVystupu < today)
        reasons.append(Text::tr("its last day is %1").arg(dateText(line.datumVystupu)));
    if (line.stavPracovnihoPomeru > 3)
        reasons.append(Text::tr("its state is %1").arg(line.stavPracovnihoPomeru));
    return reasons.join(QStringLiteral(", "));
}

} // namespace

PassTeller::PassTeller(const ExplainFacts &storyFacts, const PersonBefore &personBefore) :
    facts(storyFacts),
    before(personBefore),
    lines(takenLines(storyFacts)),
    chapter(QStringLiteral("pass"), Text::tr("The pass"))
{ }

StoryChapter PassTeller::tell()
{
    for (const TraceStep &step : facts.steps) {
        if (step.isMessage)
            message(step);
        else
            call(step);
    }
    endRecord();
    if (lines.isEmpty())
        chapter.say(Text::tr("No record is about them, so nothing is asked or written: a pass "
                             "looks at nobody who is missing in the export, and removes nobody."));
    return chapter.result();
}

void PassTeller::message(const TraceStep &step)
{
    struct Teller
    {
        const char *form;
        void (PassTeller::*tell)(const Values &values);
    };
    static const Teller tellers[] = {
        {"THRWorker::checkDovolenkaFond(): fid=%u", &PassTeller::fundFound},
        {"THRWorker::dbCheckFundMove(pid: %u): %s", &PassTeller::moveChecked},
        {"THRWorker::dbCheckAttendance(pid: %u): %s", &PassTeller::attendanceChecked},
        {"THRWorker::loadFundStatusAndMove3(pid: %u): %i, load OK: %s", &PassTeller::balanceRead},
        {"THRWorker::dbGetAidByOsCis(uid: %u): %u", &PassTeller::administratorFound},
        {"THRWorker::doSyncBranchAndCalendar(%s)", &PassTeller::branchBegins},
    };
    const PluginMessage *const known = findMessage(step.type, step.text);
    if (step.type == QtWarningMsg || step.type == QtCriticalMsg) {
        complain(known, step);
        return;
    }
    if (!known)
        return;
    const Values values = valuesIn(*known, step.text);
    if (known->event == MessageEvent::PassBegins)
        passBegins(values);
    else if (known->event == MessageEvent::RecordBegins)
        recordBegins(values);
    else if (known->event == MessageEvent::PassEnds)
        passEnds(values);
    else if (known->event == MessageEvent::PersonAdded
             || known->event == MessageEvent::PersonUpdated)
        record.isTried = true;
    for (const Teller &teller : tellers) {
        if (qstrcmp(known->text, teller.form) == 0)
            (this->*teller.tell)(values);
    }
}

/// What the catalogue says of the message stands below it.
void PassTeller::complain(const PluginMessage *known, const TraceStep &step)
{
    const QString text = messageText(known, step.text, facts.texts);
    chapter.say(
        (step.type == QtCriticalMsg ? Text::tr("Error: %1") : Text::tr("Warning: %1")).arg(text),
        takeStatements());
    if (!known)
        return;
    QStringList sentences;
    for (const char *sentence : {known->meaning, known->effect, known->remedy}) {
        if (sentence)
            sentences.append(plainText(sentence));
    }
    if (!sentences.isEmpty())
        chapter.detail(sentences.join(QLatin1Char(' ')));
    // The row was tried to be written, and this is what became of it.
    record.rowIsTold = record.rowIsTold || known->event == MessageEvent::PersonNotAdded
        || known->event == MessageEvent::PersonNotUpdated;
    record.balance.reset();
    record.plan.reset();
}

void PassTeller::passBegins(const Values &values)
{
    const bool forced = values.last() == QLatin1String("YES");
    chapter.say(forced ? Text::tr("A forced pass of a freshly started server, which remembers no "
                                  "export: each line is new to it.")
                       : Text::tr("The first pass of a freshly started server, which remembers no "
                                  "export: each line is new to it."));
    const QStringList notes = facts.copied.warnings + facts.copied.leftOut;
    for (const QString &note : notes)
        chapter.detail(note);
}

void PassTeller::fundFound(const Values &values)
{
    if (values.last().toUInt() == 0)
        chapter.say(Text::tr("There is no leave fund, so nothing is done about leave."),
                    takeStatements());
    pending.clear();
}

void PassTeller::recordBegins(const Values &)
{
    endRecord();
    record = Record();
    record.isOpen = true;
    if (lines.size() > 1)
        chapter.say(Text::tr("The record of line %1:")
                        .arg(recordCount < lines.size() ? lines.at(recordCount).number : 0));
    ++recordCount;
}

void PassTeller::moveChecked(const Values &values)
{
    record.moveIsFree = values.last().startsWith(QLatin1String("OK"));
}

/// Both checks are over: only if both are passed, the balance is looked at.
void PassTeller::attendanceChecked(const Values &values)
{
    const bool atRest = values.last() == QLatin1String("OK");
    QStringList reasons;
    if (!record.moveIsFree)
        reasons.append(Text::tr("there is a correction of today already"));
    if (!atRest && !before.hasRow())
        reasons.append(Text::tr("the person has no row yet"));
    if (!atRest && before.openDays > 0)
        reasons.append(Text::tr("%1 days since %2 are not calculated yet")
                           .arg(QString::number(before.openDays), dateText(before.openSince)));
    if (!atRest && before.futureDays > 0)
        reasons.append(
            Text::tr("%1 days from today on are not calculated yet").arg(before.futureDays));
    if (!atRest && hasReopened)
        reasons.append(Text::tr("for the line before, days are to be calculated again"));
    // Nothing else is left then.
    const bool hasDays = before.openDays > 0 || before.futureDays > 0 || hasReopened;
    if (!atRest && !hasDays && before.cell(QStringLiteral("calc")).toLongLong() != 0)
        reasons.append(
            Text::tr("the last calculation was at %1, and the plugin keeps a quarter of "
                     "an hour away from one")
                .arg(QDateTime::fromSecsSinceEpoch(before.cell(QStringLiteral("calc")).toLongLong())
                         .toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"))));
    if (!atRest && reasons.isEmpty())
        reasons.append(Text::tr("attendance is not at rest"));
    if (reasons.isEmpty())
        chapter.say(Text::tr("Leave may be looked at: there is no correction of today, and "
                             "attendance is at rest."),
                    takeStatements());
    else
        chapter.say(Text::tr("Leave is left alone: %1.").arg(reasons.join(QStringLiteral("; "))),
                    takeStatements());
}

void PassTeller::balanceRead(const Values &values)
{
    settleRow();
    if (values.last() == QLatin1String("YES"))
        record.balance = values.at(1).toInt();
    record.balanceStatements = takeStatements();
}

void PassTeller::administratorFound(const Values &values)
{
    settleRow();
    if (values.last().toUInt() != 0)
        chapter.say(Text::tr("The supervisor's number %1 is that of administrator %2.")
                        .arg(values.at(0), values.last()),
                    takeStatements());
}

void PassTeller::branchBegins(const Values &)
{
    settleRow();
}

void PassTeller::passEnds(const Values &values)
{
    endRecord();
    if (values.last().toInt() > 0)
        chapter.say(Text::tr("Records of theirs that wait for branch and calendar at the end of "
                             "the pass: %1.")
                        .arg(values.last()));
}

void PassTeller::endRecord()
{
    if (!record.isOpen)
        return;
    settleRow();
    planSettled();
    record = Record();
}

/// Once for each record, as soon as the pass has gone on from the person's row. The balance comes
/// right behind it.
void PassTeller::settleRow()
{
    if (!record.isOpen)
        return;
    if (!record.rowIsTold && !record.isTried) {
        const EmployeeRecord line = lines.value(recordCount - 1).record;
        const QString reason = endText(line, facts.today);
        if (before.isActive()) {
            chapter.say(Text::tr("Their row is not written: nothing that the plugin compares "
                                 "differs from it."));
            tellComparison();
        } else {
            chapter.say(reason.isEmpty() ? Text::tr("Nobody is added.")
                                         : Text::tr("Nobody is added, for only somebody who is "
                                                    "employed today would be: %1.")
                                               .arg(reason));
        }
    }
    record.rowIsTold = true;
    if (record.balance) {
        chapter.say(Text::tr("The leave fund holds %1, of moves before this month and of "
                             "corrections, as the line says: nothing is corrected.")
                        .arg(daysText(*record.balance)),
                    record.balanceStatements);
        record.balance.reset();
    }
}

/// Between line and row, and between this line and the one that the server remembers.
void PassTeller::tellComparison()
{
    chapter.detail(
        Text::tr("compared are, with the row: number, titles, name, phone, first and last "
                 "day, calendar, branch, begin, end and text of the evidence state; with "
                 "the line before: evidence state and type"));
}

QStringList PassTeller::takeStatements()
{
    QStringList taken;
    qSwap(taken, pending);
    return taken;
}

StoryChapter passChapter(const ExplainFacts &facts, const PersonBefore &before)
{
    return PassTeller(facts, before).tell();
}
