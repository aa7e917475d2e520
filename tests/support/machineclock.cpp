// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The machine's clock, standing still where a test has set it.
#include "support/machineclock.h"

MachineClock::MachineClock(const QDateTime &moment)
{
    // The servers that a test starts live on real time.
    qunsetenv("LD_PRELOAD");
    set(moment);
}

MachineClock::~MachineClock()
{
    qputenv("FAKETIME", "+0");
}

void MachineClock::set(const QDateTime &moment)
{
    qputenv("FAKETIME", moment.toString(QStringLiteral("yyyy-MM-dd hh:mm:ss")).toLatin1());
    if (QDateTime::currentSecsSinceEpoch() != moment.toSecsSinceEpoch())
        qFatal("the clock cannot be set: start this test with ctest -R");
}
