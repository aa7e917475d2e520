// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A private server with the stand-in for the attendance database and its sample company.
#pragma once

#include "host/base/failure.h"
#include "host/database/connectionparameters.h"
#include "host/server/privateserver.h"

/// What `talvenhr run` synchronises into when no other database is named.
///
/// Owned by the command and used on its thread. The content is made on first use and kept from then
/// on; one that was broken off in the making is made anew.
class PrivateDatabase : public QObject
{
    Q_OBJECT

public:
    explicit PrivateDatabase(const QString &directory, QObject *parent = nullptr);

    /// New content has these rows in place of the sample company: statements for the client, to run
    /// on the empty tables. To be called before the start.
    void setCompany(const QByteArray &statements) { company = statements; }
    /// Asked many times a second while start() or startOrJoin() wait: true breaks them off.
    void setInterruption(const std::function<bool()> &wanted);

    /// Starts the server and sees to the content.
    Failure start();
    /// As start(), or joins whoever is at work on the folder, once its content is complete.
    Failure startOrJoin();
    /// To be called before the end: waits, for half a minute at most, for those who have joined.
    void waitForJoiners();
    void stop();
    qint64 serverProcessId() const { return server.processId(); }

    /// The content was made by this object.
    bool isNew() const { return contentIsNew; }
    ConnectionParameters parameters() const;
    /// With the rights of the server's administrator.
    ConnectionParameters administratorParameters() const;
    /// Hands the terminal over to a client, for statements or with none for a conversation.
    /// `exitCode` is the client's.
    Failure converse(const QString &statements, int *exitCode);

Q_SIGNALS:
    /// What takes its time just now; the same again as long as it goes on.
    void progress(const QString &what);
    void died(const QString &reason);

private:
    bool hasContent() const;
    QString loadingMark() const;
    bool makeContent(QString *error);
    bool loadContent(QString *error);

    const QString directory;
    PrivateServer server;
    QByteArray company; ///< empty: the sample
    bool contentIsNew = false;
};
