// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The gate: where an export and what was found about it come to lie.
#include "host/gate/gate.h"

#include "host/base/ownerfile.h"
#include "host/gate/gatetexts.h"
#include "host/gate/gzip.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace {

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Gate)
};

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

/// Another file system takes a copy.
Failure move(const QString &source, const QString &target)
{
    if (std::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData())
        == 0)
        return {};
    if (errno != EXDEV)
        return {ExitUsage,
                Text::tr("cannot write '%1': %2")
                    .arg(target, QString::fromLocal8Bit(std::strerror(errno)))};
    if (const Failure failure = copyToOwnerFile(source, target))
        return failure;
    QFile::remove(source);
    return {};
}

} // namespace

Failure Gate::letThrough(GateRecord *record)
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
    if (const Failure failure = writeGzip(work.mended(),
                                          archive.path(*record, QStringLiteral(".export.gz"))))
        return failure;
    step("prepare");
    if (const Failure failure = placement.prepare(record->name, work.mended(), record->rights))
        return failure;
    step("passing");
    Failure failure = archive.keep(*record);
    step("put");
    if (!failure)
        failure = checkPlace();
    if (!failure)
        failure = placement.put(record->name);
    if (failure) {
        archive.forget(*record);
        placement.drop(record->name);
        return failure;
    }
    step("passed");
    record->outcome = GateRecord::Passed;
    return archive.keep(*record);
}

/// Somebody may have put a file of their own there since the gate has begun: nobody would see it
/// again.
Failure Gate::checkPlace() const
{
    const QString digest = placement.digest();
    if (digest.isEmpty() && placement.exists())
        return {ExitUsage,
                Text::tr("what lies at '%1' cannot be read, and would be lost; see whose it is, "
                         "and take it away")
                    .arg(placement.path())};
    if (digest.isEmpty() || archive.passedWith(digest))
        return {};
    return {ExitErrors,
            Text::tr("somebody has put a file at '%1' while the gate was at work; the next gate "
                     "looks at it")
                .arg(placement.path())};
}

Failure Gate::supersede(GateRecord *record)
{
    record->outcome = GateRecord::Superseded;
    if (const Failure failure = writeGzip(work.delivered(),
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
    const QString text = refusalText(*record, settings.refused, releasedSince(*record));
    if (const Failure failure = writeOwnerFile(
            archive.path(*record, QStringLiteral(".txt")),
            [&text](QIODevice *file) { file->write(text.toUtf8()); }))
        return failure;
    if (const Failure failure = move(work.delivered(),
                                     archive.path(*record, QStringLiteral(".export"))))
        return failure;
    step("refused");
    return archive.keep(*record);
}

Failure Gate::fileReports(const GateRecord &record)
{
    const QVector<KeptFile> reports = keptReports();
    for (const KeptFile &report : reports) {
        const QString path = work.path(report.name);
        if (!QFileInfo::exists(path))
            continue;
        if (const Failure failure = move(path, archive.path(record, report.ending)))
            return failure;
    }
    return {};
}
