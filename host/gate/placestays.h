// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When exports lay in their place, and when they were gone.
#pragma once

#include "host/base/failure.h"

#include <QDateTime>
#include <QString>
#include <QVector>

/// What the gates have seen of an export in its place. Between the two moments the plugin has taken
/// it.
struct PlaceStay
{
    QString record; ///< name of the gate's record
    QDateTime seen; ///< when it last lay there; not valid: no gate has seen it
    QDateTime gone; ///< not later than that; not valid: it was not seen gone
};

/// Those of the last exports, oldest first.
QVector<PlaceStay> readPlaceStays(const QString &stateFolder);
/// Null if there is none of this record.
const PlaceStay *stayOf(const QVector<PlaceStay> &stays, const QString &record);

/// What a gate sees before it changes anything. The folder's last change tells when the export
/// went, as long as nobody else writes there; what is noted once no later change of the folder
/// moves.
Failure notePlace(const QString &stateFolder, const QString &record, bool isThere,
                  const QDateTime &folderChanged, const QDateTime &now);
