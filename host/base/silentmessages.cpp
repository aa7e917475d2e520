// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Qt's messages, kept away for a while.
#include "host/base/silentmessages.h"

#include <QString>

#include <atomic>
#include <mutex>
#include <thread>

namespace {

thread_local int silenced = 0; // how many objects of this thread live
std::mutex guard; // of the next one, and of Qt's handler
int silentThreads = 0;
// Whom the messages of other threads go to. It stays: one of them may be on its way.
std::atomic<QtMessageHandler> others {nullptr};

void dropOwnMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (silenced > 0)
        return;
    // In the moment of the swap another thread may come before the constructor has it.
    QtMessageHandler handler = others;
    while (!handler) {
        std::this_thread::yield();
        handler = others;
    }
    handler(type, context, text);
}

} // namespace

SilentMessages::SilentMessages()
{
    if (silenced++ > 0)
        return;
    const std::lock_guard<std::mutex> lock(guard);
    if (silentThreads++ == 0)
        others = qInstallMessageHandler(dropOwnMessage);
}

SilentMessages::~SilentMessages()
{
    if (--silenced > 0)
        return;
    const std::lock_guard<std::mutex> lock(guard);
    if (--silentThreads == 0)
        qInstallMessageHandler(others);
}
