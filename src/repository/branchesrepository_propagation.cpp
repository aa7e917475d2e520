// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Branches: what a change of membership means for terminals and administrators.
#include "repository/branchesrepository.h"

#include "repository/sqlerror.h"
#include "repository/termsyncrepository.h"

#include <QVariant>

namespace {

QStringList splitIds(const QString &ids)
{
    return ids.split(QLatin1Char(','), QString::SkipEmptyParts);
}

QString joinIds(const QStringList &ids)
{
    return ids.join(QLatin1Char(','));
}

/// "(id, uid)" for each person whose text is a number other than 0. The text stands as it is given.
QStringList valuePairs(uint id, const QStringList &uids)
{
    QStringList pairs;
    for (const QString &uid : uids) {
        if (uid.toUInt() != 0)
            pairs.append(QStringLiteral("(%1, %2)").arg(id).arg(uid));
    }
    return pairs;
}

QStringList toTexts(const QVector<uint> &ids)
{
    QStringList texts;
    texts.reserve(ids.size());
    for (const uint id : ids)
        texts.append(QString::number(id));
    return texts;
}

} // namespace

// The slots take what their signals carry, and programs that use the library know both by it.
// NOLINTBEGIN(performance-unnecessary-value-param)

bool BranchesRepository::slotAddedPeopleToBranch(ushort bid, QString uids)
{
    if (logLevel)
        qInfo("BranchesRepository::slotAddedPeopleToBranch(%u, '%s')", bid, qPrintable(uids));
    const QStringList people = splitIds(uids);
    if (bid == 0 || people.isEmpty())
        return false;

    const bool onTerms = AddPeopleToTerms(bid, people);
    if (!onTerms)
        qWarning("BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToTerms() FAILED!");
    const bool underAdmins = AddPeopleToAdmins(bid, people);
    if (!underAdmins)
        qWarning("BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToAdmins() FAILED!");
    return onTerms && underAdmins;
}

bool BranchesRepository::slotDeletedPeopleFromBranch(ushort bid, QString uids)
{
    if (logLevel)
        qInfo("BranchesRepository::slotDeletedPeopleFromBranch(%u, '%s')", bid, qPrintable(uids));
    const QStringList people = splitIds(uids);
    if (bid == 0 || people.isEmpty())
        return false;

    // Deliberate: both warnings are those of the added path. Pinned by
    // tst_Propagation::slotDeletedPeopleFromBranch_speaksTheWordsOfTheAddedPath().
    const bool offTerms = deletePeopleFromTerms(bid, people);
    if (!offTerms)
        qWarning("BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToTerms() FAILED!");
    const bool offAdmins = deletePeopleFromAdmins(bid, people);
    if (!offAdmins)
        qWarning("BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToAdmins() FAILED!");
    return offTerms && offAdmins;
}

bool BranchesRepository::slotAddedBranchToTerms(ushort bid, QString tids)
{
    if (logLevel)
        qInfo("BranchesRepository::slotAddedBranchToTerms(%u, '%s')", bid, qPrintable(tids));
    const QStringList terms = splitIds(tids);
    const QStringList people = toTexts(getUids4Branch(bid));
    if (people.isEmpty())
        return true;

    bool done = true;
    for (const QString &term : terms) {
        const uint tid = term.toUInt();
        if (tid != 0 && !AddPeopleToTerm(tid, people))
            done = false;
    }
    return done;
}

bool BranchesRepository::slotDeletedBranchFromTerms(ushort bid, QString tids)
{
    if (logLevel)
        qInfo("BranchesRepository::slotDeletedBranchFromTerms(%u, '%s')", bid, qPrintable(tids));
    const QStringList terms = splitIds(tids);
    const QStringList people = toTexts(getUids4Branch(bid));
    if (people.isEmpty())
        return true;

    bool done = true;
    for (const QString &term : terms) {
        const uint tid = term.toUInt();
        if (tid != 0 && !deletePeopleFromTerm(tid, people))
            done = false;
    }
    return done;
}

bool BranchesRepository::slotAddedAdminsToBranch(ushort bid, QString aids)
{
    if (logLevel)
        qInfo("BranchesRepository::slotAddedAdminsToBranch(%u, '%s')", bid, qPrintable(aids));
    const QStringList admins = splitIds(aids);
    const QStringList people = toTexts(getUids4Branch(bid));
    if (people.isEmpty())
        return true;

    bool done = true;
    for (const QString &admin : admins) {
        // Deliberate: 0 is looked for before the cut to 16 bits, here and in the next slot. Pinned
        // by tst_Propagation::slotAddedAdminsToBranch_cutsTheIdAfterTheCheck().
        const uint aid = admin.toUInt();
        if (aid != 0 && !AddPeopleToAdmin(static_cast<ushort>(aid), people))
            done = false;
    }
    return done;
}

// Deliberate: takes all people of the branch from the administrator, also those whom he has through
// another branch. Pinned by tst_BranchTables::delAdminsFromBranch_takesAllPeopleOfTheBranch().
bool BranchesRepository::slotDeletedAdminsFromBranch(ushort bid, QString aids)
{
    if (logLevel)
        qInfo("BranchesRepository::slotDeletedAdminsFromBranch(%u, '%s')", bid, qPrintable(aids));
    const QStringList admins = splitIds(aids);
    const QStringList people = toTexts(getUids4Branch(bid));
    if (people.isEmpty())
        return true;

    bool done = true;
    for (const QString &admin : admins) {
        const uint aid = admin.toUInt();
        if (aid != 0 && !deletePeopleFromAdmin(static_cast<ushort>(aid), people))
            done = false;
    }
    return done;
}

// NOLINTEND(performance-unnecessary-value-param)

QVector<uint> BranchesRepository::getTids4Branch(ushort bid)
{
    if (logLevel)
        qInfo("BranchesRepository::getTids4Branch(%u)", bid);

    QVector<uint> tids;
    QSqlQuery query(db);
    if (!query.exec(
            QStringLiteral("SELECT tid FROM term WHERE status > 0 AND bid = %1").arg(bid))) {
        qCritical("BranchesRepository::getTids4Branch - ERROR: %s", SQL_TEXT(query));
        return tids;
    }
    while (query.next())
        tids.append(query.value(0).toUInt());
    return tids;
}

QVector<uint> BranchesRepository::getAids4Branch(ushort bid)
{
    if (logLevel)
        qInfo("BranchesRepository::getAids4Branch(%u)", bid);

    QVector<uint> aids;
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("SELECT aid FROM bradm WHERE bid = %1").arg(bid))) {
        qCritical("BranchesRepository::getAids4Branch - ERROR: %s", SQL_TEXT(query));
        return aids;
    }
    while (query.next())
        aids.append(query.value(0).toUInt());
    return aids;
}

QVector<uint> BranchesRepository::getUids4Branch(ushort bid)
{
    if (logLevel)
        qInfo("BranchesRepository::getUids4Branch(%u)", bid);

    QVector<uint> uids;
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("SELECT uid FROM brape WHERE bid = %1").arg(bid))) {
        qCritical("BranchesRepository::getUids4Branch - ERROR: %s", SQL_TEXT(query));
        return uids;
    }
    while (query.next())
        uids.append(query.value(0).toUInt());
    return uids;
}

QSet<uint> BranchesRepository::getAids4Uid(uint uid)
{
    if (logLevel)
        qInfo("BranchesRepository::getAids4Uid(%u)", uid);

    QSet<uint> aids;
    QSqlQuery query(db);
    if (!query.exec(
            QStringLiteral("SELECT DISTINCT aid FROM bradm JOIN brape USING(bid) WHERE uid = %1")
                .arg(uid))) {
        // Deliberate: the words of getAids4Branch(). Pinned by
        // tst_Propagation::getAids4Uid_failsUnderAnotherName().
        qCritical("BranchesRepository::getAids4Branch - ERROR: %s", SQL_TEXT(query));
        return aids;
    }
    while (query.next())
        aids.insert(query.value(0).toUInt());
    return aids;
}

bool BranchesRepository::AddPeopleToTerm(uint tid, const QStringList &uids)
{
    QSqlQuery query(db);
    const QStringList pairs = valuePairs(tid, uids);
    if (pairs.isEmpty())
        return true;

    const QString statement = QStringLiteral("INSERT INTO people_term (tid, uid) VALUES %1 "
                                             "ON DUPLICATE KEY UPDATE tid=VALUES(tid);")
                                  .arg(joinIds(pairs));
    if (!query.exec(statement)) {
        qCritical("BranchesRepository::AddPeopleToTerm - ERROR: %s", SQL_TEXT(query));
        return false;
    }
    // Deliberate: the list as it came in, also what is no number. Pinned by
    // tst_Propagation::AddPeopleToTerm_noticeNamesSkippedTextsToo().
    termSyncRepo->addTermSyncPeople(tid, uids, QLatin1Char('I'));
    return true;
}

bool BranchesRepository::AddPeopleToTerms(ushort bid, const QStringList &uids)
{
    bool done = true;
    const QVector<uint> tids = getTids4Branch(bid);
    for (const uint tid : tids) {
        if (!AddPeopleToTerm(tid, uids))
            done = false;
    }
    return done;
}

bool BranchesRepository::deletePeopleFromTerm(uint tid, const QStringList &uids)
{
    if (logLevel)
        qInfo("BranchesRepository::deletePeopleFromTerm(%u, '%s')", tid, qPrintable(joinIds(uids)));

    QSqlQuery query(db);
    // Two blanks before AND.
    const QString statement = QStringLiteral(
                                  "DELETE FROM people_term WHERE tid=%1  AND uid IN(%2);")
                                  .arg(tid)
                                  .arg(joinIds(uids));
    if (!query.exec(statement)) {
        qCritical("BranchesRepository::deletePeopleFromTerm - ERROR: %s", SQL_TEXT(query));
        return false;
    }
    termSyncRepo->addTermSyncPeople(tid, uids, QLatin1Char('D'));
    return true;
}

bool BranchesRepository::deletePeopleFromTerms(ushort bid, const QStringList &uids)
{
    if (logLevel)
        qInfo("BranchesRepository::deletePeopleFromTerms(%u, '%s')", bid,
              qPrintable(joinIds(uids)));

    bool done = true;
    const QVector<uint> tids = getTids4Branch(bid);
    for (const uint tid : tids) {
        if (!deletePeopleFromTerm(tid, uids))
            done = false;
    }
    return done;
}

bool BranchesRepository::AddPeopleToAdmin(ushort aid, const QStringList &uids)
{
    QSqlQuery query(db);
    // Deliberate: runs also without a value, and then fails. Pinned by
    // tst_Propagation::AddPeopleToAdmin_runsWithoutValues().
    const QString statement = QStringLiteral("INSERT INTO admins_people (aid, uid) VALUES %1 "
                                             "ON DUPLICATE KEY UPDATE uid=VALUES(uid);")
                                  .arg(joinIds(valuePairs(aid, uids)));
    if (!query.exec(statement)) {
        // Deliberate: the plural, the words of AddPeopleToAdmins(). Pinned by the same test.
        qCritical("BranchesRepository::AddPeopleToAdmins - ERROR: %s", SQL_TEXT(query));
        return false;
    }
    return true;
}

bool BranchesRepository::AddPeopleToAdmins(ushort bid, const QStringList &uids)
{
    QStringList pairs;
    const QVector<uint> aids = getAids4Branch(bid);
    for (const uint aid : aids)
        pairs += valuePairs(aid, uids);
    if (pairs.isEmpty())
        return true;

    QSqlQuery query(db);
    const QString statement = QStringLiteral("INSERT INTO admins_people (aid, uid) VALUES %1 "
                                             "ON DUPLICATE KEY UPDATE uid=VALUES(uid);")
                                  .arg(joinIds(pairs));
    if (!query.exec(statement)) {
        qCritical("BranchesRepository::AddPeopleToAdmins - ERROR: %s", SQL_TEXT(query));
        return false;
    }
    return true;
}

bool BranchesRepository::deletePeopleFromAdmin(ushort aid, const QStringList &uids)
{
    if (logLevel)
        qInfo("BranchesRepository::deletePeopleFromAdmin(%u, '%s')", aid,
              qPrintable(joinIds(uids)));

    QSqlQuery query(db);
    // Two blanks before AND, here and in the form for one person.
    const QString statement = QStringLiteral(
                                  "DELETE FROM admins_people WHERE aid=%1  AND uid IN(%2);")
                                  .arg(aid)
                                  .arg(joinIds(uids));
    if (!query.exec(statement)) {
        qCritical("BranchesRepository::deletePeopleFromAdmin - ERROR: %s", SQL_TEXT(query));
        return false;
    }
    return true;
}

bool BranchesRepository::deletePeopleFromAdmin(ushort aid, uint uid)
{
    if (logLevel)
        qInfo("BranchesRepository::deletePeopleFromAdmin(aid: %u, uid: %u)", aid, uid);

    QSqlQuery query(db);
    const QString statement
        = QStringLiteral("DELETE FROM admins_people WHERE aid=%1  AND uid=%2;").arg(aid).arg(uid);
    if (!query.exec(statement)) {
        qCritical("BranchesRepository::deletePeopleFromAdmin - ERROR: %s", SQL_TEXT(query));
        return false;
    }
    return true;
}

bool BranchesRepository::deletePeopleFromAdmins(ushort bid, const QStringList &uids)
{
    if (logLevel)
        qInfo("BranchesRepository::deletePeopleFromAdmins(%u, '%s')", bid,
              qPrintable(joinIds(uids)));

    bool done = true;
    const QVector<uint> aids = getAids4Branch(bid);
    for (const QString &text : uids) {
        const uint uid = text.toUInt();
        const QSet<uint> remaining = getAids4Uid(uid);
        for (const uint aid : aids) {
            if (!remaining.contains(aid) && !deletePeopleFromAdmin(static_cast<ushort>(aid), uid))
                done = false;
        }
    }
    return done;
}
