// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Who a plugin is, by its own report.
#pragma once

#include "host/base/failure.h"

#include <QMap>

class PluginFile;

/// What the plugin reports of itself, such as VER and BUILD.
using PluginFacts = QMap<QString, QString>;

/// Loads the plugin and takes its report. The report does not depend on the settings, so the plugin
/// is sent to look for them in an empty folder, and its complaint is not passed on.
Failure readPluginFacts(PluginFile *plugin, PluginFacts *facts);

/// The Qt that the file was built against, as people write it: 0x050F02 is 5.15.2.
QString qtVersionOf(const PluginFile &plugin);
