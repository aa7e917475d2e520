// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: ticks on a timer and brings the attendance database into line with the export file.
#pragma once

#include "export/employeerecord.h"
#include "worker/waitingrecords.h"

#include <QHash>
#include <QMutex>
#include <QObject>
#include <QProcess>
#include <QSqlDatabase>
#include <QStringList>
#include <QVector>

class BranchesRepository;
class GroupsPlanRepo;
class LineReader;
class OrvDbSettings;
class QTimer;

/// Does the synchronisation: on every tick it decides whether to run a pass, and a pass takes the
/// employees of the export file into the attendance database one by one.
///
/// TalvenHR makes it, moves it to its worker thread and gives it its settings; it goes by
/// deleteLater() when that thread has finished. The setters are called before the thread starts.
/// Everything from checkSync() on runs on the worker thread. start() and stop() are also called
/// directly from the server's thread; nothing guards them.
///
/// All statements run on the worker's own connection, a clone of the server's, which is open only
/// during a tick. A failure is logged and ends neither the pass nor the walk over the records; only
/// when the people cannot be read, the records of the pass are dropped.
class THRWorker : public QObject
{
    Q_OBJECT

public:
    explicit THRWorker(QObject *parent = nullptr);
    ~THRWorker() override;

    // Settings (thrworker.cpp)
    void setLogLevel(const quint8 &level);
    void setSyncInterval(const uint &ticks); ///< 0 is not guarded: the second tick divides by it
    void setTestMode(bool test);
    void setImportFile(const QString &path);
    void setDeleteFile(bool remove);
    void setSyncCommand(const QString &command);
    void setSyncCommandRun(const quint8 &when); ///< 0 never, 1 on forced passes, 2 on every pass
    void setDepartmentId(const uint &department);
    void setTimerInterval(const uint &milliseconds); ///< at least 1000
    void setMes(const QHash<ushort, QString> &texts); ///< texts by evidence state
    /// Clones a connection named OQS.<database name>.TalvenHR, or takes the one already registered
    /// under that name.
    void setOrvDb(const QSqlDatabase &database);

    // Life, tick and pass (thrworker.cpp)
    bool init();
    bool dbCheckOpen();
    void dbClose();
    void runCommand();
    void doSync();

    // Export file (thrworker_import.cpp)
    /// Appends the usable lines of the export file to importedRecords, then removes the file if
    /// told.
    void loadAndParseData();
    /// Appends the record of a line, if the line has as many parts as fields and is usable.
    void parseLine(const QString &line, const QStringList &fields, QChar separator);
    /// The date of a text in the format of a date and time; invalid when the text does not match.
    static QDate dateFromText(const QString &text, const QString &format);

    // Evidence states (thrworker_state.cpp)
    /// The text of a state: from the settings, else built in, else empty.
    QString stateText(ushort state) const;
    QString stateTextOf(const EmployeeRecord &record) const;
    /// The settings hold a text for the state, be it empty.
    bool stateKnown(ushort state) const;
    /// Works out rsBegin, rsEnd and rsText of a record from its state and the interval before it.
    void applyStateValidity(EmployeeRecord &record, const EmployeeRecord &oldRecord) const;
    EmployeeRecord withStateValidity(const EmployeeRecord &record,
                                     const EmployeeRecord &oldRecord) const;

    // One record (thrworker_record.cpp)
    /// Decides what is to happen to the person of a record, and has it done.
    void doSyncRecord(const EmployeeRecord &record);

    // Person store (thrworker_people.cpp)
    /// Reads all active people into dbPeople. False leaves dbPeople as it was.
    bool dbLoadPeople();
    bool dbCheckPerson(const EmployeeRecord &record);
    /// The uid, 0 when unknown or on error.
    uint dbGetUidByPid(uint pid);
    /// Inserts a person, or revives the row of the same pid. True when a row was written, and in
    /// test mode, which writes nothing.
    bool dbAddPerson(const EmployeeRecord &record);
    /// True when a row has changed, and in test mode, which writes nothing. With `changeLastCalc`
    /// and a valid rsBegin the calculation mark moves to the day before rsBegin.
    bool dbUpdatePerson(const EmployeeRecord &record, bool changeLastCalc);
    /// Reopens attendance from the day on and moves the calculation mark back to the day before it.
    /// Writes also in test mode. False when either statement failed; the first one stays in force.
    bool dbChangeLastCalc(uint uid, const QDate &date);

    // PaM (thrworker_pam.cpp)
    /// Puts the person on the list of selected people of the one PaM block. False when there is no
    /// block or more than one, and on failure.
    bool addPersonIntoPam(uint pid);
    /// Enrols the person in a PaM settings block. True when a row was written, and in test mode,
    /// which writes nothing.
    bool dbAddPersonIntoPam(uint pid, uint pamSettingsID);

    // Branch and calendar (thrworker_branch.cpp)
    /// Reads the numbered branches. False when there is none, or on failure, which leaves none.
    bool dbLoadBranches();
    /// As dbGetUidByPid(), through a cache that lives as long as the process.
    uint getUidByPid(uint pid);
    bool dbCheckPersonInBranch(uint pid, uint bid);
    /// The group of the branch that carries the calendar, 0 when there is none or on failure.
    uint getGroupIdByCalendar(uint bid, uint calendarID);
    /// `since` is a month, yyyyMM.
    bool dbCheckGroupsPlan(uint gid, uint uid, uint since);
    /// Queues the person for his branch, if he is no member, and plans the group that carries his
    /// calendar. True when the calendar is in place or the person was queued.
    bool doSyncBranchAndCalendar(const EmployeeRecord &record);

    // Leave fund (thrworker_fund.cpp)
    /// Sets fundId to the fund of this number, if there is one.
    void checkDovolenkaFond(ushort iid);
    /// True when no correction of today exists. False also on failure.
    bool dbCheckFundMove(uint pid);
    /// True when the attendance of the person is at rest. `uid` is set as soon as the person is
    /// found.
    bool dbCheckAttendance(uint pid, uint *uid);
    /// The balance in hundredths: all moves before this month, and this month's corrections before
    /// today. `ok` is false when either could not be read; it then counts as 0.
    int loadFundStatusAndMove3(uint pid, bool *ok);
    /// Writes the correction of today, in hundredths, in place of an earlier one of today. True
    /// when a row was written.
    bool writeFundMove3(uint uid, int value);

    // Supervisor (thrworker_supervisor.cpp)
    /// Gives the supervisor's mark of a person to the administrator whom the record names, and
    /// takes it from all others, in one transaction.
    void processNadOsCis(const EmployeeRecord &record);
    /// The administrator with this personal number, 0 when there is none or on failure.
    uint dbGetAidByOsCis(uint osCis);
    /// Takes the mark from the administrators of a person but for one. The rows changed, -1 on
    /// failure.
    int dbResetAdminPeopleRequest(uint aid, uint uid);
    /// Gives the mark to an administrator, and makes the link that it stands on. The rows that the
    /// database counts, -1 on failure.
    int dbSetAdminPeopleRequest(uint aid, uint uid);

    // News for terminals (thrworker_terminal.cpp)
    /// Tells every terminal in service that holds the person and takes persons. `type` is what has
    /// happened: I, U or D. A failure is only logged.
    void addTermSyncPerson(uint pid, QChar type, const QString &ref);

public Q_SLOTS:
    /// Makes timer, settings access and repositories anew and starts ticking; the first tick comes
    /// after a whole interval.
    void start();
    /// Ends the ticking of the newest timer.
    void stop();

private Q_SLOTS:
    void checkSync();
    void isqlProcessErrorOccurred(QProcess::ProcessError error);

private:
    friend struct WorkerPeer; // the tests' view of the members

    /// What the leave fund says of a person before anything is compared.
    struct FundCheck
    {
        uint uid = 0; ///< 0 when the person was not found
        bool fundMoveOk = false;
        bool attendanceOk = false;
        bool fundPending = false; ///< the checks pass now and failed the last time

        bool passed() const { return fundMoveOk && attendanceOk; }
    };

    /// What a record asks for, against the last one of the same person in an export file.
    struct Changes
    {
        bool changed; ///< anything differs, or the leave balance is to be brought into line
        bool esChanged; ///< another evidence state
        bool tppChanged; ///< another type of employment relation
        bool nocChanged; ///< a supervisor is named, and not the one of the last time
        bool fundStep; ///< the leave balance is to be brought into line
    };

    void runPass();
    void addQueuedPeopleToBranches();
    void takeLine(const QString &line, LineReader *reader);
    FundCheck checkFund(uint pid);
    Changes changesSinceLast(const EmployeeRecord &record, const FundCheck &fund) const;
    bool syncUnknownPerson(const EmployeeRecord &record);
    bool syncKnownPerson(const EmployeeRecord &record, const Changes &changes, uint uid,
                         bool *needLastCalc);
    bool correctBalance(const EmployeeRecord &record, uint uid);
    void assignBranchOrWait(const EmployeeRecord &record, bool changed);
    void reopenAttendance(const EmployeeRecord &record);
    bool isCalculated(uint pid, uint *uid);
    bool hasOpenDays(uint uid);
    bool moveSupervisorMark(uint aid, uint uid);

    quint8 logLevel = 0;
    bool initDone = false;
    bool testMode = false;
    bool inProgress = false;
    QSqlDatabase db;
    QTimer *timer = nullptr;
    uint timerInterval = 60000; ///< milliseconds
    uint tickCount = 0;
    uint syncInterval = 60; ///< ticks
    uint syncCount = 0;
    QString importFile;
    bool deleteFile = false;
    bool forceSync = false;
    QHash<uint, EmployeeRecord> lastRecords; ///< by pid, as last seen in export files
    WaitingRecords waitingRecords; ///< whose branch and calendar step failed
    OrvDbSettings *orvSettings = nullptr; ///< owned
    BranchesRepository *branchesRepo = nullptr; ///< child
    QVector<EmployeeRecord> importedRecords; ///< of this pass; doSync() takes from its end
    QHash<uint, uint> branches; ///< branch number to bid
    QHash<uint, QStringList> branchPeople; ///< by bid, uids to be added at the end of the pass
    GroupsPlanRepo *groupsPlanRepo = nullptr; ///< child
    QString syncCommand;
    quint8 syncCommandRun = 0;
    QHash<uint, EmployeeRecord> dbPeople; ///< by pid, as last read from the database
    QMutex dbMutex; ///< around open and close of db
    uint departmentId = 1;
    quint16 fundId = 0; ///< the leave fund, 0 when there is none
    QHash<ushort, QString> mes; ///< texts by evidence state
    QHash<uint, bool> fundRetry; ///< by pid: the last checks of the fund failed
};
