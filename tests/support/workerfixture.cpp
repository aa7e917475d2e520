// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A worker on the scripted database, driven by hand.
#include "support/workerfixture.h"

#include "repository/orvdbsettings.h"
#include "support/textfile.h"

#include <QtTest>

WorkerFixture::WorkerFixture() :
    peer(worker),
    settings(new OrvDbSettings(QSqlDatabase()))
{
    worker.setOrvDb(script.handle());
    peer.db.open();
    settings->setDb(peer.db);
    peer.orvSettings = settings;
    log.clear();
}

WorkerFixture::~WorkerFixture()
{
    if (peer.orvSettings != settings)
        delete settings;
}

void WorkerFixture::init()
{
    const quint8 level = peer.logLevel;
    peer.logLevel = 0;
    worker.init();
    peer.logLevel = level;
}

void WorkerFixture::tick()
{
    QVERIFY(QMetaObject::invokeMethod(&worker, "checkSync", Qt::DirectConnection));
}

QString WorkerFixture::writeExport(const QStringList &lines)
{
    const QString path = filePath(QStringLiteral("ron.data"));
    writeLines(path, lines);
    worker.setImportFile(path);
    return path;
}

void WorkerFixture::known(const EmployeeRecord &row)
{
    peer.dbPeople.insert(row.pid(), row);
}

void WorkerFixture::stated(const EmployeeRecord &last)
{
    peer.lastRecords.insert(last.pid(), last);
}

QStringList WorkerFixture::sync(const EmployeeRecord &given)
{
    worker.doSyncRecord(given);
    return log.take();
}

void WorkerFixture::answer(const char *call, const QVariant &value, int times)
{
    script.on(str(call), times).withRows({QStringLiteral("answer")}, {{value}});
}

void WorkerFixture::fail(const char *call, const char *code, const char *text)
{
    script.on(str(call)).withError(str(code), str(text));
}

void WorkerFixture::listInPam(const QString &pids)
{
    script.on(QStringLiteral("FROM vars WHERE name LIKE 'exportPam.%.active%'"))
        .withRows({QStringLiteral("name"), QStringLiteral("value")},
                  {{QStringLiteral("exportPam.1.active"), QStringLiteral("1")}});
    script.on(QStringLiteral("FROM vars WHERE name='exportPam.1.selPeople'"))
        .withRows({QStringLiteral("value")}, {{pids}});
}

QString WorkerFixture::filePath(const QString &name) const
{
    return folder.filePath(name);
}
