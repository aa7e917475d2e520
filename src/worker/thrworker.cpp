// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: settings, life, tick and pass.
#include "worker/thrworker.h"

#include "repository/branchesrepository.h"
#include "repository/groupsplanrepo.h"
#include "repository/orvdbsettings.h"

#include <QMutexLocker>
#include <QSqlError>
#include <QTimer>
#include <QVariant>

#include <algorithm>

namespace {

const uint shortestTimerInterval = 1000; // milliseconds

/// Set to a true value from outside to force a pass on the next tick; cleared at the pass's end.
QString forceVariable()
{
    return QStringLiteral("OQS.THRWorker.forceSync");
}

} // namespace

THRWorker::THRWorker(QObject *parent) :
    QObject(parent)
{ }

// Deliberate: the connection stays registered under its name, and a worker made later in the same
// process takes it up. Pinned by tst_Worker::setOrvDb_takesUpTheRegisteredConnection().
THRWorker::~THRWorker()
{
    delete orvSettings;
}

void THRWorker::setLogLevel(const quint8 &level)
{
    logLevel = level;
}

void THRWorker::setSyncInterval(const uint &ticks)
{
    syncInterval = ticks;
}

void THRWorker::setTestMode(bool test)
{
    testMode = test;
}

void THRWorker::setImportFile(const QString &path)
{
    importFile = path;
}

void THRWorker::setDeleteFile(bool remove)
{
    deleteFile = remove;
}

void THRWorker::setSyncCommand(const QString &command)
{
    syncCommand = command;
}

void THRWorker::setSyncCommandRun(const quint8 &when)
{
    syncCommandRun = when;
}

void THRWorker::setDepartmentId(const uint &department)
{
    departmentId = department;
}

void THRWorker::setTimerInterval(const uint &milliseconds)
{
    timerInterval = qMax(milliseconds, shortestTimerInterval);
    if (timer)
        timer->setInterval(static_cast<int>(timerInterval));
}

void THRWorker::setMes(const QHash<ushort, QString> &texts)
{
    if (logLevel)
        qDebug("THRWorker::setMes() count: %i)", texts.size());
    mes = texts;
}

void THRWorker::setOrvDb(const QSqlDatabase &database)
{
    const QString name = QStringLiteral("OQS.%1.TalvenHR").arg(database.databaseName());
    if (logLevel)
        qDebug("THRWorker::setOrvDb(%s)", qPrintable(name));

    QSqlDatabase connection = QSqlDatabase::database(name, true);
    if (!connection.isValid())
        connection = QSqlDatabase::cloneDatabase(database, name);
    db = connection;
    if (orvSettings)
        orvSettings->setDb(db);
    if (branchesRepo)
        branchesRepo->setDb(db);
    // Deliberate: the group plans get no such news. Pinned by
    // tst_Worker::setOrvDb_leavesTheGroupPlansOnTheirConnection().
}

bool THRWorker::init()
{
    if (logLevel)
        qDebug("THRWorker::init()");

    timer = new QTimer(this);
    timer->setInterval(static_cast<int>(timerInterval));
    connect(timer, SIGNAL(timeout()), this, SLOT(checkSync()));
    orvSettings = new OrvDbSettings(db);
    branchesRepo = new BranchesRepository(this, true, false);
    branchesRepo->logLevel = logLevel;
    branchesRepo->setDb(db);
    groupsPlanRepo = new GroupsPlanRepo(this);
    groupsPlanRepo->logLevel = logLevel;
    groupsPlanRepo->setAutoUpdateMonth(true);
    groupsPlanRepo->setDb(db);
    return true;
}

void THRWorker::start()
{
    if (logLevel)
        qDebug("THRWorker::start()");

    // Deliberate: nothing ever sets initDone, so every start makes timer, settings access and
    // repositories anew and leaves the earlier ones behind: timer (out of reach of stop()) and
    // repositories, children where they were made on this thread, and the settings access. Pinned
    // by tst_Worker::start_repeatedDoublesTheTicks().
    if (!initDone && !init()) {
        qCritical("THRWorker NOT initialized properly - START was terminated!");
        return;
    }
    if (timer)
        timer->start();
}

void THRWorker::stop()
{
    // Deliberate: the words of init(). Pinned by tst_Worker::stop_speaksTheWordsOfInit().
    if (logLevel)
        qDebug("THRWorker::init()");
    if (timer)
        timer->stop();
}

bool THRWorker::dbCheckOpen()
{
    if (logLevel > 1)
        qDebug("THRWorker::dbCheckOpen()");

    const QMutexLocker locker(&dbMutex);
    if (db.isOpen() || db.open())
        return true;
    qCritical("THRWorker::dbCheckOpen() - SQL ERROR: %s", qPrintable(db.lastError().text()));
    return false;
}

void THRWorker::dbClose()
{
    // Deliberate: the words of dbCheckOpen(). Pinned by
    // tst_Worker::dbClose_speaksTheWordsOfDbCheckOpen().
    if (logLevel > 1)
        qDebug("THRWorker::dbCheckOpen()");

    const QMutexLocker locker(&dbMutex);
    if (db.isOpen())
        db.close();
}

void THRWorker::checkSync()
{
    ++tickCount;
    if (logLevel > 1)
        qDebug("THRWorker::checkSync(): #%u", tickCount);

    if (inProgress) {
        qWarning("THRWorker::checkSync() - synchronization is in progress, "
                 "this iteration was skipped!");
        return;
    }
    // A first tick lost here is not made up: it has been counted.
    if (!dbCheckOpen()) {
        qWarning("THRWorker::checkSync() - database not open!");
        return;
    }

    inProgress = true;
    forceSync = orvSettings->variableGet(forceVariable(), QVariant()).toBool();
    // Deliberate: a syncInterval of 0 is not guarded; the first tick runs before the division.
    // Pinned by tst_Worker::checkSync_firstTickRunsAPassEvenWithSyncIntervalZero().
    if (tickCount == 1 || tickCount % syncInterval == 0 || forceSync)
        runPass();
    dbClose();
    inProgress = false;
}

/// Ends with the line END and the cleared force flag, whatever becomes of the pass.
void THRWorker::runPass()
{
    ++syncCount;
    if (logLevel)
        qDebug("THRWorker: BEGIN synchronization #%u (force: %s)", syncCount,
               forceSync ? "YES" : "NO");

    if (syncCommandRun > 1 || (syncCommandRun == 1 && forceSync))
        runCommand();

    loadAndParseData();
    if (!importedRecords.isEmpty()) {
        if (dbLoadPeople()) {
            doSync();
        } else {
            qCritical("THRWorker: load people from ORVDB failed - synchronization terminated!");
            importedRecords.clear();
        }
    }

    if (logLevel)
        qDebug("THRWorker: END synchronization #%u (waiting records: %i)", syncCount,
               waitingRecords.size());
    if (forceSync)
        orvSettings->variableSet(forceVariable(), QVariant(0));
}

/// First in, first out, whatever the word "stack" says. A record leaves the vector before it is
/// worked on, and nothing puts it back.
void THRWorker::doSync()
{
    if (importedRecords.isEmpty())
        return;
    if (logLevel > 1)
        qDebug("THRWorker::doSync() - stack count: %i", importedRecords.size());
    dbLoadBranches();
    checkDovolenkaFond(3);

    // From the end, where a record leaves the vector without moving all others.
    std::reverse(importedRecords.begin(), importedRecords.end());
    while (!importedRecords.isEmpty())
        doSyncRecord(importedRecords.takeLast());
    addQueuedPeopleToBranches();
}

/// One call for each branch, however many people join it.
void THRWorker::addQueuedPeopleToBranches()
{
    for (auto it = branchPeople.constBegin(); it != branchPeople.constEnd(); ++it) {
        if (!it->isEmpty())
            branchesRepo->addPeopleToBranch(static_cast<ushort>(it.key()),
                                            it->join(QLatin1Char(',')));
    }
    branchPeople.clear();
}

/// Waits for the end of the command without a time limit. The pass goes on whatever becomes of it.
void THRWorker::runCommand()
{
    if (logLevel > 1)
        qDebug("THRWorker::runCommand(): '%s'", qPrintable(syncCommand));
    if (syncCommand.isEmpty()) {
        qWarning("THRWorker::runCommand() - NO command, aborted!");
        return;
    }

    const int exitCode = QProcess::execute(syncCommand);
    if (exitCode != 0)
        qWarning("THRWorker::runCommand() - command: '%s' exit with code: %i",
                 qPrintable(syncCommand), exitCode);
}

/// Connected to nothing in this release.
void THRWorker::isqlProcessErrorOccurred(QProcess::ProcessError error)
{
    const char *text = "Unknown Error";
    switch (error) {
    case QProcess::FailedToStart:
        text = "Failed to start";
        break;
    case QProcess::Crashed:
        text = "Crashed";
        break;
    case QProcess::Timedout:
        text = "Timedout";
        break;
    case QProcess::ReadError:
        text = "Read Error";
        break;
    case QProcess::WriteError:
        text = "Write Error";
        break;
    case QProcess::UnknownError:
        break;
    }
    qCritical("THRWorker: isql process %s", text);
}
