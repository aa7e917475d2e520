// SPDX-FileCopyrightText: 2026 The TalvenHR authors
// SPDX-License-Identifier: MIT
// Messages: supervisor, branch and calendar, members of a branch and their terminals.
#include "host/catalogue/messagetexts.h"

MessageTopic supervisorMessages()
{
    return {
        "Supervisor",
        nullptr,
        true,
        {
            debug(1, "THRWorker::processNadOsCis(%s, NOC: %u)").names(Naming::PamId, 0),
            debug(2, "THRWorker::dbGetAidByOsCis(uid: %u)"),
            debug(1, "THRWorker::dbGetAidByOsCis(uid: %u): %u"),
            debug(2, "THRWorker::dbResetAdminPeopleRequest(aid: %u, uid: %u)")
                .names(Naming::Uid, 1),
            debug(2, "THRWorker::dbResetAdminPeopleRequest - query '%s' - affected rows: %i"),
            debug(1, "THRWorker::dbResetAdminPeopleRequest(aid: %u, uid: %u) - affected: %i")
                .names(Naming::Uid, 1),
            debug(2, "THRWorker::dbSetAdminPeopleRequest(aid: %u, uid: %u)").names(Naming::Uid, 1),
            debug(2, "THRWorker - query '%s' - affected rows: %i")
                .by("THRWorker::dbSetAdminPeopleRequest"),
            debug(1, "THRWorker::dbSetAdminPeopleRequest(aid: %u, uid: %u) - affected: %i")
                .names(Naming::Uid, 1),
            warning("THRWorker - admin s osobnym cislom %u nebol najdeny!")
                .by("THRWorker::processNadOsCis")
                .means("No administrator has the supervisor's personal number (Slovak: \"not "
                       "found\").")
                .leadsTo("The old supervisor stays. It is not tried again.")
                .todo("Enter the number in `admins.personalNumber`, then restart; or mark the "
                      "supervisor of this person in `admins_people` by hand (`request` 1)."),
            warning("THRWorker - zamestnanec s osobnym cislom %u nebol najdeny!")
                .by("THRWorker::processNadOsCis")
                .names(Naming::Pid, 0)
                .means("The employee has no row. The number is the `pid`, whatever the text says.")
                .leadsTo("The supervisor is not set. It is not tried again.")
                .todo("When the person is there, restart, or mark the supervisor by hand."),
            error("THRWorker::dbGetAidByOsCis() - SQL ERROR [%s]: %s\n SQL: %s")
                .means("The supervisor could not be looked up.")
                .leadsTo("The old supervisor stays. It is not tried again.")
                .todo("Restart, or mark the supervisor by hand."),
            error("THRWorker::dbResetAdminPeopleRequest() - SQL ERROR [%s]: %s\n SQL: %s")
                .means("The mark could not be taken from the old supervisor.")
                .leadsTo("Nothing was changed. It is not tried again.")
                .todo("Restart, or mark the supervisor by hand."),
            error("THRWorker::dbSetAdminPeopleRequest() - SQL ERROR [%s]: %s\n SQL: %s")
                .means("The mark could not be given to the new supervisor.")
                .leadsTo("If `(Re)Set Admin People Request FAilED!` follows, nothing was changed. "
                         "If not, the old mark is gone and no new one is set.")
                .todo("Restart, or mark the supervisor by hand."),
            warning("THRWorker::processNadOsCis() - (Re)Set Admin People Request FAilED!")
                .means("The mark could not be moved, as an error before says.")
                .leadsTo("Nothing was changed. It is not tried again until the supervisor changes "
                         "or the plugin restarts.")
                .todo("Restart, or mark the supervisor by hand."),
        }};
}

MessageTopic branchMessages()
{
    return {
        "Branch and calendar",
        nullptr,
        true,
        {
            debug(2, "THRWorker::dbLoadBranches()"),
            debug(3, "THRWorker::doSyncBranchAndCalendar(%s)").names(Naming::PamId, 0),
            debug(2, "THRWorker::dbCheckPersonInBranch(%u, %u)").names(Naming::Pid, 0),
            debug(2, "THRWorker::getGroupIdByCalendar(B: %u, C: %u)"),
            debug(2, "THRWorker::dbCheckGroupsPlan(%u, %u, %u)").names(Naming::Uid, 1),
            debug(2, "GroupsPlanRepo::add(%s)").names(Naming::PlannedUid, 0),
            debug(2, "GroupsPlanRepo::updateGroupsMonth(%u, %u)").names(Naming::Uid, 0),
            error("THRWorker::dbLoadBranches() - SQL ERROR [%s]: %s")
                .means("The branches cannot be read.")
                .leadsTo(
                    "In this pass no branch is known: people are **written without a branch**.")
                .todo("Force a pass when the cause is gone."),
            warning("THRWorker: Branch '%u' NOT FOUND for employee: '%s'")
                .by("THRWorker::doSyncBranchAndCalendar")
                .names(Naming::PamId, 1)
                .means("No branch has the number.")
                .leadsTo("The record waits. By itself it would make the person a member, but leave "
                         "`people.bid` empty.")
                .todo("Make the branch or enter the number, then force a pass."),
            error("THRWorker::dbCheckPersonInBranch() - SQL ERROR [%s]: %s")
                .means("It could not be seen whether the person is a member.")
                .leadsTo("The person is queued for the branch all the same."),
            error("THRWorker::getGroupIdByCalendar() - SQL ERROR [%s]: %s")
                .means("The group could not be looked up.")
                .leadsTo("No plan: `Group ID NOT found` follows."),
            warning("THRWorker: Group ID NOT found for Branch %u and calendar %u [employee: '%s']!")
                .by("THRWorker::doSyncBranchAndCalendar")
                .names(Naming::PamId, 2)
                .means("No group below the master group of the branch carries the calendar.")
                .leadsTo("No plan. The record waits only if the person was a member already.")
                .todo("Make such a group, then force a pass."),
            error("THRWorker::dbCheckGroupsPlan() - SQL ERROR [%s]: %s")
                .means("The plan could not be looked up.")
                .leadsTo("Taken as \"not planned yet\"."),
            error("GroupsPlanRepo::add - ERROR[%i]: %s")
                .means("The plan could not be written.")
                .leadsTo("No plan: `can't add record` follows.")
                .todo("Force a pass when the cause is gone."),
            warning("THRWorker: can't add record '%s' into [groups_plan]!")
                .by("THRWorker::doSyncBranchAndCalendar")
                .names(Naming::PamId, 0)
                .means("The person has no row, because adding the person failed before or because "
                       "of test mode; or the plan could not be written; or it was there already, "
                       "after an error of `dbCheckGroupsPlan()`.")
                .leadsTo("No plan. The uid of a person without a row is 0; a following "
                         "`addPeopleToBranch` with `0` in its list writes nothing for that person.")
                .todo("Mend what the messages before it say, then force a pass."),
            error("GroupsPlanRepo::updateGroupsMonth - ERROR[%i]: %s")
                .means("The months in `groups_month` were not derived.")
                .leadsTo("The plan stands without them.")
                .todo("Delete the row of `groups_plan` and force a pass, which plans anew."),
        }};
}

MessageTopic memberMessages()
{
    return {
        "Members of a branch",
        "A branch takes in its members at the end of a pass.",
        true,
        {
            info(1, "BranchesRepository::addPeopleToBranch(%u, '%s')").names(Naming::Uids, 1),
            info(1, "BranchesRepository::slotAddedPeopleToBranch(%u, '%s')").names(Naming::Uids, 1),
            info(1, "BranchesRepository::getTids4Branch(%u)"),
            info(1, "BranchesRepository::getAids4Branch(%u)"),
            error("BranchesRepository::addPeopleToBranch - ERROR: %s")
                .means("The memberships could not be written.")
                .leadsTo(
                    "Nobody queued for this branch became a member. They are queued again when "
                    "their record changes or a pass is forced.")
                .todo("Force a pass when the cause is gone."),
            warning("BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToTerms() FAILED!")
                .by("BranchesRepository::slotAddedPeopleToBranch, "
                    "BranchesRepository::slotDeletedPeopleFromBranch")
                .means("People could not be put on some terminal.")
                .leadsTo("They are members, but missing there.")
                .todo("Delete their rows of `brape` and force a pass."),
            warning("BranchesRepository::slotAddedPeopleToBranch() - AddPeopleToAdmins() FAILED!")
                .by("BranchesRepository::slotAddedPeopleToBranch, "
                    "BranchesRepository::slotDeletedPeopleFromBranch")
                .means("People could not be put under some administrator.")
                .leadsTo("They are members, but missing there.")
                .todo("Delete their rows of `brape` and force a pass."),
            error("BranchesRepository::getTids4Branch - ERROR: %s")
                .means("The terminals could not be read; taken as \"no terminals\", without a "
                       "warning.")
                .leadsTo("Members, but on no terminal of the branch.")
                .todo("Delete their rows of `brape` and force a pass."),
            error("BranchesRepository::getAids4Branch - ERROR: %s")
                .by("BranchesRepository::getAids4Branch, BranchesRepository::getAids4Uid")
                .means("The administrators could not be read; taken as \"no administrators\", "
                       "without a warning.")
                .leadsTo("Members, but under no administrator of the branch.")
                .todo("Delete their rows of `brape` and force a pass."),
            error("BranchesRepository::AddPeopleToTerm - ERROR: %s")
                .means("The people could not be put on a terminal.")
                .leadsTo("They are missing there.")
                .todo("Delete their rows of `brape` and force a pass."),
            error("BranchesRepository::AddPeopleToAdmins - ERROR: %s")
                .by("BranchesRepository::AddPeopleToAdmins, BranchesRepository::AddPeopleToAdmin")
                .means("The people could not be put under an administrator.")
                .leadsTo("They are missing there.")
                .todo("Delete their rows of `brape` and force a pass."),
        }};
}

MessageTopic terminalMessages()
{
    return {
        "Terminals",
        nullptr,
        true,
        {
            debug(2, "THRWorker::addTermSyncPerson(%u, %s, %s)").names(Naming::Pid, 0),
            warning("THRWorker::addTermSyncPerson(%u) - uid NOT selected from DB!")
                .names(Naming::Pid, 0)
                .means("The person's id could not be read.")
                .leadsTo("The terminals were not told of the update.")
                .todo("Restart, or change the person in the attendance system."),
            error("THRWorker::addTermSyncPerson() ERROR: %s")
                .means("No rows were written into `term_sync`.")
                .leadsTo("The terminals were not told of the update.")
                .todo("Restart, or change the person in the attendance system."),
            error("THRWorker::addTermSyncPerson() - updateTermsSync() ERROR: %s")
                .means("The rows are there, the terminals are not marked.")
                .leadsTo("The terminals fetch them with the next news."),
            error("TermSyncRepository::addTermSyncPeople() ERROR: %s")
                .by("TermSyncRepository::addTermSyncPeople, "
                    "TermSyncRepository::addTermSyncInterList")
                .means("No rows were written into `term_sync`.")
                .leadsTo("The people are on the terminal in the database, but the terminal is not "
                         "told.")
                .todo("Delete their rows of `brape` and force a pass."),
            error("TermSyncRepository::setTermSyn() ERROR: %s")
                .means("The rows are there, the terminal is not marked.")
                .leadsTo("The terminal fetches them with the next news."),
        }};
}
