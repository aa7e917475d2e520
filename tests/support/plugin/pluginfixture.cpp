// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A plugin object on the scripted database, in the test's own executable.
#include "support/plugin/pluginfixture.h"

#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"
#include "repository/orvdbsettings.h"

#include <QTimer>
#include <QtTest>

PluginFixture::PluginFixture() = default;

PluginFixture::~PluginFixture()
{
    destroy();
}

void PluginFixture::create(quint8 logLevel)
{
    plugin = std::make_unique<TalvenHR>();
    plugin->setLogLevel(logLevel);
    plugin->setDatabase(script.handle());
}

void PluginFixture::createRunning(quint8 logLevel, const QStringList &iniLines)
{
    environment.writeIni(
        QStringList {QStringLiteral("enabled=true"), QStringLiteral("importFile=/nowhere/ron.data")}
        + iniLines);
    create(logLevel);
    QVERIFY(plugin->start());
    onWorkerThread();
    log.clear();
}

void PluginFixture::destroy()
{
    plugin.reset();
    for (const std::function<void()> &remove : leftBehind)
        remove();
    leftBehind.clear();
}

void PluginFixture::onWorkerThread(const std::function<void()> &step)
{
    QObject trigger;
    QObject::connect(&trigger, &QObject::objectNameChanged, peer().worker, step,
                     Qt::BlockingQueuedConnection);
    trigger.setObjectName(QStringLiteral("now"));
}

void PluginFixture::tick()
{
    QVERIFY(QMetaObject::invokeMethod(peer().worker, "checkSync", Qt::BlockingQueuedConnection));
}

void PluginFixture::tickUntil(Gate &gate)
{
    QVERIFY(QMetaObject::invokeMethod(peer().worker, "checkSync", Qt::QueuedConnection));
    QVERIFY(gate.waitUntilReached());
}

void PluginFixture::restart(const std::function<void()> &call)
{
    OrvDbSettings *const settings = worker().orvSettings;
    call();
    QVERIFY2(worker().orvSettings != settings, "the call has not started the worker");
    // The new children have no parent.
    QTimer *const timer = worker().timer;
    BranchesRepository *const branches = worker().branchesRepo;
    GroupsPlanRepo *const plans = worker().groupsPlanRepo;
    leftBehind.push_back([settings, timer, branches, plans] {
        delete settings;
        delete timer;
        delete branches;
        delete plans;
    });
}
