// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The values of the gate that stand for themselves.
#pragma once

#include "host/base/failure.h"

#include <QVector>

class Options;
struct GateOptions;

/// Takes those of [gate], [limits] and [mend]. The result is a failure for each value that cannot
/// hold, among others that are none: one does not hide the next.
QVector<Failure> readGateValues(const Options &options, GateOptions *gate);
