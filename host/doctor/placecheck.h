// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the export can be found, read and removed where the settings say that it is.
#pragma once

#include "host/doctor/doctor.h"

class SettingsFile;

/// Looks at the folder and the file of importFile, as the user of this process. The settings have
/// been checked.
Diagnosis placeDiagnosis(const SettingsFile &settings);
