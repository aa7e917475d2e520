// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who stands in `people`, and the keys by which the plugin knows them.
#pragma once

#include "host/base/failure.h"

#include <QString>
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

/// The key that the plugin makes of a pamId; 0 for one that is none.
uint keyOfPamId(const QString &pamId);

/// The word is the pamId's personal number, what stands before its ordinal.
bool isNumberOf(const QString &word, const QString &pamId);

/// All rows of `people`. Only reads.
Failure readKnownPeople(const QSqlDatabase &database, QVector<KnownPerson> *people);
