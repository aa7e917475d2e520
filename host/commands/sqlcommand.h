// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr sql`: a client on the private database.
#pragma once

#include <QStringList>

/// Takes the arguments after "sql"; returns the exit code.
int sqlCommand(const QStringList &arguments);
