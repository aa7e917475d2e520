// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Statements that have to look at every row of a table to find theirs.
#include "host/doctor/schemaparts.h"

#include "host/catalogue/findings.h"
#include "host/catalogue/statementforms.h"
#include "host/database/errortext.h"
#include "host/doctor/passvalues.h"
#include "host/doctor/sqlwords.h"

#include <QCoreApplication>
#include <QDate>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QSqlQuery>
#include <QVariant>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(SchemaCheck)
};

const int manyRows = 1000;

QString oneValue(const QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    return query.exec(statement) && query.next() && !query.value(0).isNull()
        ? query.value(0).toString()
        : QStringLiteral("1");
}

/// Of rows that are there: for others the server may not even look for a way to them.
QHash<QString, QString> realValues(const QSqlDatabase &database)
{
    const QDate today = QDate::currentDate();
    QHash<QString, QString> values;
    values[QStringLiteral("pid")] = oneValue(
        database,
        QStringLiteral("SELECT pid FROM people WHERE status AND pid IS NOT NULL LIMIT 1"));
    values[QStringLiteral("uid")] = oneValue(
        database,
        QStringLiteral("SELECT uid FROM people WHERE status AND pid IS NOT NULL LIMIT 1"));
    values[QStringLiteral("list")] = values.value(QStringLiteral("uid"));
    values[QStringLiteral("fid")] = oneValue(
        database, QStringLiteral("SELECT fid FROM funds WHERE %1").arg(isLeaveFund));
    values[QStringLiteral("bid")] = oneValue(
        database, QStringLiteral("SELECT bid FROM branches WHERE mgid IS NOT NULL LIMIT 1"));
    values[QStringLiteral("calendar")] = QStringLiteral("1");
    values[QStringLiteral("number")] = QStringLiteral("1");
    values[QStringLiteral("name")] = QStringLiteral("exportPam.1.selPeople");
    values[QStringLiteral("month")] = today.toString(QStringLiteral("yyyyMM"));
    values[QStringLiteral("moment")] = QString::number(localMidnight(today));
    return values;
}

QString formOf(PassStatement statement)
{
    for (const StatementForm &row : statementForms()) {
        if (row.statement == statement)
            return QString::fromLatin1(row.form);
    }
    return QString();
}

QString filled(QString form, const QString &kinds, const QHash<QString, QString> &values)
{
    static const QRegularExpression place(QStringLiteral("\\{[a-z]\\}"));
    const QStringList names = kinds.split(QLatin1Char(' '), QString::SkipEmptyParts);
    for (const QString &name : names) {
        const QRegularExpressionMatch match = place.match(form);
        form.replace(match.capturedStart(), match.capturedLength(), values.value(name));
    }
    return form;
}

/// What it takes to find the rows, as a statement that only reads and that needs no routine: the
/// login may have the right to nothing else. A moment stands for the routine that gives one.
QString asReading(QString statement, const QString &moment)
{
    static const QRegularExpression update(QStringLiteral("^UPDATE (\\S+) SET .*? WHERE"),
                                           QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression insertion(
        QStringLiteral("^INSERT INTO .*?(SELECT .*?)(?: ON DUPLICATE KEY .*)?$"));
    statement.replace(QLatin1String("midnightFromTs(UNIX_TIMESTAMP())"), moment);
    statement.replace(QLatin1String("getCurrentGid(p.uid, monthFromTimestamp(a.date), p.gid)"),
                      QLatin1String("p.gid"));
    statement.replace(QLatin1String("monthFromTimestamp(a.date)"), QLatin1String("a.date + 0"));
    statement.replace(insertion, QStringLiteral("\\1"));
    return statement.replace(update, QStringLiteral("SELECT 1 FROM \\1 WHERE"));
}

/// A step of EXPLAIN that goes through many rows although no index could serve it.
struct Scan
{
    QString table;
    qlonglong rows = 0;
};

bool explain(const QSqlDatabase &database, const QString &statement, QVector<Scan> *scans,
             QString *error)
{
    QSqlQuery query(database);
    if (!query.exec(QStringLiteral("EXPLAIN ") + statement)) {
        *error = errorText(query.lastError());
        return false;
    }
    while (query.next()) {
        const QString type = query.value(QStringLiteral("type")).toString();
        const qlonglong rows = query.value(QStringLiteral("rows")).toLongLong();
        const bool isScan = (type == QLatin1String("ALL") || type == QLatin1String("index"))
            && query.value(QStringLiteral("possible_keys")).isNull();
        if (isScan && rows > manyRows)
            scans->append({tableOfAlias(query.value(QStringLiteral("table")).toString()), rows});
    }
    return true;
}

Finding scanFinding(const Lookup &lookup, qlonglong rows)
{
    const QStringList columns = QString::fromLatin1(lookup.columns).split(QLatin1Char(' '));
    const QString table = QString::fromLatin1(lookup.table);
    return finding("W-SCHEMA-SCAN", table,
                   {table, columns.join(QStringLiteral(", ")), QString::number(rows),
                    quotedName(columns.join(QLatin1Char('_'))), quotedNames(columns)});
}

} // namespace

Diagnosis scanDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    const QHash<QString, QString> values = realValues(database);
    QSet<QString> told;
    QSet<QString> unseen;
    for (const Lookup &lookup : lookups()) {
        const QString statement = asReading(
            filled(formOf(lookup.statement), QString::fromLatin1(lookup.values), values),
            values.value(QStringLiteral("moment")));
        QVector<Scan> scans;
        QString error;
        const QString table = QString::fromLatin1(lookup.table);
        if (!explain(database, statement, &scans, &error) && !unseen.contains(table)) {
            unseen.insert(table);
            diagnosis.unknown.append(
                {table, Text::tr("how its rows are found cannot be known: %1").arg(error)});
        }
        for (const Scan &scan : qAsConst(scans)) {
            const QString index = table + QLatin1Char(' ') + QLatin1String(lookup.columns);
            if (scan.table == table && !told.contains(index)) {
                told.insert(index);
                diagnosis.findings.append(scanFinding(lookup, scan.rows));
            }
        }
    }
    if (diagnosis.findings.isEmpty() && diagnosis.unknown.isEmpty())
        diagnosis.passed.append(Text::tr("indexes: every statement finds its rows"));
    return diagnosis;
}
