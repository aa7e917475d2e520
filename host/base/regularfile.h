// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A file as the plugin takes one: regular, and readable.
#pragma once

#include "host/base/failure.h"

class QFile;

/// Opens the file for reading. Fails with its name and what it is, if it is no regular file that
/// can be read: a pipe would wait for its other end, for good.
Failure openRegularFile(QFile *file);
