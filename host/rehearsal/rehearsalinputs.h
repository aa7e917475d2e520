// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a rehearsal reads besides the database.
#pragma once

#include "host/base/failure.h"
#include "host/exportcheck/exportglance.h"
#include "host/rehearsal/rehearsal.h"

/// Looks at plugin and settings as `run` does before it touches anything, and names the export that
/// the settings name where the wishes name none. Fails with what the plugin could not work with, by
/// the names of the real files; `otherExport` is the command that names another export, empty where
/// there is none.
Failure checkInputs(const QString &otherExport, RehearsalWishes *wishes);

/// What is wrong with an export, and who stands in it.
struct ExportLook
{
    QVector<Finding> findings; ///< one of each kind, errors and warnings
    ExportDigest lines; ///< those that the plugin takes
};

/// Reads the export with the plugin's own reader. Fails where there is no file that can be read.
Failure lookAtExport(const RehearsalWishes &wishes, ExportLook *look);
