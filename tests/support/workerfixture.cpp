// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A worker on the scripted database, driven by hand.
#include "support/workerfixture.h"

#include "repository/orvdbsettings.h"

#include <QFile>
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
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    for (const QString &line : lines)
        file.write(line.toUtf8() + '\n');
    worker.setImportFile(path);
    return path;
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
