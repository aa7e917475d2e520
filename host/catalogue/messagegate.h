// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// From which log level on the plugin prints which message.
#pragma once

#include <QString>
#include <QtGlobal>

/// The lowest log level, 0 to 3, at which the plugin prints the message. Messages that it does not
/// know, such as Qt's own, count as ungated when they warn, and else as of level 1.
int messageGate(QtMsgType type, const QString &text);

/// Whether the command line shows the message at the chosen log level. Beyond the gate it hides the
/// line for every settings key, which the plugin prints at every level, below level 2.
bool isShown(QtMsgType type, const QString &text, int logLevel);
