// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a server remembers of the exports that it has taken.
#pragma once

#include "export/employeerecord.h"
#include "host/base/failure.h"
#include "host/changes/changes.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QVector>

/// What an export says of somebody whom one before has named, too.
struct SeenPerson
{
    uint pid = 0;
    QString pamId;
    QDateTime taken; ///< the server has not looked at them since an earlier moment than this
    bool isUnchanged = false; ///< each line is the one that the server remembers
    bool hasSameLeave = false;
    QByteArray lines; ///< of the new export, with line ends
};

/// The last line of each person, taken by the plugin's own reader.
class ExportMemory
{
public:
    /// The export that was taken next. Its file's time counts as the moment from which on the
    /// server took it.
    Failure take(const QString &path);
    /// Whom a new export names and an earlier one has named, in the order of the file.
    Failure compare(const QString &path, QVector<SeenPerson> *seen) const;

private:
    struct Last
    {
        EmployeeRecord record;
        QDateTime taken;
    };

    QHash<uint, Last> people; ///< by pid
};
