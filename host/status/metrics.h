// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A status as figures in the text format of Prometheus.
#pragma once

#include "host/base/failure.h"
#include "host/status/status.h"

#include <QByteArray>

/// Each figure with its help and type. What is not known is left out. Holds no names.
QByteArray metricsText(const Status &status);

/// Writes the file, whole or not at all, for everybody to read.
Failure writeMetrics(const Status &status, const QString &path);
