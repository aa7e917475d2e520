// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run --plan`: a pass only if it does what was rehearsed.
#pragma once

#include "host/base/failure.h"
#include "host/cli/command.h"

class Options;
struct RunOptions;

/// --plan
Option planOption();
/// Fails for options that do not go together; touches nothing.
Failure checkPlanOptions(const Options &options, const RunOptions &run);
/// Rehearses the pass, and refuses it (ExitRefused) if it would do something else than was planned,
/// or go beyond the limits. Says in whom it differs.
Failure checkPlan(const Options &options, const RunOptions &run);
