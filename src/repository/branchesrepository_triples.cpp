// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Branches: triples of branch, attribute and section, the table `bas`.
#include "repository/branchesrepository.h"

#include "repository/sqlerror.h"

#include <QDebug>
#include <QVariant>

namespace {

QString toKey(const BasRecord &bas)
{
    return QStringLiteral("%1-%2-%3").arg(bas.bid).arg(bas.attrid).arg(bas.secid);
}

/// Deliberate: a malformed key is not dropped but becomes 0-0-0. Pinned by
/// tst_Triples::addBAS_malformedKeyBecomesZeros().
BasRecord fromKey(const QString &key)
{
    BasRecord bas;
    const QStringList parts = key.split(QLatin1Char('-'));
    if (parts.count() == 3) {
        bas.bid = parts.at(0).toUInt();
        bas.attrid = parts.at(1).toUInt();
        bas.secid = parts.at(2).toUInt();
    }
    return bas;
}

void bindTriple(QSqlQuery &query, const BasRecord &bas)
{
    query.addBindValue(QVariant(bas.bid), QSql::In);
    query.addBindValue(QVariant(bas.attrid), QSql::In);
    query.addBindValue(QVariant(bas.secid), QSql::In);
}

void bindTriples(QSqlQuery &query, const QStringList &keys)
{
    QVariantList bids;
    QVariantList attrids;
    QVariantList secids;
    for (const QString &key : keys) {
        const BasRecord bas = fromKey(key);
        bids.append(bas.bid);
        attrids.append(bas.attrid);
        secids.append(bas.secid);
    }
    query.addBindValue(bids);
    query.addBindValue(attrids);
    query.addBindValue(secids);
}

bool prepareAdd(QSqlQuery &query)
{
    const QString statement = QStringLiteral(
        "INSERT INTO `bas` (bid, attrid, secid) VALUES(?, ?, ?) "
        "ON DUPLICATE KEY UPDATE bid=VALUES(bid);");
    if (query.prepare(statement))
        return true;
    qCritical() << "BranchesRepository::addBAS() - prepare failed, SQL ERROR:"
                << query.lastError().text();
    return false;
}

bool prepareDelete(QSqlQuery &query)
{
    const QString statement = QStringLiteral(
        "DELETE FROM `bas` WHERE bid = ? AND attrid = ? AND secid = ?;");
    if (query.prepare(statement))
        return true;
    qCritical() << "BranchesRepository::deleteBAS() - prepare failed, SQL ERROR:"
                << query.lastError().text();
    return false;
}

} // namespace

bool BranchesRepository::addBAS(const BasRecord &bas)
{
    if (logLevel)
        qInfo("BranchesRepository::addBAS(%s)", qPrintable(toKey(bas)));

    QSqlQuery query(db);
    if (!prepareAdd(query))
        return false;
    bindTriple(query, bas);
    const bool added = query.exec();
    if (query.lastError().isValid()) {
        qCritical() << "BranchesRepository::addBAS() - exec failed, SQL ERROR:"
                    << query.lastError().text();
    }
    return added;
}

bool BranchesRepository::addBAS(const QStringList &keys)
{
    if (logLevel)
        qInfo("BranchesRepository::addBAS(%s)", qPrintable(keys.join(QLatin1Char(','))));
    if (keys.isEmpty())
        return false;

    QSqlQuery query(db);
    if (!prepareAdd(query))
        return false;
    bindTriples(query, keys);
    const bool added = query.execBatch(QSqlQuery::ValuesAsRows);
    if (query.lastError().isValid()) {
        qCritical() << "BranchesRepository::addBAS() - execBatch failed, SQL ERROR:"
                    << query.lastError().text();
    }
    return added;
}

bool BranchesRepository::deleteBAS(const BasRecord &bas)
{
    if (logLevel)
        qInfo("BranchesRepository::deleteBAS(%s)", qPrintable(toKey(bas)));

    QSqlQuery query(db);
    if (!prepareDelete(query))
        return false;
    bindTriple(query, bas);
    const bool deleted = query.exec();
    if (query.lastError().isValid()) {
        qCritical() << "BranchesRepository::deleteBAS() - exec failed, SQL ERROR:"
                    << query.lastError().text();
    }
    return deleted;
}

bool BranchesRepository::deleteBAS(const QStringList &keys)
{
    if (logLevel)
        qInfo("BranchesRepository::deleteBAS(%s)", qPrintable(keys.join(QLatin1Char(','))));
    if (keys.isEmpty())
        return false;

    QSqlQuery query(db);
    if (!prepareDelete(query))
        return false;
    bindTriples(query, keys);
    const bool deleted = query.execBatch(QSqlQuery::ValuesAsRows);
    if (query.lastError().isValid()) {
        qCritical() << "BranchesRepository::deleteBAS() - execBatch failed, SQL ERROR:"
                    << query.lastError().text();
    }
    return deleted;
}
