// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The database that a command only looks at.
#include "host/commands/databaselook.h"

#include "host/base/signalwatch.h"
#include "host/report/logwriter.h"
#include "host/server/privatedatabase.h"

DatabaseLook::DatabaseLook() :
    connection(QStringLiteral("look"))
{ }

/// Those who look at the same time have joined the server that was started here.
DatabaseLook::~DatabaseLook()
{
    if (privateDatabase)
        privateDatabase->waitForJoiners();
}

Failure DatabaseLook::open(const DatabaseChoice &choice)
{
    named = choice.connection;
    if (choice.privateFolder.isEmpty())
        return connection.open(withTimeLimits(choice.connection, patience));
    if (const Failure failure = startPrivate(choice.privateFolder))
        return failure;
    return connection.open(withTimeLimits(privateDatabase->parameters(), patience));
}

ConnectionParameters DatabaseLook::parameters() const
{
    return privateDatabase ? privateDatabase->administratorParameters() : named;
}

Failure DatabaseLook::startPrivate(const QString &folder)
{
    const SignalWatch signalWatch;
    LogWriter writer(LogFormat::Text);
    privateDatabase.reset(new PrivateDatabase(folder));
    privateDatabase->setInterruption([&] { return signalWatch.hasCaught(); });
    QObject::connect(privateDatabase.data(), &PrivateDatabase::progress, [&](const QString &what) {
        if (ProgressBar::isPossible())
            writer.activity(what);
    });
    const Failure failure = privateDatabase->startOrJoin();
    QObject::disconnect(privateDatabase.data(), &PrivateDatabase::progress, nullptr, nullptr);
    privateDatabase->setInterruption({});
    writer.wipeProgress();
    return failure;
}
