// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether tables, keys and routines are as a pass needs them.
#pragma once

#include "host/doctor/doctor.h"

#include <QSqlDatabase>

/// Of the schema of the open handle, on the caller's thread. It only reads; it calls those of the
/// four routines that are functions. What the login may not see is unknown.
Diagnosis schemaDiagnosis(const QSqlDatabase &database);
