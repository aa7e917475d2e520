// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a look at settings, server, tables and machine comes to.
#pragma once

#include "host/base/finding.h"

#include <QString>
#include <QStringList>
#include <QVector>

/// What could not be seen, and why.
struct Unseen
{
    QString about; ///< the thing: a setting, a table, a right
    QString reason;
};

/// What was found, what could not be seen, and what is well.
struct Diagnosis
{
    QVector<Finding> findings;
    QVector<Unseen> unknown;
    QStringList passed; ///< a few words for each thing that is well

    Diagnosis &operator+=(const Diagnosis &other);
    /// Something keeps a pass from working, or does harm.
    bool hasErrors() const;
};
