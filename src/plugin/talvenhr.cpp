// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin object: what the attendance server holds.
#include "plugin/talvenhr.h"

#include "environment/directories.h"
#include "environment/envirosettings.h"
#include "plugin/buildstamp.h"
#include "worker/thrworker.h"

#include <QDebug>
#include <QFileInfo>

#include <climits>

namespace {

const char pluginVersion[] = TALVENHR_VERSION;
const char pluginType[] = "PLG.TH";
const char databaseVersion[] = "20.11.26";

} // namespace

TalvenHR::TalvenHR(QObject *parent) :
    QObject(parent)
{
    const QString iniFile = QStringLiteral("%1/TalvenHR.ini").arg(dataDir(true, QString()));
    if (!QFileInfo(iniFile).isFile())
        qWarning() << "TalvenHR: INI file not found on:" << iniFile;

    settings = new EnviroSettings(iniFile, QSettings::IniFormat, nullptr);
    settings->setIniCodec("UTF-8");
}

TalvenHR::~TalvenHR()
{
    delete settings;
    workerThread.quit();
    workerThread.wait(ULONG_MAX);
    // The worker is gone by now: it is deleted when the thread has finished.
}

QString TalvenHR::getVersion() const
{
    return QString::fromLatin1(pluginVersion);
}

QMap<QString, QString> TalvenHR::getVerInfo() const
{
    QMap<QString, QString> info;
    info.insert(QStringLiteral("VER"), getVersion());
    info.insert(QStringLiteral("phoryType"), QString::fromLatin1(pluginType));
    const QString build = buildStamp(QStringLiteral(__DATE__), QStringLiteral(__TIME__));
    if (!build.isEmpty())
        info.insert(QStringLiteral("BUILD"), build);
    info.insert(QStringLiteral("ORVDB"), QString::fromLatin1(databaseVersion));
    return info;
}

bool TalvenHR::start()
{
    if (logLevel)
        qDebug("Start TalvenHR..");
    if (!enabled)
        return true;

    if (!initialised)
        initialised = init();
    else
        // Deliberate: a direct call on the server's thread, neither queued nor locked, here and in
        // stop(), pause() and resume(). Pinned by
        // tst_Lifecycle::laterCallsReachTheWorkerDirectly().
        worker->start();

    // Out of reach as long as init() fails only for a disabled plugin.
    if (enabled && !initialised) {
        qWarning("TalvenHR not start properly - init failed!");
        return false;
    }
    return true;
}

void TalvenHR::stop()
{
    if (logLevel)
        qDebug("Stop TalvenHR..");
    if (enabled && worker)
        worker->stop();
}

void TalvenHR::pause()
{
    if (logLevel)
        qDebug("Pause TalvenHR..");
    if (enabled && worker)
        worker->stop();
}

void TalvenHR::resume()
{
    if (logLevel)
        qDebug("Resume TalvenHR..");
    if (enabled && worker)
        worker->start();
}

bool TalvenHR::init()
{
    if (logLevel)
        qDebug("TalvenHR::init()");

    enabled = settings->value(QStringLiteral("enabled"), false).toBool();
    if (!enabled) {
        qWarning("TalvenHR is DISABLED");
        return false;
    }

    const uint timerInterval = settings->value(QStringLiteral("timerInterval"), 60).toUInt();
    const uint syncInterval = settings->value(QStringLiteral("syncInterval"), 60).toUInt();

    worker = new THRWorker(nullptr);
    worker->moveToThread(&workerThread);
    worker->setLogLevel(logLevel);
    worker->setOrvDb(db);
    // Deliberate: seconds become milliseconds in 32 bits, so 4294968 and more wrap round. Pinned by
    // tst_Settings::timerInterval().
    worker->setTimerInterval(timerInterval * 1000);
    worker->setSyncInterval(syncInterval);
    passOnSettings();
    passOnStateTexts();

    connect(&workerThread, SIGNAL(started()), worker, SLOT(start()));
    connect(&workerThread, SIGNAL(finished()), worker, SLOT(deleteLater()));
    workerThread.start(QThread::LowPriority);
    return true;
}

void TalvenHR::passOnSettings()
{
    worker->setTestMode(settings->value(QStringLiteral("testMode"), QVariant()).toBool());
    worker->setImportFile(settings->value(QStringLiteral("importFile"), QVariant()).toString());
    worker->setDeleteFile(settings->value(QStringLiteral("deleteFile"), true).toBool());
    worker->setSyncCommand(settings->value(QStringLiteral("syncCommand"), QVariant()).toString());
    // Deliberate: only the low 8 bits count, so 257 is 1. Pinned by tst_Settings::syncCommandRun().
    worker->setSyncCommandRun(
        static_cast<quint8>(settings->value(QStringLiteral("syncCommandRun"), 0).toUInt()));
    worker->setDepartmentId(settings->value(QStringLiteral("departmentId"), 1).toUInt());
}

/// The group MES: texts by state code. Deliberate: a key that is no 32-bit number lands on code
/// 0, a key beyond 16 bits on its low 16 bits, and the last key of a code wins, without a message.
/// Pinned by tst_Settings::stateTexts().
void TalvenHR::passOnStateTexts()
{
    QHash<ushort, QString> mes;
    settings->beginGroup(QStringLiteral("MES"));
    const QStringList keys = settings->allKeys();
    for (const QString &key : keys) {
        const QByteArray text = settings->value(key, QVariant()).toByteArray();
        mes.insert(static_cast<ushort>(key.toUInt()),
                   text.isNull() ? QString() : QString::fromUtf8(text.constData()));
    }
    worker->setMes(mes);
    settings->endGroup();
}
