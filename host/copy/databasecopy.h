// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A copy of an attendance database, for a pass that may change whatever it likes.
#pragma once

#include "host/base/failure.h"
#include "host/copy/copiedschema.h"
#include "host/copy/copyfacts.h"
#include "host/copy/copytarget.h"
#include "host/copy/serversettings.h"
#include "host/database/connectionparameters.h"

#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QObject>

#include <functional>

/// What a pass reads and writes of a database, as it was at one moment, in a private server.
///
/// The source is only read, through one connection and in one transaction that can do nothing else:
/// no lock that keeps anybody from writing, and no right but to read. (A dump program has one
/// condition for all tables of a call, and several calls see several moments. It also needs the
/// password in a file or in its environment, and knows nothing of the options of a driver.)
///
/// Owned by a command and used on its thread. The server ends with the object; the folder stays.
class DatabaseCopy : public QObject
{
    Q_OBJECT

public:
    /// The folder is new or empty, and becomes its owner's only.
    explicit DatabaseCopy(const QString &folder, QObject *parent = nullptr);

    /// Asked many times a second while make() makes and fills the server, true breaks it off; not
    /// while the source answers a statement, of which there is one to some ten thousand rows, or to
    /// a table without a number as its key. A source that says nothing for minutes is given up.
    void setInterruption(const std::function<bool()> &wanted)
    {
        target.server().setInterruption(wanted);
    }

    /// Makes the private server and fills it; to be called once. Refused (ExitRefused) if the copy
    /// would not be whole. After any failure the copy is of no use, and what there is of it stays
    /// in the folder.
    Failure make(const ConnectionParameters &source, const CopyWishes &wishes, CopyFacts *facts);
    void stop();
    /// As stop(), for a copy that nobody needs any more: what was not written yet is lost.
    void discard() { target.server().kill(); }
    qint64 serverProcessId() const { return target.server().processId(); }

    /// Of the copy, for a login of the source's name. It may read and write every table and call
    /// every routine: whether the plugin's own login may do so at the source is not looked at.
    ConnectionParameters parameters() const;
    /// With the rights of the server's administrator.
    ConnectionParameters administratorParameters() const;

Q_SIGNALS:
    /// What takes its time just now; the same again as long as it goes on.
    void progress(const QString &what);
    void died(const QString &reason);

private:
    Failure copy(const QSqlDatabase &source, const CopyWishes &wishes, CopyFacts *facts);
    Failure copyTables(const QSqlDatabase &source, const CopyWishes &wishes, CopyFacts *facts);
    Failure copyRows(const QSqlDatabase &source, const CopiedTable &table, const CopyWishes &wishes,
                     qint64 *rows);
    void digestDefinitions(const ServerSettings &settings);
    void tellRows(const QString &table, qint64 rows);

    CopyTarget target;
    CopiedSchema schema;
    QString user;
    QCryptographicHash digest {QCryptographicHash::Sha256};
    QElapsedTimer lastTold;
};
