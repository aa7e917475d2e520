// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A story's chapter about the pass itself: what the plugin asks of the database.
#include "host/explain/passteller.h"

#include "host/changes/changestext.h"
#include "host/changes/personkinds.h"
#include "host/database/changetext.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QRegularExpression>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Story)
};

QDate dayOf(const QString &seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds.toLongLong()).date();
}

} // namespace

void PassTeller::call(const TraceStep &step)
{
    const ClassifiedStatement asked = classifyStatement(step.text, step.values);
    // Being prepared, a statement has done nothing yet.
    if (asked.statement == PassStatement::WriteVariable)
        return;
    if (step.text.contains(QLatin1Char(' ')))
        pending.append(statementText(step, facts.texts));
    // What the database has refused is told by the message that follows.
    if (!step.done)
        return;
    switch (asked.statement) {
    case PassStatement::AddPerson:
    case PassStatement::UpdatePerson:
        personWritten(asked, step);
        break;
    case PassStatement::QueueNews:
        newsQueued(step.affected);
        break;
    case PassStatement::CallUpdateTermsSync:
        chapter.support(takeStatements());
        break;
    case PassStatement::WriteCorrection:
        correctionWritten(asked);
        break;
    case PassStatement::ReopenDays:
        daysReopened(asked, step.affected);
        break;
    case PassStatement::MoveMark:
        if (step.affected > 0)
            chapter.detail(Text::tr("the mark of the last calculated day goes back to %1")
                               .arg(dateText(dayOf(asked.values.value(0)))));
        chapter.support(takeStatements());
        break;
    case PassStatement::GiveSupervisorMark:
        supervisorMarked(asked, step.affected);
        break;
    case PassStatement::InBranch:
        branchAsked(asked);
        break;
    case PassStatement::InGroupsPlan:
        record.plan = asked.values;
        break;
    case PassStatement::AddGroupsPlan:
        planWritten(asked);
        break;
    case PassStatement::UpdateMonths:
        chapter.support(takeStatements());
        break;
    case PassStatement::WritePamList:
    case PassStatement::EnrolInPam:
        pamWritten(asked);
        break;
    default:
        propagated(asked, step.affected);
        break;
    }
}

void PassTeller::personWritten(const ClassifiedStatement &statement, const TraceStep &step)
{
    record.rowIsTold = true;
    if (!statement.inPlace)
        chapter.say(Text::tr("A text of the line has moved the values of this statement."));
    if (statement.statement == PassStatement::AddPerson)
        personAdded();
    else if (step.affected > 0)
        fieldsWritten();
    else
        chapter.say(Text::tr("Their row is written with what it holds already: nothing has "
                             "changed, and no terminal is told."),
                    takeStatements());
}

void PassTeller::personAdded()
{
    if (before.hasRow() && !before.isActive()) {
        chapter.say(Text::tr("There is no active row, so they are added, and their inactive row "
                             "becomes active again."),
                    takeStatements());
        chapter.detail(Text::tr("branch, calendar and evidence state of the old row stay as they "
                                "are, for the statement does not name them there"));
        return;
    }
    if (before.hasRow()) {
        chapter.say(Text::tr("They are added, for no active row is filed under the pid %1; the "
                             "statement meets the row that has it.")
                        .arg(facts.person.pid),
                    takeStatements());
        return;
    }
    chapter.say(Text::tr("There is no row of them, so they are added."), takeStatements());
    chapter.detail(Text::tr("no terminal is told of somebody new before they are a member of a "
                            "branch; leave comes with a later pass"));
}

/// Field by field; the moment of writing is no difference.
void PassTeller::fieldsWritten()
{
    chapter.say(Text::tr("Their row is written."), takeStatements());
    tellComparison();
    // Only the outcome of all lines together is known.
    if (lines.size() > 1)
        return;
    const ChangedPerson *const changed = changedPerson(facts);
    const TouchedTable &people = touchedTables().first();
    bool differs = false;
    for (const ChangedField &field : changed ? changed->fields : QVector<ChangedField>()) {
        if (isOfThePass(people, field.name))
            continue;
        differs = true;
        const char *const branch = "bid";
        if (field.name == QLatin1String(branch))
            chapter.detail(Text::tr("branch: %1 becomes %2")
                               .arg(namedId(facts.before.names, branch, field.before),
                                    namedId(facts.before.names, branch, field.after)));
        else
            chapter.detail(Text::tr("%1: %2 becomes %3")
                               .arg(field.name, cellText(people, field.name, field.before),
                                    cellText(people, field.name, field.after)));
    }
    if (!differs)
        chapter.detail(Text::tr("no column differs: after a start everybody is written once"));
}

void PassTeller::newsQueued(int terminals)
{
    chapter.say(terminals > 0
                    ? Text::tr("The terminals that they are on are told of it: %1.").arg(terminals)
                    : Text::tr("No terminal is told of it: they are on none that is in service "
                               "and takes people."),
                takeStatements());
}

void PassTeller::correctionWritten(const ClassifiedStatement &statement)
{
    const int value = statement.values.value(2).toInt();
    const int balance = record.balance.value_or(0);
    record.balance.reset();
    chapter.say(Text::tr("The leave fund holds %1, of moves before this month and of corrections, "
                         "and the line says %2: a correction of %3 is written for today.")
                    .arg(daysText(balance), daysText(static_cast<qint64>(balance) + value),
                         daysText(value)),
                record.balanceStatements + takeStatements());
}

void PassTeller::daysReopened(const ClassifiedStatement &statement, int affected)
{
    settleRow();
    hasReopened = hasReopened || affected > 0;
    // What was asked about the plan came before it.
    const QStringList statements = takeStatements();
    pending = statements.mid(0, statements.size() - 1);
    planSettled();
    pending = statements.mid(statements.size() - 1);
    chapter.say(Text::tr("Attendance since %1 is to be calculated again: %2 days.")
                    .arg(dateText(dayOf(statement.values.value(0))), QString::number(affected)),
                takeStatements());
    chapter.detail(Text::tr("the plugin asks for this where calendar or branch differ, where the "
                            "line says from when on its calendar holds, and after a correction; "
                            "days that are locked or were done by hand stay"));
}

void PassTeller::supervisorMarked(const ClassifiedStatement &statement, int affected)
{
    const QString name = namedId(facts.before.names, "aid", statement.values.value(0));
    chapter.say(affected > 0 ? Text::tr("The supervisor is administrator %1 now.").arg(name)
                             : Text::tr("The supervisor is administrator %1, as before.").arg(name),
                takeStatements());
}

/// Whether they are in the branch stands in the rows; the answer itself is not known.
void PassTeller::branchAsked(const ClassifiedStatement &statement)
{
    const QString id = statement.values.value(0);
    bool isMember = false;
    for (const QVariant &branch : before.cells(QStringLiteral("brape"), QStringLiteral("bid")))
        isMember = isMember || branch.toString() == id;
    const QString name = namedId(facts.before.names, "bid", id);
    chapter.say(isMember ? Text::tr("They are a member of branch %1 already.").arg(name)
                         : Text::tr("They are no member of branch %1 yet, and become one at the "
                                    "end of the pass.")
                               .arg(name),
                takeStatements());
}

/// The plan was asked for, and nothing was written: it stands.
void PassTeller::planSettled()
{
    if (!record.plan)
        return;
    chapter.say(Text::tr("The group plan stands already: %1 from month %2 on.")
                    .arg(namedId(facts.before.names, "gid", record.plan->value(0)),
                         monthText(record.plan->value(2).toUInt())),
                takeStatements());
    record.plan.reset();
}

void PassTeller::planWritten(const ClassifiedStatement &statement)
{
    record.plan.reset();
    chapter.say(Text::tr("A group plan is made for the calendar: %1 from month %2 on.")
                    .arg(namedId(facts.before.names, "gid", statement.values.value(0)),
                         monthText(statement.values.value(2).toUInt())),
                takeStatements());
}

/// What follows from becoming a member, at the end of the pass.
void PassTeller::propagated(const ClassifiedStatement &statement, int affected)
{
    switch (statement.statement) {
    case PassStatement::AddToBranch:
        chapter.say((affected > 0 ? Text::tr("They become a member of branch %1.")
                                  : Text::tr("Nobody becomes a member of branch %1, for there is "
                                             "no row of them."))
                        .arg(namedId(facts.before.names, "bid", statement.values.value(0))),
                    takeStatements());
        break;
    case PassStatement::PutOnTerm:
        chapter.detail(Text::tr("on terminals: %1").arg(namesIn("tid", statement.values.value(0))),
                       takeStatements());
        break;
    case PassStatement::NoticeToTerm:
    case PassStatement::MarkTerm:
        chapter.support(takeStatements());
        break;
    case PassStatement::PutUnderAdmins:
        chapter.detail(
            Text::tr("under administrators: %1").arg(namesIn("aid", statement.values.value(0))),
            takeStatements());
        break;
    default:
        break;
    }
}

void PassTeller::pamWritten(const ClassifiedStatement &statement)
{
    if (statement.statement == PassStatement::WritePamList)
        chapter.say(
            Text::tr("They join the list %1 of people for PaM.").arg(statement.values.value(0)),
            takeStatements());
    else
        chapter.say(Text::tr("They are enrolled in PaM block %1.").arg(statement.values.value(1)),
                    takeStatements());
}

/// The names of the first numbers of pairs.
QString PassTeller::namesIn(const char *column, const QString &pairs) const
{
    static const QRegularExpression first(QStringLiteral("\\(\\s*(\\d+)"));
    QStringList names;
    auto matches = first.globalMatch(pairs);
    while (matches.hasNext())
        names.append(namedId(facts.before.names, column, matches.next().captured(1)));
    names.removeDuplicates();
    return names.join(QStringLiteral(", "));
}
