// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The gate: what a person lets through.
#include "host/gate/gate.h"

#include "host/base/zonedtext.h"
#include "host/gate/exportdate.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gate)
};

/// The folder in which the file lies or would lie; empty if there is none.
QString folderOf(const QString &file)
{
    return QFileInfo(QFileInfo(file).absolutePath()).canonicalFilePath();
}

bool isFolder(const QString &one, const QString &other)
{
    return !one.isEmpty() && one == QFileInfo(other).canonicalFilePath();
}

bool isBelow(const QString &path, const QString &folder)
{
    return (path + QLatin1Char('/'))
        .startsWith(QFileInfo(folder).canonicalFilePath() + QLatin1Char('/'));
}

} // namespace

Failure Gate::release(const ReleaseWish &wish, GateResult *result)
{
    if (const Failure failure = open(result))
        return failure;
    if (const Failure failure = refuseForeign(result))
        return failure;
    const GateRecord *record = recordOf(wish.what);
    const QString digest = record ? record->exported.digest : digestOfFile(wish.what);
    if (isThroughAlready(digest, wish, result))
        return {};
    Delivery delivery;
    if (const Failure failure = record ? findKept(*record, &delivery)
                                       : findDelivered(wish.what, &delivery))
        return failure;
    if (!wish.replacesNewer && wish.release.allowed.isEmpty()) {
        if (const Failure failure = checkReplaced(delivery))
            return failure;
    }
    return decide(delivery, wish.release, result);
}

/// Named by itself, or by any of the files about it: a shell completes what lies there. Null for
/// anything else.
const GateRecord *Gate::recordOf(const QString &what) const
{
    const QFileInfo file(what);
    const QString folder = folderOf(what);
    const bool isMeant = what == file.fileName() || isFolder(folder, settings.refused)
        || isFolder(folder, settings.archive);
    return isMeant ? archive.find(file.baseName()) : nullptr;
}

/// Decided on again, it would be refused as seen, though all is as the person wants it.
bool Gate::isThroughAlready(const QString &digest, const ReleaseWish &wish,
                            GateResult *result) const
{
    const GateRecord *through = archive.passedWith(digest);
    if (!through || through != archive.lastPassed())
        return false;
    const bool isInPlace = archive.wasPlacedLast(placement.digest());
    // Released once more, the plugin reads it once more.
    if (!isInPlace && wish.release.allowed.isEmpty())
        return false;
    result->news.append((isInPlace ? Text::tr("%1 is in place already: it went through on %2 (%3)")
                                   : Text::tr("%1 went through already, on %2 (%3), and was taken "
                                              "from its place since"))
                            .arg(through->exported.name, zonedText(through->when), through->name));
    return true;
}

/// The export of a refusal. Its age is that of the delivery, not that of the copy.
Failure Gate::findKept(const GateRecord &record, Delivery *delivery) const
{
    *delivery = deliveryOf(archive.path(record, QStringLiteral(".export")));
    if (record.outcome != GateRecord::Refused)
        return {ExitUsage,
                Text::tr("'%1' was not refused: it is %2 since %3, and there is nothing to release")
                    .arg(record.name, outcomeName(record.outcome), zonedText(record.when))};
    if (!QFileInfo(delivery->path).isFile())
        return {ExitUsage,
                Text::tr("the refused export '%1' is not kept any longer; deliver it into '%2' "
                         "once more")
                    .arg(delivery->path, settings.incoming.folder)};
    delivery->stays = true;
    delivery->name = record.exported.name;
    delivery->time = record.fileTime;
    delivery->rights = record.rights;
    return {};
}

Failure Gate::findDelivered(const QString &path, Delivery *delivery) const
{
    *delivery = deliveryOf(path);
    const QString folder = folderOf(path);
    const bool isDelivered = isFolder(folder, settings.incoming.folder);
    if (!QFileInfo(path).isFile())
        return {ExitUsage,
                Text::tr("'%1' is neither the name of a refused export nor a delivery in '%2'; "
                         "'talvenhr status' shows what was refused")
                    .arg(path, settings.incoming.folder)};
    if (isDelivered)
        return checkWhole(*delivery);
    const QStringList own {settings.refused, settings.archive, settings.state};
    if (std::any_of(own.cbegin(), own.cend(),
                    [&folder](const QString &one) { return isBelow(folder, one); }))
        return {ExitUsage,
                Text::tr("'%1' lies in a folder of the gate and is no export; name a refused one, "
                         "as 'talvenhr status' shows it")
                    .arg(path)};
    return {ExitUsage,
            Text::tr("'%1' was never delivered, and nothing was found about it; deliver it into "
                     "'%2', and run 'talvenhr gate'")
                .arg(path, settings.incoming.folder)};
}

/// What somebody still writes to would be cut off in place.
Failure Gate::checkWhole(const Delivery &delivery) const
{
    QVector<Delivery> whole;
    QStringList waiting;
    if (const Failure failure = findDeliveries(settings.incoming, QDateTime::currentDateTime(),
                                               &whole, &waiting))
        return failure;
    if (!waiting.contains(QFileInfo(delivery.path).fileName()))
        return {};
    return {ExitErrors,
            Text::tr("'%1' is not known to be whole yet; wait until nobody writes to it any more, "
                     "and release it then")
                .arg(delivery.path)};
}

/// Whoever releases an export may not know what has come since. What is in place unread would never
/// be read.
Failure Gate::checkReplaced(const Delivery &delivery) const
{
    const QString digest = placement.digest();
    const GateRecord *unread = digest.isEmpty() || !settings.isRemovedWhenRead
        ? nullptr
        : archive.passedWith(digest);
    if (!unread
        || !isOlder({delivery.name, delivery.time}, {unread->exported.name, unread->fileTime}))
        return {};
    return {ExitRefused,
            Text::tr("'%1' of %2 is older than what lies in place and was not read yet, '%3' of %4 "
                     "(%5); wait until the plugin has read that, or put this one in its place with "
                     "--over-newer")
                .arg(delivery.name, zonedText(delivery.time), unread->exported.name,
                     zonedText(unread->fileTime), unread->name)};
}

/// With nothing in it, it is no export that the plugin could work with.
Failure Gate::checkReleased(const GateRecord &record)
{
    const bool isReleased = record.release && record.release->allowed.isEmpty();
    if (!isReleased || record.fates.taken > 0)
        return {};
    return {ExitRefused,
            Text::tr("'%1' has no line that the plugin could use, and is not released; nothing has "
                     "changed; ask for a new export")
                .arg(record.exported.name)};
}
