// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The road of an export from its delivery to the place where the plugin finds it.
#include "host/gate/gate.h"

#include "host/base/ownerfile.h"
#include "host/changes/passnotes.h"
#include "host/gate/exportdate.h"
#include "host/gate/gatetexts.h"
#include "host/gate/gzip.h"
#include "host/gate/hook.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gate)
};

const int hookSeconds = 30;
const int digestLetters = 12; // of a record's name

// Files of the folder "work". What is written there is moved to its folder when all is decided.
const QString deliveredName = QStringLiteral("export"); // as it came
const QString mendedName = QStringLiteral("mended"); // what is judged, and put in place
const QString lastGoodName = QStringLiteral("last-good");

/// What is kept of a judged export, by its name in "work" and by its ending behind the record's
/// name.
struct KeptFile
{
    QString name;
    QString ending;
};

QVector<KeptFile> keptReports()
{
    return {{QStringLiteral("check.json"), QStringLiteral(".check.json")},
            {QStringLiteral("check.html"), QStringLiteral(".check.html")},
            {QStringLiteral("rejects.txt"), QStringLiteral(".rejects.txt")},
            {QStringLiteral("mended.txt"), QStringLiteral(".mended.txt")},
            {QStringLiteral("changes.json"), QStringLiteral(".changes.json")},
            {QStringLiteral("rehearsal.html"), QStringLiteral(".rehearsal.html")}};
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

/// As good as a rename, also onto another file system: the record that follows says that it is
/// whole.
Failure move(const QString &source, const QString &target)
{
    QFile file(source);
    QFile::remove(target);
    if (file.rename(target))
        return {};
    return {ExitUsage, Text::tr("cannot write '%1': %2").arg(target, file.errorString())};
}

Failure copy(const QString &source, const QString &target)
{
    QFile from(source);
    if (!from.open(QIODevice::ReadOnly))
        return {ExitUsage, Text::tr("cannot read '%1': %2").arg(source, from.errorString())};
    return writeOwnerFile(target, [&from](QIODevice *file) {
        while (!from.atEnd())
            file->write(from.read(1 << 20));
    });
}

} // namespace

bool GateResult::hasRefused() const
{
    return std::any_of(decided.cbegin(), decided.cend(), [](const GateRecord &record) {
        return record.outcome == GateRecord::Refused;
    });
}

Gate::Gate(const GateSettings &gateSettings) :
    settings(gateSettings),
    archive(gateSettings.archive, gateSettings.refused),
    placement(gateSettings.place)
{ }

Gate::~Gate()
{
    if (lockFile && lockFile->isLocked())
        QDir(workPath(QString())).removeRecursively();
}

Failure Gate::run(GateResult *result)
{
    if (const Failure failure = open(result))
        return failure;
    if (const Failure failure = refuseForeign(result))
        return failure;
    const Failure failure = takeDeliveries(result);
    archive.removeOlderThan(settings.keepDays, QDateTime::currentDateTime());
    lookForLateness(result);
    return failure;
}

Failure Gate::release(const ReleaseWish &wish, GateResult *result)
{
    if (const Failure failure = open(result))
        return failure;
    const GateRecord *record = archive.find(wish.what);
    Delivery delivery = deliveryOf(record ? archive.path(*record, QStringLiteral(".export"))
                                          : wish.what);
    if (!QFileInfo(delivery.path).isFile())
        return {ExitUsage,
                Text::tr("'%1' is neither the name of a refused export nor a file; 'talvenhr "
                         "status' shows what was refused")
                    .arg(wish.what)};
    delivery.stays = QFileInfo(delivery.path).absolutePath()
        != QFileInfo(settings.incoming.folder).absoluteFilePath();
    if (record) {
        delivery.name = record->exported.name;
        delivery.time = record->fileTime;
    }
    return decide(delivery, wish.release, result);
}

Failure Gate::open(GateResult *result)
{
    if (const Failure failure = makeOwnerFolder(settings.state))
        return failure;
    if (const Failure failure = lock())
        return failure;
    if (const Failure failure = archive.open())
        return failure;
    for (const QString &path : archive.unreadable())
        result->warnings.append(Text::tr("the record '%1' cannot be read; its export counts as "
                                         "never seen")
                                    .arg(path));
    return recover(result);
}

Failure Gate::lock()
{
    lockFile.reset(new QLockFile(QDir(settings.state).filePath(QStringLiteral("lock"))));
    lockFile->setStaleLockTime(0);
    if (lockFile->tryLock(0))
        return {};
    qint64 pid = 0;
    QString host;
    QString program;
    if (!lockFile->getLockInfo(&pid, &host, &program))
        return {ExitUsage,
                Text::tr("cannot lock the folder '%1': it cannot be written").arg(settings.state)};
    const QDateTime since = QFileInfo(QDir(settings.state).filePath(QStringLiteral("lock")))
                                .lastModified();
    return {ExitRefused,
            Text::tr("another gate is at work since %1: process %2 on %3; try again when it has "
                     "ended")
                .arg(since.toString(Qt::ISODate))
                .arg(pid)
                .arg(host)};
}

/// Ends what a gate that was killed has begun. What it has prepared, but not put in place, begins
/// anew: its delivery is still there.
Failure Gate::recover(GateResult *result)
{
    const QVector<GateRecord> records = archive.records();
    for (GateRecord record : records) {
        if (record.outcome != GateRecord::Passing)
            continue;
        if (placement.isPrepared(record.name)) {
            archive.forget(record);
            continue;
        }
        record.outcome = GateRecord::Passed;
        if (const Failure failure = archive.keep(record))
            return failure;
        result->news.append(Text::tr("%1 had been put in place by a gate that did not end; it is "
                                     "recorded now")
                                .arg(record.exported.name));
    }
    placement.removePrepared();
    QDir(workPath(QString())).removeRecursively();
    return makeOwnerFolder(workPath(QString()));
}

/// What somebody else has put in place goes the way of a delivery that was refused: the plugin
/// would read it unseen.
Failure Gate::refuseForeign(GateResult *result)
{
    const QString digest = placement.digest();
    if (digest.isEmpty() || archive.passedWith(digest))
        return {};
    const Delivery delivery = deliveryOf(placement.path());
    GateRecord record;
    if (const Failure failure = takeIn(delivery, &record))
        return failure;
    record.reasons = {{QStringLiteral("foreign"),
                       Text::tr("it lay at importFile and did not come through the gate"),
                       Text::tr("deliver exports into '%1'; to let this one through, release it")
                           .arg(settings.incoming.folder)}};
    if (const Failure failure = refuse(&record))
        return failure;
    return finish(delivery, record, result);
}

Failure Gate::takeDeliveries(GateResult *result)
{
    QVector<Delivery> deliveries;
    if (const Failure failure = findDeliveries(settings.incoming, QDateTime::currentDateTime(),
                                               &deliveries, &result->waiting))
        return failure;
    for (const Delivery &delivery : qAsConst(deliveries)) {
        const GateRecord *ended = archive.madeOf(delivery.name, delivery.time,
                                                 digestOfFile(delivery.path));
        // Nothing older goes through where nothing could be said of a newer one.
        if (const Failure failure = ended ? finish(delivery, GateRecord(*ended), result)
                                          : decide(delivery, {}, result))
            return failure;
    }
    return {};
}

/// The end of every road: whoever is killed before it comes here again.
Failure Gate::finish(const Delivery &delivery, const GateRecord &record, GateResult *result)
{
    step("hook");
    result->decided.append(record);
    callHook(record, result);
    step("remove");
    // Another one may have been delivered under the same name.
    return delivery.stays || !isUnchanged(delivery) ? Failure() : removeDelivery(delivery);
}

Failure Gate::decide(const Delivery &delivery, const std::optional<Release> &release,
                     GateResult *result)
{
    QElapsedTimer clock;
    clock.start();
    GateRecord record;
    step("take");
    if (const Failure failure = takeIn(delivery, &record))
        return failure;
    record.release = release;
    const bool isSuperseded = !release
        && std::any_of(result->decided.cbegin(), result->decided.cend(),
                       [](const GateRecord &other) { return other.outcome == GateRecord::Passed; });
    if (isSuperseded) {
        if (const Failure failure = supersede(delivery, &record))
            return failure;
        return finish(delivery, record, result);
    }
    step("judge");
    if (const Failure failure = judge(release, &record))
        return failure;
    record.seconds = static_cast<int>(clock.elapsed() / 1000);
    const bool passes = record.reasons.isEmpty() || (release && release->allowed.isEmpty());
    if (const Failure failure = passes ? letThrough(delivery, &record) : refuse(&record))
        return failure;
    return finish(delivery, record, result);
}

/// A copy that nobody else writes to, mended where that is wished.
Failure Gate::takeIn(const Delivery &delivery, GateRecord *record)
{
    const QString taken = workPath(deliveredName);
    const Delivery before = delivery.stays ? deliveryOf(delivery.path) : delivery;
    if (const Failure failure = copy(delivery.path, taken))
        return failure;
    if (!isUnchanged(before))
        return {ExitErrors,
                Text::tr("'%1' was written to while it was read; it is looked at the next time")
                    .arg(delivery.path)};
    record->when = QDateTime::currentDateTime();
    record->fileTime = delivery.time;
    record->exported = identityOf(taken);
    record->exported.name = delivery.name;
    record->name = newRecordName(archive, record->when, record->exported.digest);
    step("mend");
    QVector<MendedCell> cells;
    if (const Failure failure = mendExport(taken, workPath(mendedName), settings.mend, &cells))
        return failure;
    record->mendedCells = cells.size();
    record->placedDigest = digestOfFile(workPath(mendedName));
    if (cells.isEmpty())
        return {};
    return writeOwnerFile(workPath(QStringLiteral("mended.txt")),
                          [&cells](QIODevice *file) { file->write(mendedText(cells)); });
}

Failure Gate::judge(const std::optional<Release> &release, GateRecord *record)
{
    const GateRecord *last = archive.lastPassed();
    const GateRecord *seen = archive.passedWith(record->exported.digest);
    const bool isReleased = release && release->allowed.isEmpty();
    if (seen)
        record->reasons.append(
            {QStringLiteral("seen"),
             Text::tr("the same bytes went through on %1").arg(seen->when.toString(Qt::ISODate)),
             Text::tr("look whether the HR system has written a new export")});
    else if (last
             && isOlder({record->exported.name, record->fileTime},
                        {last->exported.name, last->fileTime}))
        record->reasons.append({QStringLiteral("older"),
                                Text::tr("it is older than the export that went through last, '%1'")
                                    .arg(last->exported.name),
                                Text::tr("deliver the newest export")});
    if (!record->reasons.isEmpty() && !isReleased)
        return {};
    JudgedFiles files {workPath(mendedName), QString(), {}, workPath(QString())};
    if (last) {
        record->comparedWith = last->name;
        files.lastGood = workPath(lastGoodName);
        if (const Failure failure = readGzip(archive.path(*last, QStringLiteral(".export.gz")),
                                             files.lastGood))
            return failure;
    } else if (settings.holdsFirst) {
        record->reasons.append({QStringLiteral("hold"),
                                Text::tr("it is the first export, and there is none to compare it "
                                         "with"),
                                Text::tr("look at its report; if all is right, release it")});
    }
    JudgeSettings measures = settings.judge;
    if (release) {
        for (const QString &text : release->allowed) {
            Limit limit;
            if (const Failure failure = readLimit(text, &limit))
                return failure;
            setLimit(limit, &measures.limits);
        }
    }
    if (measures.rehearse) {
        if (const Failure failure = unpackTaken(&files.after))
            return failure;
    }
    return judgeExport(measures, files, isReleased, record);
}

/// The exports that the running server has read, the oldest first, with the times at which they
/// came in place. Those that are too old to be kept are left out: only people who stand in no later
/// one are concerned.
Failure Gate::unpackTaken(QStringList *files) const
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
        const QString path = workPath(record.name);
        if (const Failure failure = readGzip(packed, path))
            return failure;
        QFile file(path);
        if (file.open(QIODevice::ReadWrite))
            file.setFileTime(record.when, QFileDevice::FileModificationTime);
        files->append(path);
    }
    return {};
}

Failure Gate::letThrough(const Delivery &delivery, GateRecord *record)
{
    const QString digest = placement.digest();
    const GateRecord *unread = digest.isEmpty() || !settings.isRemovedWhenRead
        ? nullptr
        : archive.passedWith(digest);
    record->replaced = unread ? unread->name : QString();
    record->outcome = GateRecord::Passing;
    step("archive");
    if (const Failure failure = fileReports(*record))
        return failure;
    // What stood in place is what the next one is compared with.
    if (const Failure failure = writeGzip(workPath(mendedName),
                                          archive.path(*record, QStringLiteral(".export.gz"))))
        return failure;
    step("prepare");
    if (const Failure failure = placement.prepare(record->name, workPath(mendedName),
                                                  QFile::permissions(delivery.path)))
        return failure;
    step("passing");
    if (const Failure failure = archive.keep(*record))
        return failure;
    step("put");
    if (const Failure failure = placement.put(record->name)) {
        archive.forget(*record);
        return failure;
    }
    step("passed");
    record->outcome = GateRecord::Passed;
    return archive.keep(*record);
}

Failure Gate::supersede(const Delivery &, GateRecord *record)
{
    record->outcome = GateRecord::Superseded;
    if (const Failure failure = writeGzip(workPath(deliveredName),
                                          archive.path(*record, QStringLiteral(".export.gz"))))
        return failure;
    return archive.keep(*record);
}

Failure Gate::refuse(GateRecord *record)
{
    record->outcome = GateRecord::Refused;
    step("refuse");
    if (const Failure failure = fileReports(*record))
        return failure;
    const QString text = refusalText(*record, settings.refused);
    if (const Failure failure = writeOwnerFile(
            archive.path(*record, QStringLiteral(".txt")),
            [&text](QIODevice *file) { file->write(text.toUtf8()); }))
        return failure;
    if (const Failure failure = move(workPath(deliveredName),
                                     archive.path(*record, QStringLiteral(".export"))))
        return failure;
    step("refused");
    return archive.keep(*record);
}

Failure Gate::fileReports(const GateRecord &record)
{
    const QVector<KeptFile> reports = keptReports();
    for (const KeptFile &report : reports) {
        const QString path = workPath(report.name);
        if (!QFileInfo::exists(path))
            continue;
        if (const Failure failure = move(path, archive.path(record, report.ending)))
            return failure;
    }
    return {};
}

void Gate::callHook(const GateRecord &record, GateResult *result) const
{
    if (record.outcome == GateRecord::Superseded)
        return;
    const QString &command = record.outcome == GateRecord::Refused ? settings.refusedHook
                                                                   : settings.passedHook;
    if (command.isEmpty())
        return;
    const QString trouble = runHook(command, gateRecordJson(record), hookSeconds);
    if (!trouble.isEmpty())
        result->warnings.append(Text::tr("the hook '%1': %2").arg(command, trouble));
}

/// Told by a hook once for each delivery that was the last one.
void Gate::lookForLateness(GateResult *result)
{
    if (settings.lateAfter == 0 || archive.records().isEmpty())
        return;
    const GateRecord &last = archive.records().constLast();
    const qint64 hours = last.when.secsTo(QDateTime::currentDateTime()) / 3600;
    if (hours < settings.lateAfter)
        return;
    result->isLate = true;
    QFile marker(QDir(settings.state).filePath(QStringLiteral("late")));
    const QByteArray name = last.name.toUtf8();
    if (marker.open(QIODevice::ReadOnly) && marker.readAll() == name)
        return;
    marker.close();
    result->warnings.append(Text::tr("no export was delivered for %1 hours; the last one came on "
                                     "%2")
                                .arg(hours)
                                .arg(last.when.toString(Qt::ISODate)));
    if (!settings.lateHook.isEmpty()) {
        const QString trouble = runHook(settings.lateHook, gateRecordJson(last), hookSeconds);
        if (!trouble.isEmpty())
            result->warnings.append(Text::tr("the hook '%1': %2").arg(settings.lateHook, trouble));
    }
    if (const Failure failure = writeOwnerFile(marker.fileName(),
                                               [&name](QIODevice *file) { file->write(name); }))
        result->warnings.append(failure.text);
}

QString Gate::workPath(const QString &name) const
{
    return QDir(settings.state).filePath(QStringLiteral("work/") + name);
}

void Gate::step(const char *name) const
{
    if (atStep)
        atStep(name);
}
