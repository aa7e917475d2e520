// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The messages by topic, and how they are written down.
#pragma once

#include "host/catalogue/messages.h"

/// A message in the making: each operation sets one thing.
class MessageRow
{
public:
    MessageRow(QtMsgType type, int level, const char *text);

    MessageRow by(const char *operation) const;
    MessageRow names(Naming naming, int place) const;
    MessageRow tells(MessageEvent event) const;
    MessageRow means(const char *meaning) const;
    MessageRow leadsTo(const char *effect) const;
    MessageRow todo(const char *remedy) const;

    operator PluginMessage() const { return message; }

private:
    PluginMessage message;
};

inline MessageRow debug(int level, const char *text)
{
    return {QtDebugMsg, level, text};
}

inline MessageRow info(int level, const char *text)
{
    return {QtInfoMsg, level, text};
}

/// At any level, or from one on.
inline MessageRow warning(const char *text, int level = 0)
{
    return {QtWarningMsg, level, text};
}

inline MessageRow error(const char *text)
{
    return {QtCriticalMsg, 0, text};
}

MessageTopic startMessages();
MessageTopic passMessages();
MessageTopic exportMessages();
MessageTopic peopleMessages();
MessageTopic pamMessages();
MessageTopic recalculationMessages();
MessageTopic fundMessages();
MessageTopic supervisorMessages();
MessageTopic branchMessages();
MessageTopic memberMessages();
MessageTopic terminalMessages();
MessageTopic variableMessages();
MessageTopic libraryMessages();
