// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What lies between two snapshots, row by row.
#include "host/database/difference.h"

#include "host/database/value.h"

#include <QSet>

#include <algorithm>
#include <utility>
#include <vector>

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
        uid(after.indexOf(after.table->person)),
        mark(after.indexOf(after.table->personMark)),
        compared(comparedPlaces(contentBefore, setAside))
    {
        const TouchedTable &table = *after.table;
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
        const TouchedTable &table = *after.table;
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
        if (mark >= 0 && row.at(mark).toString() != QLatin1String("uid"))
            return 0;
        return row.value(uid).toLongLong();
    }

    const TableContent before;
    const TableContent &after;
    const int uid; ///< place of the person, -1 for none
    const int mark; ///< place of what says that it is one, -1 if it always is
    const QVector<int> compared; ///< places of the cells in which rows may differ
    QVector<int> matched; ///< places of the cells that make two rows the same one
};

/// Fills in the number and the name, if the snapshot has the person.
bool introduce(const Snapshot &snapshot, Person *person)
{
    const TableContent *people = snapshot.find(QStringLiteral("people"));
    const TableRow *row = peopleRow(snapshot, person->uid);
    if (!row)
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

/// The people of these changes, with numbers and names, in the order of difference().
QVector<Person> peopleOf(const QVector<Change> &changes, const Snapshot &before,
                         const Snapshot &after)
{
    QSet<qlonglong> uids;
    for (const Change &change : changes)
        uids.insert(change.person.uid);
    std::vector<std::pair<PersonPlace, Person>> people;
    for (const qlonglong uid : qAsConst(uids)) {
        const Person person = personOf(uid, before, after);
        people.emplace_back(placeOf(person), person);
    }
    std::sort(people.begin(), people.end(),
              [](const auto &one, const auto &other) { return one.first < other.first; });
    QVector<Person> result;
    for (const auto &person : people)
        result.append(person.second);
    return result;
}

/// The changes person after person; those of one stay in their order.
QVector<Change> byPerson(const QVector<Change> &changes, const QVector<Person> &people)
{
    QHash<qlonglong, QVector<const Change *>> ofPerson;
    for (const Change &change : changes)
        ofPerson[change.person.uid].append(&change);
    QVector<Change> result;
    result.reserve(changes.size());
    for (const Person &person : people) {
        for (const Change *change : qAsConst(ofPerson[person.uid])) {
            result.append(*change);
            result.last().person = person;
        }
    }
    return result;
}

} // namespace

QVector<Change> difference(const Snapshot &before, const Snapshot &after, const SetAside &setAside)
{
    QVector<Change> changes;
    for (const TableContent &content : after.tables) {
        if (const TableContent *old = before.find(content.table->name))
            TableDifference(*old, content, setAside).appendTo(&changes);
    }
    return byPerson(changes, peopleOf(changes, before, after));
}

Person personOf(qlonglong uid, const Snapshot &before, const Snapshot &after)
{
    Person person;
    person.uid = uid;
    if (uid != 0 && !introduce(after, &person))
        introduce(before, &person);
    return person;
}

/// Nobody comes last, before them those without a number.
PersonPlace placeOf(const Person &person)
{
    return {person.uid == 0, person.pamId.isEmpty(),
            person.pamId.section(QLatin1Char('.'), 0, 0).toULongLong(),
            person.pamId.section(QLatin1Char('.'), 1).toULongLong(), person.uid};
}

const TableRow *peopleRow(const Snapshot &snapshot, qlonglong uid)
{
    const TableContent *people = snapshot.find(QStringLiteral("people"));
    if (!people)
        return nullptr;
    const int column = people->indexOf(QStringLiteral("uid"));
    const auto row = std::lower_bound(people->rows.cbegin(), people->rows.cend(), uid,
                                      [column](const TableRow &candidate, qlonglong wanted) {
                                          return candidate.value(column).toLongLong() < wanted;
                                      });
    if (row == people->rows.cend() || row->value(column).toLongLong() != uid)
        return nullptr;
    return &*row;
}
