// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Messages: the person of a record.
#include "host/catalogue/messagetexts.h"

MessageTopic peopleMessages()
{
    return {
        "People",
        nullptr,
        true,
        {
            debug(2, "THRWorker::dbLoadPeople()"),
            debug(3, "THRWorker::doSyncRecord(%s)")
                .names(Naming::PamId, 0)
                .tells(MessageEvent::RecordBegins),
            debug(1, "THRWorker::dbAddPerson(%s)")
                .names(Naming::PamId, 0)
                .tells(MessageEvent::PersonAdded),
            debug(1, "THRWorker::dbUpdatePerson(%s)")
                .names(Naming::PamId, 0)
                .tells(MessageEvent::PersonUpdated),
            debug(2, "THRWorker::dbGetUidByPid(%u)").names(Naming::Pid, 0),
            error("THRWorker::dbLoadPeople() - SQL ERROR [%s]: %s")
                .means("The people cannot be read.")
                .leadsTo("The pass does nothing.")
                .todo("Look at what the text says."),
            error("THRWorker::dbAddPerson(%s) - SQL ERROR: %s")
                .names(Naming::PamId, 0)
                .tells(MessageEvent::PersonNotAdded)
                .means("The statement that adds the person failed.")
                .leadsTo("The person was not added.")
                .todo("Look for an apostrophe; afterwards force a pass."),
            error("THRWorker::dbUpdatePerson(%s) - SQL ERROR: %s")
                .names(Naming::PamId, 0)
                .tells(MessageEvent::PersonNotUpdated)
                .means("The statement that updates the person failed.")
                .leadsTo("The row stays as it was.")
                .todo("Look for an apostrophe; afterwards force a pass."),
            warning("THRWorker::dbAddPerson(%s) - Testing mode is active, person not really add!",
                    1)
                .names(Naming::PamId, 0)
                .tells(MessageEvent::PersonNotAdded)
                .means("What [test mode](administration.md#test-mode) kept back."),
            warning("THRWorker::dbUpdatePerson(%s) - Testing mode is active, person not really "
                    "update!",
                    1)
                .names(Naming::PamId, 0)
                .tells(MessageEvent::PersonNotUpdated)
                .means("What [test mode](administration.md#test-mode) kept back."),
            error("THRWorker::dbGetUidByPid() - SQL ERROR [%s]: %s")
                .means("The person's id could not be read.")
                .leadsTo("What follows for the person is left out, or goes to nobody.")
                .todo("Look at the messages that follow."),
        }};
}

MessageTopic pamMessages()
{
    return {
        "PaM",
        nullptr,
        true,
        {
            debug(2, "THRWorker::addPersonIntoPam(%u)").names(Naming::Pid, 0),
            debug(1, "THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u)")
                .names(Naming::Pid, 0),
            warning("THRWorker::dbAddPerson(%s) - addPersonIntoPam() FAILED!")
                .names(Naming::PamId, 0)
                .means("There is no variable `exportPam.N.active`, or more than one, or the list "
                       "could not be written.")
                .leadsTo("The person was added and is not on the list of the PaM block.")
                .todo("Put the `pid` on the list by hand."),
            warning("THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u) - Unique person ID "
                    "([people].uid) not found!",
                    1)
                .names(Naming::Pid, 0)
                .means("The person's row could not be found for enrolment.")
                .leadsTo("Nothing is enrolled: `dbAddPersonIntoPam(…) FAILED!` follows.")
                .todo("Enrol the person by hand."),
            error("THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u) - SQL ERROR: %s")
                .names(Naming::Pid, 0)
                .means("No row was written into `people_pam`.")
                .leadsTo("Nothing is enrolled: `dbAddPersonIntoPam(…) FAILED!` follows.")
                .todo("Enrol the person by hand."),
            warning("THRWorker::doSyncRecord(%s) - dbAddPersonIntoPam(%u, %u) FAILED!")
                .names(Naming::PamId, 0)
                .means("The person could not be enrolled, as a message before says; or the row "
                       "was there already.")
                .leadsTo("It is not tried again.")
                .todo("Enrol the person by hand."),
            warning("THRWorker::dbAddPersonIntoPam(pid: %u, pamSettingsID: %u) - Testing mode is "
                    "active, person not really add into PaM!",
                    1)
                .names(Naming::Pid, 0)
                .means("What [test mode](administration.md#test-mode) kept back."),
        }};
}

MessageTopic recalculationMessages()
{
    return {
        "Recalculation",
        nullptr,
        true,
        {
            debug(2, "THRWorker::dbChangeLastCalc(%u, %s)").names(Naming::Uid, 0),
            error("THRWorker::dbChangeLastCalc() [UPDATE atten] - SQL ERROR [%s]: %s")
                .means("The days could not be reopened.")
                .leadsTo("Attendance stays as it was calculated.")
                .todo("Recalculate the person by hand."),
            error("THRWorker::dbChangeLastCalc() [UPDATE people] - SQL ERROR [%s]: %s")
                .means(
                    "The days are reopened, the mark of the last calculated day stands too late.")
                .leadsTo("The days are not calculated again.")
                .todo("Recalculate the person by hand."),
            warning("THRWorker: User (employee) ID NOT found for pid (Personal ID) %u [employee: "
                    "'%s'] - lastCalc not changed (manual recalculation is needed)!")
                .by("THRWorker::reopenAttendance")
                .names(Naming::Pid, 0)
                .means("The person has no row, or it could not be read.")
                .leadsTo("Attendance stays as it was calculated.")
                .todo("Recalculate the person by hand."),
        }};
}

MessageTopic fundMessages()
{
    return {
        "Leave fund",
        nullptr,
        true,
        {
            debug(2, "THRWorker::checkDovolenkaFond()"),
            info(1, "THRWorker::checkDovolenkaFond(): fid=%u"),
            debug(2, "THRWorker::dbCheckFundMove(pid: %u)").names(Naming::Pid, 0),
            info(1, "THRWorker::dbCheckFundMove(pid: %u): %s").names(Naming::Pid, 0),
            debug(2, "THRWorker::dbCheckAttendance(pid: %u)").names(Naming::Pid, 0),
            info(1, "THRWorker::dbCheckAttendance(pid: %u): %s").names(Naming::Pid, 0),
            debug(2, "THRWorker::loadFundStatusAndMove3(pid: %u)").names(Naming::Pid, 0),
            info(1, "THRWorker::loadFundStatusAndMove3(pid: %u): %i, load OK: %s")
                .names(Naming::Pid, 0),
            debug(1, "THRWorker::writeFundMove3(uid: %u, value: %i)").names(Naming::Uid, 0),
            error("THRWorker::checkDovolenkaFond() - SQL ERROR [%s]: %s")
                .means("The fund could not be looked up.")
                .leadsTo("The one of the pass before stays in use, or none.")
                .todo("Force a pass when the cause is gone."),
            error("THRWorker::dbCheckFundMove() - SQL ERROR [%s]: %s")
                .means("The corrections of today could not be counted; logged as \"exists\" then.")
                .leadsTo("The balance waits."),
            error("THRWorker::dbCheckAttendance() - SQL ERROR [%s]: %s")
                .by("THRWorker::isCalculated, THRWorker::hasOpenDays")
                .means("It could not be seen whether attendance is at rest.")
                .leadsTo("If \"NO OK\" follows (from level 1 on), the balance waits. If \"OK\" "
                         "follows, open days could not be counted, and the balance is corrected "
                         "all the same."),
            error("THRWorker::loadFundStatusAndMove3() - SQL 1 ERROR [%s]: %s")
                .means("Moves before this month could not be summed.")
                .leadsTo("No correction: `not loaded correctly!` follows."),
            error("THRWorker::loadFundStatusAndMove3() - SQL 2 ERROR [%s]: %s")
                .means("Corrections of this month could not be summed.")
                .leadsTo("No correction: `not loaded correctly!` follows."),
            warning("THRWorker::doSyncRecord() - loadFundStatusAndMove3(): not loaded correctly!")
                .by("THRWorker::correctBalance")
                .means("The balance could not be read, as an error before says.")
                .leadsTo("No correction. It comes when the balance changes or a pass is forced.")
                .todo("Force a pass when the cause is gone."),
            error("THRWorker::writeFundMove3() - SQL ERROR [%s]: %s\n SQL: %s")
                .means("The correction could not be written. The statement follows on a line of "
                       "its own.")
                .leadsTo("The fund lacks the amount: `not writed` follows.")
                .todo("Force a pass when the cause is gone."),
            warning("THRWorker::doSyncRecord() - funds_move type (type=3, valeu=%i) not writed for "
                    "uid %u (pid: %u)")
                .by("THRWorker::correctBalance")
                .names(Naming::Pid, 2)
                .means("The correction could not be written. `valeu` is the missing amount in "
                       "hundredths.")
                .leadsTo("The fund lacks that amount.")
                .todo("Force a pass when the cause is gone."),
        }};
}
