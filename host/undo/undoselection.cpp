// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What of the changes of a pass is to be taken back.
#include "host/undo/undoselection.h"

#include "host/base/nearest.h"
#include "host/changes/personkinds.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(UndoSelection)
};

/// Rows of these kinds are never taken back, or there are none.
bool staysAlways(ChangeKind kind)
{
    switch (kind) {
    case ChangeKind::Reopened:
    case ChangeKind::Notices:
    case ChangeKind::Waiting:
    case ChangeKind::Dropped:
    case ChangeKind::Errors:
        return true;
    default:
        return false;
    }
}

bool hasPerson(const UndoSelection &selection, const ChangedPerson &person)
{
    return selection.people.isEmpty() || selection.people.contains(person.person.pamId);
}

/// Nothing of somebody new stays when they go.
bool goesAsAWhole(const UndoSelection &selection, const ChangedPerson &person)
{
    return selection.kinds.isEmpty()
        || (selection.kinds.has(ChangeKind::Added) && person.kinds.has(ChangeKind::Added));
}

bool isAdministratorWanted(const UndoSelection &selection, const Change &change)
{
    const bool comes = change.before.isEmpty();
    const QString request = QStringLiteral("request");
    const bool isMarked = cellOf(change, change.after, request).toLongLong()
        != cellOf(change, change.before, request).toLongLong();
    return (comes && selection.kinds.has(ChangeKind::Administrators))
        || (isMarked && selection.kinds.has(ChangeKind::Supervisors));
}

} // namespace

QStringList undoableKinds()
{
    QStringList names;
    for (const ChangeKind kind : changeKinds()) {
        if (!staysAlways(kind))
            names.append(kindName(kind));
    }
    return names;
}

Failure addUndoKind(const QString &name, UndoSelection *selection)
{
    ChangeKind kind = ChangeKind::Added;
    if (!kindOfName(name, &kind))
        return {ExitUsage,
                Text::tr("'%1' is no kind of change%2; there are: %3")
                    .arg(name, didYouMean(name, undoableKinds()),
                         undoableKinds().join(QStringLiteral(", ")))};
    if (staysAlways(kind))
        return {ExitUsage,
                Text::tr("nothing of the kind '%1' is taken back; there are: %2")
                    .arg(name, undoableKinds().join(QStringLiteral(", ")))};
    selection->kinds.add(kind);
    return {};
}

Failure checkSelection(const UndoSelection &selection, const Changes &changes)
{
    for (const QString &number : selection.people) {
        const bool isKnown = std::any_of(
            changes.people.cbegin(), changes.people.cend(),
            [&](const ChangedPerson &person) { return person.person.pamId == number; });
        if (!isKnown)
            return {ExitUsage,
                    Text::tr("nothing has changed for '%1' in these changes; people are named by "
                             "their number, such as 4711.1")
                        .arg(number)};
    }
    return {};
}

bool isWanted(const UndoSelection &selection, const ChangedPerson &person, const Change &change)
{
    if (!hasPerson(selection, person))
        return false;
    if (goesAsAWhole(selection, person))
        return true;
    const KindSet &kinds = selection.kinds;
    const QString &table = change.table->name;
    if (change.table->isPeople()) {
        for (const ChangeKind kind :
             {ChangeKind::Revived, ChangeKind::Updated, ChangeKind::Ended, ChangeKind::Moved}) {
            if (kinds.has(kind) && person.kinds.has(kind))
                return true;
        }
        return false;
    }
    if (table == QLatin1String("admins_people"))
        return isAdministratorWanted(selection, change);
    static const QHash<QString, ChangeKind> kindOfTable {
        {QStringLiteral("brape"), ChangeKind::Memberships},
        {QStringLiteral("people_term"), ChangeKind::Terminals},
        {QStringLiteral("groups_plan"), ChangeKind::Plans},
        {QStringLiteral("groups_month"), ChangeKind::Plans},
        {QStringLiteral("funds_move"), ChangeKind::Leave},
        {QStringLiteral("people_pam"), ChangeKind::Pam},
    };
    return kindOfTable.contains(table) && kinds.has(kindOfTable.value(table));
}

bool isColumnWanted(const UndoSelection &selection, const ChangedPerson &person,
                    const QString &column)
{
    const KindSet &kinds = selection.kinds;
    const auto areBoth = [&](ChangeKind kind) { return kinds.has(kind) && person.kinds.has(kind); };
    if (goesAsAWhole(selection, person) || areBoth(ChangeKind::Updated)
        || areBoth(ChangeKind::Revived))
        return true;
    return (kinds.has(ChangeKind::Ended) && column == QLatin1String("end"))
        || (kinds.has(ChangeKind::Moved) && column == QLatin1String("bid"));
}

bool isListWanted(const UndoSelection &selection, const ChangedPerson &person)
{
    return hasPerson(selection, person)
        && (goesAsAWhole(selection, person) || selection.kinds.has(ChangeKind::Pam));
}
