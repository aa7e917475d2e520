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

/// What somebody has let through, and what is not in the database: it may have been wrong, and
/// taken back. No command brings it in again.
bool isReleased(const QString &name, const QVector<GateRecord> &records)
{
    return std::any_of(records.cbegin(), records.cend(), [&name](const GateRecord &record) {
        return record.name == name && record.release;
    });
}

QVector<LostPerson> lostUnreleased(const Status &status)
{
    QVector<LostPerson> people;
    for (const LostPerson &lost : status.lost) {
        if (!isReleased(lost.record, status.records))
            people.append(lost);
    }
    return people;
}

/// Who has let through what is lost, and why.
QStringList releaseSteps(const Status &status)
{
    QStringList steps;
    for (const GateRecord &record : status.records) {
        const auto isOfRecord = [&record](const LostPerson &lost) {
            return lost.record == record.name;
        };
        if (record.release && std::any_of(status.lost.cbegin(), status.lost.cend(), isOfRecord))
            steps.append(Text::tr("# Export %1 was let through by %2: %3")
                             .arg(record.name, oneLine(record.release->by),
                                  oneLine(record.release->reason)));
    }
    return steps;
}

QStringList settlingSteps(const Status &status)
{
    const GateRecord *const passed = lastPassed(status.records);
    if (!passed)
        return {};
    return {Text::tr("# Was this pass taken back, or is all as it should be? Then: touch %1")
                .arg(shellWord(settledFile(status.sources, *passed)))};
}

bool needs(const QVector<LostPerson> &people, Remedy remedy)
{
    return std::any_of(people.cbegin(), people.cend(),
                       [remedy](const LostPerson &lost) { return lost.remedies.contains(remedy); });
}

QString uidsOf(const QVector<LostPerson> &people, Remedy remedy)
{
    QStringList uids;
    for (const LostPerson &lost : people) {
        if (lost.remedies.contains(remedy) && lost.person.uid != 0)
            uids.append(QString::number(lost.person.uid));
    }
    return uids.join(QStringLiteral(", "));
}

/// The newest export that went through, unpacked, unless it is one that may have been taken back;
/// else a new one is waited for.
QString unpacking(const Status &status, const QString &file)
{
    const GateRecord *const passed = lastPassed(status.records);
    const bool isLost = passed
        && std::any_of(status.lost.cbegin(), status.lost.cend(),
                       [passed](const LostPerson &lost) { return lost.record == passed->name; });
    if (passed && !(passed->release && isLost)) {
        const QString archived = QDir(status.sources.archive)
                                     .filePath(passed->name + QStringLiteral(".export.gz"));
        if (QFileInfo::exists(archived))
            return QStringLiteral("gzip -dc %1 > %2").arg(shellWord(archived), shellWord(file));
    }
    return Text::tr("# Let the HR system leave a new export, and copy it to %1").arg(file);
}

/// What brings back what these people lack.
QStringList importSteps(const Status &status, const QVector<LostPerson> &people)
{
    QStringList steps;
    const QString file = QStringLiteral("again.data");
    const QString place = status.sources.place;
    steps.append(unpacking(status, file));
    const bool replans = needs(people, Remedy::Replan);
    const bool rejoins = needs(people, Remedy::Rejoin);
    if (rejoins)
        steps.append(QStringLiteral("DELETE brape FROM brape JOIN people ON people.uid = brape.uid "
                                    "AND people.bid = brape.bid WHERE brape.uid IN (%1);")
                         .arg(uidsOf(people, Remedy::Rejoin)));
    if (replans)
        steps.append(QStringLiteral("DELETE plan FROM groups_plan plan JOIN (SELECT uid, "
                                    "MAX(since) AS since FROM groups_plan GROUP BY uid) newest "
                                    "ON newest.uid = plan.uid AND newest.since = plan.since "
                                    "WHERE plan.uid IN (%1);")
                         .arg(uidsOf(people, Remedy::Replan)));
    if (rejoins || replans || needs(people, Remedy::Force)) {
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
    if (needs(people, Remedy::Restart))
        steps.append(Text::tr("# Restart the attendance server, with this export in place"));
    if (needs(people, Remedy::ByHand))
        steps.append(Text::tr("# Enrol in PaM by hand those of whom that is missing"));
    return steps;
}

} // namespace

QStringList recoverySteps(const Status &status)
{
    if (status.lost.isEmpty())
        return {};
    QStringList steps = releaseSteps(status) + settlingSteps(status);
    const QVector<LostPerson> people = lostUnreleased(status);
    return people.isEmpty() ? steps : steps + importSteps(status, people);
}
