// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Qt's messages, kept away for a while.
#pragma once

#include <QtGlobal>

/// Keeps all messages of the calling thread away for as long as it lives; those of other threads go
/// on to whom they went before. Made and destroyed on one thread; several threads may be silent at
/// a time.
class SilentMessages
{
public:
    SilentMessages();
    ~SilentMessages();
    SilentMessages(const SilentMessages &) = delete;
    SilentMessages &operator=(const SilentMessages &) = delete;
};
