// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the settings must come to, worked out without the code that is fuzzed.
#pragma once

#include <QHash>
#include <QSettings>

/// What the worker is to receive from an INI file.
struct SettingsModel
{
    bool enabled;
    uint timerInterval; ///< milliseconds
    uint syncInterval;
    bool testMode;
    QString importFile;
    bool deleteFile;
    QString syncCommand;
    int syncCommandRun;
    uint departmentId;
    QHash<ushort, QString> mes;
};

/// Of what Qt reads from the file; no variable stands in for a missing key. The settings stand in
/// no group, before and after.
SettingsModel modelOfSettings(QSettings &file);
