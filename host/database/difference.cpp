// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What lies between two snapshots, row by row.
#include "host/database/difference.h"

#include "host/database/value.h"

#include <algorithm>
#include <tuple>

namespace {

using RowPointers = QVector<const TableRow *>;

/// The content with these columns in this order; NULL where it has no such column.
TableContent withColumns(const TableContent &content, const QStringList &columns)
{
    if (content.columns == columns)
        return content;
    TableContent result = content;
    result.columns = columns;
    for (TableRow &row : result.rows) {
        TableRow arranged;
        for (const QString &column : columns)
            arranged.append(row.value(content.indexOf(column)));
        row = arranged;
    }
    return result;
}

/// Compares the rows of one table.
class TableDifference
{
public:
    TableDifference(const TableContent &contentBefore, const TableContent &contentAfter,
                    const SetAside &setAside) :
        before(withColumns(contentBefore, contentAfter.columns)),
        after(contentAfter),
        compared(comparedPlaces(contentBefore, setAside))
    {
        const TouchedTable &table = after.table;
        const bool byContent = setAside.generatedIds && table.key.contains(table.generated);
        matched = byContent ? compared : placesOf(table.key, after);
    }

    /// In the order of the matched cells. Rows that are alike in these are paired one by one.
    void appendTo(QVector<Change> *changes) const
    {
        const RowPointers gone = inOrder(before);
        const RowPointers come = inOrder(after);
        auto one = gone.cbegin();
        auto other = come.cbegin();
        while (one != gone.cend() && other != come.cend()) {
            const int order = compareRows(**one, **other, matched);
            if (order < 0)
                changes->append(change(**one++, TableRow()));
            else if (order > 0)
                changes->append(change(TableRow(), **other++));
            else
                appendIfDifferent(**one++, **other++, changes);
        }
        while (one != gone.cend())
            changes->append(change(**one++, TableRow()));
        while (other != come.cend())
            changes->append(change(TableRow(), **other++));
    }

private:
    QVector<int> comparedPlaces(const TableContent &contentBefore, const SetAside &setAside) const
    {
        const TouchedTable &table = after.table;
        QVector<int> places;
        for (int place = 0; place < after.columns.size(); ++place) {
            const QString &column = after.columns.at(place);
            const bool isSetAside = (setAside.generatedIds && column == table.generated)
                || (setAside.stamps && table.stamps.contains(column));
            if (!isSetAside && contentBefore.indexOf(column) >= 0)
                places.append(place);
        }
        return places;
    }

    RowPointers inOrder(const TableContent &content) const
    {
        RowPointers rows;
        rows.reserve(content.rows.size());
        for (const TableRow &row : content.rows)
            rows.append(&row);
        const auto isBefore = [this](const TableRow *one, const TableRow *other) {
            return compareRows(*one, *other, matched) < 0;
        };
        if (!std::is_sorted(rows.cbegin(), rows.cend(), isBefore))
            std::stable_sort(rows.begin(), rows.end(), isBefore);
        return rows;
    }

    void appendIfDifferent(const TableRow &one, const TableRow &other,
                           QVector<Change> *changes) const
    {
        if (compareRows(one, other, compared) != 0)
            changes->append(change(one, other));
    }

    Change change(const TableRow &rowBefore, const TableRow &rowAfter) const
    {
        Change change;
        change.person.uid = personOf(rowAfter.isEmpty() ? rowBefore : rowAfter);
        change.table = after.table;
        change.columns = after.columns;
        change.before = rowBefore;
        change.after = rowAfter;
        return change;
    }

    /// The uid of whom the row is about, 0 for nobody.
    qlonglong personOf(const TableRow &row) const
    {
        const TouchedTable &table = after.table;
        if (table.person.isEmpty())
            return 0;
        if (!table.personMark.isEmpty()
            && row.value(after.indexOf(table.personMark)).toString() != QLatin1String("uid"))
            return 0;
        return row.value(after.indexOf(table.person)).toLongLong();
    }

    const TableContent before;
    const TableContent &after;
    const QVector<int> compared; ///< places of the cells in which rows may differ
    QVector<int> matched; ///< places of the cells that make two rows the same one
};

/// Fills in the number and the name, if the snapshot has the person.
bool introduce(const Snapshot &snapshot, Person *person)
{
    const TableContent *people = snapshot.find(QStringLiteral("people"));
    if (!people)
        return false;
    const int uid = people->indexOf(QStringLiteral("uid"));
    const auto row = std::lower_bound(people->rows.cbegin(), people->rows.cend(), person->uid,
                                      [uid](const TableRow &candidate, qlonglong wanted) {
                                          return candidate.value(uid).toLongLong() < wanted;
                                      });
    if (row == people->rows.cend() || row->value(uid).toLongLong() != person->uid)
        return false;
    const auto text = [people, row](const QString &column) {
        return row->value(people->indexOf(column)).toString();
    };
    person->pamId = text(QStringLiteral("pamId"));
    person->name = QStringLiteral("%1 %2")
                       .arg(text(QStringLiteral("name")), text(QStringLiteral("surname")))
                       .trimmed();
    return true;
}

/// Where a person stands among others: nobody last, before them those without a number.
std::tuple<bool, bool, qulonglong, qulonglong, qlonglong> place(const Person &person)
{
    return {person.uid == 0, person.pamId.isEmpty(),
            person.pamId.section(QLatin1Char('.'), 0, 0).toULongLong(),
            person.pamId.section(QLatin1Char('.'), 1).toULongLong(), person.uid};
}

} // namespace

QVector<Change> difference(const Snapshot &before, const Snapshot &after, const SetAside &setAside)
{
    QVector<Change> changes;
    for (const TableContent &content : after.tables) {
        if (const TableContent *old = before.find(content.table.name))
            TableDifference(*old, content, setAside).appendTo(&changes);
    }
    for (Change &change : changes) {
        if (change.person.uid != 0 && !introduce(after, &change.person))
            introduce(before, &change.person);
    }
    std::stable_sort(changes.begin(), changes.end(), [](const Change &one, const Change &other) {
        return place(one.person) < place(other.person);
    });
    return changes;
}
