// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr check`: what the plugin will make of an export.
#pragma once

#include "host/cli/command.h"

Command checkCommand();
