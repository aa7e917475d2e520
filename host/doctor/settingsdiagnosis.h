// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin's settings: what is wrong with them, and where each value comes from.
#pragma once

#include "host/doctor/doctor.h"

class SettingsFile;

/// Looks at the file, its keys and values, the export command, and the place of the export.
Diagnosis settingsDiagnosis(const SettingsFile &settings);

/// A value that the plugin gets, and the layer that it comes from.
struct SettingLayer
{
    enum Layer {
        File,
        Environment,
        Default,
    };

    QString key; ///< of [MES] with the group in front
    QString value; ///< as text; empty for none
    Layer layer = Default;
};

/// All keys that the plugin asks for, in its order, and the texts of states behind them.
QVector<SettingLayer> settingLayers(const SettingsFile &settings);

/// Why the plugin looks for its settings in the folder where it does when nobody names one.
QString dataDirectoryReason();
