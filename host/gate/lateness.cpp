// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Since when no export has come.
#include "host/gate/lateness.h"

#include "host/base/ownerfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

QString beginPath(const QString &stateFolder)
{
    return QDir(stateFolder).filePath(QStringLiteral("begun"));
}

QString latePath(const QString &stateFolder)
{
    return QDir(stateFolder).filePath(QStringLiteral("late"));
}

/// Empty if there is none.
QByteArray lastName(const QVector<GateRecord> &records)
{
    return records.isEmpty() ? QByteArray() : records.constLast().name.toUtf8();
}

} // namespace

Failure noteGateBegin(const QString &stateFolder, const QDateTime &now)
{
    const QString path = beginPath(stateFolder);
    if (QFileInfo::exists(path))
        return {};
    const QByteArray text = now.toUTC().toString(Qt::ISODate).toUtf8() + '\n';
    return writeOwnerFile(path, [&text](QIODevice *file) { file->write(text); });
}

QDateTime nothingSince(const QVector<GateRecord> &records, const QString &stateFolder)
{
    if (!records.isEmpty())
        return records.constLast().when;
    QFile file(beginPath(stateFolder));
    if (stateFolder.isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return QDateTime::fromString(QString::fromUtf8(file.readLine()).trimmed(), Qt::ISODate);
}

bool wasLatenessTold(const QVector<GateRecord> &records, const QString &stateFolder)
{
    QFile mark(latePath(stateFolder));
    return !stateFolder.isEmpty() && mark.open(QIODevice::ReadOnly)
        && mark.readAll().trimmed() == lastName(records);
}

Failure noteLateness(const QVector<GateRecord> &records, const QString &stateFolder)
{
    const QByteArray name = lastName(records);
    return writeOwnerFile(latePath(stateFolder), [&name](QIODevice *file) { file->write(name); });
}
