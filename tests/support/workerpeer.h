// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The tests' view of the worker's members.
#pragma once

#include "worker/thrworker.h"

struct WorkerPeer
{
    explicit WorkerPeer(THRWorker &worker) :
        logLevel(worker.logLevel),
        initDone(worker.initDone),
        testMode(worker.testMode),
        inProgress(worker.inProgress),
        db(worker.db),
        timer(worker.timer),
        timerInterval(worker.timerInterval),
        tickCount(worker.tickCount),
        syncInterval(worker.syncInterval),
        syncCount(worker.syncCount),
        importFile(worker.importFile),
        deleteFile(worker.deleteFile),
        forceSync(worker.forceSync),
        lastRecords(worker.lastRecords),
        waitingRecords(worker.waitingRecords),
        orvSettings(worker.orvSettings),
        branchesRepo(worker.branchesRepo),
        importedRecords(worker.importedRecords),
        branches(worker.branches),
        branchPeople(worker.branchPeople),
        groupsPlanRepo(worker.groupsPlanRepo),
        syncCommand(worker.syncCommand),
        syncCommandRun(worker.syncCommandRun),
        dbPeople(worker.dbPeople),
        dbMutex(worker.dbMutex),
        departmentId(worker.departmentId),
        fundId(worker.fundId),
        mes(worker.mes),
        fundRetry(worker.fundRetry)
    { }

    quint8 &logLevel;
    bool &initDone;
    bool &testMode;
    bool &inProgress;
    QSqlDatabase &db;
    QTimer *&timer;
    uint &timerInterval;
    uint &tickCount;
    uint &syncInterval;
    uint &syncCount;
    QString &importFile;
    bool &deleteFile;
    bool &forceSync;
    QHash<uint, EmployeeRecord> &lastRecords;
    WaitingRecords &waitingRecords;
    OrvDbSettings *&orvSettings;
    BranchesRepository *&branchesRepo;
    QVector<EmployeeRecord> &importedRecords;
    QHash<uint, uint> &branches;
    QHash<uint, QStringList> &branchPeople;
    GroupsPlanRepo *&groupsPlanRepo;
    QString &syncCommand;
    quint8 &syncCommandRun;
    QHash<uint, EmployeeRecord> &dbPeople;
    QMutex &dbMutex;
    uint &departmentId;
    quint16 &fundId;
    QHash<ushort, QString> &mes;
    QHash<uint, bool> &fundRetry;
};
