// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Processes that a host which was killed has left behind.
#pragma once

#include <QString>
#include <QVector>

/// The processes that work in a folder, as a server does in its data, told by the folder itself and
/// not by its name. Only those that the user may look at; none where there is no /proc.
QVector<qint64> processesIn(const QString &folder);

/// The process is a server that makes its data, and serves nobody.
bool isMakingData(qint64 process);
