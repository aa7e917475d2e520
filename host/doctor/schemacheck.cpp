// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether tables, keys and routines are as a pass needs them.
#include "host/doctor/schemacheck.h"

#include "host/catalogue/findings.h"
#include "host/database/errortext.h"
#include "host/doctor/schemaparts.h"
#include "host/doctor/sqlwords.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SchemaCheck)
};

Diagnosis tableDiagnosis(const QSqlDatabase &database, const NeededTable &needed,
                         const QVector<RealTable> &tables)
{
    const auto real = std::find_if(tables.begin(), tables.end(), [&](const RealTable &table) {
        return table.name == needed.name;
    });
    Diagnosis diagnosis;
    if (real == tables.end()) {
        const Presence presence = presenceBy(
            database, QStringLiteral("SELECT 1 FROM %1 LIMIT 0").arg(quotedName(needed.name)));
        if (presence == Presence::Hidden)
            diagnosis.unknown.append(
                {needed.name, Text::tr("the login has no right on the table, if there is one")});
        else
            diagnosis.findings.append(
                finding("E-SCHEMA-TABLE", needed.name, {needed.name, database.databaseName()}));
        return diagnosis;
    }
    diagnosis += columnDiagnosis(database, needed, *real);
    diagnosis += keyDiagnosis(needed, *real);
    return diagnosis;
}

/// Whether the list of PaM could hold everybody.
Diagnosis listDiagnosis(const QSqlDatabase &database, const QVector<RealTable> &tables)
{
    Diagnosis diagnosis;
    const auto vars = std::find_if(tables.begin(), tables.end(), [](const RealTable &table) {
        return table.name == QLatin1String("vars");
    });
    const RealColumn *const value = vars == tables.end() ? nullptr
                                                         : vars->find(QStringLiteral("value"));
    if (!value || !value->isText())
        return diagnosis;
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("SELECT COUNT(pid), SUM(LENGTH(pid) + 1) FROM people"))
        || !query.next()) {
        diagnosis.unknown.append({QStringLiteral("vars.value"),
                                  Text::tr("whether a list of everybody fits cannot be known: %1")
                                      .arg(errorText(query.lastError()))});
        return diagnosis;
    }
    const qlonglong letters = query.value(1).toLongLong() - 1;
    if (letters > value->length) {
        diagnosis.findings.append(finding(
            "W-SCHEMA-LIST", QStringLiteral("vars.value"),
            {query.value(0).toString(), QString::number(letters), QString::number(value->length),
             value->definition(QStringLiteral("MEDIUMTEXT"), value->isNullable)}));
    }
    return diagnosis;
}

} // namespace

Diagnosis schemaDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    QVector<RealTable> tables;
    if (const Failure failure = readSchemaFacts(database, &tables)) {
        diagnosis.unknown.append({Text::tr("tables"), failure.text});
        return diagnosis;
    }
    for (const NeededTable &needed : neededTables())
        diagnosis += tableDiagnosis(database, needed, tables);
    diagnosis += listDiagnosis(database, tables);
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(Text::tr("tables: columns and keys"));
    diagnosis += bystanderDiagnosis(database);
    diagnosis += routineDiagnosis(database);
    diagnosis += scanDiagnosis(database);
    return diagnosis;
}
