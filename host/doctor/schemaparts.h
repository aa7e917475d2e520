// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The parts of a look at the schema, each in a file of its own.
#pragma once

#include "host/catalogue/neededschema.h"
#include "host/doctor/doctor.h"
#include "host/doctor/schemafacts.h"

/// A table that is there: its columns.
Diagnosis columnDiagnosis(const QSqlDatabase &database, const NeededTable &needed,
                          const RealTable &real);
/// Its keys and its engine.
Diagnosis keyDiagnosis(const NeededTable &needed, const RealTable &real);
/// What else the server does when a pass writes: triggers and foreign keys.
Diagnosis bystanderDiagnosis(const QSqlDatabase &database);
/// The four routines.
Diagnosis routineDiagnosis(const QSqlDatabase &database);
/// Statements that have to look at every row of a table to find theirs.
Diagnosis scanDiagnosis(const QSqlDatabase &database);
