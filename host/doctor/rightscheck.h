// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether a login may do what a pass does, and no more.
#pragma once

#include "host/doctor/doctor.h"

#include <QSqlDatabase>

/// Of the login of the open handle, on the caller's thread. It only reads. A login that can write
/// nothing is taken for one that only looks: then the rights of the plugin's own are unknown.
Diagnosis rightsDiagnosis(const QSqlDatabase &database);
