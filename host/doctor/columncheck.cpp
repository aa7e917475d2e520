// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the columns of a table hold what the plugin writes.
#include "host/doctor/schemaparts.h"

#include "host/catalogue/findings.h"
#include "host/doctor/sqlwords.h"

#include <QCoreApplication>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SchemaCheck)
};

struct Range
{
    qint64 least;
    qint64 most;
    const char *type; ///< that holds it
};

Range rangeOf(Holds holds)
{
    switch (holds) {
    case Holds::Moment:
        return {0, 4294967295, "BIGINT"};
    case Holds::Amount:
        return {-2147483647, 2147483647, "INT"};
    case Holds::Month:
        return {0, 999912, "INT UNSIGNED"};
    case Holds::Small:
        return {0, 4, "TINYINT UNSIGNED"};
    case Holds::Mark:
        return {-1, 1, "TINYINT"};
    default:
        return {0, 4294967295, "INT UNSIGNED"};
    }
}

QString typeFor(const NeededColumn &needed)
{
    if (needed.holds == Holds::Letters)
        return QStringLiteral("VARCHAR(%1)").arg(qMax(needed.letters, 255));
    return QString::fromLatin1(rangeOf(needed.holds).type);
}

/// For a column that is not there.
QString definitionOf(const NeededColumn &needed)
{
    const QString type = typeFor(needed);
    if (!needed.fallback.isEmpty())
        return QStringLiteral("%1 NOT NULL DEFAULT %2").arg(type, needed.fallback);
    return needed.holds == Holds::Letters ? type + QLatin1String(" NOT NULL DEFAULT ''")
                                          : type + QLatin1String(" NULL");
}

QString fullName(const NeededTable &table, const QString &column)
{
    return table.name + QLatin1Char('.') + column;
}

Finding columnFinding(const char *code, const NeededTable &table, const RealColumn &real,
                      const QString &wanted, const QString &definition)
{
    return finding(code, fullName(table, real.name),
                   {table.name, real.name, real.type, wanted, definition});
}

void checkType(const NeededTable &table, const NeededColumn &needed, const RealColumn &real,
               Diagnosis *diagnosis)
{
    const auto add = [&](const char *code, const QString &wanted, const QString &type) {
        diagnosis->findings.append(
            columnFinding(code, table, real, wanted, real.definition(type, real.isNullable)));
    };
    const QString type = typeFor(needed);
    if (needed.holds == Holds::Letters) {
        if (!real.isText())
            add("E-SCHEMA-TYPE", Text::tr("text"), type);
        else if (real.kind != QLatin1String("enum") && real.length < qMax(needed.letters, 1))
            add("E-SCHEMA-SHORT", QString::number(needed.letters), type);
        return;
    }
    const Range range = rangeOf(needed.holds);
    const int digits = QString::number(range.most).size();
    if (real.isText() ? real.length < digits : !real.isInteger())
        add("E-SCHEMA-TYPE", Text::tr("numbers"), type);
    else if (real.isInteger() && (real.least() > range.least || real.most() < range.most))
        add("E-SCHEMA-NARROW", QStringLiteral("%1 … %2").arg(range.least).arg(range.most), type);
}

void checkColumn(const NeededTable &table, const NeededColumn &needed, const RealColumn &real,
                 Diagnosis *diagnosis)
{
    if (needed.isInserted || needed.isUpdated)
        checkType(table, needed, real, diagnosis);
    if (needed.becomesNull && !real.isNullable) {
        diagnosis->findings.append(columnFinding("E-SCHEMA-NULL", table, real, QString(),
                                                 real.definition(real.type, true)));
    }
}

/// A column that the plugin's INSERT does not name has to get a value from somewhere.
void checkUnfilled(const NeededTable &table, const RealColumn &real, Diagnosis *diagnosis)
{
    const NeededColumn *const needed = table.find(real.name);
    const bool isFilled = real.isNullable || !real.fallback.isNull() || !real.extra.isEmpty()
        || (needed && needed->isInserted);
    if (isFilled)
        return;
    diagnosis->findings.append(columnFinding("E-SCHEMA-UNFILLED", table, real, QString(),
                                             real.definition(real.type, true)));
}

void checkMissing(const QSqlDatabase &database, const NeededTable &table,
                  const NeededColumn &needed, Diagnosis *diagnosis)
{
    const QString name = fullName(table, needed.name);
    const Presence presence = presenceBy(database,
                                         QStringLiteral("SELECT %1 FROM %2 LIMIT 0")
                                             .arg(quotedName(needed.name), quotedName(table.name)));
    if (presence == Presence::Hidden) {
        diagnosis->unknown.append(
            {name, Text::tr("the login has no right on the column, if there is one")});
    } else if (presence == Presence::Missing) {
        diagnosis->findings.append(
            finding("E-SCHEMA-COLUMN", name, {table.name, needed.name, definitionOf(needed)}));
    }
}

} // namespace

Diagnosis columnDiagnosis(const QSqlDatabase &database, const NeededTable &needed,
                          const RealTable &real)
{
    Diagnosis diagnosis;
    bool isInsertedInto = false;
    for (const NeededColumn &column : needed.columns) {
        isInsertedInto |= column.isInserted;
        if (const RealColumn *const found = real.find(column.name))
            checkColumn(needed, column, *found, &diagnosis);
        else
            checkMissing(database, needed, column, &diagnosis);
    }
    for (const RealColumn &column : real.columns) {
        if (isInsertedInto)
            checkUnfilled(needed, column, &diagnosis);
    }
    return diagnosis;
}
