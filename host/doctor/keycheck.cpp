// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether upserts find the row that they mean, and whether transactions hold.
#include "host/doctor/schemaparts.h"

#include "host/catalogue/findings.h"
#include "host/doctor/sqlwords.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SchemaCheck)
};

QSet<QString> setOf(const QStringList &columns)
{
    QSet<QString> set;
    for (const QString &column : columns)
        set.insert(column.toLower());
    return set;
}

/// By its columns, whatever it is called and in whichever order they stand.
bool isTheKey(const RealIndex &index, const NeededTable &needed)
{
    return index.isUnique && !index.isPartial && setOf(index.columns) == setOf(needed.uniqueKey);
}

/// An upsert can meet another row by it than the one that it means.
bool isInTheWay(const RealIndex &index, const NeededTable &needed)
{
    if (!index.isUnique || setOf(index.columns).contains(setOf(needed.uniqueKey)))
        return false;
    return std::all_of(index.columns.begin(), index.columns.end(), [&](const QString &column) {
        const NeededColumn *const known = needed.find(column);
        return known && known->isInserted;
    });
}

/// What it leads to that an upsert adds a row.
QString effectOfDoubling(const QString &table)
{
    if (table == QLatin1String("people"))
        return Text::tr("people who come back stand twice");
    if (table == QLatin1String("admins_people"))
        return Text::tr("a supervisor stands several times beside a person");
    if (table == QLatin1String("vars"))
        return Text::tr("old values may be read on: a forced pass never ends, and the list of PaM "
                        "loses people");
    if (table.startsWith(QLatin1String("groups_")))
        return Text::tr("a person may have two groups in a month");
    return Text::tr("rows may stand twice");
}

Finding keyInTheWay(const NeededTable &needed, const RealIndex &index)
{
    const QString drop = index.name == QLatin1String("PRIMARY")
        ? QStringLiteral("DROP PRIMARY KEY")
        : QStringLiteral("DROP INDEX ") + quotedName(index.name);
    return finding("W-SCHEMA-OTHERKEY", needed.name,
                   {needed.name, index.name, index.columns.join(QStringLiteral(", ")),
                    QStringLiteral("%1, ADD INDEX (%2)").arg(drop, quotedNames(index.columns))});
}

} // namespace

Diagnosis keyDiagnosis(const NeededTable &needed, const RealTable &real)
{
    Diagnosis diagnosis;
    if (real.engine.isEmpty()) {
        diagnosis.unknown.append(
            {needed.name,
             Text::tr("it is a view: what keys and engine lie behind it is not seen")});
        return diagnosis;
    }
    if (needed.isWritten() && !real.hasTransactions)
        diagnosis.findings.append(
            finding("W-SCHEMA-ENGINE", needed.name, {needed.name, real.engine}));
    if (needed.uniqueKey.isEmpty())
        return diagnosis;

    const bool hasKey = std::any_of(
        real.indexes.begin(), real.indexes.end(),
        [&](const RealIndex &index) { return isTheKey(index, needed); });
    if (!hasKey) {
        diagnosis.findings.append(
            finding("E-SCHEMA-KEY", needed.name,
                    {needed.name, needed.uniqueKey.join(QStringLiteral(", ")),
                     quotedNames(needed.uniqueKey), effectOfDoubling(needed.name)}));
    }
    for (const RealIndex &index : real.indexes) {
        if (isInTheWay(index, needed))
            diagnosis.findings.append(keyInTheWay(needed, index));
    }
    return diagnosis;
}
