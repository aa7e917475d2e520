// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whose gate it is.
#pragma once

#include "host/base/failure.h"

struct GateSettings;

/// Fails, before anything is written, where the gate's own folders belong to another user: what
/// this one left there, for its owner only, the gate of the other could not read. Where a folder is
/// still to be made, the administrator makes none in the folder of another user.
Failure checkGateOwner(const GateSettings &settings);
