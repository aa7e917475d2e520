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

} // namespace

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
    if (const Failure failure = writeGzip(work.mended(),
                                          archive.path(*record, QStringLiteral(".export.gz"))))
        return failure;
    step("prepare");
    if (const Failure failure = placement.prepare(record->name, work.mended(),
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
    const QString text = refusalText(*record, settings.refused);
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
