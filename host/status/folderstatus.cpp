// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What folders and files tell.
#include "host/status/folderstatus.h"

#include "host/changes/changesjson.h"
#include "host/changes/passnotes.h"
#include "host/gate/lateness.h"
#include "host/status/gatestate.h"
#include "host/status/passfacts.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <algorithm>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(FolderStatus)
};

const qint64 timeOfAPass = 600; // seconds in which a pass is over
const qint64 unknownInterval = 3600; // seconds between passes where the settings are not known
const qint64 longestUnknown = 86400; // seconds in which an export is surely read, likewise
const int daysBack = 14;

QString changesEnding()
{
    return QStringLiteral(".changes.json");
}

QString settledEnding()
{
    return QStringLiteral(".settled");
}

FolderStatus folderStatus(const QString &name, const QString &path)
{
    FolderStatus folder {name, path, 0, 0};
    QDirIterator files(path, QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        ++folder.files;
        folder.bytes += files.fileInfo().size();
    }
    return folder;
}

bool isThere(const QString &folder)
{
    return !folder.isEmpty() && QFileInfo::exists(folder);
}

/// The gate makes its folders when it first runs.
bool hasNotRun(const StatusSources &sources)
{
    return !isThere(sources.archive) && !isThere(sources.refused);
}

void readFolders(Status *status)
{
    const StatusSources &sources = status->sources;
    const bool isUnused = hasNotRun(sources);
    const QVector<QPair<QString, QString>> named {{QStringLiteral("incoming"), sources.incoming},
                                                  {QStringLiteral("archive"), sources.archive},
                                                  {QStringLiteral("refused"), sources.refused},
                                                  {QStringLiteral("state"), sources.state}};
    for (const auto &folder : named) {
        if (folder.second.isEmpty())
            continue;
        const QFileInfo info(folder.second);
        if (isUnused && !info.exists() && folder.first != QLatin1String("incoming"))
            continue;
        if (!info.isDir() || !info.isReadable() || !info.isExecutable()) {
            status->unknown.append({Text::tr("folder '%1'").arg(folder.second),
                                    info.exists() ? Text::tr("it is closed to this user; it "
                                                             "belongs to %1")
                                                        .arg(info.owner())
                                                  : Text::tr("it is not there"),
                                    true});
            continue;
        }
        status->folders.append(folderStatus(folder.first, folder.second));
        if (folder.first == QLatin1String("incoming"))
            status->incomingFiles = status->folders.constLast().files;
    }
}

void readRecords(Status *status)
{
    QStringList unreadable;
    QStringList folders {status->sources.archive, status->sources.refused};
    folders.removeDuplicates();
    for (const QString &folder : qAsConst(folders)) {
        if (!folder.isEmpty())
            status->records += readGateRecords(folder, &unreadable);
    }
    std::stable_sort(
        status->records.begin(), status->records.end(),
        [](const GateRecord &one, const GateRecord &other) { return one.when < other.when; });
    for (const QString &file : qAsConst(unreadable))
        status->unknown.append({Text::tr("'%1'").arg(file),
                                Text::tr("it cannot be read as a record of the gate"), true});
}

/// The newest record of which the file in place comes; empty if there is none.
QString recordOfDigest(const QVector<GateRecord> &records, const QString &digest)
{
    const auto found = std::find_if(
        records.crbegin(), records.crend(), [&digest](const GateRecord &record) {
            const bool wasPlaced = record.outcome == GateRecord::Passed
                || record.outcome == GateRecord::Passing;
            return wasPlaced
                && digest
                == (record.placedDigest.isEmpty() ? record.exported.digest : record.placedDigest);
        });
    return found == records.crend() ? QString() : found->name;
}

void readPlace(Status *status)
{
    const QString &path = status->sources.place;
    if (path.isEmpty()) {
        status->unknown.append({Text::tr("the place of the export"),
                                Text::tr("neither --place nor the plugin's settings name it"),
                                false});
        return;
    }
    status->place.stays = readPlaceStays(status->sources.state);
    const QFileInfo file(path);
    status->place.folderChanged = QFileInfo(file.path()).lastModified();
    status->place.isThere = file.isFile();
    if (!status->place.isThere)
        return;
    status->place.since = file.lastModified();
    status->place.size = file.size();
    const QString digest = identityOf(path).digest;
    if (digest.isEmpty())
        status->unknown.append({Text::tr("'%1'").arg(path), Text::tr("it cannot be read"), true});
    else
        status->place.record = recordOfDigest(status->records, digest);
}

bool isLate(const Status &status)
{
    const StatusSources &sources = status.sources;
    // The gate's mark stays, with the export after which none had come.
    if (wasLatenessTold(status.records, sources.state))
        return true;
    const QDateTime since = nothingSince(status.records, sources.state);
    return sources.lateAfter > 0 && since.isValid() && since.secsTo(status.now) > sources.lateAfter;
}

/// The newest export that went into place: its pass is over.
bool newestIsRead(const Status &status, const GateRecord &record)
{
    const StatusSources &sources = status.sources;
    const qint64 age = record.when.secsTo(status.now);
    if (sources.place.isEmpty())
        return false;
    if (sources.staysInPlace)
        return age
            > (sources.passSeconds > 0 ? sources.passSeconds : unknownInterval) + timeOfAPass;
    if (status.place.isThere && status.place.record == record.name)
        return false;
    // A folder in which something always changes tells nothing, where no gate has looked.
    const qint64 longest = (sources.passSeconds > 0 ? sources.passSeconds : longestUnknown)
        + timeOfAPass;
    return age > longest || goneBy(status, record.name).secsTo(status.now) > timeOfAPass;
}

/// The plugin has taken the newest export out of its place, and its pass may not be over.
bool mayBeAtWork(const Status &status, const GateRecord &record)
{
    const bool liesThere = status.place.isThere && status.place.record == record.name
        && !status.sources.staysInPlace;
    return !liesThere && !newestIsRead(status, record);
}

/// The pass over an export may not have been over when the next one was rehearsed.
bool mayOverlap(const Status &status, const QString &exported, const GateRecord &next)
{
    const PlaceStay *stay = stayOf(status.place.stays, exported);
    return stay && !(stay->gone.isValid() && stay->gone.secsTo(next.when) > timeOfAPass);
}

/// The export of the last pass that is known of, if it is not over yet, too; empty for none.
QString lastTaken(const Status &status)
{
    const GateRecord *const newest = lastPassed(status.records);
    const bool isGone = newest && !status.sources.place.isEmpty() && !status.sources.staysInPlace
        && !(status.place.isThere && status.place.record == newest->name);
    const QStringList read = readExports(status);
    if (isGone)
        return newest->name;
    return read.isEmpty() ? QString() : read.constLast();
}

void readPass(Status *status)
{
    const QStringList files = passFiles(*status);
    for (auto file = files.crbegin(); file != files.crend(); ++file) {
        Changes changes;
        if (const Failure failure = readChangesFile(*file, &changes)) {
            status->unknown.append({Text::tr("'%1'").arg(*file), failure.text, true});
            continue;
        }
        if (changes.header.how != ChangesHeader::Run)
            continue;
        status->pass = passOfChanges(changes, *file);
        status->waiting = waitingOf(changes);
        break;
    }
    const QString taken = lastTaken(*status);
    if (taken.isEmpty())
        return;
    const auto newest = std::find_if(
        status->records.cbegin(), status->records.cend(),
        [&taken](const GateRecord &record) { return record.name == taken; });
    if (status->pass.source == PassStatus::FromChanges && status->pass.when >= newest->when)
        return;
    status->pass = passOfRecord(*newest, *status);
    Changes changes;
    status->waiting.clear();
    if (readChangesFile(rehearsalFile(status->sources, *newest), &changes))
        return;
    status->waiting = waitingOf(changes);
    status->pass.errors = errorsOf(changes);
    status->pass.statements = changes.totals.statements;
}

} // namespace

Status readStatus(const StatusSources &sources, const QDateTime &now)
{
    Status status;
    status.now = now;
    status.sources = sources;
    if (sources.archive.isEmpty())
        status.unknown.append({Text::tr("exports at the gate"),
                               Text::tr("no archive is named ([gate] archive)"), false});
    readFolders(&status);
    readRecords(&status);
    status.gate = readGateState(sources, now);
    // What cannot be seen may hold records.
    status.gate.isNew = !sources.archive.isEmpty() && status.records.isEmpty()
        && status.unknown.isEmpty();
    readPlace(&status);
    status.isLate = isLate(status);
    readPass(&status);
    return status;
}

QStringList readExports(const Status &status)
{
    QSet<QString> unread;
    for (const GateRecord &record : status.records)
        unread.insert(record.replaced);
    const GateRecord *const newest = lastPassed(status.records);
    QStringList names;
    for (const GateRecord &record : status.records) {
        const bool wentIn = record.outcome == GateRecord::Passed && !unread.contains(record.name);
        if (wentIn && (&record != newest || newestIsRead(status, record)))
            names.append(record.name);
    }
    return names;
}

bool newestIsJudged(const Status &status)
{
    const GateRecord *const newest = lastPassed(status.records);
    return !newest || newestIsRead(status, *newest);
}

int lossDays()
{
    return daysBack;
}

QVector<RehearsedExport> readRehearsals(const Status &status)
{
    const QStringList names = readExports(status);
    const QDateTime since = status.now.addDays(-daysBack);
    const GateRecord *const newest = lastPassed(status.records);
    QVector<RehearsedExport> exports;
    for (const GateRecord &record : status.records) {
        const bool isBeingRead = &record == newest && mayBeAtWork(status, record);
        if (record.when < since || (!isBeingRead && !names.contains(record.name)))
            continue;
        RehearsedExport exported {record.name, {}, isBeingRead};
        if (QFileInfo::exists(settledFile(status.sources, record)))
            exported.isSettled = true;
        if (readChangesFile(rehearsalFile(status.sources, record), &exported.changes))
            continue;
        // Either this rehearsal tells all that was still to come, or its pass takes that back.
        if (!exports.isEmpty() && mayOverlap(status, exports.constLast().record, record))
            exports.last().isSettled = exports.last().isOverlapped = true;
        exports.append(exported);
    }
    return exports;
}

QString settledFile(const StatusSources &sources, const GateRecord &record)
{
    return QDir(sources.archive).filePath(record.name + settledEnding());
}

QString settledFileOf(const QString &changesFile)
{
    if (!changesFile.endsWith(changesEnding()))
        return QString();
    QString stem = QFileInfo(changesFile).absoluteFilePath();
    stem.chop(changesEnding().size());
    GateRecord record;
    if (readGateRecord(stem + recordEnding(), &record) || record.outcome != GateRecord::Passed
        || QFileInfo::exists(stem + settledEnding()))
        return QString();
    return stem + settledEnding();
}

QStringList passFiles(const Status &status)
{
    QSet<QString> ofTheGate;
    for (const GateRecord &record : status.records)
        ofTheGate.insert(record.name + changesEnding());
    QStringList folders = status.sources.changesFolders;
    if (!status.sources.archive.isEmpty())
        folders.append(status.sources.archive);
    folders.removeDuplicates();
    QFileInfoList files;
    for (const QString &folder : qAsConst(folders))
        files += QDir(folder).entryInfoList({QLatin1Char('*') + changesEnding()}, QDir::Files);
    std::sort(files.begin(), files.end(), [](const QFileInfo &one, const QFileInfo &other) {
        return one.fileName() < other.fileName();
    });
    QStringList paths;
    for (const QFileInfo &file : qAsConst(files)) {
        if (!ofTheGate.contains(file.fileName()))
            paths.append(file.filePath());
    }
    return paths;
}

QString folderOf(const StatusSources &sources, const GateRecord &record)
{
    return record.outcome == GateRecord::Refused ? sources.refused : sources.archive;
}

QString rehearsalFile(const StatusSources &sources, const GateRecord &record)
{
    return QDir(folderOf(sources, record)).filePath(record.name + changesEnding());
}
