// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What passes should have written, and have not.
#include "host/status/losses.h"

#include "host/changes/personkinds.h"
#include "host/database/value.h"
#include "host/status/currentrows.h"

#include <algorithm>

namespace {

bool isEqual(const QVariant &one, const QVariant &other)
{
    return compareValues(one, other) == 0;
}

/// A cell that a pass should have changed.
struct CellHope
{
    QVector<QVariant> before; ///< what it held before one of the passes
    QVariant wanted;
};

/// A row that a pass should have changed.
struct RowHope
{
    Change last; ///< of the last export that says something of it
    QString record;
    QStringList uncertain;
    bool wasThere = false; ///< before the first of them
    QHash<QString, CellHope> cells;
};

/// The rows of a person.
struct PersonHope
{
    ChangedPerson person; ///< as the last export has it, without rows
    QDateTime when;
    QVector<QString> order; ///< keys of `rows`
    QHash<QString, RowHope> rows;

    /// One of the passes should have made their own row.
    bool isAdded() const
    {
        return std::any_of(rows.cbegin(), rows.cend(), [](const RowHope &row) {
            return row.last.table->isPeople() && !row.wasThere;
        });
    }
};

/// A person keeps the number, but has another uid in a copy.
QString keyOf(const ChangedPerson &person)
{
    return person.pid != 0 ? QString::number(person.pid)
                           : QLatin1Char('u') + QString::number(person.person.uid);
}

/// Without the column of the person.
QString keyOf(const Change &change)
{
    const TableRow &row = change.after.isEmpty() ? change.before : change.after;
    QStringList key {change.table->name};
    for (const QString &column : change.table->key) {
        if (column != change.table->person)
            key.append(cellOf(change, row, column).toString());
    }
    return key.join(QLatin1Char('|'));
}

/// The pass says something of the cell that still holds tomorrow.
bool isJudged(const Change &change, const QString &column)
{
    return column != change.table->person && !isOfThePass(*change.table, column);
}

void hopeForCells(const Change &change, RowHope *row)
{
    for (int place = 0; place < change.columns.size(); ++place) {
        const QString &column = change.columns.at(place);
        const QVariant before = change.before.value(place);
        const QVariant after = change.after.value(place);
        if (!isJudged(change, column) || (!change.before.isEmpty() && isEqual(before, after)))
            continue;
        const bool isKnown = row->cells.contains(column);
        CellHope &cell = row->cells[column];
        if (isKnown)
            cell.before.append(cell.wanted);
        if (!change.before.isEmpty())
            cell.before.append(before);
        else if (column == QLatin1String("request")) // the row may have come by a membership
            cell.before.append(QVariant(0LL));
        cell.wanted = after;
    }
}

void hopeFor(const Change &change, const QString &record, const QStringList &uncertain,
             PersonHope *person)
{
    const QString key = keyOf(change);
    const bool isNew = !person->rows.contains(key);
    RowHope &row = person->rows[key];
    if (isNew) {
        person->order.append(key);
        row.wasThere = !change.before.isEmpty();
    }
    row.last = change;
    row.record = record;
    row.uncertain = uncertain;
    if (!change.after.isEmpty())
        hopeForCells(change, &row);
}

/// The cells of the row that are still as they were before; false if none is.
bool missingCells(const RowHope &hope, const TableRow &current, Change *missing)
{
    bool any = false;
    *missing = hope.last;
    for (int place = 0; place < missing->columns.size(); ++place) {
        const auto cell = hope.cells.constFind(missing->columns.at(place));
        if (cell != hope.cells.cend())
            missing->after[place] = cell->wanted;
    }
    missing->before = missing->after;
    for (int place = 0; place < missing->columns.size(); ++place) {
        const auto cell = hope.cells.constFind(missing->columns.at(place));
        const QVariant is = current.value(place);
        if (cell == hope.cells.cend() || isEqual(is, cell->wanted))
            continue;
        if (std::any_of(cell->before.cbegin(), cell->before.cend(),
                        [&is](const QVariant &before) { return isEqual(is, before); })) {
            missing->before[place] = is;
            any = true;
        }
    }
    return any;
}

/// What of the row is not as it should be; false if all is.
bool missingOf(const RowHope &hope, const CurrentRows &now, qlonglong uid, Change *missing)
{
    const TableRow current = uid == 0 ? TableRow() : now.find(hope.last, uid);
    if (hope.last.after.isEmpty()) {
        *missing = hope.last;
        return hope.wasThere && !current.isEmpty();
    }
    if (!current.isEmpty())
        return missingCells(hope, current, missing);
    // A row that was there is gone by somebody else's hand.
    if (hope.wasThere)
        return false;
    *missing = hope.last;
    missing->before = TableRow();
    return uid == 0 || hope.last.table->name != QLatin1String("funds_move")
        || !now.hasLaterMove(hope.last, uid);
}

Remedy remedyOf(const Change &missing, const KindSet &kinds)
{
    const QString &table = missing.table->name;
    if (table == QLatin1String("people_pam"))
        return Remedy::ByHand;
    if (table == QLatin1String("admins_people"))
        return kinds.has(ChangeKind::Supervisors) ? Remedy::Restart : Remedy::Rejoin;
    if (table == QLatin1String("people_term"))
        return Remedy::Rejoin;
    if (table == QLatin1String("groups_month"))
        return Remedy::Replan;
    return Remedy::Force;
}

bool lacksOnlyItsType(const LostPerson &lost)
{
    return lost.missing.rows.size() == 1 && lost.missing.fields.size() == 1
        && lost.missing.fields.constFirst().name == QLatin1String("type");
}

bool lacksTable(const LostPerson &lost, const char *table)
{
    return std::any_of(
        lost.missing.rows.cbegin(), lost.missing.rows.cend(),
        [table](const Change &change) { return change.table->name == QLatin1String(table); });
}

/// A forced pass that adds somebody, makes a member or plans anew takes all the steps behind it.
void findRemedies(LostPerson *lost)
{
    if (lacksOnlyItsType(*lost)) {
        lost->remedies = {Remedy::Restart};
        return;
    }
    if (lost->missing.kinds.has(ChangeKind::Added)) {
        lost->remedies = {Remedy::Force};
        return;
    }
    for (const Change &change : qAsConst(lost->missing.rows)) {
        Remedy remedy = remedyOf(change, lost->missing.kinds);
        if ((remedy == Remedy::Rejoin && lacksTable(*lost, "brape"))
            || (remedy == Remedy::Replan && lacksTable(*lost, "groups_plan")))
            remedy = Remedy::Force;
        if (!lost->remedies.contains(remedy))
            lost->remedies.append(remedy);
    }
}

/// False if nothing is missing.
bool judge(const PersonHope &hope, const CurrentRows &now, LostPerson *lost)
{
    const qlonglong uid = now.uidOf(hope.person);
    if (uid == 0 && !hope.isAdded())
        return false;
    lost->person = hope.person.person;
    lost->person.uid = uid;
    lost->missing.person = hope.person.person;
    lost->missing.pid = hope.person.pid;
    for (const QString &key : hope.order) {
        const RowHope &row = hope.rows[key];
        Change missing;
        if (!missingOf(row, now, uid, &missing))
            continue;
        lost->missing.rows.append(missing);
        lost->record = qMax(lost->record, row.record);
        lost->uncertain += row.uncertain;
    }
    if (lost->missing.rows.isEmpty())
        return false;
    lost->uncertain.removeDuplicates();
    tellKinds(hope.when, &lost->missing);
    findRemedies(lost);
    return true;
}

/// Nothing is wanted any more of the rows of which the export says something.
void settle(const Changes &changes, QHash<QString, PersonHope> *hopes)
{
    for (const ChangedPerson &changed : changes.people) {
        const auto hope = hopes->find(keyOf(changed));
        if (hope == hopes->end())
            continue;
        for (const Change &change : changed.rows) {
            const QString key = keyOf(change);
            hope->rows.remove(key);
            hope->order.removeOne(key);
        }
    }
}

void addNames(const IdNames &names, IdNames *all)
{
    for (auto column = names.begin(); column != names.end(); ++column) {
        for (auto name = column->begin(); name != column->end(); ++name)
            (*all)[column.key()].insert(name.key(), name.value());
    }
}

void hopeForPeople(const RehearsedExport &exported, QHash<QString, PersonHope> *hopes)
{
    for (const ChangedPerson &changed : exported.changes.people) {
        for (const Change &change : changed.rows) {
            if (!lossIsSeen(*change.table))
                continue;
            PersonHope &hope = (*hopes)[keyOf(changed)];
            hope.person.person = changed.person;
            hope.person.pid = changed.pid;
            hope.when = exported.changes.header.when;
            hopeFor(change, exported.record, changed.uncertain, &hope);
        }
    }
}

} // namespace

QString remedyName(Remedy remedy)
{
    switch (remedy) {
    case Remedy::Force:
        return QStringLiteral("force");
    case Remedy::Restart:
        return QStringLiteral("restart");
    case Remedy::Rejoin:
        return QStringLiteral("rejoin");
    case Remedy::Replan:
        return QStringLiteral("replan");
    case Remedy::ByHand:
        break;
    }
    return QStringLiteral("by-hand");
}

bool lossIsSeen(const TouchedTable &table)
{
    static const QStringList fleeting {QStringLiteral("atten"), QStringLiteral("term"),
                                       QStringLiteral("term_sync"), QStringLiteral("vars")};
    return !fleeting.contains(table.name);
}

QVector<LostPerson> lostPeople(const QVector<RehearsedExport> &exports, const Snapshot &now)
{
    QHash<QString, PersonHope> hopes;
    IdNames names;
    for (const RehearsedExport &exported : exports) {
        addNames(exported.changes.names, &names);
        if (exported.isSettled)
            settle(exported.changes, &hopes);
        else
            hopeForPeople(exported, &hopes);
    }
    const CurrentRows current(now);
    QVector<LostPerson> people;
    for (const PersonHope &hope : qAsConst(hopes)) {
        LostPerson lost;
        lost.names = names;
        if (judge(hope, current, &lost))
            people.append(lost);
    }
    std::sort(people.begin(), people.end(), [](const LostPerson &one, const LostPerson &other) {
        return placeOf(one.person) < placeOf(other.person);
    });
    return people;
}
