// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Branches and their memberships.
#include "repository/branchesrepository.h"

#include "repository/sqlerror.h"
#include "repository/sqlnumber.h"
#include "repository/termsyncrepository.h"

#include <QVariant>

namespace {

/// Begin and end of one day, both "NULL" when both are 0; a single 0 is stored as 0.
QStringList hoursToSql(ushort begin, ushort end)
{
    if (begin == 0 && end == 0)
        return {QStringLiteral("NULL"), QStringLiteral("NULL")};
    return {QString::number(begin), QString::number(end)};
}

/// The working hours in the order of the columns, wh1b to wh7e.
QStringList workingHours(const BranchRecord &branch)
{
    return hoursToSql(branch.wh1b, branch.wh1e) + hoursToSql(branch.wh2b, branch.wh2e)
        + hoursToSql(branch.wh3b, branch.wh3e) + hoursToSql(branch.wh4b, branch.wh4e)
        + hoursToSql(branch.wh5b, branch.wh5e) + hoursToSql(branch.wh6b, branch.wh6e)
        + hoursToSql(branch.wh7b, branch.wh7e);
}

/// The statement ran and has changed a row.
bool execChangesRows(QSqlQuery &query, const QString &statement)
{
    return query.exec(statement) && query.numRowsAffected() > 0;
}

} // namespace

BranchesRepository::BranchesRepository(QObject *parent, bool connectAdded, bool connectDeleted) :
    QObject(parent),
    termSyncRepo(new TermSyncRepository(this))
{
    if (connectAdded) {
        connect(this, SIGNAL(sigAddedPeopleToBranch(ushort, QString)), this,
                SLOT(slotAddedPeopleToBranch(ushort, QString)));
        connect(this, SIGNAL(sigAddedBranchToTerms(ushort, QString)), this,
                SLOT(slotAddedBranchToTerms(ushort, QString)));
        connect(this, SIGNAL(sigAddedAdminsToBranch(ushort, QString)), this,
                SLOT(slotAddedAdminsToBranch(ushort, QString)));
    }
    if (connectDeleted) {
        connect(this, SIGNAL(sigDeletedPeopleFromBranch(ushort, QString)), this,
                SLOT(slotDeletedPeopleFromBranch(ushort, QString)));
        connect(this, SIGNAL(sigDeletedBranchFromTerms(ushort, QString)), this,
                SLOT(slotDeletedBranchFromTerms(ushort, QString)));
        connect(this, SIGNAL(sigDeletedAdminsFromBranch(ushort, QString)), this,
                SLOT(slotDeletedAdminsFromBranch(ushort, QString)));
    }
}

BranchesRepository::~BranchesRepository() = default;

void BranchesRepository::setDb(const QSqlDatabase &database)
{
    db = database;
    if (termSyncRepo)
        termSyncRepo->setDb(database);
}

// Deliberate: the three texts are filled together and everything else one by one, so that a %5 in a
// name is filled by what comes after. Nothing is escaped. Pinned by
// tst_Branches::textsAreNeitherEscapedNorProtected().
ushort BranchesRepository::addBranch(const BranchRecord &branch)
{
    // Two blanks after the dash.
    if (branch.name.isEmpty()) {
        qWarning("BranchesRepository::addBranch() -  branch name can not be empty!");
        return 0;
    }

    QSqlQuery query(db);
    QString statement = QStringLiteral(
                            "INSERT INTO `branches` (`number`, `name`, `address`, `note`, "
                            "`wh1b`, `wh1e`, `wh2b`, `wh2e`, `wh3b`, `wh3e`, `wh4b`, `wh4e`, "
                            "`wh5b`, `wh5e`, `wh6b`, `wh6e`, `wh7b`, `wh7e`, `mgid`) "
                            "VALUES (%1, '%2', '%3', '%4', %5, %6, %7, %8, %9, %10, %11, %12, "
                            "%13, %14, %15, %16, %17, %18, %19);")
                            .arg(numberToSql(branch.number)) // %1
                            .arg(branch.name, branch.address, branch.note); // %2 to %4
    const QStringList hours = workingHours(branch);
    for (const QString &hour : hours)
        statement = statement.arg(hour); // %5 to %18
    statement = statement.arg(numberToSql(branch.mgid)); // %19
    if (!query.exec(statement)) {
        qCritical("BranchesRepository::addBranch - ERROR: %s", SQL_TEXT(query));
        return 0;
    }
    const QVariant bid = query.lastInsertId();
    return bid.toInt() < 1 ? 0 : static_cast<ushort>(bid.toUInt());
}

int BranchesRepository::updateBranch(const BranchRecord &branch)
{
    QSqlQuery query(db);
    QString statement
        = QStringLiteral("UPDATE `branches` SET `name`='%1', `address`='%2', `note`='%3', "
                         "`wh1b`=%4, `wh1e`=%5, `wh2b`=%6, `wh2e`=%7, `wh3b`=%8, `wh3e`=%9, "
                         "`wh4b`=%10, `wh4e`=%11, `wh5b`=%12, `wh5e`=%13, `wh6b`=%14, `wh6e`=%15, "
                         "`wh7b`=%16, `wh7e`=%17,`number` = %18, `mgid`= %19 WHERE bid = %20")
              .arg(branch.name, branch.address, branch.note); // %1 to %3
    const QStringList hours = workingHours(branch);
    for (const QString &hour : hours)
        statement = statement.arg(hour); // %4 to %17
    statement = statement
                    .arg(numberToSql(branch.number)) // %18
                    .arg(numberToSql(branch.mgid)) // %19
                    .arg(branch.bid); // %20
    int changed = 0;
    if (query.exec(statement))
        changed = qMax(query.numRowsAffected(), 0);
    else
        qCritical("BranchesRepository::updateBranch - ERROR: %s", SQL_TEXT(query));
    return query.lastError().isValid() ? -1 : changed;
}

bool BranchesRepository::saveBranch(const BranchRecord &branch)
{
    // Deliberate: -1, the failed update, counts as saved. Pinned by
    // tst_Branches::saveBranch_failedUpdateIsASuccess().
    return branch.bid == 0 ? addBranch(branch) != 0 : updateBranch(branch) != 0;
}

bool BranchesRepository::reservedBranchOperation(int)
{
    return false;
}

bool BranchesRepository::addPeopleToBranch(ushort bid, const QString &uids)
{
    if (logLevel)
        qInfo("BranchesRepository::addPeopleToBranch(%u, '%s')", bid, qPrintable(uids));
    if (bid == 0 || uids.isEmpty())
        return false;

    QSqlQuery query(db);
    const QString statement
        = QStringLiteral("INSERT INTO brape (bid, uid, since) "
                         "SELECT %1 bid, uid, UNIX_TIMESTAMP() since FROM people WHERE uid IN(%2) "
                         "ON DUPLICATE KEY UPDATE since=UNIX_TIMESTAMP()")
              .arg(bid)
              .arg(uids);
    const bool changed = execChangesRows(query, statement);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::addPeopleToBranch - ERROR: %s", SQL_TEXT(query));
    if (changed)
        Q_EMIT sigAddedPeopleToBranch(bid, uids);
    return changed;
}

bool BranchesRepository::delPeopleFromBranch(ushort bid, const QString &uids)
{
    if (logLevel)
        qInfo("BranchesRepository::delPeopleFromBranch(%u, '%s')", bid, qPrintable(uids));
    if (bid == 0 || uids.isEmpty())
        return false;

    QSqlQuery query(db);
    const QString statement
        = QStringLiteral("DELETE FROM brape WHERE bid = %1 AND uid IN(%2)").arg(bid).arg(uids);
    const bool changed = execChangesRows(query, statement);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::delPeopleFromBranch - ERROR: %s", SQL_TEXT(query));
    if (changed)
        Q_EMIT sigDeletedPeopleFromBranch(bid, uids);
    return changed;
}

bool BranchesRepository::addBranchToTerms(ushort bid, const QString &tids)
{
    if (logLevel)
        qInfo("BranchesRepository::addBranchToTerms(%u, '%s')", bid, qPrintable(tids));
    if (bid == 0 || tids.isEmpty())
        return false;

    QSqlQuery query(db);
    const QString statement
        = QStringLiteral("UPDATE term SET bid = %1 WHERE tid IN(%2)").arg(bid).arg(tids);
    const bool changed = execChangesRows(query, statement);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::addBranchToTerms - ERROR: %s", SQL_TEXT(query));
    if (changed)
        Q_EMIT sigAddedBranchToTerms(bid, tids);
    return changed;
}

bool BranchesRepository::delBranchFromTerms(ushort bid, const QString &tids)
{
    if (logLevel)
        qInfo("BranchesRepository::delBranchFromTerms(%u, '%s')", bid, qPrintable(tids));
    if (bid == 0 || tids.isEmpty())
        return false;

    QSqlQuery query(db);
    // Deliberate: the branch is not asked for: the terminals lose whatever branch they are in.
    // Pinned by tst_BranchTables::delBranchFromTerms_detachesFromAnyBranch().
    const QString statement = QStringLiteral("UPDATE term SET bid = NULL WHERE tid IN(%1)")
                                  .arg(tids);
    const bool changed = execChangesRows(query, statement);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::delBranchFromTerms - ERROR: %s", SQL_TEXT(query));
    if (changed)
        Q_EMIT sigDeletedBranchFromTerms(bid, tids);
    return changed;
}

bool BranchesRepository::addAdminsToBranch(ushort bid, const QString &aids)
{
    if (logLevel)
        qInfo("BranchesRepository::addAdminsToBranch(%u, '%s')", bid, qPrintable(aids));
    if (bid == 0 || aids.isEmpty())
        return false;

    QSqlQuery query(db);
    const QString statement = QStringLiteral("INSERT INTO bradm (bid, aid) "
                                             "SELECT %1 bid, aid FROM admins WHERE aid IN(%2) "
                                             "ON DUPLICATE KEY UPDATE bid=%1")
                                  .arg(bid)
                                  .arg(aids);
    const bool changed = execChangesRows(query, statement);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::addAdminsToBranch - ERROR: %s", SQL_TEXT(query));
    if (changed)
        Q_EMIT sigAddedAdminsToBranch(bid, aids);
    return changed;
}

bool BranchesRepository::delAdminsFromBranch(ushort bid, const QString &aids)
{
    if (logLevel)
        qInfo("BranchesRepository::delAdminsFromBranch(%u, '%s')", bid, qPrintable(aids));
    if (bid == 0 || aids.isEmpty())
        return false;

    QSqlQuery query(db);
    const QString statement
        = QStringLiteral("DELETE FROM bradm WHERE bid = %1 AND aid IN(%2)").arg(bid).arg(aids);
    const bool changed = execChangesRows(query, statement);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::delAdminsFromBranch - ERROR: %s", SQL_TEXT(query));
    if (changed)
        Q_EMIT sigDeletedAdminsFromBranch(bid, aids);
    return changed;
}

bool BranchesRepository::addSectionsToBranch(ushort bid, const QString &secids)
{
    if (logLevel)
        qInfo("BranchesRepository::addSectionsToBranch(%u, '%s')", bid, qPrintable(secids));
    if (bid == 0 || secids.isEmpty())
        return false;

    QSqlQuery query(db);
    const QString statement = QStringLiteral(
                                  "INSERT INTO sec_branch (secid, bid) "
                                  "SELECT secid, %1 bid FROM sections WHERE secid IN(%2) "
                                  "ON DUPLICATE KEY UPDATE bid=%1")
                                  .arg(bid)
                                  .arg(secids);
    const bool changed = execChangesRows(query, statement);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::addSectionsToBranch - ERROR: %s", SQL_TEXT(query));
    if (changed)
        Q_EMIT sigAddedSectionsToBranch(bid, secids);
    return changed;
}

// Deliberate: the second statement's result counts when it ran, so that triples deleted alone are
// no success, and a failed second statement after a successful first one is. Pinned by
// tst_Branches::delSectionsFromBranch_secondResultCountsUnlessItFails().
bool BranchesRepository::delSectionsFromBranch(ushort bid, const QString &secids)
{
    if (logLevel)
        qInfo("BranchesRepository::delSectionsFromBranch(%u, '%s')", bid, qPrintable(secids));
    if (bid == 0 || secids.isEmpty())
        return false;

    QSqlQuery query(db);
    const QString triples
        = QStringLiteral("DELETE FROM bas WHERE bid = %1 AND secid IN(%2)").arg(bid).arg(secids);
    bool changed = execChangesRows(query, triples);
    if (query.lastError().isValid())
        qCritical("BranchesRepository::delSectionsFromBranch [bas] - ERROR: %s", SQL_TEXT(query));

    const QString sections = QStringLiteral(
                                 "DELETE FROM sec_branch WHERE bid = %1 AND secid IN(%2)")
                                 .arg(bid)
                                 .arg(secids);
    if (query.exec(sections))
        changed = query.numRowsAffected() > 0;
    if (query.lastError().isValid()) {
        qCritical("BranchesRepository::delSectionsFromBranch [sec_branch] - ERROR: %s",
                  SQL_TEXT(query));
    }
    if (changed)
        Q_EMIT sigDeletedSectionsFromBranch(bid, secids);
    return changed;
}
