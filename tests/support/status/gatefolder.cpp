// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folders of a gate, with exports that a test makes up.
#include "support/status/gatefolder.h"

#include "host/changes/changesjson.h"
#include "host/status/folderstatus.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>

namespace {

void expect(const Failure &failure)
{
    if (failure)
        QTest::qFail(qPrintable(failure.text), __FILE__, __LINE__);
}

} // namespace

GateFolder::GateFolder()
{
    for (const char *name : {"archive", "refused", "state", "incoming", "site"})
        QDir(folder.path()).mkdir(QLatin1String(name));
    age(QStringLiteral("site"), 48);
}

StatusSources GateFolder::sources() const
{
    StatusSources sources;
    sources.incoming = path(QStringLiteral("incoming"));
    sources.archive = path(QStringLiteral("archive"));
    sources.refused = path(QStringLiteral("refused"));
    sources.state = path(QStringLiteral("state"));
    sources.place = place();
    sources.tickSeconds = 60;
    sources.passSeconds = 3600;
    return sources;
}

Status GateFolder::status() const
{
    return readStatus(sources(), now());
}

QDateTime GateFolder::now()
{
    return {QDate(2026, 11, 22), QTime(12, 0), Qt::UTC};
}

GateRecord GateFolder::record(int hoursAgo, const QByteArray &content,
                              GateRecord::Outcome outcome) const
{
    GateRecord record;
    record.outcome = outcome;
    record.when = now().addSecs(-3600 * hoursAgo);
    record.fileTime = record.when;
    const QString digest = QString::fromLatin1(
        QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
    record.exported = {QStringLiteral("ron.data"), digest, content.size(), 12};
    if (outcome != GateRecord::Refused)
        record.placedDigest = digest;
    record.name = record.when.toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z-'")) + digest.left(12);
    record.fates = {11, 1, 0, 0};
    return record;
}

QString GateFolder::folderOf(const GateRecord &record) const
{
    return record.outcome == GateRecord::Refused ? path(QStringLiteral("refused/"))
                                                 : path(QStringLiteral("archive/"));
}

void GateFolder::keep(const GateRecord &record) const
{
    expect(writeGateRecord(record, folderOf(record) + record.name + recordEnding()));
}

void GateFolder::keep(const GateRecord &record, const Changes &changes) const
{
    expect(
        writeChangesFile(changes, folderOf(record) + record.name + QLatin1String(".changes.json")));
}

void GateFolder::write(const QString &name, const QByteArray &content, int hoursAgo) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        QTest::qFail(qPrintable(file.errorString()), __FILE__, __LINE__);
    file.close();
    age(name, hoursAgo);
}

void GateFolder::age(const QString &name, int hoursAgo) const
{
    const time_t moment = now().toSecsSinceEpoch() - 3600L * hoursAgo;
    const timespec times[] = {{moment, 0}, {moment, 0}};
    if (::utimensat(AT_FDCWD, QFile::encodeName(path(name)).constData(), times, 0) != 0)
        QTest::qFail(qPrintable(qt_error_string(errno)), __FILE__, __LINE__);
}

QByteArray GateFolder::read(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
