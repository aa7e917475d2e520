// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the rows of the attendance database are such that a pass does what it should.
#pragma once

#include "host/doctor/doctor.h"

#include <QSqlDatabase>

/// Of the schema of the open handle, on the caller's thread. It only reads. Of each kind it tells
/// the first ones, and how many more there are.
Diagnosis contentDiagnosis(const QSqlDatabase &database);
