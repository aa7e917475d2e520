// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Marks at people with whom the real pass may do otherwise.
#include "host/rehearsal/uncertainty.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <iterator>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Uncertainty)
};

/// People by pid; somebody who is not there yet gets a place among the others in the end.
class People
{
public:
    explicit People(QVector<ChangedPerson> *changedPeople) :
        people(changedPeople)
    {
        for (int place = 0; place < people->size(); ++place)
            places.insert(people->at(place).pid, place);
    }

    /// Null for somebody who is not there.
    ChangedPerson *find(qlonglong pid)
    {
        const auto place = places.constFind(pid);
        return place == places.constEnd() ? nullptr : &(*people)[*place];
    }

    ChangedPerson *findOrAdd(qlonglong pid, const Person &person)
    {
        if (ChangedPerson *const found = find(pid))
            return found;
        places.insert(pid, people->size());
        people->append(ChangedPerson());
        people->last().person = person;
        people->last().pid = pid;
        return &people->last();
    }

    void sort()
    {
        std::stable_sort(people->begin(), people->end(),
                         [](const ChangedPerson &one, const ChangedPerson &other) {
                             return placeOf(one.person) < placeOf(other.person);
                         });
    }

private:
    QVector<ChangedPerson> *const people;
    QHash<qlonglong, int> places;
};

bool leavesLeaveAlone(const NotDone &notDone)
{
    return notDone.what == NotDone::LeaveNotAtRest || notDone.what == NotDone::LeaveCorrectedToday;
}

void addNames(const IdNames &names, IdNames *all)
{
    for (auto column = names.cbegin(); column != names.cend(); ++column) {
        for (auto name = column->cbegin(); name != column->cend(); ++name)
            (*all)[column.key()].insert(name.key(), name.value());
    }
}

} // namespace

QVector<LeaveDoubt> stillOpen(const QVector<LeaveDoubt> &doubts, const Changes &changes)
{
    QSet<qlonglong> restless;
    for (const ChangedPerson &person : changes.people) {
        if (std::any_of(person.notDone.cbegin(), person.notDone.cend(), leavesLeaveAlone))
            restless.insert(person.pid);
    }
    QVector<LeaveDoubt> open;
    std::copy_if(
        doubts.cbegin(), doubts.cend(), std::back_inserter(open),
        [&restless](const LeaveDoubt &doubt) { return !restless.contains(doubt.person.pid); });
    return open;
}

void markDoubts(const QVector<LeaveDoubt> &doubts, const Changes &otherwise, Changes *changes)
{
    QVector<ChangedPerson> otherPeople = otherwise.people;
    People others(&otherPeople);
    People people(&changes->people);
    addNames(otherwise.names, &changes->names);
    for (const LeaveDoubt &doubt : doubts) {
        const uint pid = doubt.person.pid;
        if (doubt.person.isUnchanged) {
            const ChangedPerson *const other = others.find(pid);
            if (!other || other->rows.isEmpty())
                continue;
            ChangedPerson *const person = people.findOrAdd(pid, other->person);
            person->uncertain.append(doubt.reason);
            person->otherwise = other->rows;
            continue;
        }
        ChangedPerson *const person = people.find(pid);
        if (person && !person->kinds.has(ChangeKind::Leave))
            person->uncertain.append(
                Text::tr("%1, and corrects it beside all else where fund and export differ")
                    .arg(doubt.reason));
    }
    people.sort();
}

void markUndone(const QHash<qlonglong, Person> &undone, Changes *changes)
{
    People people(&changes->people);
    for (auto person = undone.cbegin(); person != undone.cend(); ++person) {
        people.findOrAdd(person.key(), person.value())
            ->uncertain.append(Text::tr(
                "has not got the branch or group plan that an earlier export asked for already; a "
                "server that failed then tries again, one that did not leaves it"));
    }
    people.sort();
}
