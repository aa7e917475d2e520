// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whom PERSON on the command line means.
#pragma once

#include "host/database/knownpeople.h"

#include <QSet>
#include <QString>
#include <QVector>

/// A line of the export, as far as it tells who it is about.
struct LinePerson
{
    uint pid = 0; ///< by which the plugin knows the person
    QString pamId;
};

/// Somebody whom a word may mean.
struct ChosenPerson
{
    enum Key {
        PamId,
        Pid,
        Uid,
        Number, ///< the personal number, without an ordinal
    };

    Key takenAs = PamId;
    uint pid = 0; ///< by which the plugin knows them, and all that concerns them
    QString pamId; ///< that of their row, else of their line, else empty
    QString name; ///< of their row; else empty
    QVector<qlonglong> uids; ///< of all rows that the plugin may take for theirs
};

/// The pids by which the word may mean a line of the export: as a pamId, as a pid, and of the rows
/// that have it as their uid or personal number.
QSet<uint> possiblePids(const QString &word, const QVector<KnownPerson> &people);

/// Everybody whom the word means, each once, by pid: a pamId such as "4711.1", a pid, a uid or a
/// personal number, of somebody with a row or a line.
QVector<ChosenPerson> peopleMeant(const QString &word, const QVector<KnownPerson> &people,
                                  const QVector<LinePerson> &lines);

/// "4711.1, whose pid it is", for whoever has to choose.
QString choiceText(const ChosenPerson &person);
/// For machines: "pamId", "pid", "uid" or "number".
QString keyName(ChosenPerson::Key key);
/// For people: "personal number" for the last of these.
QString keyTitle(ChosenPerson::Key key);
