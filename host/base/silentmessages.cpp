// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Qt's messages, kept away for a while.
#include "host/base/silentmessages.h"

#include <QString>

namespace {

void dropMessage(QtMsgType, const QMessageLogContext &, const QString &) { }

} // namespace

SilentMessages::SilentMessages() :
    previousHandler(qInstallMessageHandler(dropMessage))
{ }

SilentMessages::~SilentMessages()
{
    qInstallMessageHandler(previousHandler);
}
