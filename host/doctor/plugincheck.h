// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the plugin's file is one that can be loaded, and of this program's version.
#pragma once

#include "host/doctor/doctor.h"

/// Looks at the file and loads the plugin, without starting it. To be called where no other plugin
/// is loaded; afterwards a DataDirectory can be made anew only.
Diagnosis pluginDiagnosis(const QString &file, const QString &programVersion);

/// By the versions of Qt that the plugin was built against and that is to load it, such as 5.15.2.
Diagnosis qtDiagnosis(const QString &built, const QString &loading);
