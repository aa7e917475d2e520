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
        diagnosis.findings.append(finding("E-SCHEMA-KEY", needed.name,
                                          {needed.name, needed.uniqueKey.join(QStringLiteral(", ")),
                                           quotedNames(needed.uniqueKey)}));
    }
    for (const RealIndex &index : real.indexes) {
        if (isInTheWay(index, needed))
            diagnosis.findings.append(keyInTheWay(needed, index));
    }
    return diagnosis;
}
