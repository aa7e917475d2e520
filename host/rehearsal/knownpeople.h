// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The people whom a database has before a pass.
#pragma once

#include "host/base/failure.h"
#include "host/database/connectionparameters.h"
#include "host/exportcheck/exportdigest.h"

#include <QDate>
#include <QString>
#include <QVector>

/// Somebody with a row in `people`.
struct KnownPerson
{
    qlonglong pid = 0; ///< 0: no line of an export can mean this person
    QString pamId;
    QString name; ///< with the surname
    bool isActive = false; ///< and the employment has not ended
};

/// Reads all of them. `today` tells who has ended.
Failure readKnownPeople(const ConnectionParameters &parameters, const QDate &today,
                        QVector<KnownPerson> *people);

/// How many of the active ones stand in no line of the export.
int missingPeople(const QVector<KnownPerson> &people, const ExportDigest &lines);

/// `text` is the person's number ("4711.1"), the number without its ordinal, or the pid.
bool isMeant(const QString &text, const QString &pamId, qlonglong pid);
