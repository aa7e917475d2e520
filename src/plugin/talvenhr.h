// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The plugin object: what the attendance server holds. Brings the two interfaces along.
#pragma once

#include "plugin/serverinterface.h"
#include "plugin/verinfointerface.h"

#include <QObject>
#include <QThread>

class EnviroSettings;
class THRWorker;

/// Keeps the attendance database in line with the HR system, on a thread of its own.
///
/// The server owns the object and calls it from one thread. The object reads TalvenHR.ini, makes
/// the worker, hands it every setting and the server's database handle, and forwards the calls of
/// the server to it. It runs no statement itself. QCoreApplication must exist before the object
/// does.
class Q_DECL_EXPORT TalvenHR : public QObject, public ServerInterface, public VerInfoInterface
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "com.kestra-lk.oqs.ServerInterface")
    Q_INTERFACES(ServerInterface VerInfoInterface)

public:
    /// Looks for TalvenHR.ini in the data directory; warns when there is none and goes on.
    explicit TalvenHR(QObject *parent = nullptr);

    /// Ends the worker's thread. Waits for a running pass to end, without a time limit.
    ~TalvenHR() override;

    QString getVersion() const override;

    /// "VER", "phoryType", "ORVDB" and, if the build's moment is readable, "BUILD".
    QMap<QString, QString> getVerInfo() const override;

    /// The first call reads the settings and starts the worker's thread; later calls restart the
    /// worker's timer. True also for a plugin that its settings disable.
    bool start() override;

    /// Ends the ticking; a running pass goes on to its end. The thread stays.
    void stop() override;
    /// The same as stop().
    void pause() override;
    /// Restarts the worker's timer.
    void resume() override;

private Q_SLOTS:
    bool init();

private:
    friend struct PluginPeer; // the tests' view of the members

    void passOnSettings();
    void passOnStateTexts();

    EnviroSettings *settings = nullptr;
    bool initialised = false;
    bool enabled = true;
    QThread workerThread;
    THRWorker *worker = nullptr;
};
