// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// `talvenhr run --plan`: a pass only if it does what was rehearsed.
#pragma once

#include "host/base/failure.h"
#include "host/cli/command.h"

class Options;
class RunLock;
struct RunOptions;

/// --plan
Option planOption();
/// Those that go with it: what its copy holds, and its limits.
QVector<Option> planRehearsalOptions();
/// Fails for options that do not go together; touches nothing.
Failure checkPlanOptions(const Options &options, const RunOptions &run);
/// Rehearses the pass, and refuses it (ExitRefused) if it would do something else than was planned,
/// or go beyond the limits. Says in whom it differs. No other run gets at the database meanwhile,
/// and none once this one has the lock from here; on a private database, which is not up between
/// rehearsal and run, one does. `run` then takes no other export than the one rehearsed.
Failure checkPlan(const Options &options, RunLock *lock, RunOptions *run);
