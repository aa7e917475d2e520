// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// From two snapshots, and what was told between them, to the changes.
#include "host/changes/changesbuilder.h"

#include "host/changes/notdone.h"
#include "host/changes/personkinds.h"
#include "host/changes/planhash.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

/// Finds people by what rows and messages call them by.
class PeopleIndex
{
public:
    PeopleIndex(const Snapshot &snapshotBefore, const Snapshot &snapshotAfter) :
        before(snapshotBefore),
        after(snapshotAfter)
    {
        // The second one has the last word.
        for (const Snapshot *snapshot : {&before, &after}) {
            const TableContent *people = snapshot->find(QStringLiteral("people"));
            const int uid = people ? people->indexOf(QStringLiteral("uid")) : -1;
            const int pid = people ? people->indexOf(QStringLiteral("pid")) : -1;
            for (int i = 0; pid >= 0 && i < people->rows.size(); ++i) {
                const TableRow &row = people->rows.at(i);
                uids.insert(row.at(pid).toLongLong(), row.at(uid).toLongLong());
            }
        }
    }

    qlonglong uidOf(qlonglong pid) const { return pid == 0 ? 0 : uids.value(pid); }

    ChangedPerson introduced(qlonglong uid) const
    {
        ChangedPerson person;
        person.person = personOf(uid, before, after);
        for (const Snapshot *snapshot : {&after, &before}) {
            const TableContent *people = snapshot->find(QStringLiteral("people"));
            const TableRow *row = peopleRow(*snapshot, uid);
            if (row && person.pid == 0)
                person.pid = row->value(people->indexOf(QStringLiteral("pid"))).toLongLong();
        }
        return person;
    }

private:
    const Snapshot &before;
    const Snapshot &after;
    QHash<qlonglong, qlonglong> uids; ///< by pid
};

/// The people of the changes, who may come in any order.
class People
{
public:
    explicit People(const PeopleIndex &peopleIndex) :
        index(peopleIndex)
    { }

    void addRows(const QVector<Change> &difference, QVector<Change> *others)
    {
        for (const Change &change : difference) {
            if (change.person.uid == 0)
                others->append(change);
            else
                byUid(change.person.uid).rows.append(change);
        }
    }

    ChangedPerson &byUid(qlonglong uid)
    {
        const auto known = placeByUid.constFind(uid);
        if (known != placeByUid.constEnd())
            return people[static_cast<size_t>(*known)];
        placeByUid.insert(uid, static_cast<int>(people.size()));
        people.push_back(index.introduced(uid));
        return people.back();
    }

    /// Also somebody whom the database does not have.
    ChangedPerson &byPid(qlonglong pid, const QString &pamId)
    {
        if (const qlonglong uid = index.uidOf(pid))
            return byUid(uid);
        const auto known = placeByPid.constFind(pid);
        const bool isNew = known == placeByPid.constEnd();
        if (isNew) {
            placeByPid.insert(pid, static_cast<int>(people.size()));
            people.emplace_back();
            people.back().pid = pid;
        }
        ChangedPerson &person = isNew ? people.back() : people[static_cast<size_t>(*known)];
        if (person.person.pamId.isEmpty())
            person.person.pamId = pamId;
        return person;
    }

    /// Calls `tell` with each of the people; the result is false if there are none. An id of 0 is
    /// nobody.
    template <typename Tell>
    bool forEach(const AboutPeople &about, Tell tell)
    {
        bool any = false;
        QSet<uint> seen;
        for (const uint id : about.named.ids) {
            if (id == 0 || seen.contains(id))
                continue;
            seen.insert(id);
            any = true;
            tell(about.named.key == NamedPeople::Pid ? byPid(id, about.pamId) : byUid(id));
        }
        return any;
    }

    bool isInDatabase(qlonglong pid) const { return index.uidOf(pid) != 0; }

    /// In the order of difference().
    QVector<ChangedPerson> result()
    {
        std::vector<std::pair<PersonPlace, ChangedPerson *>> order;
        order.reserve(people.size());
        for (ChangedPerson &person : people)
            order.emplace_back(placeOf(person.person), &person);
        std::stable_sort(order.begin(), order.end(), [](const auto &one, const auto &other) {
            return one.first < other.first;
        });
        QVector<ChangedPerson> sorted;
        sorted.reserve(static_cast<int>(order.size()));
        for (const auto &person : order)
            sorted.append(std::move(*person.second));
        return sorted;
    }

private:
    const PeopleIndex &index;
    std::vector<ChangedPerson> people;
    QHash<qlonglong, int> placeByUid;
    QHash<qlonglong, int> placeByPid; ///< of those without a row
};

QSet<QString> entriesOf(const QVariant &list)
{
    const QStringList entries = list.toString().split(QLatin1Char(','), Qt::SkipEmptyParts);
    return QSet<QString>(entries.cbegin(), entries.cend());
}

/// Who joins or leaves the list of a PaM block, if that is what the row holds.
void tellPamList(const Change &change, People *people)
{
    const TableRow &row = change.after.isEmpty() ? change.before : change.after;
    const QString name = cellOf(change, row, QStringLiteral("name")).toString();
    if (change.table->list.isEmpty() || !name.startsWith(QLatin1String("exportPam."))
        || !name.endsWith(QLatin1String(".selPeople")))
        return;
    const QSet<QString> before = entriesOf(cellOf(change, change.before, change.table->list));
    const QSet<QString> after = entriesOf(cellOf(change, change.after, change.table->list));
    for (const QString &entry : (after - before) + (before - after)) {
        const qlonglong pid = entry.toLongLong();
        if (people->isInDatabase(pid))
            people->byPid(pid, QString()).kinds.add(ChangeKind::Pam);
    }
}

void tellMessages(const PassTold &told, People *people, QVector<PassMessage> *ofNobody)
{
    for (const ToldMessage &message : told.messages) {
        const auto tell = [&message](ChangedPerson &person) {
            person.messages.append(message.message);
            if (message.message.isError)
                person.kinds.add(ChangeKind::Errors);
        };
        if (!people->forEach(message.about, tell))
            ofNobody->append(message.message);
    }
    for (const AboutNotDone &notDone : notDoneOf(told)) {
        people->forEach(notDone.about, [&notDone](ChangedPerson &person) {
            person.notDone.append(notDone.notDone);
            if (notDone.notDone.what == NotDone::Branch)
                person.kinds.add(ChangeKind::Waiting);
        });
    }
}

qint64 noticesIn(const QVector<Change> &rows)
{
    return std::count_if(rows.cbegin(), rows.cend(), [](const Change &change) {
        return change.before.isEmpty() && change.table->name == QLatin1String("term_sync");
    });
}

void count(const PassTold &told, Changes *changes)
{
    KindCounts &summary = changes->summary;
    summary[ChangeKind::Notices] = noticesIn(changes->others);
    for (const ChangedPerson &person : qAsConst(changes->people)) {
        for (const ChangeKind kind : changeKinds())
            summary[kind] += countsPeople(kind) && person.kinds.has(kind);
        summary[ChangeKind::Notices] += noticesIn(person.rows);
        // Where the plugin has not said how many records wait, those that were named do.
        summary[ChangeKind::Waiting] += told.waiting < 0 && person.kinds.has(ChangeKind::Waiting);
        changes->totals.leave += qAbs(person.leave);
        changes->totals.reopenedDays += person.reopenedDays;
    }
    if (told.waiting >= 0)
        summary[ChangeKind::Waiting] = told.waiting;
    summary[ChangeKind::Dropped] = told.dropped;
    changes->totals.statements = told.statements;
    summary[ChangeKind::Errors] = std::count_if(
        told.messages.cbegin(), told.messages.cend(),
        [](const ToldMessage &message) { return message.message.isError; });
}

/// Whether the person has lost their branch, or has come without one.
bool comesToNoBranch(const ChangedPerson &person)
{
    if (!person.kinds.has(ChangeKind::Added) && !person.kinds.has(ChangeKind::Moved))
        return false;
    const Change &own = person.rows.first();
    const QString bid = QStringLiteral("bid");
    return own.table->isPeople() && own.columns.contains(bid)
        && !cellOf(own, own.after, bid).isValid();
}

/// The names of the ids that the rows hold.
void addNames(const QVector<Change> &rows, const IdNames &all, IdNames *names)
{
    for (const Change &change : rows) {
        for (auto column = all.cbegin(); column != all.cend(); ++column) {
            const int place = change.columns.indexOf(column.key());
            for (const TableRow *row : {&change.before, &change.after}) {
                const QVariant id = row->value(place);
                const auto name = column->constFind(id.toLongLong());
                if (id.isValid() && name != column->constEnd())
                    (*names)[column.key()].insert(name.key(), name.value());
            }
        }
    }
}

} // namespace

Changes changesBetween(const Snapshot &before, const Snapshot &after, const PassTold &told,
                       const ChangesHeader &header, const QString &readHash)
{
    return changesFrom(difference(before, after), before, after, told, header, readHash);
}

Changes changesFrom(const QVector<Change> &difference, const Snapshot &before,
                    const Snapshot &after, const PassTold &told, const ChangesHeader &header,
                    const QString &readHash)
{
    Changes changes;
    changes.header = header;
    changes.header.exported = told.exported;
    changes.header.forced = told.forced;
    const PeopleIndex index(before, after);
    People people(index);
    people.addRows(difference, &changes.others);
    for (const Change &change : qAsConst(changes.others))
        tellPamList(change, &people);
    tellMessages(told, &people, &changes.messages);
    changes.people = people.result();
    changes.totals.activePeople = activePeople(before);
    addNames(changes.others, after.names, &changes.names);
    for (ChangedPerson &person : changes.people) {
        tellKinds(header.when, &person);
        changes.totals.withoutBranch += comesToNoBranch(person);
        addNames(person.rows, after.names, &changes.names);
    }
    count(told, &changes);
    changes.plan.change = changeHash(changes);
    changes.plan.read = readHash;
    if (!readHash.isEmpty())
        changes.plan.hash = planHash(changes.header, changes.plan.change);
    return changes;
}

int activePeople(const Snapshot &snapshot)
{
    const TableContent *people = snapshot.find(QStringLiteral("people"));
    const int status = people ? people->indexOf(QStringLiteral("status")) : -1;
    if (status < 0)
        return 0;
    return static_cast<int>(
        std::count_if(people->rows.cbegin(), people->rows.cend(),
                      [status](const TableRow &row) { return row.at(status).toLongLong() != 0; }));
}
