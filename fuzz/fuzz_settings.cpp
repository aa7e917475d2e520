// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Any bytes as the INI file, held against a model of the settings.
#include "check.h"
#include "environment/envirosettings.h"
#include "memoryfile.h"
#include "messagelist.h"
#include "settingsmodel.h"
#include "support/pluginpeer.h"
#include "support/workerpeer.h"

#include <QCoreApplication>
#include <QSemaphore>
#include <QTemporaryDir>

#include <memory>

namespace {

/// One plugin object for the whole run, whose settings change. Its thread runs from the beginning,
/// so that init() finds it started and no worker begins to tick.
class Plugin
{
public:
    Plugin() :
        peer(plugin)
    {
        QSemaphore started;
        QObject::connect(&peer.workerThread, &QThread::started, [&started] { started.release(); });
        peer.workerThread.start();
        started.acquire();
        peer.workerThread.disconnect();
    }

    /// What the first start() of a plugin over this INI file makes of it.
    bool init(const QString &iniFile)
    {
        delete peer.settings;
        peer.settings = new EnviroSettings(iniFile, QSettings::IniFormat, nullptr);
        peer.settings->setIniCodec("UTF-8");
        peer.worker = nullptr;
        bool done = false;
        FUZZ_CHECK(QMetaObject::invokeMethod(&plugin, "init", Qt::DirectConnection,
                                             Q_RETURN_ARG(bool, done)),
                   QStringLiteral("init() not reached"));
        worker.reset(peer.worker);
        return done;
    }

private:
    TalvenHR plugin;

public:
    PluginPeer peer;
    /// Null after an init() that found the plugin disabled. Goes before the thread ends, which
    /// would delete it.
    std::unique_ptr<THRWorker> worker;
};

/// The variables of the process stand in for keys; only HOME and the like are left.
void forgetVariables()
{
    for (const char *name : {"ENABLED", "TIMERINTERVAL", "SYNCINTERVAL", "TESTMODE", "IMPORTFILE",
                             "DELETEFILE", "SYNCCOMMAND", "SYNCCOMMANDRUN", "DEPARTMENTID"})
        qunsetenv(name);
}

QString textOf(const QHash<ushort, QString> &texts)
{
    QStringList all;
    for (auto it = texts.constBegin(); it != texts.constEnd(); ++it)
        all.append(QStringLiteral("%1='%2'").arg(it.key()).arg(it.value()));
    return all.join(QLatin1Char(' '));
}

void compare(const WorkerPeer &worker, const SettingsModel &model)
{
    const auto differs = [](const char *key) {
        return QStringLiteral("another %1").arg(QLatin1String(key));
    };
    FUZZ_CHECK(worker.timerInterval == model.timerInterval, differs("timerInterval"));
    FUZZ_CHECK(worker.timerInterval >= 1000, differs("shortest timerInterval"));
    FUZZ_CHECK(worker.syncInterval == model.syncInterval, differs("syncInterval"));
    FUZZ_CHECK(worker.testMode == model.testMode, differs("testMode"));
    FUZZ_CHECK(worker.importFile == model.importFile, differs("importFile"));
    FUZZ_CHECK(worker.deleteFile == model.deleteFile, differs("deleteFile"));
    FUZZ_CHECK(worker.syncCommand == model.syncCommand, differs("syncCommand"));
    FUZZ_CHECK(worker.syncCommandRun == model.syncCommandRun, differs("syncCommandRun"));
    FUZZ_CHECK(worker.departmentId == model.departmentId, differs("departmentId"));
    FUZZ_CHECK(worker.mes == model.mes,
               textOf(worker.mes) + QStringLiteral(" is not ") + textOf(model.mes));
}

/// Each key that is read is told at any level; nothing else is, but that the plugin is disabled
/// and, by Qt, that a value in the group MES has no key.
void checkMessages(bool enabled)
{
    for (const QString &message : MessageList::all()) {
        const bool known = message.startsWith(
                               QLatin1String("debug EnviroSettings::value() - key: '"))
            || (enabled ? message == QLatin1String("warning QSettings::value: Empty key passed")
                        : message == QLatin1String("warning TalvenHR is DISABLED"));
        FUZZ_CHECK(known, message);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    MessageList::install();
    forgetVariables();
    static QTemporaryDir home(QStringLiteral("/dev/shm/fuzz-XXXXXX"));
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    static QCoreApplication application(*argc, *argv);
    return 0;
}

/// All bytes are the INI file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    static MemoryFile file;
    static Plugin plugin;
    file.setContent(data, size);
    MessageList::clear();
    const bool enabled = plugin.init(file.path());

    QSettings reference(file.path(), QSettings::IniFormat);
    reference.setIniCodec("UTF-8");
    const SettingsModel model = modelOfSettings(reference);
    FUZZ_CHECK(enabled == model.enabled && plugin.peer.enabled == enabled,
               QStringLiteral("another enabled"));
    FUZZ_CHECK(enabled == static_cast<bool>(plugin.worker), QStringLiteral("a worker too many"));
    if (enabled)
        compare(WorkerPeer(*plugin.worker), model);
    checkMessages(enabled);
    FUZZ_CHECK(plugin.peer.settings->group().isEmpty(), QStringLiteral("a group left open"));
    return 0;
}
