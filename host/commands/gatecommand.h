// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr gate`: only a sound export goes through.
#pragma once

#include "host/cli/command.h"

Command gateCommand();
