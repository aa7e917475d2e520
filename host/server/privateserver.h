// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A MariaDB server of one's own, for trying and testing.
#pragma once

#include "host/base/childprocess.h"
#include "host/base/failure.h"
#include "host/server/privatefolder.h"
#include "host/server/serverlog.h"

#include <QElapsedTimer>
#include <QObject>
#include <QStringList>

#include <functional>

/// A MariaDB server of one's own: data in one folder, reachable through a unix socket only.
///
/// Owned by whoever needs the server and used on one thread, which has to outlive it. The server
/// runs as the user of the process, ends with the object, and on Linux with the process too. It
/// takes the process's time zone. Its administrator is root without a password; the folder's
/// permissions keep others out.
class PrivateServer : public QObject
{
    Q_OBJECT

public:
    /// Nothing is started. The folder may be missing, empty, or one of an earlier private server.
    explicit PrivateServer(const QString &directory, QObject *parent = nullptr);
    /// Stops the server in order and waits for its end.
    ~PrivateServer() override;

    /// Further options for mariadbd; to be called before start().
    void setServerOptions(const QStringList &options);

    /// Further options for the mariadbd that makes the data; likewise.
    void setDataOptions(const QStringList &options) { dataOptions = options; }

    /// Asked many times a second while start(), startOrJoin(), loadFiles(), execute() and feed()
    /// wait: true breaks them off, with the data or the content unfinished.
    void setInterruption(const std::function<bool()> &wanted);
    /// How long the server may take to answer; a minute unless told otherwise.
    void setPatience(int milliseconds);
    /// Nobody needs the server when this process has died: it is killed then, and not asked to end,
    /// which one that is only starting may miss.
    void dieWithHost() { server.dieWithHost(); }

    /// Makes the data on first use and waits until the server answers. False with the reason.
    bool start(QString *error);
    /// As start(), but on data that are there already; joins the server that another process runs
    /// in the folder, or takes the folder once that has ended. A server that was joined is not
    /// stopped.
    bool startOrJoin(QString *error);
    /// To be called before stop() by whoever others may have joined: waits until they have gone,
    /// for half a minute at most.
    void waitForJoiners();
    /// What the failure that was told last means for the exit code: another process has the folder,
    /// it was interrupted, or the database cannot be used.
    ExitCode failureCode() const;
    /// Asks the server to end and waits for it.
    void stop();
    /// Kills the server and waits for its end.
    void kill();

    /// The data were made by this object.
    bool isFirstUse() const { return firstUse; }
    bool isRunning() const;
    /// The server's process, 0 when it does not run or is another process's.
    qint64 processId() const { return server.processId(); }
    QString socketPath() const
    {
        return joinedSocket.isEmpty() ? folder.socketPath() : joinedSocket;
    }

    /// Creates a database whose texts are utf8mb4.
    bool createDatabase(const QString &name, QString *error);
    /// Loads SQL files in the given order, as the administrator. Stops at the first fault.
    bool loadFiles(const QString &database, const QStringList &files, QString *error);
    /// Runs statements as the administrator; an empty database name selects none.
    bool execute(const QString &database, const QString &statements, QString *error);
    /// As execute(), for statements that load the client's standard input (a LOAD DATA LOCAL of
    /// /dev/stdin). It comes piece by piece, each asked for when there is room for it; an empty
    /// piece is the end. `output` is what the statements have answered. What was sent before a
    /// fault may have been loaded.
    bool feed(const QString &database, const QString &statements,
              const std::function<QByteArray()> &nextPiece, QByteArray *output, QString *error);
    /// Hands the terminal over to the client, for statements or with none for a conversation.
    /// `exitCode` is the client's. False when there is no client.
    bool converse(const QString &database, const QString &statements, int *exitCode,
                  QString *error);

Q_SIGNALS:
    /// What takes its time just now; the same again as long as it goes on.
    void progress(const QString &what);
    /// The server ended without having been asked to.
    void died(const QString &reason);

private Q_SLOTS:
    void handleEnd(int exitCode, QProcess::ExitStatus status);

private:
    bool tryToJoin();
    bool waitForHolder(const QElapsedTimer &waiting, QString *error);
    bool runClient(const QString &database, const QByteArray &input, QString *error);
    bool sendPieces(ChildProcess *process, const std::function<QByteArray()> &nextPiece,
                    QString *error);
    bool endClient(ChildProcess *process, QString *error);
    bool makeData(QString *error);
    void startInstallation(const QString &install, ChildProcess *process) const;
    bool attend(ChildProcess *process, const QString &what, const std::function<QByteArray()> &text,
                QString *error);
    bool isHopeless(const QByteArray &text, const QElapsedTimer &waiting, QString *error);
    QString diskTrouble(const QByteArray &text, const QElapsedTimer &waiting) const;
    QString reason(const QByteArray &text, const QProcess &process) const;
    bool waitUntilItAnswers(QString *error);
    QStringList serverOptions() const;
    QStringList clientOptions(const QString &database) const;

    PrivateFolder folder;
    LogSection log; ///< of the server's last start
    std::function<bool()> isInterrupted;
    int patience = 60000; ///< milliseconds
    QStringList furtherOptions;
    QStringList dataOptions;
    QString joinedSocket; ///< empty unless the server is another process's
    ChildProcess server;
    bool firstUse = false;
    bool brokenOff = false; ///< by isInterrupted
    bool endWanted = false;
};

/// The SQL files of these parts ("schema", "routines", ...) of a database folder: the parts in the
/// given order, the files of each in the order of their names.
QStringList databaseFiles(const QString &databaseFolder, const QStringList &parts);
