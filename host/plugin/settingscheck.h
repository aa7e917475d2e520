// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Settings that mean something else than what stands there.
#pragma once

#include "host/base/finding.h"

#include <QVector>

class SettingsFile;

/// What is wrong with the settings: the file, its keys, their values, and last what is fatal. An
/// error is what keeps the plugin from working, or takes the process down. The file has been
/// checked.
QVector<Finding> settingsFindings(const SettingsFile &settings);
