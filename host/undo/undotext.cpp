// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plan of undo as a script, and what became of it in words.
#include "host/undo/undotext.h"

#include "host/base/oneline.h"
#include "host/base/shellword.h"
#include "host/report/textreport.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoText)
};

const int commentWidth = 96;

QString stepText(const UndoStep &step)
{
    const Person &person = step.person;
    const QString who = person.pamId.isEmpty() ? Text::tr("uid %1").arg(person.uid) : person.pamId;
    return oneLine(
        Text::tr("%1: %2").arg(QStringLiteral("%1 %2").arg(who, person.name).trimmed(), step.what));
}

/// With the columns that get their values back.
QString wholeStepText(const UndoStep &step)
{
    return step.columns.isEmpty() ? stepText(step)
                                  : Text::tr("%1: %2").arg(stepText(step), step.columns);
}

/// With what somebody has changed.
QString leftText(const UndoStep &step, const UndoOutcome &outcome)
{
    return outcome.since.isEmpty() ? stepText(step)
                                   : Text::tr("%1: %2").arg(stepText(step), oneLine(outcome.since));
}

QString comment(const QString &sentence)
{
    QString lines;
    const QStringList parts = wrapped(oneLine(sentence), commentWidth, 0).split(QLatin1Char('\n'));
    for (const QString &part : parts)
        lines += QStringLiteral("-- ") + part + QLatin1Char('\n');
    return lines;
}

bool canHappen(const UndoStep &step, UndoStatement::Effect effect)
{
    return std::any_of(
        step.statements.cbegin(), step.statements.cend(),
        [effect](const UndoStatement &statement) { return statement.effect == effect; });
}

/// It has happened; without outcomes, a statement of the plan can do it.
bool canHappen(const UndoPlan &plan, const UndoOutcomes &outcomes, UndoStatement::Effect effect)
{
    if (!outcomes.isEmpty())
        return outcomes.contains(UndoOutcome(effect));
    return std::any_of(plan.steps.cbegin(), plan.steps.cend(),
                       [effect](const UndoStep &step) { return canHappen(step, effect); });
}

/// What the plugin remembers, and what that means now.
QStringList goingOn(const UndoPlan &plan, const UndoOutcomes &outcomes)
{
    if (plan.steps.isEmpty())
        return {};
    QStringList sentences {
        Text::tr("How to go on: put a corrected export in place before the next pass."),
        Text::tr(
            "A plugin that has run since the pass remembers the export: it sees no change in a "
            "line that stays as it is, and does not make these changes again. It does so "
            "with the same export after a restart, in a forced pass, and as soon as it looks "
            "again at leave that had to wait: on the day after a correction, or once "
            "attendance is calculated."),
    };
    if (canHappen(plan, outcomes, UndoStatement::Removes))
        sentences.append(
            Text::tr("Restart the attendance server before an export brings back anybody who is "
                     "removed here: the plugin remembers their ids as long as it runs, and would "
                     "give their memberships to nobody."));
    if (canHappen(plan, outcomes, UndoStatement::MakesInactive))
        sentences.append(
            Text::tr("Whoever is made inactive becomes active again with the next line "
                     "about them that is new to the plugin."));
    if (!plan.settledFile.isEmpty())
        sentences.append(
            Text::tr("'talvenhr status' takes what is back for lost. Once all is as it should be, "
                     "also of older exports, tell it:"));
    return sentences;
}

/// Without outcomes, how many steps have a statement that can do it.
int count(const UndoPlan &plan, const UndoOutcomes &outcomes, const QString &table,
          UndoStatement::Effect effect)
{
    int found = 0;
    for (int place = 0; place < plan.steps.size(); ++place) {
        const UndoStep &step = plan.steps.at(place);
        const bool isCounted = outcomes.isEmpty() ? canHappen(step, effect)
                                                  : outcomes.at(place).effect == effect;
        found += step.table == table && isCounted;
    }
    return found;
}

struct CountedTable
{
    QString table;
    UndoStatement::Effect effect;
    QString label;
};

QVector<CountedTable> countedTables()
{
    const auto back = [](const char *table, const QString &label) {
        return CountedTable {QLatin1String(table), UndoStatement::TakesBack, label};
    };
    return {{QStringLiteral("people"), UndoStatement::Removes,
             Text::tr("people who were added, removed")},
            {QStringLiteral("people"), UndoStatement::MakesInactive,
             Text::tr("people who were added, made inactive")},
            back("people", Text::tr("people's own rows")),
            back("brape", Text::tr("memberships of branches")),
            back("people_term", Text::tr("places on terminals")),
            back("admins_people", Text::tr("places under administrators, and supervisors")),
            back("groups_plan", Text::tr("planned groups")),
            back("groups_month", Text::tr("groups of months")),
            back("people_pam", Text::tr("enrolments in PaM")),
            back("vars", Text::tr("places in lists of PaM")),
            back("funds_move", Text::tr("leave corrections"))};
}

/// A line for each kind that occurs, without an indent.
QStringList countLines(const UndoPlan &plan, const UndoOutcomes &outcomes)
{
    QStringList lines;
    const QVector<CountedTable> tables = countedTables();
    for (const CountedTable &counted : tables) {
        const int number = count(plan, outcomes, counted.table, counted.effect);
        if (number > 0)
            lines.append(Text::tr("%1: %2").arg(counted.label).arg(number));
    }
    if (wereBack(outcomes) > 0)
        lines.append(Text::tr("taken back already: %1").arg(wereBack(outcomes)));
    return lines;
}

/// Everything was left alone, though there was something to take back.
bool isForeign(const UndoPlan &plan, const UndoOutcomes &outcomes)
{
    return !plan.steps.isEmpty() && leftAlone(outcomes) == plan.steps.size();
}

/// The mark behind a step in a script.
QString markText(const UndoOutcome &outcome)
{
    if (outcome.isBack)
        return Text::tr(" (taken back already)");
    if (!outcome.isLeftAlone())
        return QString();
    return outcome.since.isEmpty()
        ? Text::tr(" (left alone: changed since)")
        : Text::tr(" (left alone, changed since: %1)").arg(oneLine(outcome.since));
}

/// Its own line, for it is to be copied.
QString settlingCommand(const UndoPlan &plan)
{
    return plan.settledFile.isEmpty()
        ? QString()
        : QStringLiteral("  touch %1\n").arg(oneLine(shellWord(plan.settledFile)));
}

/// What stands above the statements.
QString scriptHead(const Changes &changes, const UndoPlan &plan, const UndoOutcomes &outcomes)
{
    QString head = comment(Text::tr("Takes back %1.").arg(passText(changes.header)));
    if (isAllBack(outcomes))
        head += comment(alreadyBackText(plan, changes.header));
    head += comment(Text::tr("Each statement finds its row only as the pass has left it: what "
                             "somebody has changed since is left alone."));
    if (outcomes.isEmpty() && !plan.steps.isEmpty())
        head += comment(Text::tr("No database was looked at: what is left alone is not known."));
    head += comment(plan.steps.isEmpty() ? Text::tr("There is nothing to take back.")
                                         : Text::tr("What is taken back, by kind:"));
    QStringList counts = countLines(plan, outcomes);
    if (leftAlone(outcomes) > 0)
        counts.append(Text::tr("left alone: %1").arg(leftAlone(outcomes)));
    for (const QString &line : qAsConst(counts))
        head += QStringLiteral("--   %1\n").arg(line);
    if (outcomes.isEmpty() && canHappen(plan, outcomes, UndoStatement::MakesInactive))
        head += comment(Text::tr("People who were added are made inactive, for nobody knows what "
                                 "refers to them."));
    for (const QString &sentence : plan.stays + goingOn(plan, outcomes))
        head += comment(sentence);
    const QString settling = settlingCommand(plan);
    return settling.isEmpty() ? head : head + QStringLiteral("-- ") + settling;
}

} // namespace

QString passText(const ChangesHeader &header)
{
    const QString moment = header.when.toOffsetFromUtc(header.when.offsetFromUtc())
                               .toString(Qt::ISODate);
    const QString file = header.exported.name.isEmpty() ? Text::tr("no export")
                                                        : header.exported.name;
    return header.how == ChangesHeader::Rehearsed
        ? Text::tr("the pass that was rehearsed at %1 over %2").arg(moment, oneLine(file))
        : Text::tr("the pass that ended at %1 over %2").arg(moment, oneLine(file));
}

QString alreadyBackText(const UndoPlan &plan, const ChangesHeader &header)
{
    const QString pass = passText(header);
    // What has never happened looks the same.
    if (header.how == ChangesHeader::Rehearsed)
        return plan.isPart ? Text::tr("There is nothing to do: what was named of %1 is taken back "
                                      "already, unless that has never run here.")
                                 .arg(pass)
                           : Text::tr("There is nothing to do: %1 is taken back already, unless it "
                                      "has never run here.")
                                 .arg(pass);
    return plan.isPart
        ? Text::tr("There is nothing to do: what was named of %1 is taken back already.").arg(pass)
        : Text::tr("There is nothing to do: %1 is taken back already.").arg(pass);
}

QString undoScript(const Changes &changes, const UndoPlan &plan, const UndoOutcomes &outcomes)
{
    QString script = scriptHead(changes, plan, outcomes)
        + QStringLiteral("\nSET NAMES utf8mb4;\nSTART TRANSACTION;\n");
    for (int place = 0; place < plan.steps.size(); ++place) {
        const UndoStep &step = plan.steps.at(place);
        script += QStringLiteral("\n-- ") + wholeStepText(step)
            + (outcomes.isEmpty() ? QString() : markText(outcomes.at(place))) + QLatin1Char('\n');
        for (const UndoStatement &statement : step.statements)
            script += statement.sql + QStringLiteral(";\n");
    }
    return script + QStringLiteral("\nCOMMIT;\n");
}

QString outcomeText(const UndoPlan &plan, const UndoOutcomes &outcomes, int width)
{
    QString text;
    const QStringList counts = countLines(plan, outcomes);
    for (const QString &line : counts)
        text += QStringLiteral("  %1\n").arg(line);
    if (leftAlone(outcomes) == 0)
        return text;
    text += wrapped(isForeign(plan, outcomes)
                        ? Text::tr("All of it is left alone: the database does not hold what this "
                                   "pass has left. Is it the right database, and has the pass run "
                                   "there?")
                        : Text::tr(
                            "Left alone, for somebody has changed it since (what the pass has left "
                            "-> what is there now):"),
                    width, 0)
        + QLatin1Char('\n');
    for (int place = 0; place < plan.steps.size(); ++place) {
        if (outcomes.at(place).isLeftAlone())
            text += QStringLiteral("  ")
                + wrapped(leftText(plan.steps.at(place), outcomes.at(place)), width - 2, 4)
                + QLatin1Char('\n');
    }
    return text;
}

QString afterwardsText(const UndoPlan &plan, const UndoOutcomes &outcomes, int width)
{
    QString text;
    for (const QString &sentence : plan.stays + goingOn(plan, outcomes))
        text += wrapped(oneLine(sentence), width, 0) + QLatin1Char('\n');
    return text + settlingCommand(plan);
}
