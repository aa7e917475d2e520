// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// A small host: loads the plugin, lets it run one pass, and ends it.
//
// Usage: small_host DATA_FOLDER SOCKET DATABASE USER [PLUGIN]
// DATA_FOLDER holds TalvenHR.ini; an empty one leaves the search to the plugin. Exit code 0: a pass
// is over; 1: the plugin runs none; 2: it cannot be used at all.
#include "plugin/serverinterface.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QPluginLoader>
#include <QSettings>
#include <QTemporaryDir>

#include <atomic>
#include <cstdio>

namespace {

std::atomic<bool> passIsOver {false};

/// The plugin answers through the log alone. Its worker calls this on a thread of its own.
void takeMessage(QtMsgType, const QMessageLogContext &, const QString &text)
{
    std::fprintf(stderr, "%s\n", qPrintable(text));
    if (text.startsWith(QLatin1String("THRWorker: END synchronization #")))
        passIsOver = true;
    else if (text != QLatin1String("TalvenHR is DISABLED")
             && text != QLatin1String("THRWorker::checkSync() - database not open!"))
        return;
    QMetaObject::invokeMethod(qApp, "quit", Qt::QueuedConnection);
}

/// The end of a pass is a debug line: rules of the machine must not switch it off.
void keepDebugLines(QLoggingCategory *category)
{
    if (qstrcmp(category->categoryName(), "default") == 0)
        category->setEnabled(QtDebugMsg, true);
}

/// For this process alone, the machine's settings are a file in the temporary folder.
void pointPluginTo(const QString &dataFolder, const QTemporaryDir &machineSettings)
{
    QSettings::setPath(QSettings::NativeFormat, QSettings::SystemScope, machineSettings.path());
    QSettings settings(QSettings::SystemScope, QStringLiteral("KESTRA-LK"), QStringLiteral("ORV"));
    const QString key = QCoreApplication::applicationDirPath().replace(QLatin1Char('/'),
                                                                       QLatin1Char('|'));
    settings.setValue(QStringLiteral("dataDirs/") + key, dataFolder);
}

/// The server's handle, which need not be open: the plugin makes a connection of its own from it.
QSqlDatabase makeHandle(const QString &socket, const QString &database, const QString &user)
{
    QSqlDatabase handle = QSqlDatabase::addDatabase(QStringLiteral("QMYSQL"));
    handle.setConnectOptions(QStringLiteral("UNIX_SOCKET=") + socket);
    handle.setDatabaseName(database);
    handle.setUserName(user);
    return handle;
}

/// Null when the file is no plugin of this kind. One of another kind is not loaded.
QObject *loadPlugin(QPluginLoader &loader)
{
    const QString iid = loader.metaData().value(QStringLiteral("IID")).toString();
    if (iid != QLatin1String(qobject_interface_iid<ServerInterface *>()))
        return nullptr;
    loader.setLoadHints({}); // or Qt keeps the file in memory
    return loader.instance();
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 5) {
        std::fputs("Usage: small_host DATA_FOLDER SOCKET DATABASE USER [PLUGIN]\n", stderr);
        return 2;
    }
    qInstallMessageHandler(takeMessage);
    QLoggingCategory::installFilter(keepDebugLines);

    // Before the plugin is made, which looks for its settings at once.
    const QTemporaryDir machineSettings;
    if (!arguments.at(1).isEmpty())
        pointPluginTo(arguments.at(1), machineSettings);

    const QString file = arguments.value(5, QStringLiteral(PLUGIN_FILE));
    QPluginLoader loader(file);
    QObject *const plugin = loadPlugin(loader);
    ServerInterface *const server = qobject_cast<ServerInterface *>(plugin);
    if (!server) {
        std::fprintf(stderr, "small_host: '%s' is no plugin for a host. %s\n", qPrintable(file),
                     qPrintable(loader.errorString()));
        return 2;
    }

    server->setLogLevel(1); // from 1 on the log tells of passes
    server->setDatabase(makeHandle(arguments.at(2), arguments.at(3), arguments.at(4)));
    if (server->start())
        QCoreApplication::exec();

    delete plugin; // waits for what is left of the pass
    loader.unload();
    return passIsOver ? 0 : 1;
}
