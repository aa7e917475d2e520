// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The statements that take a pass back, as a value.
#include "host/undo/undoplan.h"

#include "host/changes/personkinds.h"
#include "host/database/value.h"
#include "host/undo/personsteps.h"
#include "host/undo/rowguard.h"
#include "host/undo/sqlvalue.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoPlan)
};

QStringList entriesOf(const QVariant &list)
{
    return list.toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
}

/// The wanted entries that have come with the pass, by the pid of their person.
QHash<qlonglong, QVector<PamEntry>> pamEntries(const Changes &changes,
                                               const UndoSelection &selection)
{
    QHash<qlonglong, QVector<PamEntry>> entries;
    for (const Change &change : changes.others) {
        const QString variable = cellOf(change, change.after, QStringLiteral("name")).toString();
        if (change.table->list.isEmpty() || !variable.startsWith(QLatin1String("exportPam."))
            || !variable.endsWith(QLatin1String(".selPeople")))
            continue;
        const QVariant before = cellOf(change, change.before, change.table->list);
        const QStringList listed = entriesOf(before);
        const QStringList now = entriesOf(cellOf(change, change.after, change.table->list));
        PamEntry *last = nullptr;
        for (const ChangedPerson &person : changes.people) {
            const QString number = QString::number(person.pid);
            if (person.pid == 0 || !now.contains(number) || listed.contains(number)
                || !isListWanted(selection, person))
                continue;
            QVector<PamEntry> &ofPerson = entries[person.pid];
            ofPerson.append({change.table, variable, person.pid, QString()});
            last = &ofPerson.last();
        }
        const QString empty = QStringLiteral("WHERE `name` = %1 AND `value` = ''")
                                  .arg(sqlValue(variable));
        if (last && change.before.isEmpty())
            last->tidying = QStringLiteral("DELETE FROM `vars` ") + empty;
        else if (last && !before.isValid())
            last->tidying = QStringLiteral("UPDATE `vars` SET `value` = NULL ") + empty;
    }
    return entries;
}

bool hasKey(const Change &change)
{
    return std::all_of(
        change.table->key.cbegin(), change.table->key.cend(),
        [&change](const QString &column) { return change.columns.contains(column); });
}

/// What the changes must have for a plan that means what it says.
Failure checkPerson(const ChangedPerson &person, bool isRehearsed)
{
    if (!std::all_of(person.rows.cbegin(), person.rows.cend(), hasKey))
        return {ExitUsage,
                Text::tr("the changes of '%1' have rows without their key; no pass has written "
                         "such a file")
                    .arg(person.person.pamId)};
    const Change *const added = addedRow(person);
    if (isRehearsed && added && !cellOf(*added, added->after, QStringLiteral("pid")).isValid())
        return {ExitRefused,
                Text::tr("'%1' was added in a rehearsal and has no number in 'people.pid' by which "
                         "to find who the pass has added; take the changes of the pass itself")
                    .arg(person.person.name)};
    return {};
}

/// Counts what is left as it is.
class Stays
{
public:
    void add(const Change &change)
    {
        const QString &table = change.table->name;
        if (table == QLatin1String("term_sync"))
            ++notices;
        else if (table == QLatin1String("atten") && !change.before.isEmpty()
                 && cellOf(change, change.after, QStringLiteral("ok")).toLongLong() == -1)
            ++days;
        else if (change.after.isEmpty() || table == QLatin1String("atten"))
            ++foreign;
        else if (change.table->isPeople() && isMarkChanged(change))
            ++marks;
        else if (!change.before.isEmpty() && restorableColumns(change).isEmpty())
            foreign += isChanged(change);
    }

    QStringList sentences() const
    {
        QStringList texts;
        if (days > 0)
            texts.append(Text::tr("Reopened days stay, and are calculated again: %1.").arg(days));
        if (marks > 0)
            texts.append(
                Text::tr("The marks of calculation stay as they are, of people: %1.").arg(marks));
        if (notices > 0)
            texts.append(Text::tr("The notices of the pass to terminals stay: %1.").arg(notices));
        if (foreign > 0)
            texts.append(Text::tr("Rows that changed as no pass changes them stay, for that was "
                                  "somebody else: %1.")
                             .arg(foreign));
        return texts;
    }

private:
    template <typename Wanted>
    static bool hasChanged(const Change &change, Wanted isWanted)
    {
        if (change.before.isEmpty())
            return false;
        for (int place = 0; place < change.columns.size(); ++place) {
            if (isWanted(change.columns.at(place))
                && compareValues(change.before.at(place), change.after.at(place)) != 0)
                return true;
        }
        return false;
    }

    static bool isMarkChanged(const Change &change)
    {
        return hasChanged(change, isCalculationMark);
    }

    /// In what people see of it. A row that was only written again gets another moment.
    static bool isChanged(const Change &change)
    {
        return hasChanged(change, [&change](const QString &column) {
            return !isOfThePass(*change.table, column);
        });
    }

    int days = 0;
    int marks = 0;
    int notices = 0;
    int foreign = 0;
};

} // namespace

Failure makeUndoPlan(const Changes &changes, const UndoSelection &selection, const UndoFacts &facts,
                     UndoPlan *plan)
{
    *plan = {};
    plan->isPart = !selection.people.isEmpty() || !selection.kinds.isEmpty();
    plan->names = changes.names;
    const bool isRehearsed = changes.header.how == ChangesHeader::Rehearsed;
    const QHash<qlonglong, QVector<PamEntry>> entries = pamEntries(changes, selection);
    Stays stays;
    for (int place = 0; place < changes.people.size(); ++place) {
        const ChangedPerson &person = changes.people.at(place);
        if (!selection.people.isEmpty() && !selection.people.contains(person.person.pamId))
            continue;
        if (const Failure failure = checkPerson(person, isRehearsed))
            return failure;
        for (const Change &change : person.rows)
            stays.add(change);
        const bool canBeRemoved = facts.areWhole && !facts.referred.contains(place);
        plan->steps += stepsOf({person, changes.names, selection, entries.value(person.pid),
                                facts.references, canBeRemoved, isRehearsed});
    }
    plan->stays = stays.sentences();
    return {};
}
