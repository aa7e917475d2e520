// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a process of one's own has said.
#pragma once

#include <QByteArray>
#include <QString>

/// The last line that the process has said, without the program's name.
QString lastWords(const QByteArray &standardError);
