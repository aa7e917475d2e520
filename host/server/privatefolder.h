// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The folder of a private server: whose it is, whether it is in use, and what lies where in it.
#pragma once

#include <QLockFile>
#include <QScopedPointer>
#include <QString>

/// Knows a folder that was made for a private server from any other, and keeps two hosts from using
/// it at once. Part of a PrivateServer and used on its thread.
///
/// A folder with files of somebody else is never written to.
class PrivateFolder
{
public:
    explicit PrivateFolder(const QString &name);
    ~PrivateFolder();
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;

    /// Makes the folder (for its owner only) if it is missing, and locks it. False with the reason
    /// when it is not to be had.
    bool take(QString *error);
    /// The last take() failed because another process has the folder.
    bool isInUse() const { return inUse; }
    /// The folder was made for a private server, be it complete or not. False with the reason when
    /// it was not, or when nobody may look.
    bool isKnown(QString *error) const;
    QString name() const { return directory; }
    void release();
    /// The socket of the server of another process that has taken the folder; empty if none has.
    QString socketOfHolder() const;
    /// Keeps the holder from ending its server in order until leave(). False if it is just about
    /// to.
    bool join();
    void leave();
    /// Nobody has joined, and from now until release() nobody can.
    bool shutOthersOut();

    /// The data were made to their end, not broken off on the way.
    bool hasData() const;
    bool setHasData(QString *error) const;
    /// Removes what there is of data.
    bool clearData(QString *error) const;

    /// Seen from the folder: some programs take no path with blanks.
    static QString dataName() { return QStringLiteral("data"); }
    QString dataPath() const { return path(dataName()); }
    /// The server's own folder for temporary tables: a starting server removes those of any other
    /// that it finds.
    QString temporaryPath() const { return path(QStringLiteral("tmp")); }
    QString logPath() const { return path(QStringLiteral("server.log")); }
    QString installLogPath() const { return path(QStringLiteral("install.log")); }
    QString pidPath() const { return path(QStringLiteral("server.pid")); }
    /// Short enough for the system and plain enough for the database driver; known from take() on.
    /// Where the folder's own path is neither, it leads through this process, and ends with it.
    QString socketPath() const { return socket; }

private:
    QString path(const QString &name) const;
    QString lockPath() const { return path(QStringLiteral("talvenhr.lock")); }
    QString socketNotePath() const { return path(QStringLiteral("server.socket")); }
    QString joinersPath() const { return path(QStringLiteral("joiners.lock")); }
    bool lockJoiners(int operation);
    bool isMarked() const;
    bool makeOrRecognise(QString *error) const;
    bool make(QString *error) const;
    bool takeEmpty(QString *error) const;
    bool mark(QString *error) const;
    bool checkOwner(QString *error) const;
    bool lockIt(QString *error);
    QString holderText() const;
    bool makeTemporaryFolder(QString *error) const;
    bool waitForLeftServer(QString *error) const;
    bool findSocketPath(QString *error);

    const QString directory;
    QString socket;
    QScopedPointer<QLockFile> lock;
    bool inUse = false;
    int handle = -1; ///< of the folder, where the socket's path leads through it
    int joiners = -1; ///< of the file that those who have joined lock together
};
