// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The queue that carries changes to the attendance terminals: the table `term_sync`.
#pragma once

#include <QObject>
#include <QSqlDatabase>
#include <QStringList>

/// Queues changes for the terminals and marks the terminals as having something to fetch.
///
/// A row of `term_sync` tells one terminal of one thing: a person, an interval, a time zone or the
/// colour groups. What happened to it is one letter: I added, D deleted, U updated. The kind of
/// thing is one bit, the same in `term_sync.flags`, in `term.flags` (what a terminal takes) and in
/// `term.syn` (what waits for it): 1 intervals, 2 persons, 64 time zones, 256 colour groups.
///
/// BranchesRepository owns the one of the plugin; it belongs to the thread of the connection that
/// setDb() gives it and keeps nothing but that handle. Failures go to the log (critical) and to
/// nobody else, whatever the log level. No transaction: a row stays queued when the marking fails.
/// Texts go into the statements as they are.
class TermSyncRepository : public QObject
{
    Q_OBJECT

public:
    explicit TermSyncRepository(QObject *parent = nullptr);

    void setDb(const QSqlDatabase &database);

    /// Marks a terminal in service. False for a failure, a terminal not in service, or one that has
    /// the bits already.
    bool setTermSyn(uint tid, ushort bits);

    // Persons
    /// Tells one terminal of those of the persons that are active.
    void addTermSyncPeople(uint tid, const QStringList &uids, QChar type);
    /// Tells every terminal in service that holds the person and takes persons.
    void addTermSyncPerson(uint uid, QChar type, const QString &ref);
    /// Tells one terminal.
    void addTermSyncPerson(uint tid, uint uid, QChar type, const QString &ref);

    // Intervals
    /// Tells every terminal in service that holds the interval and takes intervals; marks them also
    /// when the queueing failed.
    void addTermSyncInter(uint iid, QChar type, const QString &ref);
    /// Tells one terminal.
    void addTermSyncInter(uint tid, uint iid, QChar type, const QString &ref);
    void addTermSyncInterList(uint tid, const QStringList &iids, QChar type);

    // Time zones
    /// Tells every terminal in service that holds the zone and takes time zones; marks those of any
    /// status above 0.
    void addTermSyncTimezone(uint zid, QChar type, const QString &ref);
    /// Tells one terminal, of any status, of a person in a zone; an added zone goes to all its
    /// terminals as well.
    void addTermSyncPZT(uint uid, uint zid, uint tid, QChar type, const QString &ref);

    // Colour groups
    /// Tells every terminal in service that takes colour groups of the whole set.
    void addColorGroupsToTermSync();
    void addColorGroup(uint tid, uint uid);
    /// Tells one terminal of those of the persons that are active.
    void addColorGroup(uint tid, const QStringList &uids);

private:
    QSqlDatabase db;
};
