// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The gate: what is decided about a delivery.
#include "host/gate/gate.h"

#include "host/base/ownerfile.h"
#include "host/base/zonedtext.h"
#include "host/changes/passnotes.h"
#include "host/gate/exportdate.h"
#include "host/gate/gzip.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gate)
};

const int digestLetters = 12; // of a record's name

/// Later than all records, also where the clock was set back: their order is that of the exports.
QDateTime nextMoment(const QVector<GateRecord> &records)
{
    const QDateTime now = QDateTime::currentDateTime();
    return records.isEmpty() ? now : qMax(now, records.constLast().when.toLocalTime().addMSecs(1));
}

/// One that no record has yet: the same export may come twice in a second.
QString newRecordName(const GateArchive &archive, QDateTime moment, const QString &digest)
{
    QString name;
    do {
        name = moment.toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z-'"))
            + digest.left(digestLetters);
        moment = moment.addSecs(1);
    } while (archive.find(name));
    return name;
}

/// Expands what stood in place. ExitErrors: it is not what it was.
Failure unpack(const QString &packed, const QString &target, const QString &digest)
{
    if (const Failure failure = readGzip(packed, target))
        return failure;
    if (digest.isEmpty() || digestOfFile(target) == digest)
        return {};
    return {ExitErrors, Text::tr("'%1' is damaged: it is not what was put there").arg(packed)};
}

} // namespace

Failure Gate::decide(const Delivery &delivery, const std::optional<Release> &release,
                     GateResult *result)
{
    QElapsedTimer clock;
    clock.start();
    GateRecord record;
    if (const Failure failure = takeIn(delivery, &record))
        return failure;
    record.release = release;
    if (!release && newestIsKnown) {
        if (const Failure failure = supersede(&record))
            return failure;
        return finish(delivery, record, result);
    }
    step("judge");
    if (const Failure failure = judge(release, &record, result))
        return failure;
    if (const Failure failure = checkReleased(record))
        return failure;
    record.seconds = static_cast<int>(clock.elapsed() / 1000);
    const bool passes = record.reasons.isEmpty() || (release && release->allowed.isEmpty());
    if (const Failure failure = passes ? letThrough(&record) : refuse(&record))
        return failure;
    newestIsKnown = newestIsKnown || passes || record.isNothingNew;
    return finish(delivery, record, result);
}

/// A copy that nobody else writes to, mended where that is wished.
Failure Gate::takeIn(const Delivery &delivery, GateRecord *record)
{
    step("take");
    const QString taken = work.delivered();
    const Delivery before = delivery.stays ? deliveryOf(delivery.path) : delivery;
    if (const Failure failure = work.takeIn(delivery.path))
        return failure;
    if (!isUnchanged(before))
        return {ExitErrors,
                Text::tr("'%1' was written to while it was read; it is looked at the next time")
                    .arg(delivery.path)};
    record->when = nextMoment(archive.records());
    record->fileTime = delivery.time;
    record->rights = delivery.rights;
    record->exported = identityOf(taken);
    record->exported.name = delivery.name;
    if (record->exported.digest.isEmpty())
        return {ExitUsage, Text::tr("cannot read the copy '%1'").arg(taken)};
    record->name = newRecordName(archive, record->when, record->exported.digest);
    step("mend");
    QVector<MendedCell> cells;
    if (const Failure failure = mendExport(taken, work.mended(), settings.mend, &cells))
        return failure;
    record->mendedCells = cells.size();
    record->placedDigest = digestOfFile(work.mended());
    if (cells.isEmpty())
        return {};
    return writeOwnerFile(work.path(QStringLiteral("mended.txt")),
                          [&cells](QIODevice *file) { file->write(mendedText(cells)); });
}

Failure Gate::judge(const std::optional<Release> &release, GateRecord *record, GateResult *result)
{
    const GateRecord *good = archive.lastGood();
    const bool isReleased = release && release->allowed.isEmpty();
    judgeAge(record);
    if (!record->reasons.isEmpty() && !isReleased)
        return {};
    JudgedFiles files {work.mended(), QString(), {}, work.folder()};
    if (good) {
        if (const Failure failure = unpackLastGood(*good, &files, record))
            return failure;
    } else if (settings.holdsFirst) {
        record->reasons.append({QStringLiteral("hold"),
                                Text::tr("no good export went through before, and there is none "
                                         "to compare it with"),
                                Text::tr("look at its report; if all is right, release it")});
    }
    JudgeSettings measures = settings.judge;
    if (release) {
        for (const QString &text : release->allowed) {
            if (isOfComparison(text)) {
                measures.allowed.append(text);
                continue;
            }
            Limit limit;
            if (const Failure failure = readLimit(text, &limit))
                return failure;
            setLimit(limit, &measures.limits);
        }
    }
    if (measures.rehearse) {
        if (const Failure failure = unpackTaken(&files.after, result))
            return failure;
    }
    return judgeExport(measures, files, isReleased, record);
}

/// A newer one came before it, and was refused: what is in place is not what the HR system has.
bool Gate::followsNewer(const GateRecord &record) const
{
    const QVector<GateRecord> &records = archive.records();
    return !records.isEmpty() && records.constLast().outcome == GateRecord::Refused
        && isOlder({record.exported.name, record.fileTime},
                   {records.constLast().exported.name, records.constLast().fileTime});
}

void Gate::judgeAge(GateRecord *record) const
{
    const GateRecord *last = archive.lastPassed();
    const GateRecord *seen = archive.passedWith(record->exported.digest);
    record->isNothingNew = seen && seen == last && !record->release && !followsNewer(*record);
    if (seen)
        record->reasons.append(
            {QStringLiteral("seen"),
             seen == last
                 ? Text::tr("nothing has changed since the last export: the same bytes went "
                            "through on %1")
                       .arg(zonedText(seen->when))
                 : Text::tr("an old export: the same bytes went through on %1, and others since")
                       .arg(zonedText(seen->when)),
             record->isNothingNew
                 ? Text::tr("nothing, if nothing has changed; else look whether the HR system has "
                            "written a new export")
                 : Text::tr("look whether the HR system has written a new export; if somebody has "
                            "taken a change back, and all is as it was then, release it")});
    else if (last
             && isOlder({record->exported.name, record->fileTime},
                        {last->exported.name, last->fileTime}))
        record->reasons.append({QStringLiteral("older"),
                                Text::tr("it is older than the export that went through last, '%1'")
                                    .arg(last->exported.name),
                                Text::tr("deliver the newest export")});
}

/// What went through last, if that is not what the export was compared with: a person had let it
/// through as it was. Else null.
const GateRecord *Gate::releasedSince(const GateRecord &record) const
{
    const GateRecord *last = archive.lastPassed();
    return last && last->release && !record.comparedWith.isEmpty()
            && last->name != record.comparedWith
        ? last
        : nullptr;
}

/// Somebody may have cleared the archive, or a disk has damaged it: what was cut off would then
/// pass unseen, or nothing would pass any more.
Failure Gate::unpackLastGood(const GateRecord &good, JudgedFiles *files, GateRecord *record) const
{
    const QString packed = archive.path(good, QStringLiteral(".export.gz"));
    const QString remedy = Text::tr("look at its report; if all is right, release it");
    if (!QFileInfo::exists(packed)) {
        record->reasons.append(
            {QStringLiteral("uncompared"),
             Text::tr("'%1' is gone, the last good export: there is none to compare it with")
                 .arg(packed),
             remedy});
        return {};
    }
    const Failure failure = unpack(packed, work.lastGood(), good.placedDigest);
    if (failure.exitCode == ExitErrors) {
        record->reasons.append(
            {QStringLiteral("uncompared"),
             Text::tr("%1; it is the last good export, and there is none to compare this one with")
                 .arg(failure.text),
             remedy});
        return {};
    }
    if (failure)
        return failure;
    record->comparedWith = good.name;
    record->comparedWhen = good.when;
    files->lastGood = work.lastGood();
    return {};
}

/// The exports that the running server has read, the oldest first, with the times at which they
/// came in place. Those that are too old to be kept are left out, and so are damaged ones: only
/// people who stand in no later one are concerned.
Failure Gate::unpackTaken(QStringList *files, GateResult *result) const
{
    if (!settings.serverSince)
        return {};
    QStringList unread;
    for (const GateRecord &record : archive.records())
        unread.append(record.replaced);
    if (const GateRecord *inPlace = archive.passedWith(placement.digest());
        inPlace && settings.isRemovedWhenRead)
        unread.append(inPlace->name);
    for (const GateRecord &record : archive.records()) {
        const QString packed = archive.path(record, QStringLiteral(".export.gz"));
        const bool isTaken = record.outcome == GateRecord::Passed
            && record.when >= *settings.serverSince && !unread.contains(record.name);
        if (!isTaken || !QFileInfo::exists(packed))
            continue;
        const QString path = work.path(record.name);
        const Failure failure = unpack(packed, path, record.placedDigest);
        if (failure.exitCode == ExitErrors) {
            result->warnings.append(
                Text::tr("%1; the rehearsal is without this export").arg(failure.text));
            continue;
        }
        if (failure)
            return failure;
        QFile file(path);
        if (file.open(QIODevice::ReadWrite))
            file.setFileTime(record.when, QFileDevice::FileModificationTime);
        files->append(path);
    }
    return {};
}
