// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What came to the gate, and what became of it.
#include "host/gate/gatearchive.h"

#include "host/base/ownerfile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

/// The name at the begin of a file's name; empty for a file that is not the gate's.
QString recordNameOf(const QString &file)
{
    static const QRegularExpression form(QStringLiteral("^\\d{8}T\\d{6}Z-[0-9a-f]{12}(?=\\.)"));
    return form.match(file).captured();
}

/// The last record that fulfils the condition.
template <typename Condition>
const GateRecord *lastOf(const QVector<GateRecord> &records, Condition condition)
{
    const auto found = std::find_if(records.crbegin(), records.crend(), condition);
    return found == records.crend() ? nullptr : &*found;
}

} // namespace

GateArchive::GateArchive(const QString &archiveFolder, const QString &refusedFolder) :
    archive(archiveFolder),
    refused(refusedFolder)
{ }

Failure GateArchive::open()
{
    for (const QString &folder : {archive, refused}) {
        if (const Failure failure = makeOwnerFolder(folder))
            return failure;
        removeUnrecorded(folder);
    }
    unreadableRecords.clear();
    all = readGateRecords(archive, &unreadableRecords)
        + readGateRecords(refused, &unreadableRecords);
    std::stable_sort(all.begin(), all.end(), [](const GateRecord &one, const GateRecord &other) {
        return one.when < other.when;
    });
    return {};
}

const GateRecord *GateArchive::lastPassed() const
{
    return lastOf(all,
                  [](const GateRecord &record) { return record.outcome == GateRecord::Passed; });
}

const GateRecord *GateArchive::lastGood() const
{
    return lastOf(all, isGood);
}

const GateRecord *GateArchive::find(const QString &name) const
{
    return lastOf(all, [&name](const GateRecord &record) { return record.name == name; });
}

const GateRecord *GateArchive::passedWith(const QString &digest) const
{
    return lastOf(all, [&digest](const GateRecord &record) {
        return !digest.isEmpty() && record.outcome == GateRecord::Passed
            && (record.exported.digest == digest || record.placedDigest == digest);
    });
}

bool GateArchive::wasPlacedLast(const QString &digest) const
{
    const GateRecord *last = lastPassed();
    return last
        && digest == (last->placedDigest.isEmpty() ? last->exported.digest : last->placedDigest);
}

const GateRecord *GateArchive::madeOf(const QString &file, const QDateTime &time,
                                      const QString &digest) const
{
    return lastOf(all, [&](const GateRecord &record) {
        return record.exported.name == file && record.fileTime == time
            && record.exported.digest == digest;
    });
}

QString GateArchive::path(const GateRecord &record, const QString &ending) const
{
    return QDir(folder(record.outcome)).filePath(record.name + ending);
}

Failure GateArchive::keep(const GateRecord &record)
{
    if (const Failure failure = writeGateRecord(record, path(record, recordEnding())))
        return failure;
    writeFolderOut(folder(record.outcome));
    const auto same = std::find_if(all.begin(), all.end(), [&record](const GateRecord &other) {
        return other.name == record.name;
    });
    if (same != all.end())
        *same = record;
    else
        all.append(record);
    return {};
}

void GateArchive::forget(const GateRecord &record)
{
    const QString name = record.name;
    removeFiles(folder(record.outcome), name);
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&name](const GateRecord &other) { return other.name == name; }),
              all.end());
}

void GateArchive::removeOlderThan(int days, const QDateTime &now)
{
    const qint64 seconds = 86400LL * days;
    const GateRecord *last = lastPassed();
    const GateRecord *good = lastGood();
    QSet<QString> old;
    for (const GateRecord &record : qAsConst(all)) {
        if (&record != last && &record != good && record.when.secsTo(now) > seconds)
            old.insert(record.name);
    }
    // Each folder is listed once: there may be records of years.
    for (const QString &folder : {archive, refused}) {
        const QDir directory(folder);
        const QStringList files = directory.entryList(QDir::Files);
        for (const QString &file : files) {
            if (old.contains(recordNameOf(file)) && !file.endsWith(recordEnding()))
                QFile::remove(directory.filePath(file));
        }
    }
}

QString GateArchive::folder(GateRecord::Outcome outcome) const
{
    return outcome == GateRecord::Refused ? refused : archive;
}

void GateArchive::removeFiles(const QString &folder, const QString &name) const
{
    const QDir directory(folder);
    const QStringList files = directory.entryList({name + QStringLiteral(".*")}, QDir::Files);
    // The record last: it is how the others are known.
    for (const QString &file : files) {
        if (!file.endsWith(recordEnding()))
            QFile::remove(directory.filePath(file));
    }
    QFile::remove(directory.filePath(name + recordEnding()));
}

void GateArchive::removeUnrecorded(const QString &folder) const
{
    const QDir directory(folder);
    const QStringList files = directory.entryList(QDir::Files);
    for (const QString &file : files) {
        const QString name = recordNameOf(file);
        if (!name.isEmpty() && !directory.exists(name + recordEnding()))
            QFile::remove(directory.filePath(file));
    }
}
