// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a database holds once a pass is taken back, worked out without any SQL.
#include "support/undomodel.h"

#include "host/database/value.h"

#include <QtTest>

#include <algorithm>

namespace {

QString keyText(const TouchedTable &table, const QStringList &columns, const TableRow &row)
{
    QStringList parts;
    for (const QString &column : table.key)
        parts.append(row.value(columns.indexOf(column)).toString());
    return parts.join(QLatin1Char('|'));
}

bool isMark(const QString &column)
{
    return column == QLatin1String("lastCalc") || column == QLatin1String("calc");
}

QVariant cellOf(const Change &change, const TableRow &row, const char *column)
{
    return row.value(change.columns.indexOf(QLatin1String(column)));
}

bool isOf(const Change &change, const char *table)
{
    return change.table->name == QLatin1String(table);
}

} // namespace

UndoModel::UndoModel(const Snapshot &now, qint64 undoMoment, qint64 undoDay, int undoMonth) :
    tables(tablesOf(now)),
    moment(undoMoment),
    today(undoDay),
    month(undoMonth)
{ }

QVector<UndoModel::Table> UndoModel::tablesOf(const Snapshot &snapshot)
{
    QVector<Table> result;
    for (const TableContent &content : snapshot.tables) {
        Table table {content.table, content.columns, {}};
        for (const TableRow &row : content.rows)
            table.rows.insert(keyText(*content.table, content.columns, row), row);
        result.append(table);
    }
    return result;
}

QStringList UndoModel::linesOf(const QVector<Table> &tables)
{
    QStringList lines;
    for (const Table &of : tables) {
        for (const TableRow &row : of.rows) {
            QStringList cells {of.table->name};
            for (int place = 0; place < row.size(); ++place) {
                if (of.columns.at(place) != of.table->generated)
                    cells.append(row.at(place).isValid() ? row.at(place).toString()
                                                         : QStringLiteral("NULL"));
            }
            lines.append(cells.join(QLatin1Char('|')));
        }
    }
    lines.sort();
    return lines;
}

QStringList UndoModel::lines() const
{
    return linesOf(tables);
}

QStringList UndoModel::lines(const Snapshot &snapshot)
{
    return linesOf(tablesOf(snapshot));
}

UndoModel::Table &UndoModel::table(const QString &name)
{
    for (Table &of : tables) {
        if (of.table->name == name)
            return of;
    }
    qFatal("no table '%s'", qPrintable(name));
}

QVariant &UndoModel::cell(Table &of, TableRow &row, const char *column)
{
    return row[of.columns.indexOf(QLatin1String(column))];
}

QString UndoModel::keyOf(const Change &change) const
{
    return keyText(*change.table, change.columns, change.after);
}

bool UndoModel::isAsLeft(const Change &change)
{
    const Table &of = table(change.table->name);
    const auto row = of.rows.constFind(keyOf(change));
    if (isPersonLeft || row == of.rows.cend())
        return false;
    for (int place = 0; place < change.columns.size(); ++place) {
        const QString &column = change.columns.at(place);
        if (column != QLatin1String("edited") && !isMark(column)
            && compareValues(row->at(of.columns.indexOf(column)), change.after.at(place)) != 0)
            return false;
    }
    return true;
}

void UndoModel::step(bool isTaken)
{
    ++all;
    left += !isTaken;
}

void UndoModel::takeBack(const Changes &changes)
{
    for (const ChangedPerson &person : changes.people)
        takePersonBack(person, changes.others);
}

void UndoModel::takePersonBack(const ChangedPerson &person, const QVector<Change> &others)
{
    const qlonglong uid = person.person.uid;
    const Change *own = nullptr;
    for (const Change &change : person.rows) {
        if (change.table->isPeople())
            own = &change;
    }
    const bool isAdded = own && own->before.isEmpty();
    isPersonLeft = false;
    isPersonLeft = isAdded && !isAsLeft(*own);
    for (const Change &change : person.rows) {
        if (isOf(change, "admins_people") && cellOf(change, change.before, "request").toInt() == 0)
            revert(change);
    }
    for (const Change &change : person.rows) {
        if (isOf(change, "admins_people") && cellOf(change, change.before, "request").toInt() != 0)
            giveMarkBack(change, uid);
    }
    for (const Change &change : person.rows) {
        if (isOf(change, "people_term"))
            takeOffTerminal(change, uid);
        for (const char *name : {"brape", "groups_plan", "groups_month", "people_pam"}) {
            if (isOf(change, name))
                revert(change);
        }
        if (isOf(change, "funds_move"))
            takeLeaveBack(change);
    }
    takeOffLists(person, others);
    if (isAdded) {
        step(!isPersonLeft);
        if (!isPersonLeft)
            endPerson(uid);
    } else if (own) {
        putRowBack(*own);
    }
}

void UndoModel::revert(const Change &change)
{
    const bool isTaken = isAsLeft(change);
    step(isTaken);
    if (!isTaken)
        return;
    Rows &rows = table(change.table->name).rows;
    if (change.before.isEmpty())
        rows.remove(keyOf(change));
    else
        rows[keyOf(change)] = change.before;
}

void UndoModel::giveMarkBack(const Change &change, qlonglong uid)
{
    Table &of = table(QStringLiteral("admins_people"));
    const bool isFree = std::none_of(of.rows.begin(), of.rows.end(), [&](TableRow &row) {
        return cell(of, row, "uid") == uid && cell(of, row, "request").toInt() != 0;
    });
    if (isFree)
        revert(change);
    else
        step(false);
}

void UndoModel::takeOffTerminal(const Change &change, qlonglong uid)
{
    const bool isTaken = isAsLeft(change);
    revert(change);
    Table &people = table(QStringLiteral("people"));
    TableRow &row = people.rows[QString::number(uid)];
    if (!isTaken || cell(people, row, "status").toInt() != 1)
        return;
    const qlonglong tid = cellOf(change, change.after, "tid").toLongLong();
    queue(tid, "D", "people_term", uid);
    Table &terminals = table(QStringLiteral("term"));
    TableRow &terminal = rowOfTerminal(tid);
    if (cell(terminals, terminal, "status").toInt() == 1)
        cell(terminals, terminal, "syn") = cell(terminals, terminal, "syn").toLongLong() | 2;
}

void UndoModel::takeOffLists(const ChangedPerson &person, const QVector<Change> &others)
{
    const QString number = QString::number(person.pid);
    for (const Change &change : others) {
        if (!isOf(change, "vars")
            || !cellOf(change, change.after, "name").toString().endsWith(QLatin1String("People"))
            || !cellOf(change, change.after, "value")
                    .toString()
                    .split(QLatin1Char(','))
                    .contains(number)
            || cellOf(change, change.before, "value")
                   .toString()
                   .split(QLatin1Char(','))
                   .contains(number))
            continue;
        Table &of = table(QStringLiteral("vars"));
        QVariant &value = cell(of, of.rows[keyOf(change)], "value");
        QStringList listed = value.toString().split(QLatin1Char(','));
        const bool isTaken = !isPersonLeft && listed.removeOne(number);
        step(isTaken);
        if (isTaken)
            value = listed.join(QLatin1Char(','));
    }
}

void UndoModel::takeLeaveBack(const Change &change)
{
    Table &of = table(QStringLiteral("funds_move"));
    const qlonglong day = cellOf(change, change.after, "day").toLongLong();
    qlonglong later = 0;
    for (TableRow &row : of.rows) {
        if (cell(of, row, "uid") == cellOf(change, change.after, "uid")
            && cell(of, row, "fid") == cellOf(change, change.after, "fid")
            && cell(of, row, "type") == 3 && cell(of, row, "day").toLongLong() > day)
            later += cell(of, row, "value").toLongLong();
    }
    const bool isTaken = isAsLeft(change) && (day >= today || later == 0);
    step(isTaken);
    if (!isTaken)
        return;
    const qlonglong was = cellOf(change, change.before, "value").toLongLong();
    TableRow row = of.rows.value(keyOf(change));
    if (day >= today) {
        cell(of, row, "value") = was;
    } else {
        cell(of, row, "value") = was - cell(of, row, "value").toLongLong();
        cell(of, row, "day") = today;
        cell(of, row, "month") = month;
    }
    const QString key = keyText(*of.table, of.columns, row);
    if (day < today && of.rows.contains(key))
        cell(of, row, "value") = cell(of, row, "value").toLongLong()
            + cell(of, of.rows[key], "value").toLongLong();
    of.rows.insert(key, row);
}

void UndoModel::putRowBack(const Change &change)
{
    Table &people = table(QStringLiteral("people"));
    TableRow row = people.rows.value(keyOf(change));
    bool isAny = false;
    for (int place = 0; place < change.columns.size(); ++place) {
        const QString &column = change.columns.at(place);
        if (isMark(column) || column == QLatin1String("edited")
            || compareValues(change.before.at(place), change.after.at(place)) == 0)
            continue;
        isAny = true;
        if (place < row.size())
            row[place] = change.before.at(place);
    }
    if (!isAny)
        return;
    const bool isTaken = isAsLeft(change);
    step(isTaken);
    if (!isTaken)
        return;
    cell(people, row, "edited") = moment;
    people.rows[keyOf(change)] = row;
    tellTerminals(change.person.uid);
}

void UndoModel::endPerson(qlonglong uid)
{
    Table &people = table(QStringLiteral("people"));
    if (!isReferredTo(uid)) {
        people.rows.remove(QString::number(uid));
        return;
    }
    TableRow &row = people.rows[QString::number(uid)];
    cell(people, row, "status") = 0;
    cell(people, row, "edited") = moment;
    tellTerminals(uid);
}

/// Notices do not count.
bool UndoModel::isReferredTo(qlonglong uid)
{
    return std::any_of(tables.begin(), tables.end(), [&](Table &of) {
        return !of.table->isPeople() && of.columns.contains(QStringLiteral("uid"))
            && std::any_of(of.rows.begin(), of.rows.end(),
                           [&](TableRow &row) { return cell(of, row, "uid") == uid; });
    });
}

void UndoModel::tellTerminals(qlonglong uid)
{
    Table &places = table(QStringLiteral("people_term"));
    Table &terminals = table(QStringLiteral("term"));
    for (TableRow &row : places.rows) {
        if (cell(places, row, "uid") != uid)
            continue;
        const qlonglong tid = cell(places, row, "tid").toLongLong();
        TableRow &terminal = rowOfTerminal(tid);
        if (cell(terminals, terminal, "status").toInt() != 1
            || (cell(terminals, terminal, "flags").toInt() & 2) == 0)
            continue;
        queue(tid, "U", "people", uid);
        cell(terminals, terminal, "syn") = cell(terminals, terminal, "syn").toLongLong() | 2;
    }
}

TableRow &UndoModel::rowOfTerminal(qlonglong tid)
{
    return table(QStringLiteral("term")).rows[QString::number(tid)];
}

void UndoModel::queue(qlonglong tid, const char *type, const char *ref, qlonglong uid)
{
    Table &of = table(QStringLiteral("term_sync"));
    TableRow row(of.columns.size());
    cell(of, row, "tid") = tid;
    cell(of, row, "type") = QString::fromLatin1(type);
    cell(of, row, "ref") = QString::fromLatin1(ref);
    cell(of, row, "ref_col") = QStringLiteral("uid");
    cell(of, row, "ref_id") = uid;
    cell(of, row, "created") = moment;
    cell(of, row, "flags") = qlonglong(2);
    of.rows.insert(QStringLiteral("new %1").arg(queued++), row);
}
