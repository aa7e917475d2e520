// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as a plug-in of a monitoring system tells it.
#pragma once

#include "host/status/concerns.h"

/// One line: "TALVENHR OK - text | figure=value ...", in the convention that monitoring systems
/// share. What is not known has no figure. Names nobody.
QString checkLine(const Status &status);
/// The line for a status that could not be read.
QString unknownCheckLine(const QString &reason);
