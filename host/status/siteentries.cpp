// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What a site has pages about.
#include "host/status/siteentries.h"

#include "host/status/folderstatus.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace {

const char *const layout = "2"; // of the pages; another one writes them all anew

QString ifThere(const QString &path)
{
    return QFileInfo::exists(path) ? path : QString();
}

QByteArray stampOf(const QString &path)
{
    const QFileInfo info(path);
    return path.isEmpty() ? QByteArray("-")
                          : QByteArray::number(info.size()) + '@'
            + QByteArray::number(info.lastModified().toMSecsSinceEpoch());
}

QByteArray hashOf(const SiteEntry &entry, const SiteTarget &target)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(layout);
    hash.addData(target.texts == PersonalTexts::Shown ? "names" : "numbers");
    hash.addData(QByteArray::number(static_cast<int>(target.readers)));
    if (entry.record)
        hash.addData(gateRecordJson(*entry.record));
    hash.addData(stampOf(entry.changesFile) + stampOf(entry.checkPage));
    return hash.result().toHex();
}

/// Fit for a file and for a link.
bool isPlainName(const QString &name)
{
    static const QRegularExpression plain(QStringLiteral("^[0-9A-Za-z][0-9A-Za-z-]*$"));
    return plain.match(name).hasMatch();
}

SiteEntry entryOf(const GateRecord &record, const Status &status, const SiteTarget &target)
{
    SiteEntry entry;
    entry.page = record.name + QStringLiteral(".html");
    entry.when = record.when;
    entry.record = &record;
    entry.changesFile = ifThere(rehearsalFile(status.sources, record));
    // It shows cells.
    if (target.texts == PersonalTexts::Shown)
        entry.checkPage = ifThere(QDir(folderOf(status.sources, record))
                                      .filePath(record.name + QStringLiteral(".check.html")));
    return entry;
}

/// The name of a file of changes begins with the moment of its pass.
SiteEntry entryOf(const QString &changesFile)
{
    SiteEntry entry;
    const QString stem = QFileInfo(changesFile).fileName().section(QLatin1Char('.'), 0, 0);
    if (!isPlainName(stem))
        return entry;
    entry.page = QStringLiteral("pass-%1.html").arg(stem);
    entry.when = QDateTime::fromString(stem.section(QLatin1Char('-'), 0, 0),
                                       QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    entry.when.setTimeSpec(Qt::UTC);
    entry.changesFile = changesFile;
    return entry;
}

} // namespace

QVector<SiteEntry> siteEntries(const Status &status, const SiteTarget &target)
{
    const QDateTime since = status.now.addDays(-siteDays);
    QVector<SiteEntry> entries;
    for (const GateRecord &record : status.records) {
        if (record.when >= since && record.outcome != GateRecord::Passing
            && isPlainName(record.name))
            entries.append(entryOf(record, status, target));
    }
    const QStringList files = passFiles(status);
    for (const QString &file : files) {
        const SiteEntry entry = entryOf(file);
        if (entry.when.isValid() && entry.when >= since)
            entries.append(entry);
    }
    for (SiteEntry &entry : entries)
        entry.madeOf = hashOf(entry, target);
    std::stable_sort(
        entries.begin(), entries.end(),
        [](const SiteEntry &one, const SiteEntry &other) { return one.when > other.when; });
    return entries;
}
