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

bool isMissed(const GateRecord &record, const QVector<LostPerson> &people)
{
    return std::any_of(people.cbegin(), people.cend(),
                       [&record](const LostPerson &lost) { return lost.record == record.name; });
}

/// Who has let through what is lost, and why; the reason may name people.
QStringList releaseSteps(const Status &status, PersonalTexts texts)
{
    QStringList steps;
    for (const GateRecord &record : status.records) {
        if (!record.release || !isMissed(record, status.lost))
            continue;
        const QString by = oneLine(record.release->by);
        steps.append(texts == PersonalTexts::Hidden
                         ? Text::tr("# Export %1 was let through by %2").arg(record.name, by)
                         : Text::tr("# Export %1 was let through by %2: %3")
                               .arg(record.name, by, oneLine(record.release->reason)));
    }
    return steps;
}

/// One line for each export of which something is lost.
QStringList settlingSteps(const Status &status)
{
    QStringList steps;
    for (const GateRecord &record : status.records) {
        if (isMissed(record, status.lost))
            steps.append(Text::tr("# Was the pass over export %1 taken back, or is all of it as it "
                                  "should be? Then: touch %2")
                             .arg(record.name, shellWord(settledFile(status.sources, record))));
    }
    return steps;
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
    if (passed && !(passed->release && isMissed(*passed, status.lost))) {
        const QString archived = QDir(status.sources.archive)
                                     .filePath(passed->name + QStringLiteral(".export.gz"));
        if (QFileInfo::exists(archived))
            return QStringLiteral("gzip -dc %1 > %2").arg(shellWord(archived), shellWord(file));
    }
    return Text::tr("# Let the HR system leave a new export, and copy it to %1").arg(file);
}

QString placing(const Status &status, const QString &file)
{
    const QString place = status.sources.place;
    const QString beside = place + QStringLiteral(".new");
    return place.isEmpty() ? Text::tr("# Put %1 where the plugin reads it").arg(file)
                           : QStringLiteral("cp %1 %2 && mv %2 %3")
                                 .arg(shellWord(file), shellWord(beside), shellWord(place));
}

/// A line for a shell. Nothing in the statement may mean something between double quotes.
QString statementStep(const Status &status, const QString &statement)
{
    return QStringLiteral("%1 --execute \"%2\"").arg(status.sources.client, statement);
}

/// Nothing is put in place, and no pass forced, where this one fails.
QString andThen(const QString &command)
{
    return command + QStringLiteral(" &&");
}

QStringList forceSteps(const Status &status, const QString &file)
{
    const QString put = placing(status, file);
    return {andThen(QStringLiteral("talvenhr rehearse --force --export %1").arg(shellWord(file))),
            status.sources.place.isEmpty() ? put : andThen(put),
            statementStep(status,
                          QStringLiteral("INSERT INTO vars (name, value) VALUES "
                                         "('OQS.THRWorker.forceSync', 1) ON DUPLICATE KEY UPDATE "
                                         "value = 1"))};
}

/// A server that runs would read the export before its restart.
QStringList restartSteps(const Status &status, const QString &file)
{
    return {andThen(QStringLiteral("talvenhr rehearse --export %1").arg(shellWord(file))),
            Text::tr("# Stop the attendance server"), placing(status, file),
            Text::tr("# Start the attendance server")};
}

/// The pass that brings back what these people lack; none if none does.
QStringList passSteps(const Status &status, const QVector<LostPerson> &people)
{
    const bool restarts = needs(people, Remedy::Restart);
    const bool replans = needs(people, Remedy::Replan);
    const bool rejoins = needs(people, Remedy::Rejoin);
    if (!restarts && !replans && !rejoins && !needs(people, Remedy::Force))
        return {};
    const QString file = QStringLiteral("again.data");
    QStringList steps {unpacking(status, file)};
    if (rejoins)
        steps.append(statementStep(
            status,
            QStringLiteral("DELETE brape FROM brape JOIN people ON people.uid = brape.uid "
                           "AND people.bid = brape.bid WHERE brape.uid IN (%1)")
                .arg(uidsOf(people, Remedy::Rejoin))));
    if (replans)
        steps.append(statementStep(
            status,
            QStringLiteral(
                "DELETE plan FROM groups_plan plan JOIN (SELECT uid, MAX(since) AS since "
                "FROM groups_plan GROUP BY uid) newest ON newest.uid = plan.uid "
                "AND newest.since = plan.since WHERE plan.uid IN (%1)")
                .arg(uidsOf(people, Remedy::Replan))));
    // The first pass after a restart brings all that a forced one does.
    return steps + (restarts ? restartSteps(status, file) : forceSteps(status, file));
}

} // namespace

QStringList recoverySteps(const Status &status, PersonalTexts texts)
{
    const QVector<LostPerson> people = lostUnreleased(status);
    QStringList steps = releaseSteps(status, texts) + settlingSteps(status)
        + passSteps(status, people);
    if (needs(people, Remedy::ByHand))
        steps.append(Text::tr("# Enrol in PaM by hand those of whom that is missing"));
    return steps;
}
