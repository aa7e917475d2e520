// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whom PERSON on the command line means.
#pragma once

#include "host/base/failure.h"

#include <QSet>
#include <QStringList>
#include <QVector>

class QSqlDatabase;

/// A row of `people`, as far as it tells who it is.
struct KnownPerson
{
    qlonglong uid = 0;
    uint pid = 0; ///< the column; 0 for NULL
    uint key = 0; ///< by which the plugin files the row: what its pamId gives
    QString pamId;
    QString name; ///< first name and surname
    bool isActive = false;
    qlonglong end = 0; ///< of the employment, in seconds since the epoch; 0: it has none
};

/// A line of the export, as far as it tells who it is about.
struct LinePerson
{
    uint pid = 0; ///< by which the plugin knows the person
    QString pamId;
};

/// Somebody whom a word may mean.
struct ChosenPerson
{
    enum Key { PamId, Pid, Uid };

    Key takenAs = PamId;
    uint pid = 0; ///< by which the plugin knows them, and all that concerns them
    QString pamId; ///< that of their row, else of their line, else empty
    QString name; ///< of their row; else empty
    QVector<qlonglong> uids; ///< of all rows that the plugin may take for theirs
};

/// The key that the plugin makes of a pamId; 0 for one that is none.
uint keyOfPamId(const QString &pamId);

/// All rows of `people`. Only reads.
Failure readKnownPeople(const QSqlDatabase &database, QVector<KnownPerson> *people);

/// The pids by which the word may mean a line of the export: as a pamId, as a pid, and of the rows
/// that have it as their uid.
QSet<uint> possiblePids(const QString &word, const QVector<KnownPerson> &people);

/// Everybody whom the word means, each once, by pid: a pamId such as "4711.1", a pid or a uid, of
/// somebody with a row or a line.
QVector<ChosenPerson> peopleMeant(const QString &word, const QVector<KnownPerson> &people,
                                  const QVector<LinePerson> &lines);

/// "4711.1 (pid 47111), which is their pamId", for whoever has to choose.
QString choiceText(const ChosenPerson &person);
/// "pamId", "pid" or "uid".
QString keyName(ChosenPerson::Key key);
