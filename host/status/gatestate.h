// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Whether the gate itself does its work.
#pragma once

#include "host/status/status.h"

/// How the gate's last run ended, and what waits for the next one. Reads only.
GateState readGateState(const StatusSources &sources, const QDateTime &now);
