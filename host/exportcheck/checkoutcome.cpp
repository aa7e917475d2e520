// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// All that `talvenhr check` has to tell.
#include "host/exportcheck/checkoutcome.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(CheckOutcome)
};

} // namespace

QString verdict(const CheckOutcome &outcome)
{
    if (outcome.fates.taken == 0)
        return Text::tr("The plugin would take nobody from this export.");
    if (outcome.count(Finding::Error) > 0)
        return Text::tr("Do not let the plugin read this export as it is.");
    if (outcome.count(Finding::Warning) > 0)
        return Text::tr("The plugin loses nobody, but some of this is surely not what was meant.");
    return Text::tr("The plugin takes this export as it stands there.");
}

QVector<FindingGroup> groupsOf(const ExportFindings &findings)
{
    QHash<const FindingKind *, QVector<int>> places;
    for (int i = 0; i < findings.size(); ++i)
        places[findings.at(i).kind].append(i);
    QVector<FindingGroup> groups;
    for (const FindingTopic &topic : findingTopics()) {
        for (const FindingKind &kind : topic.kinds) {
            if (places.contains(&kind))
                groups.append({&kind, places.value(&kind)});
        }
    }
    std::stable_sort(groups.begin(), groups.end(),
                     [](const FindingGroup &left, const FindingGroup &right) {
                         return left.kind->severity() > right.kind->severity();
                     });
    return groups;
}
