// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A worker on the private server, driven by hand.
#include "support/databaseworker.h"

#include "support/recordeddatabase.h"
#include "support/textfile.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QtTest>

DatabaseWorker::DatabaseWorker(TestDatabase &database, Calls calls) :
    peer(worker)
{
    worker.setOrvDb(calls == Recorded ? recordedHandle(database.handle()) : database.handle());
    connection.name = peer.db.connectionName();
    if (!peer.db.open())
        qFatal("no connection: %s", qPrintable(peer.db.lastError().text()));
    worker.init();
    log.clear();
}

void DatabaseWorker::tick()
{
    QVERIFY(QMetaObject::invokeMethod(&worker, "checkSync", Qt::DirectConnection));
}

QString DatabaseWorker::writeExport(const QStringList &lines)
{
    const QString path = folder.filePath(QStringLiteral("ron.data"));
    writeLines(path, lines);
    worker.setImportFile(path);
    return path;
}

void DatabaseWorker::setClock(qint64 seconds)
{
    QSqlQuery query(peer.db);
    QVERIFY(query.exec(QStringLiteral("SET timestamp = %1").arg(seconds)));
}
