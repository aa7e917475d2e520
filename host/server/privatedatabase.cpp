// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A private server with the stand-in for the attendance database and its sample company.
#include "host/server/privatedatabase.h"

#include "host/base/programpaths.h"

#include <QFile>
#include <QFileInfo>

namespace {

QString databaseName()
{
    return QStringLiteral("attendance");
}

} // namespace

PrivateDatabase::PrivateDatabase(const QString &folder, QObject *parent) :
    QObject(parent),
    directory(folder),
    server(folder)
{
    connect(&server, SIGNAL(died(QString)), this, SIGNAL(died(QString)));
    connect(&server, SIGNAL(progress(QString)), this, SIGNAL(progress(QString)));
}

void PrivateDatabase::setInterruption(const std::function<bool()> &wanted)
{
    server.setInterruption(wanted);
}

Failure PrivateDatabase::start()
{
    QString error;
    if (server.start(&error) && makeContent(&error))
        return {};
    return {server.failureCode(), error};
}

Failure PrivateDatabase::startOrJoin()
{
    QString error;
    if (!server.startOrJoin(&error))
        return {server.failureCode(), error};
    if (server.isRunning())
        return makeContent(&error) ? Failure() : Failure {server.failureCode(), error};
    if (hasContent())
        return {};
    return {ExitRefused,
            QStringLiteral("the private database in '%1' is just being filled by another process; "
                           "wait until it is complete, or name another folder")
                .arg(directory)};
}

void PrivateDatabase::waitForJoiners()
{
    server.waitForJoiners();
}

void PrivateDatabase::stop()
{
    server.stop();
}

ConnectionParameters PrivateDatabase::parameters() const
{
    ConnectionParameters parameters;
    parameters.socket = server.socketPath();
    parameters.database = databaseName();
    return parameters;
}

ConnectionParameters PrivateDatabase::administratorParameters() const
{
    ConnectionParameters administrator = parameters();
    administrator.user = QStringLiteral("root");
    return administrator;
}

Failure PrivateDatabase::converse(const QString &statements, int *exitCode)
{
    QString error;
    if (server.converse(databaseName(), statements, exitCode, &error))
        return {};
    return {ExitDatabase, error};
}

/// Complete: neither just being loaded nor broken off.
bool PrivateDatabase::hasContent() const
{
    return !QFileInfo::exists(loadingMark())
        && QFileInfo(directory + QStringLiteral("/data/") + databaseName()).isDir();
}

QString PrivateDatabase::loadingMark() const
{
    return directory + QStringLiteral("/content.loading");
}

/// A file stands for the time of the loading: where it is found, the loading was broken off.
bool PrivateDatabase::makeContent(QString *error)
{
    if (hasContent())
        return true;
    QFile mark(loadingMark());
    if (!mark.open(QIODevice::WriteOnly)) {
        *error = QStringLiteral("cannot write '%1': %2").arg(mark.fileName(), mark.errorString());
        return false;
    }
    mark.close();
    contentIsNew = true;
    if (!loadContent(error))
        return false;
    if (mark.remove())
        return true;
    *error = QStringLiteral("cannot remove '%1': %2").arg(mark.fileName(), mark.errorString());
    return false;
}

/// In place of whatever was loaded before.
bool PrivateDatabase::loadContent(QString *error)
{
    const QString folder = defaultDatabaseFolder();
    const QStringList tables = databaseFiles(
        folder, {QStringLiteral("schema"), QStringLiteral("routines")});
    if (tables.isEmpty()) {
        *error = QStringLiteral("the files of the database were not found in '%1'; install them "
                                "together with this program")
                     .arg(folder);
        return false;
    }
    const auto load = [&](const QStringList &files) {
        return server.loadFiles(databaseName(), files, error);
    };
    const auto loadCompany = [&] {
        return company.isEmpty()
            ? load(databaseFiles(folder, {QStringLiteral("sample")}))
            : server.execute(databaseName(), QString::fromUtf8(company), error);
    };
    const QString drop = QStringLiteral("DROP DATABASE IF EXISTS `%1`").arg(databaseName());
    return server.execute(QString(), drop, error) && server.createDatabase(databaseName(), error)
        && load(tables) && loadCompany() && load(databaseFiles(folder, {QStringLiteral("grants")}));
}
