// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// From which log level on the plugin prints which message.
#include "host/catalogue/messagegate.h"

#include "host/catalogue/messages.h"

namespace {

int gateOf(QtMsgType type, const PluginMessage *message)
{
    if (message)
        return message->level;
    return type == QtDebugMsg || type == QtInfoMsg ? 1 : 0;
}

} // namespace

int messageGate(QtMsgType type, const QString &text)
{
    return gateOf(type, findMessage(type, text));
}

bool isShown(QtMsgType type, const QString &text, int logLevel)
{
    const PluginMessage *const message = findMessage(type, text);
    if (message && message->event == MessageEvent::SettingsKeyRead)
        return logLevel > 1;
    return gateOf(type, message) <= logLevel;
}
