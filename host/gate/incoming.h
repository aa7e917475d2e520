// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Exports that were delivered.
#pragma once

#include "host/base/failure.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QVector>

#include <functional>

/// How the gate knows that a delivered file is whole.
enum class Completeness {
    Rename, ///< whoever delivers writes it under another name, and renames it
    Done, ///< an empty file of the same name with ".done" behind it follows
    Still, ///< nobody has written to it for a while
};

/// "rename", "done", "still". False for a word that is none.
bool completenessOfName(const QString &name, Completeness *complete);

/// Where exports are delivered, and how.
struct IncomingWishes
{
    QString folder;
    QString pattern; ///< of the names, with * and ?
    Completeness complete = Completeness::Still;
    int stillFor = 10; ///< seconds
};

/// A file that was delivered.
struct Delivery
{
    QString path;
    QString name; ///< as it was delivered
    QDateTime time; ///< of its last writing
    QDateTime changed; ///< of its last change, also of name or rights
    qint64 size = 0; ///< bytes
    int rights = 0; ///< as chmod takes them
    bool stays = false; ///< where it lies, when all is done
};

/// Fails where the folder of deliveries is not there, or cannot be read.
Failure checkIncoming(const QString &folder);

/// The deliveries that are whole, newest first, by the date in the name or the time. Those that
/// are not whole yet are named in `waiting`. Hidden files, and the names that programs give to what
/// they are still writing, do not count.
Failure findDeliveries(const IncomingWishes &wishes, const QDateTime &now,
                       QVector<Delivery> *deliveries, QStringList *waiting);

/// The file as a delivery.
Delivery deliveryOf(const QString &path);

/// Nobody has written to it, or put another one there.
bool isUnchanged(const Delivery &delivery);

/// Removes it, with its ".done". Another one that comes under its name at any moment stays: what is
/// removed is renamed first, into the hidden folder ".talvenhr-taken" beside it, and looked at
/// there.
Failure removeDelivery(const Delivery &delivery);

/// Ends what was killed in the midst of that: what was decided on goes, all else comes back.
void returnTaken(const QString &folder,
                 const std::function<bool(const Delivery &delivery)> &isDecided);
