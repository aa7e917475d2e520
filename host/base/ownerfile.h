// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file about people: for its owner only.
#pragma once

#include "host/base/failure.h"

#include <QString>

#include <functional>

class QIODevice;

/// Writes a file that nobody else may read. It is whole or not there: what stood there before stays
/// until all is written. Fails with the system's words.
Failure writeOwnerFile(const QString &path, const std::function<void(QIODevice *file)> &write);
