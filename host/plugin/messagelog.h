// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where all messages of the plugin arrive.
#pragma once

#include "host/plugin/passwatch.h"

#include <QLoggingCategory>
#include <QMutex>
#include <QObject>

#include <functional>

class LogWriter;

/// Takes every message of Qt's logger while it lives: counts what it tells, and writes it if the
/// chosen log level shows it.
///
/// One at a time, owned by the run of the plugin and living on its thread. Messages come from that
/// thread and from the plugin's worker thread, and the signals on the thread of their message: to
/// be connected queued, but for exportReading().
class MessageLog : public QObject
{
    Q_OBJECT

public:
    /// With `showProgress` the writer gets to know how far each pass has come.
    MessageLog(LogWriter *writer, int logLevel, bool showProgress, QObject *parent = nullptr);
    ~MessageLog() override;

    /// The level at which the plugin has to run, so that everything can be counted.
    int pluginLogLevel() const;

    /// Is called with every message, shown or not, on the message's thread. To be set before the
    /// plugin is loaded.
    void listen(const std::function<void(QtMsgType type, const QString &text)> &messageListener)
    {
        listener = messageListener;
    }

    /// Lets no pass begin after so many, or after the running one. A tick that fell due during a
    /// long pass would otherwise come at once, before the command gets to end the plugin.
    void endAfterPasses(int passes);
    /// False when none is running: then nothing is changed.
    bool endAfterThisPass();

    RunFigures figures() const;
    bool isPassRunning() const;
    /// With which the last pass began.
    Tick tickOfPass() const;
    bool sawPluginDisabled() const;
    /// What the plugin said last, shown or not.
    QString lastMessage() const;

Q_SIGNALS:
    /// All that a pass writes is written.
    void passEnded();
    /// The plugin is about to read the export, if there is one, on the thread of this signal; it
    /// waits for whoever is connected directly.
    void exportReading();
    /// A pass has found no export file, where the pass before had one.
    void exportMissing();
    void databaseNotOpen();

private:
    static void enableAll(QLoggingCategory *category);
    static void handleMessage(QtMsgType type, const QMessageLogContext &context,
                              const QString &text);
    void take(QtMsgType type, const QString &text);
    PassWatch::Event note(QtMsgType type, const QString &text, bool shown, bool *isLastPass);
    void endWorkerThread();

    LogWriter *const writer;
    const int logLevel;
    const bool showProgress;
    std::function<void(QtMsgType, const QString &)> listener; ///< may be null
    mutable QMutex mutex;
    PassWatch watch;
    bool pluginDisabled = false;
    QString latest;
    int lastPass = 0; ///< 0: none is the last
    QtMessageHandler previousHandler = nullptr;
    QLoggingCategory::CategoryFilter previousFilter = nullptr;
};
