// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tables of the attendance database that a pass may write to, and what their columns mean.
#include "host/database/touchedtables.h"

namespace {

QStringList words(const char *text)
{
    return QString::fromLatin1(text).split(QLatin1Char(' '));
}

TouchedTable table(const char *name, const char *key)
{
    TouchedTable table;
    table.name = QString::fromLatin1(name);
    table.key = words(key);
    return table;
}

TouchedTable tableOfPersons(const char *name, const char *key)
{
    TouchedTable of = table(name, key);
    of.person = QStringLiteral("uid");
    return of;
}

TouchedTable people()
{
    TouchedTable people = tableOfPersons("people", "uid");
    people.moments = words("begin end rsBegin rsEnd lastCalc calc created edited");
    people.stamps = words("created edited");
    return people;
}

TouchedTable memberships()
{
    TouchedTable brape = tableOfPersons("brape", "bid uid");
    brape.moments = words("since");
    brape.stamps = brape.moments;
    return brape;
}

TouchedTable queue()
{
    TouchedTable queue = table("term_sync", "id");
    queue.person = QStringLiteral("ref_id");
    queue.personMark = QStringLiteral("ref_col");
    queue.generated = QStringLiteral("id");
    queue.moments = words("created");
    queue.stamps = queue.moments;
    return queue;
}

TouchedTable attendance()
{
    TouchedTable atten = tableOfPersons("atten", "uid date");
    atten.moments = words("date");
    atten.touchable = QStringLiteral("`lock` = 0");
    return atten;
}

/// Corrections are what a pass writes; entitlements and what was taken come from elsewhere.
TouchedTable fundMoves()
{
    TouchedTable moves = tableOfPersons("funds_move", "uid fid day type");
    moves.moments = words("day");
    moves.touchable = QStringLiteral("type = 3");
    return moves;
}

/// The force variable, and the PaM blocks with their lists.
TouchedTable variables()
{
    TouchedTable vars = table("vars", "name");
    vars.list = QStringLiteral("value");
    vars.touchable = QStringLiteral("name = 'OQS.THRWorker.forceSync' OR name LIKE 'exportPam.%'");
    return vars;
}

} // namespace

bool TouchedTable::isPeople() const
{
    return name == QLatin1String("people");
}

const QVector<TouchedTable> &touchedTables()
{
    static const QVector<TouchedTable> tables {
        people(),
        tableOfPersons("people_pam", "uid"),
        memberships(),
        tableOfPersons("people_term", "tid uid"),
        tableOfPersons("admins_people", "aid uid"),
        tableOfPersons("groups_plan", "uid since"),
        tableOfPersons("groups_month", "uid month"),
        attendance(),
        fundMoves(),
        table("term", "tid"),
        queue(),
        variables(),
    };
    return tables;
}

const QVector<NamedId> &namedIds()
{
    static const QVector<NamedId> ids {
        {QStringLiteral("bid"), QStringLiteral("branches"),
         QStringLiteral("CONCAT_WS(' ', number, name)")},
        {QStringLiteral("gid"), QStringLiteral("groups"), QStringLiteral("name")},
        {QStringLiteral("tid"), QStringLiteral("term"), QStringLiteral("name")},
        {QStringLiteral("aid"), QStringLiteral("admins"), QStringLiteral("personalNumber")},
        {QStringLiteral("fid"), QStringLiteral("funds"), QStringLiteral("name")},
    };
    return ids;
}
