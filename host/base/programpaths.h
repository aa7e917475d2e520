// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where the files that belong to this program lie, in the build tree or installed.
#pragma once

#include <QString>

/// The plugin that was built or installed together with this program; the place where it should lie
/// if there is none.
QString defaultPluginFile();

/// The folder with the stand-in for the attendance database.
QString defaultDatabaseFolder();

/// Where a private server keeps its data if no other folder is named: below the user's data.
QString defaultPrivateFolder();
