// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr info`: who the plugin is.
#pragma once

#include <QStringList>

/// Takes the arguments after "info"; returns the exit code.
int infoCommand(const QStringList &arguments);
