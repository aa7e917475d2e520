// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When what ran, how it ended, and what waits.
#include "host/status/status.h"

#include <algorithm>

const GateRecord *lastRecord(const Status &status)
{
    return status.records.isEmpty() ? nullptr : &status.records.constLast();
}

const GateRecord *lastPassed(const QVector<GateRecord> &records)
{
    const auto found = std::find_if(
        records.crbegin(), records.crend(),
        [](const GateRecord &record) { return record.outcome == GateRecord::Passed; });
    return found == records.crend() ? nullptr : &*found;
}

bool waitsForSomebody(const WaitingPerson &waiting)
{
    return waiting.what == NotDone::Branch || waiting.what == NotDone::Group
        || waiting.what == NotDone::Refused;
}

bool isUnread(const Status &status)
{
    return status.place.isThere && !status.sources.staysInPlace;
}

QDateTime nextPassDue(const Status &status)
{
    const StatusSources &sources = status.sources;
    if (status.database && status.database->forced && sources.tickSeconds > 0)
        return status.now.addSecs(sources.tickSeconds);
    if (sources.passSeconds <= 0 || !status.pass.when.isValid())
        return {};
    // Whether the plugin runs at all is not known: one that is long overdue comes to nothing.
    return status.pass.when.addSecs(sources.passSeconds);
}
