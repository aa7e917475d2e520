// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// What the last gate has failed with, for those who look at it from outside, and who is told.
#include "host/gate/gatefailure.h"

#include "host/base/oneline.h"
#include "host/base/ownerfile.h"
#include "host/gate/hook.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

QString failedFile(const QString &stateFolder)
{
    return QDir(stateFolder).filePath(QStringLiteral("failed"));
}

/// There once the hook was called. It holds nothing: that fits on a full disk, too.
QString toldFile(const QString &stateFolder)
{
    return QDir(stateFolder).filePath(QStringLiteral("failed.told"));
}

/// What stands there stays.
void makeEmpty(const QString &path)
{
    QFile file(path);
    if (!file.exists() && file.open(QIODevice::WriteOnly))
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

bool isForTheHook(const Failure &failure)
{
    return failure.exitCode == ExitUsage || failure.exitCode == ExitDatabase
        || failure.exitCode == ExitTimeout;
}

} // namespace

QByteArray gateFailureJson(const Failure &failure, const QDateTime &when)
{
    const QJsonObject object {{QStringLiteral("format"), QStringLiteral("talvenhr.gatefailure/1")},
                              {QStringLiteral("when"), when.toUTC().toString(Qt::ISODate)},
                              {QStringLiteral("exitCode"), failure.exitCode},
                              {QStringLiteral("text"), failure.text}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

void keepGateFailure(const QString &stateFolder, const Failure &failure)
{
    if (stateFolder.isEmpty() || !QDir(stateFolder).exists())
        return;
    const QString content = QStringLiteral("%1\n%2\n")
                                .arg(QDateTime::currentDateTimeUtc().toString(Qt::ISODate),
                                     oneLine(failure.text));
    const QString path = failedFile(stateFolder);
    if (writeOwnerFile(path, [&content](QIODevice *file) { file->write(content.toUtf8()); }))
        makeEmpty(path);
}

QString tellGateFailure(const QString &stateFolder, const QString &hook, const Failure &failure)
{
    const QString told = stateFolder.isEmpty() ? QString() : toldFile(stateFolder);
    if (hook.isEmpty() || !isForTheHook(failure) || QFile::exists(told))
        return {};
    const QString trouble = runHook(hook, gateFailureJson(failure, QDateTime::currentDateTimeUtc()),
                                    hookSeconds);
    if (!told.isEmpty())
        makeEmpty(told);
    return trouble;
}

void forgetGateFailure(const QString &stateFolder)
{
    QFile::remove(failedFile(stateFolder));
    QFile::remove(toldFile(stateFolder));
}
