// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The options that name the plugin and its settings.
#pragma once

#include "host/cli/command.h"

class Options;

/// --plugin
Option pluginOption();
/// --data-dir
Option dataDirectoryOption();
/// --plugin and --data-dir
OptionGroup pluginOptions();

/// The plugin's file: the one that was built or installed with this program if none is named.
QString pluginFile(const Options &options);
/// The folder that holds TalvenHR.ini; empty leaves the search to the plugin.
Failure readDataDirectory(const Options &options, QString *directory);
