// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run`: the plugin at work, without an attendance server around it.
#pragma once

#include "host/cli/command.h"

Command runCommand();
