// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The built library, loaded as a server loads it, with a look at its members.
#include "support/endurance/loadedplugin.h"

#include <QFile>
#include <QTimer>
#include <QtTest>

#include <algorithm>

LoadedPlugin::LoadedPlugin()
{
    loader.setFileName(QStringLiteral(TALVENHR_PLUGIN_FILE));
    loader.setLoadHints({}); // otherwise the library stays in memory when it is unloaded
}

LoadedPlugin::~LoadedPlugin()
{
    unload();
}

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
    QFile file(draft);
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (const QString &line : lines)
        file.write(line.toUtf8() + '\n');
    file.close();
    QVERIFY(file.rename(exportPath()));
}

void LoadedPlugin::create(quint8 logLevel, const QSqlDatabase &handle)
{
    if (!loader.isLoaded() && !loader.load())
        qFatal("%s", qPrintable(loader.errorString()));
    plugin = static_cast<TalvenHR *>(loader.instance());
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
    if (loader.isLoaded())
        loader.unload();
}

bool LoadedPlugin::isMapped() const
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(maps.fileName()));
    const QList<QByteArray> lines = maps.readAll().split('\n');
    const QByteArray file = QFile::encodeName(loader.fileName());
    return std::any_of(lines.begin(), lines.end(), [&file](const QByteArray &line) {
        return line.contains(" r-xp ") && line.endsWith(file);
    });
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
