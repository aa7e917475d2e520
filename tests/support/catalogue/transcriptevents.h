// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The events of tests/transcript.
#pragma once

#include <QStringList>

/// All that happens to the company over its four passes, in the form of EventLog.
QStringList transcriptEvents();
