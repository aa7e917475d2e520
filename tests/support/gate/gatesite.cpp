// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Folders with a gate.
#include "support/gate/gatesite.h"

#include "host/company/exportwriter.h"
#include "host/gate/gzip.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

Company firstDay(quint32 seed)
{
    CompanyPlan plan;
    plan.people = 100;
    plan.seed = seed;
    plan.day = QDate::currentDate();
    return generatedCompany(plan);
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

GateSite::GateSite(quint32 seed) :
    life(firstDay(seed), seed),
    lastDelivery(QDateTime::currentDateTime().addDays(-30))
{
    settings.incoming.folder = path(QStringLiteral("incoming"));
    settings.incoming.pattern = QStringLiteral("*");
    settings.incoming.complete = Completeness::Rename;
    settings.place = path(QStringLiteral("place/ron.data"));
    settings.archive = path(QStringLiteral("archive"));
    settings.refused = path(QStringLiteral("refused"));
    settings.state = path(QStringLiteral("state"));
    settings.judge.refuse = standardRefusals();
    settings.judge.limits = standardGateLimits();
    for (const char *name : {"incoming", "place"}) {
        if (!QDir(folder.path()).mkpath(QLatin1String(name)))
            qFatal("cannot make the folders of a gate");
    }
}

QByteArray GateSite::nextExport()
{
    life.nextDay();
    return exportText(life.company());
}

void GateSite::deliver(const QByteArray &bytes, const QString &name)
{
    QFile file(QDir(settings.incoming.folder).filePath(name));
    lastDelivery = lastDelivery.addSecs(3600);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()
        || !file.setFileTime(lastDelivery, QFileDevice::FileModificationTime))
        qFatal("cannot deliver an export");
}

bool GateSite::isDelivered(const QString &name) const
{
    return QFileInfo::exists(QDir(settings.incoming.folder).filePath(name));
}

QByteArray GateSite::inPlace() const
{
    return content(settings.place);
}

QByteArray GateSite::read()
{
    const QByteArray bytes = inPlace();
    QFile::remove(settings.place);
    return bytes;
}

GateResult GateSite::run(Failure *failure)
{
    return taken([](Gate *gate, GateResult *result) { return gate->run(result); }, failure);
}

GateResult GateSite::release(const ReleaseWish &wish, Failure *failure)
{
    return taken([&wish](Gate *gate, GateResult *result) { return gate->release(wish, result); },
                 failure);
}

QVector<GateRecord> GateSite::records() const
{
    QStringList unreadable;
    QVector<GateRecord> all = readGateRecords(settings.archive, &unreadable)
        + readGateRecords(settings.refused, &unreadable);
    if (!unreadable.isEmpty())
        qFatal("%s cannot be read", qPrintable(unreadable.constFirst()));
    std::stable_sort(all.begin(), all.end(), [](const GateRecord &one, const GateRecord &other) {
        return one.when < other.when;
    });
    return all;
}

QByteArray GateSite::archived(const GateRecord &record) const
{
    const QString expanded = path(QStringLiteral("expanded"));
    const QString file = QDir(settings.archive)
                             .filePath(record.name + QStringLiteral(".export.gz"));
    return readGzip(file, expanded) ? QByteArray() : content(expanded);
}

GateResult GateSite::taken(const std::function<Failure(Gate *, GateResult *)> &work,
                           Failure *failure)
{
    Gate gate(settings);
    GateResult result;
    const Failure found = work(&gate, &result);
    if (failure)
        *failure = found;
    else if (found)
        qFatal("%s", qPrintable(found.text));
    return result;
}

QByteArray cutOff(const QByteArray &content, int lines)
{
    return content.split('\n').mid(0, lines).join('\n') + '\n';
}

QByteArray damaged(const QByteArray &content)
{
    QByteArray bytes = content;
    bytes.insert(bytes.indexOf('\n', bytes.indexOf('\n') + 1), '|');
    return bytes;
}

QStringList codesOf(const GateRecord &record)
{
    QStringList codes;
    for (const RefusalReason &reason : record.reasons)
        codes.append(reason.code);
    return codes;
}

QStringList endingsOf(const GateRecord &record, const QString &folder)
{
    QStringList endings;
    const QStringList files = QDir(folder).entryList({record.name + QStringLiteral("*")},
                                                     QDir::Files, QDir::Name);
    for (const QString &file : files)
        endings.append(file.mid(record.name.size()));
    return endings;
}
