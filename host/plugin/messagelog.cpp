// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Where all messages of the plugin arrive.
#include "host/plugin/messagelog.h"

#include "host/catalogue/messagegate.h"
#include "host/report/logwriter.h"

#include <QMutexLocker>
#include <QThread>

namespace {

MessageLog *current = nullptr; // the one that lives

} // namespace

MessageLog::MessageLog(LogWriter *target, int shownLevel, bool progress, QObject *parent) :
    QObject(parent),
    writer(target),
    logLevel(shownLevel),
    showProgress(progress)
{
    current = this;
    previousHandler = qInstallMessageHandler(handleMessage);
    previousFilter = QLoggingCategory::installFilter(enableAll);
}

MessageLog::~MessageLog()
{
    QLoggingCategory::installFilter(previousFilter);
    qInstallMessageHandler(previousHandler);
    current = nullptr;
}

int MessageLog::pluginLogLevel() const
{
    // 3 tells of each record, 2 how many there are.
    return qMax(logLevel, showProgress ? 3 : 2);
}

void MessageLog::endAfterPasses(int passes)
{
    const QMutexLocker locker(&mutex);
    lastPass = passes;
}

bool MessageLog::endAfterThisPass()
{
    const QMutexLocker locker(&mutex);
    if (watch.isPassRunning())
        lastPass = watch.figures().passes + 1;
    return watch.isPassRunning();
}

RunFigures MessageLog::figures() const
{
    const QMutexLocker locker(&mutex);
    return watch.figures();
}

bool MessageLog::isPassRunning() const
{
    const QMutexLocker locker(&mutex);
    return watch.isPassRunning();
}

Tick MessageLog::tickOfPass() const
{
    const QMutexLocker locker(&mutex);
    return watch.tickOfPass();
}

bool MessageLog::sawPluginDisabled() const
{
    const QMutexLocker locker(&mutex);
    return pluginDisabled;
}

QString MessageLog::lastMessage() const
{
    const QMutexLocker locker(&mutex);
    return latest;
}

/// The passes are counted by the plugin's debug lines, so rules of the machine or the environment
/// must not switch these off.
void MessageLog::enableAll(QLoggingCategory *category)
{
    if (current && current->previousFilter)
        current->previousFilter(category);
    if (qstrcmp(category->categoryName(), "default") == 0) {
        category->setEnabled(QtDebugMsg, true);
        category->setEnabled(QtInfoMsg, true);
        category->setEnabled(QtWarningMsg, true);
    }
}

void MessageLog::handleMessage(QtMsgType type, const QMessageLogContext &context,
                               const QString &text)
{
    Q_UNUSED(context);
    if (current)
        current->take(type, text);
}

void MessageLog::take(QtMsgType type, const QString &text)
{
    if (listener)
        listener(type, text);
    const bool shown = isShown(type, text, logLevel);
    bool isLastPass = false;
    const PassWatch::Event event = note(type, text, shown, &isLastPass);
    if (isLastPass)
        endWorkerThread();
    // Without the lock: whoever listens may ask for the figures.
    if (event == PassWatch::PassOver)
        Q_EMIT passEnded();
    else if (event == PassWatch::ExportReading)
        Q_EMIT exportReading();
    else if (event == PassWatch::ExportMissing)
        Q_EMIT exportMissing();
    else if (event == PassWatch::DatabaseNotOpen)
        Q_EMIT databaseNotOpen();
}

/// Counts and writes, so that the lines come in the order of the figures.
PassWatch::Event MessageLog::note(QtMsgType type, const QString &text, bool shown, bool *isLastPass)
{
    const QMutexLocker locker(&mutex);
    latest = text;
    const PassWatch::Event event = watch.see(type, text);
    if (shown) {
        watch.countShown(type);
        writer->message(type, text);
    }
    if (event == PassWatch::RecordBegan && showProgress)
        writer->progress(watch.recordsBegun(), watch.recordsOfPass());
    if (event == PassWatch::PassEnded && showProgress)
        writer->wipeProgress();
    *isLastPass = event == PassWatch::PassEnded && lastPass > 0
        && watch.figures().passes >= lastPass;
    pluginDisabled = pluginDisabled || event == PassWatch::PluginDisabled;
    return event;
}

/// The message comes on the worker's thread. Its event loop ends when the tick is over; the plugin,
/// when it is deleted, finds the thread at its end already.
void MessageLog::endWorkerThread()
{
    if (QThread::currentThread() != thread())
        QThread::currentThread()->quit();
}
