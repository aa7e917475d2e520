// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the changed rows of a person come to.
#include "host/changes/personkinds.h"

#include "host/database/value.h"

#include <QHash>

#include <limits>

namespace {

/// What a change says about its person.
struct Teller
{
    const Change &change;
    qlonglong now; ///< seconds since the epoch
    ChangedPerson *person;

    bool comes() const { return change.before.isEmpty(); }
    bool goes() const { return change.after.isEmpty(); }
    QVariant before(const char *column) const
    {
        return cellOf(change, change.before, QLatin1String(column));
    }
    QVariant after(const char *column) const
    {
        return cellOf(change, change.after, QLatin1String(column));
    }
    bool differs(const char *column) const
    {
        return compareValues(before(column), after(column)) != 0;
    }
    void add(ChangeKind kind) const { person->kinds.add(kind); }
};

/// The plugin takes 0 for no day at all.
qlonglong endOf(const QVariant &cell)
{
    const qlonglong end = cell.toLongLong();
    return end == 0 ? std::numeric_limits<qlonglong>::max() : end;
}

void tellFields(const Teller &told, bool revived)
{
    const Change &change = told.change;
    for (int place = 0; place < change.columns.size(); ++place) {
        const QString &column = change.columns.at(place);
        if (compareValues(change.before.at(place), change.after.at(place)) == 0
            || change.table->stamps.contains(column))
            continue;
        told.person->fields.append({column, change.before.at(place), change.after.at(place)});
        if (!revived && !isOfThePass(*change.table, column))
            told.add(ChangeKind::Updated);
    }
}

void tellPeople(const Teller &told)
{
    if (told.comes())
        told.add(ChangeKind::Added);
    if (told.comes() || told.goes())
        return;
    const QVariant statusBefore = told.before("status");
    const bool revived = statusBefore.isValid() && statusBefore.toLongLong() == 0
        && told.after("status").toLongLong() != 0;
    if (revived)
        told.add(ChangeKind::Revived);
    const qlonglong end = endOf(told.before("end"));
    if (endOf(told.after("end")) < end && end >= told.now)
        told.add(ChangeKind::Ended);
    if (told.differs("bid"))
        told.add(ChangeKind::Moved);
    tellFields(told, revived);
}

/// Not when its moment alone is another one.
template <ChangeKind kind>
void tellMember(const Teller &told)
{
    if (told.comes() || told.goes())
        told.add(kind);
}

template <ChangeKind kind>
void tellAny(const Teller &told)
{
    told.add(kind);
}

void tellAdministrator(const Teller &told)
{
    tellMember<ChangeKind::Administrators>(told);
    if (told.before("request").toLongLong() != told.after("request").toLongLong())
        told.add(ChangeKind::Supervisors);
}

void tellLeave(const Teller &told)
{
    told.add(ChangeKind::Leave);
    told.person->leave += told.after("value").toInt() - told.before("value").toInt();
}

void tellDay(const Teller &told)
{
    if (told.comes() || told.goes() || told.after("ok").toLongLong() != -1
        || told.before("ok").toLongLong() == -1)
        return;
    told.add(ChangeKind::Reopened);
    ++told.person->reopenedDays;
    const qlonglong seconds = told.after("date").toLongLong();
    QDate *const since = &told.person->reopenedSince;
    // The rows stand in the order of their days.
    if (!since->isValid())
        *since = QDateTime::fromSecsSinceEpoch(seconds).date();
}

void tellNotice(const Teller &told)
{
    if (told.comes())
        told.add(ChangeKind::Notices);
}

using Tell = void (*)(const Teller &);

/// Null for a table that says nothing about people.
Tell tellerOf(const QString &table)
{
    static const QHash<QString, Tell> tellers {
        {QStringLiteral("people"), tellPeople},
        {QStringLiteral("people_pam"), tellAny<ChangeKind::Pam>},
        {QStringLiteral("brape"), tellMember<ChangeKind::Memberships>},
        {QStringLiteral("people_term"), tellMember<ChangeKind::Terminals>},
        {QStringLiteral("admins_people"), tellAdministrator},
        {QStringLiteral("groups_plan"), tellAny<ChangeKind::Plans>},
        {QStringLiteral("groups_month"), tellAny<ChangeKind::Plans>},
        {QStringLiteral("atten"), tellDay},
        {QStringLiteral("funds_move"), tellLeave},
        {QStringLiteral("term_sync"), tellNotice},
    };
    return tellers.value(table);
}

} // namespace

QVariant cellOf(const Change &change, const TableRow &row, const QString &column)
{
    return row.value(change.columns.indexOf(column));
}

void tellKinds(const QDateTime &now, ChangedPerson *person)
{
    const TouchedTable *table = nullptr;
    Tell tell = nullptr;
    const qlonglong seconds = now.toSecsSinceEpoch();
    for (const Change &change : qAsConst(person->rows)) {
        if (change.table != table) {
            table = change.table;
            tell = tellerOf(table->name);
        }
        if (tell)
            tell({change, seconds, person});
    }
}

bool isOfThePass(const TouchedTable &table, const QString &column)
{
    return table.stamps.contains(column) || column == QLatin1String("editor")
        || column == QLatin1String("lastCalc") || column == QLatin1String("calc");
}
