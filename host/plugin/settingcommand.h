// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the export command can run as it was meant.
#pragma once

#include "host/base/finding.h"

#include <QVector>

class SettingsFile;

/// What is wrong with syncCommand, if passes are to run it. `written` is its value as it stands in
/// the file; empty where it comes from the environment.
QVector<Finding> commandFindings(const SettingsFile &settings, const QString &written);
