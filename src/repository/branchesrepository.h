// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Branches and what hangs on them: people, terminals, administrators, sections.
#pragma once

#include "repository/branchrecord.h"

#include <QObject>
#include <QSet>
#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

class TermSyncRepository;

/// Changes branches and their memberships, and carries each change on to those whom it concerns.
///
/// A person who joins a branch is put on its active terminals and under its administrators; a
/// terminal or an administrator who joins receives all its people. The operations that change a
/// membership announce their success by a signal, and the slots of this class do the rest, if the
/// constructor was told to connect them.
///
/// The worker owns the one of the plugin, with the added-signals connected and the deleted-signals
/// not. The object belongs to the thread of the connection that setDb() gives it. When it lives on
/// another thread than the one that sends, Qt queues the slot, and the signal yields false.
///
/// Failures go to the log (critical), whatever the log level. No transaction: what follows a
/// membership does not undo it. Lists of ids are texts, decimal and comma-separated, and go into
/// the statements as they are; so do names, where an apostrophe breaks the statement.
class BranchesRepository : public QObject
{
    Q_OBJECT

public:
    BranchesRepository(QObject *parent, bool connectAdded, bool connectDeleted);
    ~BranchesRepository() override;

    /// Passes the handle on to the terminal queue as well. The previous connection is not closed.
    void setDb(const QSqlDatabase &database);

    // Branches (branchesrepository.cpp)
    /// The new bid, 0 on failure or without a name.
    ushort addBranch(const BranchRecord &branch);
    /// Rows changed, 0 for none, -1 on failure.
    int updateBranch(const BranchRecord &branch);
    /// Adds a branch whose bid is 0, updates any other. True also when an update failed.
    bool saveBranch(const BranchRecord &branch);
    /// Reserved; always false.
    bool reservedBranchOperation(int reserved);

    // Memberships (branchesrepository.cpp)
    // True when a row has changed, which the signal announces. False for a bid of 0 and for an
    // empty list, without a statement.
    bool addPeopleToBranch(ushort bid, const QString &uids);
    bool delPeopleFromBranch(ushort bid, const QString &uids);
    bool addBranchToTerms(ushort bid, const QString &tids);
    bool delBranchFromTerms(ushort bid, const QString &tids);
    bool addAdminsToBranch(ushort bid, const QString &aids);
    bool delAdminsFromBranch(ushort bid, const QString &aids);
    bool addSectionsToBranch(ushort bid, const QString &secids);
    /// Clears the sections' triples as well.
    bool delSectionsFromBranch(ushort bid, const QString &secids);

    // Readers (branchesrepository_propagation.cpp); empty on failure
    /// Terminals of the branch that are not off (status above 0).
    QVector<uint> getTids4Branch(ushort bid);
    QVector<uint> getAids4Branch(ushort bid);
    QVector<uint> getUids4Branch(ushort bid);
    /// Administrators of any branch where the person is.
    QSet<uint> getAids4Uid(uint uid);

    // People on terminals, with a notice to the terminal (branchesrepository_propagation.cpp)
    // False when a statement failed. What goes for many goes on after a failure.
    bool AddPeopleToTerm(uint tid, const QStringList &uids);
    bool AddPeopleToTerms(ushort bid, const QStringList &uids);
    bool deletePeopleFromTerm(uint tid, const QStringList &uids);
    bool deletePeopleFromTerms(ushort bid, const QStringList &uids);

    // People under administrators (branchesrepository_propagation.cpp)
    bool AddPeopleToAdmin(ushort aid, const QStringList &uids);
    bool AddPeopleToAdmins(ushort bid, const QStringList &uids);
    bool deletePeopleFromAdmin(ushort aid, const QStringList &uids);
    bool deletePeopleFromAdmin(ushort aid, uint uid);
    /// Leaves an administrator the people whom he has through another branch.
    bool deletePeopleFromAdmins(ushort bid, const QStringList &uids);

    // Triples of branch, attribute and section (branchesrepository_triples.cpp)
    // As a record, or as texts "bid-attrid-secid", of which a malformed one becomes 0-0-0. The
    // values are bound. No signal.
    bool addBAS(const BasRecord &bas);
    bool addBAS(const QStringList &keys);
    bool deleteBAS(const BasRecord &bas);
    bool deleteBAS(const QStringList &keys);

    /// Not 0: operations are written to the log on entry, all but the saving of a branch and
    /// AddPeopleTo...(). For the owner to set.
    quint8 logLevel = 0;

Q_SIGNALS:
    // The result is that of the slot, false when none is connected. The last two have no slot here.
    bool sigAddedPeopleToBranch(ushort bid, QString uids);
    bool sigDeletedPeopleFromBranch(ushort bid, QString uids);
    bool sigAddedBranchToTerms(ushort bid, QString tids);
    bool sigDeletedBranchFromTerms(ushort bid, QString tids);
    bool sigAddedAdminsToBranch(ushort bid, QString aids);
    bool sigDeletedAdminsFromBranch(ushort bid, QString aids);
    void sigAddedSectionsToBranch(ushort bid, QString secids);
    void sigDeletedSectionsFromBranch(ushort bid, QString secids);

public Q_SLOTS:
    bool slotAddedPeopleToBranch(ushort bid, QString uids);
    bool slotDeletedPeopleFromBranch(ushort bid, QString uids);
    bool slotAddedBranchToTerms(ushort bid, QString tids);
    bool slotDeletedBranchFromTerms(ushort bid, QString tids);
    bool slotAddedAdminsToBranch(ushort bid, QString aids);
    bool slotDeletedAdminsFromBranch(ushort bid, QString aids);

private:
    TermSyncRepository *termSyncRepo; ///< child
    QSqlDatabase db;
};
