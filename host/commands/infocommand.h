// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr info`: who the plugin is.
#pragma once

#include "host/cli/command.h"

Command infoCommand();
