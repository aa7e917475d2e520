// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Texts that all pages of a status have: how what is lost comes back.
#include "host/base/oneline.h"
#include "host/base/shellword.h"
#include "host/status/folderstatus.h"
#include "host/status/statustexts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(RecoverySteps)
};

bool needs(const Status &status, Remedy remedy)
{
    return std::any_of(status.lost.cbegin(), status.lost.cend(),
                       [remedy](const LostPerson &lost) { return lost.remedies.contains(remedy); });
}

QString uidsOf(const Status &status, Remedy remedy)
{
    QStringList uids;
    for (const LostPerson &lost : status.lost) {
        if (lost.remedies.contains(remedy) && lost.person.uid != 0)
            uids.append(QString::number(lost.person.uid));
    }
    return uids.join(QStringLiteral(", "));
}

/// The newest export that went through, unpacked; else a new one is waited for.
QString unpacking(const Status &status, const QString &file)
{
    const GateRecord *const passed = lastPassed(status.records);
    if (passed) {
        const QString archived = QDir(status.sources.archive)
                                     .filePath(passed->name + QStringLiteral(".export.gz"));
        if (QFileInfo::exists(archived))
            return QStringLiteral("gzip -dc %1 > %2").arg(shellWord(archived), shellWord(file));
    }
    return Text::tr("# Let the HR system leave a new export, and copy it to %1").arg(file);
}

} // namespace

QStringList recoverySteps(const Status &status)
{
    if (status.lost.isEmpty())
        return {};
    QStringList steps;
    const QString file = QStringLiteral("again.data");
    const QString place = status.sources.place;
    steps.append(unpacking(status, file));
    const bool replans = needs(status, Remedy::Replan);
    const bool rejoins = needs(status, Remedy::Rejoin);
    if (rejoins)
        steps.append(QStringLiteral("DELETE brape FROM brape JOIN people ON people.uid = brape.uid "
                                    "AND people.bid = brape.bid WHERE brape.uid IN (%1);")
                         .arg(uidsOf(status, Remedy::Rejoin)));
    if (replans)
        steps.append(QStringLiteral("DELETE plan FROM groups_plan plan JOIN (SELECT uid, "
                                    "MAX(since) AS since FROM groups_plan GROUP BY uid) newest "
                                    "ON newest.uid = plan.uid AND newest.since = plan.since "
                                    "WHERE plan.uid IN (%1);")
                         .arg(uidsOf(status, Remedy::Replan)));
    if (rejoins || replans || needs(status, Remedy::Force)) {
        steps.append(QStringLiteral("talvenhr rehearse --force --export %1").arg(shellWord(file)));
        const QString beside = place + QStringLiteral(".new");
        steps.append(place.isEmpty()
                         ? Text::tr("# Put %1 where the plugin reads it").arg(file)
                         : QStringLiteral("cp %1 %2 && mv %2 %3")
                               .arg(shellWord(file), shellWord(beside), shellWord(place)));
        steps.append(QStringLiteral("INSERT INTO vars (name, value) VALUES "
                                    "('OQS.THRWorker.forceSync', 1) ON DUPLICATE KEY UPDATE "
                                    "value = 1;"));
    }
    if (needs(status, Remedy::Restart))
        steps.append(Text::tr("# Restart the attendance server, with this export in place"));
    if (needs(status, Remedy::ByHand))
        steps.append(Text::tr("# Enrol in PaM by hand those of whom that is missing"));
    const GateRecord *const passed = lastPassed(status.records);
    if (passed)
        steps.append(Text::tr("# Or, if all is as it should be: touch %1")
                         .arg(shellWord(settledFile(status.sources, *passed))));
    return steps;
}
