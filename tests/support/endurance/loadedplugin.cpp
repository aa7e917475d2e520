// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library, loaded as a server loads it, with a look at its members.
#include "support/endurance/loadedplugin.h"

#include "support/textfile.h"

#include <QFile>
#include <QTimer>
#include <QtTest>

void LoadedPlugin::writeIni(const QStringList &lines)
{
    environment.writeIni(QStringList {QStringLiteral("enabled=true"),
                                      QStringLiteral("timerInterval=3600"),
                                      QStringLiteral("importFile=") + exportPath()}
                         + lines);
}

void LoadedPlugin::writeExport(const QStringList &lines)
{
    const QString draft = exportPath() + QStringLiteral(".new");
    QFile::remove(exportPath());
    writeLines(draft, lines);
    QVERIFY(QFile::rename(draft, exportPath()));
}

void LoadedPlugin::create(quint8 logLevel, const QSqlDatabase &handle)
{
    library.load();
    plugin = static_cast<TalvenHR *>(library.object());
    plugin->setLogLevel(logLevel);
    plugin->setDatabase(handle);
}

void LoadedPlugin::start()
{
    QVERIFY(server().start());
    onWorkerThread();
}

void LoadedPlugin::destroy()
{
    delete plugin;
    plugin = nullptr;
}

void LoadedPlugin::unload()
{
    plugin = nullptr;
    library.unload();
}

void LoadedPlugin::onWorkerThread(const std::function<void()> &step)
{
    QObject trigger;
    QObject::connect(&trigger, &QObject::objectNameChanged, peer().worker, step,
                     Qt::BlockingQueuedConnection);
    trigger.setObjectName(QStringLiteral("now"));
}

Resources LoadedPlugin::resourcesBetweenTicks()
{
    Resources resources {};
    onWorkerThread([&resources] { resources = Resources::now(); });
    return resources;
}

void LoadedPlugin::tick()
{
    QVERIFY(QMetaObject::invokeMethod(peer().worker, "checkSync", Qt::BlockingQueuedConnection));
}

void LoadedPlugin::tickEvery(int interval)
{
    onWorkerThread([this, interval] { worker().timer->start(interval); });
}
