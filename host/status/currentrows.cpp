// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The rows of the database, found by what a rehearsal says of them.
#include "host/status/currentrows.h"

#include "host/changes/personkinds.h"
#include "host/database/value.h"

#include <algorithm>

CurrentRows::CurrentRows(const Snapshot &snapshot) :
    now(snapshot)
{
    const TableContent *const people = now.find(QStringLiteral("people"));
    const int uid = people->indexOf(QStringLiteral("uid"));
    const int pid = people->indexOf(QStringLiteral("pid"));
    for (const TableRow &row : people->rows)
        uids.insert(row.value(pid).toLongLong(), row.value(uid).toLongLong());
}

qlonglong CurrentRows::uidOf(const ChangedPerson &person) const
{
    if (person.pid != 0)
        return uids.value(person.pid, 0);
    return peopleRow(now, person.person.uid) ? person.person.uid : 0;
}

TableRow CurrentRows::find(const Change &change, qlonglong uid) const
{
    const TableContent *const content = now.find(change.table->name);
    const QVector<int> places = placesOf(change.table->key, *content);
    TableRow wanted(content->columns.size());
    const TableRow &source = change.after.isEmpty() ? change.before : change.after;
    for (const int place : places) {
        const QString &column = content->columns.at(place);
        wanted[place] = column == change.table->person ? QVariant(uid)
                                                       : cellOf(change, source, column);
    }
    const auto found = std::lower_bound(content->rows.cbegin(), content->rows.cend(), wanted,
                                        [&places](const TableRow &one, const TableRow &other) {
                                            return compareRows(one, other, places) < 0;
                                        });
    if (found == content->rows.cend() || compareRows(*found, wanted, places) != 0)
        return {};
    TableRow row;
    for (const QString &column : change.columns)
        row.append(found->value(content->indexOf(column)));
    return row;
}

bool CurrentRows::hasLaterMove(const Change &change, qlonglong uid) const
{
    const TableContent *const content = now.find(change.table->name);
    const auto cell = [&](const TableRow &row, const char *column) {
        return row.value(content->indexOf(QLatin1String(column)));
    };
    const qlonglong day = cellOf(change, change.after, QStringLiteral("day")).toLongLong();
    const auto isAlike = [&](const TableRow &row, const char *column) {
        return compareValues(cell(row, column), cellOf(change, change.after, QLatin1String(column)))
            == 0;
    };
    return std::any_of(content->rows.cbegin(), content->rows.cend(), [&](const TableRow &row) {
        return cell(row, "uid").toLongLong() == uid && isAlike(row, "fid") && isAlike(row, "type")
            && cell(row, "day").toLongLong() > day;
    });
}
