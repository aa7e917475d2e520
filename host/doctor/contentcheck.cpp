// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the rows of the attendance database are such that a pass does what it should.
#include "host/doctor/contentcheck.h"

#include "host/catalogue/findings.h"
#include "host/database/errortext.h"
#include "host/doctor/contentparts.h"
#include "host/doctor/passvalues.h"

#include <QCoreApplication>
#include <QSqlQuery>
#include <QSqlRecord>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(ContentCheck)
};

const int mostOfAKind = 20;

/// How a finding is made of a row.
using Maker = std::function<Finding(const ContentRow &)>;

void check(const QSqlDatabase &database, const char *table, const QString &statement,
           const Maker &make, Diagnosis *diagnosis)
{
    QVector<Finding> findings;
    forEachRow(database, QString::fromLatin1(table), statement, diagnosis,
               [&](const ContentRow &row) { findings.append(make(row)); });
    addSome(findings, diagnosis);
}

/// One that was meant to be found by lines of the export: its master group would have the groups of
/// its calendars. And one that lines without a branch find.
void checkBranchNumbers(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    const auto checkBy = [&](const char *code, const char *condition) {
        check(
            database, "branches",
            QStringLiteral("SELECT bid FROM branches WHERE %1 ORDER BY bid")
                .arg(QLatin1String(condition)),
            [code](const ContentRow &row) {
                return finding(code, QStringLiteral("branches"), {row.at(0).toString()});
            },
            diagnosis);
    };
    checkBy("W-CONTENT-BRANCHNONE", "number IS NULL AND mgid IN(SELECT mgid FROM mastergroups)");
    checkBy("W-CONTENT-BRANCHZERO", "number = 0");
}

/// A statement for each branch, for each needs a number of its own.
QString newNumbers(const QStringList &bids)
{
    QStringList statements;
    for (const QString &bid : bids)
        statements.append(
            QStringLiteral("UPDATE branches SET number = NUMBER_%1 WHERE bid = %1").arg(bid));
    return statements.join(QStringLiteral("; "));
}

/// The last one of a number counts, in the order of the plugin's own statement.
void checkSharedBranchNumbers(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    QMap<uint, QStringList> byNumber;
    forEachRow(
        database, QStringLiteral("branches"),
        QStringLiteral("SELECT bid, number FROM branches WHERE number IS NOT NULL;"), diagnosis,
        [&](const ContentRow &row) { byNumber[row.at(1).toUInt()].append(row.at(0).toString()); });
    QVector<Finding> findings;
    for (auto it = byNumber.begin(); it != byNumber.end(); ++it) {
        if (it->size() < 2)
            continue;
        const QString all = it->join(QStringLiteral(", "));
        const QString taken = it->takeLast();
        findings.append(finding("E-CONTENT-BRANCHTWICE", QStringLiteral("branches"),
                                {QString::number(it.key()), all, taken, newNumbers(*it)}));
    }
    addSome(findings, diagnosis);
}

void checkAdministrators(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    check(
        database, "admins",
        QStringLiteral("SELECT personalNumber, GROUP_CONCAT(aid ORDER BY aid SEPARATOR ', '), "
                       "MIN(aid) FROM admins WHERE personalNumber <> 0 "
                       "GROUP BY personalNumber HAVING COUNT(*) > 1 ORDER BY personalNumber"),
        [](const ContentRow &row) {
            return finding("E-CONTENT-ADMINTWICE", QStringLiteral("admins"),
                           {row.at(0).toString(), row.at(1).toString(), row.at(2).toString()});
        },
        diagnosis);
}

/// Only where its people have no other one: news goes to those with status 1 that take people, as
/// bit 2 of their flags says.
void checkTerminals(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    check(
        database, "term",
        QStringLiteral(
            "SELECT pt.tid, COUNT(*) FROM people_term pt JOIN term t USING(tid) "
            "JOIN people p USING(uid) WHERE t.status = 0 AND t.flags & 2 AND p.status "
            "AND NOT EXISTS("
            "SELECT 1 FROM people_term o JOIN term u USING(tid) "
            "WHERE o.uid = pt.uid AND u.status = 1 AND u.flags & 2) GROUP BY pt.tid ORDER BY pt.tid"),
        [](const ContentRow &row) {
            return finding("W-CONTENT-TERMINAL", QStringLiteral("term"),
                           {row.at(0).toString(), row.at(1).toString()});
        },
        diagnosis);
}

/// Somebody's last attendance lies in the time of a plan, and no month of that time was derived.
void checkPlans(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    check(
        database, "groups_plan",
        QStringLiteral(
            "SELECT gp.uid, MIN(gp.since) FROM groups_plan gp "
            "JOIN (SELECT uid, MAX(`date`) day FROM atten GROUP BY uid) a USING(uid) "
            "LEFT JOIN (SELECT uid, MAX(month) month FROM groups_month GROUP BY uid) gm "
            "USING(uid) WHERE gp.since <= EXTRACT(YEAR_MONTH FROM FROM_UNIXTIME(a.day)) "
            "AND (gm.month IS NULL OR gm.month < gp.since) GROUP BY gp.uid ORDER BY gp.uid"),
        [](const ContentRow &row) {
            return finding("W-CONTENT-PLAN", QStringLiteral("groups_plan"),
                           {row.at(0).toString(), row.at(1).toString()});
        },
        diagnosis);
}

void checkCorrections(const QSqlDatabase &database, Diagnosis *diagnosis)
{
    const QString midnight = QString::number(localMidnight(QDate::currentDate()));
    forEachRow(database, QStringLiteral("funds_move"),
               QStringLiteral("SELECT COUNT(*) FROM funds_move fm JOIN funds f USING(fid) "
                              "WHERE fm.type = 3 AND fm.day = %1 AND %2")
                   .arg(midnight, isLeaveFund),
               diagnosis, [&](const ContentRow &row) {
                   if (row.first().toInt() == 0)
                       return;
                   diagnosis->findings.append(finding("N-CONTENT-CORRECTED",
                                                      QStringLiteral("funds_move"),
                                                      {row.first().toString()}));
                   diagnosis->unknown.append(
                       {Text::tr("who corrected leave today"),
                        Text::tr("it may have been a pass or somebody else: no row says who wrote "
                                 "it")});
               });
}

} // namespace

bool forEachRow(const QSqlDatabase &database, const QString &about, const QString &statement,
                Diagnosis *diagnosis, const std::function<void(const ContentRow &)> &found)
{
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(statement)) {
        const Unseen unseen {
            about, Text::tr("its rows cannot be read: %1").arg(errorText(query.lastError()))};
        diagnosis->unknown.append(unseen);
        return false;
    }
    const int columns = query.record().count();
    while (query.next()) {
        ContentRow row(columns);
        for (int column = 0; column < columns; ++column)
            row[column] = query.value(column);
        found(row);
    }
    return true;
}

void addSome(const QVector<Finding> &findings, Diagnosis *diagnosis)
{
    diagnosis->findings += findings.mid(0, mostOfAKind);
    if (findings.size() > mostOfAKind) {
        diagnosis->findings.append(
            finding("N-CONTENT-MORE", findings.first().about,
                    {QString::number(findings.size() - mostOfAKind), findings.first().code}));
    }
}

Diagnosis contentDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis = variablesDiagnosis(database);
    checkBranchNumbers(database, &diagnosis);
    checkSharedBranchNumbers(database, &diagnosis);
    diagnosis += peopleDiagnosis(database);
    checkAdministrators(database, &diagnosis);
    checkTerminals(database, &diagnosis);
    checkPlans(database, &diagnosis);
    checkCorrections(database, &diagnosis);
    if (diagnosis.findings.isEmpty() && diagnosis.unknown.isEmpty())
        diagnosis.passed.append(Text::tr("rows: nothing that misleads a pass"));
    return diagnosis;
}
