// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What is wrong with a line that has too few cells or too many.
#pragma once

#include <QString>

/// Where a '|' most likely is missing or too many, or which other sign separates the cells; empty
/// if that cannot be told. Without a full stop.
QString lineFault(const QString &line);

/// Which other sign than '|' seems to separate the cells; empty if none does.
QString separatorFault(const QString &line);

/// What a file of another kind is, by its first bytes; empty for any that may be an export.
QString foreignKind(const QByteArray &begin);
