// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: what is to happen to the person of one record.
#include "worker/thrworker.h"

#include <limits>

namespace {

/// The balance in hundredths, cut toward zero and not rounded, so that 0.29 gives 28. What is not a
/// number, or does not fit 32 bits, gives the least one.
int wholeHundredths(double balance)
{
    const double hundredths = balance * 100.0;
    const bool fits = hundredths > -2147483649.0 && hundredths < 2147483648.0;
    return fits ? static_cast<int>(hundredths) : std::numeric_limits<int>::min();
}

/// Only these types of employment relation have their supervisor taken over.
bool hasSupervisor(const EmployeeRecord &record)
{
    return record.typPracovnihoPomeru == 11 || record.typPracovnihoPomeru == 65;
}

/// Only some fields count: a new description of the branch, a calendar's date, a state, a balance
/// or a supervisor do not make the person's row stale.
bool differsFromRow(const EmployeeRecord &record, const EmployeeRecord &row)
{
    return record.osobniCislo != row.osobniCislo || record.poradoveCisloPP != row.poradoveCisloPP
        || record.titul != row.titul || record.jmeno != row.jmeno || record.prijmeni != row.prijmeni
        || record.titulZa != row.titulZa || record.telefon != row.telefon
        || record.datumNastupu != row.datumNastupu || record.datumVystupu != row.datumVystupu
        || record.calendarID != row.calendarID || record.stredisko != row.stredisko
        || record.rsBegin != row.rsBegin || record.rsEnd != row.rsEnd
        || record.rsText != row.rsText;
}

QDate firstOfPreviousMonth()
{
    const QDate monthAgo = QDate::currentDate().addMonths(-1);
    return QDate(monthAgo.year(), monthAgo.month(), 1);
}

} // namespace

void THRWorker::doSyncRecord(const EmployeeRecord &record)
{
    if (logLevel > 2)
        qDebug("THRWorker::doSyncRecord(%s)", qPrintable(record.toText(false)));

    const FundCheck fund = checkFund(record.pid());
    const Changes changes = changesSinceLast(record, fund);
    bool written = false;
    bool needLastCalc = false;
    if (changes.changed || forceSync) {
        written = dbPeople.contains(record.pid())
            ? syncKnownPerson(record, changes, fund.uid, &needLastCalc)
            : syncUnknownPerson(record);
    }

    // As the file stated it, without the interval that was worked out. A record that is unchanged
    // and not current is stored as well, which changes nothing: it equals what is there.
    if (written || changes.changed || !record.isCurrent())
        lastRecords.insert(record.pid(), record);

    assignBranchOrWait(record, changes.changed);
    if (needLastCalc)
        reopenAttendance(record);
}

/// Asks whether the balance may be corrected today, and remembers the answer in fundRetry.
THRWorker::FundCheck THRWorker::checkFund(uint pid)
{
    FundCheck fund;
    if (fundId == 0)
        return fund;
    fund.fundMoveOk = dbCheckFundMove(pid);
    fund.attendanceOk = dbCheckAttendance(pid, &fund.uid);
    fund.fundPending = fund.passed() && fundRetry.value(pid);
    fundRetry.insert(pid, !fund.passed());
    return fund;
}

THRWorker::Changes THRWorker::changesSinceLast(const EmployeeRecord &record,
                                               const FundCheck &fund) const
{
    const auto last = lastRecords.constFind(record.pid());
    if (last == lastRecords.constEnd())
        return {true, true, true, record.nadOsCis != 0, fund.passed()};

    // A balance that is not a number differs from itself.
    const bool fundStep = fund.passed()
        && (forceSync || record.dovolenaZustatek != last->dovolenaZustatek || fund.fundPending);
    // Deliberate: a supervisor who disappears from the file is no change, so the old one stays.
    // Pinned by tst_RecordFund::supervisorThatDisappearsIsNoChange().
    return {record != *last || fundStep, record.evidencniStav != last->evidencniStav,
            record.typPracovnihoPomeru != last->typPracovnihoPomeru,
            record.nadOsCis != 0 && record.nadOsCis != last->nadOsCis, fundStep};
}

/// Adds the person, if the employment has not ended. True when the person was added. The balance
/// is none of its business: a person without a row was not at rest when the fund was asked, so that
/// a later pass corrects it.
bool THRWorker::syncUnknownPerson(const EmployeeRecord &record)
{
    if (!record.isCurrent())
        return false;
    EmployeeRecord person = record;
    applyStateValidity(person, EmployeeRecord());
    if (!dbAddPerson(person))
        return false;

    const uint pid = record.pid();
    const uint pamSettingsID = EmployeeRecord::pamTypeForTpp(record.typPracovnihoPomeru);
    if (pamSettingsID != 0 && !dbAddPersonIntoPam(pid, pamSettingsID))
        qWarning("THRWorker::doSyncRecord(%s) - dbAddPersonIntoPam(%u, %u) FAILED!",
                 qPrintable(record.toText(false)), pid, pamSettingsID);
    if (record.nadOsCis != 0 && hasSupervisor(record))
        processNadOsCis(record);
    return true;
}

/// Updates the person, if something that the row holds has changed, and brings balance and
/// supervisor into line. True when the row was updated. `needLastCalc` is set when the attendance
/// has to be calculated again.
bool THRWorker::syncKnownPerson(const EmployeeRecord &record, const Changes &changes, uint uid,
                                bool *needLastCalc)
{
    EmployeeRecord old = dbPeople.value(record.pid());
    // Deliberate: the date of the calendar is not read from the database, so a changed or forced
    // record that has one reopens attendance on its first visit in a pass, though calendar and
    // branch are those of the row. Pinned by
    // tst_Record::calendarDateAloneReopensAttendance().
    *needLastCalc = old.isUsable()
        && (record.calendarID != old.calendarID
            || record.kalendarPlatnostOd != old.kalendarPlatnostOd
            || record.stredisko != old.stredisko);

    EmployeeRecord person = record;
    applyStateValidity(person, old);
    bool updated = false;
    if (differsFromRow(person, old) || changes.esChanged || changes.tppChanged)
        updated = dbUpdatePerson(person, changes.esChanged);

    if (changes.fundStep && correctBalance(record, uid))
        *needLastCalc = true;

    if (*needLastCalc) {
        // A second line of the same person in this pass does not repeat the recalculation.
        old.calendarID = record.calendarID;
        old.kalendarPlatnostOd = record.kalendarPlatnostOd;
        old.stredisko = record.stredisko;
        old.strediskoPopis = record.strediskoPopis;
        old.dovolenaZustatek = record.dovolenaZustatek;
        dbPeople.insert(record.pid(), old);
    }

    if (changes.nocChanged && hasSupervisor(record))
        processNadOsCis(record);
    return updated;
}

/// Makes the fund hold the exported balance by one signed correction for today. True when one was
/// needed and written.
bool THRWorker::correctBalance(const EmployeeRecord &record, uint uid)
{
    const uint pid = record.pid();
    bool ok = false;
    const int balance = loadFundStatusAndMove3(pid, &ok);
    if (!ok) {
        qWarning("THRWorker::doSyncRecord() - loadFundStatusAndMove3(): not loaded correctly!");
        return false;
    }

    const int difference = static_cast<int>(
        static_cast<qint64>(wholeHundredths(record.dovolenaZustatek)) - balance);
    if (difference == 0)
        return false;
    if (writeFundMove3(uid, difference))
        return true;
    qWarning("THRWorker::doSyncRecord() - funds_move type (type=3, valeu=%i) not writed for uid %u "
             "(pid: %u)",
             difference, uid, pid);
    return false;
}

/// Has branch and calendar brought into line, for a record that is forced, changed, or has waited.
/// One that fails waits until the export delivers a wholly equal record again; if its person
/// changes meanwhile, it stays for good.
void THRWorker::assignBranchOrWait(const EmployeeRecord &record, bool changed)
{
    if (!record.isCurrent())
        return;
    const bool waiting = waitingRecords.contains(record);
    if ((!forceSync && !waiting && !changed) || record.stredisko == 0)
        return;

    if (doSyncBranchAndCalendar(record)) {
        if (waiting)
            waitingRecords.removeAll(record);
    } else if (!waiting) {
        waitingRecords.append(record);
    }
}

/// Has the attendance of the person calculated again from the first day of the previous month.
void THRWorker::reopenAttendance(const EmployeeRecord &record)
{
    const QDate since = firstOfPreviousMonth();
    const uint pid = record.pid();
    const uint uid = getUidByPid(pid);
    if (uid != 0) {
        dbChangeLastCalc(uid, since);
        return;
    }
    qWarning("THRWorker: User (employee) ID NOT found for pid (Personal ID) %u [employee: '%s'] - "
             "lastCalc not changed (manual recalculation is needed)!",
             pid, qPrintable(record.toText(false)));
}
