// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Qt's messages, kept away for a while.
#pragma once

#include <QtGlobal>

/// Keeps all messages away for as long as it lives. Not to be used while a plugin runs.
class SilentMessages
{
public:
    SilentMessages();
    ~SilentMessages();
    SilentMessages(const SilentMessages &) = delete;
    SilentMessages &operator=(const SilentMessages &) = delete;

private:
    QtMessageHandler previousHandler = nullptr;
};
