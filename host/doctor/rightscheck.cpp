// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether a login may do what a pass does, and no more.
#include "host/doctor/rightscheck.h"

#include "host/catalogue/findings.h"
#include "host/catalogue/neededschema.h"
#include "host/doctor/grantedrights.h"
#include "host/doctor/grants.h"
#include "host/doctor/sqlwords.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RightsCheck)
};

const QLatin1String allRights("ALL PRIVILEGES");
const QLatin1String grantOption("GRANT OPTION");

/// Without it a pass does not begin.
bool isForTheLoad(const NeededRight &needed)
{
    const auto &needs = factsOf(PassStatement::People).needs;
    return std::any_of(needs.begin(), needs.end(), [&](const StatementNeed &need) {
        return need.object == needed.object && need.rights.contains(needed.right);
    });
}

Finding missingOnTable(const GrantedRights &granted, const NeededRight &needed)
{
    QString right = needed.right;
    if (needed.byColumn) {
        QStringList missing;
        for (const QString &column : needed.columns) {
            if (!granted.onTable(needed.right, needed.object, {column}))
                missing.append(column);
        }
        right += QStringLiteral(" (%1)").arg(quotedNames(missing));
    }
    return finding(isForTheLoad(needed) ? "E-RIGHTS-PASS" : "E-RIGHTS-TABLE", needed.object,
                   {right, needed.object, quotedName(granted.schema), granted.account});
}

void findMissing(const GrantedRights &granted, Diagnosis *diagnosis)
{
    for (const NeededRight &needed : neededRights()) {
        if (!needed.columns.isEmpty()
            && !granted.onTable(needed.right, needed.object, needed.columns))
            diagnosis->findings.append(missingOnTable(granted, needed));
    }
    for (const NeededRoutine &routine : neededRoutines()) {
        if (!granted.onRoutine(routine.name)) {
            diagnosis->findings.append(finding(
                "E-RIGHTS-ROUTINE", routine.name,
                {routine.name,
                 routine.isProcedure ? QStringLiteral("PROCEDURE") : QStringLiteral("FUNCTION"),
                 quotedName(granted.schema), granted.account, quotedText(granted.schema)}));
        }
    }
}

/// What a pass and its neighbours in the library do.
bool isHarmless(const QString &right, Grant::Level level)
{
    static const QStringList harmless {
        QStringLiteral("SELECT"),    QStringLiteral("INSERT"),
        QStringLiteral("UPDATE"),    QStringLiteral("EXECUTE"),
        QStringLiteral("SHOW VIEW"), QStringLiteral("CREATE TEMPORARY TABLES"),
    };
    return harmless.contains(right) || (right == QLatin1String("DELETE") && level == Grant::Table);
}

QString sorted(const QSet<QString> &rights)
{
    QStringList list = rights.values();
    list.sort();
    return list.join(QStringLiteral(", "));
}

/// The rights of a line as a statement names them, those on columns too.
QSet<QString> spelled(const Grant &grant)
{
    QSet<QString> rights = grant.rights;
    for (auto it = grant.columns.begin(); it != grant.columns.end(); ++it) {
        QStringList columns = it->values();
        columns.sort();
        rights.insert(QStringLiteral("%1 (%2)").arg(it.key(), quotedNames(columns)));
    }
    return rights;
}

/// The rights of a line that stay, on another place or after all have been taken away.
QStringList kept(const Grant &grant)
{
    QStringList rights;
    for (const char *right : {"SELECT", "INSERT", "UPDATE", "EXECUTE"}) {
        const QString name = QString::fromLatin1(right);
        if (grant.has(name) && (grant.level != Grant::Table || name != QLatin1String("EXECUTE")))
            rights.append(name);
    }
    return rights;
}

/// Takes the rights away and gives those back that a pass may need, at the place named. Statements
/// with semicolons in between.
QString withdrawal(const Grant &grant, QSet<QString> rights, const QString &keptPlace)
{
    QStringList statements;
    const bool takesAll = rights.contains(allRights);
    const bool moves = keptPlace != grant.place;
    if (rights.remove(grantOption))
        statements.append(
            QStringLiteral("REVOKE GRANT OPTION ON %1 FROM %2").arg(grant.place, grant.grantee));
    if (!rights.isEmpty())
        statements.append(QStringLiteral("REVOKE %1 ON %2 FROM %3")
                              .arg(sorted(rights), grant.place, grant.grantee));
    const QStringList back = kept(grant);
    if (!keptPlace.isEmpty() && (takesAll || moves) && !back.isEmpty())
        statements.append(QStringLiteral("GRANT %1 ON %2 TO %3")
                              .arg(back.join(QStringLiteral(", ")), keptPlace, grant.grantee));
    return statements.join(QStringLiteral("; "));
}

/// It reaches beyond the schema: all of it is too much.
Finding tooFar(const char *code, const Grant &grant, const QString &keptPlace)
{
    const QSet<QString> rights = spelled(grant);
    return finding(
        code, grant.place,
        {sorted(rights), grant.place, grant.grantee, withdrawal(grant, rights, keptPlace)});
}

/// A dump needs it, and it shows no data.
bool isTableOfRoutines(const Grant &grant)
{
    return grant.schema == QLatin1String("mysql") && grant.object == QLatin1String("proc")
        && spelled(grant) == QSet<QString> {QStringLiteral("SELECT")};
}

void findExcess(const GrantedRights &granted, Diagnosis *diagnosis)
{
    const QString own = quotedSchemaPattern(granted.schema) + QLatin1String(".*");
    for (const Grant &grant : granted.grants) {
        if (spelled(grant).isEmpty() || isTableOfRoutines(grant))
            continue;
        if (grant.level == Grant::Server) {
            diagnosis->findings.append(tooFar("W-RIGHTS-SERVER", grant, own));
            continue;
        }
        const bool isOwn = grant.reaches(granted.schema);
        const bool isWild = grant.level == Grant::Schema
            && QString(grant.schema).remove(QLatin1String("\\%")).contains(QLatin1Char('%'));
        if (!isOwn || isWild) {
            diagnosis->findings.append(tooFar("W-RIGHTS-OTHER", grant, isOwn ? own : QString()));
            continue;
        }
        QSet<QString> excess;
        for (const QString &right : grant.rights) {
            if (!isHarmless(right, grant.level))
                excess.insert(right);
        }
        if (!excess.isEmpty()) {
            diagnosis->findings.append(finding("W-RIGHTS-MORE", grant.place,
                                               {sorted(excess), grant.place, grant.grantee,
                                                withdrawal(grant, excess, grant.place)}));
        }
    }
}

void tellUnseen(const GrantedRights &granted, Diagnosis *diagnosis)
{
    for (const QString &role : granted.sleepingRoles) {
        diagnosis->unknown.append(
            {role,
             Text::tr("the server does not show the rights of a role that is not in force; "
                      "SQL in a name of the export could switch it on")});
    }
    for (const QString &line : granted.unreadable)
        diagnosis->unknown.append({line, Text::tr("the line of SHOW GRANTS has no known form")});
}

} // namespace

Diagnosis rightsDiagnosis(const QSqlDatabase &database)
{
    Diagnosis diagnosis;
    GrantedRights granted;
    if (const Failure failure = readGrantedRights(database, &granted)) {
        diagnosis.unknown.append(
            {Text::tr("rights"), Text::tr("the server does not tell them: %1").arg(failure.text)});
        return diagnosis;
    }
    tellUnseen(granted, &diagnosis);
    if (!granted.canWrite()) {
        diagnosis.unknown.append(
            {Text::tr("rights of the plugin's login"),
             Text::tr("%1 can only read, so that it cannot be the plugin's; ask with the login "
                      "that the attendance server gives to the plugin")
                 .arg(granted.account)});
        return diagnosis;
    }
    findMissing(granted, &diagnosis);
    findExcess(granted, &diagnosis);
    if (diagnosis.findings.isEmpty())
        diagnosis.passed.append(
            Text::tr("rights: all that a pass needs, and none of the dangerous ones"));
    return diagnosis;
}
