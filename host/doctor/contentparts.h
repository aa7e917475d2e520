// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The parts of a look at the rows, each in a file of its own.
#pragma once

#include "host/doctor/doctor.h"

#include <QSqlDatabase>
#include <QVariant>
#include <QVector>

#include <functional>

using ContentRow = QVector<QVariant>;

/// Calls `found` with each row of a statement. False if the statement fails: `about` is unknown.
bool forEachRow(const QSqlDatabase &database, const QString &about, const QString &statement,
                Diagnosis *diagnosis, const std::function<void(const ContentRow &)> &found);

/// Takes in findings of one kind: the first ones, and a note of how many more there are.
void addSome(const QVector<Finding> &findings, Diagnosis *diagnosis);

/// The keys by which the plugin knows people.
Diagnosis peopleDiagnosis(const QSqlDatabase &database);
/// The blocks of PaM, the leave fund, ids that are cut, the force variable.
Diagnosis variablesDiagnosis(const QSqlDatabase &database);
