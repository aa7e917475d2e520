// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// The worker: what is to happen to the person of one record.
#include "worker/thrworker.h"

namespace {

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

    const Changes changes = changesSinceLast(record);
    bool written = false;
    bool needLastCalc = false;
    if (changes.any || forceSync) {
        written = dbPeople.contains(record.pid()) ? syncKnownPerson(record, changes, &needLastCalc)
                                                  : syncUnknownPerson(record);
    }

    // As the file stated it, without the interval that was worked out. A record that is unchanged
    // and not current is stored as well, which changes nothing: it equals what is there.
    if (written || changes.any || !record.isCurrent())
        lastRecords.insert(record.pid(), record);

    assignBranchOrWait(record, changes.any);
    if (needLastCalc)
        reopenAttendance(record);
}

THRWorker::Changes THRWorker::changesSinceLast(const EmployeeRecord &record) const
{
    const auto last = lastRecords.constFind(record.pid());
    if (last == lastRecords.constEnd())
        return {true, true, true};
    return {record != *last, record.evidencniStav != last->evidencniStav,
            record.typPracovnihoPomeru != last->typPracovnihoPomeru};
}

/// Adds the person, if the employment has not ended. True when the person was added.
bool THRWorker::syncUnknownPerson(const EmployeeRecord &record)
{
    if (!record.isCurrent())
        return false;
    EmployeeRecord person = record;
    applyStateValidity(person, EmployeeRecord());
    return dbAddPerson(person);
}

/// Updates the person, if something that the row holds has changed. True when the row was updated.
/// `needLastCalc` is set when the attendance has to be calculated again.
bool THRWorker::syncKnownPerson(const EmployeeRecord &record, const Changes &changes,
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
    if (differsFromRow(person, old) || changes.evidenceState || changes.employmentType)
        updated = dbUpdatePerson(person, changes.evidenceState);

    if (*needLastCalc) {
        // A second line of the same person in this pass does not repeat the recalculation.
        old.calendarID = record.calendarID;
        old.kalendarPlatnostOd = record.kalendarPlatnostOd;
        old.stredisko = record.stredisko;
        old.strediskoPopis = record.strediskoPopis;
        old.dovolenaZustatek = record.dovolenaZustatek;
        dbPeople.insert(record.pid(), old);
    }
    return updated;
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
