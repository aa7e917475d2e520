// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a gate leaves for those who look from outside: its failure, figures and site.
#pragma once

#include "host/base/failure.h"

#include <QStringList>

class Options;
struct GateOptions;

/// Keeps the failure for a status and tells it by the hook, or forgets the last one. A gate that
/// was refused, or that a person has called for one export, is not the one that the state is about.
/// The result are warnings.
QStringList noteGateEnd(const GateOptions &gate, const Failure &failure);

/// Brings figures and site up to date; what is wrong with them is the result.
QStringList publishGate(const Options &options, const GateOptions &gate);

/// All of it for a gate whose settings let it not begin, as far as they name where. Nothing is left
/// in folders of another user. Warnings go to standard error.
void endBeforeBegin(const Options &options, const GateOptions &gate, const Failure &failure);
