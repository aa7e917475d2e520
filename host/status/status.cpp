// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// When what ran, how it ended, and what waits.
#include "host/status/status.h"

#include "host/gate/exportdate.h"

#include <algorithm>

namespace {

/// Refused by what it is, and newer than the other one.
bool isNewerRefused(const GateRecord &one, const GateRecord &other)
{
    const bool isForeign = !one.reasons.isEmpty()
        && one.reasons.constFirst().code == QLatin1String("foreign");
    return one.outcome == GateRecord::Refused && other.outcome != GateRecord::Refused && !isForeign
        && isOlder({other.exported.name, other.fileTime}, {one.exported.name, one.fileTime});
}

} // namespace

const GateRecord *lastRecord(const Status &status)
{
    const GateRecord *last = nullptr;
    for (auto record = status.records.crbegin(); record != status.records.crend(); ++record) {
        // The gate decides on the newest of several first, and takes an older one where it refuses.
        if (last && record->outcome != GateRecord::Refused)
            break;
        if (record->outcome == GateRecord::Superseded)
            continue;
        if (!last || isNewerRefused(*record, *last))
            last = &*record;
    }
    return last;
}

bool isRefused(const GateRecord &record)
{
    return record.outcome == GateRecord::Refused && !record.isNothingNew;
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

QDateTime goneBy(const Status &status, const QString &record)
{
    const PlaceStay *stay = stayOf(status.place.stays, record);
    return stay && stay->gone.isValid() ? stay->gone : status.place.folderChanged;
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
